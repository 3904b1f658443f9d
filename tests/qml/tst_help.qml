import QtQuick
import QtTest
import Coinhall

// The help view: the chapters, and which of "← Back" and "Next →" show where.
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

    SignalSpy {
        id: doneSpy

        signalName: "done"
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

    function test_doneAndEscapeClose() {
        const help = makeHelp(0)
        doneSpy.target = help
        doneSpy.clear()
        mouseClick(findChild(help, "helpDone"))
        compare(doneSpy.count, 1)
        help.forceActiveFocus()
        keyClick(Qt.Key_Escape)
        compare(doneSpy.count, 2)
    }
}
