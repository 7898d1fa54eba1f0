// The handlers of READ, WRITE, PRINT, OPEN, CLOSE, INQUIRE, BACKSPACE, ENDFILE and REWIND. They read the
// control list and the items; what needs types is checked with the statements of the whole compilation.
#include "declarations/namelist.h"
#include "expressions/check.h"
#include "expressions/parser.h"
#include "il/entries.h"
#include "source/token_helpers.h"
#include "statements/constructs.h"
#include "statements/handlers.h"
#include "statements/io_specifiers.h"
#include "statements/labels.h"
#include "statements/loop.h"

namespace zf90 {

namespace {

struct io_statement {
    statement *made;
    io_control control;
};

io_statement begin_io(il_statement_kind kind) {
    check_reachable();
    statement *s = add_statement(kind);
    s->io_descr = new_input_output_description();
    return {s, begin_io_control(s->io_descr, kind)};
}

// With text behind the statement: whether it closes a bracket that the statement has lost.
bool closes_lost_bracket() {
    if (curr_token == tok_eos) {
        return false;
    }
    const saved_place here;
    return skip_to_closing(tok_rparen);
}

// Brackets don't fit: what has been read may have been meant for something else.
void give_up_parts(const statement *s) {
    input_output_description *d = s->io_descr;
    give_up_unit(d);
    if (d->format_kind == iof_format_label) {
        excuse_label(d->format.label->symbol_link);
    } else if (d->format_kind == iof_char_expr) {
        mark_error_node(d->format.expr);
    }
    for (expr_node *value = d->specifier_list; value; value = value->next) {
        if (value->node_kind != enk_stmt_label_value && value->node_kind != enk_empty) {
            mark_error_node(value);
        }
    }
    for (expr_node *item = s->expr; item; item = item->next) {
        mark_error_node(item);
    }
}

// The items of input and output; that those of input are variables is for the check to say.
bool parse_items(statement *s) {
    char *const begin = token_start;
    const bool good = parse_element_list(parse_expression, s->expr, false);
    if (!good) {
        line_cursor = begin;
        next_token(lex_peek);
        if (closes_lost_bracket()) {
            give_up_parts(s);
        }
        skip_to_eos();
    } else if (closes_lost_bracket()) {
        give_up_parts(s);
    } else if (curr_token != tok_eos) {
        expr_node *last = s->expr;
        while (last->next) {
            last = last->next;
        }
        excuse_last_name(last);
    }
    return good;
}

// Behind the word: a format, and items behind a comma.
bool parse_short_form(const io_statement &io) {
    input_output_description *d = io.made->io_descr;
    d->unit_kind = iou_default;
    if (at_namelist_group()) {
        return parse_namelist_spec(d, false);
    }
    bool good;
    {
        const stop_at stops{tok_comma};
        good = parse_format(d, false);
    }
    if (curr_token == tok_comma) {
        next_token(lex_signed);
        good = parse_items(io.made) && good;
    }
    return good;
}

// A control list, and items behind it.
bool parse_long_form(io_statement &io) {
    bool good = parse_io_control(io.control);
    if (io.control.failed && curr_token == tok_comma) {
        return false; // the list goes on
    }
    if (good && curr_token != tok_eos && io.made->io_descr->format_kind != iof_namelist_directed) {
        good = parse_items(io.made);
    }
    return good && !io.control.failed;
}

// Behind the last part of a statement that has no items.
bool end_without_items(const statement *s, bool good) {
    if (good && curr_token != tok_eos) {
        give_up_parts(s);
    }
    return good;
}

bool parse_without_items(io_statement &io) {
    return end_without_items(io.made, parse_io_control(io.control) && !io.control.failed);
}

// A unit alone, or a control list.
bool parse_positioning(il_statement_kind kind) {
    io_statement io = begin_io(kind);
    if (next_token(lex_signed) == tok_lparen) {
        return parse_without_items(io);
    }
    return end_without_items(io.made, parse_unit(io.control, false));
}

} // namespace

bool stmt_read() {
    io_statement io = begin_io(stmk_read);
    return next_token(lex_label | lex_signed) == tok_lparen ? parse_long_form(io) : parse_short_form(io);
}

bool stmt_write() {
    io_statement io = begin_io(stmk_write);
    next_token(0);
    return parse_long_form(io);
}

bool stmt_print() {
    io_statement io = begin_io(stmk_write);
    next_token(lex_label | lex_signed);
    return parse_short_form(io);
}

bool stmt_open() {
    io_statement io = begin_io(stmk_open);
    next_token(0);
    return parse_without_items(io);
}

bool stmt_close() {
    io_statement io = begin_io(stmk_close);
    next_token(0);
    return parse_without_items(io);
}

bool stmt_inquire() {
    io_statement io = begin_io(stmk_inquire);
    next_token(0);
    const bool good = parse_io_control(io.control);
    const bool needs_items = !io.control.failed || curr_token != tok_eos; // one message is enough
    if (good && is_seen(io.control, iosk_iolength) && needs_items) {
        return parse_items(io.made) && !io.control.failed;
    }
    return end_without_items(io.made, good && !io.control.failed);
}

bool stmt_backspace() { return parse_positioning(stmk_backspace); }

bool stmt_endfile() { return parse_positioning(stmk_endfile); }

bool stmt_rewind() { return parse_positioning(stmk_rewind); }

} // namespace zf90
