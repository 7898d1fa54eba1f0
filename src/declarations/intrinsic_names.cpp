// Names that become intrinsic procedures.
#include "declarations/intrinsic_names.h"

#include "declarations/names_in_error.h"
#include "declarations/scopes.h"
#include "driver/diagnostics.h"
#include "expressions/predicates.h"
#include "il/types.h"

namespace zf90 {

namespace {

bool is_number(const type *t) {
    return t->type_code == tk_integer || t->type_code == tk_float || t->type_code == tk_complex;
}

// A form for numbers of all types, of which the result may be of another type than the table has.
bool takes_any_number(const object *form) {
    const param_type *p = form->type->routine.param_type_list;
    return p && element_type_of(p->type)->type_code == tk_any_numerical;
}

// Whether a reference to one of the forms can be of that type.
bool may_be_of_type(const interface *generic, const type *declared) {
    for (const object_list_member *m = generic->routine_prototype_list; m; m = m->next) {
        const type *result = element_type_of(m->object->type->routine.return_type);
        if (types_equal(declared, result) || type_matches_dummy(declared, result) ||
            (is_number(declared) && is_number(result) && takes_any_number(m->object))) {
            return true;
        }
    }
    return false;
}

} // namespace

bool may_have_type(const symbol *s, type *declared) {
    const type *element = element_type_of(declared);
    return element->type_code == tk_error || s->kind != sk_intrinsic_function ||
           may_be_of_type(entity_as<interface>(s), element);
}

symbol *declare_intrinsic(symbol *s, name_locator &name) {
    type *declared = nullptr;
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
        if (has_explicit_type(s)) {
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
            give_up_type(s);
        }
        return s;
    }
    set_symbol_kind(s, seeded->kind);
    s->entity = seeded->entity;
    if (declared) {
        if (!may_have_type(s, declared)) {
            error_at(msg_inconsiten_type_of_intrinsic_procedure, s->decl_position);
        }
        s->aux2 |= pf_type_declared;
    }
    return s;
}

} // namespace zf90
