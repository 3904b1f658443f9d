#include "bankfiles/ofxreader.h"

#include <QDateTime>
#include <QFile>
#include <QHash>
#include <QTemporaryFile>

#include <libofx/libofx.h>

#include <charconv>
#include <deque>
#include <mutex>

#if defined(__SANITIZE_ADDRESS__)
#define COINHALL_LEAK_CHECKS 1
#elif defined(__has_feature)
#if __has_feature(address_sanitizer)
#define COINHALL_LEAK_CHECKS 1
#endif
#endif
#ifdef COINHALL_LEAK_CHECKS
#include <sanitizer/lsan_interface.h>
#endif

namespace OfxReader {
namespace {

// libofx keeps its console settings in globals and is not known to be safe on two
// threads at once, so one read runs at a time.
std::mutex libofxLock;

// Without this libofx prints its progress and every complaint of its SGML parser
// on the console, in the middle of `coinhall import`'s own output.
void silenceLibofx()
{
    for (int *flag :
         {&ofx_PARSER_msg, &ofx_DEBUG_msg, &ofx_DEBUG1_msg, &ofx_DEBUG2_msg, &ofx_DEBUG3_msg, &ofx_DEBUG4_msg,
          &ofx_DEBUG5_msg, &ofx_STATUS_msg, &ofx_INFO_msg, &ofx_WARNING_msg, &ofx_ERROR_msg, &ofx_show_position})
        *flag = 0;
}

// libofx does not free all it built of a damaged file (a few kilobytes a file). The
// sanitizer builds leave that to it, and still catch every leak of ours.
struct LibofxLeaksIgnored
{
#ifdef COINHALL_LEAK_CHECKS
    LibofxLeaksIgnored()
    {
        __lsan_disable();
    }
    ~LibofxLeaksIgnored()
    {
        __lsan_enable();
    }
#endif
};

// What the file itself writes for one STMTTRN. libofx gives the amount only as a
// double, the posting time moved to UTC (a line posted late in the evening west of
// Greenwich would land on the next day) and drops the NAME of a PAYEE aggregate, so
// these come from the text; libofx's own reading decides what is a statement line.
struct Written
{
    QByteArray posted; // DTPOSTED
    QByteArray amount; // TRNAMT
    QString payee;     // PAYEE's NAME, or PAYEE's own text where a bank writes it as a leaf
};

// The text of the leaf element whose tag ends at `from`: up to the next tag, or the
// content of a CDATA section, with the entities of both SGML and XML resolved.
QByteArray leafText(QByteArrayView block, qsizetype from)
{
    QByteArrayView rest = block.sliced(from).trimmed();
    static constexpr QByteArrayView cdata("<![CDATA[");
    if (rest.startsWith(cdata)) {
        rest = rest.sliced(cdata.size());
        const qsizetype end = rest.indexOf("]]>");
        return rest.first(end < 0 ? rest.size() : end).trimmed().toByteArray();
    }
    const qsizetype end = rest.indexOf('<');
    QByteArray text = rest.first(end < 0 ? rest.size() : end).trimmed().toByteArray();
    if (text.contains('&'))
        text.replace("&lt;", "<")
            .replace("&gt;", ">")
            .replace("&quot;", "\"")
            .replace("&apos;", "'")
            .replace("&amp;", "&");
    return text;
}

QByteArray field(QByteArrayView block, QByteArrayView tag)
{
    const qsizetype at = block.indexOf(tag);
    return at < 0 ? QByteArray() : leafText(block, at + tag.size());
}

// Every STMTTRN of the file, by its FITID, each FITID's lines in file order. A line
// ends at its end tag, or at the next line where a damaged file has lost it.
QHash<QString, std::deque<Written>> writtenLines(const QByteArray &bytes)
{
    static constexpr QByteArrayView open("<STMTTRN>"), close("</STMTTRN>"), payeeTag("<PAYEE>");
    const QByteArrayView all(bytes);
    QHash<QString, std::deque<Written>> lines;
    for (qsizetype at = all.indexOf(open); at >= 0;) {
        const qsizetype start = at + open.size();
        at = all.indexOf(open, start);
        QByteArrayView block = all.sliced(start, (at < 0 ? all.size() : at) - start);
        if (const qsizetype end = block.indexOf(close); end >= 0)
            block = block.first(end);
        Written line{field(block, "<DTPOSTED>"), field(block, "<TRNAMT>"), {}};
        if (const qsizetype payee = block.indexOf(payeeTag); payee >= 0) {
            QByteArray name = leafText(block, payee + payeeTag.size());
            if (name.isEmpty())
                name = field(block.sliced(payee), "<NAME>");
            line.payee = decodedText(name);
        }
        lines[decodedText(field(block, "<FITID>"))].push_back(std::move(line));
    }
    return lines;
}

// DTPOSTED's calendar day: its first eight digits, whatever time and offset follow.
QDate writtenDay(const QByteArray &posted)
{
    if (posted.size() < 8)
        return {};
    for (char c : posted.first(8))
        if (c < '0' || c > '9')
            return {};
    return QDate::fromString(QString::fromLatin1(posted.first(8)), QStringLiteral("yyyyMMdd"));
}

// TRNAMT as written: a sign, digits, and a point or (in some European downloads) a
// comma before the decimals. Anything else ("1,234.56", "1E3") is no amount: libofx
// would make 1.234 and 1000 of them.
std::optional<Decimal> writtenAmount(QByteArray text)
{
    if (text.count(',') == 1 && !text.contains('.'))
        text.replace(',', '.');
    for (char c : text)
        if ((c < '0' || c > '9') && c != '.' && c != '-' && c != '+')
            return std::nullopt;
    return Decimal::fromString(std::string_view(text.constData(), text.size()));
}

// libofx's double as the shortest decimal that reads back as that double: the amount
// the file wrote whenever it has at most 15 significant digits.
std::optional<Decimal> amountOfDouble(double value)
{
    char text[400];
    const auto [end, error] = std::to_chars(text, text + sizeof text, value, std::chars_format::fixed);
    if (error != std::errc())
        return std::nullopt;
    const std::string_view written(text, end);
    int digits = 0;
    bool leading = true;
    for (char c : written) {
        leading = leading && (c < '1' || c > '9');
        digits += !leading && c >= '0' && c <= '9';
    }
    return digits <= 15 ? Decimal::fromString(written) : std::nullopt;
}

// A line's payee when the file names none: its check number, else its kind.
QString kindOf(const OfxTransactionData &data)
{
    if (data.check_number_valid && data.check_number[0] != '\0')
        return QStringLiteral("Check %1").arg(QString::fromUtf8(data.check_number));
    static const char *const kinds[] = {"Credit",         "Debit",   "Interest", "Dividend",       "Fee",
                                        "Service charge", "Deposit", "ATM",      "Point of sale",  "Transfer",
                                        "Check",          "Payment", "Cash",     "Direct deposit", "Direct debit",
                                        "Standing order", "Other"};
    const bool known =
        data.transactiontype_valid && data.transactiontype >= 0 && data.transactiontype < int(std::size(kinds));
    return QString::fromLatin1(known ? kinds[data.transactiontype] : "Other");
}

// ACCTID as written. libofx cuts account_number at the standard's 22 characters, but
// ends its display name for the account with the whole ACCTID.
QString accountNumber(const OfxAccountData &data)
{
    if (!data.account_number_valid)
        return {};
    const QString number = QString::fromUtf8(data.account_number).trimmed();
    const QString name = QString::fromUtf8(data.account_name);
    if (number.size() < OFX_ACCTID_LENGTH - 1 || name.endsWith(number))
        return number;
    const qsizetype at = name.lastIndexOf(u' ' + number);
    return at < 0 ? number : name.sliced(at + 1);
}

struct Account
{
    QByteArray id; // libofx's key: bank, branch and account ids together
    QString number;
    QString currency;
    bool investment = false;
};

// One statement line as libofx read it, with what the file wrote for it when found.
struct Line
{
    QByteArray account;
    QString fitid;
    QString payee; // NAME, else MEMO, else the check number or kind
    bool named = false;
    std::optional<Decimal> amount;
    QDate day;
};

struct Reading
{
    QHash<QString, std::deque<Written>> written;
    std::vector<Account> accounts;
    std::vector<Line> lines;
};

int onAccount(const OfxAccountData data, void *reading)
{
    auto &r = *static_cast<Reading *>(reading);
    for (const Account &known : r.accounts)
        if (known.id == data.account_id)
            return 0; // named again by the next piece of a long list
    const bool investment = data.account_type_valid && (data.account_type == OfxAccountData::OFX_INVESTMENT ||
                                                        data.account_type == OfxAccountData::OFX_401K);
    r.accounts.push_back({QByteArray(data.account_id), accountNumber(data),
                          data.currency_valid ? QString::fromUtf8(data.currency) : QString(), investment});
    return 0;
}

int onStatement(const OfxStatementData data, void *reading)
{
    auto &r = *static_cast<Reading *>(reading);
    for (Account &account : r.accounts)
        if (data.currency_valid && account.id == data.account_id)
            account.currency = QString::fromUtf8(data.currency);
    return 0;
}

int onTransaction(const OfxTransactionData data, void *reading)
{
    auto &r = *static_cast<Reading *>(reading);
    if (data.invtransactiontype_valid)
        return 0;
    Line line{QByteArray(data.account_id), data.fi_id_valid ? QString::fromUtf8(data.fi_id) : QString()};
    const QString name = data.name_valid ? QString::fromUtf8(data.name).trimmed() : QString();
    const QString memo = data.memo_valid ? QString::fromUtf8(data.memo).trimmed() : QString();
    line.named = !name.isEmpty();
    line.payee = line.named ? name : !memo.isEmpty() ? memo : kindOf(data);

    auto found = r.written.find(line.fitid);
    if (found != r.written.end() && !found->empty()) {
        const Written written = std::move(found->front());
        found->pop_front();
        line.day = writtenDay(written.posted);
        line.amount = writtenAmount(written.amount);
        if (!line.named && !written.payee.isEmpty())
            line.payee = written.payee;
    } else {
        // A line whose FITID the text does not show as libofx reads it (a character
        // reference, say): libofx's own figures. It dates a day without a time at
        // 10:59 UTC, so its UTC day is the one written unless a time crosses midnight.
        if (data.amount_valid)
            line.amount = amountOfDouble(data.amount);
        if (data.date_posted_valid)
            line.day = QDateTime::fromSecsSinceEpoch(data.date_posted, Qt::UTC).date();
    }
    r.lines.push_back(std::move(line));
    return 0;
}

// libofx walks all the lines it has read for each line it adds, so a file of 50,000
// lines took it 15 seconds. A long list of one statement is given to it in pieces, each
// the whole file with a share of the lines, which it reads in time proportional to the
// file. Files of several statements are short and read whole.
std::vector<QByteArray> pieces(const QByteArray &bytes)
{
    constexpr int linesAPiece = 3000;
    static constexpr QByteArrayView open("<STMTTRN>"), listEnd("</BANKTRANLIST>");
    const QByteArrayView all(bytes);
    const qsizetype first = all.indexOf(open), end = all.indexOf(listEnd);
    if (first < 0 || end < first || all.indexOf(listEnd, end + 1) >= 0 || all.count(open) <= linesAPiece)
        return {bytes};
    const QByteArrayView head = all.first(first), tail = all.sliced(end);
    std::vector<QByteArray> result;
    for (qsizetype from = first; from < end;) {
        qsizetype to = from;
        for (int n = 0; n < linesAPiece && to >= 0 && to < end; ++n)
            to = all.indexOf(open, to + open.size());
        if (to < 0 || to > end)
            to = end;
        result.push_back(head.toByteArray() + all.sliced(from, to - from).toByteArray() + tail.toByteArray());
        from = to;
    }
    return result;
}

} // namespace

bool looksLike(const QByteArray &bytes)
{
    QByteArrayView head = QByteArrayView(bytes).first(std::min<qsizetype>(bytes.size(), 4096));
    if (head.startsWith("\xEF\xBB\xBF"))
        head = head.sliced(3);
    head = head.trimmed();
    if (head.startsWith("OFXHEADER"))
        return true;
    return (head.startsWith("<?xml") || head.startsWith("<?OFX") || head.startsWith("<OFX>")) &&
           (head.contains("<?OFX") || head.contains("<OFX>"));
}

Statement read(const QByteArray &bytes)
{
    Statement statement;
    statement.format = bytes.contains("<INTU.") ? QStringLiteral("QFX") : QStringLiteral("OFX");

    Reading reading{writtenLines(bytes), {}, {}};
    int failed = 0;
    {
        const std::lock_guard lock(libofxLock);
        [[maybe_unused]] const LibofxLeaksIgnored ignored;
        silenceLibofx();
        // libofx reads only files: each piece gets a copy only this user can read.
        QTemporaryFile copy;
        const bool opened = copy.open();
        for (const QByteArray &piece : pieces(bytes)) {
            if (!opened || !copy.resize(0) || !copy.seek(0) || copy.write(piece) != piece.size() || !copy.flush()) {
                statement.error = QStringLiteral("no temporary copy of it could be made (%1)").arg(copy.errorString());
                return statement;
            }
            LibofxContextPtr context = libofx_get_new_context();
            ofx_set_account_cb(context, onAccount, &reading);
            ofx_set_statement_cb(context, onStatement, &reading);
            ofx_set_transaction_cb(context, onTransaction, &reading);
            failed |= libofx_proc_file(context, QFile::encodeName(copy.fileName()).constData(), OFX);
            libofx_free_context(context);
        }
    }

    // The statement's account: the first bank or card account with lines, else the
    // first bank or card account.
    const auto linesOf = [&](const QByteArray &id) {
        return std::any_of(reading.lines.begin(), reading.lines.end(), [&](const Line &l) { return l.account == id; });
    };
    const Account *chosen = nullptr;
    bool investment = false;
    for (const Account &account : reading.accounts) {
        investment = investment || account.investment;
        if (!account.investment && (!chosen || (!linesOf(chosen->id) && linesOf(account.id))))
            chosen = &account;
    }
    if (!chosen) {
        statement.error = investment
                              ? QStringLiteral("it holds only an investment account, which Coinhall does not track")
                              : QStringLiteral("it is damaged or holds no bank or card statement");
        return statement;
    }
    statement.account = chosen->number;
    statement.currency = chosen->currency;

    for (Line &line : reading.lines) {
        if (line.account != chosen->id)
            continue;
        if (!line.amount || !line.day.isValid()) {
            ++statement.bad;
            continue;
        }
        statement.lines.push_back({line.day, *line.amount, std::move(line.payee), {}, std::move(line.fitid), {}});
    }
    // A file libofx gave up on and took no line from is damaged, whatever account it
    // began to name; one it complained about but read lines from (a missing end tag) is kept.
    if (failed && statement.lines.empty() && statement.bad == 0)
        statement.error = QStringLiteral("it is damaged or holds no bank or card statement");
    return statement;
}

} // namespace OfxReader
