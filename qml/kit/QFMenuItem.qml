import QtQuick
import QtQuick.Controls
import QtQuick.Layouts
import Coinhall

// A menu item in the kit's colours that shows its action's shortcut at the right.
MenuItem {
    id: root

    // The shortcut as the platform writes it ("Ctrl++"), empty without one.
    readonly property string shortcutText: action && action.shortcut !== undefined ? keys.nativeText : ""

    implicitWidth: Math.max(Math.round(200 * QFZoom.value), implicitContentWidth + leftPadding + rightPadding)

    // Only for its text: a disabled shortcut never takes a key.
    Shortcut {
        id: keys

        enabled: false
        sequence: root.action && root.action.shortcut !== undefined ? root.action.shortcut : ""
    }

    indicator: Text {
        x: root.leftPadding
        y: (root.height - height) / 2
        width: Math.round(18 * QFZoom.value)
        visible: root.checkable
        text: root.checked ? "\u2713" : ""
        font: root.font
        color: QFSKitHost.theme.accent
    }

    arrow: Text {
        x: root.width - width - root.rightPadding
        y: (root.height - height) / 2
        visible: root.subMenu !== null
        text: "\u203A"
        font.pointSize: Tokens.pt(18) * QFZoom.value
        color: QFSKitHost.theme.dim
    }

    contentItem: RowLayout {
        spacing: Math.round(24 * QFZoom.value)

        Text {
            Layout.fillWidth: true
            leftPadding: root.checkable ? root.indicator.width + root.spacing : 0
            rightPadding: root.subMenu ? root.arrow.width : 0
            text: root.text
            font: root.font
            color: root.enabled ? QFSKitHost.theme.text : QFSKitHost.theme.dim
            opacity: root.enabled ? 1 : 0.6
            elide: Text.ElideRight
            verticalAlignment: Text.AlignVCenter
        }
        Text {
            visible: root.shortcutText !== ""
            text: root.shortcutText
            font: root.font
            color: QFSKitHost.theme.dim
            verticalAlignment: Text.AlignVCenter
        }
    }

    background: Rectangle {
        implicitHeight: Math.round(30 * QFZoom.value)
        color: root.highlighted ? Qt.rgba(QFSKitHost.theme.accent.r, QFSKitHost.theme.accent.g,
                                          QFSKitHost.theme.accent.b, 0.28) : "transparent"
    }
}
