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

// Classifies the statement at `line_cursor`: sets `curr_stmt_kind`, `stmt_pos`, `stmt_start` and
// `stmt_resume`, and leaves the cursor at `stmt_resume`. A statement without a handler of its own to report
// what is wrong with it is reported here and has the kind stmtk_bad.
void classify_statement();

// Calls the handler of `curr_stmt_kind` and returns its result.
bool dispatch_statement();

} // namespace zf90
