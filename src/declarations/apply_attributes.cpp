// Recording attributes on a name, in the order in which later ones depend on earlier ones.
#include "declarations/declarations.h"
#include "declarations/implicit.h"
#include "declarations/intrinsic_names.h"
#include "declarations/namelist.h"
#include "declarations/routines.h"
#include "declarations/scopes.h"
#include "declarations/symbols.h"
#include "driver/diagnostics.h"
#include "il/constants.h"
#include "il/types.h"

namespace zf90 {

type *entity_type;
expr_node *entity_init;

namespace {

// The object of a symbol, null for a name that has none.
object *object_of_symbol(const symbol *s) {
    switch (s->kind) {
    case sk_derived_type:
    case sk_undetermined:
    case sk_data_name:
    case sk_external_pending:
    case sk_intrinsic_function:
    case sk_intrinsic_subroutine:
    case sk_label:
    case sk_common_block:
    case sk_implied_do_var:
    case sk_forward_type:
    case sk_interface:
    case sk_namelist:
    case sk_folded_external:
    case sk_host_link:
    case sk_host_candidate: return nullptr;
    default: return entity_as<object>(s);
    }
}

void apply_type(symbol *s) {
    if (s->kind == sk_function || s->kind == sk_internal_function) {
        set_routine_type(s, entity_type, true);
    } else {
        set_type(s, entity_type, true);
    }
}

// A shape without a type: the elements keep the type so far.
void apply_shape(symbol *s) {
    if (s->kind == sk_variable || s->kind == sk_dummy) {
        object *o = entity_as<object>(s);
        entity_type->array.element_type = element_type_of(o->type);
        o->type = entity_type;
        complete_type(o->type);
        if (o->is_result) {
            raise_result_storage(o);
        }
    } else if (s->kind == sk_undetermined) {
        entity_type->array.element_type = element_type_of(entity_as<type>(s));
        s->entity = entity_type;
        complete_type(entity_type);
    }
}

void apply_initializer(symbol *s, source_pos position, bool is_named_constant, bool has_type) {
    if (s->kind != sk_variable || !entity_init) {
        return;
    }
    if (!has_type) {
        apply_implicit(s, null_pos);
    }
    object *o = entity_as<object>(s);
    if (is_checked(o)) {
        error_at(msg_declaration_conflicts_with_previous_specifications, position);
        return;
    }
    constant *value = new_constant();
    set_constant_repr(value, ck_expression);
    value->type = unknown_type();
    value->source_pos = entity_init->source_pos;
    value->value.expr = entity_init;
    o->variant.initializer = value;
    o->is_constant = is_named_constant;
    s->var_flags |= vf_initialized | vf_has_initializer;
    if (!is_named_constant && !(s->var_flags & vf_in_common)) {
        o->is_saved = true; // a variable with an initial value keeps its value
    }
}

void apply_external(symbol *s) {
    switch (s->kind) {
    case sk_undetermined: {
        type *held = entity_as<type>(s);
        set_symbol_kind(s, sk_external_pending);
        if (held && held->type_code != tk_unknown) {
            s->entity = held;
            s->flags |= sf_typed;
        }
        break;
    }
    case sk_dummy: {
        object *o = entity_as<object>(s);
        type *held = o->type;
        o->storage_class = sc_external;
        s->kind = held->type_code == tk_unknown ? sk_dummy_procedure : sk_dummy_function; // the object stays
        set_dummy_proc_type(s, held);
        break;
    }
    case sk_data_name: error(msg_declaration_conflicts_with_previous_use_or_specification); break;
    case sk_block_data:
    case sk_external_pending: break;
    default:
        if (!(s->flags & sf_external_attr)) { // otherwise it has been reported as stated twice
            error(msg_declaration_conflicts_with_previous_specifications);
        }
        break;
    }
    s->flags |= sf_external_attr;
}

void apply_intent(symbol *s, bool in, bool out) {
    s->flags |= (in ? std::uint32_t{sf_intent_in} : 0u) | (out ? std::uint32_t{sf_intent_out} : 0u);
    if (object *o = object_of_symbol(s)) {
        o->intent_in = o->intent_in || in;
        o->intent_out = o->intent_out || out;
    }
}

void apply_pointer(object *o) {
    o->is_pointer = true;
    if (o->is_result && o->variant.result_var_function) {
        o->variant.result_var_function->is_pointer = true;
    }
}

void apply_to_data(symbol *&s, const attribute_set &set, name_locator &name) {
    if (set[attr_variable]) {
        s = make_variable(s, name);
    }
    if (s->kind == sk_variable && set[attr_common]) {
        s->var_flags |= vf_in_common | (set[attr_blank_common] ? std::uint32_t{vf_blank_common} : 0u);
    }
    const bool has_shape = set[attr_explicit_shape] || set[attr_deferred_shape] || set[attr_assumed_shape] ||
                           set[attr_assumed_size];
    if (set[attr_typed]) {
        apply_type(s);
    } else if (has_shape && entity_type && is_array(entity_type)) {
        apply_shape(s);
    }
    if (set[attr_automatic] && s->kind == sk_variable && !entity_as<object>(s)->is_parameter) {
        entity_as<object>(s)->is_auto = true;
        has_automatic = true;
    }
    if (set[attr_initialized]) {
        apply_initializer(s, name.position, set[attr_parameter], set[attr_typed]);
    }
}

} // namespace

symbol *apply_attributes(symbol *s, const attribute_set &set, name_locator &name) {
    const bool is_new = !s;
    if (is_new) {
        s = new_symbol(sk_undetermined, name, curr_scope_depth);
    }
    claim_candidate(s);
    if (s->name == error_atom) {
        return s;
    }
    if (set[attr_private]) {
        s->flags = (s->flags | sf_access_given) & ~std::uint32_t{sf_public};
    }
    if (set[attr_public]) {
        s->flags |= sf_access_given | sf_public;
    }
    if (set[attr_namelist]) {
        s = declare_namelist(s, name);
        note_declaration(s, name.position, is_new);
        return s;
    }
    apply_to_data(s, set, name);
    if (s->name == error_atom) {
        return s;
    }
    object *o = object_of_symbol(s);
    if (set[attr_allocatable] && o) {
        o->is_allocatable = true;
    }
    if (set[attr_external]) {
        apply_external(s);
    }
    if (set[attr_intent_in] || set[attr_intent_out] || set[attr_intent_inout]) {
        apply_intent(s, set[attr_intent_in] || set[attr_intent_inout],
                     set[attr_intent_out] || set[attr_intent_inout]);
    }
    if (set[attr_intrinsic]) {
        s = declare_intrinsic(s, name);
    }
    if (set[attr_optional]) {
        s->flags |= sf_optional;
        if (object *dummy = object_of_symbol(s)) {
            dummy->is_optional = true;
        }
    }
    if (set[attr_pointer]) {
        if (s->kind == sk_undetermined || s->kind == sk_dummy) {
            s = make_variable(s, name);
        }
        if (object *pointer = object_of_symbol(s)) {
            apply_pointer(pointer);
        }
    }
    if (set[attr_save]) {
        s->flags |= sf_saved;
        if (s->kind == sk_variable) {
            entity_as<object>(s)->is_saved = true;
        }
    }
    if (set[attr_target]) {
        if (object *target = object_of_symbol(s)) {
            target->is_target = true;
        }
    }
    s->flags &= ~std::uint32_t{sf_inferred}; // it is declared by now
    note_declaration(s, name.position, is_new);
    return s;
}

} // namespace zf90
