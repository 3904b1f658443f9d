import QtQuick
import Coinhall

// A text row: the caption at the left and a one-line field, read out under the caption.
FormRow {
    id: root

    // The text as typed; two-way: write it back with onTextChanged.
    property alias text: input.text
    property alias placeholderText: input.placeholderText
    readonly property alias field: input
    // Return and Enter stop at the field (only `accepted`) instead of going on to the sheet, which saves.
    property bool keepsReturn: false

    // Return or Enter was pressed in the field.
    signal accepted

    FormInput {
        id: input

        Accessible.name: root.label
        onAccepted: root.accepted()
        Keys.onReturnPressed: event => root.keepReturn(event)
        Keys.onEnterPressed: event => root.keepReturn(event)
    }

    function keepReturn(event: var) {
        event.accepted = keepsReturn
        if (keepsReturn)
            accepted()
    }
}
