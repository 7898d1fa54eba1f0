// The check of types: the expressions in bounds and lengths, which become constants where they have a value,
// the parameters of routines, the components of derived types, and the layout of all of these.
#include "constants/folding.h"
#include "declarations/check_scopes.h"
#include "declarations/symbols.h"
#include "driver/deep_call.h"
#include "expressions/predicates.h"
#include "expressions/references.h"
#include "il/types.h"

#include <algorithm>

namespace zf90 {

namespace {

// ---- bounds and lengths

bool check_bound(bound &b, object *routine) {
    if (b.kind != bound_expression) {
        return true;
    }
    if (!check_expression(b.expr, ECF_SPEC, routine)) {
        return false;
    }
    b.expr->intent_in = true;
    fold_value value;
    const bool ok = fold_expression(b.expr, value, false);
    if (has_value(value)) {
        set_constant_bound(b, value.integer);
    }
    return ok;
}

bool check_bounds(bound_info_entry *table, unsigned rank, object *routine) {
    if (!table || !begin_check(table)) {
        return true;
    }
    bool ok = true;
    for (unsigned i = 0; i < 2 * rank; ++i) {
        ok = check_bound(table->bounds[i], routine) && ok;
    }
    return ok;
}

bool check_length(type *t, object *routine) {
    bound &length = t->character.length;
    if (length.kind == bound_same_as) {
        const bool ok = check_expression(length.expr, 0, routine);
        const bound &known = char_length_of_type(t);
        if (known.kind == bound_constant) {
            set_constant_bound(length, known.value);
        }
        return ok;
    }
    if (!check_bound(length, routine)) {
        return false;
    }
    if (length.kind == bound_constant) {
        length.value = std::max(length.value, 0);
    }
    return true;
}

// The expressions whose shape a type has. They are values of the run whatever they are: only what a reference
// leads to is checked.
bool check_shape_arguments(expr_node *list, object *routine) {
    bool ok = true;
    for (expr_node *e = list; e; e = e->next) {
        if (e->node_kind == enk_ref && begin_check(e)) {
            ok = check_expression(e->reference, 0, routine) && ok;
            e->type = e->reference->type;
        } else {
            ok = check_expression(e, 0, routine) && ok;
        }
    }
    return ok;
}

bool check_array(type *t, object *routine) {
    type *const element = t->array.element_type;
    const std::uint32_t size_before = element->size;
    bool ok = check_type(element, routine);
    if (element->size != size_before) {
        t->size = 0;
    }
    t->is_numeric = element->is_numeric;
    t->is_character = element->is_character;
    t->contains_ptrs = element->contains_ptrs;
    if (t->array.shape_kind <= as_shaped) {
        return check_bounds(t->array.bound, t->array.rank, routine) && ok;
    }
    return check_shape_arguments(t->array.args, routine) && ok;
}

// ---- routines and derived types

bool check_routine(type *t, object *routine) {
    routine_variant &r = t->routine;
    bool ok = true;
    if (r.return_type) {
        ok = check_type(r.return_type, routine);
        r.return_type->source_corresp.referenced = true;
    }
    if (r.assoc_routine && r.assoc_routine->is_parameter) {
        r.assoc_routine = nullptr;
    }
    for (param_type *p = r.param_type_list; p; p = p->next) {
        p->type->source_corresp.referenced = true;
        ok = check_type(p->type, routine) && ok;
    }
    return ok;
}

// A type that was named ahead of its definition and turned out to be the host's.
void relocate_to_host(type *&t) {
    if (!t->symbol_link || t->symbol_link->kind != sk_host_link) {
        return;
    }
    const symbol *s = t->symbol_link;
    while (s->kind == sk_host_link) {
        s = entity_as<symbol>(s);
    }
    if (s->kind == sk_derived_type) {
        t = entity_as<type>(s);
    }
}

void report_component(error_code code, const object *field) {
    const atom *name = field->source_corresp.name;
    error_at(code, field->source_corresp.decl_position, name ? name->spelling : "");
}

bool check_derived(type *t, object *routine) {
    bool ok = true;
    for (object *field = t->derived.first_field; field; field = field->next) {
        if (element_type_of(field->type)->type_code == tk_derived_type) {
            relocate_to_host(is_array(field->type) ? field->type->array.element_type : field->type);
        }
        check_object(field);
        ok = check_type(field->type, routine) && ok;
        const type *element = element_type_of(field->type);
        if (element->type_code != tk_derived_type) {
            continue;
        }
        if (t->derived.is_seq && !element->derived.is_seq && !element->derived.in_doubt) {
            report_component(msg_sequence_type_component_is_not_of_sequence_type, field);
            ok = false;
        }
    }
    return ok;
}

bool check_parts(type *t, object *routine) {
    switch (t->type_code) {
    case tk_fcharacter: return check_length(t, routine);
    case tk_farray: return check_array(t, routine);
    case tk_routine: return check_routine(t, routine);
    case tk_derived_type: return check_derived(t, routine);
    default: return true;
    }
}

} // namespace

bool check_type(type *t, object *routine) {
    if (!begin_check(t)) {
        return true;
    }
    return deep_call([&] {
        const bool ok = check_parts(t, routine);
        if (t->type_code == tk_derived_type) {
            t->size = 0; // bounds of components that have become constant count from now on
        }
        if (ok) {
            complete_type(t);
        }
        return ok;
    });
}

bool check_component_access(const type *t) {
    // What a type of another module shows is the matter of that module.
    if (!t->is_public || (t->symbol_link && t->symbol_link->from_module)) {
        return true;
    }
    bool ok = true;
    for (const object *field = t->derived.first_field; field; field = field->next) {
        const type *element = element_type_of(field->type);
        if (field->is_public && element->type_code == tk_derived_type && !element->is_public) {
            report_component(msg_public_derived_type_component_is_of_private_type, field);
            ok = false;
        }
    }
    return ok;
}

} // namespace zf90
