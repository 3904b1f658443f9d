#include "help/helptexts.h"

#include <QStringList>

#include <initializer_list>

namespace {

// The sentences that depend on the platform: on macOS as first written; elsewhere
// what is true there (a notification while Coinhall runs, the account password,
// the data folder's real place, the standard shortcut keys).
#ifdef Q_OS_MACOS
constexpr char savedHere[] = "Everything is saved on this Mac only. Your money data is never sent to the internet, "
                             "and there's no account to sign up for.";
constexpr char notifications[] =
    "Coinhall puts up a Mac notification a few days before (you choose how many) and again on the day, at 9 AM. "
    "The first time, macOS will ask if Coinhall can send notifications. Say Allow.";
constexpr char fileKept[] = "Your money file is kept in your Library folder on this Mac. Every day Coinhall saves a "
                            "backup copy and keeps the last 30. ACCOUNTS has a button to show the backups folder.";
constexpr char askUnlock[] =
    "To have Coinhall ask for Touch ID or your Mac password when it opens, switch it on in ACCOUNTS.";
constexpr char zoomInKey[] = "Command +";
constexpr char zoomOutKey[] = "Command -";
constexpr char actualSizeKey[] = "Command 0";
constexpr char helpKey[] = "Command ?";
#else
constexpr char savedHere[] = "Everything is saved on this computer only. Your money data is never sent to the "
                             "internet, and there's no account to sign up for.";
constexpr char notifications[] = "Coinhall puts up a notification on this computer a few days before (you choose how "
                                 "many) and again on the day, at 9 AM, while Coinhall is open.";
constexpr char fileKept[] =
    "Your money file is kept in the folder ~/.local/share/QFS Coinhall on this computer. Every day Coinhall saves a "
    "backup copy and keeps the last 30. ACCOUNTS has a button to show the backups folder.";
constexpr char askUnlock[] = "To have Coinhall ask for your account password when it opens, switch it on in ACCOUNTS.";
constexpr char zoomInKey[] = "Ctrl +";
constexpr char zoomOutKey[] = "Ctrl -";
constexpr char actualSizeKey[] = "Ctrl 0";
constexpr char helpKey[] = "F1";
#endif

constexpr char websiteText[] = "https://quillfern.com";

HelpChapter chapter(const char *title, const char *symbol, std::initializer_list<QString> paragraphs)
{
    return {QString::fromUtf8(title), QString::fromUtf8(symbol), QStringList(paragraphs).join(QStringLiteral("\n\n"))};
}

QString lines(std::initializer_list<QString> items)
{
    return QStringList(items).join(QLatin1Char('\n'));
}

QString u8(const char *text)
{
    return QString::fromUtf8(text);
}

} // namespace

