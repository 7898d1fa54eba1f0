// Statement labels and construct names, which share one kind of symbol (`sk_label`) and one kind of entry.
// A label is entered once for a program unit, at its first occurrence; what is said of it later is compared
// with that. This file also judges where branches lead: into a construct from outside or not. The statement
// loop defines labels; the readers of statements refer to them.
#pragma once

#include "declarations/symbols.h"

namespace zf90 {

// What a reference asks of a label.
enum label_use : std::uint8_t {
    label_use_branch, // GO TO and the like, alternate returns, END=, ERR=, EOR=
    label_use_do,     // the end of a labelled DO
    label_use_assign, // ASSIGN: an executable statement or a FORMAT
    label_use_format
};

// The symbol of a label in the current program unit, defined or only referred to, or null.
symbol *lookup_label(const name_locator &name);

// Enters the definition of a label, or of a construct name with lk_control, at `position`. Error 100, or 145
// for an ELSE, if earlier references asked for another kind. The label must not be defined yet. Outside of
// any program unit nothing is entered, and the result is null.
symbol *define_label(const name_locator &name, label_kind kind, source_pos position);

// Enters a reference at the name's position. Error 199, 265 or 145 if the label is already defined as
// something else. Never null.
symbol *refer_to_label(const name_locator &name, label_use use);

// Reads a reference: the current token must be tok_label, else error 224 with recovery and null. Steps past
// it.
symbol *read_label_reference(label_use use);

// What refers to the label is in error: that it is not defined is no second mistake. It may be null.
void excuse_label(symbol *label);

// Judges a branch to an executable label from the construct that is open now, or notes where its definition
// stands: warnings 270 and 309.
void note_label_position(symbol *label, bool is_definition, source_pos position);

// A label of the kind lk_control without a name, on no list: the top of a loop that has no name.
label *new_loop_label();

} // namespace zf90
