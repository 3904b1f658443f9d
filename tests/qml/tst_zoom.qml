import QtQuick
import QtQuick.Controls
import QtTest
import Coinhall
import "helpers.js" as H

// Whole-window zoom. The zoomed window and sheets are tst_window's, a level kept over a
// restart a journey's.
TestCase {
    id: testCase

    name: "Zoom"
    width: 1380
    height: 900
    visible: true
    when: windowShown

    function cleanup() {
        QFZoom.actualSize()
    }

    // A factor as the menu, another program or an older Coinhall left it, stepped.
    function test_storedAndStepped_data() {
        return [{ tag: "in from 85%", stored: 0.85, step: "zoomIn", times: 7, value: 1.9 },
                { tag: "in stops at 200%", stored: 1.9, step: "zoomIn", times: 2, value: 2 },
                { tag: "out from 200%", stored: 2, step: "zoomOut", times: 2, value: 1.7 },
                { tag: "in from 150%, off the steps", stored: 1.5, step: "zoomIn", times: 3, value: 1.95 },
                { tag: "in from below the least", stored: 0.5, step: "zoomIn", times: 1, value: 1 },
                { tag: "out from below the least", stored: 0.5, step: "zoomOut", times: 1, value: 0.85 },
                { tag: "out from above the most", stored: 3, step: "zoomOut", times: 1, value: 1.85 },
                { tag: "nothing or not a number", stored: NaN, times: 0, value: 1 },
                { tag: "rounded up", stored: 1.235, times: 0, value: 1.24 },
                { tag: "above the most", stored: 7, times: 0, value: 2 },
                { tag: "below zero", stored: -3, times: 0, value: 0.85 }]
    }
    function test_storedAndStepped(row) {
        Prefs.zoom = row.stored
        for (let i = 0; i < row.times; ++i)
            QFZoom[row.step]()
        compare(QFZoom.value, row.value)
        if (row.times > 0)
            compare(Prefs.zoom, row.value, "stored as shown")
    }

    // The menu opens above the zoomed content, so it grows with the zoom itself.
    function test_shortcutsAndTheMenu() {
        const menu = H.make(testCase, testCase, "QFZoomCommands {}")
        for (const [key, value] of [[Qt.Key_Plus, 1.15], [Qt.Key_Minus, 1.0], [Qt.Key_Minus, 0.85], [Qt.Key_0, 1.0]]) {
            keyClick(key, Qt.ControlModifier)
            compare(Prefs.zoom, value)
        }
        QFZoom.setValue(1.999)
        compare(Prefs.zoom, 2.0, "a value is stored rounded")
        QFZoom.actualSize()
        menu.open()
        const item = menu.itemAt(0)
        tryVerify(() => item.height > 0)
        const [height, width, size] = [item.height, menu.width, menu.font.pointSize]
        QFZoom.setValue(2.0)
        tryCompare(item, "height", Math.round(height * 2), 1000, "item height at 200%")
        compare([menu.font.pointSize, menu.width >= width * 1.9], [size * 2, true], "menu width " + menu.width + " was " + width)
        menu.close()
    }

    // Pop-ups too, drawn twice as large at 200%, right beside what opened them.
    function test_popUpsFollowTheZoom() {
        QFZoom.setLevel(200)
        const host = H.make(testCase, testCase, "QFZoomHost { width: 1380; height: 900; property alias choice: choice; "
                            + "property alias dateField: dateField; property alias hinted: hinted; "
                            + "FormChoice { id: choice; x: 100; y: 100; width: 420; label: \"Category\"; model: [\"Rent\", \"Tax\"] } "
                            + "Text { id: hinted; x: 600; y: 100; text: \"Hinted\"; ToolTip.text: \"A hint\" } "
                            + "FormDateField { id: dateField; x: 100; y: 200; width: 420; label: \"Due\" } }")
        // Where a pop-up, once open, is drawn, having checked it is drawn twice as large.
        const drawn = popup => {
            tryVerify(() => popup.opened)
            const r = H.sceneRect(popup.background)
            fuzzyCompare(r.height, popup.background.height * 2, 0.5)
            return r
        }
        const choice = host.choice.box
        choice.popup.open()
        const [box, list] = [H.sceneRect(choice), drawn(choice.popup)]
        verify(Math.abs(list.x - box.x) <= 1 && Math.abs(list.width - box.width) <= 1, "the list's width and place")
        verify(Math.abs(list.y - (box.y + box.height)) <= 4, "list at " + list.y + ", box ends at " + (box.y + box.height))
        choice.popup.close()
        // Near the window's foot it opens upwards, whole.
        host.choice.y = 420
        choice.popup.open()
        const raised = drawn(choice.popup)
        verify(raised.y + raised.height <= Math.min(host.height + 0.5, H.sceneRect(choice).y + 4),
               "list ends at " + (raised.y + raised.height))
        choice.popup.close()
        host.dateField.popup.open()
        const [button, grid] = [H.sceneRect(host.dateField.button), drawn(host.dateField.popup)]
        verify(Math.abs(grid.x + grid.width - button.x - button.width) <= 1 && grid.y >= button.y + button.height,
               "grid at " + grid.x + ", " + grid.y + "; button at " + button.x + ", " + button.y)
        host.dateField.popup.close()
        host.hinted.ToolTip.visible = true
        const [hint, text] = [drawn(host.hinted.ToolTip.toolTip), H.sceneRect(host.hinted)]
        verify(Math.abs(hint.x + hint.width / 2 - text.x - text.width / 2) <= 1 && hint.y + hint.height <= text.y,
               "tip at " + hint.x + ", " + hint.y + "; text at " + text.x + ", " + text.y)
        host.hinted.ToolTip.visible = false
    }

    // Laid out at the window's size over the zoom, never below the least; scrolled when larger.
    function test_hostLaysOutAtTheLogicalSizeAndScrollsWhenLarger() {
        const host = H.make(testCase, testCase, "QFZoomHost { width: 1380; height: 900; minSize: Qt.size(1180, 760); "
                            + "property alias page: page; Item { id: page; anchors.fill: parent } }")
        compare([host.page.width, host.page.height, host.scrollsH || host.scrollsV], [1380, 900, false])
        QFZoom.setLevel(200)
        compare([host.page.width, host.page.height, host.scrollsH && host.scrollsV], [1180, 760, true])
        compare(host.page.mapToItem(host, 100, 50), Qt.point(200, 100))
        mouseWheel(host, 600, 400, -120 * 50, -120 * 50)
        compare(host.page.mapToItem(host, 1180, 760), Qt.point(1380, 900))
        QFZoom.setLevel(85)
        fuzzyCompare(host.page.width, 1380 / 0.85, 0.01)
        compare([host.scrollsH || host.scrollsV, host.page.mapToItem(host, 0, 0)], [false, Qt.point(0, 0)])
    }
}
