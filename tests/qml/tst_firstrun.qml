import QtQuick
import QtTest
import Coinhall

// The help opens by itself on the very first run, and never again. This file runs in
// a process of its own, so its settings start empty, like a fresh installation's.
TestCase {
    id: testCase

    name: "FirstRun"
    width: 1380
    height: 900
    visible: true
    when: windowShown

    Component {
        id: rootComponent

        RootView {
            width: 1380
            height: 900
        }
    }

    function test_helpOpensOnceOnTheFirstRunOnly() {
        compare(Prefs.welcomed, false)

        const first = createTemporaryObject(rootComponent, testCase)
        const window = first.helpWindow
        tryCompare(window, "visible", true)
        waitForRendering(window.contentItem)
        compare(window.title, "QFS Coinhall Help")
        compare(window.view.topic, 0)
        compare(findChild(window.contentItem, "helpTitle").text, "Welcome")
        // A window of its own: the main view opens no sheet for it.
        compare(first.sheet, null)
        compare(first.sheetHost.view, null)
        compare(Prefs.welcomed, true)
        mouseClick(findChild(window.contentItem, "helpDone"))
        tryCompare(window, "visible", false)
        first.destroy()
        wait(0)

        const second = createTemporaryObject(rootComponent, testCase)
        waitForRendering(second)
        verify(!second.helpWindow.visible)
        compare(second.sheet, null)
    }
}
