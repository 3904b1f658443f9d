pragma ComponentBehavior: Bound
import QtQuick
import QtQuick.Dialogs
import QtQuick.Layouts
import Coinhall

// Income and spending for one of five periods: four figure tiles, the monthly chart,
// and both sides split by category, spending compared with its budgets. The period
// starts at "This month" each time the screen is shown. Below, the year's report for
// the accountant: a tax year and the keys that save it as PDF or CSV, or print it.
Item {
    id: root

    // The figures of the chosen period.
    readonly property alias bridge: bridge
    // The chosen period, 0-4 in picker order.
    property alias period: bridge.period

    // Asks the root view to open a sheet (a CHSheet value).
    signal openSheet(var sheet)
    // Asks the root view to switch to another screen (its key, for example "bills").
    signal showScreen(string screen)

    // Opens the save dialog for the year's report, proposing "Coinhall <year>.<suffix>".
    function startYearSave(suffix: string) {
        const proposed = bridge.proposedYearFile(suffix)
        yearDialog.suffix = suffix
        yearDialog.currentFolder = String(proposed).replace(/\/[^\/]*$/, "")
        yearDialog.selectedFile = proposed
        yearDialog.open()
    }

    ReportsBridge {
        id: bridge

        store: Store
    }

    FileDialog {
        id: yearDialog

        // "pdf" or "csv": what the dialog saves.
        property string suffix: "pdf"

        title: suffix === "pdf" ? "Save the year's report as PDF" : "Save the year's report as CSV"
        fileMode: FileDialog.SaveFile
        nameFilters: suffix === "pdf" ? ["PDF document (*.pdf)"] : ["Comma-separated text (*.csv)"]
        defaultSuffix: suffix
        onAccepted: suffix === "pdf" ? bridge.saveYearPdf(selectedFile) : bridge.saveYearCsv(selectedFile)
    }

    ScreenColumn {
        anchors.fill: parent

        Panel {
            Layout.fillWidth: true

            RowLayout {
                anchors.fill: parent
                spacing: Tokens.spaceL

                ScreenTitle {
                    Layout.fillWidth: true
                    Layout.minimumWidth: 200
                    title: "Reports"
                    subtitle: "Where the money came from and where it went. Handy at tax time."
                }

                // The segmented period picker; its label is for screen readers only.
                Row {
                    objectName: "periodPicker"
                    Layout.alignment: Qt.AlignVCenter
                    spacing: 2
                    Accessible.role: Accessible.PageTabList
                    Accessible.name: "Period"

                    Repeater {
                        model: bridge.periodLabels

                        Key {
                            required property int index
                            required property string modelData

                            objectName: "periodKey"
                            title: modelData
                            lit: bridge.period === index
                            leftPadding: Tokens.spaceM
                            rightPadding: Tokens.spaceM
                            // The button's own state: Qt hands it to screen readers when they
                            // connect, over anything set on Accessible.
                            checked: lit
                            Accessible.role: Accessible.PageTab
                            onClicked: bridge.period = index
                        }
                    }
                }
            }
        }

        RowLayout {
            Layout.fillWidth: true
            spacing: Tokens.spaceM

            StatTile {
                objectName: "incomeTile"
                Layout.fillWidth: true
                Layout.preferredWidth: 1
                label: "Income"
                value: bridge.incomeText
            }
            StatTile {
                objectName: "spendingTile"
                Layout.fillWidth: true
                Layout.preferredWidth: 1
                label: "Spending"
                value: bridge.spendingText
            }
            StatTile {
                objectName: "netTile"
                Layout.fillWidth: true
                Layout.preferredWidth: 1
                label: "Net"
                value: bridge.netText
            }
            StatTile {
                objectName: "royaltyShareTile"
                Layout.fillWidth: true
                Layout.preferredWidth: 1
                label: "Royalties share of income"
                value: bridge.royaltyShareText
            }
        }

        SetAsideTile {
            objectName: "setAsideTile"
            Layout.fillWidth: true
            visible: bridge.setAsideShown
            label: "Set aside for taxes · " + bridge.periodLabels[bridge.period]
            percentText: bridge.setAsidePercentText
            dueText: bridge.setAsideDueText
            paidText: bridge.setAsidePaidText
            leftText: bridge.setAsideLeftText
            overpaid: bridge.overpaid
        }

        Panel {
            objectName: "taxYearPanel"
            Layout.fillWidth: true

            ColumnLayout {
                anchors.fill: parent
                spacing: Tokens.spaceS

                Label2 {
                    text: "Year's report for your accountant"
                }

                // Wraps rather than clips when the window is zoomed in.
                Flow {
                    Layout.fillWidth: true
                    spacing: Tokens.spaceM

                    Row {
                        spacing: Tokens.spaceS

                        BodyText {
                            id: taxYearLabel

                            anchors.verticalCenter: parent.verticalCenter
                            text: "Tax year"
                            Accessible.ignored: true
                        }
                        FormDropDown {
                            id: taxYearPicker

                            objectName: "taxYearPicker"
                            implicitWidth: 110
                            enabled: bridge.taxYears.length > 0
                            model: bridge.taxYears.map(year => String(year))
                            currentIndex: bridge.taxYears.indexOf(bridge.taxYear)
                            Accessible.role: Accessible.ComboBox
                            Accessible.name: taxYearLabel.text
                            onActivated: index => bridge.taxYear = bridge.taxYears[index]
                        }
                    }
                    Key {
                        objectName: "savePdfKey"
                        title: "Save as PDF…"
                        enabled: bridge.taxYear > 0
                        onClicked: root.startYearSave("pdf")
                    }
                    Key {
                        objectName: "printKey"
                        title: "Print…"
                        enabled: bridge.taxYear > 0
                        onClicked: bridge.printYear()
                    }
                    Key {
                        objectName: "saveCsvKey"
                        title: "Save as CSV…"
                        enabled: bridge.taxYear > 0
                        onClicked: root.startYearSave("csv")
                    }
                    BodyText {
                        height: taxYearPicker.height
                        verticalAlignment: Text.AlignVCenter
                        visible: bridge.taxYears.length === 0
                        text: "No lines yet: a year shows here once it has some."
                        color: Looks.current.muted
                    }
                }
            }
        }

        Panel {
            objectName: "chartPanel"
            Layout.fillWidth: true

            ColumnLayout {
                anchors.fill: parent
                spacing: Tokens.spaceS

                Label2 {
                    text: "Money in vs money out · 6 months"
                }

                MonthlyChart {
                    objectName: "monthlyChart"
                    Layout.fillWidth: true
                    Layout.preferredHeight: 220
                    months: bridge.monthly
                }
            }
        }

        RowLayout {
            Layout.fillWidth: true
            Layout.bottomMargin: Tokens.spaceM
            spacing: Tokens.spaceM

            Panel {
                Layout.fillWidth: true
                Layout.preferredWidth: 1
                Layout.alignment: Qt.AlignTop

                CategoryBars {
                    objectName: "spendingBars"
                    anchors.fill: parent
                    title: "Spending by category"
                    lines: bridge.spendingLines
                    color: Looks.current.accent
                }
            }

            Panel {
                Layout.fillWidth: true
                Layout.preferredWidth: 1
                Layout.alignment: Qt.AlignTop

                CategoryBars {
                    objectName: "incomeBars"
                    anchors.fill: parent
                    title: "Income by category"
                    lines: bridge.incomeLines
                    color: Tokens.positive
                }
            }
        }
    }
}
