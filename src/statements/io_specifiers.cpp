// The control list of input and output statements, as it is read: which specifiers are there, and which of
// them exclude each other. What depends on types is checked later (statements/io_check.h).
#include "statements/io_specifiers.h"

#include "declarations/namelist.h"
#include "expressions/check.h"
#include "expressions/parser.h"
#include "il/entries.h"
#include "il/types.h"
#include "source/token_helpers.h"
#include "statements/labels.h"

namespace zf90 {

namespace {

template <class... Specifiers> constexpr io_set set_of(Specifiers... list) { return (io_bit(list) | ...); }

// ---- what each statement allows

constexpr io_set io_of_position = set_of(iosk_unit, iosk_err, iosk_iostat);
constexpr io_set io_of_close = io_of_position | io_bit(iosk_status);
constexpr io_set io_of_write = io_of_position | set_of(iosk_fmt, iosk_nml, iosk_rec, iosk_advance);
constexpr io_set io_of_read = io_of_write | set_of(iosk_end, iosk_eor, iosk_size);
constexpr io_set io_of_open =
    io_of_close | set_of(iosk_access, iosk_form, iosk_recl, iosk_blank, iosk_position, iosk_action,
                         iosk_delim, iosk_pad, iosk_file);
constexpr io_set io_of_inquire = (io_of_open & ~io_bit(iosk_status)) |
                                 set_of(iosk_exist, iosk_opened, iosk_number, iosk_named, iosk_name,
                                        iosk_sequential, iosk_direct, iosk_formatted, iosk_unformatted,
                                        iosk_nextrec, iosk_read, iosk_write, iosk_readwrite, iosk_iolength);

io_set allowed_specifiers(il_statement_kind kind) {
    switch (kind) {
    case stmk_open: return io_of_open;
    case stmk_close: return io_of_close;
    case stmk_read: return io_of_read;
    case stmk_write: return io_of_write;
    case stmk_inquire: return io_of_inquire;
    default: return io_of_position;
    }
}

// ---- what excludes what

// The specifiers behind which this one is a conflict.
io_set excluded_by(const io_control &c, io_specifier specifier) {
    switch (specifier) {
    case iosk_advance:
    case iosk_end: return io_bit(iosk_rec);
    case iosk_file: return c.kind == stmk_inquire ? io_bit(iosk_unit) : 0;
    case iosk_fmt: return io_bit(iosk_nml);
    case iosk_iolength: return ~io_set{0};
    case iosk_nml: return set_of(iosk_fmt, iosk_rec);
    case iosk_rec: return set_of(iosk_nml, iosk_end, iosk_advance);
    case iosk_unit: return c.kind == stmk_inquire ? io_bit(iosk_file) : 0;
    default: return 0;
    }
}

// What is wrong with a specifier at its place, no error if nothing is.
error_code fault_of(const io_control &c, io_specifier specifier) {
    if ((c.io_allowed & io_bit(specifier)) == 0) {
        return msg_invalid_i_o_keyword_for_this_statement;
    }
    if (is_seen(c, specifier)) {
        return msg_specifier_is_repeated;
    }
    const bool list_directed_record =
        specifier == iosk_rec && c.description->format_kind == iof_list_directed;
    if (is_seen(c, iosk_iolength) || (c.io_seen & excluded_by(c, specifier)) != 0 || list_directed_record) {
        return msg_i_o_specifier_conflicts_with_previous_specification;
    }
    return error_code{};
}

// ---- the values

constexpr std::uint32_t item_mode = lex_specifier | lex_signed; // where a specifier may begin

// The label of END=, EOR= or ERR=, null if there is none.
expr_node *parse_label_value() {
    next_token(lex_label);
    const source_pos position = curr_token_pos;
    symbol *s = read_label_reference(label_use_branch);
    if (!s) {
        return nullptr;
    }
    expr_node *node = new_expr_node(enk_stmt_label_value);
    node->source_pos = position;
    node->type = stmt_label_type();
    node->stmt_label_value = entity_as<label>(s);
    return node;
}

expr_node *parse_value(io_specifier specifier) {
    if (specifier == iosk_end || specifier == iosk_eor || specifier == iosk_err) {
        return parse_label_value();
    }
    next_token(lex_signed);
    expr_node *node;
    if (!parse_expression(node)) {
        return nullptr;
    }
    if (curr_token != tok_comma && curr_token != tok_rparen) {
        mark_error_node(node); // who knows what was meant
    }
    return node;
}

void append_specifier(io_control &c, io_specifier specifier, expr_node *node) {
    node->is_specifier = true;
    node->selector = specifier;
    (c.last_specifier ? c.last_specifier->next : c.description->specifier_list) = node;
    c.last_specifier = node;
}

// The name of a namelist group. Where it stands is kept among the specifiers until the check, which knows
// whether it may stand there.
bool parse_group(io_control &c, bool quiet) {
    const source_pos position = curr_token_pos;
    const bool good = parse_namelist_spec(c.description, quiet);
    if (good && !quiet) {
        expr_node *place = new_expr_node(enk_empty);
        place->source_pos = position;
        append_specifier(c, iosk_nml, place);
    }
    return good;
}

// Reads what stands behind the "=" of a specifier, and keeps it unless `quiet`. False after an error.
bool parse_specifier_value(io_control &c, io_specifier specifier, bool quiet) {
    switch (specifier) {
    case iosk_unit: next_token(lex_signed); return parse_unit(c, quiet);
    case iosk_fmt: next_token(lex_label | lex_signed); return parse_format(c.description, quiet);
    case iosk_nml: next_token(0); return parse_group(c, quiet);
    default: break;
    }
    expr_node *node = parse_value(specifier);
    if (node && !quiet) {
        append_specifier(c, specifier, node);
    }
    return node != nullptr;
}

void refuse(io_control &c, error_code code, source_pos position) {
    error_at(code, position);
    c.failed = true;
}

// ---- the items

// At a word with an "=" that is no specifier: it was read as a name, and the "=" with it.
bool at_unknown_keyword() {
    if (curr_token != tok_name) {
        return false;
    }
    const saved_place here;
    lex_rewind_token();
    return next_token(lex_peek) == tok_name && next_token(lex_peek) == tok_assign;
}

bool at_keyword() { return specifier_of(curr_token) != iosk_last || at_unknown_keyword(); }

// Where a specifier is repeated, the first one may have been meant for something else, such as `REC1` for
// `REC=1`.
void give_up_item(io_control &c, io_specifier specifier) {
    if (specifier == iosk_unit) {
        give_up_unit(c.description);
    } else if (specifier == iosk_fmt && c.description->format_kind == iof_char_expr) {
        mark_error_node(c.description->format.expr);
    }
}

// Reads one item with its keyword. False if there is none, or an unknown one.
bool parse_keyword_item(io_control &c) {
    const io_specifier specifier = specifier_of(curr_token);
    if (specifier == iosk_last || specifier == iosk_fe_kind || specifier == iosk_fe_len) {
        error_pos = curr_token_pos;
        if (!c.failed || at_unknown_keyword()) {
            report_syntax_error(msg_expected_i_o_keyword);
        }
        recover_tokens();
        c.failed = true;
        return false;
    }
    const source_pos position = curr_token_pos;
    const error_code fault = fault_of(c, specifier);
    const bool refused = fault != error_code{};
    if (refused) {
        refuse(c, fault, position);
        give_up_item(c, specifier);
    } else {
        c.io_seen |= io_bit(specifier);
    }
    c.io_written |= c.io_allowed & io_bit(specifier);
    if (!parse_specifier_value(c, specifier, refused)) {
        c.failed = true;
    }
    if (!refused && specifier == iosk_fmt && is_seen(c, iosk_rec) &&
        c.description->format_kind == iof_list_directed) {
        refuse(c, msg_i_o_specifier_conflicts_with_previous_specification, position);
    }
    return true;
}

// Behind an item without a keyword: whether another item follows, which is read then.
bool go_on_to_item(io_control &c, std::uint32_t mode) {
    if (curr_token == tok_rparen) {
        return false;
    }
    if (c.failed && curr_token != tok_comma) { // that was the end of what can be understood
        recover_tokens();
    }
    c.skipped = c.skipped || curr_token != tok_comma;
    if (c.failed ? accept_optional(tok_comma, mode) : accept_token(tok_comma, msg_expected_comma, mode)) {
        c.failed = c.failed || c.skipped;
        return true;
    }
    c.failed = true;
    return false;
}

void note_positional(io_control &c, io_specifier specifier) {
    c.io_seen |= io_bit(specifier);
    c.io_written |= io_bit(specifier);
}

// The items that go without a keyword. True if others may follow, from the current token on.
bool parse_positional_items(io_control &c) {
    if (at_keyword()) {
        return true;
    }
    note_positional(c, iosk_unit);
    if (!parse_unit(c, false)) {
        c.failed = true;
    }
    const bool takes_format = (c.io_allowed & io_bit(iosk_fmt)) != 0;
    if (!go_on_to_item(c, takes_format ? item_mode | lex_label : item_mode)) {
        if (c.failed) {
            give_up_unit(c.description);
        }
        return false;
    }
    if (c.skipped) {
        give_up_unit(c.description);
    }
    if (!takes_format || at_keyword()) {
        return true;
    }
    const bool is_group = at_namelist_group();
    note_positional(c, is_group ? iosk_nml : iosk_fmt);
    if (!(is_group ? parse_group(c, false) : parse_format(c.description, false))) {
        c.failed = true;
        c.io_seen &= ~io_bit(iosk_fmt); // one with its keyword may follow
    }
    return go_on_to_item(c, item_mode);
}

// Items with keywords, up to the end of the list. True if all keywords were known.
bool parse_keyword_items(io_control &c) {
    bool all_known = true;
    for (;;) {
        all_known = parse_keyword_item(c) && all_known;
        if (curr_token != tok_comma) {
            return all_known;
        }
        next_token(item_mode);
    }
}

// What is missing when all has been read. A specifier that was refused is there as far as the others go.
void check_missing(io_control &c) {
    const auto is_written = [&c](io_specifier specifier) { return (c.io_written & io_bit(specifier)) != 0; };
    const bool file_will_do = c.kind == stmk_inquire && (is_written(iosk_file) || is_written(iosk_iolength));
    if (!is_written(iosk_unit) && !file_will_do) {
        refuse(c, msg_missing_unit_specifier, curr_token_pos);
        c.description->unit_kind = iou_error;
        c.description->unit_expr = new_error_node();
    }
    if (is_written(iosk_eor) && !is_written(iosk_advance)) {
        refuse(c, msg_missing_advance_specifier, curr_token_pos);
    }
    if (is_written(iosk_advance)) {
        switch (c.description->format_kind) {
        case iof_none:
        case iof_list_directed:
        case iof_namelist_directed:
            refuse(c, msg_advance_can_be_specified_for_explicit_format_only, curr_token_pos);
            break;
        default: break;
        }
    }
}

} // namespace

io_control begin_io_control(input_output_description *description, il_statement_kind kind) {
    io_control c{};
    c.description = description;
    c.kind = kind;
    c.io_allowed = allowed_specifiers(kind);
    return c;
}

bool parse_unit(const io_control &c, bool quiet) {
    input_output_description *d = c.description;
    if (curr_token == tok_star && (c.kind == stmk_read || c.kind == stmk_write)) {
        if (!quiet) {
            d->unit_kind = iou_default;
        }
        next_token(0);
        return true;
    }
    expr_node *unit;
    const bool good = parse_expression(unit);
    if (!quiet) {
        d->unit_kind = good ? iou_external : iou_error;
        d->unit_expr = unit;
    }
    return good;
}

bool parse_format(input_output_description *d, bool quiet) {
    format_kind kind = iof_error;
    label *format_label = nullptr;
    expr_node *expr = nullptr;
    if (curr_token == tok_label && *line_cursor == '_') { // the kind of a text
        lex_rewind_token();
        next_token(lex_signed);
    }
    if (curr_token == tok_label) {
        kind = iof_format_label;
        format_label = entity_as<label>(read_label_reference(label_use_format));
    } else if (curr_token == tok_star) {
        kind = iof_list_directed;
        next_token(0);
    } else if (parse_expression(expr)) {
        kind = iof_char_expr; // or iof_assigned_var, when the types are known
        if (curr_token != tok_comma && curr_token != tok_rparen && curr_token != tok_eos) {
            mark_error_node(expr); // who knows what was meant
        }
    }
    if (!quiet) {
        d->format_kind = kind;
        if (kind == iof_format_label) {
            d->format.label = format_label;
        } else if (kind == iof_char_expr) {
            d->format.expr = expr;
        }
    }
    return kind != iof_error;
}

void give_up_unit(input_output_description *description) {
    if (description->unit_kind == iou_external) {
        description->unit_kind = iou_error;
    }
}

bool parse_io_control(io_control &c) {
    if (curr_token != tok_lparen) {
        error_pos = curr_token_pos;
        syntax_error(msg_expected_lparen);
        c.failed = true;
        return false;
    }
    next_token(item_mode);
    {
        const stop_at stops{tok_comma, tok_rparen};
        const bool all_known = !parse_positional_items(c) || parse_keyword_items(c);
        if (all_known && !c.skipped && (curr_token == tok_rparen || !c.failed)) {
            check_missing(c);
        }
    }
    if (c.failed && curr_token != tok_rparen) {
        return false; // the missing parenthesis is a consequence
    }
    if (!accept_closing(tok_rparen, msg_expected_rparen, lex_signed)) {
        c.failed = true;
        return false;
    }
    return true;
}

} // namespace zf90
