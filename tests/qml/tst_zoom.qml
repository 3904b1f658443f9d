import QtQuick
import QtQuick.Controls
import QtTest
import Coinhall

// Whole-window zoom: the stored factor, the steps of the View menu, and the host
// that lays the content out at the logical size.
TestCase {
    id: testCase

    name: "Zoom"
    width: 1380
    height: 900
    visible: true
    when: windowShown

    Component {
        id: hostComponent

        QFZoomHost {
            width: 1380
            height: 900
            minSize: Qt.size(1180, 760)

            property alias page: page

            Rectangle {
                id: page

                anchors.fill: parent
                color: "steelblue"
            }
        }
    }

    Component {
        id: popupsComponent

        QFZoomHost {
            width: 1380
            height: 900

            property alias choice: choice
            property alias dateField: dateField
            property alias hinted: hinted

            FormChoice {
                id: choice

                x: 100
                y: 100
                width: 420
                label: "Category"
                model: ["Groceries", "Rent", "Software"]
            }
            Text {
                id: hinted

                x: 600
                y: 100
                text: "Hinted"
                ToolTip.text: "A hint"
            }
            FormDateField {
                id: dateField

                x: 100
                y: 200
                width: 420
                label: "Due"
            }
        }
    }

    Component {
        id: commandsComponent

        QFZoomCommands {}
    }

    function steps(count, stepper) {
        const seen = []
        for (let i = 0; i < count; ++i) {
            stepper()
            seen.push(QFZoom.value.toFixed(2))
        }
        return seen
    }
    // The View menu's steps and their shortcuts, and a stored value as another program
    // (or an older Coinhall) may have left it: rounded, clamped, stepped from its place.
    function test_stepsAndStoredValues() {
        QFZoom.setLevel(85)
        compare(steps(9, QFZoom.zoomIn), ["1.00", "1.15", "1.30", "1.45", "1.60", "1.75", "1.90", "2.00", "2.00"])
        compare(Prefs.zoom, 2.0)
        compare(steps(2, QFZoom.zoomOut), ["1.85", "1.70"])
        // The menu's 150% is off the ladder; stepping from it keeps its own rungs.
        QFZoom.setLevel(150)
        compare(steps(4, QFZoom.zoomIn), ["1.65", "1.80", "1.95", "2.00"])
        const menu = createTemporaryObject(commandsComponent, testCase)
        QFZoom.actualSize()
        keyClick(Qt.Key_Plus, Qt.ControlModifier)
        compare(QFZoom.value, 1.15)
        keyClick(Qt.Key_Minus, Qt.ControlModifier)
        keyClick(Qt.Key_Minus, Qt.ControlModifier)
        compare(QFZoom.value, 0.85)
        keyClick(Qt.Key_0, Qt.ControlModifier)
        compare(Prefs.zoom, 1.0)
        for (const [stored, value] of [[0, 1.0], ["not a number", 1.0], [1.234, 1.23], [1.235, 1.24], [7, 2.0], [-3, 0.85]]) {
            Prefs.zoom = Number(stored)
            compare(QFZoom.value, value, stored)
        }
        // From below the minimum, In goes to 100% and Out to the minimum; from above the
        // maximum, Out steps as if from the maximum.
        for (const [stored, step, value] of [[0.5, QFZoom.zoomIn, 1.0], [0.5, QFZoom.zoomOut, 0.85], [3, QFZoom.zoomOut, 1.85]]) {
            Prefs.zoom = stored
            step()
            compare(QFZoom.value, value, stored)
        }
        QFZoom.setValue(1.999)
        compare(Prefs.zoom, 2.0)
        QFZoom.actualSize()
    }
    // Menus open above the zoomed content, so they grow with the zoom themselves.
    function test_menusFollowTheZoom() {
        const menu = createTemporaryObject(commandsComponent, testCase)
        QFZoom.actualSize()
        menu.open()
        const item = menu.itemAt(0)
        tryVerify(() => item.height > 0)
        const height = item.height
        const width = menu.width
        const size = menu.font.pointSize
        QFZoom.setValue(2.0)
        tryCompare(item, "height", Math.round(height * 2), 1000, "item height at 200%")
        compare(menu.font.pointSize, size * 2)
        verify(menu.width >= width * 1.9, "menu width " + menu.width + " was " + width)
        menu.close()
        QFZoom.actualSize()
    }

    // The scene rectangle of an item, for comparing what is drawn.
    function sceneRect(item) {
        const corner = item.mapToItem(null, 0, 0)
        const end = item.mapToItem(null, item.width, item.height)
        return Qt.rect(corner.x, corner.y, end.x - corner.x, end.y - corner.y)
    }

    // Drop-down lists and the date grid open above the zoomed content too: at 200%
    // they are drawn twice as large, right beside the control that opened them.
    function test_popUpsFollowTheZoom() {
        QFZoom.setLevel(200)
        const host = createTemporaryObject(popupsComponent, testCase)
        const choice = host.choice.box
        choice.popup.open()
        tryVerify(() => choice.popup.opened)
        const box = sceneRect(choice)
        const list = sceneRect(choice.popup.background)
        fuzzyCompare(list.width, box.width, 1)
        fuzzyCompare(list.x, box.x, 1)
        verify(Math.abs(list.y - (box.y + box.height)) <= 4, "list at " + list.y + ", box ends at " + (box.y + box.height))
        const row = choice.popup.contentItem.itemAtIndex(0)
        fuzzyCompare(sceneRect(row).height, row.height * 2, 0.5)
        choice.popup.close()

        // Near the window's foot it opens upwards, whole, as drawn.
        host.choice.y = 420
        choice.popup.open()
        tryVerify(() => choice.popup.opened)
        const raised = sceneRect(choice.popup.background)
        const lowBox = sceneRect(choice)
        verify(raised.y + raised.height <= host.height + 0.5, "list ends at " + (raised.y + raised.height))
        fuzzyCompare(raised.height, choice.popup.background.height * 2, 0.5)
        verify(raised.y + raised.height <= lowBox.y + 4, "list ends at " + (raised.y + raised.height) + ", box starts at " + lowBox.y)
        choice.popup.close()

        const field = host.dateField
        field.popup.open()
        tryVerify(() => field.popup.opened)
        const button = sceneRect(field.button)
        const grid = sceneRect(field.popup.background)
        fuzzyCompare(grid.width, field.popup.background.width * 2, 0.5)
        fuzzyCompare(grid.x + grid.width, button.x + button.width, 1)
        verify(grid.y >= button.y + button.height, "grid at " + grid.y + ", button ends at " + (button.y + button.height))
        field.popup.close()

        host.hinted.ToolTip.visible = true
        const tip = host.hinted.ToolTip.toolTip
        tryVerify(() => tip.opened)
        const hint = sceneRect(tip.background)
        fuzzyCompare(hint.height, tip.background.height * 2, 0.5)
        const text = sceneRect(host.hinted)
        fuzzyCompare(hint.x + hint.width / 2, text.x + text.width / 2, 1)
        verify(hint.y + hint.height <= text.y, "tip ends at " + (hint.y + hint.height) + ", text starts at " + text.y)
        host.hinted.ToolTip.visible = false
        QFZoom.actualSize()
    }

    function test_hostLaysOutAtTheLogicalSizeAndScrollsWhenLarger() {
        QFZoom.actualSize()
        const host = createTemporaryObject(hostComponent, testCase)
        // At 100% a window larger than the minimum shows more content, without scroll bars.
        compare(host.page.width, 1380)
        compare(host.page.height, 900)
        verify(!host.scrollsH && !host.scrollsV)

        // At 200% the content keeps its minimum size, drawn twice as large, and scrolls.
        QFZoom.setLevel(200)
        compare(host.page.width, 1180)
        compare(host.page.height, 760)
        const corner = host.page.mapToItem(host, 100, 50)
        compare(corner.x, 200)
        compare(corner.y, 100)
        verify(host.scrollsH && host.scrollsV)

        // The wheel scrolls the zoomed content, and never past its end.
        mouseWheel(host, 600, 400, -120 * 50, -120 * 50)
        const scrolled = host.page.mapToItem(host, 1180, 760)
        compare(scrolled.x, 1380)
        compare(scrolled.y, 900)

        // At 85% the content is laid out wider than the window, to fill it.
        QFZoom.setLevel(85)
        fuzzyCompare(host.page.width, 1380 / 0.85, 0.01)
        verify(!host.scrollsH && !host.scrollsV)
        const origin = host.page.mapToItem(host, 0, 0)
        compare(origin.x, 0)
        compare(origin.y, 0)
    }
}
