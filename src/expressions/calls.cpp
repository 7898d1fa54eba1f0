// The check of a procedure reference: the choice of a specific procedure of a generic name, and what all
// references have in common once the procedure is known.
#include "expressions/calls.h"

#include "declarations/check_scopes.h"
#include "declarations/symbols.h"
#include "driver/diagnostics.h"
#include "expressions/references.h"
#include "il/entries.h"
#include "il/types.h"
#include "intrinsics/handlers.h"
#include "intrinsics/seed_table.h"
#include "source/tokens.h"

#include <utility>

namespace zf90 {

namespace {

// The name of a program unit is no expression, but as an argument it has a message of its own.
bool check_unit_name(expr_node *actual) {
    const symbol *s = actual->node_kind == enk_symbol ? settle_symbol(actual->symbol) : nullptr;
    if (!s || (s->kind != sk_program && s->kind != sk_module && s->kind != sk_block_data) ||
        check_passable(entity_as<object>(s), actual->source_pos)) {
        return true;
    }
    mark_error_node(actual);
    return false;
}

bool names_operator(const interface *generic) {
    return generic->source_corresp.name && is_operator_code(generic->source_corresp.name->token_code);
}

// `is_named` if they are those of a procedure, not of an operator.
bool check_actuals(expr_node *actuals, bool is_named, std::uint32_t flags, object *routine) {
    flags = (flags & (ecf_restricted_a | ecf_stmt_func)) | ecf_whole_assumed_size;
    bool ok = true;
    for (expr_node *actual = actuals; actual; actual = actual->next) {
        ok = (!is_named || check_unit_name(actual)) && ok;
        ok = check_expression(actual, flags, routine) && ok;
    }
    return ok;
}

bool is_intrinsic(const object *o) { return o->storage_class == sc_intrinsic; }

// What is not allowed in the context of a reference to a procedure of the program.
bool check_context(const expr_node *node, std::uint32_t flags) {
    // The arguments of a restricted expression are checked with one half of its flags.
    if (flags & ecf_restricted_a) {
        if (node->type->type_code != tk_error) { // the name has been reported
            error_at(msg_must_be_restricted_expression, node->source_pos);
        }
        return false;
    }
    bool ok = true;
    for (const expr_node *actual = node->operands; actual && (flags & ecf_stmt_func); actual = actual->next) {
        if (is_array(actual->type) && !actual->element_sequence) {
            error_at(msg_processing_array_valued_expressions_is_not_allowed, actual->source_pos);
            ok = false;
        }
    }
    return ok;
}

void note_reference(expr_node *node, object *routine) {
    node->routine = global_entity(node->routine);
    for (expr_node *actual = node->operands; actual; actual = actual->next) {
        if (element_type_of(actual->type)->type_code == tk_fcharacter) {
            actual->any_type_argument = true;
        }
    }
    node->routine->source_corresp.referenced = true;
    note_host_reference(node->routine, routine);
}

// The end of the check, when the procedure is known and its arguments are bound.
bool finish_call(expr_node *node, std::uint32_t flags, object *routine) {
    object *specific = node->routine;
    type *result = specific->type->routine.return_type;
    node->type = instantiate_result_type(result, specific, node->operands, routine);
    if (is_intrinsic(specific)) {
        if (!run_intrinsic_handler(handler_index(specific), node, flags, routine)) {
            return false;
        }
        const source_pos outer =
            std::exchange(error_pos, node->source_pos); // the type has no place of its own
        const bool ok = check_type(node->type, routine);
        error_pos = outer;
        return ok;
    }
    if (!check_context(node, flags)) {
        return false;
    }
    note_reference(node, routine);
    return true;
}

// ---- a named procedure

// Reports what is wrong with the arguments of a call; false if something is.
bool report_binding(binding result, const expr_node *node, const expr_node *bad_actual) {
    const char *name = node->routine->source_corresp.name ? node->routine->source_corresp.name->spelling : "";
    switch (result) {
    case binding_done: return true;
    case binding_misfit:
        error_at(msg_incompatible_argument_for_procedure, bad_actual->source_pos, name);
        break;
    case binding_too_few: error_at(msg_too_few_arguments_for_procedure, node->source_pos, name); break;
    case binding_too_many:
        error_at(msg_too_many_arguments_for_procedure, bad_actual->source_pos, name);
        break;
    case binding_keyword_missing:
        error_at(msg_keyword_argument_missing_for_procedure, node->source_pos, name);
        break;
    case binding_surplus_keywords:
        error_at(msg_improper_keyword_arguments_encountered_for_procedure, node->source_pos, name);
        break;
    case binding_reported: break;
    }
    return false;
}

bool is_routine(const object *o) { return o->type && o->type->type_code == tk_routine; }

} // namespace

object *global_entity(object *o) {
    if (o->storage_class != sc_external || o->is_parameter || !o->source_corresp.name) {
        return o;
    }
    const symbol *s = global_symbol(o->source_corresp.name);
    if (!s || !s->entity ||
        (s->kind != sk_subroutine && s->kind != sk_function && s->kind != sk_external_unused)) {
        return o;
    }
    return entity_as<object>(s);
}

bool check_call(expr_node *node, std::uint32_t flags, object *routine) {
    object *callee = node->routine;
    check_object(callee);
    if (!check_actuals(node->operands, true, flags, routine) || !is_routine(callee)) {
        return false;
    }
    expr_node *bad_actual = nullptr;
    const binding result =
        bind_arguments(callee->type, node->operands, bad_actual, binding_mode::call, routine);
    if (!report_binding(result, node, bad_actual)) {
        return false;
    }
    if (callee == routine && !callee->type->routine.is_recursive) {
        error_at(msg_recursive_call_of_non_recursive_or_statement_function, node->source_pos);
        return false;
    }
    return finish_call(node, flags, routine);
}

// ---- a generic name

namespace {

struct resolution {
    object *specific = nullptr;
    interface *through = nullptr;
    bool is_ambiguous = false;
    bool is_unknown =
        false; // a procedure was named that does not exist or is in error, which has been reported
};

// The same module procedure, reached in two ways.
bool is_same_procedure(const object *a, const object *b) {
    const auto module_of = [](const object *o) {
        return o->storage_class == sc_mod_proc || o->storage_class == sc_use_associated ? o->assoc.module
                                                                                        : nullptr;
    };
    return a == b ||
           (module_of(a) && module_of(a) == module_of(b) && a->source_corresp.name == b->source_corresp.name);
}

// Whether a second procedure that takes the arguments leaves the first one in force. The intrinsic assignment
// of derived types gives way to one that the program defines.
bool gives_way(const object *second, const object *first) {
    if (!is_intrinsic(second)) {
        return is_same_procedure(second, first);
    }
    const param_type *p = second->type->routine.param_type_list;
    return p && element_type_of(p->type)->type_code == tk_any_derived;
}

// Whether a dummy argument has been reported, and would take anything.
bool has_error_dummy(const type *t) {
    for (const param_type *p = t->routine.param_type_list; p; p = p->next) {
        if (element_type_of(p->type)->type_code == tk_error) {
            return true;
        }
    }
    return false;
}

// Whether the first argument of an intrinsic form is an array, of whatever type.
bool takes_any_array(intrinsic_code form) {
    switch (form) {
    case intr_allocated:
    case intr_cshift:
    case intr_eoshift:
    case intr_lbound:
    case intr_pack:
    case intr_reshape:
    case intr_size:
    case intr_ubound: return true;
    default: return false;
    }
}

// A form fits an argument of any type as long as nothing better does: SIZE may be a function of the program
// too, for an object of derived type.
bool is_left_to_the_program(const object *member, const expr_node *actual) {
    return is_intrinsic(member) && takes_any_array(handler_index(member)) && actual && !actual->keyword &&
           !is_array(actual->type);
}

// Tries a member of an interface. True if nothing further needs to be tried.
bool try_member(object *member, interface *through, expr_node *&actuals, binding_mode mode, resolution &found,
                object *routine) {
    if (!is_routine(member) || !member->type->routine.has_param_info || has_error_dummy(member->type)) {
        found.is_unknown = true;
        return false;
    }
    if (mode == binding_mode::trial_by_rank && is_left_to_the_program(member, actuals)) {
        return false;
    }
    expr_node *bad_actual = nullptr;
    if (bind_arguments(member->type, actuals, bad_actual, mode, routine) != binding_done) {
        return false;
    }
    if (!found.specific) {
        found.specific = member;
        found.through = through;
        return is_intrinsic(member); // the order of the intrinsic forms is their priority
    }
    if (gives_way(member, found.specific)) {
        return is_intrinsic(member);
    }
    if (member->is_refused || found.specific->is_refused) {
        found = {.is_unknown = true}; // that the two clash has been reported
    } else {
        found.is_ambiguous = true;
    }
    return true;
}

resolution try_members(interface *generic, expr_node *&actuals, binding_mode mode, object *routine) {
    resolution found;
    for (interface *i = generic; i; i = i->inherited) {
        for (object_list_member *m = i->routine_prototype_list; m; m = m->next) {
            if (try_member(m->object, i, actuals, mode, found, routine)) {
                return found;
            }
        }
    }
    return found;
}

// The specific procedure of a generic reference. Dummy arrays of explicit shape take arrays of any rank, but
// two procedures that only the ranks tell apart are told apart by them.
resolution resolve(interface *generic, expr_node *&actuals, object *routine) {
    for (interface *i = generic; i && !i->source_corresp.referenced; i = i->inherited) {
        i->source_corresp.referenced = true;
    }
    const resolution found = try_members(generic, actuals, binding_mode::trial_by_rank, routine);
    return found.specific || found.is_unknown ? found
                                              : try_members(generic, actuals, binding_mode::trial, routine);
}

void report_no_match(const expr_node *node, const interface *generic) {
    const atom *name = generic->source_corresp.name;
    const char *spelling = name ? name->spelling : "";
    const int token = name ? name->token_code : 0;
    if (token == tok_assign) {
        error_at(msg_invalid_argument_for_assignment, node->source_pos);
    } else if (token == tok_defined_op) {
        error_at(msg_no_matching_routine_for_operation, node->source_pos, spelling);
    } else if (token >= tok_power && token <= tok_neqv) {
        error_at(msg_invalid_argument_for_operation, node->source_pos, spelling);
    } else if (generic->symbol_link && generic->symbol_link->scope_depth == -1) {
        error_at(msg_invalid_argument_for_intrinsic_routine, node->source_pos, spelling);
    } else {
        error_at(msg_no_matching_routine_for_generic_name, node->source_pos, spelling);
    }
}

} // namespace

bool check_generic_call(expr_node *node, std::uint32_t flags, object *routine) {
    interface *generic = node->generic;
    expr_node *actuals = node->operands;
    if (!check_actuals(actuals, !names_operator(generic), flags, routine)) {
        return false;
    }
    const resolution found = resolve(generic, actuals, routine);
    if (found.is_ambiguous) {
        error_at(msg_ambiguous_generic_interface, node->source_pos);
        return false;
    }
    if (!found.specific) {
        if (!found.is_unknown) {
            report_no_match(node, generic);
        }
        return false;
    }
    set_expr_node_kind(node, enk_call);
    node->routine = found.specific;
    node->operands = actuals;
    node->interface = found.through;
    check_object(found.specific);
    expr_node *bad_actual = nullptr;
    return bind_arguments(found.specific->type, node->operands, bad_actual, binding_mode::call, routine) ==
               binding_done &&
           finish_call(node, flags, routine);
}

} // namespace zf90
