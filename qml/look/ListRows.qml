import QtQuick
import QtQuick.Layouts

// A list of rows made from a model, for use inside a Qt Quick layout: one column of
// rows, or `columns` side by side. A Repeater must never be a layout's direct child:
// when its model changes it destroys delegates the layout still holds, and Qt 6.4's
// next rearrange reads the freed items (the window died on a new book's first line
// and on switching a big book's report period). Here a positioner holds the
// delegates; the layout only ever holds this one item, which lives as long as its
// screen. A delegate takes `cellWidth` as its width. It stays visible even with no
// rows: layouts inside delegates made while it was hidden would never arrange.
Grid {
    id: root

    property alias model: repeater.model
    property alias delegate: repeater.delegate
    readonly property alias count: repeater.count
    // The width of one row (of one cell when there are several columns).
    readonly property real cellWidth: Math.max(0, (width - columnSpacing * (columns - 1)) / columns)

    Layout.fillWidth: true
    columns: 1

    Repeater {
        id: repeater
    }
}
