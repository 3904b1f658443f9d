// Undo and redo: a step's lines taken out and put back at their exact places, so the
// list goes back to what it was line for line, equal dates in their order too.
#include "store/history.h"

#include "store/store.h"

#include <QSet>

#include <algorithm>
#include <iterator>

namespace {

// Removes the lines at `places` (ascending places in `lines`) in one pass.
void takeOut(std::vector<Transaction> &lines, const BookStep::Placed &places)
{
    if (places.empty())
        return;
    auto write = lines.begin() + std::ptrdiff_t(places.front().first);
    auto read = write;
    for (auto place = places.begin(); read != lines.end(); ++read) {
        if (place != places.end() && size_t(read - lines.begin()) == place->first) {
            ++place;
            continue;
        }
        *write++ = std::move(*read);
    }
    lines.erase(write, lines.end());
}

// Puts `placed` into `lines` so that each lands at its place (ascending places in the
// list that results), in one pass from the end.
void putIn(std::vector<Transaction> &lines, const BookStep::Placed &placed)
{
    if (placed.empty())
        return;
    size_t read = lines.size();
    // Copies of a line already at hand, not new lines: a new line makes a new id.
    lines.resize(lines.size() + placed.size(), placed.front().second);
    auto next = placed.rbegin();
    for (size_t write = lines.size(); write-- > placed.front().first;) {
        if (next != placed.rend() && next->first == write)
            lines[write] = (next++)->second;
        else
            lines[write] = std::move(lines[--read]);
    }
}

template <typename Part> void keepIfChanged(std::optional<Part> &was, std::optional<Part> &now, const Part &current)
{
    if (was && *was != current)
        now = current;
    else
        was.reset();
}

template <typename Part> void putBack(std::optional<Part> const &part, Part &into)
{
    if (part)
        into = *part;
}

void putRest(const BookStep::Rest &rest, Book &book)
{
    putBack(rest.accounts, book.accounts);
    putBack(rest.bills, book.bills);
    putBack(rest.royalties, book.royalties);
    putBack(rest.categories, book.categories);
    putBack(rest.setAsidePercent, book.setAsidePercent);
}

} // namespace

BookStep::Rest restOf(const Book &book)
{
    return {book.accounts, book.bills, book.royalties, book.categories, book.setAsidePercent};
}

void BookStep::keepChangedRest(Rest was, const Book &book)
{
    before = std::move(was);
    after = {};
    keepIfChanged(before.accounts, after.accounts, book.accounts);
    keepIfChanged(before.bills, after.bills, book.bills);
    keepIfChanged(before.royalties, after.royalties, book.royalties);
    keepIfChanged(before.categories, after.categories, book.categories);
    keepIfChanged(before.setAsidePercent, after.setAsidePercent, book.setAsidePercent);
}

bool BookStep::empty() const
{
    const bool noLines = std::all_of(splices.begin(), splices.end(),
                                     [](const Splice &s) { return s.out.empty() && s.in.empty(); });
    return noLines && !after.accounts && !after.bills && !after.royalties && !after.categories &&
           !after.setAsidePercent;
}

void BookStep::undo(Book &book) const
{
    for (auto splice = splices.rbegin(); splice != splices.rend(); ++splice) {
        takeOut(book.transactions, splice->in);
        putIn(book.transactions, splice->out);
    }
    putRest(before, book);
}

void BookStep::redo(Book &book) const
{
    for (const Splice &splice : splices) {
        takeOut(book.transactions, splice.out);
        putIn(book.transactions, splice.in);
    }
    putRest(after, book);
}

// -- The Store's history ---------------------------------------------------------

Store::Step::Step(Store &store)
    : m_store(store)
{
    // Only books this window writes have a history; nothing could be undone on the others.
    if (m_store.m_stepDepth++ == 0 && m_store.writable() && !m_store.loading())
        m_store.m_recording = Recording{{}, restOf(m_store.m_book)};
}

Store::Step::~Step()
{
    if (--m_store.m_stepDepth == 0)
        m_store.endStep();
}

