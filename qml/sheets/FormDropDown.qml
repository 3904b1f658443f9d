pragma ComponentBehavior: Bound
import QtQuick
import QtQuick.Controls.Basic
import Coinhall

// A drop-down list of texts in the look's colours: the list of FormChoice, and the
// register's account filter on its own. Give it `model` (a list of texts, or a
// model with `textRole`) and Accessible.name.
ComboBox {
    id: box

    // Return on a closed list is the sheet's Return, as in any desktop dialog: it saves
    // (the list would take it to open itself). Space opens the list; outside a sheet
    // Return does too.
    function confirmSheet(event: var) {
        for (let p = parent; p && !popup.visible; p = p.parent) {
            if (typeof p.confirm === "function") {
                p.confirm()
                return
            }
        }
        event.accepted = false
    }

    implicitWidth: 180
    implicitHeight: Tokens.fieldHeight
    // Nothing chosen shows nothing, whatever the model's first entry is.
    displayText: currentIndex < 0 ? "" : currentText
    font.family: Tokens.textFamily
    font.pointSize: Tokens.pt(Tokens.bodySize)

    Keys.onReturnPressed: event => confirmSheet(event)
    Keys.onEnterPressed: event => confirmSheet(event)

    contentItem: Text {
        leftPadding: Tokens.spaceM
        rightPadding: box.indicator.width + Tokens.spaceS
        text: box.displayText
        font: box.font
        color: Looks.current.text
        verticalAlignment: Text.AlignVCenter
        elide: Text.ElideRight
        textFormat: Text.PlainText
    }

    indicator: Icon {
        x: box.width - width - Tokens.spaceS
        y: (box.height - height) / 2
        symbol: "chevron.up.chevron.down"
        size: 16
        color: Looks.current.muted
    }

    background: Rectangle {
        radius: Tokens.keyRadius
        color: Looks.current.bg
        border.width: box.visualFocus ? 1.5 : 1
        border.color: box.visualFocus || box.popup.visible ? Looks.current.accent : Looks.current.line
    }

    delegate: ItemDelegate {
        id: option

        required property int index
        required property var model

        width: ListView.view ? ListView.view.width : implicitWidth
        highlighted: box.highlightedIndex === index
        text: {
            if (box.textRole === "")
                return model.modelData
            const role = model[box.textRole]
            return role !== undefined ? role : model.modelData[box.textRole]
        }
        font: box.font

        contentItem: Text {
            text: option.text
            font: option.font
            color: Looks.current.text
            verticalAlignment: Text.AlignVCenter
            elide: Text.ElideRight
            textFormat: Text.PlainText
        }

        background: Rectangle {
            color: option.highlighted ? Qt.rgba(Looks.current.accent.r, Looks.current.accent.g, Looks.current.accent.b, 0.28)
                                      : "transparent"
            radius: Tokens.rowRadius
        }
    }

    // The list opens above the zoomed content, so it takes the zoom itself.
    popup.scale: QFZoom.value
    popup.transformOrigin: Popup.TopLeft
    popup.background: Rectangle {
        radius: Tokens.wellRadius
        color: Looks.current.well
        border.width: 1
        border.color: Looks.current.line
    }
}
