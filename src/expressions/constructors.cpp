// Array constructors and implied DOs, and the lists of elements that input, output and DATA are made of.
#include "declarations/implicit.h"
#include "declarations/scopes.h"
#include "declarations/symbols.h"
#include "expressions/check.h"
#include "expressions/parser_stack.h"
#include "il/entries.h"
#include "il/types.h"
#include "statements/constructs.h"

namespace zf90 {

namespace {

// How many array constructors are open: an implied DO within one has a variable of its own.
int ac_nesting_depth;

bool at_implied_do() { return curr_token == tok_lparen && group_has(tok_assign); }

// ---- the variable of an implied DO

enum class control_search : std::uint8_t { found, missing, no_name };

// Looks ahead from "(" for the name and "=" that control it. The name becomes `curr_name`; without one, its
// position is that of what stands in its place.
control_search find_control() {
    name_locator name{};
    control_search result = control_search::missing;
    {
        const saved_place here;
        char *name_start = nullptr; // of the last name outside of parentheses and behind the last comma
        bool is_plain = false;      // the last name anywhere is no component
        int depth = 0;
        for (bool done = false; !done;) {
            const token_kind previous = curr_token;
            switch (next_token(lex_peek)) {
            case tok_lparen:
            case tok_array_open: ++depth; break;
            case tok_rparen:
            case tok_array_close: done = depth-- == 0; break;
            case tok_eos: done = true; break;
            case tok_name:
                is_plain = previous != tok_percent;
                if (depth == 0 && is_plain) {
                    name_start = token_start;
                    name.position = curr_token_pos;
                }
                break;
            case tok_comma:
                if (depth == 0) {
                    name_start = nullptr;
                }
                break;
            case tok_assign:
                if (depth == 0) {
                    result = !name_start                        ? control_search::missing
                             : previous == tok_name && is_plain ? control_search::found
                                                                : control_search::no_name;
                    done = true;
                }
                break;
            default: break;
            }
        }
        if (result == control_search::found) {
            line_cursor = name_start;
            next_token(0);
            name.atom = curr_name.atom;
        }
    }
    curr_name = name;
    return result;
}

// The type that the scope gives to a name which an implied DO takes for a variable of its own, or null.
type *outer_type(const atom *name) {
    symbol *s = name->first_symbol;
    while (s && (!(s->flags & sf_visible) || s->kind == sk_common_block || s->kind == sk_host_candidate)) {
        s = s->next_same_name;
    }
    if (s && s->scope_depth == curr_scope_depth) {
        s->flags |= sf_used_as_bound; // declared for this loop, and so no unused name
    }
    while (s && s->kind == sk_host_link) {
        s = entity_as<symbol>(s);
    }
    type *t = s && (s->flags & sf_typed) ? type_of_symbol(s) : nullptr;
    return t && t->type_code != tk_routine ? element_type_of(t) : nullptr;
}

symbol *new_control_variable() {
    type *outer = outer_type(curr_name.atom);
    symbol *s = push_implied_do_variable(curr_name);
    s->flags |= sf_implied_do;
    if (outer) {
        s->entity = outer;
        s->flags |= sf_typed;
    } else {
        apply_implicit(s, null_pos);
    }
    return s;
}

const symbol *linked_symbol(const symbol *s) {
    while (s->kind == sk_host_link) {
        s = entity_as<symbol>(s);
    }
    return s;
}

// Whether a name controls an open DO loop of the unit.
bool controls_open_loop(const symbol *s) {
    for (int i = construct_depth; i >= 0 && construct_stack[i].kind != cons_routine; --i) {
        const construct_entry &entry = construct_stack[i];
        if (entry.kind != cons_do || !entry.statement->do_loop) {
            continue;
        }
        const expr_node *variable = entry.statement->do_loop->variable;
        if (variable && variable->node_kind == enk_symbol && linked_symbol(variable->symbol) == s) {
            return true;
        }
    }
    return false;
}

bool is_active_control(const symbol *s) {
    return (s->kind == sk_variable && (s->var_flags & vf_do_variable)) || controls_implied_do(s) ||
           controls_open_loop(s);
}

void drop_variable(pending &loop) {
    if (loop.variable_in_force) {
        pop_implied_do_variable(loop.symbol);
        loop.variable_in_force = false;
    }
}

// ---- implied DOs

// Gives up the implied DO on top, of which the error has been reported, and goes on behind its ")".
expr_node *abandon_implied_do() {
    drop_variable(top_pending());
    const pending loop = pop_pending();
    skip_behind(tok_rparen);
    --stop_set[tok_rparen];
    return new_error_at(loop.position);
}

expr_node *finish_implied_do() {
    const pending loop = pop_pending();
    if (!close_with(tok_rparen, msg_expected_rparen)) {
        mark_error_node(loop.node);
    }
    --stop_set[tok_rparen];
    return loop.node;
}

// Whether the control follows the current ",": the tokens up to its "=" are read then. Otherwise nothing has
// moved.
bool control_follows() {
    saved_place here;
    if (next_token(lex_peek) == tok_name && next_token(lex_peek) == tok_assign) {
        here.stay();
        return true;
    }
    return false;
}

// The variable gets out of force: the expressions of the control mean the names outside.
void begin_control(pending &loop) {
    expr_node *variable = new_node(enk_symbol, loop.item_pos);
    variable->symbol = loop.symbol;
    if (loop.failed) {
        mark_error_node(variable);
    }
    loop.node->do_info->variable = variable;
    loop.node->has_a_scope = loop.symbol->kind == sk_implied_do_var;
    loop.node->expr_list = loop.first_item;
    drop_variable(loop);
}

// Asks for the next part of the control.
expr_node *ask_for(operand_part part) {
    pending &loop = top_pending();
    loop.part = part;
    loop.level = level_any;
    next_token(lex_signed);
    return nullptr;
}

} // namespace

// At "(".
expr_node *start_implied_do(element_parser parse_element, bool data_context) {
    pending &loop = push_pending(pending_implied_do, curr_token_pos);
    loop.parse_element = parse_element;
    loop.data_context = data_context;
    loop.node = new_node(enk_implied_do, loop.position);
    ++stop_set[tok_rparen];
    const control_search control = find_control();
    loop.item_pos = curr_name.position;
    switch (control) {
    case control_search::no_name:
        error_at(msg_do_variable_must_be_named_variable, loop.item_pos);
        next_token(0);
        return abandon_implied_do();
    case control_search::missing: break;
    case control_search::found:
        if (data_context || ac_nesting_depth > 0) {
            loop.symbol = new_control_variable();
            loop.variable_in_force = true;
        } else {
            symbol *s = lookup_reference();
            if (is_active_control(s)) {
                error_at(msg_variable_is_same_as_do_variable_of_enclosing, loop.item_pos);
                loop.failed = true;
            }
            loop.symbol = s;
        }
        break;
    }
    return ask_for(part_element);
}

expr_node *start_element() {
    pending &list = top_pending();
    if (list.kind == pending_implied_do && curr_token == tok_assign) {
        report_parse_error(msg_expected_identifier);
        return abandon_implied_do();
    }
    const element_parser parse_element = list.parse_element;
    if (at_implied_do()) {
        list.level = level_none;
        return start_implied_do(parse_element, list.data_context);
    }
    if (!parse_element) {
        list.level = level_any;
        return start_primary();
    }
    list.level = level_none;
    expr_node *element = nullptr;
    parse_element(element);
    return element ? element : new_error_at(curr_token_pos);
}

expr_node *continue_implied_do(expr_node *value) {
    pending &loop = top_pending();
    do_loop *control = loop.node->do_info;
    switch (loop.part) {
    case part_element:
        append_item(loop, value);
        if (value->node_kind == enk_error && !loop.symbol) {
            return abandon_implied_do(); // recovery may have gone into the control, where no variable is
        }
        if (curr_token != tok_comma) {
            break;
        }
        if (!control_follows()) {
            return ask_for(part_element);
        }
        if (!loop.symbol) {
            return abandon_implied_do(); // recovery from an error has passed an "="
        }
        begin_control(loop);
        return ask_for(part_initial);
    case part_initial:
        control->initial_value = value;
        if (curr_token != tok_comma) {
            break;
        }
        return ask_for(part_final);
    case part_final:
        control->final_value = value;
        return curr_token == tok_comma ? ask_for(part_increment) : finish_implied_do();
    default: control->increment = value; return finish_implied_do();
    }
    report_parse_error(msg_expected_comma);
    return abandon_implied_do();
}

// At "(/".
expr_node *start_constructor() {
    push_pending(pending_constructor, curr_token_pos);
    ++stop_set[tok_array_close];
    ++stop_set[tok_comma];
    ++ac_nesting_depth;
    return ask_for(part_element);
}

expr_node *continue_constructor(expr_node *value) {
    append_item(top_pending(), value);
    if (curr_token == tok_comma) {
        return ask_for(part_element);
    }
    const pending list = pop_pending();
    --stop_set[tok_comma];
    --ac_nesting_depth;
    const bool closed = close_with(tok_array_close, msg_expected_array_close);
    --stop_set[tok_array_close];
    expr_node *node = new_node(enk_constructor, list.position);
    node->constructor = list.first_item;
    node->type = new_array_type(unknown_type(), 1);
    if (!closed) {
        mark_error_node(node);
    }
    return node;
}

bool parse_element_list(element_parser parse_element, expr_node *&list, bool data_context) {
    const stop_at stops{tok_comma};
    bool ok = true;
    expr_node **link = &list;
    list = nullptr;
    do {
        expr_node *element = nullptr;
        ok = (at_implied_do() ? parse_implied_do(parse_element, element, data_context)
                              : parse_element(element)) &&
             ok;
        if (element) {
            *link = element;
            link = &element->next;
        }
    } while (accept_optional(tok_comma, lex_signed));
    return ok;
}

} // namespace zf90
