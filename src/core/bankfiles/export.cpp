// CSV export of every transaction, for spreadsheets and accountants.
#include "bankfiles/export.h"

#include <QHash>

#include <algorithm>
#include <array>

namespace {

// The value in double quotes, each quote inside doubled; commas and line breaks
// stay as they are. Written straight as UTF-8 (a lone surrogate becomes U+FFFD).
void appendQuoted(QByteArray &out, const QString &value)
{
    out += '"';
    const char16_t *p = reinterpret_cast<const char16_t *>(value.utf16());
    const qsizetype n = value.size();
    qsizetype i = 0;
    while (i < n) {
        // Plain ASCII runs, the usual case, are copied whole.
        qsizetype j = i;
        while (j < n && p[j] < 0x80 && p[j] != u'"')
            ++j;
        if (j > i) {
            const qsizetype at = out.size();
            out.resize(at + (j - i));
            char *dst = out.data() + at;
            for (qsizetype k = i; k < j; ++k)
                *dst++ = char(p[k]);
            i = j;
            continue;
        }
        if (p[i] == u'"') {
            out += "\"\"";
            ++i;
            continue;
        }
        // The rest of the value from here on, through Qt's own encoder.
        qsizetype end = i;
        while (end < n && (p[end] >= 0x80))
            ++end;
        out += QStringView(p + i, end - i).toUtf8();
        i = end;
    }
    out += '"';
}

} // namespace

std::vector<const Transaction *> linesOldestFirst(const Book &book)
{
    // The Book keeps its lines newest first, so reversed they are usually in order already.
    std::vector<const Transaction *> lines;
    lines.reserve(book.transactions.size());
    for (auto t = book.transactions.rbegin(); t != book.transactions.rend(); ++t)
        lines.push_back(&*t);
    auto olderFirst = [](const Transaction *a, const Transaction *b) { return a->date < b->date; };
    if (!std::is_sorted(lines.begin(), lines.end(), olderFirst))
        std::stable_sort(lines.begin(), lines.end(), olderFirst);
    return lines;
}

QByteArray CSVExport::text(const Book &book)
{
    const std::vector<const Transaction *> lines = linesOldestFirst(book);

    // Account names by id, closed accounts included, already quoted.
    QHash<QUuid, QByteArray> accountNames;
    for (const Account &a : book.accounts) {
        if (accountNames.contains(a.id))
            continue; // the first account with an id is the one the ledger finds
        QByteArray quoted;
        appendQuoted(quoted, a.name);
        accountNames.insert(a.id, quoted);
    }
    const QByteArray noAccount = "\"\"";
    std::array<QByteArray, EnumTexts<TxKind>::table.size()> kindNames;
    for (const auto &[kind, text] : EnumTexts<TxKind>::table)
        kindNames[size_t(kind)] = text;

    QByteArray out;
    out.reserve(qsizetype(lines.size()) * 96 + 64);
    out += "Date,Account,Payee,Category,Amount,Type,Cleared,Note\n";
    for (const Transaction *t : lines) {
        // The calendar date in UTC, as the ISO formatter writes it by default.
        const std::string iso = t->date.isoText();
        out.append(iso.data(), qsizetype(iso.find('T')));
        out += ',';
        out += accountNames.value(t->accountID, noAccount);
        out += ',';
        appendQuoted(out, t->payee);
        out += ',';
        appendQuoted(out, t->category);
        out += ',';
        out += t->amount.toStdString();
        out += ',';
        out += kindNames[size_t(t->kind)];
        out += t->cleared ? ",yes," : ",no,";
        appendQuoted(out, t->note);
        out += '\n';
    }
    return out;
}
