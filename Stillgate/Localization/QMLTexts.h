#pragma once

#include "Localization/L.h"

#include <QObject>
#include <QVariantMap>
#include <qqmlregistration.h>

namespace stillgate
{

/// The texts of this process, in QML: `L.text("streak.days", {"count": 3})`.
class QMLTexts : public QObject
{
    Q_OBJECT
    QML_NAMED_ELEMENT(L)
    QML_SINGLETON

public:
    [[nodiscard]] Q_INVOKABLE QString text(const QString& key, const QVariantMap& parameters = {}) const;
};

} // namespace stillgate
