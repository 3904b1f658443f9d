pragma Singleton
import QtQuick

// The one table from the system symbol names the program uses to the ligature names
// of the Material Icons font. Imports nothing of Coinhall (see Tokens).
QtObject {
    id: root

    readonly property var table: Object.freeze({
        // Account kinds.
        "building.columns": "account_balance",
        "banknote": "payments",
        "creditcard": "credit_card",
        "dollarsign.circle": "monetization_on",
        "briefcase": "business_center",
        "iphone": "smartphone",
        "wallet.pass": "account_balance_wallet",
        // Header keys and sidebar.
        "plus.circle": "add_circle_outline",
        "minus.circle": "remove_circle_outline",
        "arrow.left.arrow.right": "swap_horiz",
        "gauge.with.dots.needle.67percent": "speed",
        "list.bullet.rectangle": "list_alt",
        "doc.text": "description",
        "music.note.list": "queue_music",
        "calendar": "calendar_today",
        "chart.bar.xaxis": "bar_chart",
        "square.and.arrow.down": "file_download",
        "questionmark.circle": "help_outline",
        "lock.shield.fill": "security",
        // Screens.
        "plus": "add",
        "music.note": "music_note",
        "chevron.left": "chevron_left",
        "chevron.right": "chevron_right",
        "arrow.down.circle": "arrow_circle_down",
        "arrow.up.circle": "arrow_circle_up",
        "square.and.arrow.up": "ios_share",
        "folder": "folder_open",
        // Form controls.
        "chevron.up.chevron.down": "unfold_more",
        // Help chapters.
        "hand.wave": "waving_hand",
        "plus.forwardslash.minus": "exposure",
        "bell.badge": "notifications_active",
        "lock.shield": "verified_user",
        "paintpalette": "palette",
        "info.circle": "info_outline"
    })

    // The ligature for a symbol name; empty (and a warning) for a name not in the table.
    function glyph(symbol: string): string {
        if (symbol === "")
            return ""
        const ligature = table[symbol]
        if (ligature === undefined) {
            console.warn("Icons: no icon for the symbol", symbol)
            return ""
        }
        return ligature
    }
}
