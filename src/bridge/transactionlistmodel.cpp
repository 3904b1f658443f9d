#include "transactionlistmodel.h"

#include "bridgeinput.h"
#include "model/money.h"
#include "store/store.h"

#include <QLocale>
#include <QStringMatcher>

#include <algorithm>

using BridgeInput::idText;

namespace {

// Joins the three searched fields of a key. A search text never holds it in practice;
// when one does, the fields are searched one by one instead.
constexpr QChar keySeparator = QChar(u'\0');

} // namespace

TransactionListModel::TransactionListModel(QObject *parent)
    : QAbstractListModel(parent)
    , m_store(this, [this] { reloadBook(); })
{
    showSummary({}, {});
}

void TransactionListModel::setStore(QObject *store)
{
    if (m_store.set(store))
        emit storeChanged();
}

void TransactionListModel::setAccountFilter(const QString &accountId)
{
    if (accountId == m_accountFilter)
        return;
    m_accountFilter = accountId;
    emit accountFilterChanged();
    refilter();
}

void TransactionListModel::setFlow(Flow flow)
{
    flow = (flow >= AllLines && flow <= MoneyOut) ? flow : AllLines;
    if (flow == m_flow)
        return;
    m_flow = flow;
    emit flowChanged();
    refilter();
}

void TransactionListModel::setSearch(const QString &text)
{
    if (text == m_search)
        return;
    m_search = text;
    emit searchChanged();
    refilter();
}

void TransactionListModel::setMonthOnly(bool on)
{
    if (on == m_monthOnly)
        return;
    m_monthOnly = on;
    emit monthOnlyChanged();
    refilter();
}

void TransactionListModel::setLimit(int limit)
{
    limit = std::max(0, limit);
    if (limit == m_limit)
        return;
    m_limit = limit;
    emit limitChanged();
    refilter();
}

TransactionListModel::Filter TransactionListModel::currentFilter() const
{
    Filter filter;
    filter.account = QUuid(m_accountFilter);
    filter.flow = m_flow;
    filter.monthOnly = m_monthOnly;
    if (m_monthOnly && m_store)
        filter.month = Calendar::monthRange(m_store->now());
    filter.needle = m_search.toLower();
    return filter;
}

std::vector<int> TransactionListModel::cut(const std::vector<int> &matches) const
{
    if (m_limit == 0 || matches.size() <= size_t(m_limit))
        return matches;
    return std::vector<int>(matches.begin(), matches.begin() + m_limit);
}

TransactionListModel::SearchKeys TransactionListModel::makeKeys(const std::vector<Transaction> &lines)
{
    SearchKeys keys;
    qsizetype size = 0;
    for (const Transaction &t : lines)
        size += t.payee.size() + t.category.size() + t.note.size() + 3;
    keys.text.reserve(size);
    keys.starts.reserve(3 * lines.size() + 1);

    // Plain ASCII (nearly every payee) is lowered here in place; anything else by
    // QString, whose result may differ in length.
    auto put = [&keys](const QString &field) {
        const qsizetype at = keys.text.size();
        keys.starts.push_back(at);
        keys.text.resize(at + field.size());
        QChar *out = keys.text.data() + at;
        bool ascii = true;
        for (const QChar c : field) {
            const char16_t u = c.unicode();
            if (u >= 0x80) {
                ascii = false;
                break;
            }
            *out++ = QChar(u >= u'A' && u <= u'Z' ? char16_t(u + 32) : u);
        }
        if (!ascii) {
            keys.text.resize(at);
            keys.text.append(field.toLower());
        }
        keys.text.append(keySeparator);
    };
    for (const Transaction &t : lines) {
        put(t.payee);
        put(t.category);
        put(t.note);
    }
    keys.starts.push_back(keys.text.size());
    return keys;
}

