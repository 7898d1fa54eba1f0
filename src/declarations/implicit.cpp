// The states of a symbol's type.
#include "declarations/implicit.h"

#include "declarations/intrinsic_names.h"
#include "declarations/routines.h"
#include "declarations/scopes.h"
#include "declarations/symbols.h"
#include "driver/diagnostics.h"
#include "il/types.h"

namespace zf90 {

namespace {

void recompute_size(type *array) {
    array->size = 0;
    complete_type(array);
}

// Whether the name reports a conflict with its type so far: one that was declared has been reported as
// declared twice, and one that comes from mere use gives way.
bool reports_conflict(const symbol *s) {
    return (s->flags & sf_type_implicit) && !(s->flags & sf_inferred) && s->name != error_atom;
}

// Whether a name of that kind has no type, so that declaring one is the first word about it.
bool has_no_type(symbol_kind kind) {
    switch (kind) {
    case sk_derived_type:
    case sk_forward_type:
    case sk_interface:
    case sk_module_procedure:
    case sk_namelist: return true;
    default: return false;
    }
}

// Puts the declared type in the place that holds the symbol's type so far.
bool settle(symbol *s, type *&place, type *declared, bool override_type) {
    const bool is_known_array = place && is_array(place);
    type *&scalar = is_known_array ? place->array.element_type : place;
    if (!scalar || scalar->type_code == tk_unknown) {
        scalar = declared;
        s->flags |= sf_typed;
        if (is_known_array) {
            recompute_size(place);
        }
        return true;
    }
    if (scalar->type_code == tk_error) {
        s->flags |= sf_typed; // what it is has been reported as unknown
        return true;
    }
    if ((s->flags & sf_type_implicit) && scalar == declared) {
        s->flags &= ~std::uint32_t{sf_type_implicit};
        return true;
    }
    if (reports_conflict(s)) {
        error(msg_type_declaration_conflicts_with_implied_type);
        s->flags |= sf_referenced;
        declared = error_type(); // which of the two is meant is not known
    }
    if (override_type) {
        scalar = declared;
        s->flags = (s->flags | sf_typed) & ~std::uint32_t{sf_type_implicit};
        if (is_known_array) {
            recompute_size(place);
        }
    }
    return false;
}

// The result of a routine of the current scope: the unit's own, or an entry's. Null if it has none yet.
object *result_of(const object *routine) {
    const scope *u = curr_row().il_scope;
    if (!u) {
        return nullptr;
    }
    if (u->assoc_routine == routine) {
        return u->function_result_var;
    }
    for (const entry_description *e = u->entries; e; e = e->next) {
        if (e->assoc_routine == routine) {
            return e->function_result_var;
        }
    }
    return nullptr;
}

bool has_explicit_type(const object *o) { return o->symbol_link && has_explicit_type(o->symbol_link); }

// The type of a result is the type of its function. The function's own flag follows the result's.
void settle_function_of(symbol *result, type *declared, bool override_type) {
    object *routine = entity_as<object>(result)->variant.result_var_function;
    symbol *function = routine ? routine->symbol_link : nullptr;
    if (!function || (function->kind != sk_function && function->kind != sk_internal_function &&
                      function->kind != sk_dummy_function)) {
        return;
    }
    const std::uint32_t implied = result->flags & sf_type_implicit;
    function->flags = (function->flags & ~std::uint32_t{sf_type_implicit}) | implied;
    type *&return_type = routine_of(routine).return_type;
    if (override_type || return_type->type_code == tk_unknown) {
        return_type = declared;
        function->flags |= sf_typed;
    }
    raise_result_storage(entity_as<object>(result));
}

} // namespace

type *type_of_symbol(const symbol *s) {
    switch (s->kind) {
    case sk_variable:
    case sk_subroutine:
    case sk_function:
    case sk_internal_subroutine:
    case sk_internal_function:
    case sk_stmt_function:
    case sk_specific_function:
    case sk_specific_subroutine:
    case sk_program:
    case sk_block_data:
    case sk_external_unused:
    case sk_dummy:
    case sk_dummy_function:
    case sk_dummy_subroutine:
    case sk_dummy_procedure: return s->entity ? entity_as<object>(s)->type : nullptr;
    case sk_undetermined:
    case sk_data_name:
    case sk_external_pending: return entity_as<type>(s);
    default: return nullptr;
    }
}

bool is_character_symbol(const symbol *s) {
    const type *t = type_of_symbol(s);
    return t && t->type_code == tk_fcharacter;
}

void apply_implicit(symbol *s, source_pos position) {
    if ((s->flags & sf_typed) && s->name != error_atom) {
        return;
    }
    type *implied = error_type();
    error_code code = msg_unknown_error;
    if (s->name != error_atom) {
        implied = implicit_type_of(s);
        if (!implied) {
            code = msg_identifier_has_not_been_explicitly_typed;
        } else if (implied->type_code != tk_integer && s->kind == sk_variable &&
                   (s->flags & sf_used_as_bound)) {
            code = msg_implicit_type_of_conflicts_with_use_as_array;
        } else if (implied->type_code != tk_integer && (s->flags & sf_implied_do)) {
            code = msg_implicit_type_of_conflicts_with_use_as_implied;
        }
    }
    if (code != msg_unknown_error) {
        error_at(code, position == null_pos ? s->decl_position : position, s->name->spelling);
        implied = error_type();
        s->flags |= sf_referenced; // one message about it is enough
    } else {
        s->flags |= sf_type_implicit;
    }
    switch (s->kind) {
    case sk_function:
    case sk_internal_function: set_routine_type(s, implied, true); break;
    case sk_subroutine:
    case sk_internal_subroutine: set_routine_type(s, void_type(), true); break;
    default:
        if (set_type(s, implied, true) && implied->type_code == tk_derived_type && implied->symbol_link) {
            note_use(use_declared, implied->symbol_link, s->decl_position);
        }
        break;
    }
}

bool set_type(symbol *s, type *declared, bool override_type) {
    switch (s->kind) {
    case sk_variable:
    case sk_dummy: {
        object *o = entity_as<object>(s);
        const bool good = settle(s, o->type, declared, override_type);
        if (o->is_result) {
            settle_function_of(s, o->type, override_type);
        }
        return good;
    }
    case sk_implied_do_var:
    case sk_undetermined:
    case sk_data_name:
    case sk_external_pending: {
        type *held = entity_as<type>(s);
        const bool good = settle(s, held, declared, override_type);
        s->entity = held;
        return good;
    }
    case sk_stmt_function:
        return settle(s, routine_of(entity_as<object>(s)).return_type, declared, override_type);
    case sk_dummy_function:
    case sk_dummy_procedure: {
        s->kind = sk_dummy_function; // the object stays
        const bool good = set_dummy_proc_type(s, declared);
        s->flags |= sf_typed;
        return good;
    }
    case sk_intrinsic_function:
        if (!(s->flags & sf_type_implicit) && !may_have_type(s, declared)) {
            error(msg_inconsiten_type_of_intrinsic_procedure);
            return false;
        }
        s->aux2 |= pf_type_declared;
        return true;
    default:
        if (reports_conflict(s) || (has_no_type(s->kind) && s->name != error_atom)) {
            error(msg_type_declaration_conflicts_with_implied_type);
        }
        return false;
    }
}

bool set_routine_type(symbol *s, type *declared, bool override_type) {
    object *routine = entity_as<object>(s);
    const bool good = settle(s, routine_of(routine).return_type, declared, override_type);
    object *result = declared->type_code != tk_void && (good || override_type) ? result_of(routine) : nullptr;
    if (result && !has_explicit_type(result)) {
        result->type = declared;
        if (result->symbol_link) {
            result->symbol_link->flags |= sf_typed | (s->flags & sf_type_implicit);
        }
    }
    if (result) {
        raise_result_storage(result);
    }
    return good;
}

bool set_dummy_proc_type(symbol *s, type *declared) {
    object *o = entity_as<object>(s);
    bool good = true;
    if (!o->type || o->type->type_code != tk_routine) {
        o->type = new_routine_type(o, declared);
    } else if (type *&return_type = o->type->routine.return_type;
               return_type->type_code == tk_unknown || return_type->type_code == tk_unspec_routine) {
        return_type = declared;
    } else if ((s->flags & sf_type_implicit) && return_type == declared) {
        s->flags &= ~std::uint32_t{sf_type_implicit};
    } else {
        good = (s->flags & sf_inferred) != 0;
        if (reports_conflict(s)) {
            error(msg_type_declaration_conflicts_with_implied_type);
        }
    }
    if (declared->type_code != tk_unknown) {
        s->flags |= sf_typed;
    }
    return good;
}

} // namespace zf90
