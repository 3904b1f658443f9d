pragma ComponentBehavior: Bound
import QtQuick
import QtQuick.Layouts
import Coinhall

// "Set aside for taxes": what should be set aside so far, what was paid to the tax
// office and what is still to put aside (or was overpaid), side by side in the tiles'
// face. The figures come formatted; the tile only lays them out.
Panel {
    id: root

    property string label: "Set aside for taxes"
    property string dueText
    property string paidText
    property string leftText
    // The tax office got more than was due: the third figure is the excess.
    property bool overpaid: false
    // The percent as text ("25%"), named with the first figure.
    property string percentText

    // One figure: its name small above the value.
    component Figure: ColumnLayout {
        id: figure

        property string name
        property string value
        property color valueColor: Looks.current.text

        Layout.fillWidth: true
        Layout.preferredWidth: 1
        Layout.alignment: Qt.AlignTop
        spacing: 2
        Accessible.role: Accessible.StaticText
        Accessible.name: name + " " + value

        // One line: a wrapping caption in a row of shared widths sets the tile's height
        // from its first, zero-width layout pass (one word a line).
        CaptionText {
            Layout.fillWidth: true
            text: figure.name
            elide: Text.ElideRight
            Accessible.ignored: true
        }
        FigureText {
            objectName: "tileValue"
            Layout.fillWidth: true
            text: figure.value
            font.pointSize: Tokens.pt(20)
            // A long figure shrinks to its tile rather than running out of it.
            fontSizeMode: Text.HorizontalFit
            minimumPointSize: Tokens.pt(11)
            color: figure.valueColor
            Accessible.ignored: true
        }
    }

    Accessible.role: Accessible.Grouping
    Accessible.name: label

    ColumnLayout {
        anchors.fill: parent
        spacing: Tokens.spaceXS

        Label2 {
            Layout.fillWidth: true
            text: root.label
            clip: true
        }

        RowLayout {
            Layout.fillWidth: true
            spacing: Tokens.spaceL

            Figure {
                objectName: "setAsideDue"
                name: "Set aside so far (" + root.percentText + " of income)"
                value: root.dueText
            }
            Figure {
                objectName: "setAsidePaid"
                name: "Paid to the tax office"
                value: root.paidText
            }
            Figure {
                objectName: "setAsideLeft"
                name: root.overpaid ? "Overpaid" : "Still to put aside"
                value: root.leftText
                valueColor: root.overpaid ? Tokens.positive : Looks.current.text
            }
        }
    }
}
