import QtQuick
import QtQuick.Controls.Basic
import QtQuick.Layouts
import Coinhall

// A labelled field for an amount as the user types it ("45.10", "(45.10)", "$1,234.50").
// `amount` is the exact value of the text, or empty when the text is no amount, so an
// editor can refuse to save; a non-empty text that is no amount is flagged under it.
Item {
    id: root

    property string label
    // The text as typed; two-way: write it back with onTextChanged.
    property alias text: field.text
    // Exact decimal text of the typed amount ("-45.1"); empty when there is none.
    readonly property string amount: Fmt.parse(text)
    readonly property bool valid: amount !== ""
    readonly property alias field: field

    implicitWidth: row.implicitWidth
    implicitHeight: row.implicitHeight
    Layout.fillWidth: true

    RowLayout {
        id: row

        anchors.fill: parent
        spacing: Tokens.spaceM

        BodyText {
            Layout.preferredWidth: Tokens.fieldLabelWidth
            Layout.alignment: Qt.AlignTop
            Layout.topMargin: Math.max(0, (Tokens.fieldHeight - implicitHeight) / 2)
            text: root.label
            font.weight: Font.DemiBold
            color: Looks.current.soft
            // Long labels ("Amount that came in") take a second line rather than losing words.
            wrapMode: Text.WordWrap
            Accessible.ignored: true
        }

        ColumnLayout {
            Layout.fillWidth: true
            spacing: 2

            TextField {
                id: field

                Layout.fillWidth: true
                implicitHeight: Tokens.fieldHeight
                leftPadding: Tokens.spaceM
                rightPadding: Tokens.spaceM
                font.family: Tokens.lcdFamily
                font.pointSize: Tokens.pt(Tokens.bodySize)
                color: Looks.current.text
                selectionColor: Looks.current.accent
                selectedTextColor: Looks.current.bg
                placeholderTextColor: Looks.current.muted
                inputMethodHints: Qt.ImhFormattedNumbersOnly
                selectByMouse: true
                Accessible.name: root.label
                Accessible.description: hint.visible ? hint.text : ""

                background: Rectangle {
                    radius: Tokens.keyRadius
                    color: Looks.current.bg
                    border.width: field.activeFocus ? 1.5 : 1
                    border.color: !root.valid && field.text !== "" ? Tokens.destructive
                                  : field.activeFocus ? Looks.current.accent : Looks.current.line
                }
            }

            CaptionText {
                id: hint

                visible: field.text !== "" && !root.valid
                text: "Not an amount"
                color: Tokens.destructive
            }
        }
    }
}