std::vector<int> TransactionListModel::matching(const std::vector<Transaction> &lines, const SearchKeys &keys,
                                                const Filter &filter, const std::vector<int> *within, size_t enough)
{
    const bool searching = !filter.needle.isEmpty();
    const bool fieldByField = filter.needle.contains(keySeparator);
    const QStringMatcher matcher(filter.needle);

    auto passes = [&](int i) {
        const Transaction &t = lines[size_t(i)];
        if (!filter.account.isNull() && t.accountID != filter.account)
            return false;
        if (filter.flow == MoneyIn && t.amount.signum() <= 0)
            return false;
        if (filter.flow == MoneyOut && t.amount.signum() >= 0)
            return false;
        if (filter.monthOnly && !filter.month.contains(t.date))
            return false;
        if (!searching)
            return true;
        const QStringView all(keys.text);
        const qsizetype *start = keys.starts.data() + 3 * size_t(i);
        if (!fieldByField)
            return matcher.indexIn(all.sliced(start[0], start[3] - 1 - start[0])) >= 0;
        for (int field = 0; field < 3; ++field)
            if (all.sliced(start[field], start[field + 1] - 1 - start[field]).contains(filter.needle))
                return true;
        return false;
    };

    std::vector<int> matches;
    if (within) {
        matches.reserve(within->size());
        std::copy_if(within->begin(), within->end(), std::back_inserter(matches), passes);
    } else {
        for (int i = 0; i < int(lines.size()) && matches.size() < enough; ++i)
            if (passes(i))
                matches.push_back(i);
    }
    return matches;
}

const std::vector<Transaction> &TransactionListModel::bookLines() const
{
    static const std::vector<Transaction> none;
    return m_store ? m_store->book().transactions : none;
}

const Transaction *TransactionListModel::lineAt(int row) const
{
    if (row < 0 || row >= count())
        return nullptr;
    // Between a change of the Book and its signal a row may point past its end.
    const std::vector<Transaction> &lines = bookLines();
    const size_t i = size_t(m_rows[size_t(row)]);
    return i < lines.size() ? &lines[i] : nullptr;
}

void TransactionListModel::refilter()
{
    const std::vector<Transaction> &lines = bookLines();
    Filter next = currentFilter();
    if (!next.needle.isEmpty() && !m_keys.covers(lines.size()))
        m_keys = makeKeys(lines);

    // A longer search over the same other filters can only drop lines: look only at those found.
    // (A short list holds only the first of its matches, too few to narrow within.)
    const bool whole = m_limit == 0;
    const bool narrows = whole && m_appliedWhole && next.account == m_applied.account && next.flow == m_applied.flow &&
                         next.monthOnly == m_applied.monthOnly && next.month == m_applied.month &&
                         next.needle.contains(m_applied.needle);
    std::vector<int> matches =
        matching(lines, m_keys, next, narrows ? &m_matches : nullptr, whole ? SIZE_MAX : size_t(m_limit));
    std::vector<int> rows = cut(matches);

    const int before = count();
    beginResetModel();
    m_appliedWhole = whole;
    m_applied = std::move(next);
    m_matches = std::move(matches);
    m_rows = std::move(rows);
    Listed list = listed(lines, m_rows);
    m_rowIds = std::move(list.ids);
    m_seenChange = m_store ? m_store->changeCount() : 0;
    endResetModel();
    if (count() != before)
        emit countChanged();
    showSummary(list.in.total(), list.out.total());
}

TransactionListModel::Listed TransactionListModel::listed(const std::vector<Transaction> &lines,
                                                          const std::vector<int> &rows)
{
    // One pass over lines that may be spread over hundreds of megabytes.
    Listed list;
    list.ids.reserve(rows.size());
    for (int i : rows) {
        const Transaction &t = lines[size_t(i)];
        list.ids.push_back(t.id);
        if (t.amount.signum() > 0)
            list.in.add(t.amount);
        else if (t.amount.signum() < 0)
            list.out.add(t.amount);
    }
    return list;
}

