#pragma once

#include "model/records.h"

#include <QString>

#include <optional>
#include <utility>
#include <vector>

// One change of the Book, kept so that it can be undone and redone: the lines it took
// out and put in with their places, and the few short lists it changed, as they were
// before and after. Never a copy of all the lines, so a hundred steps of a book of a
// million lines weigh what they changed.
struct BookStep
{
    // Lines with their places in the newest-first list, ascending.
    using Placed = std::vector<std::pair<size_t, Transaction>>;
    // One change of the lines: `out` taken from their places in the list before it,
    // then `in` put at their places in the list after it. A line changed in place is
    // taken out and put in at the same place.
    struct Splice
    {
        Placed out;
        Placed in;
    };
    // The parts of a Book beside its lines; each is present only when the step changed it.
    struct Rest
    {
        std::optional<std::vector<Account>> accounts;
        std::optional<std::vector<Bill>> bills;
        std::optional<std::vector<Royalty>> royalties;
        std::optional<std::vector<Category>> categories;
        std::optional<std::optional<Decimal>> setAsidePercent; // outer: whether the step changed it
    };

    // What the step did, as the Edit menu names it: "Spent $4.50 · Corner cafe".
    QString what;
    std::vector<Splice> splices; // in the order they were made
    Rest before;
    Rest after;

    // Sets `before` and `after` to the parts that differ between `was` (all of it) and `book`.
    void keepChangedRest(Rest was, const Book &book);
    // Whether the step changed nothing.
    bool empty() const;

    // Takes `book` from the state after the step back to the state before it.
    void undo(Book &book) const;
    // Takes `book` from the state before the step to the state after it.
    void redo(Book &book) const;
};

// The parts of `book` beside its lines, all of them.
BookStep::Rest restOf(const Book &book);
