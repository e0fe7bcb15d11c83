#pragma once

#include <QObject>
#include <QtQml/qqmlregistration.h>

namespace stillgate
{

/// Whether this desktop's user wants motion. Every animation asks here; whoever knows the desktop's settings sets it.
class Motion : public QObject
{
    Q_OBJECT
    QML_ELEMENT
    QML_SINGLETON

    Q_PROPERTY(bool isReduced READ isReduced WRITE setIsReduced NOTIFY isReducedChanged)

public:
    bool isReduced() const { return m_isReduced; }

    void setIsReduced(bool isReduced)
    {
        if (m_isReduced == isReduced)
            return;
        m_isReduced = isReduced;
        Q_EMIT isReducedChanged();
    }

Q_SIGNALS:
    void isReducedChanged();

private:
    bool m_isReduced = false;
};

} // namespace stillgate
