#pragma once

#include <QLinearGradient>
#include <QQuickItem>
#include <QtQml/qqmlregistration.h>

namespace stillgate
{

/// Light that passes over the skeleton shapes inside it, from left to right. They draw it: so it has their outlines,
/// and only they are painted anew.
class ShimmerBand : public QQuickItem
{
    Q_OBJECT
    QML_ELEMENT

    /// 0: not yet in sight, 1: gone.
    Q_PROPERTY(double phase READ phase WRITE setPhase NOTIFY moved)

public:
    double phase() const { return m_phase; }

    void setPhase(double phase);

    /// Where the light begins, in this item; it is as wide as the item.
    double start() const { return (2 * m_phase - 1) * width(); }

    double end() const { return start() + width(); }

    /// The light, for an item whose left edge is at `x` in this one.
    QLinearGradient gradientAt(double x) const;

Q_SIGNALS:
    void moved();

private:
    double m_phase = 0;
};

} // namespace stillgate
