#pragma once

#include <QColor>
#include <QList>
#include <QQuickPaintedItem>
#include <QtQml/qqmlregistration.h>

namespace stillgate
{

/// The picture of a progress bar: a track, and from its left end a fill of any number of colours.
class ProgressCapsule : public QQuickPaintedItem
{
    Q_OBJECT
    QML_ELEMENT

    Q_PROPERTY(QList<QColor> gradient MEMBER m_gradient NOTIFY changed)
    /// How much of the track is filled, from 0 to 1; what is beyond is one of them.
    Q_PROPERTY(double fraction MEMBER m_fraction NOTIFY changed)

public:
    explicit ProgressCapsule(QQuickItem* parent = nullptr);

    void paint(QPainter* painter) override;

Q_SIGNALS:
    void changed();

private:
    QList<QColor> m_gradient;
    double m_fraction = 0;
};

} // namespace stillgate
