import QtQuick
import QtQuick.Layouts
import Coinhall

// A group of a sheet's rows, top to bottom. The sheet frame scrolls its rows when the
// window gives it less height than they need, and shows the focused field.
ColumnLayout {
    Layout.fillWidth: true
    spacing: Tokens.spaceM
}
