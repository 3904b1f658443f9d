import QtQuick
import Coinhall

// An amount of money with its sign ("+$45.10", "-$3.00") in the LCD face: below zero
// in the look's soft colour, otherwise (zero included) in the fixed green.
FigureText {
    id: root

    // The amount as exact decimal text, as the Store hands it over ("-45.1").
    property string amount: "0"
    // Type size in points.
    property real size: Tokens.amountSize

    readonly property bool negative: Fmt.isNegative(amount)

    text: Fmt.signedMoney(amount)
    color: negative ? Looks.current.soft : Tokens.positive
    font.pointSize: Tokens.pt(size)
}
