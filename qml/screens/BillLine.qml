import QtQuick
import QtQuick.Layouts
import Coinhall

// One bill as a row: a status dot (green fine, orange due within three days, red
// overdue), the name, the due line, the amount and a "Pay" key; its menu skips,
// edits or deletes the bill.
ScheduleLine {
    id: root

    // The bill to show: a map from BillsBridge (id, name, amountText, dueLine, overdue, soon, ...).
    property var bill: ({})
    // The dot of a bill due within three days: a fixed orange, like the red and green beside it.
    readonly property color soonColor: "#FB923C"

    // "Pay" was pressed.
    signal payRequested

    skipText: "Skip this one"
    editText: "Edit bill…"
    deleteText: "Delete bill"
    Accessible.name: (bill.name || "") + ", " + (bill.amountText || "") + ", " + (bill.dueLine || "")

    Rectangle {
        objectName: "statusDot"
        Layout.alignment: Qt.AlignVCenter
        implicitWidth: 9
        implicitHeight: 9
        radius: 4.5
        color: root.bill.overdue ? Tokens.destructive : root.bill.soon ? root.soonColor : Tokens.positive
    }

    ColumnLayout {
        Layout.fillWidth: true
        spacing: 1

        BodyText {
            objectName: "nameText"
            Layout.fillWidth: true
            text: root.bill.name || ""
            font.weight: Font.Bold
            elide: Text.ElideRight
        }
        CaptionText {
            objectName: "dueText"
            Layout.fillWidth: true
            text: root.bill.dueLine || ""
            font.weight: root.bill.overdue ? Font.ExtraBold : Font.Normal
            color: root.bill.overdue ? Tokens.destructive : Looks.current.muted
            elide: Text.ElideRight
        }
    }

    FigureText {
        objectName: "amountText"
        text: root.bill.amountText || ""
        Accessible.role: Accessible.StaticText
        Accessible.name: text
    }

    Key {
        objectName: "payKey"
        title: "Pay"
        onClicked: root.payRequested()
    }
}
