pragma ComponentBehavior: Bound
import QtQuick
import QtQuick.Dialogs
import QtQuick.Layouts
import Coinhall

// Brings a bank's download (CSV, OFX, QFX, QIF or CAMT.053) into one account: choose
// the file, check which column is which (for a CSV table), pick the account, flip the
// signs if the bank shows spending as money in, look at the preview with its counts,
// and import the new lines.
SheetFrame {
    id: root

    // The sheet case that opened this editor (CHSheet).
    property var sheet
    // The file, mapping, account and preview.
    readonly property alias bridge: bridge
    // The six column pickers, in the order of ImportBridge.Column.
    readonly property var columnLabels: ["Date", "Description", "Amount", "Debit (money out)", "Credit (money in)",
        "Category (optional)"]

    // Closes the sheet.
    signal done

    // Reads the file the open panel confirmed (a file address).
    function chooseFile(file: url) {
        bridge.open(file)
    }
    // Reads several files at once.
    function chooseFiles(files: var) {
        bridge.openFiles(files)
    }

    // Files dropped on the window come with the sheet case, which the sheet host hands
    // over once the sheet is made.
    onSheetChanged: {
        if (sheet && sheet.files && sheet.files.length > 0)
            chooseFiles(sheet.files)
    }

    width: 720
    height: 680
    title: "Import from your bank"
    saveTitle: bridge.importTitle
    canSave: bridge.newCount > 0
    onSave: {
        bridge.importNow()
        done()
    }
    onCancel: done()

    ImportBridge {
        id: bridge

        store: Store
    }

    FileDialog {
        id: openPanel

        title: "Choose CSV file"
        fileMode: FileDialog.OpenFiles
        nameFilters: ["Bank downloads (*.csv *.CSV *.ofx *.OFX *.qfx *.QFX *.qif *.QIF *.xml *.XML *.txt *.TXT)",
            "All files (*)"]
        onAccepted: root.chooseFiles(selectedFiles)
    }

    BodyText {
        Layout.fillWidth: true
        text: "Log in to your bank's website, download your activity as a CSV, OFX, QFX, QIF or CAMT.053 file (sometimes called \"Export\" or \"Download transactions\"), then choose it here. Lines you've already imported are skipped automatically."
        font.pointSize: Tokens.pt(Tokens.captionSize + 0.5)
        color: Looks.current.soft
        wrapMode: Text.WordWrap
    }

    RowLayout {
        Layout.fillWidth: true
        spacing: Tokens.spaceM

        Key {
            objectName: "chooseFileKey"
            title: "Choose CSV file…"
            onClicked: openPanel.open()
        }
        BodyText {
            objectName: "fileName"
            Layout.fillWidth: true
            text: bridge.fileName !== "" ? bridge.fileName : "No file chosen"
            font.weight: bridge.fileName !== "" ? Font.DemiBold : Font.Normal
            color: bridge.fileName !== "" ? Looks.current.text : Looks.current.muted
            elide: Text.ElideMiddle
        }
    }

    BodyText {
        objectName: "message"
        Layout.fillWidth: true
        visible: bridge.message !== ""
        text: bridge.message
        font.weight: Font.DemiBold
        font.pointSize: Tokens.pt(Tokens.captionSize + 0.5)
        color: Tokens.destructive
        wrapMode: Text.WordWrap
        Accessible.role: Accessible.AlertMessage
        Accessible.name: text
    }

    CaptionText {
        objectName: "fileSummary"
        Layout.fillWidth: true
        visible: bridge.summary !== ""
        text: bridge.summary
        elide: Text.ElideRight
        Accessible.role: Accessible.StaticText
        Accessible.name: text
    }

    Repeater {
        model: bridge.fileLines

        CaptionText {
            required property string modelData

            objectName: "fileLine"
            Layout.fillWidth: true
            text: modelData
            elide: Text.ElideMiddle
            Accessible.role: Accessible.StaticText
            Accessible.name: text
        }
    }

    Label2 {
        Layout.topMargin: Tokens.spaceXS
        visible: bridge.readingChangeable
        text: "How the file is written"
    }

    // The encoding, separator and number style found in a table, which the user may
    // correct when the preview shows mangled letters or amounts.
    GridLayout {
        objectName: "readingPickers"
        Layout.fillWidth: true
        visible: bridge.readingChangeable
        columns: 2
        columnSpacing: Tokens.spaceL
        rowSpacing: Tokens.spaceS

        FormChoice {
            objectName: "encodingPicker"
            Layout.fillWidth: true
            Layout.preferredWidth: 1 // the columns share the width evenly
            label: "Text"
            model: bridge.encodingChoices
            currentIndex: bridge.encodingChoices.indexOf(bridge.encoding)
            onActivated: index => bridge.encoding = bridge.encodingChoices[index]
        }
        FormChoice {
            objectName: "separatorPicker"
            Layout.fillWidth: true
            Layout.preferredWidth: 1 // the columns share the width evenly
            label: "Cells separated by"
            model: ["Commas", "Semicolons", "Tabs"]
            currentIndex: bridge.separator
            onActivated: index => bridge.separator = index
        }
        FormChoice {
            objectName: "numberPicker"
            Layout.fillWidth: true
            Layout.preferredWidth: 1 // the columns share the width evenly
            label: "Amounts written"
            model: ["1,234.56", "1.234,56"]
            currentIndex: bridge.decimalComma ? 1 : 0
            onActivated: index => bridge.decimalComma = index === 1
        }
    }

    FormRow {
        visible: bridge.datesAmbiguous

        FormSegments {
            objectName: "dateOrderPicker"
            name: "Dates are written"
            options: ["Month first", "Day first"]
            currentIndex: bridge.dayFirst ? 1 : 0
            onActivated: index => bridge.dayFirst = index === 1
        }
    }

    Label2 {
        Layout.topMargin: Tokens.spaceXS
        visible: bridge.isTable
        text: "Which column is which"
    }

    ListRows {
        id: columnPickers

        objectName: "columnPickers"
        visible: bridge.isTable
        columns: 2
        columnSpacing: Tokens.spaceL
        rowSpacing: Tokens.spaceS
        model: root.columnLabels

        delegate: FormChoice {
            required property int index
            required property string modelData

            objectName: "columnPicker"
            width: columnPickers.cellWidth
            label: modelData
            model: bridge.columnChoices
            currentIndex: bridge.choices.length > index ? bridge.choices[index] : 0
            onActivated: choice => bridge.setChoice(index, choice)
        }
    }

    AccountPicker {
        objectName: "accountPicker"
        Layout.topMargin: Tokens.spaceXS
        label: "Put them in"
        selection: bridge.account
        onSelectionChanged: bridge.account = selection
    }

    FormRow {
        FormToggle {
            objectName: "flipToggle"
            text: "Flip signs (use if spending shows up as money in — common with credit cards)"
            checked: bridge.flip
            onToggled: bridge.flip = checked
        }
    }

    BodyText {
        objectName: "previewTitle"
        Layout.fillWidth: true
        Layout.topMargin: Tokens.spaceXS
        visible: bridge.hasPreview
        text: bridge.previewTitle
        font.weight: Font.ExtraBold
        font.pointSize: Tokens.pt(Tokens.captionSize + 0.5)
        color: Looks.current.soft
        elide: Text.ElideRight
        Accessible.role: Accessible.StaticText
        Accessible.name: text
    }

    ListView {
        id: preview

        objectName: "previewList"
        Layout.fillWidth: true
        Layout.fillHeight: true
        Layout.minimumHeight: 60
        visible: bridge.hasPreview
        clip: true
        model: bridge.previewLines
        spacing: 2
        boundsBehavior: Flickable.StopAtBounds
        activeFocusOnTab: count > 0
        keyNavigationEnabled: true
        highlightMoveDuration: 0
        highlightResizeDuration: 0
        Accessible.role: Accessible.List
        Accessible.name: bridge.previewTitle

        delegate: RowLayout {
            id: line

            required property var modelData

            width: ListView.view.width
            spacing: Tokens.spaceM
            Accessible.role: Accessible.ListItem
            Accessible.name: modelData.date + ", " + modelData.payee + ", " + modelData.category + ", "
                             + modelData.amountText

            Text {
                Layout.preferredWidth: 60
                Layout.alignment: Qt.AlignTop
                text: line.modelData.date
                font.family: Tokens.lcdFamily
                font.pointSize: Tokens.pt(Tokens.captionSize + 0.5)
                color: Looks.current.soft
                textFormat: Text.PlainText
                Accessible.ignored: true
            }
            ColumnLayout {
                Layout.fillWidth: true
                spacing: 0

                BodyText {
                    Layout.fillWidth: true
                    text: line.modelData.payee
                    font.weight: Font.DemiBold
                    font.pointSize: Tokens.pt(Tokens.captionSize + 1)
                    elide: Text.ElideRight
                    maximumLineCount: 1
                    Accessible.ignored: true
                }
                CaptionText {
                    Layout.fillWidth: true
                    text: line.modelData.category
                    elide: Text.ElideRight
                    Accessible.ignored: true
                }
            }
            FigureText {
                Layout.preferredWidth: 100
                Layout.alignment: Qt.AlignTop
                horizontalAlignment: Text.AlignRight
                text: line.modelData.amountText
                font.pointSize: Tokens.pt(Tokens.captionSize + 1)
                fontSizeMode: Text.HorizontalFit
                minimumPointSize: Tokens.pt(8)
                color: line.modelData.negative ? Looks.current.soft : Tokens.positive
                Accessible.ignored: true
            }
        }
    }

    // Keeps the rows at the top when there is no preview to fill the space.
    Item {
        Layout.fillHeight: true
        visible: !bridge.hasPreview
    }
}
