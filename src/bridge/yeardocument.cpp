// The year's report drawn page by page. Lengths are in points (1/72 inch) whatever the
// device's resolution, and type sizes in those points too (pixel sizes of a scaled
// painter), so the PDF and the printed page look alike.
#include "yeardocument.h"

#include "model/money.h"
#include "store/atomicfile.h"

#include <QBuffer>
#include <QDate>
#include <QImage>
#include <QLocale>
#include <QPagedPaintDevice>
#include <QPainter>
#include <QPdfWriter>

#include <algorithm>
#include <array>
#include <functional>

namespace {

const QColor ink(0x1f, 0x23, 0x28);
const QColor quiet(0x5f, 0x66, 0x70);
const QColor rule(0xc8, 0xcd, 0xd3);
const QColor incomeColor(0x2e, 0x9e, 0x5b);
const QColor spendingColor(0xc2, 0x41, 0x0c);

constexpr double rowHeight = 12.5;
constexpr double gutter = 18;
// Payers named one by one; the rest are summed on one line.
constexpr std::size_t payersShown = 10;

QString orNone(const QString &name, const char *none)
{
    return name.isEmpty() ? QString::fromUtf8(none) : name;
}

const QMarginsF pageMargins(42, 40, 42, 36);

// Letter where the locale is American, A4 elsewhere.
QPageSize pageSize()
{
    return QPageSize(QLocale().measurementSystem() == QLocale::ImperialUSSystem ? QPageSize::Letter : QPageSize::A4);
}

using Rows = std::vector<std::pair<QString, QString>>;

// A titled list of names and amounts, for one of two columns.
struct Column
{
    QString title;
    Rows rows;
    QString empty; // said when there are no rows
};

Rows moneyRows(const CategoryTotals &totals, const char *none)
{
    Rows rows;
    for (const auto &[name, amount] : totals)
        rows.emplace_back(orNone(name, none), Money::s(amount));
    return rows;
}

class Pages
{
public:
    // Draws on `device` inside `margins` (points); `newPage` turns the page, or says
    // there is no other (a picture), and then nothing more is drawn.
    Pages(const YearReport &report, QPaintDevice &device, QMarginsF margins, std::function<bool()> newPage)
        : m_report(report)
        , m_newPage(std::move(newPage))
        , m_painter(&device)
    {
        const double scale = device.logicalDpiX() / 72.0;
        m_painter.scale(scale, scale);
        m_painter.translate(margins.left(), margins.top());
        m_width = device.width() / scale - margins.left() - margins.right();
        m_height = device.height() / scale - margins.top() - margins.bottom();
    }

    bool ok() const { return m_painter.isActive(); }
    int pages() const { return m_page; }

    void draw()
    {
        heading();
        summary();
        chart();
        columns({QStringLiteral("Income by category"), moneyRows(m_report.incomeByCategory, "(no category)"),
                 QStringLiteral("No income this year.")},
                {QStringLiteral("Spending by category"), moneyRows(m_report.spendingByCategory, "(no category)"),
                 QStringLiteral("No spending this year.")});
        Rows payers = moneyRows(m_report.incomeByPayer, "(no payer)");
        if (payers.size() > payersShown) {
            DecimalSum rest;
            for (std::size_t i = payersShown; i < m_report.incomeByPayer.size(); ++i)
                rest.add(m_report.incomeByPayer[i].second);
            const qsizetype others = qsizetype(payers.size() - payersShown);
            payers.resize(payersShown);
            payers.emplace_back(QStringLiteral("%1 other payers").arg(others), Money::s(rest.total()));
        }
        columns({QStringLiteral("Top payers"), payers, QStringLiteral("No income this year.")},
                {QStringLiteral("Royalties by payer"), moneyRows(m_report.royaltiesByPayer, "(no payer)"),
                 QStringLiteral("No royalties this year.")});
        pending();
        footer();
    }

private:
    void font(double size, bool bold = false)
    {
        QFont f = m_painter.font();
        f.setPixelSize(std::max(1, int(size + 0.5)));
        f.setBold(bold);
        // No ligatures: text copied out of the PDF ("office", "filed") stays plain letters.
        f.setStyleStrategy(QFont::PreferNoShaping);
        m_painter.setFont(f);
    }

