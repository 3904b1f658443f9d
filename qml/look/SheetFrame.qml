import QtQuick
import QtQuick.Controls.Basic
import QtQuick.Layouts
import Coinhall

// The frame of every editor sheet: the title, the form rows in one grouped well, and
// the button row (an optional destructive key at the leading end, then "Cancel" and
// the confirming key). Return confirms only while `canSave`; Escape always cancels.
// When the sheet opens, keyboard focus goes to its first field. Given less height than
// it needs, the rows scroll between the title and the keys.
FocusScope {
    id: root

    property string title
    // Caption of the confirming key, chosen by each editor.
    property string saveTitle: "Save"
    // The confirming key (and Return) work only while this is true.
    property bool canSave: true
    // Caption of the additional destructive key (typically a delete); empty for none.
    property string extraTitle
    // The form rows, top to bottom.
    default property alias content: form.data

    // The confirming key or Return was pressed while saving was allowed.
    signal save
    // "Cancel" or Escape was pressed.
    signal cancel
    // The destructive key was pressed.
    signal extra

    // Gives keyboard focus to the first field, or to the keys when there is none.
    function focusFirstField() {
        const first = form.nextItemInFocusChain(true)
        if (first && isInside(first, form))
            first.forceActiveFocus(Qt.TabFocusReason)
        else if (saveKey.enabled)
            saveKey.forceActiveFocus(Qt.TabFocusReason)
        else
            cancelKey.forceActiveFocus(Qt.TabFocusReason)
    }

    function isInside(item: Item, ancestor: Item): bool {
        for (let p = item; p; p = p.parent) {
            if (p === ancestor)
                return true
        }
        return false
    }

    // Scrolls the rows just enough to show `item`, a field inside them.
    function reveal(item: Item) {
        if (!item || !scroller.scrolls || !isInside(item, form))
            return
        const top = item.mapToItem(well, 0, 0).y
        const bottom = top + item.height
        if (top < scroller.contentY)
            scroller.contentY = Math.max(0, top - Tokens.spaceS)
        else if (bottom > scroller.contentY + scroller.height)
            scroller.contentY = Math.min(scroller.contentHeight - scroller.height, bottom - scroller.height + Tokens.spaceS)
    }

    function confirm() {
        if (canSave)
            save()
    }

    implicitWidth: Tokens.sheetWidth
    implicitHeight: layout.implicitHeight
    focus: true

    Accessible.role: Accessible.Dialog
    Accessible.name: title

    Keys.onReturnPressed: confirm()
    Keys.onEnterPressed: confirm()
    Keys.onEscapePressed: cancel()

    Component.onCompleted: Qt.callLater(focusFirstField)
    onVisibleChanged: {
        if (visible)
            Qt.callLater(focusFirstField)
    }

    // The field that takes the keyboard focus (Tab, or a click) is scrolled into view.
    Connections {
        target: root.Window.window
        function onActiveFocusItemChanged() {
            root.reveal(root.Window.window.activeFocusItem)
        }
    }

    Rectangle {
        anchors.fill: parent
        radius: Tokens.sheetRadius
        border.width: 1
        border.color: Looks.current.line
        gradient: Gradient {
            GradientStop { position: 0; color: Looks.current.panelTop }
            GradientStop { position: 1; color: Looks.current.panelBottom }
        }
    }

    ColumnLayout {
        id: layout

        anchors.fill: parent
        spacing: 0

        Text {
            Layout.fillWidth: true
            Layout.leftMargin: Tokens.sheetTitleSide
            Layout.rightMargin: Tokens.sheetTitleSide
            Layout.topMargin: Tokens.sheetTitleTop
            Layout.bottomMargin: Tokens.sheetTitleBottom
            text: root.title
            font.family: Tokens.displayFamily
            font.weight: Font.ExtraBold
            font.pointSize: Tokens.pt(Tokens.sheetTitleSize)
            color: Looks.current.text
            textFormat: Text.PlainText
            elide: Text.ElideRight
            Accessible.role: Accessible.Heading
            Accessible.name: text
        }

        // The grouped form: the rows on one recessed well. A sheet given less height
        // than its rows need scrolls them here, between the title and the keys, so the
        // keys always stay in view.
        Flickable {
            id: scroller

            objectName: "sheetRows"
            readonly property bool scrolls: contentHeight > height + 0.5

            Layout.fillWidth: true
            Layout.fillHeight: true
            Layout.topMargin: Tokens.spaceM
            implicitHeight: well.implicitHeight
            visible: form.children.length > 0
            contentWidth: width
            contentHeight: well.implicitHeight
            clip: scrolls
            boundsBehavior: Flickable.StopAtBounds
            // Dragging belongs to the fields; the wheel and the bar scroll.
            interactive: false

            ScrollBar.vertical: SteadyScrollBar {
                shown: scroller.scrolls
            }

            WheelHandler {
                acceptedDevices: PointerDevice.Mouse | PointerDevice.TouchPad
                onWheel: event => {
                    const step = event.pixelDelta.y !== 0 ? event.pixelDelta.y : event.angleDelta.y / 120 * 60
                    scroller.contentY = Math.max(0, Math.min(scroller.contentHeight - scroller.height,
                                                             scroller.contentY - step))
                }
            }

            Rectangle {
                id: well

                x: Tokens.spaceXL
                width: scroller.width - 2 * Tokens.spaceXL
                height: implicitHeight
                implicitHeight: form.implicitHeight + 2 * Tokens.spaceL
                radius: Tokens.wellRadius
                color: Looks.current.well
                border.width: 1
                border.color: Looks.current.line

                ColumnLayout {
                    id: form

                    anchors.fill: parent
                    anchors.margins: Tokens.spaceL
                    spacing: Tokens.spaceM
                }
            }
        }

        RowLayout {
            Layout.fillWidth: true
            Layout.margins: Tokens.sheetButtonInset
            spacing: Tokens.spaceM

            Key {
                id: extraKey

                visible: root.extraTitle !== ""
                title: root.extraTitle
                destructive: true
                onClicked: root.extra()
            }

            Item {
                Layout.fillWidth: true
            }

            Key {
                id: cancelKey

                objectName: "sheetCancelKey"
                title: "Cancel"
                onClicked: root.cancel()
            }

            Key {
                id: saveKey

                objectName: "sheetSaveKey"
                title: root.saveTitle
                lit: true
                enabled: root.canSave
                onClicked: root.confirm()
            }
        }
    }
}
