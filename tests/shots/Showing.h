#pragma once

#include "tests/shots/Scene.h"
#include "tests/shots/Stage.h"

namespace stillgate::test
{

enum class WindowSize {
    Opening,  ///< as the window opens
    Smallest, ///< as small as a user can make it
};

/// A scene on its stage, drawn and at rest.
class Showing
{
public:
    Showing(const Scene& scene, WindowSize size);

    [[nodiscard]] QQuickWindow& window() const { return Stage::window(); }

    /// Whether a user can give the window another size.
    [[nodiscard]] bool isResizable() const { return (window().flags() & Qt::FramelessWindowHint) == 0; }

private:
    Stage m_stage;
};

/// Lets the window take in what has happened to it.
void settle(QQuickWindow& window);

} // namespace stillgate::test
