#pragma once

#include <QString>
#include <QTextBoundaryFinder>

namespace stillgate
{

/// What a reader takes for the first character of a text, such as an emoji of several code points; empty for none.
[[nodiscard]] inline QString firstCharacter(const QString& text)
{
    QTextBoundaryFinder characters{QTextBoundaryFinder::Grapheme, text};
    const auto end = characters.toNextBoundary();
    return end > 0 ? text.left(end) : QString{};
}

} // namespace stillgate
