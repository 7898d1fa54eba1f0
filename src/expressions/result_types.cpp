// The type of the result of a call where it depends on the arguments: the length and the bounds that the
// function declares, with its dummy arguments replaced by the actual ones.
#include "constants/folding.h"
#include "expressions/calls.h"
#include "expressions/check.h"
#include "expressions/operators.h"
#include "expressions/rewrite.h"
#include "expressions/shapes.h"
#include "il/constants.h"
#include "il/entries.h"
#include "il/types.h"
#include "intrinsics/intrinsic_codes.h"

#include <algorithm>
#include <vector>

namespace zf90 {

namespace {

// What a tree is rewritten for.
struct substitution {
    object *specific;
    expr_node *actuals; // null: dummies become `enk_param`
    // How many inquiries may still be replaced by what the dummy declares: bounds that ask for the bounds of
    // other dummies several times would grow without end.
    mutable std::uint32_t inquiries = 1000;
};

bool substitute(expr_node *&slot, const substitution &s);

param_type *param_of_name(const object *specific, const atom *name) {
    param_type *p = specific->type->routine.param_type_list;
    while (p && p->source_corresp.name != name) {
        p = p->next;
    }
    return p;
}

// The node that stands for a dummy argument: the actual of the same place, or what tells the place.
expr_node *replace_dummy(const expr_node *node, const substitution &s, const atom *name) {
    param_type *p = s.specific->type->routine.param_type_list;
    expr_node *actual = s.actuals;
    while (p && p->source_corresp.name != name) {
        p = p->next;
        actual = actual ? actual->next : nullptr;
    }
    if (!p || !actual) {
        return nullptr;
    }
    return ref_in_place_of(node, actual);
}

// Whether an object is declared in a procedure, not around it.
bool is_inner(const object *o, const object *procedure) {
    return o->source_corresp.scope_depth > procedure->source_corresp.scope_depth;
}

expr_node *new_leaf(const expr_node *node, expr_node_kind kind, type *t) {
    expr_node *leaf = copy_unchecked_node(node);
    set_expr_node_kind(leaf, kind);
    leaf->type = t;
    leaf->next = nullptr;
    return leaf;
}

// A dummy argument or a named constant of the function; null: the name stays as it is.
expr_node *replace_object_node(const expr_node *node, const substitution &s) {
    object *o = node->object;
    if (!is_inner(o, s.specific)) {
        return nullptr;
    }
    if (o->is_parameter) { // by name: after two interfaces have become one, it may be that of the other one
        if (s.actuals) {
            return replace_dummy(node, s, o->source_corresp.name);
        }
        param_type *p = param_of_name(s.specific, o->source_corresp.name);
        if (!p) {
            return nullptr;
        }
        expr_node *leaf = new_leaf(node, enk_param, p->type);
        leaf->parameter = p;
        return leaf;
    }
    constant *initial = o->is_constant ? o->variant.initializer : nullptr;
    if (!initial || !check_initializer(initial)) {
        return nullptr;
    }
    expr_node *leaf = new_leaf(node, enk_constant, initial->type);
    leaf->constant = initial;
    return leaf;
}

// The declared type of a dummy argument of the function that a node names; null for anything else and for a
// pointer, which has the bounds of the argument that is passed.
type *dummy_type(const expr_node *node, const object *specific) {
    if (node->node_kind == enk_param) {
        return node->parameter->is_pointer ? nullptr : node->parameter->type;
    }
    const bool is_dummy = node->node_kind == enk_object && node->object->is_parameter &&
                          !node->object->is_pointer && is_inner(node->object, specific);
    return is_dummy ? node->object->type : nullptr;
}

// A bound that the dummy argument declares, if it is known where the function is called.
bool is_declared(const bound &b) { return b.kind == bound_constant || b.kind == bound_expression; }

// LBOUND, UBOUND and SIZE of a dimension (from 1) of a dummy array that has bounds of its own.
expr_node *inquire_dimension(const expr_node *inquiry, const type *array, unsigned dimension) {
    const source_pos position = inquiry->source_pos;
    bound lower = array->array.bound->bounds[dimension - 1];
    const bound &upper = array->array.bound->bounds[array->array.rank + dimension - 1];
    if (!is_declared(lower)) { // a plain colon
        set_constant_bound(lower, 1);
    }
    if (inquiry->intrinsic == intr_lbound) {
        return value_of(lower, position);
    }
    if (is_declared(upper)) {
        return inquiry->intrinsic == intr_size ? extent_between(lower, upper, position)
                                               : value_of(upper, position);
    }
    if (inquiry->intrinsic == intr_size || array->array.shape_kind == assumed_size) {
        return nullptr;
    }
    // The upper bound follows from the size that is passed.
    expr_node *result = copy_unchecked_node(inquiry);
    result->intrinsic = intr_size;
    if (lower.kind == bound_constant && lower.value == 1) {
        return result;
    }
    result = make_integer_operation(eok_iadd, result, value_of(lower, position), position);
    return make_integer_operation(eok_isubtract, result, new_integer_constant_node(1, default_integer()),
                                  position);
}

expr_node *inquire_size(const expr_node *inquiry, const type *array) {
    expr_node *size = nullptr;
    for (unsigned d = 1; d <= array->array.rank; ++d) {
        expr_node *extent = inquire_dimension(inquiry, array, d);
        if (!extent) {
            return nullptr;
        }
        size = size ? make_integer_operation(eok_imultiply, size, extent, inquiry->source_pos) : extent;
    }
    return size;
}

// A dummy argument may have another length and other bounds than the argument that is passed: what they are
// by its declaration. Null where the actual argument tells.
expr_node *inquire_dummy(const expr_node *inquiry, const object *specific) {
    type *const t = inquiry->operands ? dummy_type(inquiry->operands, specific) : nullptr;
    if (!t) {
        return nullptr;
    }
    if (inquiry->intrinsic == intr_len) {
        const type *text = element_type_of(t);
        const bool is_own = text->type_code == tk_fcharacter && is_declared(text->character.length);
        return is_own ? value_of(text->character.length, inquiry->source_pos) : nullptr;
    }
    const bool asks_for_bounds = inquiry->intrinsic == intr_lbound || inquiry->intrinsic == intr_ubound ||
                                 inquiry->intrinsic == intr_size;
    if (!asks_for_bounds || !is_array(t) || t->array.shape_kind > deferred_shape) {
        return nullptr;
    }
    const expr_node *dim = inquiry->operands->next;
    if (!dim || dim->node_kind == enk_empty) {
        return inquiry->intrinsic == intr_size && t->array.shape_kind == explicit_shape
                   ? inquire_size(inquiry, t)
                   : nullptr;
    }
    if (dim->node_kind != enk_constant || dim->constant->repr_kind != ck_value) {
        return nullptr;
    }
    const std::int32_t dimension = integer_value_of(dim->constant);
    const bool exists = dimension >= 1 && dimension <= t->array.rank;
    return exists ? inquire_dimension(inquiry, t, static_cast<unsigned>(dimension)) : nullptr;
}

expr_node *replace_inquiry(const expr_node *node, const substitution &s) {
    expr_node *result = s.actuals && s.inquiries > 0 ? inquire_dummy(node, s.specific) : nullptr;
    if (result) {
        --s.inquiries;
        substitute(result, s);
    }
    return result;
}

expr_node *replace_leaf(const expr_node *node, const substitution &s) {
    if (node->node_kind == enk_intrinsic) {
        return replace_inquiry(node, s);
    }
    if (node->node_kind == enk_object) {
        return replace_object_node(node, s);
    }
    return s.actuals ? replace_dummy(node, s, node->parameter->source_corresp.name) : nullptr;
}

bool substitute(expr_node *&slot, const substitution &s) {
    return rewrite_tree(slot, [&s](const expr_node *leaf) { return replace_leaf(leaf, s); });
}

// A type with its length and its bounds rewritten; itself if nothing has changed.
type *substitute_in_type(type *t, const substitution &s);

type *substitute_in_character(type *t, const substitution &s) {
    bound length = t->character.length;
    if ((length.kind != bound_expression && length.kind != bound_same_as) || !substitute(length.expr, s)) {
        return t;
    }
    type *result = unchecked_copy(t);
    result->character.length = length;
    return result;
}

type *substitute_in_array(type *t, const substitution &s) {
    type *element = substitute_in_type(t->array.element_type, s);
    bool changed = element != t->array.element_type;
    std::vector<bound> bounds;
    if (t->array.shape_kind <= as_shaped) {
        bounds.assign(t->array.bound->bounds, t->array.bound->bounds + 2 * t->array.rank);
    }
    for (bound &b : bounds) {
        changed = (b.kind == bound_expression && substitute(b.expr, s)) || changed;
    }
    if (!changed) {
        return t;
    }
    type *result = unchecked_copy(t);
    result->array.element_type = element;
    if (!bounds.empty()) {
        result->array.bound = new_bound_info_entry(t->array.rank);
        std::copy(bounds.begin(), bounds.end(), result->array.bound->bounds);
    }
    return result;
}

type *substitute_in_type(type *t, const substitution &s) {
    switch (t->type_code) {
    case tk_fcharacter: return substitute_in_character(t, s);
    case tk_farray: return substitute_in_array(t, s);
    default: return t;
    }
}

} // namespace

bool substitute_dummies(expr_node *&slot, object *specific, expr_node *actuals) {
    return substitute(slot, {specific, actuals});
}

type *instantiate_result_type(type *t, object *specific, expr_node *actuals, object *routine) {
    // Without actuals there are no dummies to replace: these trees tell them by their names.
    if (!t || !actuals) {
        return t;
    }
    type *result = substitute_in_type(t, {specific, actuals});
    if (result != t) {
        check_type(result, routine);
    }
    return result;
}

void complete_interface(object *routine) {
    const substitution s{routine, nullptr};
    const auto complete = [&](type *&t) {
        type *result = t ? substitute_in_type(t, s) : t;
        if (result != t) {
            t = result;
            check_type(t, nullptr);
        }
    };
    complete(routine->type->routine.return_type);
    for (param_type *p = routine->type->routine.param_type_list; p; p = p->next) {
        complete(p->type);
    }
}

} // namespace zf90
