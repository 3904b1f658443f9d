import QtQuick
import QtQuick.Controls

// A scroll bar that is either always shown or not at all (`shown`), with no fading:
// the stock one fades its handle out over 650 ms after it was last on, and a bar that
// is on for a moment while a window first lays itself out would keep the window
// drawing for most of a second after it appears.
ScrollBar {
    id: control

    property bool shown: false

    policy: shown ? ScrollBar.AlwaysOn : ScrollBar.AlwaysOff
    contentItem: Rectangle {
        implicitWidth: control.interactive ? 6 : 2
        implicitHeight: control.interactive ? 6 : 2
        radius: width / 2
        color: control.pressed ? control.palette.dark : control.palette.mid
        opacity: 0.75
    }
}
