import QtQuick
import QtTest
import Coinhall

// The looks and the rack widgets as a user meets them: a key works from the keyboard
// and the mouse, amounts take their colour from their sign, only carbon panels are
// woven, the LCD's scan lines darken its glass, and every symbol has its glyph.
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
            id: panelComponent

            Panel {
                width: 160
                height: 80
            }
        }
        Component {
            id: lcdComponent

            LCD {
                width: 40
                height: 12
            }
        }
        Component {
            id: iconComponent

            Icon {}
        }
        SignalSpy {
            id: clicks

            signalName: "clicked"
        }

        function cleanup() {
            Looks.choose("studio")
        }

        function test_looksByIdOldIdAndFallback() {
            for (const [id, name] of [["ice", "Ice Blue"], ["crimson", "Rose Gold"], ["Studio", "Studio"],
                                      ["", "Studio"], ["graphite", "Graphite"]])
                compare(Looks.named(id).name, name, id)
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

        // Across one row, a gradient panel is flat while the weave varies from cell to
        // cell; a screw sits in the corner of a screwed panel. The look in force decides.
        function test_onlyCarbonPanelsAreWovenAndScrewsSitInTheCorners() {
            function distinctColours(look) {
                Looks.choose(look)
                const panel = createTemporaryObject(panelComponent, stage)
                waitForRendering(panel)
                const image = grabImage(panel)
                const seen = {}
                for (let x = 20; x < 140; ++x)
                    seen[String(image.pixel(x, 40))] = true
                return Object.keys(seen).length
            }
            compare(distinctColours("graphite"), 1)
            verify(distinctColours("carbon") > 3)

            Looks.choose("studio")
            const plain = createTemporaryObject(panelComponent, stage)
            const screwed = createTemporaryObject(panelComponent, stage, { screws: true, x: 200 })
            waitForRendering(screwed)
            const corner = Tokens.panelPadding / 2
            verify(grabImage(screwed).pixel(corner, corner).r > grabImage(plain).pixel(corner, corner).r + 0.2)
        }

        function test_lcdScanLinesDarkenEveryThirdRow() {
            const lcd = createTemporaryObject(lcdComponent, stage)
            waitForRendering(lcd)
            const image = grabImage(lcd)
            // Row 3 carries a line, row 4 shows the bare glass (#1A1206).
            compare(String(image.pixel(20, 4)), "#1a1206")
            verify(image.red(20, 3) < image.red(20, 4))
            compare(image.red(20, 6), image.red(20, 3))
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
