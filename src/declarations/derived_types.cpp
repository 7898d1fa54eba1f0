// Derived-type definitions and the names of types. While a definition is open it has a row of its own, whose
// objects are the components.
#include "declarations/derived_types.h"

#include "declarations/scopes.h"
#include "declarations/units.h"
#include "expressions/check.h"
#include "il/entries.h"
#include "il/types.h"
#include "source/token_helpers.h"
#include "statements/handlers.h"
#include "statements/loop.h"

#include <unordered_map>

namespace zf90 {

namespace {

type *curr_derived_type; // of the definition that is open

bool is_derived(const type *t) { return t->type_code == tk_derived_type; }

bool is_known(const type *t) { return t->type_code != tk_unknown; }

symbol *follow_links(symbol *s) {
    while (s->kind == sk_host_link) {
        s = entity_as<symbol>(s);
    }
    return s;
}

// The same shape with other elements.
type *with_element(type *t, type *element) {
    if (!is_array(t)) {
        return element;
    }
    type *array = new_type(tk_farray);
    copy_type(t, array);
    array->array.element_type = element;
    array->size = 0;
    complete_type(array);
    return array;
}

// ---- the TYPE statement

enum stated_access : std::uint8_t { access_none, access_public, access_private };

// What follows the comma behind TYPE, up to the token behind the "::".
bool read_access(stated_access &access) {
    const stop_at stop{tok_double_colon};
    next_token(lex_keyword);
    bool good = curr_token == tok_kw_public || curr_token == tok_kw_private;
    if (!good) {
        error_pos = curr_token_pos;
        syntax_error(msg_expected_access_specification);
        return accept_optional(tok_double_colon, 0) && good;
    }
    if (unit_kind_of(curr_scope_depth) == uk_module) {
        access = curr_token == tok_kw_public ? access_public : access_private;
    } else {
        error_at(msg_access_specifier_or_statement_may_appear_only_in_scoping, curr_token_pos);
    }
    next_token(0);
    good = curr_token == tok_double_colon;
    return accept_token(tok_double_colon, msg_expected_double_colon, 0) && good;
}

bool names_intrinsic_type(const atom *name) {
    switch (name->token_code) {
    case tok_kw_character:
    case tok_kw_complex:
    case tok_kw_integer:
    case tok_kw_logical:
    case tok_kw_real: return true;
    default: return false;
    }
}

// Makes a symbol the name of a derived type.
void become_type(symbol *s, type *t) {
    set_symbol_kind(s, sk_derived_type);
    s->entity = t;
}

// Whether a name that is known already may be defined as a type now; it becomes one then.
bool define_known_type(symbol *s) {
    switch (s->kind) {
    case sk_derived_type: {
        const auto *t = entity_as<type>(s);
        if (s->from_module || (is_derived(t) && t->derived.first_field)) {
            return false;
        }
        break; // a use of it has been reported
    }
    case sk_undetermined:
        if (is_known(entity_as<type>(s))) {
            return false;
        }
        break;
    case sk_forward_type:
        become_type(s, entity_as<type>(s)); // the uses of the name have this type
        return true;
    default: return false;
    }
    become_type(s, new_type(tk_derived_type));
    return true;
}

// The symbol of the type to be defined: of a null name if it cannot be this one, which has been reported.
symbol *define_type(symbol *s, name_locator &name) {
    if (s && !define_known_type(s)) {
        error_at(msg_declaration_conflicts_with_previous_specifications, name.position);
        name.atom = nullptr;
        s = nullptr;
    }
    if (!s) {
        if (name.atom && names_intrinsic_type(name.atom)) {
            error_at(msg_derived_type_name_is_same_as_of_intrinsic, name.position);
            name.atom = nullptr;
        }
        s = new_symbol(sk_derived_type, name, curr_scope_depth);
        s->entity = new_type(tk_derived_type);
    }
    auto *t = entity_as<type>(s);
    tie_to_symbol(t, s);
    if (s->name != error_atom) {
        object *const unit = curr_routine();
        t->derived.module = unit && unit->storage_class == sc_module ? unit : nullptr;
        add_type(curr_row(), t);
    }
    return s;
}

// The access that the TYPE statement states, beside what has been stated before.
void apply_access(symbol *s, stated_access access, source_pos position) {
    if (access == access_none || s->name == error_atom) {
        return;
    }
    const bool is_public = access == access_public;
    if (!(s->flags & sf_access_given)) {
        s->flags = (s->flags & ~std::uint32_t{sf_public}) | sf_access_given | (is_public ? sf_public : 0u);
    } else if (((s->flags & sf_public) != 0) == is_public) {
        warning_at(msg_access_attribute_for_already_specified, position, s->name->spelling);
    } else {
        error_at(msg_access_attribute_for_already_specified, position, s->name->spelling);
    }
}

// ---- the end of a definition

// A component that is no pointer: its type must be there by now.
void settle_component_type(object *component, const type *owner) {
    if (element_type_of(component->type) == owner) {
        error_at(msg_non_pointer_component_type_is_not_previously_defined,
                 owner->source_corresp.decl_position,
                 owner->source_corresp.name ? owner->source_corresp.name->spelling : "");
        component->type = error_type();
        return;
    }
    component->type = resolve_forward_type(component->type);
}

void finish_derived_type(type *t) {
    t->derived.first_field = curr_row().il_scope->objects;
    for (object *c = t->derived.first_field; c; c = c->next) {
        c->storage_class = sc_type_field;
        c->assoc.derived_type = t;
        if (!c->is_pointer) {
            settle_component_type(c, t);
        }
        const type *element = element_type_of(c->type);
        if (!is_derived(element) && !check_type(c->type, nullptr)) { // its size is needed at once
            c->type = error_type();
        }
        t->contains_ptrs |= c->is_pointer || (is_derived(element) && element->contains_ptrs);
    }
    pop_scope();
    complete_type(t);
}

// ---- the uses of a name

// A type that the unit of that depth is still to define, unless the host has one of the name.
void become_forward_type(symbol *s, symbol *host) {
    set_symbol_kind(s, sk_forward_type);
    type *t = new_type(tk_derived_type);
    tie_to_symbol(t, s);
    s->entity = t;
    s->aux = host;
}

// The type of that name in the scopes around that of `depth`, or null.
symbol *host_type(const atom *name, std::int32_t depth) {
    symbol *s = name->first_symbol;
    while (s && s->scope_depth >= depth) {
        s = s->next_same_name;
    }
    s = lookup_resolved(s, depth - 1);
    return s && s->kind == sk_derived_type ? s : nullptr;
}

bool is_type_name(symbol *s, bool may_come_later) {
    switch (s->kind) {
    case sk_derived_type: return true;
    case sk_forward_type: return may_come_later;
    case sk_undetermined:
        if (!may_come_later || is_known(entity_as<type>(s))) {
            return false;
        }
        become_forward_type(s, nullptr);
        return true;
    default: return false;
    }
}

} // namespace

bool stmt_type_definition() {
    stated_access access = access_none;
    bool good = true;
    if (next_token(0) == tok_comma) {
        good = read_access(access);
    } else {
        accept_optional(tok_double_colon, 0);
    }
    name_locator name{nullptr, curr_token_pos};
    symbol *s = nullptr;
    if (curr_token == tok_name) {
        name = curr_name;
        s = lookup_for_declaration();
        next_token(0);
    } else {
        if (good) {
            error_pos = curr_token_pos;
            syntax_error(msg_expected_identifier);
        }
        good = false;
    }
    const source_pos position = name.position;
    s = define_type(s, name);
    apply_access(s, access, position);
    curr_derived_type = entity_as<type>(s);
    note_declaration(s, position, true);
    curr_derived_type->source_corresp.decl_position = position;
    push_scope(sr_derived_type);
    curr_row().names_public = true;
    return good;
}

bool stmt_sequence() {
    next_token(0);
    if (curr_derived_type->derived.is_seq) {
        error_at(msg_sequence_statement_has_been_already_specified, stmt_pos);
    }
    curr_derived_type->derived.is_seq = true;
    return true;
}

bool stmt_end_type() {
    if (curr_row().row_kind != sr_derived_type) {
        error_at(msg_statement_out_of_order_ignored, stmt_pos);
        return false;
    }
    bool good = true;
    if (next_token(0) != tok_eos) {
        good = expect_token(tok_name, msg_expected_identifier);
        const atom *expected = curr_derived_type->source_corresp.name;
        if (good && expected != error_atom && expected != curr_name.atom) {
            error(msg_type_name_is_not_as_in_corresponding_derived, expected->spelling);
        }
        if (good) {
            next_token(0);
        }
    }
    finish_open_type();
    return good;
}

void finish_open_type() {
    if (curr_row().row_kind == sr_derived_type) {
        finish_derived_type(curr_derived_type);
    }
}

symbol *use_derived_type(symbol *s, name_locator &name) {
    const bool may_come_later = in_type_def || in_prefix_type;
    if (s && !is_type_name(s, may_come_later)) {
        if (!is_quiet(s)) {
            error_at(msg_identifier_is_not_derived_type_name, name.position);
        }
        name.atom = nullptr;
        s = nullptr;
    } else if (!s && may_come_later && name.atom) {
        const std::int32_t depth = in_type_def ? curr_scope_depth - 1 : curr_scope_depth;
        symbol *const host = host_type(name.atom, depth);
        s = new_symbol(sk_forward_type, name, depth);
        become_forward_type(s, host);
    } else if (!s && name.atom) {
        error_at(msg_undefined_derived_type, name.position);
    }
    if (!s) {
        s = new_symbol(sk_derived_type, name, curr_scope_depth);
        s->entity = error_type();
    }
    if (s->name != error_atom) {
        note_use(use_declared, s, name.position);
    }
    return s;
}

type *resolve_forward_type(type *t) {
    type *const element = element_type_of(t);
    symbol *s = is_derived(element) ? element->symbol_link : nullptr;
    if (!s) {
        return t;
    }
    if (s->kind == sk_forward_type) {
        if (!s->aux) {
            error_at(msg_undefined_derived_type, s->decl_position);
            give_up_forward_type(s);
            return t;
        }
        finish_forward_type(s);
    }
    return s->kind == sk_host_link ? with_element(t, entity_as<type>(follow_links(s))) : t;
}

void settle_type_access(const symbol *s) {
    auto *t = entity_as<type>(s);
    if (!is_derived(t)) {
        return;
    }
    if (s->from_module) {
        return; // its module has settled it
    }
    t->is_public = (s->flags & sf_public) != 0;
    for (object *c = t->derived.first_field; c; c = c->next) {
        c->is_public = t->is_public && c->symbol_link && (c->symbol_link->flags & sf_public);
    }
}

object *find_component(const type *t, const struct atom *name) {
    object *field = t->derived.first_field;
    for (int few = 32; field && few > 0; --few, field = field->next) {
        if (field->source_corresp.name == name) {
            return field;
        }
    }
    if (!field) {
        return nullptr;
    }
    static std::unordered_map<const type *, std::unordered_map<const struct atom *, object *>> long_lists;
    auto &components = long_lists[t];
    if (components.empty()) {
        for (object *o = field; o; o = o->next) {
            components.emplace(o->source_corresp.name, o);
        }
    }
    const auto found = components.find(name);
    return found != components.end() ? found->second : nullptr;
}

void fix_forward_types() {
    scope_row &row = curr_row();
    if (!row.implicit_none) {
        for (type *&implied : row.implicit_types) {
            implied = implied ? resolve_forward_type(implied) : nullptr;
        }
    }
    // What has taken a type from the rules by now: that turned out to be the host's.
    for (object *o = row.il_scope->objects; o; o = o->next) {
        const type *element = o->type ? element_type_of(o->type) : nullptr;
        if (element && is_derived(element) && element->symbol_link &&
            element->symbol_link->kind == sk_host_link) {
            o->type = resolve_forward_type(o->type);
        }
    }
    if (object *result = row.il_scope->function_result_var) {
        result->type = resolve_forward_type(result->type);
        if (object *function = result->variant.result_var_function) {
            function->type->routine.return_type = result->type;
        }
    }
}

} // namespace zf90
