import QtQuick
import QtQuick.Layouts
import Coinhall

// The confirmation of a restore: names the backup's date and what it holds, and that the
// books as they are now are kept beside the money file. "Restore" (or Return) puts the
// backup in place; the status line then says how it went.
SheetFrame {
    id: root

    // The sheet case (CHSheet.restoreBackup): the backup as `record`, a map of
    // AccountsBridge.backups.
    property var sheet
    readonly property var backup: sheet && sheet.record ? sheet.record : ({})

    // Closes the sheet.
    signal done

    width: 500
    title: "Restore backup"
    saveTitle: "Restore"
    canSave: backup.day !== undefined

    onSave: {
        bridge.restoreBackup(backup.day)
        done()
    }
    onCancel: done()

    AccountsBridge {
        id: bridge

        store: Store
    }

    BodyText {
        objectName: "restoreQuestion"
        Layout.fillWidth: true
        text: "Replace your books with the backup of " + (root.backup.dateText || "") + "?"
        font.weight: Font.Bold
        wrapMode: Text.WordWrap
    }

    BodyText {
        objectName: "restoreDetail"
        Layout.fillWidth: true
        text: (root.backup.counted ? "That backup holds " + root.backup.countText + " (" + root.backup.sizeText + "). "
                                   : "That backup is " + (root.backup.sizeText || "") + ". ")
              + "Your books as they are now are kept beside the money file as "
              + "coinhall.json.before-restore-…, so nothing is lost."
        color: Looks.current.soft
        wrapMode: Text.WordWrap
    }
}
