import QtQuick
import Coinhall

// A figure read at a glance (a balance, a total, a count): the bold LCD face at the
// amount size in the look's text colour. AmountText is the one for signed amounts.
Text {
    font.family: Tokens.lcdFamily
    font.weight: Font.Bold
    font.pointSize: Tokens.pt(Tokens.amountSize)
    color: Looks.current.text
    textFormat: Text.PlainText
}
