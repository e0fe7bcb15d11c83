#include "Views/Devices/DevicesViewModel.h"

#include "Views/Common/TextOf.h"

#include <algorithm>

namespace stillgate
{

namespace
{

QString symbolOf(const std::string& platform)
{
    static constexpr struct
    {
        std::string_view platform;
        const char* symbol;
    } symbols[] = {
        {"ios", "iphone"},
        {"macos", "laptopcomputer"},
        {"windows", "desktopcomputer"},
        {"chrome", "globe"},
    };

    const auto* row = std::ranges::find(symbols, platform, [](const auto& each) { return each.platform; });
    return row != std::end(symbols) ? row->symbol : "display";
}

} // namespace

DeviceRow deviceRow(const SGDevice& device)
{
    return {
        .id = QString::fromStdString(device.id),
        .name = QString::fromStdString(device.deviceName),
        .symbol = symbolOf(device.platform),
        .platform = QString::fromStdString(device.platform),
        .isOwnPlatform = device.platform == ownPlatform,
        .isActive = device.isActive,
        .stateText = textOf(device.isActive ? "devices.active" : "devices.inactive"),
    };
}

DevicesViewModel::DevicesViewModel(SessionData& session)
    : m_session(session)
    , m_notifier(session.devices.addNotifier([this] { update(); }))
{
    update();
}

void DevicesViewModel::update()
{
    QList<DeviceRow> rows;
    for (const auto& device : m_session.devices.value())
        rows.push_back(deviceRow(device));
    m_devices.setRows(std::move(rows));
    Q_EMIT changed();
}

} // namespace stillgate
