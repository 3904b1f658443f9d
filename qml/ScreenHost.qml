import QtQuick
import Coinhall

// The place of the current screen. Each screen is made when it is shown and dropped
// when another is chosen; what it asks for (a sheet, another screen) goes out as
// this host's own signals.
Loader {
    id: root

    // The key of the screen to show; the dashboard for any unknown key.
    property string screen: "dashboard"

    signal openSheet(var sheet)
    signal showScreen(string key)

    sourceComponent: {
        switch (screen) {
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
