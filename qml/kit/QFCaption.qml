import QtQuick
import Coinhall

// A small caption in the kit's style: heavy, tracked, in the theme's dim colour.
Text {
    font.pointSize: Tokens.pt(10)
    font.weight: Font.Black
    font.letterSpacing: 1.1
    color: QFSKitHost.theme.dim
    textFormat: Text.PlainText
}
