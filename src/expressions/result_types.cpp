// The type of the result of a call where it depends on the arguments: the length and the bounds that the
// function declares, with its dummy arguments replaced by the actual ones.
#include "constants/folding.h"
#include "expressions/calls.h"
#include "expressions/check.h"
#include "expressions/operators.h"
#include "expressions/rewrite.h"
#include "il/entries.h"
#include "il/types.h"

#include <algorithm>
#include <vector>

namespace zf90 {

namespace {

// What a tree is rewritten for.
struct substitution {
    object *specific;
    expr_node *actuals; // null: dummies become `enk_param`
};

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

expr_node *replace_leaf(const expr_node *node, const substitution &s) {
    if (node->node_kind == enk_object) {
        return replace_object_node(node, s);
    }
    return s.actuals ? replace_dummy(node, s, node->parameter->source_corresp.name) : nullptr;
}

// A type with its length and its bounds rewritten; itself if nothing has changed.
type *substitute_in_type(type *t, const substitution &s);

bool substitute_bound(bound &b, const substitution &s) {
    return substitute_dummies(b.expr, s.specific, s.actuals);
}

type *substitute_in_character(type *t, const substitution &s) {
    bound length = t->character.length;
    if ((length.kind != bound_expression && length.kind != bound_same_as) || !substitute_bound(length, s)) {
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
        changed = (b.kind == bound_expression && substitute_bound(b, s)) || changed;
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
    const substitution s{specific, actuals};
    return rewrite_tree(slot, [&s](const expr_node *leaf) { return replace_leaf(leaf, s); });
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
