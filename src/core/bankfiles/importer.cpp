// Turning bank rows into transactions, with the fingerprints that keep a second
// import of the same download from adding anything.
#include "bankfiles/importer.h"

#include "bankfiles/autocategory.h"
#include "bankfiles/csvimporter.h"
#include "bankfiles/statement.h"
#include "model/money.h"

#include <QDateTime>
#include <QHash>
#include <QCryptographicHash>
#include <QRandomGenerator>
#include <QSet>

#include <array>
#include <cstring>
#include <functional>
#include <optional>
#include <unordered_map>

namespace {

QByteArray accountPart(const QUuid &account)
{
    return account.toString(QUuid::WithoutBraces).toUpper().toUtf8() + '|';
}

// "<day>|<amount>|<payee in lower case>" after the account part.
void appendLinePart(QByteArray &out, Instant date, const Decimal &amount, const QString &payee)
{
    out += QByteArray::number(BankImport::dayNumber(date));
    out += '|';
    out += amount.toStdString();
    out += '|';
    out += payee.toLower().toUtf8();
}

using Digest = std::array<quint8, 32>;

struct DigestHash
{
    size_t operator()(const Digest &d) const noexcept
    {
        size_t h;
        std::memcpy(&h, d.data(), sizeof h); // the digest is already evenly spread
        return h;
    }
};

Digest sha256(QCryptographicHash &sha, const QByteArray &text)
{
    sha.reset();
    sha.addData(text);
    const QByteArrayView result = sha.resultView();
    Digest d;
    std::memcpy(d.data(), result.data(), d.size());
    return d;
}

QString hexText(const Digest &d)
{
    static constexpr char16_t digits[] = u"0123456789abcdef";
    QString hex(qsizetype(d.size() * 2), Qt::Uninitialized);
    char16_t *out = reinterpret_cast<char16_t *>(hex.data());
    for (quint8 byte : d) {
        *out++ = digits[byte >> 4];
        *out++ = digits[byte & 15];
    }
    return hex;
}

// The digest written in `hex`, if it is 64 lower-case hexadecimal digits: the only
// form a fingerprint made here can take, so any other text can never equal one.
std::optional<Digest> fromHex(const QString &hex)
{
    if (hex.size() != 64)
        return std::nullopt;
    auto value = [](char16_t c) {
        return c >= u'0' && c <= u'9' ? c - u'0' : c >= u'a' && c <= u'f' ? c - u'a' + 10 : -1;
    };
    Digest d;
    const char16_t *p = reinterpret_cast<const char16_t *>(hex.utf16());
    for (size_t i = 0; i < d.size(); ++i) {
        const int high = value(p[2 * i]), low = value(p[2 * i + 1]);
        if (high < 0 || low < 0)
            return std::nullopt;
        d[i] = quint8(high << 4 | low);
    }
    return d;
}

// Fresh random (version 4) ids for a whole file of new lines, drawn from a generator
// seeded once from the system's entropy source. Reading the system source for
// every id was the largest single cost of converting a long download.
class IdMaker
{
public:
    IdMaker()
        : m_random(systemSeed().data(), seedWords)
    {}

    QUuid next()
    {
        const quint64 a = m_random.generate64(), b = m_random.generate64();
        return QUuid(uint(a >> 32), ushort(a >> 16), ushort((a & 0x0FFF) | 0x4000), uchar(((b >> 56) & 0x3F) | 0x80),
                     uchar(b >> 48), uchar(b >> 40), uchar(b >> 32), uchar(b >> 24), uchar(b >> 16), uchar(b >> 8),
                     uchar(b));
    }

private:
    static constexpr qsizetype seedWords = 16;
    static std::array<quint32, seedWords> systemSeed()
    {
        std::array<quint32, seedWords> seed;
        QRandomGenerator::system()->fillRange(seed.data(), qsizetype(seed.size()));
        return seed;
    }

    QRandomGenerator m_random;
};

} // namespace

