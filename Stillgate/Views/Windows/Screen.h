#pragma once

#include <QQuickView>

#include <memory>

namespace stillgate
{

/// What fills a window: a type of a QML module below Stillgate.Views, and the view model that it lays out.
struct Screen
{
    const char* module; ///< "SignIn"
    const char* type;   ///< "AuthView"
    std::unique_ptr<QObject> viewModel;
};

/// Where the QML of a screen is.
[[nodiscard]] QUrl addressOfScreen(const char* module, const char* type);

/// Lets the screen fill the view. The view model has to outlive it.
void show(const Screen& screen, QQuickView& view);

} // namespace stillgate
