import QtQuick
import Coinhall

// A small secondary line under or beside a figure (a date, a count, a hint): the
// text face at the caption size in the look's muted colour.
BodyText {
    font.pointSize: Tokens.pt(Tokens.captionSize)
    color: Looks.current.muted
}
