import QtQuick
import QtQuick.Controls.Basic
import QtQuick.Layouts
import Coinhall

// The rows of a sheet, top to bottom, scrolling once they grow past `maxHeight` so a
// long sheet still fits the smallest window. The field that takes the keyboard focus
// is scrolled into view.
Flickable {
    id: root

    // The tallest the rows are shown before they scroll.
    property real maxHeight: 540
    // The look to draw with.
    property var look: Looks.current
    default property alias rows: column.data

    // Scrolls so that `item`, somewhere inside the rows, is in view.
    function reveal(item: Item) {
        for (let p = item; p; p = p.parent) {
            if (p === column) {
                const top = item.mapToItem(column, 0, 0).y
                const bottom = top + item.height
                if (top < contentY)
                    contentY = Math.max(0, top - Tokens.spaceS)
                else if (bottom > contentY + height)
                    contentY = Math.min(contentHeight - height, bottom - height + Tokens.spaceS)
                return
            }
        }
    }

    Layout.fillWidth: true
    Layout.preferredHeight: Math.min(column.implicitHeight, maxHeight)
    implicitWidth: column.implicitWidth
    contentWidth: width
    contentHeight: column.implicitHeight
    clip: contentHeight > height
    boundsBehavior: Flickable.StopAtBounds

    ScrollBar.vertical: ScrollBar {
        policy: root.contentHeight > root.height ? ScrollBar.AlwaysOn : ScrollBar.AlwaysOff
    }

    Connections {
        target: root.Window.window
        function onActiveFocusItemChanged() {
            const item = root.Window.window ? root.Window.window.activeFocusItem : null
            if (item && root.contentHeight > root.height)
                root.reveal(item)
        }
    }

    ColumnLayout {
        id: column

        width: root.width - (root.contentHeight > root.height ? Tokens.spaceL : 0)
        spacing: Tokens.spaceM
    }
}
