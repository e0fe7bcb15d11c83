#pragma once

#include <QColor>
#include <QList>
#include <QQuickPaintedItem>
#include <QtQml/qqmlregistration.h>

namespace stillgate
{

/// A rounded area of one colour, or of a gradient from its top left to its bottom right, with an outline inside its
/// edge. A Rectangle with a gradient has jagged corners in the software renderer, and no outline thinner than a pixel.
class Surface : public QQuickPaintedItem
{
    Q_OBJECT
    QML_ELEMENT

    Q_PROPERTY(QList<QColor> colors MEMBER m_colors NOTIFY changed)
    Q_PROPERTY(QColor outline MEMBER m_outline NOTIFY changed)
    /// Logical pixels, drawn as a whole number of the screen's own: 0.5 is one pixel on every screen.
    Q_PROPERTY(double outlineWidth MEMBER m_outlineWidth NOTIFY changed)
    Q_PROPERTY(double radius MEMBER m_radius NOTIFY changed)

public:
    explicit Surface(QQuickItem* parent = nullptr);

    void paint(QPainter* painter) override;

Q_SIGNALS:
    void changed();

private:
    QList<QColor> m_colors;
    QColor m_outline = Qt::transparent;
    double m_outlineWidth = 0;
    double m_radius = 0;
};

} // namespace stillgate