namespace BankImport {

std::int64_t dayNumber(Instant date)
{
    return date.msecs() / 86400000; // C++ division truncates toward zero
}

QString fingerprintText(const QUuid &account, Instant date, const Decimal &amount, const QString &payee)
{
    QByteArray text = accountPart(account);
    appendLinePart(text, date, amount, payee);
    return QString::fromUtf8(text);
}

QString importHash(const QUuid &account, Instant date, const Decimal &amount, const QString &payee)
{
    QByteArray text = accountPart(account);
    appendLinePart(text, date, amount, payee);
    QCryptographicHash sha(QCryptographicHash::Sha256);
    return hexText(sha256(sha, text));
}

void flipSigns(std::vector<Transaction> &lines)
{
    for (Transaction &t : lines) {
        t.amount = t.amount.negated();
        t.kind = t.amount.signum() > 0 ? TxKind::deposit : TxKind::expense;
    }
}

} // namespace BankImport

CSVImporter::Conversion CSVImporter::preview(const QUuid &account, const std::vector<Transaction> &book,
                                             bool flip) const
{
    const AutoCategory::Guesser guesser(book);
    Conversion conversion = transactions(account, book, std::cref(guesser));
    if (flip)
        BankImport::flipSigns(conversion.newTransactions);
    return conversion;
}

CSVImporter::Conversion CSVImporter::transactions(const QUuid &account, const std::vector<Transaction> &existing,
                                                  const Categorizer &categorize) const
{
    const QString imported = QStringLiteral("Imported");
    const bool decimalComma = m_reading.decimalComma.value_or(false);
    DateCache dates(m_reading.dayFirst.value_or(false));
    std::vector<BankImport::Incoming> lines;
    lines.reserve(size_t(m_rows.size()));
    int bad = 0;
    for (const QStringList &row : m_rows) {
        auto cell = [&row](const std::optional<int> &column) {
            return column && *column >= 0 && *column < row.size() ? trimmedCell(row[*column]) : QString();
        };

        const std::optional<Instant> when = dates(cell(m_mapping.date));
        if (!when || isBalanceRow(row)) {
            ++bad;
            continue;
        }

        std::optional<Decimal> amount;
        if (m_mapping.amount) {
            amount = CSVImporter::amount(cell(m_mapping.amount), decimalComma);
            // A marker ("Af", "D", "S") signs the amount beside it, which banks that
            // have one write unsigned.
            if (amount && m_mapping.marker)
                if (const int sign = markerSign(cell(m_mapping.marker)))
                    amount = sign > 0 ? amount->magnitude() : amount->magnitude().negated();
        }
        if (!amount) {
            const Decimal debit = CSVImporter::amount(cell(m_mapping.debit), decimalComma).value_or(Decimal());
            const Decimal credit = CSVImporter::amount(cell(m_mapping.credit), decimalComma).value_or(Decimal());
            if (debit.isZero() && credit.isZero()) {
                ++bad;
                continue;
            }
            amount = credit - debit.magnitude(); // a debit takes money out, whatever its sign
        }
        if (amount->isZero()) {
            ++bad;
            continue;
        }

        QString payee = cell(m_mapping.description);
        bool fellBack = false;
        if (payee.isEmpty() && m_mapping.description)
            for (const int column : m_descriptions)
                if (column != *m_mapping.description && !(payee = cell(column)).isEmpty()) {
                    fellBack = true;
                    break;
                }
        if (payee.isEmpty())
            payee = imported;
        // An earlier Coinhall took the leftmost description title and no other; a line
        // it imported has that payee, and still counts as already in.
        QString formerPayee;
        if (fellBack || m_formerDescription != m_mapping.description) {
            formerPayee = cell(m_formerDescription);
            if (formerPayee.isEmpty())
                formerPayee = imported;
            if (formerPayee == payee)
                formerPayee.clear();
        }
        lines.push_back({*when, *amount, std::move(payee), cell(m_mapping.category), {}, std::move(formerPayee)});
    }

    QSet<QString> fileCategories; // one shared string per category name in the file
    return BankImport::convert(lines, bad, account, existing, [&](const BankImport::Incoming &line) {
        if (line.category.isEmpty())
            return categorize ? categorize(line.payee, line.amount) : AutoCategory::guess(line.payee, line.amount, {});
        const auto shared = fileCategories.constFind(line.category);
        if (shared != fileCategories.constEnd())
            return *shared;
        fileCategories.insert(line.category);
        return line.category;
    });
}

