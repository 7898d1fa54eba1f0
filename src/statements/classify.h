// What kind of statement the next text is. No word is reserved, and in fixed form no word is delimited, so
// this is decided by reading ahead in peek mode, before anything is parsed. The statement loop calls it for
// each statement; a handler calls it again for a statement within its own (logical IF, WHERE, a named
// construct).
#pragma once

#include "source/tokens.h"
#include "statements/kinds.h"

namespace zf90 {

extern statement_kind curr_stmt_kind;
extern char *stmt_start;  // the first character of the statement, behind its label
extern char *stmt_resume; // where its handler begins

// Of stmtk_bad: it is a type declaration, of which the parentheses of the type are not closed.
extern bool is_bad_declaration;

// Classifies the statement at `line_cursor`: sets `curr_stmt_kind`, `stmt_pos`, `stmt_start` and
// `stmt_resume`, and leaves the cursor at `stmt_resume`. A statement without a handler of its own to report
// what is wrong with it is reported here and has the kind stmtk_bad.
void classify_statement();

// The name of an INCLUDE line, which must be in quotes and end with nothing but a comment on its own line:
// the text behind the word INCLUDE is read as it stands, and nothing is fetched. Doubled quotes are not
// joined.
struct include_name {
    char *begin = nullptr; // null: not the text of an INCLUDE line
    char *end = nullptr;   // the closing quote
    char *rest = nullptr;  // the line's end or its comment
};

include_name find_include_name(char *text);

// Calls the handler of `curr_stmt_kind` and returns its result.
bool dispatch_statement();

} // namespace zf90
