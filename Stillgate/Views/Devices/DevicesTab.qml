import QtQuick
import QtQuick.Layouts
import Stillgate.DesignSystem
import Stillgate.Localization
import Stillgate.Views.Common
import Stillgate.Views.Devices

TabPage {
    id: page

    required property DevicesViewModel viewModel

    title: L.text("devices.title")

    EmptyState {
        visible: page.viewModel.isEmpty
        symbol: "laptopcomputer.and.iphone"
        title: L.text("devices.noDevices")
    }
    ColumnLayout {
        visible: !page.viewModel.isEmpty
        spacing: Tokens.space8

        Repeater {
            model: page.viewModel.devices

            DeviceRow {}
        }
    }
}
