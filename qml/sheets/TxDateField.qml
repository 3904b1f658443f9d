import QtQuick
import QtQuick.Layouts
import Coinhall

// A day typed as yyyy-MM-dd, with keys for a day earlier and a day later (Down and Up
// in the field do the same). `date` keeps its time of day when the day changes; a text
// that is no date leaves `date` alone, clears `valid` and is flagged under the field.
Item {
    id: root

    // The chosen moment, in milliseconds since the epoch. Two-way: write it back with onDateChanged.
    property double date: Date.now()
    // What a screen reader calls the field: the row's caption.
    property string name: "Date"
    // The look to draw with.
    property var look: Looks.current
    // Whether the typed text is a date.
    readonly property bool valid: !isNaN(days.onDay(date, field.text))
    readonly property alias field: field

    // Moves the date by whole days.
    function shift(count: int) {
        date = days.addDays(date, count)
    }

    implicitWidth: row.implicitWidth
    implicitHeight: column.implicitHeight

    onDateChanged: {
        const text = days.dayText(date)
        if (text !== field.text && !isNaN(date))
            field.text = text
    }
    Component.onCompleted: field.text = days.dayText(date)

    // Only the date helpers: no Store is needed for them.
    LedgerBridge {
        id: days
    }

    ColumnLayout {
        id: column

        width: root.width
        spacing: 2

        RowLayout {
            id: row

            Layout.fillWidth: true
            spacing: Tokens.spaceS

            TxTextField {
                id: field

                Layout.fillWidth: true
                look: root.look
                placeholderText: "yyyy-MM-dd"
                font.family: Tokens.lcdFamily
                inputMethodHints: Qt.ImhDate
                Accessible.name: root.name
                Accessible.description: hint.visible ? hint.text : ""

                onTextEdited: {
                    const moment = days.onDay(root.date, text)
                    if (!isNaN(moment))
                        root.date = moment
                }
                Keys.onUpPressed: root.shift(1)
                Keys.onDownPressed: root.shift(-1)

                background: Rectangle {
                    radius: Tokens.keyRadius
                    color: root.look.bg
                    border.width: field.activeFocus ? 1.5 : 1
                    border.color: !root.valid ? Tokens.destructive
                                  : field.activeFocus ? root.look.accent : root.look.line
                }
            }

            Key {
                objectName: "dayEarlierKey"
                look: root.look
                title: "\u2212"
                Accessible.name: "A day earlier"
                onClicked: root.shift(-1)
            }

            Key {
                objectName: "dayLaterKey"
                look: root.look
                title: "+"
                Accessible.name: "A day later"
                onClicked: root.shift(1)
            }
        }

        Text {
            id: hint

            visible: !root.valid
            text: "Not a date: type it as yyyy-MM-dd"
            font.family: Tokens.textFamily
            font.pointSize: Tokens.pt(Tokens.captionSize)
            color: Tokens.destructive
            textFormat: Text.PlainText
        }
    }
}
