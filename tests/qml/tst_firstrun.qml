import QtQuick
import QtTest
import Qt.labs.settings
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

    Settings {
        id: prefs
    }

    Component {
        id: rootComponent

        RootView {
            width: 1380
            height: 900
        }
    }

    function test_helpOpensOnceOnTheFirstRunOnly() {
        compare(prefs.value("welcomed", "missing"), "missing")

        const first = createTemporaryObject(rootComponent, testCase)
        compare(first.sheet.kind, "help")
        const help = first.sheetHost.view
        verify(help !== null)
        compare(help.topic, 0)
        compare(String(prefs.value("welcomed")), "true")
        mouseClick(findChild(help, "helpDone"))
        compare(first.sheet, null)
        first.destroy()
        wait(0)

        const second = createTemporaryObject(rootComponent, testCase)
        compare(second.sheet, null)
        compare(second.sheetHost.view, null)
    }
}
