#pragma once

#include "App/SessionData.h"
#include "Views/Common/RowsModel.h"

#include <QObject>
#include <qqmlregistration.h>

namespace stillgate
{

/// A device of the account, as it is shown.
struct DeviceRow
{
    Q_GADGET
    QML_VALUE_TYPE(deviceRow)
    Q_PROPERTY(QString name MEMBER name CONSTANT)
    Q_PROPERTY(QString symbol MEMBER symbol CONSTANT)
    Q_PROPERTY(QString platform MEMBER platform CONSTANT)
    Q_PROPERTY(bool isOwnPlatform MEMBER isOwnPlatform CONSTANT)
    Q_PROPERTY(bool isActive MEMBER isActive CONSTANT)
    Q_PROPERTY(QString stateText MEMBER stateText CONSTANT)

public:
    QString id;
    QString name;
    QString symbol;
    QString platform;           ///< as the server has it
    bool isOwnPlatform = false; ///< it may be this device: nothing else tells which one is
    bool isActive = false;
    QString stateText;

    bool operator==(const DeviceRow&) const = default;
};

[[nodiscard]] DeviceRow deviceRow(const SGDevice& device);

/// The devices of the account, which can be looked at.
class DevicesViewModel : public QObject
{
    Q_OBJECT
    QML_ELEMENT
    QML_UNCREATABLE("made with its tab")

    Q_PROPERTY(QAbstractItemModel* devices READ devices CONSTANT)
    Q_PROPERTY(bool isEmpty READ isEmpty NOTIFY changed)

public:
    explicit DevicesViewModel(SessionData& session);

    [[nodiscard]] QAbstractItemModel* devices() { return &m_devices; }

    [[nodiscard]] bool isEmpty() const { return m_devices.rows().isEmpty(); }

Q_SIGNALS:
    void changed();

private:
    void update();

    SessionData& m_session;
    RowsModel<DeviceRow> m_devices;
    QPropertyNotifier m_notifier;
};

} // namespace stillgate
