pragma ComponentBehavior: Bound
import QtQuick
import QtQuick.Layouts
import Coinhall

// The calendar's month: the weekday headings and one cell per day after the leading
// blanks, as tall as `room` lets every week show (never shorter than 92 points). The
// arrows move the keyboard's day, Return or Space picks it. The weekday names follow
// the panel's `locale`.
Panel {
    id: root

    // The month shown (a CalendarMonth).
    required property CalendarMonth calendar
    // The picked day (0 for none) and the keyboard's day.
    property int picked: 0
    property int cursor: 1
    // The height the screen leaves for this panel.
    property real room: 0
    readonly property alias grid: grid
    // The item lines a cell has room for; fewer than five list fewer items.
    readonly property int itemLines: Math.floor((grid.cellHeight - 2 * cellMargin - dayMetrics.height + chipPadding)
                                                / grid.lineStep)

    // A cell's item lines: their type size, the room around and between them.
    readonly property real itemSize: 10
    readonly property real chipPadding: 2
    readonly property real lineGap: 2
    readonly property real cellMargin: 5

    // A day was clicked, or picked by Return or Space.
    signal dayChosen(int day)
    // An arrow key moved the keyboard's day by `days`.
    signal cursorMoved(int days)

    FontMetrics {
        id: itemMetrics

        font.family: Tokens.textFamily
        font.pointSize: Tokens.pt(root.itemSize)
    }
    FontMetrics {
        id: dayMetrics

        font.family: Tokens.textFamily
        font.weight: Font.ExtraBold
        font.pointSize: Tokens.pt(12)
    }

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
            readonly property int weeks: Math.ceil((root.calendar.leadingBlanks + root.calendar.days.length) / 7)
            // One item line: a chip, or the shorter "+<n> more" line plus the padding.
            readonly property real lineStep: Math.ceil(itemMetrics.height) + root.chipPadding + root.lineGap
            // Room for the day number, four items and the "+<n> more" line.
            readonly property real fullCellHeight: 2 * root.cellMargin + dayMetrics.height + 5 * lineStep
                                                   - root.chipPadding
            // The height left for the cells, so that every week is in view.
            readonly property real room: root.room - root.topPadding - root.bottomPadding - weekdays.height
                                         - Tokens.spaceS
            // As tall as that room allows, never shorter than 92; then the screen scrolls.
            readonly property real cellHeight: Math.max(92, Math.min(fullCellHeight,
                                                                     Math.floor((room - (weeks - 1) * spacing) / weeks)))

            objectName: "monthGrid"
            Layout.fillWidth: true
            columns: 7
            spacing: Tokens.spaceXS
            activeFocusOnTab: true
            Accessible.role: Accessible.Table
            Accessible.name: root.calendar.title

            Keys.onPressed: event => {
                switch (event.key) {
                case Qt.Key_Left:
                    root.cursorMoved(-1)
                    break
                case Qt.Key_Right:
                    root.cursorMoved(1)
                    break
                case Qt.Key_Up:
                    root.cursorMoved(-7)
                    break
                case Qt.Key_Down:
                    root.cursorMoved(7)
                    break
                case Qt.Key_Return:
                case Qt.Key_Enter:
                case Qt.Key_Space:
                    root.dayChosen(root.cursor)
                    break
                default:
                    return
                }
                event.accepted = true
            }

            // The leading blanks, then one cell per day.
            Repeater {
                model: root.calendar.leadingBlanks + root.calendar.days.length

                DayCell {
                    required property int index

                    day: index >= root.calendar.leadingBlanks
                         ? root.calendar.days[index - root.calendar.leadingBlanks] || null : null
                    isPicked: day !== null && root.picked === day.day
                    isCursor: day !== null && grid.activeFocus && root.cursor === day.day
                    width: grid.cellWidth
                    height: grid.cellHeight
                    dayFont: dayMetrics.font
                    itemFont: itemMetrics.font
                    itemSize: root.itemSize
                    chipPadding: root.chipPadding
                    lineGap: root.lineGap
                    margin: root.cellMargin
                    onTapped: {
                        root.dayChosen(day.day)
                        grid.forceActiveFocus(Qt.MouseFocusReason)
                    }
                }
            }
        }
    }
}
