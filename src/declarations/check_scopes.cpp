// The walks over what a compilation has declared: first the declarations of each unit, then, at the end, the
// statements of all.
#include "declarations/check_scopes.h"

#include "constants/folding.h"
#include "declarations/attributes.h"
#include "declarations/generic_sets.h"
#include "declarations/namelist.h"
#include "declarations/prologues.h"
#include "declarations/routines.h"
#include "declarations/scopes.h"
#include "declarations/symbols.h"
#include "driver/deep_call.h"
#include "driver/diagnostics.h"
#include "driver/driver.h"
#include "driver/options.h"
#include "expressions/calls.h"
#include "expressions/check.h"
#include "expressions/operators.h"
#include "expressions/predicates.h"
#include "expressions/uses.h"
#include "il/arena.h"
#include "il/constants.h"
#include "il/entries.h"
#include "il/types.h"
#include "statements/statement_pass.h"

#include <algorithm>
#include <initializer_list>

namespace zf90 {

namespace {

// A scope that is worked in after it was closed. One that is open still is worked in as it is.
struct scope_visit {
    explicit scope_visit(scope *s) : reopened(!is_open_scope(s)) {
        if (reopened) {
            reopen_scope(s, outer);
        }
    }
    scope_visit(const scope_visit &) = delete;
    scope_visit &operator=(const scope_visit &) = delete;
    ~scope_visit() {
        if (reopened) {
            close_reopened_scope(outer);
        }
    }

