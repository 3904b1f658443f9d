pragma ComponentBehavior: Bound
import QtQuick
import QtQuick.Controls.Basic
import QtQuick.Layouts
import Coinhall

// The places money sits, with this month's line count and each balance, the total
// of the open ones, the lock setting and the daily backups (each can be restored),
// the monthly budgets of the spending categories, and the share of income set aside
// for taxes with the income categories it counts.
Item {
    id: root

    // The accounts, total and budgets shown, and the budget operations.
    readonly property alias bridge: bridge

    // Asks the root view to open a sheet (a CHSheet value).
    signal openSheet(var sheet)
    // Asks the root view to switch to another screen (its key, for example "bills").
    signal showScreen(string screen)

    AccountsBridge {
        id: bridge

        store: Store
        Component.onCompleted: refreshBackups()
    }

    ScreenColumn {
        anchors.fill: parent

        // Title, subtitle and the key that adds an account.
        RowLayout {
            Layout.fillWidth: true
            Layout.topMargin: Tokens.spaceS
            Layout.leftMargin: Tokens.spaceXS
            Layout.rightMargin: Tokens.spaceXS
            spacing: Tokens.spaceL

            ScreenTitle {
                Layout.fillWidth: true
                title: "Accounts"
                subtitle: "Checking, savings, cards, PayPal, Cash App, cash in the drawer."
            }

            Key {
                objectName: "addAccountKey"
                Layout.alignment: Qt.AlignTop
                title: "Add account"
                icon.name: "plus"
                onClicked: root.openSheet(CHSheet.newAccount())
            }
        }

        Panel {
            Layout.fillWidth: true

            ColumnLayout {
                anchors.fill: parent
                spacing: Tokens.spaceS

                ListRows {
                    id: accountRows

                    spacing: Tokens.spaceS
                    // A count, not the list: a changed balance updates the lines in place.
                    model: bridge.accounts.length

                    delegate: RowBG {
                        id: line

                        required property int index
                        readonly property var account: bridge.accounts[index] || ({})

                        objectName: "accountLine"
                        width: accountRows.cellWidth
                        Accessible.role: Accessible.ListItem
                        Accessible.name: account.title + ", " + account.countText + ", balance " + account.balanceText

                        RowLayout {
                            anchors.fill: parent
                            spacing: Tokens.spaceL

                            ColumnLayout {
                                Layout.fillWidth: true
                                spacing: 2

                                BodyText {
                                    objectName: "accountTitle"
                                    Layout.fillWidth: true
                                    text: line.account.title || ""
                                    font.weight: Font.Bold
                                    color: line.account.closed ? Looks.current.muted : Looks.current.text
                                    elide: Text.ElideRight
                                }
                                CaptionText {
                                    objectName: "accountCount"
                                    Layout.fillWidth: true
                                    text: line.account.countText || ""
                                    elide: Text.ElideRight
                                }
                            }

                            FigureText {
                                objectName: "accountBalance"
                                text: line.account.balanceText || ""
                                color: Fmt.isNegative(line.account.balance || "0") ? Looks.current.soft : Looks.current.text
                            }

                            Key {
                                objectName: "editAccountKey"
                                title: "Edit"
                                Accessible.description: line.account.name || ""
                                onClicked: root.openSheet(CHSheet.editAccount(line.account))
                            }
                        }
                    }
                }

                RowLayout {
                    Layout.fillWidth: true
                    Layout.topMargin: Tokens.spaceS
                    Layout.leftMargin: Tokens.rowPadH
                    Layout.rightMargin: Tokens.rowPadH
                    spacing: Tokens.spaceL
                    Accessible.role: Accessible.StaticText
                    Accessible.name: "Total across open accounts " + bridge.totalText

                    BodyText {
                        Layout.fillWidth: true
                        text: "Total across open accounts"
                        font.weight: Font.ExtraBold
                        color: Looks.current.soft
                        elide: Text.ElideRight
                        Accessible.ignored: true
                    }
                    FigureText {
                        objectName: "totalText"
                        text: bridge.totalText
                        font.pointSize: Tokens.pt(15)
                        Accessible.ignored: true
                    }
                }
            }
        }

        Panel {
            objectName: "privacyPanel"
            Layout.fillWidth: true

            ColumnLayout {
                anchors.fill: parent
                spacing: Tokens.spaceM

                Label2 {
                    text: "Privacy & backups"
                }

                FormToggle {
                    objectName: "unlockToggle"
                    Layout.fillWidth: true
                    text: bridge.unlockText
                    checked: Prefs.requireUnlock
                    onToggled: {
                        Prefs.requireUnlock = checked
                        // The Store announces the change before it keeps it, so the
                        // binding has read the old value: read it again now.
                        checked = Qt.binding(() => Prefs.requireUnlock)
                    }
                }

                // On or off only through the passphrase sheet, which may be cancelled.
                RowLayout {
                    Layout.fillWidth: true
                    spacing: Tokens.spaceL

                    FormToggle {
                        objectName: "encryptToggle"
                        Layout.fillWidth: true
                        text: "Encrypt my books with a passphrase"
                        checked: Store.encrypted
                        onToggled: {
                            root.openSheet(CHSheet.passphrase(checked ? "on" : "off"))
                            checked = Qt.binding(() => Store.encrypted)
                        }
                    }
                    Key {
                        objectName: "changePassphraseKey"
                        visible: Store.encrypted
                        title: "Change passphrase…"
                        icon.name: "lock.shield"
                        onClicked: root.openSheet(CHSheet.passphrase("change"))
                    }
                }

                RowLayout {
                    Layout.fillWidth: true
                    spacing: Tokens.spaceL

                    BodyText {
                        Layout.fillWidth: true
                        text: bridge.privacyText
                        font.pointSize: Tokens.pt(Tokens.captionSize + 1)
                        color: Looks.current.muted
                        wrapMode: Text.WordWrap
                    }

                    Key {
                        objectName: "backupsKey"
                        title: "Show backups folder"
                        icon.name: "folder"
                        onClicked: {
                            if (!Qt.openUrlExternally(bridge.backupsUrl))
                                Store.status = "Backups are kept in " + Store.backupsFolder + "."
                        }
                    }
                }

                // The daily backups, each with "Restore…", which asks first.
                ListRows {
                    id: backupRows

                    columns: width > 760 ? 2 : 1
                    columnSpacing: Tokens.spaceL
                    rowSpacing: Tokens.spaceS
                    // A count, not the list: a count read later updates its line in place.
                    model: bridge.backups.length

                    delegate: RowBG {
                        id: backupLine

                        required property int index
                        readonly property var backup: bridge.backups[index] || ({})

                        objectName: "backupLine"
                        width: backupRows.cellWidth
                        Accessible.role: Accessible.ListItem
                        Accessible.name: "Backup of " + (backup.dateText || "") + ", " + (backup.sizeText || "") + ", "
                                         + (backup.countText || "")

                        RowLayout {
                            anchors.fill: parent
                            spacing: Tokens.spaceM

                            ColumnLayout {
                                Layout.fillWidth: true
                                spacing: 2

                                BodyText {
                                    objectName: "backupDate"
                                    Layout.fillWidth: true
                                    text: backupLine.backup.dateText || ""
                                    font.weight: Font.Bold
                                    elide: Text.ElideRight
                                }
                                CaptionText {
                                    objectName: "backupFigures"
                                    Layout.fillWidth: true
                                    text: (backupLine.backup.sizeText || "") + " · " + (backupLine.backup.countText || "")
                                    color: backupLine.backup.readable === false ? Tokens.destructive : Looks.current.muted
                                    elide: Text.ElideRight
                                }
                            }

                            Key {
                                objectName: "restoreBackupKey"
                                title: "Restore…"
                                enabled: backupLine.backup.readable === true
                                Accessible.description: "Backup of " + (backupLine.backup.dateText || "")
                                onClicked: root.openSheet(CHSheet.restoreBackup(backupLine.backup))
                            }
                        }
                    }
                }

                EmptyNote {
                    Layout.fillWidth: true
                    visible: bridge.backups.length === 0
                    text: "No backups yet. One is made each day Coinhall opens."
                }
            }
        }

        Panel {
            objectName: "budgetsPanel"
            Layout.fillWidth: true

            ColumnLayout {
                anchors.fill: parent
                spacing: Tokens.spaceM

                Label2 {
                    text: "Monthly budgets"
                }

                BodyText {
                    Layout.fillWidth: true
                    text: "Set a limit on any spending category. Reports flag it in red when you go over."
                    font.pointSize: Tokens.pt(Tokens.captionSize + 1)
                    color: Looks.current.muted
                    wrapMode: Text.WordWrap
                }

                ListRows {
                    id: budgetRows

                    columns: width > 640 ? 2 : 1
                    columnSpacing: Tokens.spaceXL
                    rowSpacing: Tokens.spaceS
                    model: bridge.budgets.length

                    delegate: BudgetRow {
                        // The position in this list (an integer model's data is its row).
                        required property int modelData
                        readonly property var entry: root.bridge.budgets[modelData] || ({})

                        objectName: "budgetRow"
                        width: budgetRows.cellWidth
                        bridge: root.bridge
                        // The category's place in the Book, not in this list.
                        index: entry.index === undefined ? -1 : entry.index
                        name: entry.name || ""
                        budget: entry.budget || ""
                    }
                }
            }
        }

        Panel {
            objectName: "setAsidePanel"
            Layout.fillWidth: true
            Layout.bottomMargin: Tokens.spaceM

            ColumnLayout {
                anchors.fill: parent
                spacing: Tokens.spaceM

                Label2 {
                    text: "Set aside for taxes"
                }

                BodyText {
                    Layout.fillWidth: true
                    text: "A share of your income that belongs to the tax office. The dashboard and Reports show what "
                          + "to set aside and what you paid under Taxes. 0 turns it off."
                    font.pointSize: Tokens.pt(Tokens.captionSize + 1)
                    color: Looks.current.muted
                    wrapMode: Text.WordWrap
                }

                RowLayout {
                    Layout.fillWidth: true
                    spacing: Tokens.spaceM

                    BodyText {
                        id: percentLabel

                        text: "Percent of income"
                        font.weight: Font.DemiBold
                        Accessible.ignored: true
                    }
                    TextField {
                        id: percentField

                        objectName: "setAsidePercentField"
                        Layout.preferredWidth: 90
                        implicitHeight: Tokens.fieldHeight
                        leftPadding: Tokens.spaceM
                        rightPadding: Tokens.spaceM
                        horizontalAlignment: TextInput.AlignRight
                        placeholderText: "0"
                        font.family: Tokens.lcdFamily
                        font.pointSize: Tokens.pt(Tokens.bodySize)
                        color: Looks.current.text
                        selectionColor: Looks.current.accent
                        selectedTextColor: Looks.current.bg
                        placeholderTextColor: Looks.current.muted
                        inputMethodHints: Qt.ImhFormattedNumbersOnly
                        selectByMouse: true
                        text: bridge.setAsidePercent
                        Accessible.role: Accessible.EditableText
                        Accessible.name: percentLabel.text

                        // Return, Enter or leaving the field commits; a refusal keeps the text to fix.
                        onEditingFinished: {
                            percentError.text = bridge.commitSetAsidePercent(text)
                            if (percentError.text === "")
                                text = Qt.binding(() => bridge.setAsidePercent)
                        }

                        background: Rectangle {
                            radius: Tokens.keyRadius
                            color: Looks.current.bg
                            border.width: percentField.activeFocus ? 1.5 : 1
                            border.color: percentError.text !== "" ? Tokens.destructive
                                                                   : percentField.activeFocus ? Looks.current.accent
                                                                                              : Looks.current.line
                        }
                    }
                    BodyText {
                        text: "%"
                        Accessible.ignored: true
                    }
                    BodyText {
                        id: percentError

                        objectName: "setAsideError"
                        Layout.fillWidth: true
                        color: Tokens.destructive
                        wrapMode: Text.WordWrap
                        Accessible.role: Accessible.AlertMessage
                        Accessible.name: text
                    }
                }

                BodyText {
                    Layout.fillWidth: true
                    text: "Income that counts:"
                    font.pointSize: Tokens.pt(Tokens.captionSize + 1)
                    color: Looks.current.muted
                }

                ListRows {
                    id: setAsideRows

                    columns: width > 640 ? 3 : 1
                    columnSpacing: Tokens.spaceXL
                    rowSpacing: Tokens.spaceS
                    model: bridge.setAsideCategories.length

                    delegate: FormToggle {
                        required property int modelData
                        readonly property var entry: root.bridge.setAsideCategories[modelData] || ({})

                        objectName: "setAsideCategory"
                        width: setAsideRows.cellWidth
                        text: entry.name || ""
                        checked: entry.counts === true
                        onToggled: {
                            root.bridge.setCountsForSetAside(entry.name, checked)
                            checked = Qt.binding(() => entry.counts === true)
                        }
                    }
                }
            }
        }
    }
}
