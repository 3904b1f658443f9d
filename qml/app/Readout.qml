import QtQuick
import QtQuick.Layouts
import Coinhall

// One reading of the header's LCD: a small caption over the figure, both lit in the
// look's LCD colour.
ColumnLayout {
    id: root

    property string caption
    property string value

    spacing: 1

    Accessible.role: Accessible.StaticText
    Accessible.name: caption + " " + value

    BodyText {
        text: root.caption
        font.weight: Font.ExtraBold
        font.pointSize: Tokens.pt(8.5)
        font.letterSpacing: 1.1
        color: Looks.current.lcd
        opacity: 0.7
        Accessible.ignored: true
    }
    FigureText {
        objectName: "value"
        text: root.value
        font.pointSize: Tokens.pt(17)
        color: Looks.current.lcd
        Accessible.ignored: true
    }
}
