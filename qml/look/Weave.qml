import QtQuick

// The carbon-fibre texture of the carbon look: a dark base with small rounded cells
// on an 8-point grid, each shaded by a short white gradient, alternating direction
// like a twill weave.
Item {
    id: root

    // Corner radius of the shape the weave fills.
    property real radius: 0
    // Drawn at twice its size so it stays sharp when the window is zoomed.
    readonly property real resolution: 2
    readonly property real cell: 8

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
            const k = root.resolution
            const w = width, h = height
            ctx.reset()
            if (w <= 0 || h <= 0)
                return
            ctx.save()
            roundedPath(ctx, w, h, root.radius * k)
            ctx.clip()
            ctx.fillStyle = "#0E0F11"
            ctx.fillRect(0, 0, w, h)

            const step = root.cell * k
            const inset = 0.6 * k
            const length = step - 2 * inset
            const thick = step / 2 - 1.2 * k
            const along = ctx.createLinearGradient(0, 0, length, 0)
            along.addColorStop(0, Qt.rgba(1, 1, 1, 0.11))
            along.addColorStop(0.5, Qt.rgba(1, 1, 1, 0.04))
            along.addColorStop(1, Qt.rgba(1, 1, 1, 0.0))
            const across = ctx.createLinearGradient(0, 0, 0, length)
            across.addColorStop(0, Qt.rgba(1, 1, 1, 0.07))
            across.addColorStop(0.5, Qt.rgba(1, 1, 1, 0.02))
            across.addColorStop(1, Qt.rgba(1, 1, 1, 0.0))

            for (let row = 0; row * step < h; ++row) {
                for (let col = 0; col * step < w; ++col) {
                    const x = col * step, y = row * step
                    ctx.save()
                    ctx.translate(x + inset, y + inset)
                    if ((row + col) % 2 === 0) {
                        // Horizontal strands: two bars stacked in the cell.
                        ctx.fillStyle = along
                        cellPath(ctx, 0, 0, length, thick, 1.2 * k)
                        ctx.fill()
                        cellPath(ctx, 0, thick + 1.2 * k, length, thick, 1.2 * k)
                        ctx.fill()
                    } else {
                        // Vertical strands: two bars side by side.
                        ctx.fillStyle = across
                        cellPath(ctx, 0, 0, thick, length, 1.2 * k)
                        ctx.fill()
                        cellPath(ctx, thick + 1.2 * k, 0, thick, length, 1.2 * k)
                        ctx.fill()
                    }
                    ctx.restore()
                }
            }
            ctx.restore()
        }

        function cellPath(ctx: var, x: real, y: real, w: real, h: real, r: real) {
            ctx.beginPath()
            ctx.roundedRect(x, y, w, h, r, r)
        }

        function roundedPath(ctx: var, w: real, h: real, r: real) {
            ctx.beginPath()
            ctx.roundedRect(0, 0, w, h, r, r)
        }
    }
}
