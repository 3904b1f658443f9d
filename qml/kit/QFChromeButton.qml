import QtQuick
import QtQuick.Templates as T
import Coinhall

// The kit's button: a bold label in a capsule with a vertical gradient and a rim.
// Prominent buttons are filled with the accent; compact ones sit closer to their label.
T.Button {
    id: root

    property bool prominent: false
    property bool compact: false

    readonly property color face: prominent ? QFSKitHost.theme.accent : QFSKitHost.theme.panelTop
    readonly property color faceLow: prominent ? Qt.darker(QFSKitHost.theme.accent, 1.25)
                                               : QFSKitHost.theme.panelBottom

    horizontalPadding: compact ? 10 : 16
    verticalPadding: compact ? 4 : 7
    implicitWidth: implicitContentWidth + leftPadding + rightPadding
    implicitHeight: implicitContentHeight + topPadding + bottomPadding
    focusPolicy: Qt.TabFocus

    contentItem: Text {
        text: root.text
        font.pointSize: Tokens.pt(root.compact ? 11 : 12.5)
        font.bold: true
        color: root.prominent ? QFSKitHost.theme.bg : QFSKitHost.theme.text
        opacity: root.enabled ? 1 : 0.45
        horizontalAlignment: Text.AlignHCenter
        verticalAlignment: Text.AlignVCenter
        elide: Text.ElideRight
    }

    background: Rectangle {
        radius: height / 2
        border.width: root.visualFocus ? 2 : 1
        border.color: root.visualFocus ? QFSKitHost.theme.accent : QFSKitHost.theme.rim
        gradient: Gradient {
            GradientStop { position: 0; color: root.down ? Qt.darker(root.face, 1.3) : root.face }
            GradientStop { position: 1; color: root.down ? Qt.darker(root.faceLow, 1.3) : root.faceLow }
        }
    }
}
