// The machine of the expression parser, and what it knows itself: operators and their levels, parentheses,
// literals.
#include "expressions/parser_stack.h"

#include "constants/arithmetic.h"
#include "declarations/scopes.h"
#include "declarations/symbols.h"
#include "expressions/check.h"
#include "il/constants.h"
#include "il/entries.h"

#include <algorithm>
#include <vector>

namespace zf90 {

namespace {

std::vector<pending> pending_stack; // keeps its memory from statement to statement
std::size_t result_index;           // of the innermost pending_result

// Where a construct was not closed, nothing is known of the text behind it: it is not reported on, and the
// expression is in error as a whole.
bool place_is_lost() { return !pending_stack.empty() && pending_stack[result_index].failed; }

void lose_place() {
    if (!pending_stack.empty()) {
        pending_stack[result_index].failed = true;
    }
}

// ---- looking ahead

// What stands directly within parentheses, by the offset in the statement of what follows the "(".
struct group_contents {
    bool has_comma : 1;
    bool has_equals : 1;
};

group_contents contents_of_group[stmt_buffer_size];
std::ptrdiff_t scan_begin; // of the part of the statement for which that is known
std::ptrdiff_t scan_end;

void forget_groups() { scan_begin = scan_end = 0; }

// Looks at all parentheses from the current "(" to the one that closes it.
void scan_groups() {
    static std::vector<group_contents *> open;
    static group_contents constructor; // stands for all of them
    const saved_place here;
    scan_begin = line_cursor - stmt_buffer;
    open.clear();
    do {
        switch (curr_token) {
        case tok_lparen:
            open.push_back(&contents_of_group[line_cursor - stmt_buffer]);
            *open.back() = {};
            break;
        case tok_array_open: open.push_back(&constructor); break;
        case tok_rparen:
        case tok_array_close: open.pop_back(); break;
        case tok_eos: open.clear(); break;
        case tok_comma: open.back()->has_comma = true; break;
        case tok_assign: open.back()->has_equals = true; break;
        default: break;
        }
        scan_end = line_cursor - stmt_buffer;
        if (!open.empty()) {
            next_token(lex_peek);
        }
    } while (!open.empty());
}

// ---- operators

struct operator_row {
    token_kind token;
    std::uint8_t binary_level; // 0: not binary
    std::uint8_t prefix_level; // of the operand behind it; 0: not a prefix
};

constexpr operator_row operator_rows[] = {
    {tok_power, 11, 0}, {tok_star, 10, 0}, {tok_slash, 10, 0},      {tok_plus, 9, 9}, {tok_minus, 9, 9},
    {tok_concat, 8, 0}, {tok_lt, 7, 0},    {tok_le, 7, 0},          {tok_eq, 7, 0},   {tok_ne, 7, 0},
    {tok_gt, 7, 0},     {tok_ge, 7, 0},    {tok_not, 0, 6},         {tok_and, 5, 0},  {tok_or, 4, 0},
    {tok_eqv, 3, 0},    {tok_neqv, 3, 0},  {tok_defined_op, 2, 12},
};

constexpr std::uint8_t level_power = 11; // the only one that groups to the right

// The rows by token.
constexpr auto operator_levels = [] {
    std::array<operator_row, token_count> table{};
    for (const operator_row &row : operator_rows) {
        table[row.token] = row;
    }
    return table;
}();

// The meaning of the current operator token, null if it has none.
symbol *operator_symbol() { return lookup_resolved(curr_name.atom->first_symbol, curr_scope_depth); }

expr_node *make_operator_call(symbol *s, expr_node *operands) {
    if (s->name == error_atom) {
        return new_error_node();
    }
    expr_node *node = new_expr_node(enk_symbol_call);
    node->symbol = s;
    node->operands = operands;
    return node;
}

// The call of the operator on top.
expr_node *finish_operation(expr_node *operands, source_pos position) {
    const pending operation = pop_pending();
    expr_node *node;
    if (operation.symbol) {
        node = make_operator_call(operation.symbol, operands);
    } else {
        error_at(msg_operator_unknown, operation.position);
        node = new_error_node();
    }
    node->source_pos = position;
    return node;
}

expr_node *start_prefix_operator() {
    const std::uint8_t level = operator_levels[curr_token].prefix_level;
    if (top_pending().level >= level) {
        error_at(msg_invalid_consecutive_operators, curr_token_pos);
    }
    pending &operation = push_pending(pending_prefix, curr_token_pos);
    operation.level = level;
    operation.symbol = operator_symbol();
    next_token(0);
    return nullptr;
}

// Whether the current token is an operator that takes `left` as its operand.
bool start_binary_operator(expr_node *left) {
    const std::uint8_t level = operator_levels[curr_token].binary_level;
    const std::uint8_t least = top_pending().level;
    if (level == 0 || level < least || (level == least && level != level_power)) {
        return false;
    }
    if (left->node_kind != enk_error) {
        left->intent_out = false;
        left->intent_in = true;
    }
    pending &operation = push_pending(pending_binary, curr_token_pos);
    operation.level = level;
    operation.symbol = operator_symbol();
    operation.node = left;
    next_token(0);
    return true;
}

expr_node *continue_binary(expr_node *right) {
    expr_node *left = top_pending().node;
    left->next = right;
    return finish_operation(left, left->source_pos);
}

// ---- parentheses

expr_node *start_group() {
    const source_pos position = curr_token_pos;
    if (group_has(tok_comma)) {
        // There are no lists in parentheses: only a complex constant has a comma.
        struct constant *value = parse_complex_constant();
        if (!value) {
            return new_error_at(position);
        }
        expr_node *node = new_node(enk_constant, position);
        node->constant = value;
        node->intent_in = true;
        return node;
    }
    next_token(lex_signed);
    push_pending(pending_group, position);
    ++stop_set[tok_rparen];
    return nullptr;
}

expr_node *continue_group(expr_node *value) {
    pop_pending();
    value->allow_reordering = false;
    if (!close_with(tok_rparen, msg_expected_rparen)) {
        mark_error_node(value); // the rest of the expression is unknown
    }
    --stop_set[tok_rparen];
    return value;
}

// ---- literals

expr_node *start_literal() {
    expr_node *node = new_node(enk_constant, curr_token_pos);
    node->constant = store_fold_value(curr_constant);
    node->intent_in = true;
    const bool is_signed = token_text[0] == '-' && has_value(curr_constant);
    char *const start = token_start;
    next_token(0);
    if (is_signed && curr_token == tok_power) {
        // The sign is not part of the operand of "**": -a**b is -(a**b), for literals too.
        line_cursor = start;
        next_token(0);
        return start_prefix_operator();
    }
    return node;
}

expr_node *start_character_literal() {
    expr_node *node = start_literal();
    return curr_token == tok_lparen ? start_substring(node, false) : node;
}

// A part of a complex constant: a number with or without a sign. False if it is anything else.
bool read_complex_part(fold_value &part) {
    bool negative = false;
    if (curr_token == tok_plus || curr_token == tok_minus) {
        negative = curr_token == tok_minus;
        next_token(0);
    }
    if (curr_token != tok_integer && curr_token != tok_real) {
        report_parse_error(msg_expected_integer_or_real_constant);
        return false;
    }
    part = curr_constant;
    next_token(0);
    if (negative && has_value(part)) {
        part.integer = -part.integer; // it was read without its sign, so it is not the least integer
        part.real = -part.real;
    }
    return true;
}

// ---- the machine

expr_node *start_operand() { return top_pending().part == part_element ? start_element() : start_primary(); }

// Gives a value to the construct on top.
expr_node *continue_construct(expr_node *value) {
    switch (top_pending().kind) {
    case pending_prefix: return finish_operation(value, top_pending().position);
    case pending_binary: return continue_binary(value);
    case pending_group: return continue_group(value);
    case pending_list: return continue_list(value);
    case pending_subscripts: return continue_subscripts(value);
    case pending_substring: return continue_substring(value);
    case pending_constructor: return continue_constructor(value);
    case pending_implied_do: return continue_implied_do(value);
    case pending_result: break;
    }
    return value;
}

// Reads what `start` begins, and the operators behind it that bind its value at that level.
template <class Start> expr_node *parse(std::uint8_t level, Start start) {
    const std::size_t outer = result_index;
    const source_pos position = curr_token_pos;
    result_index = pending_stack.size();
    if (result_index == 0) {
        forget_groups();
    }
    push_pending(pending_result, position).level = level;
    expr_node *value = start();
    for (;;) {
        while (!value) {
            value = start_operand();
        }
        if (start_binary_operator(value)) {
            value = nullptr;
        } else if (top_pending().kind == pending_result) {
            break;
        } else {
            value = continue_construct(value);
        }
    }
    if (pop_pending().failed) {
        mark_error_node(value);
    }
    result_index = outer;
    error_pos = position;
    return value;
}

expr_node *parse_level(std::uint8_t level) { return parse(level, start_operand); }

} // namespace

pending &push_pending(pending_kind kind, source_pos position) {
    pending entry{};
    entry.kind = kind;
    entry.position = position;
    pending_stack.push_back(entry);
    return pending_stack.back();
}

pending pop_pending() {
    const pending entry = pending_stack.back();
    pending_stack.pop_back();
    return entry;
}

pending &top_pending() { return pending_stack.back(); }

bool controls_implied_do(const symbol *s) {
    return std::any_of(pending_stack.begin(), pending_stack.end(), [s](const pending &entry) {
        return entry.kind == pending_implied_do && entry.symbol == s;
    });
}

bool group_has(token_kind token) {
    // In the depths each search of its own would pass over the same text once more.
    constexpr std::size_t deep = 30;
    if (pending_stack.size() < deep) {
        return lookahead_find_at_depth(token, false);
    }
    const std::ptrdiff_t offset = line_cursor - stmt_buffer;
    if (offset < scan_begin || offset >= scan_end) {
        scan_groups();
    }
    const group_contents contents = contents_of_group[offset];
    return token == tok_comma ? contents.has_comma : contents.has_equals;
}

expr_node *new_node(expr_node_kind kind, source_pos position) {
    expr_node *node = new_expr_node(kind);
    node->source_pos = position;
    return node;
}

expr_node *new_error_at(source_pos position) {
    expr_node *node = new_error_node();
    node->source_pos = position;
    return node;
}

expr_node *start_primary() {
    switch (curr_token) {
    case tok_name: return start_name();
    case tok_integer:
    case tok_real:
    case tok_logical: return start_literal();
    case tok_character: return start_character_literal();
    case tok_lparen: return start_group();
    case tok_array_open: return start_constructor();
    case tok_plus:
    case tok_minus:
    case tok_not:
    case tok_defined_op: return start_prefix_operator();
    default: break;
    }
    expr_node *node = new_error_at(curr_token_pos);
    // A constant in error has been told, and so will be an operator without a meaning, such as .TRU. is.
    const pending &outer = top_pending();
    const bool is_operand = outer.kind == pending_prefix || outer.kind == pending_binary;
    if (curr_token == tok_boz ? !has_value(curr_constant) : is_operand && !outer.symbol) {
        recover_tokens();
    } else {
        parse_error(curr_token == tok_boz ? msg_boz_constant_not_in_data_statement : msg_expected_expression);
    }
    return node;
}

void append_item(pending &list, expr_node *item) {
    (list.last_item ? list.last_item->next : list.first_item) = item;
    list.last_item = item;
}

void report_parse_error(error_code code) {
    error_pos = curr_token_pos;
    if (!place_is_lost()) {
        report_syntax_error(code);
    }
}

void parse_error(error_code code) {
    report_parse_error(code);
    recover_tokens();
}

bool skip_behind(token_kind token) {
    if (curr_token != token && !skip_to_closing(token)) {
        recover_tokens();
        lose_place();
        return false;
    }
    next_token(0);
    return true;
}

bool close_with(token_kind token, error_code code) {
    const bool good = curr_token == token;
    if (!good) {
        report_parse_error(code);
    }
    return skip_behind(token) && good;
}

io_specifier specifier_of(token_kind token) {
    static constexpr io_specifier selectors[] = {
        iosk_access, iosk_action,     iosk_advance,  iosk_blank,   iosk_delim,     iosk_direct,
        iosk_end,    iosk_eor,        iosk_err,      iosk_exist,   iosk_file,      iosk_fmt,
        iosk_form,   iosk_formatted,  iosk_iolength, iosk_iostat,  iosk_fe_kind,   iosk_fe_len,
        iosk_name,   iosk_named,      iosk_nextrec,  iosk_nml,     iosk_number,    iosk_opened,
        iosk_pad,    iosk_position,   iosk_read,     iosk_write,   iosk_readwrite, iosk_rec,
        iosk_recl,   iosk_sequential, iosk_size,     iosk_fe_stat, iosk_status,    iosk_unformatted,
        iosk_unit,
    };
    static_assert(std::size(selectors) == tok_spec_unit - tok_spec_access + 1);
    return token >= tok_spec_access && token <= tok_spec_unit ? selectors[token - tok_spec_access]
                                                              : iosk_last;
}

void read_keyword(pending &item) {
    const io_specifier selector = specifier_of(curr_token);
    item.is_specifier = false;
    item.keyword = nullptr;
    if (curr_token == tok_name_eq) {
        item.keyword = curr_name.atom;
    } else if (selector != iosk_last) {
        item.is_specifier = true;
        item.selector = selector;
    } else {
        return;
    }
    next_token(lex_signed);
}

void give_keyword(const pending &item, expr_node *node) {
    if (item.is_specifier) {
        node->is_specifier = true;
        node->selector = item.selector;
    } else if (item.keyword) {
        node->keyword = item.keyword;
    }
}

bool parse_expression(expr_node *&node) {
    node = parse_level(level_any);
    return node->node_kind != enk_error;
}

bool parse_designator(expr_node *&node) {
    node = parse(level_none, start_name);
    return node->node_kind != enk_error;
}

bool parse_actual_item(expr_node *&node) {
    pending item{};
    read_keyword(item);
    node = parse_level(level_any);
    give_keyword(item, node);
    return node->node_kind != enk_error;
}

expr_node *parse_actual_list(symbol *s, source_pos position) {
    return parse(level_none, [=] { return start_list(s, position, false); });
}

bool parse_implied_do(element_parser parse_element, expr_node *&node, bool data_context) {
    node = parse(level_none, [=] { return start_implied_do(parse_element, data_context); });
    return node->node_kind != enk_error;
}

struct constant *parse_complex_constant() {
    const source_pos position = curr_token_pos;
    const stop_at stops{tok_comma, tok_rparen};
    fold_value first;
    fold_value second;
    next_token(lex_signed);
    bool ok = read_complex_part(first);
    if (ok && expect_token(tok_comma, msg_expected_comma)) {
        next_token(lex_signed);
        ok = read_complex_part(second);
    } else {
        ok = false;
    }
    // Behind what is no number there may be anything, such as the rest of a list.
    if (!(ok ? close_with(tok_rparen, msg_expected_rparen) : skip_behind(tok_rparen)) || !ok ||
        !has_value(first) || !has_value(second)) {
        return nullptr;
    }
    type *const part_type = first.type->type_code == tk_integer && second.type->type_code == tk_integer
                                ? default_real()
                            : first.type->type_code == tk_integer   ? second.type
                            : second.type->type_code == tk_integer  ? first.type
                            : first.type->kind >= second.type->kind ? first.type
                                                                    : second.type;
    convert_value(first, part_type);
    convert_value(second, part_type);
    fold_value value = new_fold_value(ck_value);
    value.source_pos = position;
    value.type = complex_type(part_type->kind);
    value.real = first.real;
    value.imaginary = second.real;
    return store_fold_value(value);
}

} // namespace zf90
