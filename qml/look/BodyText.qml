import QtQuick
import Coinhall

// Running text of the screens and sheets: the text face at the body size in the
// look's text colour, as plain text. Callers change the weight, size or colour.
Text {
    font.family: Tokens.textFamily
    font.pointSize: Tokens.pt(Tokens.bodySize)
    color: Looks.current.text
    textFormat: Text.PlainText
}
