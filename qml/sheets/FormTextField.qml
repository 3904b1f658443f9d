import QtQuick
import Coinhall

// A text row: the caption at the left and a one-line field, read out under the caption.
FormRow {
    id: root

    // The text as typed; two-way: write it back with onTextChanged.
    property alias text: input.text
    property alias placeholderText: input.placeholderText
    readonly property alias field: input

    // Return or Enter was pressed in the field.
    signal accepted

    FormInput {
        id: input

        look: root.look
        Accessible.name: root.label
        onAccepted: root.accepted()
    }
}