namespace BankImport {

QString importHash(const QUuid &account, const QString &reference)
{
    QCryptographicHash sha(QCryptographicHash::Sha256);
    return hexText(sha256(sha, accountPart(account) + "ref|" + reference.toUtf8()));
}

Conversion convert(const std::vector<Incoming> &lines, int bad, const QUuid &account,
                   const std::vector<Transaction> &existing, const CategoryOf &categoryOf)
{
    // How many lines of the Book carry each fingerprint; each line of the file that
    // finds one takes it.
    std::unordered_map<Digest, int, DigestHash> known;
    known.reserve(existing.size());
    for (const Transaction &t : existing)
        if (t.importHash)
            if (const auto digest = fromHex(*t.importHash))
                ++known[*digest];
    auto take = [&known](const Digest &digest) {
        const auto found = known.find(digest);
        return found != known.end() && found->second-- > 0;
    };

    const QByteArray accountText = accountPart(account);
    const QString imported = QStringLiteral("Imported");
    QCryptographicHash sha(QCryptographicHash::Sha256);
    QByteArray hashed = accountText;
    hashed.detach(); // reused for every line, keeping its capacity
    auto digestOf = [&](const Incoming &line, const QString &payee) {
        hashed.truncate(accountText.size());
        if (line.reference.isEmpty())
            appendLinePart(hashed, line.date, line.amount, payee);
        else
            hashed += "ref|" + line.reference.toUtf8();
        return sha256(sha, hashed);
    };
    IdMaker ids;
    // Copied rather than default-made, which would draw an id from the system source.
    static const Transaction blank;

    Conversion out;
    out.bad = bad;
    out.newTransactions.reserve(lines.size());
    for (const Incoming &line : lines) {
        const Digest digest = digestOf(line, line.payee);
        if (take(digest) || (!line.formerPayee.isEmpty() && take(digestOf(line, line.formerPayee)))) {
            ++out.skipped;
            continue;
        }
        Transaction t = blank;
        t.id = ids.next();
        t.date = line.date;
        t.accountID = account;
        t.amount = line.amount;
        t.payee = line.payee;
        t.category = categoryOf(line);
        t.note = imported;
        t.cleared = true;
        t.kind = line.amount.signum() > 0 ? TxKind::deposit : TxKind::expense;
        t.importHash = hexText(digest);
        out.newTransactions.push_back(std::move(t));
    }
    return out;
}

Conversion convert(const Statement &statement, const QUuid &account, const std::vector<Transaction> &existing)
{
    std::vector<Incoming> lines;
    lines.reserve(statement.lines.size());
    int bad = statement.bad;
    for (const StatementLine &line : statement.lines) {
        const Instant day = Instant::fromDateTime(QDateTime(line.day, QTime(0, 0)));
        if (!line.day.isValid() || line.amount.isZero() || !day.inIsoRange()) {
            ++bad;
            continue;
        }
        lines.push_back({day, line.amount, line.payee.isEmpty() ? QStringLiteral("Imported") : line.payee,
                         line.category, line.reference, line.formerPayee});
    }
    QHash<QString, QString> bookCategories; // by lower-case name
    for (const Transaction &t : existing)
        bookCategories.insert(t.category.toLower(), t.category);
    const AutoCategory::Guesser guesser(existing);
    return convert(lines, bad, account, existing, [&](const Incoming &line) {
        const QString named = bookCategories.value(line.category.toLower());
        return named.isEmpty() ? guesser(line.payee, line.amount) : named;
    });
}

} // namespace BankImport
