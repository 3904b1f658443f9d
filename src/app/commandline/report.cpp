// coinhall report: the Reports screen's figures for a period, as text or TSV.
#include "commands.h"
#include "store/reports.h"

#include "model/money.h"
#include "store/atomicfile.h"
#include "yeardocument.h"

#include <algorithm>
#include <array>
#include <utility>

namespace CommandLine {

namespace {

// The --period names, in the Reports picker's order.
constexpr std::array<std::pair<const char *, ReportPeriod>, 5> periodNames{{
    {"this-month", ReportPeriod::thisMonth},
    {"last-month", ReportPeriod::lastMonth},
    {"this-year", ReportPeriod::thisYear},
    {"last-12-months", ReportPeriod::last12Months},
    {"last-year", ReportPeriod::lastYear},
}};

// A category name on one line of its own.
QString oneLine(QString name)
{
    return name.replace(QLatin1Char('\t'), QLatin1Char(' '))
        .replace(QLatin1Char('\n'), QLatin1Char(' '))
        .replace(QLatin1Char('\r'), QLatin1Char(' '));
}

void printTsv(const PeriodReport &f, std::FILE *out)
{
    auto line = [out](const char *section, const QString &name, const QString &amount) {
        print(out, QString::fromLatin1(section) + QLatin1Char('\t') + oneLine(name) + QLatin1Char('\t') + amount);
    };
    line("income", {}, f.income.toString());
    line("spending", {}, f.spending.toString());
    line("net", {}, (f.income - f.spending).toString());
    line("royalty-share", {}, f.royaltyShare.endsWith(QLatin1Char('%')) ? f.royaltyShare.chopped(1) : QString());
    for (const CategoryLine &row : f.incomeLines)
        line("income-by-category", row.name, row.amount.toString());
    for (const CategoryLine &row : f.spendingLines)
        line("spending-by-category", row.name, row.amount.toString());
}

// One category list as the Reports screen draws it: name, amount, whole percent of
// the total, and for a budgeted category its limit over the period's months.
void printCategoryList(const QString &title, const std::vector<CategoryLine> &lines, std::FILE *out)
{
    print(out, title);
    if (lines.empty()) {
        print(out, QStringLiteral("  Nothing in this period."));
        return;
    }
    qsizetype nameWidth = 0, amountWidth = 0;
    for (const CategoryLine &row : lines) {
        nameWidth = std::max(nameWidth, oneLine(row.name).size());
        amountWidth = std::max(amountWidth, Money::s(row.amount).size());
    }
    for (const CategoryLine &row : lines) {
        QString line = QStringLiteral("  ") + oneLine(row.name).leftJustified(nameWidth) + QStringLiteral("  ") +
                       Money::s(row.amount).rightJustified(amountWidth) + QStringLiteral("  ") +
                       row.percentText.rightJustified(4);
        if (row.limit) {
            line += QStringLiteral("  budget ") + Money::s(*row.limit);
            if (row.over)
                line += QStringLiteral(" (over)");
        }
        print(out, line);
    }
}

void printText(const PeriodReport &f, std::FILE *out)
{
    const QString dates = f.period == ReportPeriod::thisYear
                              ? QStringLiteral("from ") + chDate(f.range.lower)
                              : chDate(f.range.lower) + QStringLiteral(" – ") + chDate(f.range.upper);
    print(out, rawValue(f.period) + QStringLiteral(" · ") + dates);
    print(out, QString());

    const std::array<std::pair<QString, QString>, 4> tiles{{
        {QStringLiteral("Income"), Money::s(f.income)},
        {QStringLiteral("Spending"), Money::s(f.spending)},
        {QStringLiteral("Net"), Money::signed_(f.income - f.spending)},
        {QStringLiteral("Royalties share of income"), f.royaltyShare},
    }};
    qsizetype labelWidth = 0, valueWidth = 0;
    for (const auto &[label, value] : tiles) {
        labelWidth = std::max(labelWidth, label.size());
        valueWidth = std::max(valueWidth, value.size());
    }
    for (const auto &[label, value] : tiles)
        print(out, label.leftJustified(labelWidth) + QStringLiteral("  ") + value.rightJustified(valueWidth));

    print(out, QString());
    printCategoryList(QStringLiteral("Spending by category"), f.spendingLines, out);
    print(out, QString());
    printCategoryList(QStringLiteral("Income by category"), f.incomeLines, out);
}

// report --year: the year's report written to the files asked for.
int yearReport(const Book &book, const QString &yearText, const QString &pdf, const QString &csv, std::FILE *out,
               std::FILE *err)
{
    bool number = false;
    const int year = yearText.toInt(&number);
    const std::vector<int> years = Reports::yearsWithLines(book.transactions);
    if (!number || std::find(years.begin(), years.end(), year) == years.end()) {
        QStringList offered;
        for (int y : years)
            offered.append(QString::number(y));
        return usageError(err,
                          offered.isEmpty()
                              ? QStringLiteral("No year to report on \"%1\": the books hold no lines.").arg(yearText)
                              : QStringLiteral("No lines in \"%1\": the years with lines are %2.")
                                    .arg(yearText, offered.join(QStringLiteral(", "))));
    }
    const YearReport figures = Reports::yearReport(book, year);
    QString reason;
    if (!pdf.isEmpty()) {
        if (!YearDocument::writePdf(figures, pdf, &reason)) {
            print(err, QStringLiteral("Could not save %1: %2").arg(QDir::toNativeSeparators(pdf), reason));
            return ExitStatus::failed;
        }
        print(out, QStringLiteral("Saved %1.").arg(QFileInfo(pdf).fileName()));
    }
    if (!csv.isEmpty()) {
        if (!writeFileAtomically(csv, Reports::yearCsv(figures), &reason)) {
            print(err, QStringLiteral("Could not save %1: %2").arg(QDir::toNativeSeparators(csv), reason));
            return ExitStatus::failed;
        }
        print(out, QStringLiteral("Saved %1.").arg(QFileInfo(csv).fileName()));
    }
    return ExitStatus::ok;
}

} // namespace

int report(const QString &dir, const QStringList &arguments, std::FILE *out, std::FILE *err)
{
    const Options options(
        arguments, {QStringLiteral("--tsv")},
        {QStringLiteral("--period"), QStringLiteral("--year"), QStringLiteral("--pdf"), QStringLiteral("--csv")});
    if (!options.error().isEmpty())
        return usageError(err, options.error());
    if (!options.words().isEmpty())
        return usageError(err, QStringLiteral("report takes no file: %1").arg(options.words().first()));
    const bool year = options.has(QStringLiteral("--year"));
    const QString pdf = options.value(QStringLiteral("--pdf")), csv = options.value(QStringLiteral("--csv"));
    if (year && pdf.isEmpty() && csv.isEmpty())
        return usageError(err, QStringLiteral("report --year needs --pdf FILE or --csv FILE (or both)."));
    if (!year && (options.has(QStringLiteral("--pdf")) || options.has(QStringLiteral("--csv"))))
        return usageError(err, QStringLiteral("--pdf and --csv write the year's report: give --year YYYY."));
    if (year && (options.has(QStringLiteral("--period")) || options.has(QStringLiteral("--tsv"))))
        return usageError(err, QStringLiteral("--year goes with neither --period nor --tsv."));
    ReportPeriod period = ReportPeriod::thisMonth;
    if (options.has(QStringLiteral("--period"))) {
        const QString wanted = options.value(QStringLiteral("--period"));
        const auto known = std::find_if(periodNames.begin(), periodNames.end(),
                                        [&wanted](const auto &entry) { return wanted == QLatin1String(entry.first); });
        if (known == periodNames.end())
            return usageError(err, QStringLiteral("Unknown period \"%1\": use this-month, last-month, this-year, "
                                                  "last-12-months or last-year.")
                                       .arg(wanted));
        period = known->second;
    }

    // Straight from the file: a report needs no Store, no lock and no scratch folder.
    const MoneyFileState state = readMoneyFile(dir);
    if (!state.usable()) {
        print(err, state.problem());
        return ExitStatus::failed;
    }
    static const Book newBook;
    const Book &book = state.book ? *state.book : newBook;
    Money::setCode(book.currency);
    if (year)
        return yearReport(book, options.value(QStringLiteral("--year")), pdf, csv, out, err);
    const PeriodReport figures = Reports::periodReport(book.transactions, book.categories, period, Instant::now());
    if (options.has(QStringLiteral("--tsv")))
        printTsv(figures, out);
    else
        printText(figures, out);
    return ExitStatus::ok;
}

} // namespace CommandLine
