#pragma once

#include <QObject>
#include <QUrl>

#include <functional>
#include <memory>

namespace stillgate
{

/// What fills the settings window beside its sidebar.
struct TabScreen
{
    QUrl source; ///< of a QML type that takes the view model as `viewModel`
    std::unique_ptr<QObject> viewModel;
};

/// Makes the screen of a tab; it is called each time when the tab is chosen.
using TabFactory = std::function<TabScreen(int tag)>;

} // namespace stillgate
