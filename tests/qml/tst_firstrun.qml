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
            anchors.fill: parent
        }
    }

    function test_helpOpensOnceOnTheFirstRunOnly() {
        const first = createTemporaryObject(rootComponent, testCase)
        tryCompare(first.helpWindow, "visible", true)
        compare(first.helpWindow.view.topic, 0)
        compare(first.sheet, null, "a window of its own, not a sheet")
        first.helpWindow.close()
        first.destroy()
        wait(0)
        const second = createTemporaryObject(rootComponent, testCase)
        waitForRendering(second)
        verify(!second.helpWindow.visible)
    }
}
