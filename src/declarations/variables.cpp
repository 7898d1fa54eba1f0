// Names that become variables.
#include "declarations/variables.h"

#include "declarations/implicit.h"
#include "declarations/scopes.h"
#include "il/entries.h"
#include "il/types.h"

namespace zf90 {

namespace {

// The name gets the object that it has stood for so far by its type only.
void give_object(symbol *s) {
    type *t = entity_as<type>(s);
    set_symbol_kind(s, sk_variable);
    object *o = new_object();
    tie_to_symbol(o, s);
    o->type = t;
    o->storage_class = sc_local;
    o->assoc.routine = routine_at(s->scope_depth);
    s->entity = o;
}

void type_after_specifications(symbol *s) {
    if (spec_part_over && entity_as<object>(s)->type->type_code == tk_unknown) {
        apply_implicit(s, null_pos);
    }
}

} // namespace

symbol *make_variable(symbol *s, name_locator &name) {
    if (!s) {
        s = new_symbol(sk_undetermined, name, curr_scope_depth);
    }
    if (s->kind == sk_host_candidate) {
        if (symbol *meaning = resolve_candidate(s)) {
            s = meaning;
        } else {
            set_symbol_kind(s, sk_undetermined);
        }
    }
    switch (s->kind) {
    case sk_variable: return s;
    case sk_undetermined:
    case sk_data_name:
        if (s->name == error_atom) {
            s->entity = error_type();
            give_object(s);
            return s;
        }
        give_object(s);
        type_after_specifications(s);
        add_object(scope_stack[s->scope_depth], entity_as<object>(s));
        return s;
    case sk_dummy: {
        il_entry *o = s->entity;
        set_symbol_kind(s, sk_variable);
        s->entity = o;
        type_after_specifications(s);
        return s;
    }
    default:
        error_at(s->kind == sk_implied_do_var ? msg_invalid_use_of_implied_do_variable
                                              : msg_identifier_is_not_variable,
                 name.position);
        name.atom = nullptr;
        return make_variable(nullptr, name);
    }
}

symbol *declare_variable(attribute given, name_locator &name) {
    symbol *s = lookup_for_declaration();
    if (s && s->from_module) {
        attribute_set set{};
        set[given] = true;
        if (!check_attributes(s, set, name.position)) {
            return nullptr;
        }
    }
    if (s) {
        claim_candidate(s);
    }
    s = make_variable(s, name);
    return s->name == error_atom ? nullptr : s;
}

} // namespace zf90