void Store::nameStep(const QString &what)
{
    if (m_recording && m_stepDepth == 1) {
        m_recording->step.what = what;
        m_recording->named = true;
    }
}

void Store::recordLines(BookStep::Splice splice)
{
    // A line "changed" into itself is no change.
    if (m_recording && splice.out != splice.in)
        m_recording->step.splices.push_back(std::move(splice));
}

void Store::recordAppended(const std::vector<Transaction> &added)
{
    if (!m_recording || added.empty())
        return;
    const std::vector<Transaction> &lines = m_book.transactions;
    BookStep::Splice splice;
    if (added.size() <= 16) {
        // Each among the lines of its date, found by halving.
        for (const Transaction &line : added) {
            const auto sameDay = std::equal_range(lines.begin(), lines.end(), line,
                                                  [](const Transaction &a, const Transaction &b) { return a.date > b.date; });
            const auto found = std::find_if(sameDay.first, sameDay.second,
                                            [&](const Transaction &t) { return t.id == line.id; });
            splice.in.emplace_back(size_t(found - lines.begin()), *found);
        }
        std::sort(splice.in.begin(), splice.in.end(),
                  [](const auto &a, const auto &b) { return a.first < b.first; });
    } else {
        QSet<QUuid> ids;
        ids.reserve(qsizetype(added.size()));
        for (const Transaction &line : added)
            ids.insert(line.id);
        for (size_t at = 0; at < lines.size() && splice.in.size() < added.size(); ++at) {
            if (ids.contains(lines[at].id))
                splice.in.emplace_back(at, lines[at]);
        }
    }
    recordLines(std::move(splice));
}

void Store::endStep()
{
    std::optional<Recording> made = std::exchange(m_recording, std::nullopt);
    if (!made)
        return;
    if (made->broken) {
        clearHistory();
        return;
    }
    made->step.keepChangedRest(std::move(made->was), m_book);
    if (made->step.empty())
        return;
    m_undo.push_back(std::move(made->step));
    if (m_undo.size() > historyKept)
        m_undo.pop_front();
    m_redo.clear();
    Q_EMIT historyChanged();
}

void Store::clearHistory()
{
    if (m_undo.empty() && m_redo.empty())
        return;
    m_undo.clear();
    m_redo.clear();
    Q_EMIT historyChanged();
}

bool Store::canUndo() const
{
    return !m_undo.empty() && !m_locked && writable() && !loading() && !m_recording;
}

bool Store::canRedo() const
{
    return !m_redo.empty() && !m_locked && writable() && !loading() && !m_recording;
}

QString Store::undoText() const
{
    return canUndo() ? tr("Undo %1").arg(m_undo.back().what) : tr("Undo");
}

QString Store::redoText() const
{
    return canRedo() ? tr("Redo %1").arg(m_redo.back().what) : tr("Redo");
}

bool Store::undo()
{
    return step(true);
}

bool Store::redo()
{
    return step(false);
}

bool Store::step(bool back)
{
    if (!(back ? canUndo() : canRedo()))
        return false;
    settle();
    finishSaving(); // a write still under way lands before this one
    std::deque<BookStep> &from = back ? m_undo : m_redo;
    BookStep step = std::move(from.back());
    from.pop_back();
    back ? step.undo(m_book) : step.redo(m_book);
    QString reason;
    if (!writeNow(&reason)) {
        // The Book stays what the file holds; the step waits to be tried again.
        back ? step.redo(m_book) : step.undo(m_book);
        from.push_back(std::move(step));
        m_saveError = tr("Could not save: %1").arg(reason);
        setStatus(m_saveError);
        return false;
    }
    m_saveError.clear();
    ++m_changeCount;
    m_lastAdded.reset();
    m_sums.reset();
    setStatus((back ? tr("Undone: %1.") : tr("Redone: %1.")).arg(step.what));
    (back ? m_redo : m_undo).push_back(std::move(step));
    Q_EMIT historyChanged();
    Q_EMIT bookChanged();
    scheduleReminders();
    return true;
}
