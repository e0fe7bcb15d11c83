#include "DesignSystem/SkeletonShape.h"

#include "DesignSystem/Tokens.h"

#include <QPainter>

#include <algorithm>

namespace stillgate
{

SkeletonShape::SkeletonShape(QQuickItem* parent)
    : QQuickPaintedItem{parent}
{
    setAntialiasing(true);
    connect(this, &SkeletonShape::radiusChanged, this, [this] { update(); });
}

void SkeletonShape::paint(QPainter* painter)
{
    const double radius = std::min({m_radius, width() / 2, height() / 2});
    painter->setPen(Qt::NoPen);
    painter->setBrush(tokens().sgBgElevated);
    painter->drawRoundedRect(boundingRect(), radius, radius);
    if (!isLit())
        return;
    painter->setBrush(m_band->gradientAt(mapToItem(m_band, QPointF{}).x()));
    painter->drawRoundedRect(boundingRect(), radius, radius);
}

void SkeletonShape::itemChange(ItemChange change, const ItemChangeData& data)
{
    // A shape gets its place in the tree bottom up, and its scene last.
    if (change == ItemSceneChange)
        findBand();
    QQuickPaintedItem::itemChange(change, data);
}

void SkeletonShape::findBand()
{
    if (m_band)
        m_band->disconnect(this);
    m_band = nullptr;
    for (auto* ancestor = parentItem(); ancestor && !m_band; ancestor = ancestor->parentItem())
        m_band = qobject_cast<ShimmerBand*>(ancestor);
    if (m_band)
        connect(m_band, &ShimmerBand::moved, this, &SkeletonShape::followBand);
}

void SkeletonShape::followBand()
{
    const bool isLitNow = isLit();
    if (isLitNow || m_wasLit)
        update();
    m_wasLit = isLitNow;
}

bool SkeletonShape::isLit() const
{
    if (!m_band)
        return false;
    const double left = mapToItem(m_band, QPointF{}).x();
    return left < m_band->end() && left + width() > m_band->start();
}

} // namespace stillgate
