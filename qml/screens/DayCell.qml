import QtQuick
import QtQuick.Controls.Basic
import Coinhall

// One cell of the month grid: the day's number, as many of its items as `lines`
// allows and a "+<n> more" line, its items as hover help. A blank before the first
// day (day null) still takes its place in the grid, which skips hidden cells.
Rectangle {
    id: cell

    // The day's map (see CalendarMonth), or null for a blank.
    property var day: null
    property bool isPicked: false
    // The keyboard is on this day.
    property bool isCursor: false
    // Type faces of the day number and of the item lines.
    property font dayFont
    property font itemFont
    property real itemSize: 10
    property real chipPadding: 2
    property real lineGap: 2
    property real margin: 5
    // The hover help: every item as "<title>: <amount>", one a line.
    readonly property string help: day ? day.help : ""

    // The day was clicked.
    signal tapped

    objectName: day ? "dayCell" : "blankCell"
    radius: 6
    color: day === null ? "transparent"
                        : isPicked ? Qt.rgba(Looks.current.accent.r, Looks.current.accent.g, Looks.current.accent.b, 0.16)
                                   : Qt.rgba(0, 0, 0, hover.hovered ? 0.28 : 0.18)
    border.width: day === null ? 0 : day.today ? 2 : 1
    border.color: day && day.today ? Looks.current.accent
                                   : Qt.rgba(Looks.current.line.r, Looks.current.line.g, Looks.current.line.b, 0.8)
    Accessible.role: Accessible.Cell
    Accessible.name: day ? day.day + (day.help ? ", " + day.help.split("\n").join(", ") : "") : ""
    Accessible.ignored: day === null

    ToolTip.visible: hover.hovered && help !== ""
    ToolTip.delay: 400
    ToolTip.text: help

    HoverHandler {
        id: hover
    }
    TapHandler {
        onTapped: {
            if (cell.day)
                cell.tapped()
        }
    }

    Column {
        anchors.fill: parent
        anchors.margins: cell.margin
        spacing: cell.lineGap

        Text {
            objectName: "dayNumber"
            width: parent.width
            text: cell.day ? String(cell.day.day) : ""
            font: cell.dayFont
            color: cell.day && cell.day.today ? Looks.current.accent : Looks.current.soft
            textFormat: Text.PlainText
        }

        Repeater {
            model: cell.day ? cell.day.items.slice(0, cell.day.shown) : []

            DayItem {
                required property var modelData

                objectName: "cellItem"
                width: cell.width - 2 * cell.margin
                size: cell.itemSize
                padding: cell.chipPadding
                item: modelData
            }
        }

        Text {
            objectName: "moreText"
            width: parent.width
            visible: text !== ""
            text: cell.day ? cell.day.moreText : ""
            font: cell.itemFont
            color: Looks.current.muted
            textFormat: Text.PlainText
        }
    }

    // The keyboard's day.
    Rectangle {
        anchors.fill: parent
        anchors.margins: -2
        radius: 8
        color: "transparent"
        border.width: 1.5
        border.color: Looks.current.accent2
        visible: cell.isCursor
    }
}
