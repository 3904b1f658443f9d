import QtQuick
import Coinhall

// One ledger line of any list of transactions: a symbol by kind, the payee, the
// category and date (and the account when `showAccount`), "PENDING" while the line is
// not cleared, and the amount with its sign. It shows what it is given and acts on
// nothing itself: a double click asks for the line to be opened, a right click for
// its menu. The roles of TransactionListModel have the same names as its properties.
// It takes the width it is given; its height follows its texts.
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
    readonly property string detail: joined(joined(category, dateText, " · "), showAccount ? accountName : "", " · ")

    // `a` and `b` with `separator` between them, or the one that is not empty.
    function joined(a: string, b: string, separator: string): string {
        return a === "" ? b : b === "" ? a : a + separator + b
    }

    implicitHeight: plate.implicitHeight

    Accessible.role: Accessible.ListItem
    Accessible.name: joined(joined(joined(payee, detail, ", "), cleared ? "" : "pending", ", "), amountText.text, ", ")

    // The parts are placed by hand, not by a RowLayout: the register makes rows by the
    // dozen while it scrolls, and a layout's size hints lay each elided text out twice.
    // Widths are whole points and centred parts sit on whole points, as a layout puts them.
    RowBG {
        id: plate

        anchors.fill: parent

        Item {
            id: line

            anchors.fill: parent
            implicitHeight: Math.max(icon.implicitHeight, texts.height, amountText.implicitHeight,
                                     badge.active ? badge.implicitHeight : 0)

            Icon {
                id: icon

                width: 22
                y: Math.round((line.height - height) / 2)
                symbol: root.symbol
                size: 18
                color: root.amount.startsWith("-") ? Looks.current.soft : Tokens.positive
            }

            Item {
                id: texts

                x: icon.width + Tokens.spaceM
                y: Math.round((line.height - height) / 2)
                width: (badge.active ? badge.x : amountText.x) - Tokens.spaceM - x
                height: payeeText.height + 1 + detailText.height

                BodyText {
                    id: payeeText

                    width: texts.width
                    text: root.payee
                    font.weight: Font.Bold
                    elide: Text.ElideRight
                }
                CaptionText {
                    id: detailText

                    y: payeeText.height + 1
                    width: texts.width
                    text: root.detail
                    elide: Text.ElideRight
                }
            }

            // Made only for a line that is not cleared: most lines are.
            Loader {
                id: badge

                x: amountText.x - Tokens.spaceM - width
                y: Math.round((line.height - height) / 2)
                width: Math.ceil(implicitWidth)
                active: !root.cleared

                sourceComponent: Rectangle {
                    objectName: "pendingBadge"
                    // The text's width less the spacing Qt adds after its last letter, so it sits centred.
                    implicitWidth: badgeText.implicitWidth - badgeText.font.letterSpacing + 2 * Tokens.spaceS
                    implicitHeight: badgeText.implicitHeight + 4
                    radius: Tokens.rowRadius
                    color: "transparent"
                    border.width: 1
                    border.color: Looks.current.accent

                    BodyText {
                        id: badgeText

                        x: Tokens.spaceS
                        anchors.verticalCenter: parent.verticalCenter
                        text: "PENDING"
                        font.weight: Font.Bold
                        font.pointSize: Tokens.pt(Tokens.badgeSize)
                        font.letterSpacing: 1
                        color: Looks.current.accent
                    }
                }
            }

            AmountText {
                id: amountText

                x: line.width - width
                y: Math.round((line.height - height) / 2)
                width: Math.ceil(implicitWidth)
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
