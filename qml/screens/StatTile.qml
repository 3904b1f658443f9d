import QtQuick
import QtQuick.Layouts
import Coinhall

// One figure on a panel: its label small above the value in the LCD face.
Panel {
    id: root

    property string label
    // The figure, already formatted ("$1,234.50").
    property string value
    // The value's colour; null draws it in the look's normal text colour.
    property var color: null

    readonly property color valueColor: color !== null && color !== undefined ? color : Looks.current.text

    Accessible.role: Accessible.StaticText
    Accessible.name: label + " " + value

    ColumnLayout {
        anchors.fill: parent
        spacing: Tokens.spaceXS

        Label2 {
            Layout.fillWidth: true
            text: root.label
            clip: true
        }
        FigureText {
            objectName: "tileValue"
            Layout.fillWidth: true
            text: root.value
            font.pointSize: Tokens.pt(20)
            // A long figure shrinks to its tile rather than running out of it.
            fontSizeMode: Text.HorizontalFit
            minimumPointSize: Tokens.pt(11)
            color: root.valueColor
            Accessible.ignored: true
        }
    }
}
