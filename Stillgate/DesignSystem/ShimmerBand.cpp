#include "DesignSystem/ShimmerBand.h"

#include "DesignSystem/Tokens.h"

namespace stillgate
{

void ShimmerBand::setPhase(double phase)
{
    if (m_phase == phase)
        return;
    m_phase = phase;
    Q_EMIT moved();
}

QLinearGradient ShimmerBand::gradientAt(double x) const
{
    const Tokens& all = tokens();
    QLinearGradient gradient{start() - x, 0, end() - x, 0};
    gradient.setStops({{0, all.clear}, {0.35, all.sgGlassBorder}, {0.5, all.sgGlassHeavy}, {0.65, all.sgGlassBorder},
        {1, all.clear}});
    return gradient;
}

} // namespace stillgate
