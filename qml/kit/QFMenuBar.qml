import QtQuick
import QtQuick.Controls
import Coinhall

// The window's menu bar in the kit's colours. It sits outside the zoom host, so it
// follows the zoom by its own sizes.
//
// Reached by keyboard: F10 opens the first menu and Alt with a menu's underlined
// letter opens that menu (a title "&File" underlines the F and answers Alt+F); the
// arrows move between menus and items, Return chooses, Escape closes the menu and
// the keyboard goes back where it was.
MenuBar {
    id: root

    // Opens the menu at `index` as a keyboard user expects: its first item current.
    function openMenu(index: int) {
        const item = itemAt(index)
        const menu = menuAt(index)
        if (!item || !menu)
            return
        if (!menu.opened)
            item.triggered()
        menu.currentIndex = 0
    }

    // Whether one of the bar's menus is open. Only then does pointing at another title
    // open its menu: with none open, Qt 6.4's bar would open a menu on the way to a
    // click after Escape, and the click would then close it again.
    readonly property bool menuOpen: {
        for (let i = 0; i < count; ++i) {
            const menu = menuAt(i)
            if (menu && menu.visible)
                return true
        }
        return false
    }

    // "&File" as the bar shows it: "File" with the F underlined; "&&" is an ampersand.
    function styledTitle(text: string): string {
        const escape = c => c === "&" ? "&amp;" : c === "<" ? "&lt;" : c === ">" ? "&gt;" : c
        let out = ""
        for (let i = 0; i < text.length; ++i) {
            const c = text[i]
            if (c === "&" && i + 1 < text.length) {
                ++i
                out += text[i] === "&" ? "&amp;" : "<u>" + escape(text[i]) + "</u>"
            } else {
                out += escape(c)
            }
        }
        return out
    }

    // The title without its mnemonic mark, as a screen reader reads it.
    function plainTitle(text: string): string {
        return text.replace(/&(.)/g, "$1")
    }

    font.pointSize: Tokens.pt(13) * QFZoom.value

    Shortcut {
        sequence: "F10"
        onActivated: root.openMenu(0)
    }

    delegate: MenuBarItem {
        id: item

        hoverEnabled: root.menuOpen
        Accessible.name: root.plainTitle(item.text)

        contentItem: Text {
            text: root.styledTitle(item.text)
            textFormat: Text.StyledText
            font: item.font
            color: QFSKitHost.theme.text
            opacity: item.enabled ? 1 : 0.5
            verticalAlignment: Text.AlignVCenter
            Accessible.ignored: true
        }
        background: Rectangle {
            color: item.highlighted ? Qt.rgba(QFSKitHost.theme.accent.r, QFSKitHost.theme.accent.g,
                                              QFSKitHost.theme.accent.b, 0.28) : "transparent"
            radius: 4
        }
    }

    background: Rectangle {
        implicitHeight: Math.round(28 * QFZoom.value)
        color: QFSKitHost.theme.bg

        Rectangle {
            anchors.bottom: parent.bottom
            width: parent.width
            height: 1
            color: QFSKitHost.theme.rim
        }
    }
}
