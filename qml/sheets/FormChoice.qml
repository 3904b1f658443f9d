import QtQuick
import Coinhall

// A drop-down row: the caption at the left and a list of texts to choose from, read out
// under the caption. `currentIndex` is the chosen entry (-1 shows none); `activated`
// tells a user's choice apart from a bound value.
FormRow {
    id: root

    // The entries: a list of texts, or a model with `textRole`.
    property alias model: list.model
    property alias textRole: list.textRole
    property alias currentIndex: list.currentIndex
    readonly property alias currentText: list.currentText
    readonly property alias box: list

    // The user chose the entry at `index`.
    signal activated(int index)

    FormDropDown {
        id: list

        Accessible.name: root.label
        onActivated: index => root.activated(index)
    }
}
