.pragma library

// What every test file needs to find its way around a view and to act as a user does.

// Every item under `item` (visual children, depth first) that `test` accepts.
function findAll(item, test) {
    let found = []
    for (let i = 0; i < item.children.length; ++i) {
        const child = item.children[i]
        if (test(child))
            found.push(child)
        found = found.concat(findAll(child, test))
    }
    return found
}
function first(item, test) {
    return findAll(item, test)[0] || null
}
function named(item, objectName) {
    return first(item, c => c.objectName === objectName)
}
// The titles of the visible keys under `item`, and the key titled `title`.
function keys(item) {
    return findAll(item, c => c.visible && c.title !== undefined && typeof c.clicked === "function").map(k => k.title)
}
function key(item, title) {
    return first(item, c => c.title === title && c.visible && typeof c.clicked === "function")
}
// The visible texts of the items under `item` named `objectName`.
function texts(item, objectName) {
    return findAll(item, c => c.objectName === objectName && c.visible).map(t => t.text)
}

// Makes `qml` (Coinhall types, Qt Quick and its controls) under `parent` (null for a
// window), with `props` set as it is made; it ends with the test function.
function make(testCase, parent, qml, props) {
    const component = Qt.createQmlObject("import QtQuick; import QtQuick.Controls; import Coinhall; Component { "
                                         + qml + " }", testCase)
    return testCase.createTemporaryObject(component, parent, props || {})
}
// A SignalSpy on `target`'s `signalName`; it ends with the test function.
function spy(testCase, target, signalName) {
    return Object.assign(testCase.createTemporaryQmlObject("import QtTest; SignalSpy {}", testCase),
                         { target: target, signalName: signalName })
}
// `item` once the positioner it stands in has placed it (rows are placed on the next polish).
function placed(testCase, item) {
    if (item && testCase.isPolishScheduled(item.parent))
        testCase.waitForItemPolished(item.parent)
    return item
}
// Opens `row`'s menu with the right button and gives its item `index`.
function menuItem(testCase, row, menu, index) {
    testCase.mouseClick(row, 30, row.height / 2, Qt.RightButton)
    testCase.tryCompare(menu, "opened", true)
    return menu.itemAt(index)
}
function sceneRect(item) {
    const [corner, end] = [item.mapToItem(null, 0, 0), item.mapToItem(null, item.width, item.height)]
    return Qt.rect(corner.x, corner.y, end.x - corner.x, end.y - corner.y)
}
// Types `text` into whatever has the keyboard, one key at a time; `retype` replaces
// the text of `field` so.
function type(testCase, text) {
    for (const c of text)
        testCase.keyClick(c)
}
function retype(testCase, field, text) {
    field.forceActiveFocus()
    field.selectAll()
    testCase.keyClick(Qt.Key_Backspace)
    type(testCase, text)
}
