import QtQuick
import QtTest
import Coinhall

// The help view (the chapters, and which of "← Back" and "Next →" show where) and the
// window it lives in.
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

    function test_backAndNextShowOnlyWhereThereIsSomewhereToGo() {
        const help = makeHelp(0)
        const k = keys(help)
        compare(help.chapters.length, 11)
        compare(k.title.text, "Welcome")
        verify(!k.back.visible)
        verify(k.next.visible)

        mouseClick(k.next)
        compare(help.topic, 1)
        compare(k.title.text, "Accounts & balances")
        verify(k.back.visible)
        verify(k.next.visible)

        for (let i = 1; i < 10; ++i)
            mouseClick(k.next)
        compare(help.topic, 10)
        compare(k.title.text, "About QFS")
        verify(k.back.visible)
        verify(!k.next.visible)

        mouseClick(k.back)
        compare(help.topic, 9)
        compare(k.title.text, "Themes & zoom")
        verify(k.next.visible)
    }

    function test_aNewViewStartsOnItsStartPageAndTheSidebarPicks() {
        const help = makeHelp(10)
        const k = keys(help)
        compare(k.title.text, "About QFS")
        verify(!k.next.visible)

        const list = findChild(help, "helpChapters")
        const row = list.itemAtIndex(3)
        mouseClick(row)
        compare(help.topic, 3)
        compare(k.title.text, "Bills & reminders")
        // No chapter names the maker in the product's place; the last one credits the maker.
        for (const chapter of help.chapters)
            verify(chapter.text.indexOf("Quillfern Coinhall") < 0, chapter.title)
        const about = help.chapters[10].text
        verify(about.indexOf("Quillfern") >= 0)
        verify(about.indexOf(HelpBook.website.toString()) >= 0, about)
    }

    function makeWindow() {
        const window = createTemporaryObject(windowComponent, testCase)
        verify(window !== null)
        verify(!window.visible)
        return window
    }

    function test_windowOpensOnThePageAskedAndDoneOnlyHidesIt() {
        const window = makeWindow()
        window.show(3)
        tryCompare(window, "visible", true)
        compare(window.title, "QFS Coinhall Help")
        compare(window.width, 860)
        compare(window.height, 560)
        compare(window.view.topic, 3)
        compare(findChild(window.contentItem, "helpTitle").text, "Bills & reminders")
        // The view fills the window.
        tryCompare(window.view, "width", 860)
        tryCompare(window.view, "height", 560)

        mouseClick(findChild(window.contentItem, "helpDone"))
        tryCompare(window, "visible", false)
        // The same window comes back, on the page asked for this time.
        window.show(0)
        tryCompare(window, "visible", true)
        compare(window.view.topic, 0)
        verify(!findChild(window.contentItem, "helpBack").visible)
        // Asked again while open, it stays and goes to that chapter.
        mouseClick(findChild(window.contentItem, "helpNext"))
        compare(window.view.topic, 1)
        window.show(0)
        verify(window.visible)
        compare(window.view.topic, 0)
        window.close()
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
    }
}
