import QtQuick
import QtQuick.Templates as T
import Coinhall

// A rack key: a rounded button with a vertical gradient face and a 1-point rim, its
// label the optional icon (a system symbol name in `icon.name`) followed by the
// title. `lit` draws it in the look's accent; `wide` gives it more room at the sides.
// Space and Return press it; clicked (or the assigned `action`) does its work. A key
// with an icon and no title needs an Accessible.name of its own.
T.AbstractButton {
    id: root

    // The caption; the same as `text`.
    property alias title: root.text
    // Drawn highlighted: the current screen's key, or a primary action.
    property bool lit: false
    // Extra horizontal padding.
    property bool wide: false
    // Destructive: the caption in the fixed warning red.
    property bool destructive: false

    readonly property color labelColor: !enabled ? Looks.current.muted
                                        : lit ? Looks.current.bg
                                        : destructive ? Tokens.destructive
                                        : Looks.current.text
    readonly property color faceTop: lit ? Qt.lighter(Looks.current.accent, 1.18) : Qt.lighter(Looks.current.panelTop, 1.25)
    readonly property color faceBottom: lit ? Qt.darker(Looks.current.accent, 1.3) : Looks.current.panelBottom
    // Pressed keys darken; hovered ones lighten a little.
    readonly property real faceShade: down ? 1.25 : hovered ? 0.92 : 1

    implicitWidth: Math.max(implicitBackgroundWidth, implicitContentWidth + leftPadding + rightPadding)
    implicitHeight: Math.max(Tokens.keyHeight, implicitContentHeight + topPadding + bottomPadding)
    leftPadding: wide ? Tokens.keyWidePadding : Tokens.keyPadding
    rightPadding: leftPadding
    topPadding: Tokens.spaceS
    bottomPadding: Tokens.spaceS
    focusPolicy: Qt.StrongFocus
    hoverEnabled: true
    opacity: enabled ? 1 : 0.55

    Accessible.role: Accessible.Button
    Accessible.name: text
    Accessible.onPressAction: activate()

    Keys.onReturnPressed: event => root.pressKey(event)
    Keys.onEnterPressed: event => root.pressKey(event)

    // Does what a click does: runs the assigned action, or emits clicked.
    function activate() {
        if (!enabled)
            return
        if (action)
            action.trigger(root)
        else
            clicked()
    }

    function pressKey(event: var) {
        event.accepted = enabled
        activate()
    }

    contentItem: Row {
        spacing: Tokens.spaceS

        Icon {
            anchors.verticalCenter: parent.verticalCenter
            visible: root.icon.name !== ""
            symbol: root.icon.name
            size: Tokens.keyIconSize
            color: root.labelColor
        }

        BodyText {
            anchors.verticalCenter: parent.verticalCenter
            text: root.text
            visible: text !== ""
            font.weight: Font.Bold
            font.pointSize: Tokens.pt(Tokens.keySize)
            color: root.labelColor
            Accessible.ignored: true
        }
    }

    background: Rectangle {
        implicitWidth: Tokens.keyHeight
        implicitHeight: Tokens.keyHeight
        radius: Tokens.keyRadius
        border.width: 1
        border.color: root.lit ? Qt.lighter(Looks.current.accent, 1.3) : Looks.current.line
        gradient: Gradient {
            GradientStop { position: 0; color: Qt.darker(root.faceTop, root.faceShade) }
            GradientStop { position: 1; color: Qt.darker(root.faceBottom, root.faceShade) }
        }

        // A second ring for keyboard focus, outside the rim.
        Rectangle {
            anchors.fill: parent
            anchors.margins: -2
            radius: Tokens.keyRadius + 2
            color: "transparent"
            // Whole pixels: the software renderer draws a fractional rim's corners apart
            // from OpenGL's.
            border.width: 2
            border.color: Looks.current.accent2
            visible: root.visualFocus
        }
    }
}
