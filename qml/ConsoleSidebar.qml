import QtQuick
import QtQuick.Layouts
import Coinhall

// The "Console" sidebar: one key per screen, the current one lit, then the import
// and the help.
Panel {
    id: root

    // The screens in order: key, title (as shown) and symbol.
    property var screens: []
    // The key of the screen shown.
    property string screen

    signal screenChosen(string key)
    // The import key was pressed: the sheet it opens (a CHSheet value).
    signal openSheet(var sheet)
    signal helpRequested

    screws: true
    topPadding: 22
    bottomPadding: 22

    ColumnLayout {
        anchors.fill: parent
        spacing: Tokens.spaceS

        Label2 {
            Layout.bottomMargin: Tokens.spaceXS
            text: "Console"
        }

        Repeater {
            model: root.screens

            Key {
                required property var modelData

                objectName: "screenKey_" + modelData.key
                Layout.fillWidth: true
                title: modelData.title
                icon.name: modelData.icon
                lit: root.screen === modelData.key
                onClicked: root.screenChosen(modelData.key)
            }
        }

        Item {
            Layout.fillHeight: true
        }

        Key {
            objectName: "importKey"
            Layout.fillWidth: true
            title: "Import bank CSV"
            icon.name: "square.and.arrow.down"
            onClicked: root.openSheet(CHSheet.importCSV())
        }
        Key {
            objectName: "helpKey"
            Layout.fillWidth: true
            title: "Help"
            icon.name: "questionmark.circle"
            onClicked: root.helpRequested()
        }
    }
}
