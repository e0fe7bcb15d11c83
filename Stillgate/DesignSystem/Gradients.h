#pragma once

#include <QColor>
#include <QLinearGradient>
#include <QList>

#include <algorithm>

namespace stillgate
{

/// The colours one after the other, at even distances.
inline QLinearGradient evenGradient(const QList<QColor>& colors, QPointF from, QPointF to)
{
    QLinearGradient gradient{from, to};
    const auto last = std::max<qsizetype>(colors.size() - 1, 1);
    for (qsizetype index = 0; index < colors.size(); ++index)
        gradient.setColorAt(double(index) / double(last), colors[index]);
    return gradient;
}

} // namespace stillgate
