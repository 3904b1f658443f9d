#include "reportsbridge.h"
#include "store/reports.h"

#include "bridgeinput.h"
#include "dashboardsummary.h"
#include "model/money.h"
#include "model/period.h"
#include "store/store.h"

#include "store/atomicfile.h"
#include "yeardocument.h"

#include <QApplication>
#include <QDate>
#include <QDir>
#include <QFileInfo>
#include <QPrintDialog>
#include <QPrinter>
#include <QStandardPaths>
#include <QVariantMap>

namespace {

QVariantList lineMaps(const std::vector<CategoryLine> &lines)
{
    QVariantList maps;
    maps.reserve(qsizetype(lines.size()));
    for (const CategoryLine &line : lines)
        maps.append(QVariantMap{
            {QStringLiteral("name"), line.name},
            {QStringLiteral("amountText"), Money::s(line.amount)},
            {QStringLiteral("share"), line.share},
            {QStringLiteral("percentText"), line.percentText},
            {QStringLiteral("budgetText"), line.limit ? QStringLiteral("budget ") + Money::s(*line.limit) : QString()},
            {QStringLiteral("over"), line.over},
        });
    return maps;
}

} // namespace

// The picker positions are ReportPeriod's cases.
static_assert(int(ReportPeriod::lastYear) == ReportsBridge::LastYear);

ReportsBridge::ReportsBridge(QObject *parent)
    : StoreBridge(parent)
{}

void ReportsBridge::setPeriod(Period period)
{
    if (period == m_period)
        return;
    m_period = period;
    reload();
    emit periodChanged();
}

QStringList ReportsBridge::periodLabels() const
{
    return BridgeInput::rawValues<ReportPeriod>();
}

int ReportsBridge::months() const
{
    return budgetMonths(reportPeriod(m_period));
}

void ReportsBridge::reload()
{
    PeriodReport report;
    QVariantList monthly;
    SetAside setAside;
    m_setAsideShown = false;
    if (m_store) {
        const ReportPeriod period = reportPeriod(m_period);
        const Instant now = m_store->now();
        const ClosedRange range = periodRange(period, now);
        report = Reports::periodReport(m_store->linesWithin(range), m_store->book().categories, period, now);
        const Book &book = m_store->book();
        setAside = Reports::setAside(m_store->linesWithin(range), book.categories, book.setAsidePercent, range);
        m_setAsideShown = book.setAsidePercent.has_value();
        monthly = DashboardSummary::monthMaps(*m_store, DashboardSummary::chartMonths);
    } else {
        report.royaltyShare = royaltyShare({}, Decimal());
    }
    m_incomeText = Money::s(report.income);
    m_spendingText = Money::s(report.spending);
    m_netText = Money::signed_(report.income - report.spending);
    m_royaltyShareText = report.royaltyShare;
    m_incomeLines = lineMaps(report.incomeLines);
    m_spendingLines = lineMaps(report.spendingLines);
    m_monthly = std::move(monthly);
    m_overpaid = setAside.overpaid().signum() > 0;
    m_setAsidePercentText = setAside.percent.toString() + QLatin1Char('%');
    m_setAsideDueText = Money::s(setAside.due);
    m_setAsidePaidText = Money::s(setAside.paid);
    m_setAsideLeftText = Money::s(m_overpaid ? setAside.overpaid() : setAside.stillToPut());

    const std::vector<int> years = m_store ? Reports::yearsWithLines(m_store->book().transactions) : std::vector<int>();
    m_taxYears.clear();
    for (int year : years)
        m_taxYears.append(year);
    int year = m_taxYear;
    if (!m_taxYearChosen || std::find(years.begin(), years.end(), year) == years.end()) {
        m_taxYearChosen = false;
        const int last = m_store ? m_store->now().toLocal().date().year() - 1 : 0;
        year = std::find(years.begin(), years.end(), last) != years.end() ? last : years.empty() ? 0 : years.front();
    }
    emit changed();
    if (year != m_taxYear) {
        m_taxYear = year;
        emit taxYearChanged();
    }
}

void ReportsBridge::setTaxYear(int year)
{
    if (year == m_taxYear || !m_taxYears.contains(year))
        return;
    m_taxYear = year;
    m_taxYearChosen = true;
    emit taxYearChanged();
}

bool ReportsBridge::saveYear(const QUrl &file, bool pdf)
{
    if (!m_store || m_taxYear == 0)
        return false;
    const QString path = file.isLocalFile() ? file.toLocalFile() : file.toString();
    const YearReport report = Reports::yearReport(m_store->book(), m_taxYear);
    QString reason;
    const bool saved = pdf ? YearDocument::writePdf(report, path, &reason)
                           : writeFileAtomically(path, Reports::yearCsv(report), &reason);
    if (!saved) {
        m_store->setStatus(tr("Could not save: %1").arg(reason));
        return false;
    }
    m_store->setStatus(tr("Saved %1.").arg(QFileInfo(path).fileName()) +
                       (m_store->encrypted() ? tr(" It is not encrypted, unlike your books.") : QString()));
    return true;
}

bool ReportsBridge::saveYearPdf(const QUrl &file)
{
    return saveYear(file, true);
}

bool ReportsBridge::saveYearCsv(const QUrl &file)
{
    return saveYear(file, false);
}

bool ReportsBridge::printYear()
{
    if (!m_store || m_taxYear == 0)
        return false;
    // The print dialog is a widget: there is none where the program runs without them.
    if (!qobject_cast<QApplication *>(QCoreApplication::instance())) {
        m_store->setStatus(tr("Printing is not available here; save the report as PDF and print that."));
        return false;
    }
    QPrinter printer;
    printer.setDocName(YearDocument::title(m_taxYear));
    QPrintDialog dialog(&printer);
    dialog.setWindowTitle(tr("Print %1").arg(YearDocument::title(m_taxYear)));
    if (dialog.exec() != QDialog::Accepted)
        return false;
    if (YearDocument::paint(Reports::yearReport(m_store->book(), m_taxYear), printer) == 0) {
        m_store->setStatus(tr("Could not print: the printer could not be used."));
        return false;
    }
    m_store->setStatus(tr("Sent %1 to the printer.").arg(YearDocument::title(m_taxYear)));
    return true;
}

QUrl ReportsBridge::proposedYearFile(const QString &suffix) const
{
    QString folder = QStandardPaths::writableLocation(QStandardPaths::DocumentsLocation);
    if (folder.isEmpty() || !QDir(folder).exists())
        folder = QDir::homePath();
    return QUrl::fromLocalFile(QDir(folder).filePath(QStringLiteral("Coinhall %1.%2").arg(m_taxYear).arg(suffix)));
}
