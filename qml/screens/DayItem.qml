import QtQuick
import Coinhall

// One item of a calendar day: a bar in its kind's colour, the title and the amount.
Rectangle {
    id: chip

    // The item's map (see CalendarMonth): title, amountText, tone.
    property var item: ({})
    property real size: 10.5
    // Room above and below the text, together.
    property real padding: 2
    // The item's colour: orange bills (red when overdue), blue royalties, green money in, grey money out.
    readonly property color tone: {
        switch (item.tone) {
        case "overdue":
            return Tokens.destructive
        case "royalty":
            return "#60A5FA"
        case "in":
            return Tokens.positive
        case "out":
            return "#9CA3AF"
        }
        return Looks.current.video
    }

    implicitHeight: Math.ceil(chipTitle.implicitHeight) + padding
    radius: 3
    color: Qt.rgba(tone.r, tone.g, tone.b, 0.22)
    Accessible.role: Accessible.StaticText
    Accessible.name: (item.title || "") + " " + (item.amountText || "")

    Rectangle {
        width: 3
        height: parent.height
        radius: 1.5
        color: chip.tone
    }
    BodyText {
        id: chipTitle

        objectName: "itemTitle"
        anchors.left: parent.left
        anchors.leftMargin: 6
        anchors.right: chipAmount.left
        anchors.rightMargin: 3
        anchors.verticalCenter: parent.verticalCenter
        text: chip.item.title || ""
        font.weight: Font.DemiBold
        font.pointSize: Tokens.pt(chip.size)
        elide: Text.ElideRight
        Accessible.ignored: true
    }
    Text {
        id: chipAmount

        objectName: "itemAmount"
        anchors.right: parent.right
        anchors.rightMargin: 3
        anchors.verticalCenter: parent.verticalCenter
        text: chip.item.amountText || ""
        font.family: Tokens.lcdFamily
        font.pointSize: Tokens.pt(chip.size - 1)
        color: Looks.current.soft
        textFormat: Text.PlainText
        Accessible.ignored: true
    }
}
