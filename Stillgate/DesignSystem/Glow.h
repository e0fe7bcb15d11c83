#pragma once

#include <QColor>
#include <QQuickItem>
#include <QtQml/qqmlregistration.h>

namespace stillgate
{

/// Blurred light in the shape of a rounded rectangle, or of a circle.
///
/// It is an image, made once: moving it costs a copy. The renderer knows no blur, and a gradient of so few levels would
/// show rings on a dark ground, which the grain of this one hides.
class Glow : public QQuickItem
{
    Q_OBJECT
    QML_ELEMENT

    Q_PROPERTY(QColor color MEMBER m_color NOTIFY changed)
    Q_PROPERTY(double radius MEMBER m_radius NOTIFY changed)
    /// The standard deviation of the blur. The light reaches twice as far beyond the edges.
    Q_PROPERTY(double blur MEMBER m_blur NOTIFY changed)

public:
    explicit Glow(QQuickItem* parent = nullptr);

Q_SIGNALS:
    void changed();

protected:
    void geometryChange(const QRectF& newGeometry, const QRectF& oldGeometry) override;
    QSGNode* updatePaintNode(QSGNode* oldNode, UpdatePaintNodeData* data) override;

private:
    void makeAnew();

    QColor m_color;
    double m_radius = 0;
    double m_blur = 0;
    bool m_isStale = true;
};

} // namespace stillgate