bool TransactionListModel::followAdded()
{
    if (!m_store || m_limit != 0 || !m_appliedWhole || m_store->changeCount() != m_seenChange + 1)
        return false;
    const Filter filter = currentFilter();
    auto unfiltered = [](const Filter &f) {
        return f.account.isNull() && f.flow == AllLines && !f.monthOnly && f.needle.isEmpty();
    };
    const std::optional<Store::Added> added = m_store->lastAdded();
    const std::vector<Transaction> &lines = bookLines();
    if (!added || !unfiltered(filter) || !unfiltered(m_applied) || lines.size() != m_rows.size() + added->count ||
        added->at > m_rows.size())
        return false;

    // Every line is listed, in the Book's order: row r shows line r.
    const size_t at = added->at;
    const size_t n = added->count;
    // Until the view is told, its rows are the old ones, which are now n lines on.
    for (size_t row = at; row < m_rows.size(); ++row)
        m_rows[row] += int(n);
    beginInsertRows({}, int(at), int(at + n - 1));
    std::vector<int> joining(n);
    std::vector<QUuid> ids;
    for (size_t i = 0; i < n; ++i) {
        const Transaction &t = lines[at + i];
        joining[i] = int(at + i);
        ids.push_back(t.id);
        if (t.amount.signum() > 0)
            m_in += t.amount;
        else if (t.amount.signum() < 0)
            m_out += t.amount;
    }
    m_rows.insert(m_rows.begin() + std::ptrdiff_t(at), joining.begin(), joining.end());
    m_rowIds.insert(m_rowIds.begin() + std::ptrdiff_t(at), ids.begin(), ids.end());
    m_matches = m_rows;
    m_keys = {};
    m_seenChange = m_store->changeCount();
    endInsertRows();
    emit countChanged();
    showSummary(m_in, m_out);
    return true;
}

void TransactionListModel::reloadBook()
{
    // A line added to the whole list, unfiltered (the register as it opens), joins it
    // without a pass over the others: at a million lines that pass is most of a change.
    if (followAdded())
        return;
    const bool whole = m_limit == 0;
    const std::vector<Transaction> &lines = bookLines();
    QHash<QUuid, QString> names;
    if (m_store)
        for (const Account &a : m_store->book().accounts)
            if (!names.contains(a.id)) // the first account with an id is the one looked up
                names.insert(a.id, a.name);

    Filter filter = currentFilter();
    SearchKeys keys;
    if (!filter.needle.isEmpty())
        keys = makeKeys(lines);
    std::vector<int> matches = matching(lines, keys, filter, nullptr, whole ? SIZE_MAX : size_t(m_limit));
    std::vector<int> rows = cut(matches);
    Listed list = listed(lines, rows);
    std::vector<QUuid> &ids = list.ids;

    // Tell the view what happened to its rows: lines added or removed in one place
    // (a new line, a transfer, a delete) as such, so the list keeps its place. The
    // rows kept may show changed lines (an edit, a renamed account): the view is told
    // they changed, and only the rows it shows read them again.
    const size_t common = std::min(ids.size(), m_rowIds.size());
    size_t prefix = 0;
    while (prefix < common && ids[prefix] == m_rowIds[prefix])
        ++prefix;
    size_t suffix = 0;
    while (suffix < common - prefix && ids[ids.size() - 1 - suffix] == m_rowIds[m_rowIds.size() - 1 - suffix])
        ++suffix;
    const size_t removed = m_rowIds.size() - prefix - suffix;
    const size_t inserted = ids.size() - prefix - suffix;

    auto takeOver = [&] {
        m_appliedWhole = whole;
        m_accountNames = std::move(names);
        m_keys = std::move(keys);
        m_applied = std::move(filter);
        m_matches = std::move(matches);
        m_rows = std::move(rows);
        m_rowIds = std::move(ids);
        m_seenChange = m_store ? m_store->changeCount() : 0;
    };
    const int before = count();
    if ((removed > 0) != (inserted > 0)) {
        // Until the view is told, its rows are the old ones: point them at the same
        // lines where these now are in the Book (a removed one, at nothing).
        std::vector<int> old(m_rowIds.size(), std::numeric_limits<int>::max());
        std::copy_n(rows.begin(), prefix, old.begin());
        std::copy_n(rows.end() - std::ptrdiff_t(suffix), suffix, old.end() - std::ptrdiff_t(suffix));
        m_rows = std::move(old);
    }
    if (removed > 0 && inserted > 0) {
        beginResetModel();
        takeOver();
        endResetModel();
    } else {
        if (removed > 0) {
            beginRemoveRows({}, int(prefix), int(prefix + removed - 1));
            takeOver();
            endRemoveRows();
        } else if (inserted > 0) {
            beginInsertRows({}, int(prefix), int(prefix + inserted - 1));
            takeOver();
            endInsertRows();
        } else {
            takeOver();
        }
        if (count() > 0)
            emit dataChanged(index(0), index(count() - 1));
    }
    if (count() != before)
        emit countChanged();
    showSummary(list.in.total(), list.out.total());
}