    void text(double x, double width, const QString &s, Qt::Alignment align = Qt::AlignLeft, const QColor &color = ink)
    {
        m_painter.setPen(color);
        const QString shown = m_painter.fontMetrics().elidedText(s, Qt::ElideRight, int(width));
        m_painter.drawText(QRectF(x, m_y, width, rowHeight), int(align | Qt::AlignVCenter), shown);
    }

    void line(double y)
    {
        m_painter.setPen(QPen(rule, 0.5));
        m_painter.drawLine(QPointF(0, y), QPointF(m_width, y));
    }

    // Starts a new page when `needed` points do not fit; `again` redraws the caption
    // of the list that runs on.
    void room(double needed, const std::function<void()> &again = {})
    {
        if (m_y + needed <= m_height - 2 * rowHeight)
            return;
        footer();
        if (!m_newPage()) {
            m_painter.setClipRect(QRectF(0, 0, 0, 0));
            m_y = 0;
            return;
        }
        ++m_page;
        m_y = 0;
        font(9, true);
        text(0, m_width, QStringLiteral("%1 · continued").arg(YearDocument::title(m_report.year)));
        font(9);
        text(0, m_width, QStringLiteral("page %1").arg(m_page), Qt::AlignRight, quiet);
        m_y += rowHeight + 2;
        line(m_y);
        m_y += 8;
        if (again)
            again();
    }

    void footer()
    {
        const double y = m_y;
        m_y = m_height - rowHeight;
        font(8);
        text(0, m_width, QStringLiteral("Coinhall · %1 · page %2").arg(YearDocument::title(m_report.year)).arg(m_page),
             Qt::AlignRight, quiet);
        m_y = y;
    }

    void caption(const QString &s, double x = 0, double width = -1)
    {
        font(10.5, true);
        text(x, width < 0 ? m_width : width, s);
    }

    void heading()
    {
        font(20, true);
        m_painter.setPen(ink);
        m_painter.drawText(QRectF(0, m_y, m_width, 26), Qt::AlignLeft | Qt::AlignVCenter,
                           YearDocument::title(m_report.year));
        m_y += 28;
        font(9);
        text(
            0, m_width,
            QStringLiteral("%1 – %2 · amounts in %3 · made %4")
                .arg(chDate(m_report.range.lower), chDate(m_report.range.upper), Money::code(), chDate(Instant::now())),
            Qt::AlignLeft, quiet);
        m_y += rowHeight + 6;
    }

    void summary()
    {
        const std::array<std::pair<QString, QString>, 4> tiles{{
            {QStringLiteral("Income"), Money::s(m_report.income)},
            {QStringLiteral("Spending"), Money::s(m_report.spending)},
            {QStringLiteral("Net"), Money::signed_(m_report.net())},
            {QStringLiteral("Paid to the tax office"), Money::s(m_report.paidInTaxes)},
        }};
        const double width = (m_width - 3 * 8) / 4;
        for (std::size_t i = 0; i < tiles.size(); ++i) {
            const double x = double(i) * (width + 8);
            m_painter.setPen(QPen(rule, 0.75));
            m_painter.setBrush(Qt::NoBrush);
            m_painter.drawRoundedRect(QRectF(x, m_y, width, 38), 4, 4);
            const double y = m_y;
            m_y += 4;
            font(8);
            text(x + 8, width - 16, tiles[i].first, Qt::AlignLeft, quiet);
            m_y += rowHeight + 1;
            font(12.5, true);
            text(x + 8, width - 16, tiles[i].second);
            m_y = y;
        }
        m_y += 44;
        font(8.5);
        text(0, m_width, QStringLiteral("Paid to the tax office: spending filed under \"Taxes\"."), Qt::AlignLeft,
             quiet);
        m_y += rowHeight;
        if (const std::optional<SetAside> &s = m_report.setAside) {
            const QString left = s->overpaid().signum() > 0
                                     ? QStringLiteral("%1 overpaid").arg(Money::s(s->overpaid()))
                                     : QStringLiteral("%1 still to put aside").arg(Money::s(s->stillToPut()));
            text(0, m_width,
                 QStringLiteral("Set aside for taxes: %1% of %2 counted income is %3; %4 paid, %5.")
                     .arg(s->percent.toString(), Money::s(s->countedIncome), Money::s(s->due), Money::s(s->paid), left),
                 Qt::AlignLeft, quiet);
            m_y += rowHeight;
        }
        text(0, m_width,
             QStringLiteral("Transfers between your own accounts are left out: %1 lines, %2 in, %3 out.")
                 .arg(m_report.transferLines)
                 .arg(Money::s(m_report.transfersIn), Money::s(m_report.transfersOut)),
             Qt::AlignLeft, quiet);
        m_y += rowHeight + 8;
    }

