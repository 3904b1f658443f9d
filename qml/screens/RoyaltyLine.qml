import QtQuick
import QtQuick.Layouts
import Coinhall

// One royalty as a row. Expected: the note symbol, the payer (with " · FOLLOWING UP"
// while followed up), its work and period, the expected amount and date, and a "Got
// it" key. Received: the amount that came and how it compared with the guess. Its
// menu edits or deletes the royalty.
ScheduleLine {
    id: root

    // The royalty to show: a map from RoyaltiesBridge.
    property var royalty: ({})
    readonly property bool received: royalty.received === true

    // "Got it" was pressed.
    signal receiveRequested

    editText: "Edit royalty…"
    deleteText: "Delete"
    Accessible.name: received
                     ? (royalty.payer || "") + ", " + (royalty.receivedText || "") + ", " + (royalty.versus || "")
                       + ", " + (royalty.receivedDateText || "")
                     : (royalty.payerLine || "") + ", " + (royalty.expectedText || "") + ", expected "
                       + (royalty.expectedDateText || "")

    Icon {
        symbol: "music.note"
        size: 18
        color: root.received ? Tokens.positive
               : root.royalty.followingUp ? Tokens.destructive : Looks.current.accent
    }

    ColumnLayout {
        Layout.fillWidth: true
        spacing: 1

        BodyText {
            objectName: "payerText"
            Layout.fillWidth: true
            text: (root.received ? root.royalty.payer : root.royalty.payerLine) || ""
            font.weight: Font.Bold
            elide: Text.ElideRight
        }
        CaptionText {
            objectName: "workText"
            Layout.fillWidth: true
            visible: text !== ""
            text: root.received ? [root.royalty.workLine, root.royalty.receivedDateText].filter(part => part)
                                                                                      .join(" · ")
                                : root.royalty.workLine || ""
            elide: Text.ElideRight
        }
    }

    ColumnLayout {
        spacing: 1

        FigureText {
            objectName: "amountText"
            Layout.alignment: Qt.AlignRight
            text: (root.received ? root.royalty.receivedText : root.royalty.expectedText) || ""
            color: root.received ? Tokens.positive : Looks.current.text
            Accessible.role: Accessible.StaticText
            Accessible.name: text
        }
        CaptionText {
            objectName: "sideText"
            Layout.alignment: Qt.AlignRight
            text: (root.received ? root.royalty.versus : root.royalty.expectedDateText) || ""
        }
    }

    Key {
        objectName: "gotItKey"
        visible: !root.received
        title: "Got it"
        onClicked: root.receiveRequested()
    }
}
