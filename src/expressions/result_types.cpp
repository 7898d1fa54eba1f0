// The type of the result of a call where it depends on the arguments: the length and the bounds that the
// function declares, with its dummy arguments replaced by the actual ones.
#include "constants/folding.h"
#include "driver/deep_call.h"
#include "expressions/calls.h"
#include "expressions/check.h"
#include "expressions/operators.h"
#include "il/entries.h"
#include "il/types.h"

#include <algorithm>
#include <utility>
#include <vector>

namespace zf90 {

namespace {

// What a tree is rewritten for.
struct substitution {
    object *specific;
    expr_node *actuals; // null: dummies become `enk_param`
};

// A copy that is to be checked again.
expr_node *copy_node(const expr_node *node) {
    expr_node *copy = il_new<expr_node>();
    *copy = *node;
    copy->il_id = 0;
    copy->multiply_referenced = false;
    return copy;
}

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
    expr_node *ref = new_ref(actual);
    ref->source_pos = node->source_pos;
    copy_keyword(node, ref);
    return ref;
}

bool is_own(const object *o, const object *specific) {
    return o->source_corresp.scope_depth == specific->source_corresp.scope_depth + 1;
}

expr_node *new_leaf(const expr_node *node, expr_node_kind kind, type *t) {
    expr_node *leaf = copy_node(node);
    set_expr_node_kind(leaf, kind);
    leaf->type = t;
    leaf->next = nullptr;
    return leaf;
}

// A dummy argument or a named constant of the function; null: the name stays as it is.
expr_node *replace_object_node(const expr_node *node, const substitution &s) {
    object *o = node->object;
    if (!is_own(o, s.specific)) {
        return nullptr;
    }
    if (o->is_parameter) {
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

expr_node *substituted(expr_node *node, const substitution &s);
expr_node *substituted_list(expr_node *list, const substitution &s);

// Collects the rewritten parts of a node; the node is copied when the first of them has changed.
struct node_rewriter {
    expr_node *original;
    expr_node *copy = nullptr;

    expr_node *changed() {
        if (!copy) {
            copy = copy_node(original);
            copy->next = nullptr;
        }
        return copy;
    }
};

void rewrite_loop(node_rewriter &r, const substitution &s) {
    const do_loop *loop = r.original->do_info;
    do_loop parts = *loop;
    parts.variable = substituted(loop->variable, s);
    parts.initial_value = substituted(loop->initial_value, s);
    parts.final_value = substituted(loop->final_value, s);
    parts.increment = substituted(loop->increment, s);
    if (parts.variable != loop->variable || parts.initial_value != loop->initial_value ||
        parts.final_value != loop->final_value || parts.increment != loop->increment) {
        do_loop *copy = new_do_loop();
        const std::uint32_t id = copy->il_id;
        *copy = parts;
        copy->il_id = id;
        r.changed()->do_info = copy;
    }
}

// The node with everything in it rewritten; itself if nothing has changed. `next` is left alone.
expr_node *substitute_parts(expr_node *node, const substitution &s) {
    node_rewriter r{node};
    const auto rewrite = [&](expr_node *expr_node::*part, bool is_list) {
        expr_node *was = node->*part;
        expr_node *now = is_list ? substituted_list(was, s) : substituted(was, s);
        if (now != was) {
            r.changed()->*part = now;
        }
    };
    switch (node->node_kind) {
    case enk_object: {
        expr_node *leaf = replace_object_node(node, s);
        return leaf ? leaf : node;
    }
    case enk_param: {
        expr_node *leaf = s.actuals ? replace_dummy(node, s, node->parameter->source_corresp.name) : nullptr;
        return leaf ? leaf : node;
    }
    case enk_ref: {
        expr_node *target = substituted(node->reference, s);
        if (target != node->reference) {
            expr_node *ref = new_ref(target);
            ref->source_pos = node->source_pos;
            copy_keyword(node, ref);
            return ref;
        }
        return node;
    }
    case enk_operation:
    case enk_intrinsic:
    case enk_call: rewrite(&expr_node::operands, true); break;
    case enk_field: rewrite(&expr_node::base_expr, false); break;
    case enk_subscript:
    case enk_substring:
    case enk_section:
        rewrite(&expr_node::array_expr, false);
        rewrite(&expr_node::ind_list, true);
        break;
    case enk_constructor: rewrite(&expr_node::constructor, true); break;
    case enk_implied_do:
    case enk_isum:
        rewrite(&expr_node::expr_list, true);
        rewrite_loop(r, s);
        break;
    case enk_triplet:
        rewrite(&expr_node::first, false);
        rewrite(&expr_node::second, false);
        rewrite(&expr_node::stride, false);
        break;
    default: break;
    }
    return r.copy ? r.copy : node;
}

// One node that is on no list.
expr_node *substituted(expr_node *node, const substitution &s) {
    return node ? deep_call([&] { return substitute_parts(node, s); }) : nullptr;
}

// A list. What comes before a node that has changed is copied for the sake of its link; what comes behind the
// last one that has is shared.
expr_node *substituted_list(expr_node *list, const substitution &s) {
    std::vector<expr_node *> was;
    std::vector<expr_node *> now;
    std::size_t changed = 0; // behind the last change
    for (expr_node *node = list; node; node = node->next) {
        was.push_back(node);
        now.push_back(substituted(node, s));
        if (now.back() != node) {
            changed = now.size();
        }
    }
    if (changed == 0) {
        return list;
    }
    expr_node *rest = was[changed - 1]->next;
    for (std::size_t i = changed; i-- > 0;) {
        expr_node *node = now[i] != was[i] ? now[i] : copy_node(was[i]);
        node->next = rest;
        rest = node;
    }
    return rest;
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
    expr_node *result = substituted_list(slot, {specific, actuals});
    return std::exchange(slot, result) != result;
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
