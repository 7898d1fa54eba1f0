// Names and what may follow them: lists in parentheses, components, the subscripts of components, substrings.
#include "declarations/derived_types.h"
#include "declarations/implicit.h"
#include "declarations/intrinsic_names.h"
#include "declarations/symbols.h"
#include "expressions/check.h"
#include "expressions/parser_stack.h"
#include "il/entries.h"
#include "il/types.h"
#include "statements/labels.h"

namespace zf90 {

namespace {

// ---- items of a list, and subscripts of a component

// Turns the item into a triplet of which the first part has been read, if it has one.
void make_triplet(pending &list) {
    expr_node *first = list.item;
    list.item = new_node(enk_triplet, first ? first->source_pos : curr_token_pos);
    list.item->first = first;
    list.has_triplet = true;
}

// Reads the ":" of a stride that may stand behind the second part. True if there is none: the item is
// complete.
bool ends_triplet(pending &list) {
    if (curr_token != tok_colon) {
        return true;
    }
    next_token(lex_signed);
    list.part = part_stride;
    return false;
}

bool has_keyword(const pending &item) { return item.is_specifier || item.keyword; }

// Behind an argument with a keyword all others need one, too.
void check_keyword(pending &list) {
    if (list.keyword_seen && !has_keyword(list) && !list.keyword_missed) {
        error_at(msg_keyword_must_not_be_omitted_from_actual_argument, list.item_pos);
        list.keyword_missed = true;
    }
}

// Goes on with an item behind the part that was read, null for a first part that is omitted. True if the
// item is complete; otherwise another part is to be read.
bool continue_item(pending &list, expr_node *value) {
    switch (list.part) {
    case part_first:
        if (value) {
            list.item = value;
            give_keyword(list, value);
            if (value->node_kind != enk_error) {
                check_keyword(list);
            }
        }
        if (list.keyword_seen) {
            return true;
        }
        if (curr_token == tok_double_colon) {
            make_triplet(list);
            next_token(lex_signed);
            list.part = part_stride;
            return false;
        }
        if (curr_token != tok_colon) {
            return true;
        }
        make_triplet(list);
        next_token(lex_signed);
        if (curr_token == tok_colon || curr_token == tok_comma || curr_token == tok_rparen) {
            return ends_triplet(list);
        }
        list.part = part_second;
        return false;
    case part_second: list.item->second = value; return ends_triplet(list);
    default: list.item->stride = value; return true;
    }
}

bool begins_with_colon(const pending &list) {
    return !list.keyword_seen && (curr_token == tok_colon || curr_token == tok_double_colon);
}

// A "*" and a label.
expr_node *read_label_argument() {
    const source_pos position = curr_token_pos;
    next_token(lex_label);
    const symbol *s = read_label_reference(label_use_branch);
    if (!s) {
        return new_error_at(position);
    }
    expr_node *node = new_node(enk_stmt_label_value, position);
    node->stmt_label_value = entity_as<label>(s);
    node->type = stmt_label_type();
    return node;
}

// Reads the front of an argument. True if an expression is to be read next.
bool start_argument(pending &list) {
    list.part = part_first;
    list.item = nullptr;
    list.keyword = nullptr;
    list.is_specifier = false;
    list.item_pos = curr_token_pos;
    if (curr_token == tok_star) {
        check_keyword(list);
        list.item = read_label_argument();
        return false;
    }
    if (begins_with_colon(list)) {
        return false;
    }
    read_keyword(list);
    list.keyword_seen = list.keyword_seen || has_keyword(list);
    return true;
}

// ---- component references

// The type that a name has by now. An undeclared name of which the class is needed is settled; one that gets
// no type is reported here.
type *type_of_name(symbol *s) {
    if (s->kind == sk_host_candidate) {
        s = resolve_candidate(s);
    }
    type *t = s ? type_of_symbol(s) : nullptr;
    if (!t) {
        return unknown_type();
    }
    t = element_type_of(t);
    if (t->type_code != tk_unknown) {
        return t;
    }
    type *implied = implicit_type_of(s);
    if (!implied && s->kind == sk_undetermined) {
        apply_implicit(s, null_pos);
        implied = error_type();
    }
    return implied ? implied : t;
}

// The record with the components of a derived type: a type that was named ahead of its definition may turn
// out to be the host's.
const type *defined_type(const type *t) {
    const symbol *s = t->symbol_link;
    if (s && s->kind == sk_forward_type && s->aux) {
        s = static_cast<const symbol *>(s->aux);
    }
    while (s && s->kind == sk_host_link) {
        s = entity_as<symbol>(s);
    }
    return s && s != t->symbol_link && s->kind == sk_derived_type ? entity_as<type>(s) : t;
}

// The type of an element of what has been read so far of a designator.
const type *type_of_base(const expr_node *base) {
    switch (base->node_kind) {
    case enk_symbol:
    case enk_symbol_call: return type_of_name(base->symbol);
    case enk_field: return element_type_of(base->type);
    case enk_subscript: return element_type_of(base->array_expr->type);
    case enk_error: return error_type();
    default: return unknown_type();
    }
}

// Reads a "%" and the name of a component. Null, without a second message, if there is no such component.
expr_node *read_component(expr_node *base) {
    const type *t = type_of_base(base);
    if (t->type_code != tk_derived_type) {
        if (t->type_code != tk_error) {
            error_at(msg_object_is_not_of_derived_type, base->source_pos);
        }
        return nullptr;
    }
    next_token(0);
    if (curr_token != tok_name) {
        parse_error(msg_expected_identifier);
        return nullptr;
    }
    t = defined_type(t);
    object *const field = find_component(t, curr_name.atom);
    if (!field) {
        if (!t->derived.in_doubt) {
            error_at(msg_there_is_no_field_with_name, curr_token_pos);
        }
        next_token(0);
        return nullptr;
    }
    expr_node *node = new_node(enk_field, base->source_pos);
    node->base_expr = base;
    node->field_var = field;
    node->type = field->type;
    next_token(0);
    return node;
}

// Passes over what may follow a component that is in error.
void skip_components() {
    for (;;) {
        if (curr_token == tok_percent) {
            if (next_token(0) != tok_name) {
                return;
            }
        } else if (curr_token == tok_lparen) {
            skip_balanced();
            if (curr_token == tok_eos) {
                return;
            }
        } else {
            return;
        }
        next_token(0);
    }
}

expr_node *start_subscripts(expr_node *field);

// Goes on with a designator behind what has been read of it.
expr_node *continue_designator(expr_node *node, bool substring_may_follow) {
    for (;;) {
        if (curr_token == tok_lparen && substring_may_follow) {
            node = start_substring(node, true);
            substring_may_follow = false;
        } else if (curr_token == tok_percent) {
            expr_node *field = read_component(node);
            if (!field) {
                mark_error_node(node);
                skip_components();
                return node;
            }
            node = field;
            substring_may_follow = false;
            if (curr_token == tok_lparen && field->type->type_code == tk_fcharacter) {
                node = start_substring(field, true);
            } else if (curr_token == tok_lparen) {
                node = start_subscripts(field);
                substring_may_follow = true;
            }
        } else {
            return node;
        }
        if (!node) {
            return nullptr;
        }
    }
}

// The end of an argument list.
expr_node *finish_list() {
    const pending list = pop_pending();
    if (list.waits_for_comma) {
        --stop_set[tok_comma];
    }
    const bool closed = close_with(tok_rparen, msg_expected_rparen);
    --stop_set[tok_rparen];
    expr_node *node = new_node(enk_symbol_call, list.position);
    node->symbol = list.symbol;
    node->operands = list.first_item;
    node->has_triplet = list.has_triplet;
    if (list.keyword_missed || !closed) {
        mark_error_node(node);
    }
    if (list.in_designator && !list.has_triplet) {
        list.symbol->flags |= sf_called | sf_called_as_function;
    } else if (list.has_triplet && is_character_symbol(list.symbol)) {
        list.symbol->flags |= sf_used_as_data; // a substring of a scalar or a section of an array
    }
    return node;
}

// Goes on with the argument list on top behind a part of an item. Null if another one is to be read.
expr_node *advance_list(expr_node *value) {
    pending &list = top_pending();
    while (continue_item(list, value)) {
        append_item(list, list.item);
        if (!accept_optional(tok_comma, lex_signed | lex_keyword_arg)) {
            return finish_list();
        }
        if (start_argument(list)) {
            break;
        }
        value = nullptr;
    }
    return nullptr;
}

// Looks at the subscript that begins. True if an expression is to be read next.
bool start_subscript(pending &list) {
    list.part = part_first;
    list.item = nullptr;
    if (++list.count == list.rank + 1 && list.rank >= 0) {
        error_at(msg_too_many_subscripts, curr_token_pos);
        list.failed = true;
    }
    return !begins_with_colon(list);
}

expr_node *finish_subscripts() {
    const pending list = pop_pending();
    --stop_set[tok_comma];
    --stop_set[tok_colon];
    --stop_set[tok_double_colon];
    bool failed = list.failed;
    if (curr_token == tok_rparen && list.count < list.rank) {
        error_at(msg_too_few_subscripts, curr_token_pos);
        failed = true;
    }
    failed = !close_with(tok_rparen, msg_expected_rparen) || failed;
    --stop_set[tok_rparen];
    expr_node *node = new_node(enk_subscript, list.position);
    node->array_expr = list.node;
    node->ind_list = list.first_item;
    if (failed) {
        mark_error_node(node);
    }
    return node;
}

// As advance_list, for the subscripts on top.
expr_node *advance_subscripts(expr_node *value) {
    pending &list = top_pending();
    while (continue_item(list, value)) {
        append_item(list, list.item);
        if (!accept_optional(tok_comma, lex_signed)) {
            return finish_subscripts();
        }
        if (start_subscript(list)) {
            break;
        }
        value = nullptr;
    }
    return nullptr;
}

// At the "(" behind a component.
expr_node *start_subscripts(expr_node *field) {
    pending &list = push_pending(pending_subscripts, field->source_pos);
    list.node = field;
    list.rank = -1;
    if (field->type->type_code == tk_farray) {
        list.rank = field->type->array.rank;
    } else if (field->type->type_code != tk_unknown && field->type->type_code != tk_error) {
        error_at(msg_subscript_used_on_non_array, field->source_pos);
        list.failed = true;
    }
    ++stop_set[tok_rparen];
    ++stop_set[tok_comma];
    ++stop_set[tok_colon];
    ++stop_set[tok_double_colon];
    next_token(lex_signed);
    return start_subscript(list) ? nullptr : advance_subscripts(nullptr);
}

// Goes on with the substring on top behind one of its positions, null for a first one that is omitted. Null
// if the second one is to be read.
expr_node *advance_substring(expr_node *value) {
    pending &substring = top_pending();
    if (substring.part == part_first) {
        substring.item->first = value;
        if (curr_token != tok_colon) {
            parse_error(msg_expected_colon);
        }
        --stop_set[tok_colon];
        if (curr_token == tok_colon) {
            next_token(lex_signed);
            if (curr_token != tok_rparen) {
                substring.part = part_second;
                return nullptr;
            }
        } else {
            substring.failed = true;
        }
    } else {
        substring.item->second = value;
    }
    const pending done = pop_pending();
    const bool closed = close_with(tok_rparen, msg_expected_rparen);
    --stop_set[tok_rparen];
    expr_node *node = new_node(enk_substring, done.position);
    node->array_expr = done.node;
    node->ind_list = done.item;
    if (done.failed || !closed) {
        mark_error_node(node);
    }
    return node;
}

// Whether the name that has been read is the whole of an actual argument: the only place where a procedure is
// named without a list.
bool is_whole_argument() {
    return top_pending().kind == pending_list && top_pending().part == part_first &&
           (curr_token == tok_comma || curr_token == tok_rparen);
}

} // namespace

expr_node *start_name() {
    const source_pos position = curr_token_pos;
    symbol *s = lookup_reference();
    next_token(0);
    expr_node *node;
    if (curr_token == tok_lparen) {
        node = start_list(s, position, true);
    } else {
        node = new_node(enk_symbol, position);
        node->symbol = s;
        if (!is_whole_argument()) {
            s->flags |= sf_used_as_data;
        }
    }
    return node ? continue_designator(node, true) : nullptr;
}

expr_node *start_list(symbol *s, source_pos position, bool in_designator) {
    if (!accept_token(tok_lparen, msg_expected_lparen, lex_signed | lex_keyword_arg)) {
        return new_error_at(position);
    }
    pending &list = push_pending(pending_list, position);
    list.symbol = s;
    list.in_designator = in_designator;
    ++stop_set[tok_rparen];
    if (curr_token == tok_rparen || curr_token == tok_eos) {
        return finish_list();
    }
    ++stop_set[tok_comma];
    list.waits_for_comma = true;
    return start_argument(list) ? nullptr : advance_list(nullptr);
}

expr_node *continue_list(expr_node *value) {
    const bool in_designator = top_pending().in_designator;
    expr_node *node = advance_list(value);
    return node && in_designator ? continue_designator(node, true) : node;
}

expr_node *continue_subscripts(expr_node *value) {
    expr_node *node = advance_subscripts(value);
    return node ? continue_designator(node, true) : nullptr;
}

expr_node *start_substring(expr_node *base, bool in_designator) {
    pending &substring = push_pending(pending_substring, base->source_pos);
    substring.node = base;
    substring.in_designator = in_designator;
    substring.part = part_first;
    ++stop_set[tok_rparen];
    ++stop_set[tok_colon];
    next_token(lex_signed);
    substring.item = new_node(enk_triplet, curr_token_pos);
    return curr_token == tok_colon ? advance_substring(nullptr) : nullptr;
}

expr_node *continue_substring(expr_node *value) {
    const bool in_designator = top_pending().in_designator;
    expr_node *node = advance_substring(value);
    return node && in_designator ? continue_designator(node, false) : node;
}

} // namespace zf90
