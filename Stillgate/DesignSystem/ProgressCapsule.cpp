#include "DesignSystem/ProgressCapsule.h"

#include "DesignSystem/Gradients.h"
#include "DesignSystem/Tokens.h"

#include <QPainter>
#include <QPainterPath>

#include <algorithm>

namespace stillgate
{

namespace
{

QPainterPath capsule(const QRectF& rect)
{
    QPainterPath path;
    path.addRoundedRect(rect, rect.height() / 2, rect.height() / 2);
    return path;
}

} // namespace

ProgressCapsule::ProgressCapsule(QQuickItem* parent)
    : QQuickPaintedItem{parent}
{
    setAntialiasing(true);
    connect(this, &ProgressCapsule::changed, this, [this] { update(); });
}

void ProgressCapsule::paint(QPainter* painter)
{
    const QRectF track = boundingRect();
    const double filled = track.width() * std::clamp(m_fraction, 0.0, 1.0);
    painter->fillPath(capsule(track), tokens().sgBgElevated);
    if (filled <= 0)
        return;
    // A fill that is shorter than it is high keeps its round end, and the track cuts the rest.
    const QRectF fill{filled - std::max(filled, track.height()), 0, std::max(filled, track.height()), track.height()};
    painter->fillPath(capsule(track).intersected(capsule(fill)), evenGradient(m_gradient, {}, {filled, 0}));
}

} // namespace stillgate
