import QtQuick

// The kit's colours. The defaults are the kit's own, used until the application
// hands over its theme (QFSKitHost.theme).
QtObject {
    property color bg: Qt.rgba(0.08, 0.08, 0.08, 1)
    property color text: "white"
    property color dim: Qt.rgba(0.65, 0.65, 0.65, 1)
    property color rim: Qt.rgba(1, 1, 1, 0.25)
    property color accent: "#0A84FF"
    property color panelTop: Qt.rgba(0.22, 0.22, 0.22, 1)
    property color panelBottom: Qt.rgba(0.12, 0.12, 0.12, 1)
}
