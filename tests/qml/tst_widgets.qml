import QtQuick
import QtTest
import Coinhall

// The rack widgets as a user meets them: a key works from the keyboard and the mouse,
// amounts take their colour from their sign, and every symbol has its glyph.
Item {
    id: stage

    width: 700
    height: 500

    TestCase {
        id: testCase

        name: "Widgets"
        when: windowShown

        FontLoader { source: "qrc:/fonts/MaterialIcons-Regular.ttf" }

        Component {
            id: keyComponent

            Key {
                title: "Money in"
                icon.name: "plus.circle"
            }
        }
        Component {
            id: amountComponent

            AmountText {}
        }
        Component {
            id: iconComponent

            Icon {}
        }
        SignalSpy {
            id: clicks

            signalName: "clicked"
        }


        function test_oldAndUnknownLookIdsStillOpen() {
            compare([Looks.named("crimson").name, Looks.named("").name], ["Rose Gold", "Studio"])
        }
        function test_keyIsAButtonForKeyboardAndMouse() {
            const key = createTemporaryObject(keyComponent, stage)
            clicks.target = key
            clicks.clear()
            compare(key.Accessible.role, Accessible.Button)
            compare(key.Accessible.name, "Money in")
            key.forceActiveFocus(Qt.TabFocusReason)
            keyClick(Qt.Key_Space)
            keyClick(Qt.Key_Return)
            mouseClick(key)
            compare(clicks.count, 3)
            key.enabled = false
            keyClick(Qt.Key_Return)
            mouseClick(key)
            compare(clicks.count, 3)
        }

        function test_amountColourFollowsTheSign() {
            for (const [amount, text, colour] of [["0", "$0.00", "#4ade80"], ["45.1", "+$45.10", "#4ade80"],
                                                  ["-0.01", "-$0.01", "#c9d2e0"]]) {
                const shown = createTemporaryObject(amountComponent, stage, { amount: amount })
                compare(shown.text, text)
                compare(String(shown.color), colour, amount)
            }
        }
        function test_everySymbolDrawsAGlyphAndOnlyANamedIconIsRead() {
            const symbols = ["building.columns", "banknote", "creditcard", "dollarsign.circle", "briefcase", "iphone",
                             "wallet.pass", "plus.circle", "minus.circle", "arrow.left.arrow.right",
                             "gauge.with.dots.needle.67percent", "list.bullet.rectangle", "doc.text", "music.note.list",
                             "calendar", "chart.bar.xaxis", "square.and.arrow.down", "questionmark.circle",
                             "lock.shield.fill", "plus", "music.note", "chevron.left", "chevron.right",
                             "arrow.down.circle", "arrow.up.circle", "square.and.arrow.up", "folder", "hand.wave",
                             "plus.forwardslash.minus", "bell.badge", "lock.shield", "paintpalette", "info.circle"]
            for (const symbol of symbols) {
                const icon = createTemporaryObject(iconComponent, stage, { symbol: symbol, size: 20 })
                // A ligature the font lacks would be laid out as a whole word.
                verify(icon.implicitWidth > 10 && icon.implicitWidth < 30, symbol + " is " + icon.implicitWidth + " wide")
                compare(icon.fontInfo.pixelSize, 20)
            }
            ignoreWarning(/no icon for the symbol no.such.symbol/)
            compare(createTemporaryObject(iconComponent, stage, { symbol: "no.such.symbol" }).text, "")
            verify(createTemporaryObject(iconComponent, stage, { symbol: "plus" }).Accessible.ignored)
            const named = createTemporaryObject(iconComponent, stage, { symbol: "plus", label: "Add" })
            verify(!named.Accessible.ignored)
            compare(named.Accessible.name, "Add")
        }
    }
}