    void chart()
    {
        constexpr double plot = 96, labels = rowHeight;
        room(rowHeight + plot + labels + 12);
        caption(QStringLiteral("Income and spending by month"));
        font(8);
        const double legend = 150;
        m_painter.setPen(Qt::NoPen);
        m_painter.setBrush(incomeColor);
        m_painter.drawRect(QRectF(m_width - legend, m_y + 4, 7, 7));
        m_painter.setBrush(spendingColor);
        m_painter.drawRect(QRectF(m_width - legend / 2, m_y + 4, 7, 7));
        text(m_width - legend + 10, legend / 2 - 10, QStringLiteral("Income"));
        text(m_width - legend / 2 + 10, legend / 2 - 10, QStringLiteral("Spending"));
        m_y += rowHeight + 4;

        Decimal top;
        for (const MonthFlow &month : m_report.months)
            top = std::max({top, month.in, month.out});
        const double left = 60, slot = (m_width - left) / 12, bar = slot * 0.32;
        const double base = m_y + plot;
        font(7.5);
        const double y = m_y;
        m_y = y - rowHeight / 2;
        text(0, left - 6, Money::s(top), Qt::AlignRight, quiet);
        m_y = base - rowHeight / 2;
        text(0, left - 6, Money::s(Decimal()), Qt::AlignRight, quiet);
        m_painter.setPen(QPen(rule, 0.5));
        m_painter.drawLine(QPointF(left, y), QPointF(m_width, y));
        m_painter.drawLine(QPointF(left, base), QPointF(m_width, base));
        m_painter.setPen(Qt::NoPen);
        // The only place amounts become doubles: a bar's height on the page.
        const double scale = top > Decimal() ? plot / top.toDouble() : 0;
        const QLocale locale;
        for (std::size_t i = 0; i < m_report.months.size(); ++i) {
            const MonthFlow &month = m_report.months[i];
            const double x = left + double(i) * slot + (slot - 2 * bar - 2) / 2;
            const double in = month.in.toDouble() * scale, out = month.out.toDouble() * scale;
            m_painter.setPen(Qt::NoPen);
            m_painter.setBrush(incomeColor);
            m_painter.drawRect(QRectF(x, base - in, bar, in));
            m_painter.setBrush(spendingColor);
            m_painter.drawRect(QRectF(x + bar + 2, base - out, bar, out));
            m_y = base + 2;
            text(left + double(i) * slot, slot, locale.monthName(int(i) + 1, QLocale::ShortFormat), Qt::AlignHCenter,
                 quiet);
        }
        m_y = base + labels + 12;
    }

    // Two lists side by side, each with its caption again on every page it runs onto.
    void columns(const Column &left, const Column &right)
    {
        const double width = (m_width - gutter) / 2;
        auto captions = [&](bool continued) {
            const QString more = continued ? QStringLiteral(" (continued)") : QString();
            const double y = m_y;
            caption(left.title + more, 0, width);
            m_y = y;
            caption(right.title + more, width + gutter, width);
            m_y += rowHeight + 3;
        };
        room(3 * rowHeight);
        captions(false);
        const std::size_t count = std::max({left.rows.size(), right.rows.size(), std::size_t(1)});
        font(9);
        for (std::size_t i = 0; i < count; ++i) {
            room(rowHeight, [&] {
                captions(true);
                font(9);
            });
            int side = 0;
            for (const Column *column : {&left, &right}) {
                const double x = side++ * (width + gutter);
                if (i < column->rows.size()) {
                    text(x, width * 0.68, column->rows[i].first);
                    text(x + width * 0.68, width * 0.32, column->rows[i].second, Qt::AlignRight);
                } else if (i == 0) {
                    text(x, width, column->empty, Qt::AlignLeft, quiet);
                }
            }
            m_y += rowHeight;
        }
        m_y += 10;
    }

