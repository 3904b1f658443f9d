import QtQuick
import QtQuick.Controls.Basic
import QtQuick.Layouts
import Coinhall

// One monthly budget: the spending category's name and a field for its limit,
// "no limit" when empty. Return (or leaving the field) commits what was typed: an
// amount above zero becomes the limit, anything else clears it, and the same limit
// again writes nothing. The field shows the stored limit whenever it is not being typed in.
Item {
    id: root

    // Where the budget is kept (the screen's AccountsBridge).
    property AccountsBridge bridge
    // The category's place in the money file's category list.
    property int index: -1
    property string name
    // The stored limit as decimal text; empty for no limit.
    property string budget
    // The budget as typed.
    property alias text: field.text
    readonly property alias field: field

    // Runs the commit rules on what was typed; true when the budget changed.
    function commit(): bool {
        const changed = bridge ? bridge.commitBudget(index, text) : false
        text = budget
        return changed
    }

    implicitWidth: row.implicitWidth
    implicitHeight: row.implicitHeight
    onBudgetChanged: {
        if (!field.activeFocus)
            text = budget
    }
    Component.onCompleted: text = budget

    RowLayout {
        id: row

        anchors.fill: parent
        spacing: Tokens.spaceM

        BodyText {
            Layout.fillWidth: true
            text: root.name
            font.weight: Font.DemiBold
            elide: Text.ElideRight
            Accessible.ignored: true
        }

        TextField {
            id: field

            Layout.preferredWidth: 130
            implicitHeight: Tokens.fieldHeight
            leftPadding: Tokens.spaceM
            rightPadding: Tokens.spaceM
            horizontalAlignment: TextInput.AlignRight
            placeholderText: "no limit"
            font.family: Tokens.lcdFamily
            font.pointSize: Tokens.pt(Tokens.bodySize)
            color: Looks.current.text
            selectionColor: Looks.current.accent
            selectedTextColor: Looks.current.bg
            placeholderTextColor: Looks.current.muted
            inputMethodHints: Qt.ImhFormattedNumbersOnly
            selectByMouse: true
            Accessible.name: root.name
            Accessible.description: "Monthly budget"

            // Return and Enter commit here, and so does losing the focus.
            onEditingFinished: root.commit()

            background: Rectangle {
                radius: Tokens.keyRadius
                color: Looks.current.bg
                border.width: field.activeFocus ? 1.5 : 1
                border.color: field.activeFocus ? Looks.current.accent : Looks.current.line
            }
        }
    }
}
