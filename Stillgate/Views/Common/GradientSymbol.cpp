#include "Views/Common/GradientSymbol.h"

#include <QPainter>
#include <QQuickWindow>
#include <QSvgRenderer>

namespace stillgate
{

GradientSymbol::GradientSymbol(QQuickItem* parent)
    : QQuickPaintedItem(parent)
{
    connect(this, &GradientSymbol::changed, this, [this] { update(); });
}

void GradientSymbol::paint(QPainter* painter)
{
    const auto scale = window() != nullptr ? window()->effectiveDevicePixelRatio() : 1.0;
    QImage image{(size() * scale).toSize(), QImage::Format_ARGB32_Premultiplied};
    image.fill(Qt::transparent);
    QPainter mask{&image};
    QSvgRenderer{":/stillgate/icons/" + m_symbol + ".svg"}.render(&mask);
    QLinearGradient gradient{0, 0, 0, static_cast<qreal>(image.height())};
    gradient.setColorAt(0, m_from);
    gradient.setColorAt(1, m_to);
    mask.setCompositionMode(QPainter::CompositionMode_SourceIn);
    mask.fillRect(image.rect(), gradient);
    mask.end();
    painter->drawImage(boundingRect(), image);
}

} // namespace stillgate
