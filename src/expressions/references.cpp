// The check of expressions: what a name means, with a list and without, and what all kinds of nodes have in
// common: each is checked once, its operands first, gets its type, and is replaced by its value if it has
// one. The rules for the parts of designators are in reference_types.cpp.
#include "expressions/references.h"

#include "constants/folding.h"
#include "declarations/check_scopes.h"
#include "declarations/end_of_unit.h"
#include "declarations/implicit.h"
#include "declarations/symbols.h"
#include "declarations/variables.h"
#include "driver/deep_call.h"
#include "driver/options.h"
#include "expressions/calls.h"
#include "expressions/check.h"
#include "expressions/operators.h"
#include "expressions/predicates.h"
#include "expressions/shapes.h"
#include "expressions/uses.h"
#include "il/constants.h"
#include "il/entries.h"
#include "il/types.h"
#include "intrinsics/handlers.h"
#include "statements/statement_pass.h"

namespace zf90 {

void mark_error_node(expr_node *node) {
    node->node_kind = enk_error;
    node->type = error_type();
}

void excuse_last_name(expr_node *e) {
    while (e->node_kind == enk_symbol_call && e->operands) {
        for (e = e->operands; e->next;) {
            e = e->next;
        }
    }
    if (e->node_kind == enk_symbol) {
        mark_error_node(e);
    }
}

bool fail_at(error_code code, const expr_node *node) {
    error_at(code, node->source_pos);
    return false;
}

bool check_list(expr_node *list, std::uint32_t flags, object *routine) {
    bool ok = true;
    for (expr_node *e = list; e; e = e->next) {
        ok = check_expression(e, flags, routine) && ok;
        e->intent_in = true;
    }
    return ok;
}

// ---- names

symbol *settle_symbol(symbol *s) {
    for (;;) {
        switch (s->kind) {
        case sk_host_link: s = entity_as<symbol>(s); break;
        case sk_host_candidate:
            s = resolve_candidate(s);
            if (!s) {
                return nullptr;
            }
            break;
        case sk_data_name: {
            name_locator name{s->name, s->decl_position};
            return make_variable(s, name);
        }
        case sk_undetermined:
        case sk_external_pending:
        case sk_external_unused:
        case sk_implied_do_var:
        case sk_forward_type:
        case sk_dummy:
        case sk_dummy_procedure: {
            finish_symbol(s);
            if (s->kind != sk_host_link) {
                return s;
            }
            break;
        }
        case sk_variable:
        case sk_function:
        case sk_internal_function:
        case sk_stmt_function:
        case sk_dummy_function:
            if (!(s->flags & sf_typed)) {
                apply_implicit(s, null_pos);
            }
            return s;
        default: return s;
        }
    }
}

namespace {

bool is_procedure(symbol_kind kind) {
    return (kind >= sk_subroutine && kind <= sk_specific_subroutine) || kind == sk_dummy_function ||
           kind == sk_dummy_subroutine;
}

bool classify_name(expr_node *node) {
    symbol *s = settle_symbol(node->symbol);
    const symbol_kind kind = s ? s->kind : sk_label;
    if (s) {
        note_name(s, node);
    }
    if (kind == sk_variable || is_procedure(kind) || kind == sk_external_unused ||
        kind == sk_dummy_procedure) {
        set_expr_node_kind(node, enk_object);
        node->object = entity_as<object>(s);
        return true;
    }
    if (kind == sk_intrinsic_function || kind == sk_intrinsic_subroutine || kind == sk_interface) {
        set_expr_node_kind(node, enk_interface_block);
        node->interface_block = entity_as<interface>(s);
        return true;
    }
    return fail_at(msg_actual_argument_is_incompatible_with_dummy_argument, node);
}

// Intrinsic subroutines have a name where they are called, but cannot be passed.
bool is_intrinsic_subroutine(const object *o) {
    return o->storage_class == sc_intrinsic && o->type->routine.return_type->type_code == tk_void;
}

// A generic name stands for the specific procedure of that name.
bool classify_generic_name(expr_node *node) {
    const atom *name = node->interface_block->source_corresp.name;
    for (const interface *i = node->interface_block; i; i = i->inherited) {
        for (const object_list_member *m = i->routine_prototype_list; m; m = m->next) {
            if (m->object->source_corresp.name == name && !is_intrinsic_subroutine(m->object)) {
                set_expr_node_kind(node, enk_object);
                node->object = m->object;
                return true;
            }
        }
    }
    return fail_at(msg_generic_name_is_not_allowed, node);
}

bool has_keyword(const expr_node *e) { return e->is_specifier || e->keyword; }

// An element, a section or a substring has no keywords.
bool check_no_keywords(const expr_node *list) {
    bool ok = true;
    for (const expr_node *e = list; e; e = e->next) {
        if (has_keyword(e)) {
            ok = fail_at(msg_keyword_is_not_allowed, e);
        }
    }
    return ok;
}

void become_subscript(expr_node *node, expr_node_kind kind, object *o) {
    expr_node *list = node->operands;
    expr_node *base = new_expr_node(enk_object);
    base->source_pos = node->source_pos;
    base->object = o;
    set_expr_node_kind(node, kind);
    node->array_expr = base;
    node->ind_list = list;
}

// Whether a list is the position of a substring.
bool is_substring_position(const expr_node *list) {
    return list && !list->next && list->node_kind == enk_triplet && !list->stride;
}

bool classify_name_with_list(expr_node *node) {
    symbol *s = settle_symbol(node->symbol);
    expr_node *list = node->operands;
    if (s) {
        note_name(s, node);
    }
    if (s && s->kind == sk_variable) {
        object *o = entity_as<object>(s);
        const type_code code = o->type->type_code;
        if (code == tk_error || s->name == error_atom) {
            return false;
        }
        if (code == tk_farray) {
            become_subscript(node, enk_subscript, o);
            return check_no_keywords(list);
        }
        if (code == tk_fcharacter && is_substring_position(list)) {
            become_subscript(node, enk_substring, o);
            return check_no_keywords(list);
        }
        if ((s->var_flags & vf_called_data) && code != tk_fcharacter) {
            // Of an array of which the shape was forgotten, each element would be reported.
            if (s->var_flags & vf_list_reported) {
                return false;
            }
            s->var_flags |= vf_list_reported;
        }
    } else if (s && !node->has_triplet) {
        if (s->kind == sk_derived_type) {
            type *t = entity_as<type>(s);
            set_expr_node_kind(node, enk_constructor);
            node->type = t;
            node->constructor = list;
            return check_no_keywords(list);
        }
        if (is_procedure(s->kind)) {
            set_expr_node_kind(node, enk_call);
            node->routine = entity_as<object>(s);
            node->operands = list;
            return true;
        }
        if (s->kind == sk_intrinsic_function || s->kind == sk_intrinsic_subroutine ||
            s->kind == sk_interface) {
            set_expr_node_kind(node, enk_generic_call);
            node->generic = entity_as<interface>(s);
            node->operands = list;
            return true;
        }
    }
    return fail_at(msg_subscript_used_on_non_array, node);
}

// Makes of what the parser left open what it is.
bool classify(expr_node *node) {
    if (node->node_kind == enk_symbol && !classify_name(node)) {
        return false;
    }
    if (node->node_kind == enk_interface_block) {
        return classify_generic_name(node);
    }
    return node->node_kind != enk_symbol_call || classify_name_with_list(node);
}

// ---- the kinds of nodes that are no designators

bool check_constant(expr_node *node, object *routine) {
    if (!check_initializer(node->constant)) {
        return false;
    }
    node->type = node->constant->type;
    note_host_type(node->type, routine);
    return true;
}

bool check_label_value(expr_node *node, std::uint32_t flags) {
    if (is_restricted_context(flags)) {
        return fail_at(msg_must_be_restricted_expression, node);
    }
    if (flags & ecf_stmt_func) {
        return fail_at(msg_not_allowed_for_statement_function_scalar_expression, node);
    }
    node->stmt_label_value->source_corresp.referenced = true;
    node->type = stmt_label_type();
    return true;
}

// What a context demands of the values of a constructor.
std::uint32_t value_flags(std::uint32_t flags) {
    return flags & (ecf_restricted_a | ecf_restricted_b | ecf_stmt_func);
}

// With one value too few or too many the others need not stand in their places.
bool check_value_count(const expr_node *node) {
    const expr_node *value = node->constructor;
    const object *field = node->type->derived.first_field;
    while (value && field) {
        value = value->next;
        field = field->next;
    }
    if (value) {
        return fail_at(msg_too_many_members_in_expression_list, value);
    }
    return !field || fail_at(msg_too_few_members_in_expression_list, node);
}

bool check_structure_constructor(expr_node *node, std::uint32_t flags, object *routine) {
    type *const t = node->type;
    if (t->type_code != tk_derived_type) {
        return false;
    }
    if (!check_list(node->constructor, value_flags(flags), routine) || !check_type(t, routine)) {
        return false;
    }
    note_host_type(t, routine);
    if (!check_value_count(node)) {
        return false;
    }
    bool ok = true;
    expr_node **slot = &node->constructor;
    for (const object *field = t->derived.first_field; field; field = field->next, slot = &(*slot)->next) {
        const bool fits = field->is_pointer ? pointer_assign_check(field->type, *slot)
                                            : assign_conversion(field->type, *slot);
        ok = fits && ok;
    }
    return ok;
}

bool check_constructor(expr_node *node, std::uint32_t flags, object *routine) {
    if (node->type->type_code != tk_farray) {
        return check_structure_constructor(node, flags, routine);
    }
    return check_list(node->constructor, value_flags(flags), routine) &&
           check_array_constructor(node, routine);
}

// An implied DO has no type of its own.
bool check_implied_do(expr_node *node, std::uint32_t flags, object *routine) {
    bool ok = true;
    for (expr_node *e = node->expr_list; e; e = e->next) {
        ok = check_expression(e, flags, routine) && ok;
        e->intent_in = e->intent_in || !(flags & ecf_designator);
    }
    do_loop *const control = node->do_info;
    const std::uint32_t designator_flags = ecf_designator | ecf_section_ok;
    if (!check_do_control(control, flags & ~designator_flags, routine)) {
        return false;
    }
    if (node->has_a_scope && control->variable->type->type_code != tk_integer) {
        return fail_at(msg_implied_do_variable_must_have_integer_type, control->variable);
    }
    return ok;
}

bool is_assignment(const expr_node *node) {
    switch (node->op_kind) {
    case eok_iassign:
    case eok_lassign:
    case eok_fassign:
    case eok_xassign:
    case eok_cassign:
    case eok_sassign: return true;
    default: return false;
    }
}

// The body of a statement function is built as an assignment to its result.
bool check_stmt_function_body(expr_node *node, std::uint32_t flags, object *routine) {
    expr_node *const result = node->operands;
    expr_node *&value = result->next;
    if (!check_expression(result, ecf_designator, routine) || !check_expression(value, flags, routine) ||
        !stmt_func_walk(value) || !assign_conversion(result->type, value)) {
        return false;
    }
    result->intent_out = true;
    value->intent_in = true;
    node->type = void_type();
    if (node->op_kind == eok_cassign) {
        result->any_type_argument = value->any_type_argument = true;
    }
    return true;
}

bool check_node(expr_node *node, std::uint32_t flags, object *routine) {
    if (!classify(node)) {
        return false;
    }
    switch (node->node_kind) {
    case enk_error: return false;
    case enk_constant: return check_constant(node, routine);
    case enk_stmt_label_value: return check_label_value(node, flags);
    case enk_object: return check_object_reference(node, flags, routine);
    case enk_field: return check_field_reference(node, flags, routine);
    case enk_subscript: return check_subscripts(node, flags, routine);
    case enk_substring: return check_substring(node, flags, routine);
    case enk_triplet: return check_triplet(node, flags, routine);
    case enk_constructor: return check_constructor(node, flags, routine);
    case enk_implied_do: return check_implied_do(node, flags, routine);
    case enk_call: return check_call(node, flags, routine);
    case enk_generic_call: return check_generic_call(node, flags, routine);
    case enk_ref: {
        const bool ok = check_expression(node->reference, flags, routine);
        node->type = node->reference->type;
        return ok;
    }
    case enk_param: node->type = node->parameter->type; return true;
    case enk_data_implied_do_var: node->type = default_integer(); return true;
    case enk_operation:
        if ((flags & ecf_stmt_func) && is_assignment(node)) {
            return check_stmt_function_body(node, flags, routine);
        }
        [[fallthrough]];
    // The others are built of parts that have been checked and of references to such; so are those of ASSIGN.
    case enk_intrinsic: return check_list(node->operands, ecf_whole_assumed_size, routine);
    default: return true;
    }
}

// ---- the common end

bool is_designator(const expr_node *node, std::uint32_t flags) {
    switch (node->node_kind) {
    case enk_constant:
    case enk_field:
    case enk_subscript:
    case enk_substring:
    case enk_section:
    case enk_ref:
    case enk_param: return true;
    case enk_object:
        switch (node->object->storage_class) {
        case sc_local:
        case sc_associated:
        case sc_implied_do_var:
        case sc_use_associated: return true;
        default: return false;
        }
    case enk_implied_do: return (flags & ecf_section_ok) != 0;
    default: return false;
    }
}

bool never_folds(const expr_node *node, std::uint32_t flags) {
    switch (node->node_kind) {
    case enk_constant:
    case enk_implied_do:
    case enk_triplet:
    case enk_isum:
    case enk_data_implied_do_var:
    case enk_empty: return true;
    case enk_object: return !(flags & ecf_init_expr) || node->object->storage_class == sc_implied_do_var;
    default: return false;
    }
}

// Replaces the node by its value, if it has one. False if the context demands a value and there is none.
bool fold_node(expr_node *node, std::uint32_t flags, object *routine) {
    if (never_folds(node, flags)) {
        return true;
    }
    const bool must_fold = (flags & ecf_init_expr) != 0;
    if (retain_constant_exprs && !must_fold) {
        return true;
    }
    fold_value value;
    const bool folded = fold_expression(node, value, must_fold);
    if (must_fold && !folded) {
        return false; // nothing more is to be said about it
    }
    if (folded && has_value(value) && !retain_constant_exprs && node->node_kind != enk_error) {
        check_type(value.type, routine);
        constant *c = store_fold_value(value);
        set_expr_node_kind(node, enk_constant);
        node->constant = c;
        node->type = value.type;
        node->intent_in = true;
        begin_check(node);
    }
    return node->node_kind != enk_error;
}

bool finish_node(expr_node *node, std::uint32_t flags, object *routine) {
    const type_code code = node->type->type_code;
    if (code == tk_error || !check_type(node->type, routine)) {
        return false;
    }
    if (flags & ecf_designator) {
        return is_designator(node, flags) || fail_at(msg_expected_variable, node);
    }
    if ((flags & ecf_spec_expr) && is_restricted_context(flags) && code != tk_integer) {
        return fail_at(msg_must_be_specification_expression, node);
    }
    return fold_node(node, flags, routine);
}

} // namespace

bool check_expression(expr_node *node, std::uint32_t flags, object *routine) {
    if (!begin_check(node)) {
        return node->node_kind != enk_error;
    }
    return deep_call([&] {
        const bool ok = check_node(node, flags, routine) && finish_node(node, flags, routine);
        // A handler may have put another node in the place of this one.
        begin_check(node);
        if (!ok) {
            mark_error_node(node);
        }
        return ok;
    });
}

// ---- what may be stored to

bool check_definable(expr_node *expr) {
    for (expr_node *e = expr;;) {
        switch (e->node_kind) {
        case enk_object: {
            const object *o = e->object;
            if (o->is_constant || (o->intent_in && !o->intent_out)) {
                return fail_at(msg_must_be_definable_variable, e);
            }
            note_definition(expr);
            return true;
        }
        case enk_field: e = e->base_expr; break;
        case enk_ref: e = e->reference; break;
        case enk_subscript:
        case enk_substring:
        case enk_section: e = e->array_expr; break;
        case enk_empty: return true;
        case enk_error: return false;
        default: return fail_at(msg_expected_variable, expr);
        }
    }
}

bool section_has_vector_subscript(const expr_node *expr) {
    if (expr->node_kind != enk_section) {
        return false;
    }
    for (const expr_node *e = expr->ind_list; e; e = e->next) {
        if (e->node_kind != enk_triplet && is_array(e->type)) {
            return true;
        }
    }
    return false;
}

} // namespace zf90
