pragma Singleton
import QtQuick
import Coinhall

// The six colour themes of the rack finish and the one the user chose. A look is a
// frozen plain object: id, name, the colours the views draw with and the carbon flag.
QtObject {
    id: root

    // Studio: navy rack gear with amber lights.
    readonly property var studio: make("studio", "Studio", {
        bg: 0x070A12, panelTop: 0x1B2130, panelBottom: 0x0F141F, well: 0x090C14, line: 0x1F2A40,
        text: 0xEEF2F8, soft: 0xC9D2E0, muted: 0x8A96AB, accent: 0xFFAE2E, accent2: 0x3FD0FF,
        video: 0x2F7FB8, lcd: 0xFFAE2E, lcdGlass: 0x1A1206
    }, false)
    // Ice Blue: cool blue anodized metal.
    readonly property var ice: make("ice", "Ice Blue", {
        bg: 0x06111B, panelTop: 0x13283B, panelBottom: 0x0B1B2A, well: 0x050D15, line: 0x1D3A52,
        text: 0xEEF7FD, soft: 0xC6DCEC, muted: 0x8FB0C8, accent: 0x59C2FF, accent2: 0xC4ECFF,
        video: 0x2A6C9A, lcd: 0x8FE3FF, lcdGlass: 0x061520
    }, false)
    // Rose Gold: warm rose gold anodized metal.
    readonly property var rose: make("rose", "Rose Gold", {
        bg: 0x140A0D, panelTop: 0x3A2329, panelBottom: 0x22131A, well: 0x10070A, line: 0x553038,
        text: 0xFFF1F3, soft: 0xF2CFD6, muted: 0xC79AA5, accent: 0xF7A8B8, accent2: 0xF3C9A0,
        video: 0xA8566A, lcd: 0xFFC2CF, lcdGlass: 0x1C0A10
    }, false)
    // Lavender: soft violet anodized metal.
    readonly property var lavender: make("lavender", "Lavender", {
        bg: 0x0D0A16, panelTop: 0x2C2542, panelBottom: 0x1A1529, well: 0x09070F, line: 0x3E3460,
        text: 0xF5F1FF, soft: 0xD9CFF5, muted: 0xA99CC9, accent: 0xC3A6FF, accent2: 0xF0B8E8,
        video: 0x6A54A8, lcd: 0xD8C4FF, lcdGlass: 0x100A1C
    }, false)
    // Carbon: black carbon fiber; the only look whose panels carry the weave.
    readonly property var carbon: make("carbon", "Carbon", {
        bg: 0x111214, panelTop: 0x26272A, panelBottom: 0x161719, well: 0x0C0C0D, line: 0x3A3C42,
        text: 0xF2F3F5, soft: 0xCFD2D8, muted: 0xA2A7B0, accent: 0xE8EBEF, accent2: 0x9AA5B5,
        video: 0x56627A, lcd: 0x8FE3FF, lcdGlass: 0x07131A
    }, true)
    // Graphite: brushed gray aluminium.
    readonly property var graphite: make("graphite", "Graphite", {
        bg: 0x2A2D31, panelTop: 0x5A5F66, panelBottom: 0x3C4046, well: 0x202326, line: 0x6C727A,
        text: 0xF7F8FA, soft: 0xE0E3E8, muted: 0xB5BAC2, accent: 0x7FD0FF, accent2: 0xD8DDE4,
        video: 0x56627A, lcd: 0x9FE6FF, lcdGlass: 0x0B1418
    }, false)

    // The six in the order of the Theme menus.
    readonly property var all: [studio, ice, rose, lavender, carbon, graphite]

    // The look in force: the one whose id the "look" preference holds.
    readonly property var current: named(Prefs.look)

    // The look with this id (case matters); "crimson", the rose look's old id, gives
    // rose; anything else gives studio, so a stored id always yields a usable look.
    function named(id: string): var {
        for (let i = 0; i < all.length; ++i) {
            if (all[i].id === id)
                return all[i]
        }
        return id === "crimson" ? rose : studio
    }

    // Makes `id` the chosen look and stores it under "look".
    function choose(id: string) {
        Prefs.look = id
    }

    // The opaque or translucent colour of a 24-bit 0xRRGGBB value.
    function c(rgb: int, alpha: real): color {
        return Qt.rgba(((rgb >> 16) & 0xFF) / 255, ((rgb >> 8) & 0xFF) / 255, (rgb & 0xFF) / 255, alpha)
    }

    function make(id: string, name: string, rgb: var, carbon: bool): var {
        const look = {
            id: id,
            name: name
        }
        const fields = ["bg", "panelTop", "panelBottom", "well", "line", "text", "soft", "muted", "accent",
                        "accent2", "video", "lcd", "lcdGlass"]
        for (const field of fields)
            look[field] = c(rgb[field], 1)
        look.carbon = carbon
        return Object.freeze(look)
    }
}
