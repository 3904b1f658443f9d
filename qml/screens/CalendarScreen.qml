pragma ComponentBehavior: Bound
import QtQuick
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
    readonly property alias grid: monthGrid.grid
    // The picked day's map (see CalendarMonth), or null.
    readonly property var pickedDay: picked > 0 && picked <= calendar.days.length ? calendar.days[picked - 1] : null

    // Asks the root view to open a sheet (a CHSheet value).
    signal openSheet(var sheet)
    // Asks the root view to switch to another screen (its key, for example "bills").
    signal showScreen(string screen)

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
        lines: monthGrid.itemLines
        // QML numbers the weekdays from Sunday = 0, the calendar from Monday = 1 to Sunday = 7.
        firstDayOfWeek: root.locale.firstDayOfWeek === 0 ? 7 : root.locale.firstDayOfWeek
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
                    BodyText {
                        objectName: "headerLine"
                        Layout.fillWidth: true
                        text: calendar.headerText
                        font.weight: Font.DemiBold
                        color: Looks.current.soft
                        wrapMode: Text.WordWrap
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

            CalendarGrid {
                id: monthGrid

                Layout.fillWidth: true
                Layout.alignment: Qt.AlignTop
                calendar: root.calendar
                locale: root.locale
                picked: root.picked
                cursor: root.cursor
                room: screen.height - headerPanel.height - screen.spacing - Tokens.spaceM
                onDayChosen: day => root.pick(day)
                onCursorMoved: days => root.moveCursor(days)
            }

            DayPanel {
                Layout.preferredWidth: 230
                Layout.fillHeight: true
                day: root.pickedDay
            }
        }
    }
}
