import QtQuick
import QtTest
import Coinhall

// The help window as a user drives it: by keyboard through the chapters, and at the zoom.
TestCase {
    id: testCase

    name: "Help"
    width: 900
    height: 600
    visible: true
    when: windowShown

    Component {
        id: helpComponent

        HelpView {}
    }

    Component {
        id: windowComponent

        CHHelpWindow {}
    }

    function init() {
        Looks.choose("studio")
        QFZoom.actualSize()
    }

    function makeHelp(page) {
        const help = createTemporaryObject(helpComponent, testCase, { startPage: page })
        waitForRendering(help)
        return help
    }

    function keys(help) {
        return {
            back: findChild(help, "helpBack"),
            next: findChild(help, "helpNext"),
            title: findChild(help, "helpTitle")
        }
    }

    function makeWindow() {
        const window = createTemporaryObject(windowComponent, testCase)
        verify(window !== null)
        verify(!window.visible)
        return window
    }

    function test_windowFollowsTheLookAndTheZoomAndSitsMidScreen() {
        const window = makeWindow()
        QFZoom.setLevel(85)
        window.show(0)
        tryCompare(window, "visible", true)
        compare(window.width, 731)
        compare(window.height, 476)
        verify(Math.abs(window.x + window.width / 2 - (window.screen.virtualX + window.screen.width / 2)) <= 1)
        verify(Math.abs(window.y + window.height / 2 - (window.screen.virtualY + window.screen.height / 2)) <= 1)

        Looks.choose("rose")
        compare(window.color, Looks.rose.bg)
        window.close()

        QFZoom.setLevel(200)
        window.show(10)
        tryCompare(window, "visible", true)
        compare(window.width, 1720)
        compare(window.height, 1120)
        compare(findChild(window.contentItem, "helpTitle").text, "About QFS")
        window.close()

        // Reopened at another zoom, at once (before the window system has answered, as
        // a picture taken then would show it), every part fits the new size.
        QFZoom.actualSize()
        window.show(0)
        compare(window.width, 860)
        compare(window.view.width, 860)
        waitForRendering(window.contentItem)
        const done = findChild(window.contentItem, "helpDone")
        tryVerify(() => done.visible && done.mapToItem(window.contentItem, done.width, 0).x <= 860, 2000)
        const body = findChild(window.contentItem, "helpBody")
        verify(body.mapToItem(window.contentItem, body.width, 0).x <= 860)
        window.close()
    }

    function test_keyboardMovesThroughTheChaptersAndEscapeCloses() {
        const window = makeWindow()
        window.show(0)
        tryCompare(window, "active", true)
        waitForRendering(window.contentItem)
        const list = findChild(window.contentItem, "helpChapters")
        const next = findChild(window.contentItem, "helpNext")
        const done = findChild(window.contentItem, "helpDone")
        compare(window.title, "QFS Coinhall Help")
        verify(!findChild(window.contentItem, "helpBack").visible, "nowhere to go back to from the first chapter")
        keyClick(Qt.Key_Tab)
        verify(list.activeFocus)
        keyClick(Qt.Key_Down)
        keyClick(Qt.Key_Down)
        compare(window.view.topic, 2)
        compare(findChild(window.contentItem, "helpTitle").text, "Money in & money out")

        // Back, Next, Done in turn; Space presses the key that has the focus.
        keyClick(Qt.Key_Tab)
        verify(findChild(window.contentItem, "helpBack").activeFocus)
        keyClick(Qt.Key_Space)
        compare(window.view.topic, 1)
        keyClick(Qt.Key_Tab)
        verify(next.activeFocus)
        keyClick(Qt.Key_Space)
        keyClick(Qt.Key_Space)
        compare(window.view.topic, 3)
        keyClick(Qt.Key_Tab)
        verify(done.activeFocus)

        keyClick(Qt.Key_Escape)
        tryCompare(window, "visible", false)
        // The same window comes back on the page asked for; the last has no Next.
        window.show(10)
        tryCompare(window, "visible", true)
        compare(findChild(window.contentItem, "helpTitle").text, "About QFS")
        verify(!next.visible)
        window.close()
    }
}
