pragma ComponentBehavior: Bound
import QtQuick
import QtQuick.Controls.Basic
import QtQuick.Layouts
import Coinhall

// One month as a grid of days, weeks starting on the locale's first weekday. Each
// day lists the bills falling due, the royalties expected and the money that came in
// and went out; the header line totals the month's bills and expected royalties.
// Clicking a day (or Return or Space on the keyboard's day) lists everything on it.
// The month and the picked day live only as long as the screen.
Item {
    id: root

    // Whose weeks and weekday names the grid follows.
    property var locale: Qt.locale()
    // The picked day of the shown month (1-31), or 0 for none.
    property int picked: 0
    // The day the keyboard is on (1-31).
    property int cursor: calendar.today > 0 ? calendar.today : 1
    readonly property alias calendar: calendar
    readonly property alias grid: grid
    // The picked day's map (see CalendarMonth), or null.
    readonly property var pickedDay: picked > 0 && picked <= calendar.days.length ? calendar.days[picked - 1] : null

    // Colours of the item kinds.
    readonly property color royaltyBlue: "#60A5FA"
    readonly property color moneyOutGrey: "#9CA3AF"

    // Asks the root view to open a sheet (a CHSheet value).
    signal openSheet(var sheet)
    // Asks the root view to switch to another screen (its key, for example "bills").
    signal showScreen(string screen)

    function toneColor(tone: string): color {
        switch (tone) {
        case "overdue":
            return Tokens.destructive
        case "royalty":
            return royaltyBlue
        case "in":
            return Tokens.positive
        case "out":
            return moneyOutGrey
        }
        return Looks.current.video
    }

    // Shows another month; nothing is picked there yet.
    function stepMonth(months: int) {
        calendar.step(months)
        picked = 0
        cursor = calendar.today > 0 ? calendar.today : 1
    }
    function showToday() {
        calendar.showToday()
        picked = 0
        cursor = calendar.today
    }
    function pick(day: int) {
        cursor = day
        picked = day
    }
    // Moves the keyboard's day by `days`, into the next or previous month when it
    // runs over, and picks it.
    function moveCursor(days: int) {
        let day = cursor + days
        if (day < 1) {
            calendar.step(-1)
            day += calendar.days.length
        } else if (day > calendar.days.length) {
            day -= calendar.days.length
            calendar.step(1)
        }
        pick(day)
    }

    CalendarMonth {
        id: calendar

        store: Store
        lines: grid.itemLines
        // QML numbers the weekdays from Sunday = 0, the calendar from Monday = 1 to Sunday = 7.
        firstDayOfWeek: root.locale.firstDayOfWeek === 0 ? 7 : root.locale.firstDayOfWeek
    }

    // A cell's item lines: their type size, the room around and between them.
    readonly property real itemSize: 10
    readonly property real chipPadding: 2
    readonly property real lineGap: 2
    readonly property real cellMargin: 5

    FontMetrics {
        id: itemFont

        font.family: Tokens.textFamily
        font.pointSize: Tokens.pt(root.itemSize)
    }

    ScreenColumn {
        id: screen

        anchors.fill: parent

        Panel {
            id: headerPanel

            Layout.fillWidth: true

            RowLayout {
                anchors.fill: parent
                spacing: Tokens.spaceL

                ColumnLayout {
                    Layout.fillWidth: true
                    Layout.minimumWidth: 200
                    spacing: Tokens.spaceS

                    ScreenTitle {
                        Layout.fillWidth: true
                        title: "Calendar"
                        subtitle: "Bills due (orange), royalties expected (blue) and what actually came and went."
                    }
                    Text {
                        objectName: "headerLine"
                        Layout.fillWidth: true
                        text: calendar.headerText
                        font.family: Tokens.textFamily
                        font.weight: Font.DemiBold
                        font.pointSize: Tokens.pt(Tokens.bodySize)
                        color: Looks.current.soft
                        wrapMode: Text.WordWrap
                        textFormat: Text.PlainText
                    }
                }

                Key {
                    objectName: "previousMonthKey"
                    Layout.alignment: Qt.AlignVCenter
                    icon.name: "chevron.left"
                    Accessible.name: "Previous month"
                    onClicked: root.stepMonth(-1)
                }
                Text {
                    objectName: "monthTitle"
                    Layout.alignment: Qt.AlignVCenter
                    // Wide enough for the longest month name, so the keys stay put while stepping.
                    Layout.preferredWidth: Math.max(implicitWidth, monthWidth.advanceWidth("September 2000"))
                                           + Tokens.spaceM
                    horizontalAlignment: Text.AlignHCenter
                    text: calendar.title
                    font.family: Tokens.displayFamily
                    font.weight: Font.Bold
                    font.pointSize: Tokens.pt(15)
                    color: Looks.current.text
                    textFormat: Text.PlainText
                    Accessible.role: Accessible.Heading
                    Accessible.name: text

                    FontMetrics {
                        id: monthWidth

                        font.family: Tokens.displayFamily
                        font.weight: Font.Bold
                        font.pointSize: Tokens.pt(15)
                    }
                }
                Key {
                    objectName: "nextMonthKey"
                    Layout.alignment: Qt.AlignVCenter
                    icon.name: "chevron.right"
                    Accessible.name: "Next month"
                    onClicked: root.stepMonth(1)
                }
                Key {
                    objectName: "todayKey"
                    Layout.alignment: Qt.AlignVCenter
                    title: "Today"
                    onClicked: root.showToday()
                }
            }
        }

        RowLayout {
            Layout.fillWidth: true
            Layout.bottomMargin: Tokens.spaceM
            spacing: Tokens.spaceM

            Panel {
                id: gridPanel

                Layout.fillWidth: true
                Layout.alignment: Qt.AlignTop

                ColumnLayout {
                    anchors.fill: parent
                    spacing: Tokens.spaceS

                    // The weekday headings, in the grid's order.
                    Row {
                        id: weekdays

                        objectName: "weekdays"
                        Layout.fillWidth: true
                        spacing: grid.spacing

                        Repeater {
                            model: 7

                            Label2 {
                                required property int index

                                objectName: "weekdayName"
                                width: grid.cellWidth
                                text: root.locale.dayName((root.locale.firstDayOfWeek + index) % 7, Locale.ShortFormat)
                            }
                        }
                    }

                    Grid {
                        id: grid

                        readonly property real cellWidth: (width - 6 * spacing) / 7
                        readonly property int rows: Math.ceil((calendar.leadingBlanks + calendar.days.length) / 7)
                        // One item line: a chip, or the shorter "+<n> more" line plus the padding.
                        readonly property real lineStep: Math.ceil(itemFont.height) + root.chipPadding + root.lineGap
                        // Room for the day number, four items and the "+<n> more" line.
                        readonly property real fullCellHeight: 2 * root.cellMargin + dayFont.height
                                                               + 5 * lineStep - root.chipPadding
                        // The height the screen leaves for the grid, so that every week is in view.
                        readonly property real room: screen.height - headerPanel.height - screen.spacing
                                                     - Tokens.spaceM - gridPanel.topPadding - gridPanel.bottomPadding
                                                     - weekdays.height - Tokens.spaceS
                        // As tall as that room allows, never shorter than 92; then the screen scrolls.
                        readonly property real cellHeight: Math.max(92, Math.min(fullCellHeight,
                                                                                 Math.floor((room - (rows - 1) * spacing) / rows)))
                        // The item lines a cell has room for; fewer than five list fewer items.
                        readonly property int itemLines: Math.floor((cellHeight - 2 * root.cellMargin - dayFont.height
                                                                     + root.chipPadding) / lineStep)

                        objectName: "monthGrid"
                        Layout.fillWidth: true
                        columns: 7
                        spacing: Tokens.spaceXS
                        activeFocusOnTab: true
                        Accessible.role: Accessible.Table
                        Accessible.name: calendar.title

                        Keys.onPressed: event => {
                            switch (event.key) {
                            case Qt.Key_Left:
                                root.moveCursor(-1)
                                break
                            case Qt.Key_Right:
                                root.moveCursor(1)
                                break
                            case Qt.Key_Up:
                                root.moveCursor(-7)
                                break
                            case Qt.Key_Down:
                                root.moveCursor(7)
                                break
                            case Qt.Key_Return:
                            case Qt.Key_Enter:
                            case Qt.Key_Space:
                                root.pick(root.cursor)
                                break
                            default:
                                return
                            }
                            event.accepted = true
                        }

                        FontMetrics {
                            id: dayFont

                            font.family: Tokens.textFamily
                            font.weight: Font.ExtraBold
                            font.pointSize: Tokens.pt(12)
                        }

                        // The leading blanks, then one cell per day.
                        Repeater {
                            model: calendar.leadingBlanks + calendar.days.length

                            Rectangle {
                                id: cell

                                required property int index
                                // The day's map, or null for a blank before the first day.
                                readonly property var day: index >= calendar.leadingBlanks
                                                           ? calendar.days[index - calendar.leadingBlanks] : null
                                // The hover help: every item as "<title>: <amount>", one a line.
                                readonly property string help: day ? day.help : ""
                                readonly property bool isPicked: day !== null && root.picked === day.day
                                readonly property bool isCursor: day !== null && grid.activeFocus
                                                                 && root.cursor === day.day

                                objectName: day ? "dayCell" : "blankCell"
                                width: grid.cellWidth
                                height: grid.cellHeight
                                // A blank still takes its place in the grid, which skips hidden cells.
                                radius: 6
                                color: day === null ? "transparent"
                                                    : isPicked ? Qt.rgba(Looks.current.accent.r, Looks.current.accent.g,
                                                                         Looks.current.accent.b, 0.16)
                                                               : Qt.rgba(0, 0, 0, hover.hovered ? 0.28 : 0.18)
                                border.width: day === null ? 0 : day.today ? 2 : 1
                                border.color: day && day.today ? Looks.current.accent
                                                               : Qt.rgba(Looks.current.line.r, Looks.current.line.g,
                                                                         Looks.current.line.b, 0.8)
                                Accessible.role: Accessible.Cell
                                Accessible.name: day ? day.day + (day.help ? ", " + day.help.split("\n").join(", ") : "")
                                                     : ""
                                Accessible.ignored: day === null

                                ToolTip.visible: hover.hovered && help !== ""
                                ToolTip.delay: 400
                                ToolTip.text: help

                                HoverHandler {
                                    id: hover
                                }
                                TapHandler {
                                    onTapped: {
                                        if (!cell.day)
                                            return
                                        root.pick(cell.day.day)
                                        grid.forceActiveFocus(Qt.MouseFocusReason)
                                    }
                                }

                                Column {
                                    anchors.fill: parent
                                    anchors.margins: root.cellMargin
                                    spacing: root.lineGap

                                    Text {
                                        objectName: "dayNumber"
                                        width: parent.width
                                        text: cell.day ? String(cell.day.day) : ""
                                        font: dayFont.font
                                        color: cell.day && cell.day.today ? Looks.current.accent : Looks.current.soft
                                        textFormat: Text.PlainText
                                    }

                                    Repeater {
                                        model: cell.day ? cell.day.items.slice(0, cell.day.shown) : []

                                        ItemChip {
                                            required property var modelData

                                            objectName: "cellItem"
                                            width: cell.width - 2 * root.cellMargin
                                            size: root.itemSize
                                            padding: root.chipPadding
                                            item: modelData
                                            tone: root.toneColor(modelData.tone)
                                        }
                                    }

                                    Text {
                                        objectName: "moreText"
                                        width: parent.width
                                        visible: text !== ""
                                        text: cell.day ? cell.day.moreText : ""
                                        font: itemFont.font
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
                        }
                    }
                }
            }

            // Everything on the picked day.
            Panel {
                objectName: "pickedPanel"
                Layout.preferredWidth: 230
                Layout.fillHeight: true

                ColumnLayout {
                    anchors.fill: parent
                    spacing: Tokens.spaceS

                    Label2 {
                        Layout.fillWidth: true
                        text: root.pickedDay ? Fmt.date(root.pickedDay.date) : "Day"
                    }

                    ListRows {
                        id: itemRows

                        spacing: Tokens.spaceS
                        model: root.pickedDay ? root.pickedDay.items : []

                        delegate: ItemChip {
                            required property var modelData

                            objectName: "pickedItem"
                            width: itemRows.cellWidth
                            item: modelData
                            tone: root.toneColor(modelData.tone)
                            size: Tokens.bodySize
                        }
                    }

                    EmptyNote {
                        objectName: "pickedNote"
                        Layout.fillWidth: true
                        visible: !root.pickedDay || root.pickedDay.items.length === 0
                        text: root.pickedDay ? "Nothing on this day." : "Pick a day to see everything on it."
                    }

                    Item {
                        Layout.fillHeight: true
                    }
                }
            }
        }
    }

    // One item: a bar in its colour, the title and the amount.
    component ItemChip: Rectangle {
        id: chip

        property var item: ({})
        // The item's colour.
        property color tone: Tokens.positive
        property real size: 10.5
        // Room above and below the text, together.
        property real padding: 2

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
        Text {
            id: chipTitle

            objectName: "itemTitle"
            anchors.left: parent.left
            anchors.leftMargin: 6
            anchors.right: chipAmount.left
            anchors.rightMargin: 3
            anchors.verticalCenter: parent.verticalCenter
            text: chip.item.title || ""
            font.family: Tokens.textFamily
            font.weight: Font.DemiBold
            font.pointSize: Tokens.pt(chip.size)
            color: Looks.current.text
            elide: Text.ElideRight
            textFormat: Text.PlainText
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
}
