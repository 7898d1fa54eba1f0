// The check of designators: objects, components, elements, sections and substrings. What their types say of
// lengths and shapes that only the run can tell refers back to the node: the shape of the value is the shape
// of the expression, wherever it travels.
#include "declarations/check_scopes.h"
#include "declarations/symbols.h"
#include "expressions/calls.h"
#include "expressions/operators.h"
#include "expressions/predicates.h"
#include "expressions/references.h"
#include "expressions/shapes.h"
#include "il/constants.h"
#include "il/entries.h"
#include "il/types.h"

namespace zf90 {

namespace {

// ---- types that refer to the expression

type *new_character_type(const type *model) {
    type *t = new_type(tk_fcharacter);
    t->kind = model->kind;
    t->is_character = model->is_character;
    return t;
}

type *same_length_type(expr_node *node, const type *model) {
    type *t = new_character_type(model);
    t->character.length.kind = bound_same_as;
    t->character.length.expr = node;
    node->multiply_referenced = true;
    return t;
}

type *same_shape_type(expr_node *node, type *element, unsigned rank) {
    type *t = new_type(tk_farray);
    t->array.element_type = element;
    t->array.rank = static_cast<std::uint8_t>(rank);
    t->array.shape_kind = same_shape;
    t->array.args = new_ref(node);
    return t;
}

// The type of a reference to an object or component of that type.
type *type_of_reference(expr_node *node, type *t) {
    type *element = element_type_of(t);
    const bool is_open_text =
        element->type_code == tk_fcharacter && element->character.length.kind != bound_constant;
    if (!is_array(t)) {
        return is_open_text ? same_length_type(node, element) : t;
    }
    if (!is_explicit_constant_shape(t)) {
        return same_shape_type(node, element, t->array.rank);
    }
    return is_open_text ? with_element(t, same_length_type(node, element)) : t;
}

bool is_in_error(const type *t) {
    return !t || (t->type_code == tk_farray ? t->array.element_type : t)->type_code == tk_error;
}

// ---- objects

bool is_common_member(const object *o) {
    const symbol *s = o->symbol_link;
    return (s && s->kind == sk_variable && (s->var_flags & vf_in_common)) ||
           (o->storage_class == sc_associated && o->assoc.variable &&
            o->assoc.variable->storage_class == sc_common);
}

// Whether an object belongs to the routine itself and so has no value when it is entered.
bool is_own_variable(const object *o, const object *routine) {
    if (!routine || o->is_constant || o->is_parameter || is_common_member(o)) {
        return false;
    }
    return (o->storage_class == sc_local || o->storage_class == sc_associated) &&
           o->source_corresp.scope_depth > routine->source_corresp.scope_depth &&
           o->source_corresp.scope_depth != depth_out_of_scope;
}

// ---- components

// A statement function uses no part of a constant.
bool check_base_of_part(const expr_node *base, std::uint32_t flags) {
    const bool is_constant =
        base->node_kind == enk_constant || (base->node_kind == enk_object && base->object->is_constant);
    if ((flags & ecf_stmt_func) && is_constant) {
        return fail_at(msg_not_allowed_for_statement_function_scalar_expression, base);
    }
    return true;
}

// What the context demands of the whole of which a part is referred to.
std::uint32_t base_flags(std::uint32_t flags) {
    return (flags & ~std::uint32_t{ecf_spec_expr | ecf_whole_assumed_size}) | ecf_designator;
}

// And of subscripts and positions.
std::uint32_t subscript_flags(std::uint32_t flags) {
    return flags & ~std::uint32_t{ecf_designator | ecf_section_ok | ecf_spec_expr | ecf_whole_assumed_size};
}

// The element of which a component is referred to, and the component itself.
bool check_component(expr_node *node, std::uint32_t flags, object *routine) {
    expr_node *base = node->base_expr;
    if (!check_expression(base, base_flags(flags), routine)) {
        return false;
    }
    object *field = node->field_var;
    check_object(field);
    if (!check_base_of_part(base, flags) || is_in_error(field->type) || is_in_error(base->type)) {
        return false;
    }
    if (is_array(base->type) && field->is_pointer) {
        return fail_at(msg_pointer_field_of_part_with_non_zero_rank, node);
    }
    return true;
}

// ---- subscripts

struct subscript_counts {
    unsigned all = 0;
    unsigned sections = 0;
    bool vector = false;
};

bool classify_subscript(const expr_node *e, subscript_counts &counts) {
    const type *t = e->type;
    ++counts.all;
    if (is_array(t)) {
        if (t->array.rank != 1) {
            return fail_at(msg_must_be_integer_array_expression_of_rank_one, e);
        }
        ++counts.sections;
        counts.vector = counts.vector || e->node_kind != enk_triplet;
        t = t->array.element_type;
    }
    return t->type_code == tk_integer || fail_at(msg_expression_must_be_of_type_integer, e);
}

bool check_subscript_list(expr_node *list, std::uint32_t flags, object *routine, subscript_counts &counts) {
    if (!check_list(list, subscript_flags(flags), routine)) {
        return false;
    }
    bool ok = true;
    for (const expr_node *e = list; e; e = e->next) {
        ok = classify_subscript(e, counts) && ok;
    }
    return ok;
}

bool check_count(const expr_node *node, unsigned count, unsigned rank) {
    if (count != rank) {
        return fail_at(count < rank ? msg_too_few_subscripts : msg_too_many_subscripts, node);
    }
    return true;
}

// An element of a component, of one structure or of each element of an array of structures.
bool check_component_element(expr_node *node, std::uint32_t flags, object *routine, unsigned count) {
    expr_node *part = node->array_expr;
    if (!check_component(part, flags, routine)) {
        return false;
    }
    part->type = part->field_var->type;
    if (!is_array(part->type)) {
        return fail_at(msg_subscript_used_on_non_array, node);
    }
    if (!check_count(node, count, part->type->array.rank)) {
        return false;
    }
    type *element = part->type->array.element_type;
    node->type = with_element(part->base_expr->type, element);
    return true;
}

const expr_node *last_of(const expr_node *list) {
    while (list->next) {
        list = list->next;
    }
    return list;
}

bool check_section(expr_node *node, const subscript_counts &counts) {
    type *whole = node->array_expr->type;
    const expr_node *last = last_of(node->ind_list);
    if (last->node_kind == enk_triplet && !last->second && is_assumed_size(whole)) {
        return fail_at(msg_omitted_second_subscript_from_triplet_in_last_dimension, node);
    }
    node->node_kind = enk_section;
    node->type = same_shape_type(node, whole->array.element_type, counts.sections);
    if (counts.vector) {
        section_bounds(node->type);
    }
    return true;
}

// ---- substrings

expr_node *integer_node(std::int32_t value, source_pos position) {
    expr_node *node = new_integer_constant_node(value, default_integer());
    node->source_pos = position;
    return node;
}

bool is_constant_one(const expr_node *e) {
    return e->node_kind == enk_constant && e->type->type_code == tk_integer &&
           integer_value_of(e->constant) == 1;
}

// The type of a substring of a base whose elements are of that type.
type *substring_type(expr_node *base, type *t, const expr_node *pair) {
    const bool from_start = !pair->first || is_constant_one(pair->first);
    if (!pair->second && from_start) {
        return t;
    }
    const source_pos position = base->source_pos;
    expr_node *length = pair->second ? new_ref(pair->second) : text_length(base);
    length->source_pos = position;
    if (!from_start) {
        expr_node *difference = make_integer_operation(eok_isubtract, length, new_ref(pair->first), position);
        length = make_integer_operation(eok_iadd, difference, integer_node(1, position), position);
    }
    type *result = new_character_type(t);
    set_expression_bound(result->character.length, length);
    return result;
}

} // namespace

bool check_object_reference(expr_node *node, std::uint32_t flags, object *routine) {
    check_object(node->object);
    object *const o = node->object = global_entity(node->object);
    if (is_in_error(o->type)) {
        return false;
    }
    node->type = type_of_reference(node, o->type);
    note_host_reference(o, routine);
    if ((flags & ecf_restricted_a) && is_own_variable(o, routine) &&
        (is_restricted_context(flags) || (o->is_allocatable && !o->is_pointer))) {
        return fail_at(msg_must_be_restricted_expression, node);
    }
    if (!(flags & ecf_whole_assumed_size) && is_assumed_size(o->type)) {
        return fail_at(msg_assumed_size_array_is_not_allowed, node);
    }
    return true;
}

bool check_field_reference(expr_node *node, std::uint32_t flags, object *routine) {
    if (!check_component(node, flags, routine)) {
        return false;
    }
    type *const whole = node->base_expr->type;
    type *const t = node->field_var->type;
    if (is_array(whole)) {
        node->type = with_element(whole, element_type_of(t));
        node->for_all = !is_array(t);
    } else {
        node->type = type_of_reference(node, t);
    }
    return true;
}

bool check_subscripts(expr_node *node, std::uint32_t flags, object *routine) {
    subscript_counts counts;
    const bool ok = check_subscript_list(node->ind_list, flags, routine, counts);
    expr_node *const base = node->array_expr;
    if (ok && base->node_kind == enk_field && counts.sections == 0 && !is_checked(base)) {
        begin_check(base);
        if (!check_component_element(node, flags, routine, counts.all)) {
            mark_error_node(base);
            return false;
        }
        return true;
    }
    if (!check_expression(base, base_flags(flags) | ecf_whole_assumed_size, routine) || !ok ||
        !check_base_of_part(base, flags)) {
        return false;
    }
    if (!is_array(base->type)) {
        return fail_at(msg_subscript_used_on_non_array, node);
    }
    if (!check_count(node, counts.all, base->type->array.rank)) {
        return false;
    }
    if (counts.sections > 0) {
        return check_section(node, counts);
    }
    node->type = base->type->array.element_type;
    return true;
}

bool check_substring(expr_node *node, std::uint32_t flags, object *routine) {
    expr_node *const base = node->array_expr;
    expr_node *const pair = node->ind_list;
    const bool ok = check_expression(base, base_flags(flags), routine);
    if (!check_expression(pair, subscript_flags(flags), routine) || !ok || !check_base_of_part(base, flags)) {
        return false;
    }
    pair->intent_in = true;
    type *const element = element_type_of(base->type);
    if (element->type_code != tk_fcharacter) {
        return fail_at(msg_substring_specification_used_on_non_character, base);
    }
    node->type = substring_type(base, element, pair);
    if (is_array(base->type)) {
        node->type = with_element(base->type, node->type);
        node->for_all = true;
    }
    return true;
}

bool check_triplet(expr_node *node, std::uint32_t flags, object *routine) {
    bool ok = true;
    for (expr_node *part : {node->first, node->second, node->stride}) {
        if (!part) {
            continue;
        }
        const bool good = check_expression(part, flags, routine);
        part->intent_in = true;
        ok = good && ok;
        if (good && part->type->type_code != tk_integer) {
            ok = fail_at(msg_must_be_scalar_integer_expression, part);
        }
    }
    node->type = new_array_type(default_integer(), 1);
    node->type->source_corresp.decl_position = node->source_pos;
    return ok;
}

} // namespace zf90
