// Names that become intrinsic procedures.
#include "declarations/intrinsic_names.h"

#include "declarations/scopes.h"
#include "driver/diagnostics.h"
#include "expressions/predicates.h"

namespace zf90 {

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
        if (seeded->kind == sk_specific_function &&
            !types_equal(declared, entity_as<object>(seeded)->type->routine.return_type)) {
            error_at(msg_inconsiten_type_of_intrinsic_procedure, s->decl_position);
        }
        s->aux2 |= pf_type_declared;
    }
    return s;
}

} // namespace zf90
