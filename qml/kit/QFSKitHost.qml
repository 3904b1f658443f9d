pragma Singleton
import QtQuick

// The two hooks through which the application hands the kit its colours and its help.
QtObject {
    id: root

    // The theme every kit piece draws with; the application replaces it at start.
    property QFKitTheme theme: QFKitTheme {}
    // Opens help at the named page; does nothing until the application sets it.
    property var showHelp: function (page) {}

    // The kit's own way into help (QFHelpWindow.show): forwards to the hook.
    function openHelp(page: string) {
        if (typeof showHelp === "function")
            showHelp(page)
    }
}