    void pending()
    {
        const double date = 80, amount = 90, rest = m_width - date - amount;
        auto header = [&](bool continued) {
            caption(QStringLiteral("Not yet cleared") + (continued ? QStringLiteral(" (continued)") : QString()));
            m_y += rowHeight + 1;
            if (!continued) {
                font(8.5);
                text(0, m_width,
                     QStringLiteral("%1 lines, counted in the figures above; the bank may still change them.")
                         .arg(m_report.pending.size()),
                     Qt::AlignLeft, quiet);
                m_y += rowHeight;
            }
            font(8, true);
            text(0, date, QStringLiteral("Date"), Qt::AlignLeft, quiet);
            text(date, rest * 0.55, QStringLiteral("Payee"), Qt::AlignLeft, quiet);
            text(date + rest * 0.55, rest * 0.45, QStringLiteral("Category"), Qt::AlignLeft, quiet);
            text(date + rest, amount, QStringLiteral("Amount"), Qt::AlignRight, quiet);
            m_y += rowHeight;
            font(9);
        };
        room(4 * rowHeight);
        if (m_report.pending.empty()) {
            caption(QStringLiteral("Not yet cleared"));
            m_y += rowHeight + 1;
            font(9);
            text(0, m_width, QStringLiteral("Every line of the year has cleared."), Qt::AlignLeft, quiet);
            m_y += rowHeight;
            return;
        }
        header(false);
        for (const PendingLine &p : m_report.pending) {
            room(rowHeight, [&] { header(true); });
            text(0, date, chDate(p.date));
            text(date, rest * 0.55 - 6, orNone(p.payee, "(no payee)"));
            text(date + rest * 0.55, rest * 0.45, orNone(p.category, "(no category)"));
            text(date + rest, amount, Money::s(p.amount), Qt::AlignRight);
            m_y += rowHeight;
        }
    }

    const YearReport &m_report;
    std::function<bool()> m_newPage;
    QPainter m_painter;
    double m_width = 0, m_height = 0, m_y = 0;
    int m_page = 1;
};

} // namespace

namespace YearDocument {

QString title(int year)
{
    return QStringLiteral("Year's report %1").arg(year);
}

int paint(const YearReport &report, QPagedPaintDevice &device)
{
    Pages pages(report, device, {}, [&device] { return device.newPage(); });
    if (!pages.ok())
        return 0;
    pages.draw();
    return pages.pages();
}

QImage firstPage(const YearReport &report, int dpi)
{
    const QSizeF points = pageSize().size(QPageSize::Point);
    QImage page((points * dpi / 72).toSize(), QImage::Format_RGB32);
    page.setDotsPerMeterX(qRound(dpi / 0.0254));
    page.setDotsPerMeterY(qRound(dpi / 0.0254));
    page.fill(Qt::white);
    Pages pages(report, page, pageMargins, [] { return false; });
    if (pages.ok())
        pages.draw();
    return page;
}

bool writePdf(const YearReport &report, const QString &path, QString *reason)
{
    QBuffer buffer;
    buffer.open(QIODevice::WriteOnly);
    {
        QPdfWriter pdf(&buffer);
        pdf.setTitle(title(report.year));
        pdf.setCreator(QStringLiteral("Coinhall"));
        pdf.setPageSize(pageSize());
        pdf.setPageMargins(pageMargins, QPageLayout::Point);
        if (paint(report, pdf) == 0) {
            *reason = QStringLiteral("the document could not be drawn");
            return false;
        }
    }
    return writeFileAtomically(path, buffer.data(), reason);
}

} // namespace YearDocument
