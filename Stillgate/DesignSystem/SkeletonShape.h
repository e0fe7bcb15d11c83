#pragma once

#include "DesignSystem/ShimmerBand.h"

#include <QPointer>
#include <QQuickPaintedItem>
#include <QtQml/qqmlregistration.h>

namespace stillgate
{

/// A placeholder with round corners. Inside a ShimmerBand it shows its part of the light that passes.
class SkeletonShape : public QQuickPaintedItem
{
    Q_OBJECT
    QML_ELEMENT

    Q_PROPERTY(double radius MEMBER m_radius NOTIFY radiusChanged)

public:
    explicit SkeletonShape(QQuickItem* parent = nullptr);

    void paint(QPainter* painter) override;

Q_SIGNALS:
    void radiusChanged();

protected:
    void itemChange(ItemChange change, const ItemChangeData& data) override;

private:
    void findBand();
    void followBand();
    bool isLit() const;

    double m_radius = 0;
    bool m_wasLit = false;
    QPointer<ShimmerBand> m_band;
};

} // namespace stillgate