void TransactionListModel::showSummary(const Decimal &in, const Decimal &out)
{
    m_in = in;
    m_out = out;
    const QString linesText = QLocale().toString(count()) + QStringLiteral(" lines");
    const QString inText = QStringLiteral("In ") + Money::s(in);
    const QString outText = QStringLiteral("Out ") + Money::s(out);
    if (linesText == m_linesText && inText == m_inText && outText == m_outText)
        return;
    m_linesText = linesText;
    m_inText = inText;
    m_outText = outText;
    emit summaryChanged();
}

QString TransactionListModel::idAt(int row) const
{
    const Transaction *t = lineAt(row);
    return t ? idText(t->id) : QString();
}

int TransactionListModel::rowOf(const QString &txId) const
{
    const QUuid id(txId);
    if (id.isNull())
        return -1;
    for (size_t row = 0; row < m_rowIds.size(); ++row)
        if (m_rowIds[row] == id)
            return int(row);
    return -1;
}

QVariantMap TransactionListModel::get(int row) const
{
    QVariantMap values;
    if (row < 0 || row >= count())
        return values;
    const QHash<int, QByteArray> names = roleNames();
    for (auto it = names.begin(); it != names.end(); ++it)
        values.insert(QString::fromLatin1(it.value()), data(index(row), it.key()));
    return values;
}

int TransactionListModel::rowCount(const QModelIndex &parent) const
{
    return parent.isValid() ? 0 : count();
}

QVariant TransactionListModel::data(const QModelIndex &index, int role) const
{
    if (!checkIndex(index, CheckIndexOption::IndexIsValid | CheckIndexOption::ParentIsInvalid))
        return {};
    const Transaction *line = lineAt(index.row());
    if (!line)
        return {};
    const Transaction &t = *line;
    switch (role) {
    case TxIdRole:
        return idText(t.id);
    case DateTextRole:
        return chDate(t.date);
    case Qt::DisplayRole:
    case PayeeRole:
        return t.payee;
    case CategoryRole:
        return t.category;
    case NoteRole:
        return t.note;
    case AccountNameRole:
        return m_accountNames.value(t.accountID);
    case AmountRole:
        return t.amount.toString();
    case AmountTextRole:
        return Money::signed_(t.amount);
    case NegativeRole:
        return t.amount.isNegative();
    case KindRole:
        return rawValue(t.kind);
    case ClearedRole:
        return t.cleared;
    default:
        return {};
    }
}

QHash<int, QByteArray> TransactionListModel::roleNames() const
{
    return {{TxIdRole, "txId"},         {DateTextRole, "dateText"},
            {PayeeRole, "payee"},       {CategoryRole, "category"},
            {NoteRole, "note"},         {AccountNameRole, "accountName"},
            {AmountRole, "amount"},     {AmountTextRole, "amountText"},
            {NegativeRole, "negative"}, {KindRole, "kind"},
            {ClearedRole, "cleared"}};
}
