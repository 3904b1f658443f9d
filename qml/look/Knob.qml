import QtQuick
import QtQuick.Templates as T
import Coinhall

// A rotary knob over the range from..to. The pointer sweeps 270 degrees from lower
// left through the top to lower right. Dragging up by 150 points sweeps the whole
// range; the arrow keys and the accessibility actions step one twentieth of it.
// Every change the user makes emits `moved`, so a caller can write the value back.
T.Control {
    id: root

    property string label
    property real value: 0
    property real from: 0
    property real to: 1
    // The look to draw with.
    property var look: Looks.current
    // The value when the current drag began; undefined outside a drag.
    property var start: undefined

    // One accessibility or key step: a twentieth of the span.
    readonly property real stepSize: (to - from) / 20
    // The value's position in the range, 0 to 1.
    readonly property real position: to > from ? Math.max(0, Math.min(1, (value - from) / (to - from))) : 0
    // The pointer's angle in degrees, clockwise from straight up.
    readonly property real angle: -135 + 270 * position

    // The user changed the value.
    signal moved

    function clamp(v: real): real {
        return Math.max(Math.min(from, to), Math.min(Math.max(from, to), v))
    }

    function setByUser(v: real) {
        const next = clamp(v)
        if (next === value)
            return
        value = next
        moved()
    }

    function increase() {
        setByUser(value + stepSize)
    }

    function decrease() {
        setByUser(value - stepSize)
    }

    implicitWidth: Math.max(Tokens.knobSize, caption.implicitWidth) + leftPadding + rightPadding
    implicitHeight: Tokens.knobSize + Tokens.spaceXS + caption.implicitHeight + topPadding + bottomPadding
    padding: 2
    focusPolicy: Qt.StrongFocus
    hoverEnabled: true

    Accessible.role: Accessible.Dial
    Accessible.name: label
    Accessible.onIncreaseAction: increase()
    Accessible.onDecreaseAction: decrease()

    Keys.onUpPressed: increase()
    Keys.onRightPressed: increase()
    Keys.onDownPressed: decrease()
    Keys.onLeftPressed: decrease()
    Keys.onPressed: event => {
        if (event.key === Qt.Key_Home) {
            setByUser(from)
            event.accepted = true
        } else if (event.key === Qt.Key_End) {
            setByUser(to)
            event.accepted = true
        }
    }

    onPositionChanged: dial.requestPaint()
    onLookChanged: dial.requestPaint()
    onVisualFocusChanged: dial.requestPaint()

    contentItem: Item {
        Canvas {
            id: dial

            // Drawn at three times its size so it stays sharp when the window is zoomed.
            readonly property real resolution: 3

            x: (parent.width - Tokens.knobSize) / 2
            width: Tokens.knobSize * resolution
            height: Tokens.knobSize * resolution
            scale: 1 / resolution
            transformOrigin: Item.TopLeft
            renderTarget: Canvas.Image

            onPaint: {
                const ctx = getContext("2d")
                const k = resolution
                const c = width / 2
                const face = c - 6 * k
                const ring = c - 2.5 * k
                // Canvas angles run clockwise from three o'clock; ours from twelve.
                const rad = deg => (deg - 90) * Math.PI / 180
                ctx.reset()

                ctx.lineCap = "round"
                ctx.lineWidth = 2.2 * k
                ctx.strokeStyle = root.look.line
                ctx.beginPath()
                ctx.arc(c, c, ring, rad(-135), rad(135), false)
                ctx.stroke()
                if (root.position > 0) {
                    ctx.strokeStyle = root.look.accent
                    ctx.beginPath()
                    ctx.arc(c, c, ring, rad(-135), rad(root.angle), false)
                    ctx.stroke()
                }

                const shade = ctx.createRadialGradient(c - face * 0.35, c - face * 0.45, 0, c, c, face)
                shade.addColorStop(0, "#5A5E66")
                shade.addColorStop(0.55, "#2C2F35")
                shade.addColorStop(1, "#15171B")
                ctx.fillStyle = shade
                ctx.beginPath()
                ctx.arc(c, c, face, 0, 2 * Math.PI, false)
                ctx.fill()
                ctx.lineWidth = 1 * k
                ctx.strokeStyle = root.visualFocus ? root.look.accent2 : Qt.rgba(0, 0, 0, 0.6)
                ctx.stroke()

                ctx.lineWidth = 2.4 * k
                ctx.strokeStyle = root.look.text
                ctx.beginPath()
                ctx.moveTo(c + Math.cos(rad(root.angle)) * face * 0.25, c + Math.sin(rad(root.angle)) * face * 0.25)
                ctx.lineTo(c + Math.cos(rad(root.angle)) * face * 0.85, c + Math.sin(rad(root.angle)) * face * 0.85)
                ctx.stroke()
            }
        }

        Text {
            id: caption

            anchors.horizontalCenter: parent.horizontalCenter
            y: Tokens.knobSize + Tokens.spaceXS
            text: root.label
            font.family: Tokens.textFamily
            font.weight: Font.Bold
            font.pointSize: Tokens.pt(Tokens.knobLabelSize)
            color: root.look.soft
            textFormat: Text.PlainText
            Accessible.ignored: true
        }

        MouseArea {
            property real pressY: 0

            x: dial.x
            width: Tokens.knobSize
            height: Tokens.knobSize
            preventStealing: true

            onPressed: mouse => {
                pressY = mouse.y
                root.start = undefined
                root.forceActiveFocus(Qt.MouseFocusReason)
            }
            onPositionChanged: mouse => {
                if (root.start === undefined)
                    root.start = root.value
                root.setByUser(root.start + (root.to - root.from) * ((mouse.y - pressY) / -Tokens.knobDragSpan))
            }
            onReleased: root.start = undefined
            onCanceled: root.start = undefined
        }
    }
}
