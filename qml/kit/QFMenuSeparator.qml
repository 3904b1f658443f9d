import QtQuick
import QtQuick.Controls
import Coinhall

// A divider between groups of menu items, in the kit's rim colour.
MenuSeparator {
    contentItem: Rectangle {
        implicitWidth: 180
        implicitHeight: 1
        color: QFSKitHost.theme.rim
    }
}
