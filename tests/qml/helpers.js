.pragma library

// What every test file needs to find its way around a view.

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

// The first item under `item` with this objectName.
function named(item, objectName) {
    return first(item, c => c.objectName === objectName)
}

// The visible key (a button with a title) titled `title`.
function key(item, title) {
    return first(item, c => c.title === title && c.visible && typeof c.clicked === "function")
}

// The visible texts of the items under `item` named `objectName`.
function texts(item, objectName) {
    return findAll(item, c => c.objectName === objectName && c.visible).map(t => t.text)
}

// Types `text` into whatever has the keyboard, one key at a time.
function type(testCase, text) {
    for (const c of text)
        testCase.keyClick(c)
}

// Replaces the text of `field` by typing, as a user does.
function retype(testCase, field, text) {
    field.forceActiveFocus()
    field.selectAll()
    testCase.keyClick(Qt.Key_Backspace)
    type(testCase, text)
}
