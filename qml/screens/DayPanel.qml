import QtQuick
import QtQuick.Layouts
import Coinhall

// Everything on the picked day of the calendar, or a note asking to pick one.
Panel {
    id: root

    // The picked day's map (see CalendarMonth), or null.
    property var day: null

    objectName: "pickedPanel"

    ColumnLayout {
        anchors.fill: parent
        spacing: Tokens.spaceS

        Label2 {
            Layout.fillWidth: true
            text: root.day ? Fmt.date(root.day.date) : "Day"
        }

        ListRows {
            id: itemRows

            spacing: Tokens.spaceS
            model: root.day ? root.day.items : []

            delegate: DayItem {
                required property var modelData

                objectName: "pickedItem"
                width: itemRows.cellWidth
                item: modelData
                size: Tokens.bodySize
            }
        }

        EmptyNote {
            objectName: "pickedNote"
            Layout.fillWidth: true
            visible: !root.day || root.day.items.length === 0
            text: root.day ? "Nothing on this day." : "Pick a day to see everything on it."
        }

        Item {
            Layout.fillHeight: true
        }
    }
}
