// ALLOCATE, DEALLOCATE and NULLIFY. An item is read as any expression; that its subscripts are bounds is
// settled when the statement is checked.
#include "statements/allocate.h"

#include "driver/deep_call.h"
#include "driver/diagnostics.h"
#include "expressions/check.h"
#include "expressions/parser.h"
#include "expressions/uses.h"
#include "il/constants.h"
#include "il/entries.h"
#include "il/types.h"
#include "source/token_helpers.h"
#include "statements/constructs.h"
#include "statements/handlers.h"

#include <utility>

namespace zf90 {

// ---- reading

namespace {

// What may follow an item.
enum class after_item : std::uint8_t { next_item, end, failure };

after_item read_separator(std::uint32_t mode) {
    if (curr_token == tok_comma) {
        next_token(mode);
        return after_item::next_item;
    }
    if (accept_optional(tok_rparen, 0)) {
        return after_item::end;
    }
    expect_token(tok_rparen, msg_expected_comma_or_rparen);
    return after_item::failure;
}

// "STAT = variable)", which ends the list.
bool read_stat(statement *s) {
    next_token(lex_signed);
    return parse_expression(s->stat_variable) && accept_token(tok_rparen, msg_expected_rparen, 0);
}

// Reads the list in parentheses of a statement of that kind. `add` is given each expression.
template <class Add> bool read_list(il_statement_kind kind, bool has_stat, Add add) {
    check_reachable();
    next_token(0);
    if (!accept_opening(lex_signed)) {
        return false;
    }
    const stop_at stops{tok_comma, tok_rparen};
    statement *s = add_statement(kind);
    for (;;) {
        expr_node *e = nullptr;
        if (!parse_expression(e)) {
            return false;
        }
        add(s, e);
        switch (read_separator(has_stat ? lex_specifier | lex_signed : lex_signed)) {
        case after_item::end:
            if (curr_token != tok_eos) {
                excuse_last_name(e);
            }
            return true;
        case after_item::failure:
            mark_error_node(e); // who knows what was meant
            return false;
        case after_item::next_item: break;
        }
        if (has_stat && curr_token == tok_spec_stat) {
            return read_stat(s);
        }
    }
}

} // namespace

bool stmt_allocate() {
    alloc *last = nullptr;
    return read_list(stmk_alloc, true, [&last](statement *s, expr_node *e) {
        alloc *item = new_alloc();
        item->var = e;
        (last ? last->next : s->alloc_list) = item;
        last = item;
    });
}

bool stmt_deallocate() {
    expr_node *last = nullptr;
    return read_list(stmk_dealloc, true, [&last](statement *s, expr_node *e) {
        (last ? last->next : s->dealloc_list) = e;
        last = e;
    });
}

bool stmt_nullify() {
    expr_node *last = nullptr;
    return read_list(stmk_nullify, false, [&last](statement *s, expr_node *e) {
        (last ? last->next : s->expr) = e;
        last = e;
    });
}

// ---- what occurs in an expression

namespace {

bool occurs_in(const expr_node *expr, const expr_node *target);

bool occurs_in_list(const expr_node *list, const expr_node *target) {
    for (; list; list = list->next) {
        if (occurs_in(list, target)) {
            return true;
        }
    }
    return false;
}

bool occurs_in_part(const expr_node *part, const expr_node *target) {
    return part && occurs_in(part, target);
}

bool occurs_in_node(const expr_node *expr, const expr_node *target) {
    switch (expr->node_kind) {
    case enk_object: return target->node_kind == enk_object && expr->object == target->object;
    case enk_field:
        if (target->node_kind == enk_field && expr->field_var == target->field_var &&
            occurs_in(expr->base_expr, target->base_expr)) {
            return true;
        }
        return occurs_in(expr->base_expr, target);
    case enk_operation:
    case enk_intrinsic:
    case enk_call:
    case enk_generic_call: return occurs_in_list(expr->operands, target);
    case enk_subscript:
    case enk_substring:
    case enk_section: return occurs_in(expr->array_expr, target) || occurs_in_list(expr->ind_list, target);
    case enk_constructor: return occurs_in_list(expr->constructor, target);
    case enk_implied_do: return occurs_in_list(expr->expr_list, target);
    case enk_triplet:
        return occurs_in_part(expr->first, target) || occurs_in_part(expr->second, target) ||
               occurs_in_part(expr->stride, target);
    case enk_ref: return occurs_in(expr->reference, target);
    default: return false;
    }
}

// Whether the object or component that `target` names is referred to in an expression.
bool occurs_in(const expr_node *expr, const expr_node *target) {
    return deep_call([=] { return occurs_in_node(expr, target); });
}

// ---- the items

bool refuse(const expr_node *at, error_code code) {
    error_at(code, at->source_pos);
    return false;
}

// The object or component that an expression is, or null.
const object *named_object(const expr_node *e) {
    switch (e->node_kind) {
    case enk_object: return e->object;
    case enk_field: return e->field_var;
    default: return nullptr;
    }
}

void mark_definition(expr_node *e) {
    e->intent_out = true;
    note_definition(e);
}

bool is_dynamic(const object *o) { return o && (o->is_pointer || o->is_allocatable); }

bool is_integer(const type *t) { return t->type_code == tk_integer; }

// An item of a list of bounds becomes a lower and an upper bound.
bool take_bounds(expr_node *item, bound &lower, bound &upper) {
    set_constant_bound(lower, 1);
    if (item->node_kind != enk_triplet) {
        set_expression_bound(upper, item);
        return true;
    }
    if (!item->first || !item->second) {
        return refuse(item, msg_expected_expression);
    }
    if (item->stride) {
        return refuse(item->stride, msg_expected_rparen);
    }
    set_expression_bound(lower, item->first);
    set_expression_bound(upper, item->second);
    return true;
}

// Turns "array(bounds)" into the array and a table of bounds.
bool take_shape(alloc *item) {
    const expr_node *part = item->var;
    item->var = part->array_expr;
    item->rank = is_array(item->var->type) ? item->var->type->array.rank : std::uint8_t{0};
    item->bounds = new_bound_info_entry(item->rank);
    bound *bounds = item->bounds->bounds;
    bool good = true;
    unsigned i = 0;
    for (expr_node *e = part->ind_list, *next; e && i < item->rank; e = next, ++i) {
        next = std::exchange(e->next, nullptr);
        good = take_bounds(e, bounds[i], bounds[item->rank + i]) && good;
    }
    return good;
}

// A bound is an integer; one that has a value is that value.
bool check_bound(bound &b, object *routine) {
    if (b.kind != bound_expression) {
        return true;
    }
    expr_node *e = b.expr;
    if (!check_expression(e, 0, routine)) {
        return false;
    }
    e->intent_in = true;
    if (!is_integer(e->type)) {
        return e->type->type_code == tk_error || refuse(e, msg_must_be_scalar_integer_expression);
    }
    if (e->node_kind == enk_constant) {
        set_constant_bound(b, integer_value_of(e->constant));
    }
    return true;
}

bool check_bounds(const alloc *item, object *routine) {
    bool good = true;
    for (unsigned i = 0; i < item->rank; ++i) {
        good = check_bound(item->bounds->bounds[i], routine) && good;
        good = check_bound(item->bounds->bounds[item->rank + i], routine) && good;
    }
    return good;
}

bool check_alloc(alloc *item, object *routine) {
    if (!begin_check(item)) {
        return true;
    }
    if (!check_expression(item->var, ecf_designator, routine)) {
        return false;
    }
    bool good = true;
    if (item->var->node_kind == enk_subscript || item->var->node_kind == enk_section) {
        good = take_shape(item) && check_bounds(item, routine);
    }
    if (!is_dynamic(named_object(item->var))) {
        return refuse(item->var, msg_must_be_pointer_or_allocatable_array);
    }
    if (good) {
        mark_definition(item->var);
    }
    return good;
}

// ---- STAT=

bool is_item(const statement *s, const expr_node *target) {
    if (s->kind == stmk_dealloc) {
        return occurs_in_list(s->dealloc_list, target);
    }
    for (const alloc *item = s->alloc_list; item; item = item->next) {
        if (occurs_in(item->var, target)) {
            return true;
        }
    }
    return false;
}

bool refuse_item(const expr_node *item, const expr_node *stat) {
    return !occurs_in(item, stat) || refuse(item, msg_stat_variable_should_not_be_allocated_or_deallocated);
}

bool refuse_items(const statement *s) {
    bool good = true;
    if (s->kind == stmk_dealloc) {
        for (const expr_node *e = s->dealloc_list; e; e = e->next) {
            good = refuse_item(e, s->stat_variable) && good;
        }
    } else {
        for (const alloc *item = s->alloc_list; item; item = item->next) {
            good = refuse_item(item->var, s->stat_variable) && good;
        }
    }
    return good;
}

// An integer scalar that can be set and is none of the items. `items_good`: these have been checked.
bool check_stat(const statement *s, object *routine, bool items_good) {
    expr_node *stat = s->stat_variable;
    if (!stat) {
        return true;
    }
    if (!check_expression(stat, ecf_designator, routine)) {
        return false;
    }
    if (!items_good) {
        return true;
    }
    bool good = true;
    const bool is_integer_array = is_array(stat->type) && is_integer(element_type_of(stat->type));
    if (!is_integer(stat->type) && !(is_integer_array && is_item(s, stat))) {
        good = refuse(stat, msg_must_be_scalar_integer_variable);
    }
    good = refuse_items(s) && good;
    if (!good || !check_definable(stat)) {
        return false;
    }
    mark_definition(stat);
    return true;
}

// ---- bounds and the objects allocated

bool check_independence(const statement *s, const bound &b) {
    if (b.kind != bound_expression) {
        return true;
    }
    for (const alloc *item = s->alloc_list; item; item = item->next) {
        if (occurs_in(b.expr, item->var)) {
            return refuse(b.expr, msg_bound_expression_should_not_involve_any_allocated_object);
        }
    }
    return true;
}

bool check_bounds_independence(const statement *s) {
    bool good = true;
    for (const alloc *item = s->alloc_list; item; item = item->next) {
        for (unsigned i = 0; i < 2u * item->rank; ++i) {
            good = check_independence(s, item->bounds->bounds[i]) && good;
        }
    }
    return good;
}

bool check_dealloc(expr_node *e, object *routine) {
    if (!check_expression(e, ecf_designator, routine)) {
        return false;
    }
    if (!is_dynamic(named_object(e))) {
        return refuse(e, msg_must_be_pointer_or_allocatable_array);
    }
    mark_definition(e);
    return true;
}

} // namespace

bool check_allocate(statement *s, object *routine) {
    bool good = true;
    for (alloc *item = s->alloc_list; item; item = item->next) {
        good = check_alloc(item, routine) && good;
    }
    good = check_stat(s, routine, good) && good;
    return check_bounds_independence(s) && good;
}

bool check_deallocate(statement *s, object *routine) {
    bool good = true;
    for (expr_node *e = s->dealloc_list; e; e = e->next) {
        good = check_dealloc(e, routine) && good;
    }
    return check_stat(s, routine, good) && good;
}

bool check_nullify(statement *s) {
    bool good = true;
    for (expr_node *e = s->expr; e; e = e->next) {
        if (!check_definable(e)) {
            good = false;
            continue;
        }
        const object *o = named_object(e);
        if (!o || !o->is_pointer) {
            good = refuse(e, msg_must_be_pointer);
            continue;
        }
        mark_definition(e);
    }
    return good;
}

} // namespace zf90
