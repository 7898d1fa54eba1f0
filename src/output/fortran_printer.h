// Prints the intermediate language back as Fortran, to show what the front end has understood. The text is
// for people: it keeps to the columns of fixed form, but names of other modules have their module's name
// before them, and some statements print as calls of procedures that do not exist.
#pragma once

#include "il/records.h"

namespace zf90 {

// Where all of the text goes, in the manner of printf.
using print_function = int (*)(const char *format, ...);

extern print_function print_hook;

// Installs a function; null installs the default, which prints to `dump_stream` (output/il_dump.h).
void set_print_hook(print_function hook);

// Where a line of the source stands: the file, or null, and the number of the line in it.
struct source_place {
    const source_file *file;
    std::uint32_t line;
};

// Finds the place of a sequence number in the tree of the files that were read.
source_place find_source_place(const il_header *header, std::uint32_t seq);

// The outermost unit that is being printed, or null: of its own types the module is not named.
extern const object *printed_unit;

// Prints a whole compilation.
void regenerate_fortran(il_header *header);

void print_program_unit(object *unit);

// Prints a statement; with `recursive` those within it too, and a comment where the source line changes, for
// which positions are looked up in `header`.
void print_statement(il_header *header, const statement *s, bool recursive);

void print_expression(const expr_node *e);
void print_constant(const constant *c);
void print_type(const type *t);

// Text whose angle brackets are escaped if `dump_html` is set, and text in angle brackets.
void print_escaped(const char *text);
void print_bracketed(const char *text);

// The operator of an operation: "+", ".and.", "reshape"; empty for a conversion.
const char *operator_text(operation_kind op);

// The text of a real constant's value, with all its digits and a point or an exponent; of the printer's own
// buffer, until the next call.
const char *real_text(double value, unsigned digits);

} // namespace zf90
