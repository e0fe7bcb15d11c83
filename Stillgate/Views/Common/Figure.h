#pragma once

#include <QColor>
#include <QObject>
#include <qqmlregistration.h>

namespace stillgate
{

/// What a StatCard shows.
struct Figure
{
    Q_GADGET
    QML_VALUE_TYPE(figure)
    Q_PROPERTY(QString title MEMBER title CONSTANT)
    Q_PROPERTY(QString value MEMBER value CONSTANT)
    Q_PROPERTY(QString symbol MEMBER symbol CONSTANT)
    Q_PROPERTY(QColor color MEMBER color CONSTANT)

public:
    QString title;
    QString value;
    QString symbol;
    QColor color;
};

} // namespace stillgate
