// The list in parentheses behind the word of an input or output statement. All these statements share one
// reader, driven by a table of the specifiers that each of them allows.
#pragma once

#include "il/records.h"

#include <cstdint>

namespace zf90 {

// A set of specifiers.
using io_set = std::uint64_t;

constexpr io_set io_bit(io_specifier specifier) { return io_set{1} << specifier; }

// The statement while it is read.
struct io_control {
    input_output_description *description;
    il_statement_kind kind;
    io_set io_allowed;
    io_set io_seen;            // those in force
    io_set io_written;         // also those that were refused
    expr_node *last_specifier; // of the description's list
    bool failed;               // something was reported
    bool skipped;              // text was, in which any specifier may have been
};

inline bool is_seen(const io_control &c, io_specifier specifier) {
    return (c.io_seen & io_bit(specifier)) != 0;
}

// For a statement of one of the kinds from stmk_open to stmk_rewind.
io_control begin_io_control(input_output_description *description, il_statement_kind kind);

// Reads the unit: "*" in READ and WRITE, or an expression. False after an error. With `quiet` the description
// is left alone.
bool parse_unit(const io_control &c, bool quiet);

// Reads a format: a label, "*" or an expression, at a token that was read with lex_label. The same result.
bool parse_format(input_output_description *description, bool quiet);

// What was read as an external unit may have been meant for something else.
void give_up_unit(input_output_description *description);

// Reads the list with its parentheses, from the "(" on, and the token behind it as one that an item begins
// with. False if something was reported that leaves the rest of the statement without a meaning; `failed` is
// set after any error.
bool parse_io_control(io_control &c);

} // namespace zf90
