import QtQuick
import QtQuick.Controls
import QtQuick.Layouts
import Coinhall

// Shown while a large money file is read after the window appears: what is read and
// how far. Nothing of the books exists to be changed until the reading is done.
Curtain {
    id: root

    symbol: "doc.text"
    title: "OPENING YOUR BOOKS"

    BodyText {
        Layout.fillWidth: true
        horizontalAlignment: Text.AlignHCenter
        text: Store.loadingText
        color: Looks.current.muted
        wrapMode: Text.WordWrap
        Accessible.role: Accessible.StaticText
        Accessible.name: text
    }
    ProgressBar {
        id: bar

        objectName: "loadingProgress"
        Layout.fillWidth: true
        value: Store.loadProgress
        focus: true
        Accessible.name: "Reading your money file"
        background: Rectangle {
            implicitHeight: 10
            radius: height / 2
            color: Looks.current.well
            border.width: 1
            border.color: Looks.current.line
        }
        contentItem: Item {
            Rectangle {
                width: bar.visualPosition * parent.width
                height: parent.height
                radius: height / 2
                color: Looks.current.accent
            }
        }
    }
}
