import QtQuick
import Coinhall

// A slotted screw head: a 9-point disc shaded from light warm grey at the top-left to
// dark warm grey, with a straight slot across its centre.
Item {
    id: root

    // Drawn at three times its size so it stays sharp when the window is zoomed.
    readonly property real resolution: 3

    implicitWidth: Tokens.screwSize
    implicitHeight: Tokens.screwSize

    Accessible.ignored: true

    Canvas {
        id: canvas

        width: root.width * root.resolution
        height: root.height * root.resolution
        scale: 1 / root.resolution
        transformOrigin: Item.TopLeft
        renderTarget: Canvas.Image

        onWidthChanged: requestPaint()
        onHeightChanged: requestPaint()
        onPaint: {
            const ctx = getContext("2d")
            const r = Math.min(width, height) / 2
            ctx.reset()
            if (r <= 0)
                return
            const face = ctx.createRadialGradient(r * 0.55, r * 0.55, 0, r * 0.55, r * 0.55, r * 1.6)
            face.addColorStop(0, Qt.rgba(196 / 255, 189 / 255, 184 / 255, 1))
            face.addColorStop(1, Qt.rgba(86 / 255, 79 / 255, 74 / 255, 1))
            ctx.fillStyle = face
            ctx.beginPath()
            ctx.arc(r, r, r, 0, 2 * Math.PI, false)
            ctx.fill()
            ctx.strokeStyle = Qt.rgba(0, 0, 0, 0.5)
            ctx.lineWidth = r * 0.26
            ctx.lineCap = "butt"
            ctx.beginPath()
            ctx.moveTo(r * 0.22, r)
            ctx.lineTo(r * 1.78, r)
            ctx.stroke()
        }
    }
}
