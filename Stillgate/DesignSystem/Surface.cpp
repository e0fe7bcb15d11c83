#include "DesignSystem/Surface.h"

#include "DesignSystem/Gradients.h"

#include <QPainter>
#include <QPainterPath>

#include <algorithm>
#include <cmath>

namespace stillgate
{

Surface::Surface(QQuickItem* parent)
    : QQuickPaintedItem{parent}
{
    setAntialiasing(true);
    connect(this, &Surface::changed, this, [this] { update(); });
}

void Surface::paint(QPainter* painter)
{
    const QRectF all = boundingRect();
    const double radius = std::min({m_radius, all.width() / 2, all.height() / 2});
    QPainterPath body;
    body.addRoundedRect(all, radius, radius);
    painter->fillPath(body, evenGradient(m_colors, all.topLeft(), all.bottomRight()));
    if (m_outlineWidth <= 0 || m_outline.alpha() == 0)
        return;

    const double pixel = 1 / painter->deviceTransform().m11();
    const double width = std::max(std::round(m_outlineWidth / pixel), 1.0) * pixel;
    const QRectF inner = all.adjusted(width, width, -width, -width);
    QPainterPath hole;
    hole.addRoundedRect(inner, std::max(radius - width, 0.0), std::max(radius - width, 0.0));
    body.addPath(hole);
    painter->fillPath(body, m_outline);
}

} // namespace stillgate
