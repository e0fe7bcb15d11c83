#pragma once

#include "tests/shots/Scene.h"

#include <QQuickWindow>
#include <QStringList>

#include <set>

namespace stillgate::test
{

/// What is wrong for somebody who has no mouse, or sees no picture: texts and controls that a screen reader has
/// no name or role for, controls that Tab doesn't reach, or not in the order in which one reads, and those that don't
/// show the focus.
[[nodiscard]] QStringList keyboardFindings(QQuickWindow& window);

/// The buttons of the scene that one of Return, Enter, Space and a screen reader doesn't press. Of each type one is
/// tried, unless that is among `pressedTypes`, and then is.
[[nodiscard]] QStringList activationFindings(const Scene& scene, std::set<QString>& pressedTypes);

} // namespace stillgate::test
