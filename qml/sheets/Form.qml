import QtQuick
import QtQuick.Layouts
import Coinhall

// A group of a sheet's rows, top to bottom. The sheet frame scrolls its rows when the
// window gives it less height than they need, and shows the focused field.
ColumnLayout {
    // The look to draw with.
    property var look: Looks.current

    Layout.fillWidth: true
    spacing: Tokens.spaceM
}
