// Names that become intrinsic procedures.
#include "declarations/intrinsic_names.h"

#include "declarations/scopes.h"
#include "driver/diagnostics.h"
#include "expressions/predicates.h"
#include "il/types.h"
#include "intrinsics/seed_table.h"

namespace zf90 {

namespace {

bool gives_type(const object *function, const type *declared) {
    const type *result = element_type_of(function->type->routine.return_type);
    return types_equal(declared, result) || type_matches_dummy(declared, result);
}

// Whether some reference to the intrinsic procedure can have a result of the declared type.
bool can_give_type(const symbol *seeded, const type *declared) {
    if (seeded->kind == sk_specific_function) {
        return gives_type(entity_as<object>(seeded), declared);
    }
    const auto *generic = entity_as<interface>(seeded);
    if (generic == seed_interface(intr_abs) && declared->type_code == tk_integer) {
        return true; // its form for all numbers tells only the result that complex ones have
    }
    const object_list_member *form = generic->routine_prototype_list;
    while (form && !gives_type(form->object, declared)) {
        form = form->next;
    }
    return form != nullptr;
}

} // namespace

symbol *declare_intrinsic(symbol *s, name_locator &name) {
    const type *declared = nullptr;
    if (!s) {
        s = new_symbol(sk_undetermined, name, curr_scope_depth);
    }
    switch (s->kind) {
    case sk_specific_function:
    case sk_specific_subroutine:
    case sk_intrinsic_function:
    case sk_intrinsic_subroutine: return s;
    case sk_undetermined:
    case sk_external_pending:
        if ((s->flags & (sf_typed | sf_type_implicit)) == sf_typed) {
            declared = entity_as<type>(s);
        }
        break;
    default: break;
    }
    const symbol *seeded = find_intrinsic_function(s);
    if (!seeded) {
        seeded = find_intrinsic_subroutine(s);
    }
    if (!seeded) {
        if (s->name != error_atom) {
            error_at(msg_invalid_intrinsic_routine_name, name.position);
        }
        return s;
    }
    set_symbol_kind(s, seeded->kind);
    s->entity = seeded->entity;
    if (declared) {
        if (!can_give_type(seeded, declared)) {
            error_at(msg_inconsiten_type_of_intrinsic_procedure, s->decl_position);
        }
        s->aux2 |= pf_type_declared;
    }
    return s;
}

} // namespace zf90
