#pragma once

#include <QColor>
#include <QQuickPaintedItem>
#include <qqmlregistration.h>

namespace stillgate
{

/// A symbol of the icon list, filled from top to bottom with a gradient.
class GradientSymbol : public QQuickPaintedItem
{
    Q_OBJECT
    QML_ELEMENT

    Q_PROPERTY(QString symbol MEMBER m_symbol NOTIFY changed REQUIRED)
    Q_PROPERTY(QColor from MEMBER m_from NOTIFY changed REQUIRED)
    Q_PROPERTY(QColor to MEMBER m_to NOTIFY changed REQUIRED)

public:
    explicit GradientSymbol(QQuickItem* parent = nullptr);

    void paint(QPainter* painter) override;

Q_SIGNALS:
    void changed();

private:
    QString m_symbol;
    QColor m_from;
    QColor m_to;
};

} // namespace stillgate