QList<HelpChapter> helpChapters()
{
    const QString web = u8(websiteText);
    return {
        chapter("Welcome", "hand.wave",
                {u8("QFS Coinhall keeps track of your money in one place: what you have, what came in, what went out, "
                    "the bills coming up and the royalties on the way."),
                 u8(savedHere),
                 lines({u8("Getting started takes about five minutes:"),
                        u8("1. Go to ACCOUNTS and set up your real accounts (checking, savings, PayPal, cards) with "
                           "today's balance."),
                        u8("2. Go to BILLS and add the bills that come around every month."),
                        u8("3. Go to ROYALTIES and add the statements you're expecting."),
                        u8("4. From then on, use MONEY IN and MONEY OUT at the top, or import your bank's CSV once a "
                           "week.")}),
                 u8("Coinhall is made by Quillfern (QFS): ") + web}),
        chapter("Accounts & balances", "building.columns",
                {u8("An account is anywhere money sits: a bank account, savings, a credit card, PayPal or Cash App, or "
                    "cash in the drawer."),
                 u8("When you add one, type its balance as of today in \"Starting balance\". Coinhall adds every "
                    "deposit and subtracts every payment from there, so the balance stays right."),
                 u8("Credit cards: enter what you owe as a minus number (for example -450). Paying the card from "
                    "checking is a TRANSFER."),
                 u8("Closed an account? Edit it and switch on \"Closed / hide this account\". Its history stays in "
                    "your reports.")}),
        chapter("Money in & money out", "plus.forwardslash.minus",
                {lines({u8("MONEY IN is for deposits: royalties, software sales, gigs, web design clients, paychecks, "
                           "refunds."),
                        u8("MONEY OUT is for anything you spend.")}),
                 u8("Type the amount, who it was from or to, pick a category and the account. Press Return in the "
                    "payee box and Coinhall guesses the category, learning from how you've filed that payee before."),
                 u8("TRANSFER moves money between your own accounts (checking to savings, paying off a card). "
                    "Transfers don't count as income or spending."),
                 u8("To change or delete something, double-click it in TRANSACTIONS, or right-click it.")}),
        chapter("Bills & reminders", "bell.badge",
                {u8("Add each bill once: its name, amount, next due date and how often it repeats."), u8(notifications),
                 u8("When you pay it, press PAY. That records the payment as spending and moves the bill to its next "
                    "due date. If the bill has a website, PAY gives you a button to open it."),
                 u8("Some bills come on set days of the year rather than evenly spaced, like estimated taxes. "
                    "Choose \"On set dates each year\" and type the days (for example Apr 15, Jun 15, Sep 15, "
                    "Jan 15), or press QUARTERLY ESTIMATED TAX (US DATES)."),
                 u8("Dots: green is fine, orange is due within 3 days, red is overdue."),
                 u8("Right-click a bill to skip one month without paying (for example, if it was waived).")}),
        chapter("Royalties", "music.note.list",
                {u8("Royalties come from many places on different schedules: your distributor (DistroKid, TuneCore, "
                    "CD Baby), your PRO (BMI, ASCAP, SESAC), SoundExchange, publishers, sync deals and software "
                    "sales."),
                 u8("Add each one you expect, with a rough amount and date. Guesses are fine."),
                 u8("When the money lands, press GOT IT and type the real amount. It goes into your income under "
                    "Royalties, and Coinhall shows how it compared to what you expected. If it repeats (quarterly, "
                    "monthly), the next one is lined up automatically."),
                 u8("If one is late or looks wrong, edit it and switch on \"Following up\", so it stands out until "
                    "it's sorted.")}),
        chapter("Importing from your bank", "square.and.arrow.down",
                {u8("Most banks let you download your activity. Look for \"Download\", \"Export\" or \"Statements & "
                    "documents\" and choose CSV (sometimes called \"Excel\" or \"spreadsheet\"), OFX or QFX "
                    "(\"Quicken\" or \"Web Connect\"), QIF, or CAMT.053."),
                 u8("In Coinhall press IMPORT BANK CSV and choose the file. Coinhall tells what kind of file it is. "
                    "For a CSV it works out which column is the date, the description and the amount; if it guessed "
                    "wrong, change it in the boxes."),
                 u8("Pick the account the lines belong to, check the preview, then press IMPORT."),
                 u8("You can import overlapping dates safely: lines already in Coinhall are skipped."),
                 u8("If spending shows up as money in (common with credit card files), switch on \"Flip signs\".")}),
        chapter("Calendar", "calendar",
                {lines({u8("The calendar shows the month at a glance:"), u8("• orange lines are bills due"),
                        u8("• blue lines are royalties expected"),
                        u8("• green is money that actually came in that day"), u8("• grey is money that went out")}),
                 u8("Repeating bills are shown on every date they'll come due, so you can look ahead to next month "
                    "or further. Hover over a day to see everything on it.")}),
        chapter("Reports & budgets", "chart.bar.xaxis",
                {u8("REPORTS shows income and spending by category for this month, last month, this year, the last "
                    "12 months or last year. That's handy at tax time."),
                 u8("Tax year: choose the year and press SAVE AS PDF… for a report to hand your accountant (or "
                    "PRINT…, or SAVE AS CSV… for a spreadsheet)."),
                 u8("Set aside for taxes: in ACCOUNTS, type the percent of your income that belongs to the tax office. "
                    "The dashboard then shows what to set aside this year, what you paid under Taxes, and what is "
                    "still to put aside."),
                 u8("Budgets: in ACCOUNTS, under Monthly budgets, type a limit next to any spending category. Reports "
                    "show the budget, in red if you went over."),
                 u8("EXPORT CSV in TRANSACTIONS saves everything to a file you can open in Numbers or Excel, or hand "
                    "to your accountant.")}),
        chapter("Privacy, backups & looks", "lock.shield",
                {u8(fileKept),
                 u8("To restore a backup, quit Coinhall and copy a backup over \"coinhall.json\" in the folder above "
                    "it."),
                 u8(askUnlock), u8("To change the look or the size of everything, see \"Themes & zoom\".")}),
        chapter("Themes & zoom", "paintpalette",
                {lines({u8("THEMES: choose a finish from the Theme menu at the top right of the window, or from the "
                           "Theme menu in the menu bar. There are six:"),
                        u8("• Studio: navy rack gear with amber lights"), u8("• Ice Blue: cool blue anodized metal"),
                        u8("• Rose Gold: warm rose gold anodized metal"), u8("• Lavender: soft violet anodized metal"),
                        u8("• Carbon: black carbon fiber"), u8("• Graphite: brushed gray aluminium"),
                        u8("Coinhall remembers your choice.")}),
                 lines({u8("ZOOM: make everything bigger or smaller, from 85% up to 200%."),
                        u8("• View > Zoom In (") + u8(zoomInKey) + u8(")"),
                        u8("• View > Zoom Out (") + u8(zoomOutKey) + u8(")"),
                        u8("• View > Actual Size (") + u8(actualSizeKey) + u8(")"),
                        u8("• View > Zoom Level to jump straight to a size"),
                        u8("If the zoomed screen is bigger than the window, scroll bars appear. Making the window "
                           "larger shows more.")})}),
        chapter("About QFS", "info.circle",
                {lines({u8("QFS Coinhall is made by Quillfern (QFS)."), u8("Website: ") + web}),
                 u8("Help is always in the Help menu (") + u8(helpKey) +
                     u8("). The Help menu also has a link to the Quillfern website for updates and more apps.")}),
    };
}

namespace QFSCredit {

QString company()
{
    return QStringLiteral("Quillfern");
}

QUrl website()
{
    return QUrl(QString::fromLatin1(websiteText));
}

QString fullName()
{
    return QStringLiteral("Coinhall by Quillfern");
}

QString aboutLine()
{
    return QStringLiteral("Coinhall by Quillfern · QFS");
}

} // namespace QFSCredit

namespace AppInfo {

QString displayName()
{
    return QStringLiteral("QFS Coinhall");
}

QString organizationName()
{
    return QStringLiteral("QFS");
}

QString applicationName()
{
    return QStringLiteral("Coinhall");
}

QString applicationId()
{
    return QStringLiteral("com.quillfern.Coinhall");
}

} // namespace AppInfo
