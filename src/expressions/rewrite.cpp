// Trees with other leaves. What a change does not reach is shared with the original.
#include "expressions/rewrite.h"

#include "driver/deep_call.h"
#include "expressions/operators.h"
#include "il/entries.h"

#include <utility>
#include <vector>

namespace zf90 {

expr_node *copy_unchecked_node(const expr_node *node) {
    expr_node *copy = il_new<expr_node>();
    *copy = *node;
    // The arguments of a call have been bound, which is not to be done again.
    copy->il_id = node->node_kind == enk_call ? node->il_id & il_check_mark : 0;
    copy->multiply_referenced = false;
    copy->next = nullptr;
    return copy;
}

expr_node *ref_in_place_of(const expr_node *place, expr_node *target) {
    expr_node *ref = new_ref(target);
    ref->source_pos = place->source_pos;
    copy_keyword(place, ref);
    return ref;
}

namespace {

expr_node *rewritten(expr_node *node, const leaf_rewriter &leaf);
expr_node *rewritten_list(expr_node *list, const leaf_rewriter &leaf);

// Collects the rewritten parts of a node; the node is copied when the first of them has changed.
struct node_rewriter {
    expr_node *original;
    expr_node *copy = nullptr;

    expr_node *changed() {
        if (!copy) {
            copy = copy_unchecked_node(original);
        }
        return copy;
    }
};

void rewrite_loop(node_rewriter &r, const leaf_rewriter &leaf) {
    const do_loop *loop = r.original->do_info;
    do_loop parts = *loop;
    parts.variable = rewritten(loop->variable, leaf);
    parts.initial_value = rewritten(loop->initial_value, leaf);
    parts.final_value = rewritten(loop->final_value, leaf);
    parts.increment = rewritten(loop->increment, leaf);
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
expr_node *rewrite_parts(expr_node *node, const leaf_rewriter &leaf) {
    node_rewriter r{node};
    const auto rewrite = [&](expr_node *expr_node::*part, bool is_list) {
        expr_node *was = node->*part;
        expr_node *now = is_list ? rewritten_list(was, leaf) : rewritten(was, leaf);
        if (now != was) {
            r.changed()->*part = now;
        }
    };
    switch (node->node_kind) {
    case enk_object:
    case enk_param: {
        expr_node *other = leaf(node);
        return other ? other : node;
    }
    case enk_ref: {
        expr_node *target = rewritten(node->reference, leaf);
        if (target != node->reference) {
            return ref_in_place_of(node, target);
        }
        return node;
    }
    case enk_intrinsic:
        if (expr_node *other = leaf(node)) {
            return other;
        }
        rewrite(&expr_node::operands, true);
        break;
    case enk_operation:
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
        rewrite_loop(r, leaf);
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
expr_node *rewritten(expr_node *node, const leaf_rewriter &leaf) {
    return node ? deep_call([&] { return rewrite_parts(node, leaf); }) : nullptr;
}

// A list. What comes before a node that has changed is copied for the sake of its link; what comes behind the
// last one that has is shared.
expr_node *rewritten_list(expr_node *list, const leaf_rewriter &leaf) {
    std::vector<expr_node *> was;
    std::vector<expr_node *> now;
    std::size_t changed = 0; // behind the last change
    for (expr_node *node = list; node; node = node->next) {
        was.push_back(node);
        now.push_back(rewritten(node, leaf));
        if (now.back() != node) {
            changed = now.size();
        }
    }
    if (changed == 0) {
        return list;
    }
    expr_node *rest = was[changed - 1]->next;
    for (std::size_t i = changed; i-- > 0;) {
        expr_node *node = now[i] != was[i] ? now[i] : copy_unchecked_node(was[i]);
        node->next = rest;
        rest = node;
    }
    return rest;
}

} // namespace

bool rewrite_tree(expr_node *&slot, const leaf_rewriter &leaf) {
    expr_node *result = rewritten_list(slot, leaf);
    return std::exchange(slot, result) != result;
}

bool names_object(expr_node *tree, const std::function<bool(const object *o)> &test) {
    bool found = false;
    rewritten(tree, [&](const expr_node *leaf) -> expr_node * {
        found = found || (leaf->node_kind == enk_object && test(leaf->object));
        return nullptr;
    });
    return found;
}

} // namespace zf90
