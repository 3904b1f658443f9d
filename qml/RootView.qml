import QtQuick
import QtQuick.Layouts
import Qt.labs.settings
import Coinhall

// The whole window's content: the header with the money keys, the read-outs and the
// theme picker; the "Console" sidebar that picks one of the seven screens; the
// current screen; the status line; the open sheet on top; and, while the books are
// locked, the lock overlay in place of all that. The help is a window of its own.
//
// Screens are given two signals, `openSheet(sheet)` and
// `showScreen(key)`; sheets are given their CHSheet value as `sheet` and close
// themselves with their `done` signal. Neither opens the other directly.
FocusScope {
    id: root

    // The key of the current screen; the dashboard at start.
    property string screen: "dashboard"
    // The open sheet (a CHSheet value), or null. Never the help: that opens its window.
    property var sheet: null

    // The seven screens in sidebar order: key, title (as shown) and symbol.
    readonly property var screens: [
        { key: "dashboard", title: "Dashboard", icon: "gauge.with.dots.needle.67percent" },
        { key: "register", title: "Transactions", icon: "list.bullet.rectangle" },
        { key: "bills", title: "Bills", icon: "doc.text" },
        { key: "royalties", title: "Royalties", icon: "music.note.list" },
        { key: "calendar", title: "Calendar", icon: "calendar" },
        { key: "reports", title: "Reports", icon: "chart.bar.xaxis" },
        { key: "accounts", title: "Accounts", icon: "building.columns" }
    ]
    readonly property alias sheetHost: host
    // The loader of the current screen; null while the books are locked.
    readonly property Loader screenView: desk.item ? desk.item.screenLoader : null
    // The help window, shared by every way into the help.
    readonly property alias helpWindow: helpWindow
    // The control that had the keyboard focus when the open sheet was asked for: it
    // gets the focus back when the sheet closes. Null when it is gone by then.
    property Item sheetOpener: null

    function openSheet(next: var) {
        if (next && next.kind === "help") {
            openHelp()
            return
        }
        if (next && sheet === null)
            sheetOpener = Window.window ? Window.window.activeFocusItem : null
        sheet = next
    }
    function closeSheet() {
        sheet = null
        const opener = sheetOpener
        sheetOpener = null
        if (opener && opener.visible && opener.enabled && isInside(opener, desk))
            opener.forceActiveFocus(Qt.OtherFocusReason)
        else
            focusScreen()
    }
    function isInside(item: Item, ancestor: Item): bool {
        for (let p = item; p; p = p.parent) {
            if (p === ancestor)
                return true
        }
        return false
    }
    // The help request of the Help menu, the kit and the sidebar: the help window at
    // its first chapter. It holds no data, so the lock lets it through.
    function openHelp() {
        helpWindow.show(0)
    }
    function showScreen(key: string) {
        if (screens.some(s => s.key === key))
            screen = key
    }
    function focusScreen() {
        if (screenView)
            screenView.forceActiveFocus()
    }

    // On the very first run, and only then, the help opens by itself.
    function welcomeOnce() {
        const welcomed = prefs.value("welcomed", false)
        if (welcomed === true || welcomed === "true")
            return
        prefs.setValue("welcomed", true)
        openHelp()
    }

    Component.onCompleted: welcomeOnce()

    Settings {
        id: prefs
    }

    // While locked, the overlay draws its own ground: nothing but it shows.
    Rectangle {
        anchors.fill: parent
        visible: !Store.locked
        color: Looks.current.bg
    }

    CHHelpWindow {
        id: helpWindow
    }

    // Everything of the books: made only once they are open, so while they are locked
    // no amount, name or date exists to be drawn, reached by the keyboard or read out.
    Loader {
        id: desk

        objectName: "desk"
        anchors.fill: parent
        active: !Store.locked
        visible: active
        focus: true
        // It takes no input while a sheet is open.
        enabled: root.sheet === null
        sourceComponent: deskComponent
        // The books just opened (or the view was made on open books): the keyboard goes to the screen.
        onLoaded: root.focusScreen()
    }

    Component {
        id: deskComponent

        FocusScope {
            readonly property alias screenLoader: screenLoader

            focus: true

            ColumnLayout {
                anchors.fill: parent
                anchors.margins: Tokens.spaceM
                spacing: Tokens.spaceM

                Panel {
                    id: header

                    Layout.fillWidth: true
                    screws: true
                    leftPadding: 24
                    rightPadding: 24
                    topPadding: 12
                    bottomPadding: 12

                    RowLayout {
                        anchors.fill: parent
                        spacing: Tokens.spaceL

                        ColumnLayout {
                            Layout.fillWidth: true
                            Layout.minimumWidth: 150
                            spacing: 2

                            Text {
                                Layout.fillWidth: true
                                text: "QFS COINHALL"
                                font.family: Tokens.displayFamily
                                font.weight: Font.ExtraBold
                                font.pointSize: Tokens.pt(20)
                                color: Looks.current.text
                                elide: Text.ElideRight
                                textFormat: Text.PlainText
                                Accessible.role: Accessible.Heading
                                Accessible.name: text
                            }
                            Text {
                                Layout.fillWidth: true
                                text: "Bills · income · royalties · private on this computer"
                                font.family: Tokens.textFamily
                                font.weight: Font.DemiBold
                                font.pointSize: Tokens.pt(11)
                                color: Looks.current.soft
                                elide: Text.ElideRight
                                textFormat: Text.PlainText
                            }
                            Text {
                                Layout.fillWidth: true
                                text: HelpBook.fullName + " · " + HelpBook.websiteText
                                font.family: Tokens.textFamily
                                font.pointSize: Tokens.pt(9.5)
                                color: Looks.current.muted
                                elide: Text.ElideRight
                                textFormat: Text.PlainText
                            }
                        }

                        Key {
                            objectName: "moneyInKey"
                            title: "Money in"
                            icon.name: "plus.circle"
                            onClicked: root.openSheet(CHSheet.newTx(true))
                        }
                        Key {
                            objectName: "moneyOutKey"
                            title: "Money out"
                            icon.name: "minus.circle"
                            onClicked: root.openSheet(CHSheet.newTx(false))
                        }
                        Key {
                            objectName: "transferKey"
                            title: "Transfer"
                            icon.name: "arrow.left.arrow.right"
                            onClicked: root.openSheet(CHSheet.transfer())
                        }

                        LCD {
                            objectName: "headerLCD"

                            RowLayout {
                                anchors.fill: parent
                                spacing: 18

                                Readout {
                                    objectName: "totalReadout"
                                    caption: "TOTAL"
                                    value: Store.totalText
                                }
                                Readout {
                                    objectName: "royaltiesReadout"
                                    caption: "ROYALTIES DUE"
                                    value: Store.royaltiesDueText
                                }
                                Readout {
                                    objectName: "dueSoonReadout"
                                    caption: "DUE 14 DAYS"
                                    value: String(Store.dueSoonCount)
                                }
                            }
                        }

                        Rectangle {
                            objectName: "overdueBadge"
                            visible: Store.overdueCount > 0
                            implicitWidth: badgeText.implicitWidth + 2 * Tokens.spaceM
                            implicitHeight: badgeText.implicitHeight + Tokens.spaceS
                            radius: height / 2
                            color: Looks.current.accent

                            Text {
                                id: badgeText

                                anchors.centerIn: parent
                                text: Store.overdueCount + " overdue"
                                font.family: Tokens.textFamily
                                font.weight: Font.ExtraBold
                                font.pointSize: Tokens.pt(Tokens.captionSize)
                                color: Looks.current.bg
                                textFormat: Text.PlainText
                            }
                        }

                        ThemePicker {
                        }
                    }
                }

                RowLayout {
                    Layout.fillWidth: true
                    Layout.fillHeight: true
                    spacing: Tokens.spaceM

                    Panel {
                        id: sidebar

                        Layout.preferredWidth: 212
                        Layout.fillHeight: true
                        screws: true
                        topPadding: 22
                        bottomPadding: 22

                        ColumnLayout {
                            anchors.fill: parent
                            spacing: Tokens.spaceS

                            Label2 {
                                Layout.bottomMargin: Tokens.spaceXS
                                text: "Console"
                            }

                            Repeater {
                                model: root.screens

                                Key {
                                    required property var modelData

                                    objectName: "screenKey_" + modelData.key
                                    Layout.fillWidth: true
                                    title: modelData.title
                                    icon.name: modelData.icon
                                    lit: root.screen === modelData.key
                                    onClicked: root.screen = modelData.key
                                }
                            }

                            Item {
                                Layout.fillHeight: true
                            }

                            Key {
                                objectName: "importKey"
                                Layout.fillWidth: true
                                title: "Import bank CSV"
                                icon.name: "square.and.arrow.down"
                                onClicked: root.openSheet(CHSheet.importCSV())
                            }
                            Key {
                                objectName: "helpKey"
                                Layout.fillWidth: true
                                title: "Help"
                                icon.name: "questionmark.circle"
                                onClicked: root.openHelp()
                            }
                        }
                    }

                    Loader {
                        id: screenLoader

                        Layout.fillWidth: true
                        Layout.fillHeight: true
                        focus: true
                        sourceComponent: {
                            switch (root.screen) {
                            case "register":
                                return transactions
                            case "bills":
                                return bills
                            case "royalties":
                                return royalties
                            case "calendar":
                                return calendar
                            case "reports":
                                return reports
                            case "accounts":
                                return accounts
                            }
                            return dashboard
                        }
                    }
                }

                Text {
                    objectName: "statusLine"
                    Layout.fillWidth: true
                    Layout.leftMargin: Tokens.spaceXS
                    text: Store.status
                    font.family: Tokens.textFamily
                    font.pointSize: Tokens.pt(Tokens.captionSize)
                    color: Looks.current.muted
                    elide: Text.ElideRight
                    textFormat: Text.PlainText
                    // Keeps its line even when there is nothing to say.
                    Layout.preferredHeight: Math.ceil(fontMetrics.height)

                    FontMetrics {
                        id: fontMetrics

                        font.family: Tokens.textFamily
                        font.pointSize: Tokens.pt(Tokens.captionSize)
                    }
                }
            }
        }
    }

    SheetHost {
        id: host

        objectName: "sheetHost"
        anchors.fill: parent
        sheet: Store.locked ? null : root.sheet
        onDone: root.closeSheet()
    }

    LockOverlay {
        id: lock

        objectName: "lockOverlay"
        anchors.fill: parent
        visible: Store.locked
        focus: Store.locked
    }

    // The screens; each is made when it is shown and dropped when another is chosen.
    Component {
        id: dashboard

        DashboardScreen {
            onOpenSheet: next => root.openSheet(next)
            onShowScreen: key => root.showScreen(key)
        }
    }
    Component {
        id: transactions

        TransactionsScreen {
            onOpenSheet: next => root.openSheet(next)
            onShowScreen: key => root.showScreen(key)
        }
    }
    Component {
        id: bills

        BillsScreen {
            onOpenSheet: next => root.openSheet(next)
            onShowScreen: key => root.showScreen(key)
        }
    }
    Component {
        id: royalties

        RoyaltiesScreen {
            onOpenSheet: next => root.openSheet(next)
            onShowScreen: key => root.showScreen(key)
        }
    }
    Component {
        id: calendar

        CalendarScreen {
            onOpenSheet: next => root.openSheet(next)
            onShowScreen: key => root.showScreen(key)
        }
    }
    Component {
        id: reports

        ReportsScreen {
            onOpenSheet: next => root.openSheet(next)
            onShowScreen: key => root.showScreen(key)
        }
    }
    Component {
        id: accounts

        AccountsScreen {
            onOpenSheet: next => root.openSheet(next)
            onShowScreen: key => root.showScreen(key)
        }
    }
}
