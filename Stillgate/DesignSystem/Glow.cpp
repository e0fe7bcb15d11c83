#include "DesignSystem/Glow.h"

#include <QQuickWindow>
#include <QSGImageNode>

#include <algorithm>
#include <cmath>
#include <memory>

namespace stillgate
{

namespace
{

struct Shape
{
    QSizeF size;
    float radius;
    float blur;
};

/// How many pixels the light goes beyond the shape.
int reach(float blur)
{
    return int(std::ceil(2 * blur));
}

/// How far a point is outside the shape's edge; negative inside. (0, 0) is the shape's centre.
float distanceToEdge(const Shape& shape, float x, float y)
{
    const float overX = std::abs(x) - float(shape.size.width()) / 2 + shape.radius;
    const float overY = std::abs(y) - float(shape.size.height()) / 2 + shape.radius;
    const float outsideX = std::max(overX, 0.0F);
    const float outsideY = std::max(overY, 0.0F);
    const float outside = std::sqrt(outsideX * outsideX + outsideY * outsideY);
    return outside + std::min(std::max(overX, overY), 0.0F) - shape.radius;
}

/// What a Gaussian blur makes of a straight edge, nearly: from 1 to 0 over two standard deviations on either side.
float fallOff(float distance, float blur)
{
    const float t = std::clamp((2 * blur - distance) / (4 * blur), 0.0F, 1.0F);
    return t * t * (3 - 2 * t);
}

/// Gradient noise of 0 to 1: evenly spread among neighbours, and without a pattern that the eye finds.
float grain(int x, int y)
{
    const auto fraction = [](float value) { return value - float(int(value)); };
    return fraction(52.9829189F * fraction(0.06711056F * float(x) + 0.00583715F * float(y)));
}

QImage paintGlow(const Shape& shape, const QColor& color)
{
    const int margin = reach(shape.blur);
    QImage image{shape.size.toSize() + QSize{2 * margin, 2 * margin}, QImage::Format_ARGB32_Premultiplied};
    image.fill(Qt::transparent);
    const int right = image.width() - 1;
    const int bottom = image.height() - 1;
    const float red = color.redF();
    const float green = color.greenF();
    const float blue = color.blueF();
    const float light = color.alphaF() * 255;
    // A quarter is computed, and the others are its mirror images.
    for (int y = 0; y <= bottom / 2; ++y) {
        auto* line = reinterpret_cast<QRgb*>(image.scanLine(y));
        for (int x = 0; x <= right / 2; ++x) {
            const float distance = distanceToEdge(shape, float(x) - float(right) / 2, float(y) - float(bottom) / 2);
            if (distance >= 2 * shape.blur)
                continue;
            // One grain for all four, so that no colour exceeds its alpha.
            const float alpha = light * fallOff(distance, shape.blur);
            const float noise = grain(x, y);
            line[x] = qRgba(
                int(red * alpha + noise), int(green * alpha + noise), int(blue * alpha + noise), int(alpha + noise));
            line[right - x] = line[x];
        }
        std::copy_n(line, image.width(), reinterpret_cast<QRgb*>(image.scanLine(bottom - y)));
    }
    return image;
}

} // namespace

Glow::Glow(QQuickItem* parent)
    : QQuickItem{parent}
{
    setFlag(ItemHasContents);
    connect(this, &Glow::changed, this, &Glow::makeAnew);
}

void Glow::geometryChange(const QRectF& newGeometry, const QRectF& oldGeometry)
{
    QQuickItem::geometryChange(newGeometry, oldGeometry);
    if (newGeometry.size() != oldGeometry.size())
        makeAnew();
}

QSGNode* Glow::updatePaintNode(QSGNode* oldNode, UpdatePaintNodeData*)
{
    std::unique_ptr<QSGImageNode> node{static_cast<QSGImageNode*>(oldNode)};
    if (size().isEmpty() || m_blur <= 0)
        return nullptr;
    if (!node) {
        node.reset(window()->createImageNode());
        node->setOwnsTexture(true);
        // A logical pixel is the finest that this light has. Nearest keeps the renderer on its fast path at any scale.
        node->setFiltering(QSGTexture::Nearest);
        m_isStale = true;
    }
    if (m_isStale) {
        const Shape shape{.size = size(), .radius = float(m_radius), .blur = float(m_blur)};
        const QImage image = paintGlow(shape, m_color);
        node->setTexture(window()->createTextureFromImage(image));
        node->setRect({{double(-reach(shape.blur)), double(-reach(shape.blur))}, QSizeF{image.size()}});
        m_isStale = false;
    }
    return node.release();
}

void Glow::makeAnew()
{
    m_isStale = true;
    update();
}

} // namespace stillgate
