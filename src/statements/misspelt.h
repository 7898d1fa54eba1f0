// Statements that have been refused, but show what they were meant for: a construct begun by a misspelt word
// has its END all the same, and a misspelt END leaves nothing open. What is found out here is a guess; it
// keeps the statements that follow from being reported for the same mistake.
#pragma once

#include "statements/kinds.h"

#include <cstddef>
#include <string_view>

namespace zf90 {

// The longest word that word_distance takes.
inline constexpr std::size_t longest_word = 20;

// How many letters must be put in, left out, replaced or exchanged with the next one to turn one word into
// the other.
int word_distance(std::string_view a, std::string_view b);

enum misspelt_kinds : unsigned char {
    misspelt_heads, // of constructs
    misspelt_any    // heads and ENDs
};

// For a statement of kind stmtk_bad: whether a construct was to begin or to end there. `curr_stmt_kind` is
// its kind then. The cursor goes back to `stmt_resume`.
bool classify_misspelt(misspelt_kinds kinds);

// For a statement of kind stmtk_bad: whether it was meant as one that begins or ends a unit or a part of one,
// as CONTAINS does, and may stand where it does by `may_stand`. `curr_stmt_kind` and `stmt_resume` are those
// of the statement meant then, and the cursor is there.
bool classify_misspelt_unit(bool (*may_stand)(statement_kind kind));

// In place of the handler, for a kind that classify_misspelt or classify_misspelt_unit has found: opens or
// closes the construct, or does what the statement was meant for. False, as from a statement in error.
bool run_misspelt();

// The statement from `stmt_start` on, in whatever state it is; these move the cursor.
bool ends_with_then();
bool sets_something(); // whether it has an "="

// Whether the word at `stmt_start` begins like a DO that ran into its variable. Leaves the cursor.
bool begins_like_loop();

// Whether the text at the cursor is THEN with more behind it, or one word like it.
bool is_like_then(char *text);

} // namespace zf90