    bool reopened;
    closed_state outer;
};

bool has_scope(const object *o) {
    switch (o->storage_class) {
    case sc_external:
    case sc_module:
    case sc_program:
    case sc_blockdata:
    case sc_internal:
    case sc_stmt_func: return o->variant.assoc_scope != nullptr;
    default: return false;
    }
}

bool has_initial_value(const object *o) {
    switch (o->storage_class) {
    case sc_local: return !o->is_result && o->variant.initializer;
    case sc_common: return o->variant.initializer;
    default: return false;
    }
}

// ---- initial values

bool is_assumed_length(const type *t) {
    return t->type_code == tk_fcharacter && t->character.length.kind == bound_assumed;
}

// A named constant of CHARACTER*(*) has the length of its value.
void take_length_of_value(object *o, const type *value_type) {
    type *const length = element_type_of(const_cast<type *>(value_type));
    if (!is_assumed_length(element_type_of(o->type)) || length->type_code != tk_fcharacter) {
        return;
    }
    if (!is_array(o->type)) {
        o->type = length;
        return;
    }
    type *array = new_type(tk_farray);
    copy_type(o->type, array);
    array->il_id = o->type->il_id;
    array->array.element_type = length;
    array->size = 0;
    complete_type(array);
    o->type = array;
}

void refuse_value(constant *value) {
    set_constant_repr(value, ck_error);
    value->type = error_type();
}

// The tree of a value. A named constant may have got its value already, where it was needed in a place in
// which its type does not matter.
expr_node *tree_of_value(const constant *value) {
    if (value->repr_kind == ck_expression) {
        return value->value.expr;
    }
    expr_node *node = new_expr_node(enk_constant);
    node->source_pos = value->source_pos;
    node->type = value->type;
    node->constant = il_new<constant>();
    *node->constant = *value;
    begin_check(node);
    return node;
}

void store_value(constant *value, expr_node *tree, const fold_value &folded) {
    const constant *const stored = store_fold_value(folded);
    value->type = stored->type;
    if (stored->repr_kind == ck_aggregate) {
        set_constant_repr(value, ck_aggregate);
        value->aggregate = stored->aggregate;
        return;
    }
    // A constant says no more than its value.
    const bool keeps_tree = retain_constant_exprs && tree->node_kind != enk_constant;
    set_constant_repr(value, keeps_tree ? ck_expression : ck_value);
    value->value.bytes = stored->value.bytes;
    value->value.expr = keeps_tree ? tree : nullptr;
}

// An initial value is converted to the type of its name by the rules of assignment.
bool evaluate_initial_value(object *o) {
    constant *const value = o->variant.initializer;
    expr_node *tree = tree_of_value(value);
    // A value that refers to itself has none.
    refuse_value(value);
    if (!check_expression(tree, ECF_INIT, nullptr) || tree->node_kind == enk_error) {
        return false;
    }
    take_length_of_value(o, tree->type);
    fold_value folded;
    if (!assign_conversion(o->type, tree)) {
        return false;
    }
    tree->intent_in = true;
    if (!fold_expression(tree, folded, true) || !has_value(folded)) {
        return false;
    }
    fit_text_length(folded, o->type);
    store_value(value, tree, folded);
    return true;
}

bool check_initial_value(object *o) {
    constant *const value = o->variant.initializer;
    if (value->repr_kind == ck_error) {
        return false;
    }
    if (value->repr_kind == ck_expression || o->is_constant) {
        return evaluate_initial_value(o);
    }
    return check_initializer(value);
}

// ---- objects

bool is_of_unit_kind(const object *routine, std::initializer_list<storage_class> classes) {
    return routine && std::find(classes.begin(), classes.end(), routine->storage_class) != classes.end();
}

// Whether the storage of a local variable has a size that only the run knows, or none that fits.
bool is_automatic(const object *o) {
    if (o->is_parameter || o->is_constant ||
        is_of_unit_kind(o->assoc.routine, {sc_module, sc_program, sc_blockdata})) {
        return false;
    }
    constexpr std::uint32_t limit = 2147483647;
    const type *element = element_type_of(o->type);
    const bool variable_length =
        element->type_code == tk_fcharacter && element->character.length.kind != bound_constant;
    return variable_length || has_nonconstant_bound(o->type) || (is_array(o->type) && o->type->size > limit);
}

// The rule for functions of assumed length, whose callers give them the length of their result.
bool check_assumed_length_function(const object *o) {
    if (o->type->type_code != tk_routine) {
        return true;
    }
    type *result = o->type->routine.return_type;
    if (!is_assumed_length(element_type_of(result)) || (!is_array(result) && !o->is_pointer)) {
        return true;
    }
    error_at(msg_length_parameter_value_of_not_allowed, o->source_corresp.decl_position);
    return false;
}

bool check_data_object(object *o) {
    type *element = element_type_of(o->type);
    if (element->type_code == tk_derived_type) {
        element->source_corresp.referenced = true;
    }
    object *const routine =
        o->storage_class == sc_local && !o->is_saved && !o->is_constant ? o->assoc.routine : nullptr;
    if (!check_type(o->type, routine)) {
        o->type = error_type(); // no more messages come from it
        return false;
    }
    if (has_initial_value(o) && !check_initial_value(o)) {
        if (o->is_constant) {
            o->type = error_type();
        }
        return false;
    }
    if (o->storage_class == sc_local && is_automatic(o)) {
        o->is_auto = true;
    }
    return true;
}

bool check_routine_object(object *o) {
    bool good = true;
    if (o->storage_class == sc_external || o->storage_class == sc_internal) {
        good = check_assumed_length_function(o);
    }
    if (o->storage_class == sc_external && !o->is_parameter) {
        o->source_corresp.referenced = true;
    }
    scope *const body = has_scope(o) ? o->variant.assoc_scope : nullptr;
    if (!body || !body->rules) {
        return check_type(o->type, body ? o : nullptr) && good;
    }
    const scope_visit visit(body);
    good &= o->storage_class == sc_stmt_func ? check_scope(body) : check_declarations(body);
    return check_type(o->type, o) && good;
}

} // namespace

bool check_object(object *o) {
    if (!begin_check(o)) {
        return true;
    }
    return deep_call([o] {
        switch (o->storage_class) {
        case sc_local:
        case sc_common:
        case sc_associated:
        case sc_implied_do_var:
        case sc_use_associated:
        case sc_type_field: return check_data_object(o);
        case sc_external:
        case sc_module:
        case sc_program:
        case sc_blockdata:
        case sc_internal:
        case sc_stmt_func: return check_routine_object(o);
        default: return true;
        }
    });
}

// ---- declarations

namespace {

bool is_private_type(const type *t) { return t->type_code == tk_derived_type && !t->is_public; }

// What a name's accessibility and its SAVE say, now that no statement can change them.
void settle_access(object *o) {
    const symbol *s = o->symbol_link;
    if (!s || s->from_module) { // a copy is what its original is
        return;
    }
    o->is_public = (s->flags & sf_public) != 0;
    o->is_saved = o->is_saved || (s->flags & sf_saved);
    if (o->is_public) {
        o->source_corresp.referenced = true;
    }
    if (o->storage_class == sc_associated) {
        object *storage = o->assoc.variable;
        storage->is_public = storage->is_public || o->is_public;
        storage->is_saved = storage->is_saved || o->is_saved;
        storage->source_corresp.referenced |= o->source_corresp.referenced;
    }
}

bool is_data(const object *o) { return o->storage_class == sc_local || o->storage_class == sc_associated; }

// The rules for what a name may be, when all that is said of it has been read.
bool check_declared_variable(object *o) {
    symbol *s = o->symbol_link;
    if (!s || s->entity != o) {
        return true;
    }
    if (s->kind == sk_variable && o->type->type_code == tk_error) {
        return true; // what it lacks has been reported
    }
    attribute_set none{};
    bool good = check_attributes(s, none, o->source_corresp.decl_position);
    if (s->kind != sk_variable) {
        return good;
    }
    if (!good) {
        o->type = error_type(); // what follows from it is not reported again
        return false;
    }
    const source_pos position = o->source_corresp.decl_position;
    const type *t = element_type_of(o->type);
    if ((s->var_flags & vf_equivalenced) && t->contains_ptrs) {
        error_at(msg_equivalenced_variable_should_not_be_of_type_containing, position);
        good = false;
    }
    if (t->type_code == tk_derived_type && (s->var_flags & vf_in_common) && !t->derived.is_seq) {
        error_at(msg_derived_type_common_block_object_must_be_of_sequence, position);
        good = false;
    }
    if (o->is_public && is_private_type(t)) {
        error_at(msg_public_entity_should_not_be_of_private_type, position);
        good = false;
    }
    return good;
}

// The same for the components of a type that is defined here. Their statements have told of what excludes
// each other; what one attribute requires is asked for now.
bool check_components(const type *t) {
    bool good = true;
    for (const object *c = t->type_code == tk_derived_type ? t->derived.first_field : nullptr; c;
         c = c->next) {
        symbol *s = c->symbol_link;
        if (s && s->entity == c && c->type->type_code != tk_error) {
            const type *element = element_type_of(c->type);
            attribute_set set{};
            set[attr_automatic] = element->type_code == tk_fcharacter &&
                                  element->character.length.kind == bound_expression &&
                                  has_open_length(element);
            good &= check_attributes(s, set, c->source_corresp.decl_position);
        }
    }
    return good;
}

// Whether a procedure that other units may call takes what they may not have.
bool shows_private_type(const object *o) {
    return o->storage_class == sc_internal && o->is_public && depends_on_private_type(o);
}

// That a public procedure is the member of a public generic too is no other mistake.
bool check_generic_member(object *routine) { return check_object(routine) && !shows_private_type(routine); }

bool check_declared_procedure(object *o) {
    const symbol *s = o->symbol_link;
    if (o->storage_class != sc_internal || !s) {
        return true;
    }
    o->is_public = (s->flags & sf_public) != 0;
    if (!o->is_public) {
        return true;
    }
    o->source_corresp.referenced = true;
    if (shows_private_type(o)) {
        error_at(msg_procedure_dependent_of_private_type_should_not_be_public,
                 o->source_corresp.decl_position);
        return false;
    }
    return true;
}

bool check_declared_object(object *o) {
    if (is_data(o)) {
        settle_access(o);
    }
    bool good = check_object(o);
    if (has_scope(o)) {
        good &= check_declarations(o->variant.assoc_scope);
    }
    if (is_data(o)) {
        return check_declared_variable(o) && good;
    }
    return check_declared_procedure(o) && good;
}

// Whether the results of two entries can lie in one storage.
bool results_agree(const object *main_result, const object *result) {
    const type *a = main_result->type;
    const type *b = result->type;
    if (a->type_code == tk_error || b->type_code == tk_error) {
        return true;
    }
    if (main_result->is_pointer == result->is_pointer && (a == b || types_equal(a, b))) {
        return true;
    }
    if (main_result->is_pointer || result->is_pointer) {
        return false;
    }
    const auto is_plain = [](const type *t) {
        return t->type_code == tk_integer || t->type_code == tk_float || t->type_code == tk_complex ||
               t->type_code == tk_logical;
    };
    if (is_plain(a) && is_plain(b)) {
        return true;
    }
    return a->type_code == tk_fcharacter && b->type_code == tk_fcharacter &&
           a->character.length.kind == b->character.length.kind &&
           (a->character.length.kind != bound_constant ||
            a->character.length.value == b->character.length.value);
}

bool check_entry(const scope *s, const entry_description *entry) {
    bool good = check_object(entry->assoc_routine);
    object *main_result = s->function_result_var;
    object *result = entry->function_result_var;
    if (!main_result || !result || main_result == result) {
        return good;
    }
    raise_result_storage(result);
    if (!results_agree(main_result, result)) {
        const atom *name = s->assoc_routine->source_corresp.name;
        error_at(msg_entries_of_function_are_not_equivalenceable, result->source_corresp.decl_position,
                 name ? name->spelling : "");
        good = false;
    }
    return good;
}

// What callers know of the procedures of a scope names its dummy arguments by their place.
void complete_interfaces(const scope *s) {
    if (s->assoc_routine->type->type_code != tk_routine) {
        return;
    }
    complete_interface(s->assoc_routine);
    for (const entry_description *e = s->entries; e; e = e->next) {
        complete_interface(e->assoc_routine);
    }
}

bool check_declarations_within(scope *s) {
    const scope_visit visit(s);
    object *const routine = s->assoc_routine;
    bool good = true;
    for (type *t = s->types; t; t = t->next) {
        good &= check_type(t, routine);
        if (!t->derived.module || t->derived.module == routine) {
            good &= check_components(t);
        }
        if (t->derived.module == routine) { // what a module gives has been checked there
            good &= check_component_access(t);
        }
    }
    for (object *o = s->objects; o; o = o->next) {
        good &= check_declared_object(o);
    }
    good &= check_object(routine);
    if (s->function_result_var) {
        raise_result_storage(s->function_result_var);
    }
    for (const entry_description *e = s->entries; e; e = e->next) {
        good &= check_entry(s, e);
    }
    for (namelist_group *group = s->namelist_groups; group; group = group->next) {
        good &= check_namelist(group, routine);
    }
    for (interface *generic = s->interfaces; generic; generic = generic->next) {
        good &= check_generic_set(generic, check_generic_member);
    }
    complete_interfaces(s);
    finish_uses();
    return good;
}

} // namespace

bool check_declarations(scope *s) {
    if (!begin_check(s)) {
        return true;
    }
    return deep_call([s] { return check_declarations_within(s); });
}

// ---- statements

void lay_out_frame(const scope *s) {
    type frame{};
    frame.type_code = tk_derived_type;
    frame.alignment = 1;
    frame.derived.first_field = s->objects;
    complete_type(&frame);
}

namespace {

// The numbers that ASSIGN stores: labels of statements and of formats are counted apart.
void number_labels(const scope *s) {
    std::int32_t statements = 0;
    std::int32_t formats = 0;
    for (label *l = s->labels; l; l = l->next) {
        if (l->kind == lk_executable) {
            l->association_offset = statements++;
        } else if (l->kind == lk_format) {
            l->association_offset = formats++;
        }
    }
}

bool check_statements(scope *s);

bool check_statements_within(scope *s) {
    const scope_visit visit(s);
    bool good = true;
    for (const object *o = s->objects; o; o = o->next) {
        if (o->storage_class == sc_internal && has_scope(o)) {
            good &= check_statements(o->variant.assoc_scope);
        }
    }
    if (statement *const body = s->assoc_block) {
        for (statement *inner = body->statements; inner; inner = inner->next) {
            good &= check_statement(inner, s->assoc_routine);
        }
        finish_uses();
        add_prologues(s);
    }
    number_labels(s);
    lay_out_frame(s);
    return good;
}

// A unit with ENTRY statements is met once for each of its names.
bool check_statements(scope *s) {
    if (s->assoc_block && !begin_check(s->assoc_block)) {
        return true;
    }
    check_interrupt();
    return deep_call([s] { return check_statements_within(s); });
}

} // namespace

bool check_scope(scope *s) {
    const bool good = check_declarations(s);
    return check_statements(s) && good;
}

bool check_compilation() {
    bool good = true;
    // Procedures that a statement names for the first time come behind the last unit.
    for (object *o = il_root.primary_scope->objects; o; o = o->next) {
        good &= check_object(o);
        if (has_scope(o)) {
            good &= check_scope(o->variant.assoc_scope);
        }
    }
    return good;
}

} // namespace zf90
