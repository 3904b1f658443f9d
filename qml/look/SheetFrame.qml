import QtQuick
import QtQuick.Layouts
import Coinhall

// The frame of every editor sheet: the title, the form rows in one grouped well, and
// the button row (an optional destructive key at the leading end, then "Cancel" and
// the confirming key). Return confirms only while `canSave`; Escape always cancels.
// When the sheet opens, keyboard focus goes to its first field.
FocusScope {
    id: root

    property string title
    // Caption of the confirming key, chosen by each editor.
    property string saveTitle: "Save"
    // The confirming key (and Return) work only while this is true.
    property bool canSave: true
    // Caption of the additional destructive key (typically a delete); empty for none.
    property string extraTitle
    // The look to draw with.
    property var look: Looks.current
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

    Rectangle {
        anchors.fill: parent
        radius: Tokens.sheetRadius
        border.width: 1
        border.color: root.look.line
        gradient: Gradient {
            GradientStop { position: 0; color: root.look.panelTop }
            GradientStop { position: 1; color: root.look.panelBottom }
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
            color: root.look.text
            textFormat: Text.PlainText
            elide: Text.ElideRight
            Accessible.role: Accessible.Heading
            Accessible.name: text
        }

        // The grouped form: the rows on one recessed well.
        Rectangle {
            Layout.fillWidth: true
            Layout.fillHeight: true
            Layout.leftMargin: Tokens.spaceXL
            Layout.rightMargin: Tokens.spaceXL
            Layout.topMargin: Tokens.spaceM
            implicitHeight: form.implicitHeight + 2 * Tokens.spaceL
            visible: form.children.length > 0
            radius: Tokens.wellRadius
            color: root.look.well
            border.width: 1
            border.color: root.look.line

            ColumnLayout {
                id: form

                anchors.fill: parent
                anchors.margins: Tokens.spaceL
                spacing: Tokens.spaceM
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
                look: root.look
                destructive: true
                onClicked: root.extra()
            }

            Item {
                Layout.fillWidth: true
            }

            Key {
                id: cancelKey

                title: "Cancel"
                look: root.look
                onClicked: root.cancel()
            }

            Key {
                id: saveKey

                title: root.saveTitle
                look: root.look
                lit: true
                enabled: root.canSave
                onClicked: root.confirm()
            }
        }
    }
}
