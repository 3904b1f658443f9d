import QtQuick
import QtQuick.Controls
import Coinhall

// The View menu's zoom commands: Zoom In, Zoom Out, Actual Size and the Zoom Level submenu.
QFMenu {
    id: root

    title: "&View"

    Action {
        text: "Zoom In"
        shortcut: StandardKey.ZoomIn
        onTriggered: QFZoom.zoomIn()
    }
    Action {
        text: "Zoom Out"
        shortcut: StandardKey.ZoomOut
        onTriggered: QFZoom.zoomOut()
    }
    Action {
        text: "Actual Size (100%)"
        shortcut: "Ctrl+0"
        onTriggered: QFZoom.actualSize()
    }

    QFMenu {
        id: levels

        title: "Zoom Level"

        Instantiator {
            model: QFZoom.levels

            QFMenuItem {
                required property int modelData

                text: modelData + "%"
                checkable: true
                checked: Math.round(QFZoom.value * 100) === modelData
                onTriggered: {
                    QFZoom.setLevel(modelData)
                    // A click toggles the item by itself; the zoom decides what is checked.
                    checked = Qt.binding(() => Math.round(QFZoom.value * 100) === modelData)
                }
            }

            onObjectAdded: (index, object) => levels.insertItem(index, object)
            onObjectRemoved: (index, object) => levels.removeItem(object)
        }
    }
}
