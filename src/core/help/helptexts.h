#pragma once

#include <QList>
#include <QString>
#include <QUrl>

// One chapter of the built-in manual.
struct HelpChapter
{
    QString title;
    QString symbol; // the symbol name shown beside the title in the sidebar ("hand.wave")
    // Paragraphs are separated by a blank line; the lines of a numbered or "•" list
    // inside a paragraph by single line breaks.
    QString text;
};

// The chapters of the help window, in order. Texts that name the computer, its
// notifications, its password or where the data lives say what is true on this platform.
QList<HelpChapter> helpChapters();

// The maker's credit, shown in the about panel and the help window.
namespace QFSCredit {
// "Quillfern"
QString company();
// The maker's web site.
QUrl website();
// "Coinhall by Quillfern"
QString fullName();
// The about panel's credit line, "Coinhall by Quillfern · QFS".
QString aboutLine();
} // namespace QFSCredit

// How the application names itself to the system.
namespace AppInfo {
// The name shown in the window title, the menus and the desktop: "QFS Coinhall".
QString displayName();
// The organisation and application names the preferences are kept under: "QFS", "Coinhall".
QString organizationName();
QString applicationName();
// The reverse-DNS id the desktop knows Coinhall by: its desktop file, metainfo, icon and
// notifications all carry it. "com.quillfern.Coinhall".
QString applicationId();
} // namespace AppInfo
