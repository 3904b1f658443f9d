pragma ComponentBehavior: Bound
import QtQuick
import QtQuick.Controls.Basic
import QtQuick.Layouts
import Coinhall

// A labelled picker of the Store's active accounts, in the Book's order. `selection`
// is the chosen account's id; an id that is not offered (none, or an account archived
// since) shows no account as chosen.
Item {
    id: root

    property string label
    // The chosen account's id; empty for none. Two-way: write it back with onSelectionChanged.
    property string selection
    // The Store whose accounts are offered.
    property QtObject store: Store
    readonly property alias box: box
    readonly property alias accounts: accounts

    implicitWidth: row.implicitWidth
    implicitHeight: row.implicitHeight
    Layout.fillWidth: true

    ActiveAccounts {
        id: accounts

        store: root.store
    }

    RowLayout {
        id: row

        anchors.fill: parent
        spacing: Tokens.spaceM

        BodyText {
            Layout.preferredWidth: Tokens.fieldLabelWidth
            text: root.label
            font.weight: Font.DemiBold
            color: Looks.current.soft
            elide: Text.ElideRight
            Accessible.ignored: true
        }

        ComboBox {
            id: box

            Layout.fillWidth: true
            implicitHeight: Tokens.fieldHeight
            model: accounts
            textRole: "name"
            valueRole: "accountId"
            currentIndex: accounts.count >= 0 ? accounts.indexOf(root.selection) : -1
            displayText: currentIndex < 0 ? "" : currentText
            font.family: Tokens.textFamily
            font.pointSize: Tokens.pt(Tokens.bodySize)
            Accessible.name: root.label

            onActivated: index => root.selection = accounts.idAt(index)

            contentItem: Text {
                leftPadding: Tokens.spaceM
                rightPadding: box.indicator.width + Tokens.spaceS
                text: box.displayText
                font: box.font
                color: Looks.current.text
                verticalAlignment: Text.AlignVCenter
                elide: Text.ElideRight
                textFormat: Text.PlainText
            }

            indicator: Icon {
                x: box.width - width - Tokens.spaceS
                y: (box.height - height) / 2
                symbol: "chevron.up.chevron.down"
                size: 16
                color: Looks.current.muted
            }

            background: Rectangle {
                radius: Tokens.keyRadius
                color: Looks.current.bg
                border.width: box.visualFocus ? 1.5 : 1
                border.color: box.visualFocus || box.popup.visible ? Looks.current.accent : Looks.current.line
            }

            delegate: ItemDelegate {
                id: option

                required property int index
                required property string name

                width: ListView.view ? ListView.view.width : implicitWidth
                highlighted: box.highlightedIndex === index
                text: name
                font: box.font

                contentItem: Text {
                    text: option.text
                    font: option.font
                    color: Looks.current.text
                    verticalAlignment: Text.AlignVCenter
                    elide: Text.ElideRight
                    textFormat: Text.PlainText
                }

                background: Rectangle {
                    color: option.highlighted ? Qt.rgba(Looks.current.accent.r, Looks.current.accent.g, Looks.current.accent.b, 0.28)
                                              : "transparent"
                    radius: Tokens.rowRadius
                }
            }

            // The list opens above the zoomed content, so it takes the zoom itself.
            popup.scale: QFZoom.value
            popup.transformOrigin: Popup.TopLeft
            popup.background: Rectangle {
                radius: Tokens.wellRadius
                color: Looks.current.well
                border.width: 1
                border.color: Looks.current.line
            }
        }
    }
}
