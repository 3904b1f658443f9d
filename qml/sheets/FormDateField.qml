import QtQuick
import QtQuick.Controls.Basic
import QtQuick.Layouts
import Coinhall

// A date row of every sheet: the caption at the left and the day as the app writes
// dates. `date` is an instant in milliseconds since the epoch; picking a day keeps its
// time of day. The field opens a month grid; from the keyboard, Up and Down move a day,
// Page Up and Page Down a month, and Space or Return opens the grid.
FormRow {
    id: root

    // The chosen instant, ms since the epoch. Two-way: write it back with onDateChanged.
    property double date: Date.now()
    readonly property alias button: button
    readonly property alias popup: popup

    // `ms` moved by whole days and months on the local calendar, time of day kept; a
    // month added to the 31st lands on a shorter month's last day.
    function shifted(ms: double, days: int, months: int): double {
        const d = new Date(ms)
        if (months !== 0) {
            const day = d.getDate()
            d.setDate(1)
            d.setMonth(d.getMonth() + months)
            const last = new Date(d.getFullYear(), d.getMonth() + 1, 0).getDate()
            d.setDate(Math.min(day, last))
        }
        if (days !== 0)
            d.setDate(d.getDate() + days)
        return d.getTime()
    }

    // The chosen instant moved to another day, its time of day kept.
    function withDay(year: int, month: int, day: int): double {
        const d = new Date(date)
        d.setFullYear(year, month, day)
        return d.getTime()
    }

    AbstractButton {
        id: button

        implicitWidth: 180
        implicitHeight: Tokens.fieldHeight
        focusPolicy: Qt.StrongFocus
        leftPadding: Tokens.spaceM
        rightPadding: Tokens.spaceS
        text: Fmt.date(root.date)
        Accessible.role: Accessible.ComboBox
        Accessible.name: root.label
        Accessible.description: text

        onClicked: popup.open()
        Keys.onPressed: event => {
            switch (event.key) {
            case Qt.Key_Up:
                root.date = root.shifted(root.date, 1, 0)
                break
            case Qt.Key_Down:
                root.date = root.shifted(root.date, -1, 0)
                break
            case Qt.Key_PageUp:
                root.date = root.shifted(root.date, 0, 1)
                break
            case Qt.Key_PageDown:
                root.date = root.shifted(root.date, 0, -1)
                break
            case Qt.Key_Return:
            case Qt.Key_Enter:
                popup.open()
                break
            default:
                return
            }
            event.accepted = true
        }

        contentItem: RowLayout {
            spacing: Tokens.spaceS

            BodyText {
                Layout.fillWidth: true
                text: button.text
                elide: Text.ElideRight
                verticalAlignment: Text.AlignVCenter
            }
            Icon {
                symbol: "calendar"
                size: 15
                color: Looks.current.muted
            }
        }

        background: Rectangle {
            radius: Tokens.keyRadius
            color: Looks.current.bg
            border.width: button.visualFocus ? 1.5 : 1
            border.color: button.visualFocus || popup.visible ? Looks.current.accent : Looks.current.line
        }

        Popup {
            id: popup

            // The month on show: it starts at the chosen date's month.
            property int shownYear: new Date(root.date).getFullYear()
            property int shownMonth: new Date(root.date).getMonth()

            function turn(months: int) {
                const d = new Date(shownYear, shownMonth + months, 1)
                shownYear = d.getFullYear()
                shownMonth = d.getMonth()
            }

            // Opens above the zoomed content, so it takes the zoom itself.
            scale: QFZoom.value
            transformOrigin: Popup.TopLeft
            x: button.width - width
            y: button.height + Tokens.spaceXS
            padding: Tokens.spaceM
            focus: true
            modal: false
            closePolicy: Popup.CloseOnEscape | Popup.CloseOnPressOutside

            onAboutToShow: {
                shownYear = new Date(root.date).getFullYear()
                shownMonth = new Date(root.date).getMonth()
            }

            background: Rectangle {
                radius: Tokens.wellRadius
                color: Looks.current.well
                border.width: 1
                border.color: Looks.current.line
            }

            contentItem: ColumnLayout {
                spacing: Tokens.spaceS

                RowLayout {
                    Layout.fillWidth: true

                    Key {
                        icon.name: "chevron.left"
                        Accessible.name: "Previous month"
                        onClicked: popup.turn(-1)
                    }
                    BodyText {
                        Layout.fillWidth: true
                        horizontalAlignment: Text.AlignHCenter
                        text: Fmt.month(new Date(popup.shownYear, popup.shownMonth, 15).getTime())
                        font.weight: Font.Bold
                    }
                    Key {
                        icon.name: "chevron.right"
                        Accessible.name: "Next month"
                        onClicked: popup.turn(1)
                    }
                }

                DayOfWeekRow {
                    Layout.fillWidth: true
                    locale: grid.locale
                    // The calendar types hand their delegates a context property, not required ones.
                    delegate: Text {
                        text: model.shortName
                        horizontalAlignment: Text.AlignHCenter
                        font.family: Tokens.textFamily
                        font.pointSize: Tokens.pt(Tokens.captionSize)
                        color: Looks.current.muted
                        textFormat: Text.PlainText
                    }
                }

                MonthGrid {
                    id: grid

                    Layout.fillWidth: true
                    implicitWidth: 7 * 34
                    year: popup.shownYear
                    month: popup.shownMonth
                    locale: Qt.locale()

                    delegate: Rectangle {
                        id: cell

                        readonly property int day: model.day
                        readonly property int month: model.month
                        readonly property int year: model.year
                        readonly property bool today: model.today

                        readonly property bool chosen: {
                            const d = new Date(root.date)
                            return d.getFullYear() === year && d.getMonth() === month && d.getDate() === day
                        }

                        implicitWidth: 30
                        implicitHeight: 26
                        radius: Tokens.rowRadius
                        color: chosen ? Looks.current.accent : cellMouse.containsMouse ? Qt.rgba(1, 1, 1, 0.08) : "transparent"
                        border.width: today && !chosen ? 1 : 0
                        border.color: Looks.current.accent

                        CaptionText {
                            anchors.centerIn: parent
                            text: cell.day
                            color: cell.chosen ? Looks.current.bg
                                   : cell.month === popup.shownMonth ? Looks.current.text : Looks.current.muted
                        }

                        MouseArea {
                            id: cellMouse

                            anchors.fill: parent
                            hoverEnabled: true
                            onClicked: {
                                root.date = root.withDay(cell.year, cell.month, cell.day)
                                popup.close()
                            }
                        }
                    }
                }
            }
        }
    }
}
