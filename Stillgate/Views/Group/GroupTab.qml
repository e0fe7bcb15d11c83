import QtQuick
import QtQuick.Layouts
import Stillgate.DesignSystem
import Stillgate.Localization
import Stillgate.Views.Common
import Stillgate.Views.Group

TabList {
    id: page

    required property GroupViewModel viewModel

    title: L.text("groups.title")
    subtitle: viewModel.countText
    model: viewModel.rows
    spacing: Tokens.space12

    // qmllint disable unqualified
    below: ColumnLayout {
        ConnectionsSkeletonView {
            Layout.fillWidth: true
            visible: page.viewModel.isLoading
        }
        EmptyState {
            visible: !page.viewModel.isLoading && page.viewModel.isEmpty
            symbol: "person.2.circle"
            title: L.text("groups.title")
            explanation: L.text("devices.noDevicesDesc")
        }
    }

    delegate: Row {
        id: line

        required property var row

        readonly property real cardWidth: (width - spacing) / 2
        readonly property real cardHeight: {
            let tallest = 0;
            for (let index = 0; index < cards.count; ++index)
                tallest = Math.max(tallest, cards.itemAt(index)?.implicitHeight ?? 0);
            return tallest;
        }

        x: page.columnX
        width: page.columnWidth
        spacing: Tokens.space12

        Repeater {
            id: cards

            model: line.row.members

            GroupMemberCard {
                width: line.cardWidth
                height: line.cardHeight
            }
        }
    }
    // qmllint enable unqualified
}
