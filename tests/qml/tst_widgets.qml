import QtQuick
import QtTest
import Coinhall

Item {
    id: stage

    width: 700
    height: 500

    TestCase {
        id: testCase

        name: "Widgets"
        when: windowShown

        FontLoader { source: "qrc:/fonts/MaterialIcons-Regular.ttf" }
        FontLoader { source: "qrc:/fonts/Manrope.ttf" }
        FontLoader { source: "qrc:/fonts/Unbounded.ttf" }

        Component {
            id: keyComponent

            Key {
                title: "Money in"
                icon.name: "plus.circle"
            }
        }

        Component {
            id: knobComponent

            Knob {
                label: "Gain"
                from: 0
                to: 2
                value: 1
            }
        }

        Component {
            id: lcdComponent

            LCD {
                width: 40
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
            id: iconComponent

            Icon {}
        }

        Component {
            id: spyComponent

            SignalSpy {}
        }

        function spyOn(target: var, signalName: string): var {
            return createTemporaryObject(spyComponent, stage, { target: target, signalName: signalName })
        }

        function test_keyIsAButtonForKeyboardAndMouse() {
            const key = createTemporaryObject(keyComponent, stage)
            const clicks = spyOn(key, "clicked")
            compare(key.Accessible.role, Accessible.Button)
            compare(key.Accessible.name, "Money in")

            key.forceActiveFocus(Qt.TabFocusReason)
            keyClick(Qt.Key_Space)
            compare(clicks.count, 1)
            keyClick(Qt.Key_Return)
            compare(clicks.count, 2)
            mouseClick(key)
            compare(clicks.count, 3)

            key.enabled = false
            keyClick(Qt.Key_Return)
            mouseClick(key)
            compare(clicks.count, 3)
        }

        function test_keyGetsFocusFromTab() {
            const first = createTemporaryObject(keyComponent, stage, { title: "First" })
            const second = createTemporaryObject(keyComponent, stage, { title: "Second", x: 200 })
            first.forceActiveFocus(Qt.TabFocusReason)
            keyClick(Qt.Key_Tab)
            verify(second.activeFocus)
        }

        function test_knobKeysStepATwentiethAndClamp() {
            const knob = createTemporaryObject(knobComponent, stage)
            const moves = spyOn(knob, "moved")
            compare(knob.Accessible.role, Accessible.Dial)
            compare(knob.Accessible.name, "Gain")
            knob.forceActiveFocus(Qt.TabFocusReason)

            keyClick(Qt.Key_Up)
            compare(knob.value, 1.1)
            keyClick(Qt.Key_Left)
            keyClick(Qt.Key_Down)
            compare(knob.value, 0.9)
            compare(moves.count, 3)

            for (let i = 0; i < 25; ++i)
                keyClick(Qt.Key_Right)
            compare(knob.value, 2)
            for (let i = 0; i < 45; ++i)
                keyClick(Qt.Key_Down)
            compare(knob.value, 0)
        }

        function test_knobPointerSweepsFromLowerLeftToLowerRight() {
            const knob = createTemporaryObject(knobComponent, stage, { value: 0 })
            compare(knob.angle, -135)
            knob.value = 1
            compare(knob.angle, 0)
            knob.value = 2
            compare(knob.angle, 135)
        }

        function test_knobDragUp150SweepsTheRange() {
            const knob = createTemporaryObject(knobComponent, stage, { value: 0 })
            const size = Tokens.knobSize
            mouseDrag(knob, knob.width / 2, size / 2, 0, -75)
            compare(knob.value, 1)
            compare(knob.start, undefined, "the drag's start is cleared when it ends")
            mouseDrag(knob, knob.width / 2, size / 2, 0, 30)
            compare(knob.value, 0.6)
        }

        function test_knobDragStopsAtTheEnds() {
            const knob = createTemporaryObject(knobComponent, stage, { value: 0 })
            const size = Tokens.knobSize
            mouseDrag(knob, knob.width / 2, size / 2, 0, 60)
            compare(knob.value, 0)
            knob.value = 2
            mouseDrag(knob, knob.width / 2, size / 2, 0, -60)
            compare(knob.value, 2)
        }

        function test_lcdScanLines_data() {
            return [
                { tag: "height 0", height: 0, lines: 0 },
                { tag: "height 2", height: 2, lines: 1 },
                { tag: "height 3", height: 3, lines: 1 },
                { tag: "height 3.5", height: 3.5, lines: 2 },
                { tag: "height 30", height: 30, lines: 10 }
            ]
        }

        function test_lcdScanLines(data) {
            const lcd = createTemporaryObject(lcdComponent, stage, { height: data.height })
            compare(lcd.scanLines, data.lines)
        }

        function test_lcdScanLinesDarkenEveryThirdRow() {
            const lcd = createTemporaryObject(lcdComponent, stage, { height: 12, look: Looks.studio })
            waitForRendering(lcd)
            const image = grabImage(lcd)
            // Row 3 carries a line, row 4 shows the bare glass (#1A1206).
            const glass = image.pixel(20, 4)
            compare(String(glass), "#1a1206")
            verify(image.red(20, 3) < image.red(20, 4))
            compare(image.red(20, 6), image.red(20, 3))
        }

        function test_amountColour_data() {
            return [
                { tag: "zero is green", amount: "0", text: "$0.00", colour: "#4ade80" },
                { tag: "income is green", amount: "45.1", text: "+$45.10", colour: "#4ade80" },
                { tag: "a cent below zero is soft", amount: "-0.01", text: "-$0.01", colour: "#c9d2e0" }
            ]
        }

        function test_amountColour(data) {
            const amount = createTemporaryObject(amountComponent, stage, { amount: data.amount, look: Looks.studio })
            compare(amount.text, data.text)
            compare(String(amount.color), data.colour)
        }

        function test_onlyCarbonPanelsAreWoven() {
            // Across one row, a gradient panel is flat while the weave varies from cell to cell.
            function distinctColours(look) {
                const panel = createTemporaryObject(panelComponent, stage, { look: look })
                waitForRendering(panel)
                const image = grabImage(panel)
                const seen = {}
                for (let x = 20; x < 140; ++x)
                    seen[String(image.pixel(x, 40))] = true
                return Object.keys(seen).length
            }
            compare(distinctColours(Looks.graphite), 1)
            verify(distinctColours(Looks.carbon) > 3)
        }

        function test_screwsSitInTheCorners() {
            const plain = createTemporaryObject(panelComponent, stage, { look: Looks.studio })
            const screwed = createTemporaryObject(panelComponent, stage, { look: Looks.studio, screws: true, x: 200 })
            waitForRendering(screwed)
            const corner = Tokens.panelPadding / 2
            const bare = grabImage(plain).pixel(corner, corner)
            const screw = grabImage(screwed).pixel(corner, corner)
            verify(screw.r > bare.r + 0.2, "a light screw head at the top-left corner")
            compare(grabImage(screwed).pixel(80, 40), grabImage(plain).pixel(80, 40))
        }

        function test_everySymbolDrawsAGlyph() {
            const symbols = ["building.columns", "banknote", "creditcard", "dollarsign.circle", "briefcase", "iphone",
                             "wallet.pass", "plus.circle", "minus.circle", "arrow.left.arrow.right",
                             "gauge.with.dots.needle.67percent", "list.bullet.rectangle", "doc.text", "music.note.list",
                             "calendar", "chart.bar.xaxis", "square.and.arrow.down", "questionmark.circle",
                             "lock.shield.fill", "plus", "music.note", "chevron.left", "chevron.right",
                             "arrow.down.circle", "arrow.up.circle", "square.and.arrow.up", "folder", "hand.wave",
                             "plus.forwardslash.minus", "bell.badge", "lock.shield", "paintpalette", "info.circle"]
            for (const symbol of symbols) {
                const icon = createTemporaryObject(iconComponent, stage, { symbol: symbol, size: 20 })
                verify(icon.text !== "", symbol)
                // A ligature the font lacks would be laid out as a whole word.
                verify(icon.implicitWidth > 10 && icon.implicitWidth < 30, symbol + " is " + icon.implicitWidth + " wide")
            }
        }

        function test_iconIsDecorativeUnlessNamed() {
            const plain = createTemporaryObject(iconComponent, stage, { symbol: "plus" })
            verify(plain.Accessible.ignored)
            const named = createTemporaryObject(iconComponent, stage, { symbol: "plus", label: "Add" })
            verify(!named.Accessible.ignored)
            compare(named.Accessible.name, "Add")
        }

        function test_unknownSymbolDrawsNothing() {
            ignoreWarning(/no icon for the symbol no.such.symbol/)
            const icon = createTemporaryObject(iconComponent, stage, { symbol: "no.such.symbol" })
            compare(icon.text, "")
        }

        function test_pointSizesAreLogicalPixels() {
            const icon = createTemporaryObject(iconComponent, stage, { symbol: "plus", size: 20 })
            compare(icon.fontInfo.pixelSize, 20)
        }
    }
}
