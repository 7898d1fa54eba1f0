// What restricted expressions and the right sides of statement functions may name.
#include "driver/deep_call.h"
#include "expressions/predicates.h"
#include "intrinsics/handler_helpers.h"

namespace zf90 {

namespace {

// The inquiries whose result depends on the bounds or the length of their argument.
bool asks_for_bounds(intrinsic_code code) {
    switch (code) {
    case intr_lbound:
    case intr_len:
    case intr_shape:
    case intr_size:
    case intr_ubound: return true;
    default: return false;
    }
}

bool is_in_common(const object *o) {
    const symbol *s = o->symbol_link;
    return s && s->kind == sk_variable && (s->var_flags & vf_in_common) != 0;
}

// Whether a restricted expression of the routine may use the value of the object.
bool is_permitted(const object *o, const object *routine) {
    return !routine || o->is_constant || o->is_parameter || o->storage_class == sc_use_associated ||
           o->storage_class == sc_implied_do_var || is_in_common(o) ||
           o->source_corresp.scope_depth <= routine->source_corresp.scope_depth;
}

bool refuse_name(const expr_node *e) {
    error_at(msg_must_be_restricted_expression, e->source_pos);
    return false;
}

bool walk_list(expr_node *list, object *routine) {
    for (expr_node *e = list; e; e = e->next) {
        if (!restricted_walk(e, routine)) {
            return false;
        }
    }
    return true;
}

// Whether the bounds and the length of an object are what its declaration says: numbers, or expressions that
// have been found restricted there.
bool has_declared_bounds(const object *o) {
    if (o->is_allocatable || o->is_pointer ||
        (is_array(o->type) && o->type->array.shape_kind != explicit_shape)) {
        return false;
    }
    const type *t = element_type_of(o->type);
    return t->type_code != tk_fcharacter || t->character.length.kind == bound_constant ||
           t->character.length.kind == bound_expression;
}

// The first argument of an inquiry, which is not evaluated: any variable will do if its bounds are declared
// or not asked for.
bool restricted_inquiry_walk(expr_node *expr, object *routine, bool for_bounds) {
    expr_node *e = expr;
    for (;;) {
        switch (e->node_kind) {
        case enk_object:
            return is_permitted(e->object, routine) || !for_bounds || has_declared_bounds(e->object) ||
                   refuse_name(e);
        case enk_field: e = e->base_expr; break;
        case enk_ref: e = e->reference; break;
        case enk_subscript:
        case enk_substring:
        case enk_section:
            if (!walk_list(e->ind_list, routine)) {
                return false;
            }
            e = e->array_expr;
            break;
        default: return restricted_walk(e, routine);
        }
    }
}

bool walk_intrinsic(expr_node *e, object *routine) {
    if (!is_inquiry(e->intrinsic)) {
        return walk_list(e->operands, routine);
    }
    return restricted_inquiry_walk(e->operands, routine, asks_for_bounds(e->intrinsic)) &&
           walk_list(e->operands->next, routine);
}

bool walk_loop(const do_loop &loop, object *routine) {
    return restricted_walk(loop.initial_value, routine) && restricted_walk(loop.final_value, routine) &&
           (!loop.increment || restricted_walk(loop.increment, routine));
}

bool walk_restricted(expr_node *e, object *routine) {
    switch (e->node_kind) {
    case enk_operation:
    case enk_call: return walk_list(e->operands, routine);
    case enk_intrinsic: return walk_intrinsic(e, routine);
    case enk_object: return is_permitted(e->object, routine) || refuse_name(e);
    case enk_field: return restricted_walk(e->base_expr, routine);
    case enk_subscript:
    case enk_substring:
    case enk_section: return restricted_walk(e->array_expr, routine) && walk_list(e->ind_list, routine);
    case enk_constructor: return walk_list(e->constructor, routine);
    case enk_implied_do: return walk_list(e->expr_list, routine) && walk_loop(*e->do_info, routine);
    case enk_triplet:
        return (!e->first || restricted_walk(e->first, routine)) &&
               (!e->second || restricted_walk(e->second, routine)) &&
               (!e->stride || restricted_walk(e->stride, routine));
    default: return true;
    }
}

bool walk_scalar_list(expr_node *list) {
    for (expr_node *e = list; e; e = e->next) {
        if (!stmt_func_walk(e)) {
            return false;
        }
    }
    return true;
}

bool refuse_in_statement_function(const expr_node *e, error_code message) {
    error_at(message, e->source_pos);
    return false;
}

bool walk_scalar(expr_node *e) {
    switch (e->node_kind) {
    case enk_section:
    case enk_constructor:
    case enk_triplet:
        return refuse_in_statement_function(e, msg_not_allowed_for_statement_function_scalar_expression);
    case enk_empty: return true;
    default: break;
    }
    if (is_array_valued(e) && !e->element_sequence) {
        return refuse_in_statement_function(e, msg_processing_array_valued_expressions_is_not_allowed);
    }
    switch (e->node_kind) {
    case enk_operation:
    case enk_call: return walk_scalar_list(e->operands);
    case enk_intrinsic: return walk_scalar_list(is_inquiry(e->intrinsic) ? e->operands->next : e->operands);
    default: return true; // what it holds has been checked in this context itself
    }
}

} // namespace

bool is_inquiry(intrinsic_code code) {
    switch (code) {
    case intr_allocated:
    case intr_associated:
    case intr_bit_size:
    case intr_digits:
    case intr_epsilon:
    case intr_huge:
    case intr_kind:
    case intr_lbound:
    case intr_len:
    case intr_maxexponent:
    case intr_minexponent:
    case intr_precision:
    case intr_present:
    case intr_radix:
    case intr_range:
    case intr_shape:
    case intr_size:
    case intr_tiny:
    case intr_ubound: return true;
    default: return false;
    }
}

bool restricted_walk(expr_node *expr, object *routine) {
    return deep_call([&] { return walk_restricted(expr, routine); });
}

bool stmt_func_walk(expr_node *expr) {
    return deep_call([&] { return walk_scalar(expr); });
}

bool refuse_if_restricted(expr_node *node, std::uint32_t flags) {
    return !is_restricted_context(flags) || (flags & ecf_init_expr) ||
           refuse(node, msg_must_be_restricted_expression, node->source_pos);
}

bool check_inquiry_context(expr_node *node, std::uint32_t flags, object *routine) {
    expr_node *const first = node->operands;
    const intrinsic_code code = handler_index(node->routine);
    bool ok = true;
    if (is_restricted_context(flags)) {
        ok =
            restricted_inquiry_walk(first, routine, asks_for_bounds(code)) && walk_list(first->next, routine);
    } else if (flags & ecf_stmt_func) {
        ok = walk_scalar_list(first->next);
    } else {
        for (const expr_node *e = first->next; e; e = e->next) {
            if (e->node_kind == enk_object && is_assumed_size(e->object->type)) {
                error_at(msg_assumed_size_array_is_not_allowed, e->source_pos);
                ok = false;
            }
        }
    }
    if (!ok) {
        mark_error_node(node);
    }
    return ok;
}

} // namespace zf90
