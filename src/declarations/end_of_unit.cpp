// The final kinds of names, and the names that are never used.
#include "declarations/end_of_unit.h"

#include "declarations/attributes.h"
#include "declarations/derived_types.h"
#include "declarations/external_names.h"
#include "declarations/implicit.h"
#include "declarations/intrinsic_names.h"
#include "declarations/names_in_error.h"
#include "declarations/scopes.h"
#include "declarations/symbols.h"
#include "declarations/variables.h"
#include "expressions/check.h"
#include "expressions/predicates.h"
#include "il/entries.h"
#include "il/types.h"
#include "source/files.h"

namespace zf90 {

namespace {

bool is_known(const type *t) { return t->type_code != tk_unknown; }

void type_if_untyped(symbol *s) {
    if (!(s->flags & sf_typed)) {
        apply_implicit(s, null_pos);
    }
}

void enter_if_named(symbol *s) {
    if (s->name != error_atom) {
        enter_external(s);
    }
}

// ---- data

// In BLOCK DATA only what lies in COMMON has a meaning.
void check_block_data_variable(const symbol *s, object *o) {
    if ((s->var_flags & (vf_in_common | vf_equivalenced)) || (s->flags & sf_implied_do) || o->is_constant) {
        return;
    }
    if (o->variant.initializer) {
        warning_at(msg_data_initialization_of_local_variable_ignored, s->decl_position, s->name->spelling);
        o->variant.initializer = nullptr;
    } else if (!(s->var_flags & vf_initialized)) {
        warning_at(msg_declaration_of_local_variable_ignored, s->decl_position, s->name->spelling);
    }
}

// Units that have no automatic objects.
bool has_fixed_sizes(program_unit_kind kind) {
    return kind == uk_program || kind == uk_module || kind == uk_block_data;
}

bool has_length_expression(const type *t) {
    return t->type_code == tk_fcharacter && t->character.length.kind == bound_expression;
}

// A length or bounds that only a dummy argument may have, or an automatic object in a procedure. The variable
// is of no type from then on, so that there is one message about it.
void check_extent(symbol *s, object *o) {
    const type *t = element_type_of(o->type);
    if (t->type_code == tk_fcharacter && t->character.length.kind == bound_assumed && !o->is_constant) {
        error_at(msg_variable_is_character_and_is_not_dummy_argument, s->decl_position, s->name->spelling);
        give_up_type(s);
        return;
    }
    // The length of what is not saved is an expression like others, which its check refuses.
    const bool has_open_length = o->is_saved && has_length_expression(t);
    if (!(has_nonconstant_bound(o->type) || has_open_length) ||
        !has_fixed_sizes(unit_kind_of(s->scope_depth))) {
        return;
    }
    // Whatever the bounds name, they are good if they are constant.
    if (!check_type(o->type, nullptr)) {
        o->type = error_type();
    } else if (has_nonconstant_bound(o->type)) {
        error_at(msg_array_has_nonconstant_bounds_and_is_not_dummy, s->decl_position, s->name->spelling);
        o->type = error_type();
    } else if (has_open_length && has_length_expression(t)) {
        error_at(msg_entity_should_not_be, s->decl_position, attr_names[attr_unit_variable],
                 attr_names[attr_automatic]);
        o->type = error_type();
    }
}

void finish_variable(symbol *s) {
    type_if_untyped(s);
    object *o = entity_as<object>(s);
    if (saves_all_at(s->scope_depth) && can_be_saved(o)) {
        o->is_saved = true;
    }
    if (!o->is_parameter && !o->is_result && !s->from_module) {
        check_extent(s, o);
    }
    if (unit_kind_of(s->scope_depth) == uk_block_data && !o->is_result) {
        check_block_data_variable(s, o);
    }
}

void finish_implied_do_variable(symbol *s) {
    auto *t = entity_as<type>(s);
    set_symbol_kind(s, sk_variable);
    object *o = new_object();
    tie_to_symbol(o, s);
    o->storage_class = sc_implied_do_var;
    o->type = t;
    s->entity = o;
    type_if_untyped(s);
}

// ---- procedures

// An external procedure of which the unit says no more than it has said by now.
void make_external(symbol *s, symbol_kind kind, type *return_type) {
    set_symbol_kind(s, kind);
    object *o = new_object();
    tie_to_symbol(o, s);
    o->source_corresp.scope_depth = 0;
    o->storage_class = sc_external;
    o->type = new_routine_type(o, return_type);
    s->entity = o;
    if (is_known(return_type)) {
        s->flags |= sf_typed;
    }
    enter_if_named(s);
}

// Whether CALL makes a name a subroutine. A name with a declared type that is referenced as a function too
// stays a function: the CALL is the mistake.
bool is_called_subroutine(const symbol *s) {
    return (s->flags & sf_called_as_subroutine) &&
           !(has_explicit_type(s) && (s->flags & sf_called_as_function));
}

// Whether a scalar that has been called is data all the same, by what else is done with its name: the
// reference with a list is the mistake then, or, of a name with a declared type, the CALL.
bool is_called_data(const symbol *s) {
    return (s->flags & sf_used_as_data) && (has_explicit_type(s) || !(s->flags & sf_called_as_subroutine));
}

// A name of EXTERNAL, or one that was called and is no intrinsic.
void finish_pending_external(symbol *s) {
    if (is_called_subroutine(s)) {
        make_external(s, sk_subroutine, void_type());
    } else if (s->flags & sf_called) {
        type_if_untyped(s);
        auto *t = entity_as<type>(s);
        make_external(s, t->type_code == tk_void ? sk_subroutine : sk_function, t);
    } else if (s->flags & sf_typed) {
        make_external(s, sk_function, entity_as<type>(s));
    } else {
        make_external(s, sk_external_unused, unknown_type());
    }
}

void finish_unused_external(symbol *s) {
    object *o = entity_as<object>(s);
    if (o->storage_class == sc_blockdata) { // which has been defined behind
        set_symbol_kind(s, sk_block_data);
        s->entity = o;
        return;
    }
    type *&return_type = o->type->routine.return_type;
    if (!(s->flags & sf_called)) {
        if (!is_known(return_type)) {
            return_type = unspec_routine_type();
        }
    } else if (is_called_subroutine(s)) {
        set_symbol_kind(s, sk_subroutine);
        s->entity = o;
        s->flags |= sf_typed;
        return_type = void_type();
    } else {
        set_symbol_kind(s, sk_function);
        s->entity = o;
        type_if_untyped(s);
    }
    enter_if_named(s);
}

void finish_undetermined(symbol *s) {
    name_locator name{s->name, s->decl_position};
    if (!(s->flags & sf_called) || is_array(entity_as<type>(s)) || is_quiet(s) || is_called_data(s)) {
        type_if_untyped(s);
        const bool is_called = (s->flags & sf_called) != 0;
        s = make_variable(s, name);
        s->var_flags |= is_called ? std::uint32_t{vf_called_data} : 0u;
        finish_variable(s);
        return;
    }
    const bool is_intrinsic = s->flags & sf_called_as_subroutine ? find_intrinsic_subroutine(s) != nullptr
                                                                 : find_intrinsic_function(s) != nullptr;
    if (is_intrinsic) {
        declare_intrinsic(s, name);
    } else {
        finish_pending_external(s);
    }
}

// A dummy argument turns out to be a procedure of that kind.
void make_dummy_procedure(symbol *s, symbol_kind kind, type *return_type) {
    object *o = entity_as<object>(s);
    set_symbol_kind(s, kind);
    s->entity = o;
    o->storage_class = sc_external;
    if (o->type->type_code == tk_routine) {
        o->type->routine.return_type = return_type;
    } else {
        o->type = new_routine_type(o, return_type);
    }
    if (is_known(return_type)) {
        s->flags |= sf_typed;
    }
    if (kind == sk_dummy_function) {
        type_if_untyped(s);
    }
}

void finish_dummy(symbol *s) {
    object *o = entity_as<object>(s);
    const bool is_scalar = !is_array(o->type) && o->type->type_code != tk_error;
    if ((s->flags & sf_called) && is_scalar && !is_called_data(s)) {
        if ((s->flags & sf_called_as_subroutine) && !(s->flags & sf_typed)) {
            make_dummy_procedure(s, sk_dummy_subroutine, void_type());
        } else {
            make_dummy_procedure(s, sk_dummy_function, o->type);
        }
        return;
    }
    const bool is_called = (s->flags & sf_called) != 0;
    set_symbol_kind(s, sk_variable);
    s->entity = o;
    s->var_flags |= is_called ? std::uint32_t{vf_called_data} : 0u;
    finish_variable(s);
}

void finish_dummy_procedure(symbol *s) {
    if (!(s->flags & sf_called)) {
        type *&return_type = entity_as<object>(s)->type->routine.return_type;
        if (!is_known(return_type)) {
            return_type = unspec_routine_type();
        }
    } else if (s->flags & sf_called_as_subroutine) {
        make_dummy_procedure(s, sk_dummy_subroutine, void_type());
    } else {
        make_dummy_procedure(s, sk_dummy_function, entity_as<object>(s)->type->routine.return_type);
    }
}

// ---- host association

// What was done with the name here is passed on outward; its meaning is settled later.
void pass_on_marks(const symbol *s) {
    auto *outer = static_cast<symbol *>(s->aux);
    if (!outer) {
        return;
    }
    const bool referenced = (s->flags & sf_referenced) || (s->aux2 & cf_referenced);
    const bool used_as_bound = (s->flags & sf_used_as_bound) || (s->aux2 & cf_used_as_bound);
    if (outer->kind == sk_host_candidate) {
        outer->aux2 |= (referenced ? cf_referenced : 0u) | (used_as_bound ? cf_used_as_bound : 0u);
    } else {
        outer->flags |= (referenced ? sf_referenced : 0u) | (used_as_bound ? sf_used_as_bound : 0u);
    }
    outer->flags |=
        s->flags & (sf_called | sf_called_as_subroutine | sf_called_as_function | sf_used_as_data);
}

} // namespace

bool can_be_saved(const object *o) {
    return o->storage_class == sc_local && !o->is_parameter && !o->is_result && !o->is_auto &&
           !o->is_constant;
}

void finish_symbol(symbol *s) {
    switch (s->kind) {
    case sk_derived_type: settle_type_access(s); break;
    case sk_variable: finish_variable(s); break;
    case sk_subroutine:
    case sk_function:
        type_if_untyped(s);
        enter_if_named(s);
        break;
    case sk_stmt_function:
    case sk_data_name:
    case sk_dummy_function: type_if_untyped(s); break;
    case sk_label:
        if (!(s->aux2 & (lf_defined | lf_reported))) {
            error_at(msg_label_was_referenced_but_not_defined, s->decl_position, s->name->spelling);
        }
        break;
    case sk_implied_do_var: finish_implied_do_variable(s); break;
    case sk_undetermined: finish_undetermined(s); break;
    case sk_external_pending: finish_pending_external(s); break;
    case sk_module_procedure:
        if (!(s->aux2 & pf_body_seen)) {
            error_at(msg_module_procedure_is_referenced_but_not_declared, s->decl_position,
                     s->name->spelling);
        }
        break;
    case sk_forward_type: finish_forward_type(s); break;
    case sk_external_unused: finish_unused_external(s); break;
    case sk_dummy: finish_dummy(s); break;
    case sk_dummy_procedure: finish_dummy_procedure(s); break;
    case sk_interface: entity_as<interface>(s)->is_public = (s->flags & sf_public) != 0; break;
    case sk_namelist: entity_as<namelist_group>(s)->is_public = (s->flags & sf_public) != 0; break;
    case sk_host_candidate: pass_on_marks(s); break;
    default: break;
    }
}

// ---- names that are never used

namespace {

struct unused_report {
    error_code message{}; // 0: none
    bool strong = false;  // a warning, unless the declaration is in an included file; else a remark
};

unused_report report_of_variable(const symbol *s) {
    const object *o = entity_as<object>(s);
    if (unit_kind_of(curr_scope_depth) == uk_block_data || (s->var_flags & vf_in_common) ||
        (s->flags & sf_implied_do)) {
        return {};
    }
    if (s->var_flags & vf_equivalenced) {
        const object *storage = o->storage_class == sc_associated ? o->assoc.variable : o;
        if (storage->source_corresp.referenced) {
            return {};
        }
        return {msg_variable_declared_and_never_referenced, true};
    }
    if (o->is_result) {
        const object *function = o->variant.result_var_function;
        if (!function || function->source_corresp.name == s->name) {
            return {};
        }
        return {msg_result_variable_never_referenced, true};
    }
    if (o->is_parameter) {
        return {msg_dummy_argument_declared_and_never_referenced, false};
    }
    // A named constant is reported as a variable too. Intended.
    return {msg_variable_declared_and_never_referenced, true};
}

unused_report report_of(const symbol *s) {
    switch (s->kind) {
    case sk_derived_type: return {msg_type_declared_and_never_referenced, false};
    case sk_variable: return report_of_variable(s);
    case sk_subroutine:
    case sk_function:
    case sk_internal_subroutine:
    case sk_internal_function:
        if (s->entity == curr_routine()) {
            return {};
        }
        return {msg_routine_declared_and_never_referenced, false};
    case sk_stmt_function: return {msg_statement_function_declared_and_never_referenced, true};
    case sk_specific_function:
    case sk_specific_subroutine:
    case sk_intrinsic_function:
    case sk_intrinsic_subroutine: return {msg_intrinsic_declared_and_never_referenced, false};
    case sk_label: {
        const label_kind kind = entity_as<label>(s)->kind;
        if (kind == lk_specification || kind == lk_else_or_elseif) {
            return {};
        }
        return {msg_label_defined_and_never_referenced, false};
    }
    case sk_undetermined: return {msg_variable_declared_and_never_referenced, true};
    case sk_external_pending:
    case sk_external_unused: return {msg_routine_declared_and_never_referenced, false};
    case sk_dummy:
    case sk_dummy_function:
    case sk_dummy_subroutine:
    case sk_dummy_procedure: return {msg_dummy_argument_declared_and_never_referenced, false};
    case sk_interface: return {msg_interface_declared_and_never_referenced, false};
    case sk_namelist: return {msg_namelist_declared_and_never_referenced, false};
    default: return {};
    }
}

void report_if_unused(const symbol *s) {
    if ((s->flags & (sf_referenced | sf_used_as_bound | sf_public)) || is_interface_body()) {
        return;
    }
    const unused_report report = report_of(s);
    if (report.message == error_code{}) {
        return;
    }
    const bool in_included_file = find_position(s->decl_position.seq).depth > 1;
    if (report.strong && !in_included_file) {
        warning_at(report.message, s->decl_position, s->name->spelling);
    } else {
        remark_at(report.message, s->decl_position, s->name->spelling);
    }
}

} // namespace

// Whether a storage is used shows in the names that lie in it, in whatever order these are reported.
static void mark_used_storage(const symbol *s) {
    if (s->kind != sk_variable || !(s->flags & sf_referenced)) {
        return;
    }
    const object *o = entity_as<object>(s);
    if (o->storage_class == sc_associated && o->assoc.variable) {
        o->assoc.variable->source_corresp.referenced = true;
    }
}

void finish_row(std::int32_t depth) {
    // Ahead of all reports: a variable is in use if another one is that shares its storage.
    for (const symbol *s = scope_stack[depth].first_symbol; s; s = s->next_in_scope) {
        if (s->flags & sf_referenced) {
            mark_entity(s);
        }
    }
    for (const symbol *s = scope_stack[depth].first_symbol; s; s = s->next_in_scope) {
        mark_used_storage(s);
    }
    for (symbol *s = scope_stack[depth].first_symbol; s; s = s->next_in_scope) {
        // First, for the entities take their accessibility from it: a PUBLIC or PRIVATE without a list
        // reaches the names declared ahead of it too.
        if (!(s->flags & sf_access_given)) {
            s->flags = (s->flags & ~std::uint32_t{sf_public}) |
                       (scope_stack[depth].names_public ? std::uint32_t{sf_public} : 0u);
        }
        finish_symbol(s);
        report_if_unused(s);
    }
}

} // namespace zf90
