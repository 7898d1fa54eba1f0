// Type specifiers: INTEGER, REAL, COMPLEX, LOGICAL and CHARACTER with their kind and length selectors, and
// TYPE(name). Declarations, prefixes of functions and IMPLICIT read them here.
#pragma once

#include "il/records.h"

namespace zf90 {

// The type of the last specifier read: the error type if it was in error, which has been reported.
extern type *curr_type_spec;

// The last specifier was CHARACTER with a "*" behind the word: a comma may follow it.
extern bool char_star_form;

// Each is called with the type's word as the current token, the last piece of it in fixed form, and leaves
// the token behind the specifier, read in `mode`. False if the specifier is not closed.
bool read_type_integer(std::uint32_t mode);
bool read_type_real(std::uint32_t mode);
bool read_type_complex(std::uint32_t mode);
bool read_type_logical(std::uint32_t mode);
bool read_type_character(std::uint32_t mode);
bool read_type_derived(std::uint32_t mode);

// A specifier in front of FUNCTION. Its selectors may name dummy arguments, and what the function declares or
// uses; so they are read behind the header, and resolved when the specification part has ended.
struct prefix_type {
    type *provisional; // stands for the type until it is resolved
    char *start;       // the cursor behind the type's word
    expr_node *kind;   // the selectors; null: not given
    expr_node *length;
    bool assumed_length;
    bool failed;        // the selectors are in error, which has been reported
    source_pos closing; // behind them
};

// At the word of INTEGER, REAL, COMPLEX, LOGICAL or CHARACTER: if its selectors name something, passes over
// them, leaves the token behind them, read in `mode`, and a provisional type in `curr_type_spec`. Null, with
// nothing read, if they don't.
prefix_type *skip_named_selectors(std::uint32_t mode);

// Reads the selectors, wherever in the statement the reader is, and returns there.
void read_skipped_selectors(prefix_type &prefix);

// The type that the specifier means.
type *resolve_prefix_type(prefix_type &prefix);

// At a "*": the length behind it, for an entity of the type `base`, and the token behind that, read in
// `mode`. The result is the error type if there is no length.
type *read_char_length(type *base, std::uint32_t mode);

} // namespace zf90
