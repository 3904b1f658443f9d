import QtQuick
import QtTest
import Coinhall

TestCase {
    id: testCase

    name: "Looks"

    function cleanup() {
        Looks.choose("studio")
    }

    function test_colours_data() {
        return [
            { tag: "studio", id: "studio", name: "Studio", field1: "bg", colour1: "#070a12", field2: "lcdGlass", colour2: "#1a1206", carbon: false },
            { tag: "ice", id: "ice", name: "Ice Blue", field1: "panelTop", colour1: "#13283b", field2: "accent", colour2: "#59c2ff", carbon: false },
            { tag: "rose", id: "rose", name: "Rose Gold", field1: "well", colour1: "#10070a", field2: "title", colour2: "#c9876a", carbon: false },
            { tag: "lavender", id: "lavender", name: "Lavender", field1: "soft", colour1: "#d9cff5", field2: "solid", colour2: "#7a5ab5", carbon: false },
            { tag: "carbon", id: "carbon", name: "Carbon", field1: "line", colour1: "#3a3c42", field2: "accent2", colour2: "#9aa5b5", carbon: true },
            { tag: "graphite", id: "graphite", name: "Graphite", field1: "muted", colour1: "#b5bac2", field2: "lcd", colour2: "#9fe6ff", carbon: false }
        ]
    }

    function test_colours(data) {
        const look = Looks.named(data.id)
        compare(look.id, data.id)
        compare(look.name, data.name)
        compare(String(look[data.field1]), data.colour1)
        compare(String(look[data.field2]), data.colour2)
        compare(look.carbon, data.carbon)
        compare(look[data.field1].a, 1, "looks are opaque")
    }

    function test_everyLookHasTheNineteenFields() {
        const fields = ["id", "name", "bg", "panelTop", "panelBottom", "well", "line", "text", "soft", "muted",
                        "accent", "accent2", "video", "audio", "title", "solid", "lcd", "lcdGlass", "carbon"]
        for (const look of Looks.all)
            compare(Object.keys(look), fields, look.id)
    }

    function test_allIsInThemeMenuOrder() {
        compare(Looks.all.map(look => look.name), ["Studio", "Ice Blue", "Rose Gold", "Lavender", "Carbon", "Graphite"])
    }

    function test_looksCannotBeChangedByAccident() {
        const look = Looks.named("ice")
        try {
            look.name = "Changed"
        } catch (e) {
            // Strict code throws; either way the look keeps its name.
        }
        compare(Looks.ice.name, "Ice Blue")
    }

    function test_named_data() {
        return [
            { tag: "exact id", id: "ice", name: "Ice Blue" },
            { tag: "old rose id", id: "crimson", name: "Rose Gold" },
            { tag: "case matters", id: "Studio", name: "Studio" },
            { tag: "capital Graphite", id: "Graphite", name: "Studio" },
            { tag: "empty", id: "", name: "Studio" },
            { tag: "unknown", id: "neon", name: "Studio" },
            { tag: "last", id: "graphite", name: "Graphite" }
        ]
    }

    function test_named(data) {
        compare(Looks.named(data.id).name, data.name)
    }

    function test_choosingALookStoresItAndRecolours() {
        const label = createTemporaryObject(labelComponent, testCase)
        compare(String(label.color), "#c9d2e0")
        Looks.choose("lavender")
        compare(Prefs.look, "lavender")
        compare(Looks.current.name, "Lavender")
        compare(String(label.color), "#d9cff5")
        Looks.choose("crimson")
        compare(Prefs.look, "crimson")
        compare(Looks.current.name, "Rose Gold")
        compare(String(label.color), "#f2cfd6")
    }

    Component {
        id: labelComponent

        Text {
            color: Looks.current.soft
        }
    }
}
