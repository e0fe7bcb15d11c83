#pragma once

#include <QQuickWindow>
#include <QStringList>

namespace stillgate
{

/// What is wrong with the layout of a window that has been drawn: texts that are cut, spill over or are broken inside
/// a word; texts, icons and controls that lie one over the other, or where nobody can see them, even by scrolling.
[[nodiscard]] QStringList layoutFindings(const QQuickWindow& window);

} // namespace stillgate
