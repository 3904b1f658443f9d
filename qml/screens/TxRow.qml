import QtQuick
import QtQuick.Layouts
import Coinhall

// One ledger line of any list of transactions: a symbol by kind, the payee, the
// category and date (and the account when `showAccount`), "PENDING" while the line is
// not cleared, and the amount with its sign. It shows what it is given and acts on
// nothing itself: a double click asks for the line to be opened, a right click for
// its menu. The roles of TransactionListModel have the same names as its properties.
Item {
    id: root

    // The transaction's kind as stored: "deposit", "expense", "transfer", "royalty" or "bill".
    property string kind: "expense"
    property string payee
    property string category
    // The date as the user reads it ("Mar 4, 2025").
    property string dateText
    property string accountName
    // The amount as exact decimal text ("-45.1").
    property string amount: "0"
    property bool cleared: true
    // Whether the account's name is shown on the line.
    property bool showAccount: false
    // Drawn as the list's current line (keyboard selection).
    property bool current: false

    // The line was double-clicked: open it.
    signal activated
    // The line was clicked.
    signal picked
    // The line's menu was asked for, at (x, y) in the line's coordinates.
    signal menuRequested(real x, real y)

    readonly property string symbol: {
        switch (kind) {
        case "deposit":
            return "arrow.down.circle"
        case "transfer":
            return "arrow.left.arrow.right"
        case "royalty":
            return "music.note"
        case "bill":
            return "doc.text"
        }
        return "arrow.up.circle"
    }
    readonly property string detail: [category, dateText].concat(showAccount && accountName !== "" ? [accountName] : [])
                                     .filter(s => s !== "").join(" · ")

    implicitWidth: plate.implicitWidth
    implicitHeight: plate.implicitHeight

    Accessible.role: Accessible.ListItem
    Accessible.name: [payee, detail, cleared ? "" : "pending", amountText.text].filter(s => s !== "").join(", ")

    RowBG {
        id: plate

        anchors.fill: parent

        RowLayout {
            anchors.fill: parent
            spacing: Tokens.spaceM

            Icon {
                Layout.preferredWidth: 22
                symbol: root.symbol
                size: 18
                color: root.amount.startsWith("-") ? Looks.current.soft : Tokens.positive
            }

            ColumnLayout {
                Layout.fillWidth: true
                spacing: 1

                BodyText {
                    Layout.fillWidth: true
                    text: root.payee
                    font.weight: Font.Bold
                    elide: Text.ElideRight
                }
                CaptionText {
                    Layout.fillWidth: true
                    text: root.detail
                    elide: Text.ElideRight
                }
            }

            Rectangle {
                objectName: "pendingBadge"
                visible: !root.cleared
                // The text's width less the spacing Qt adds after its last letter, so it sits centred.
                implicitWidth: badge.implicitWidth - badge.font.letterSpacing + 2 * Tokens.spaceS
                implicitHeight: badge.implicitHeight + 4
                radius: Tokens.rowRadius
                color: "transparent"
                border.width: 1
                border.color: Looks.current.accent

                BodyText {
                    id: badge

                    x: Tokens.spaceS
                    anchors.verticalCenter: parent.verticalCenter
                    text: "PENDING"
                    font.weight: Font.Bold
                    font.pointSize: Tokens.pt(Tokens.badgeSize)
                    font.letterSpacing: 1
                    color: Looks.current.accent
                }
            }

            AmountText {
                id: amountText

                Layout.alignment: Qt.AlignVCenter
                amount: root.amount
            }
        }
    }

    // The keyboard selection's ring.
    Rectangle {
        anchors.fill: parent
        radius: Tokens.rowRadius
        color: "transparent"
        border.width: 1.5
        border.color: Looks.current.accent2
        visible: root.current
    }

    MouseArea {
        anchors.fill: parent
        acceptedButtons: Qt.LeftButton | Qt.RightButton
        onClicked: mouse => {
            root.picked()
            if (mouse.button === Qt.RightButton)
                root.menuRequested(mouse.x, mouse.y)
        }
        onDoubleClicked: mouse => {
            if (mouse.button === Qt.LeftButton)
                root.activated()
        }
        onPressAndHold: mouse => root.menuRequested(mouse.x, mouse.y)
    }
}
