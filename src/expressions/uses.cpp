// The uses that wait for the end of their statement.
#include "expressions/uses.h"

#include "source/tokens.h"

#include <algorithm>
#include <vector>

namespace zf90 {

namespace {

struct waiting_use {
    symbol *name;
    const expr_node *node; // that names it: a name, or an element, section or substring of it
    source_pos position;
    use_kind use;
};

std::vector<waiting_use> waiting_uses;

bool is_intrinsic_operator(const symbol *s) {
    return s->name->token_code >= first_operator_token && s->name->token_code <= last_operator_token;
}

// The waiting use of the variable that a designator leads to, or null.
waiting_use *find_use(const expr_node *designator) {
    // The name is that of the node at the end, or of the one around it, which was read as a name with a list.
    const expr_node *around = designator;
    const expr_node *node = designator;
    for (bool more = true; more;) {
        const expr_node *next = node;
        switch (node->node_kind) {
        case enk_field: next = node->base_expr; break;
        case enk_subscript:
        case enk_substring:
        case enk_section: next = node->array_expr; break;
        case enk_ref: next = node->reference; break;
        default: more = false; break;
        }
        if (more) {
            around = node;
            node = next;
        }
    }
    const auto use = std::find_if(waiting_uses.rbegin(), waiting_uses.rend(),
                                  [=](const waiting_use &u) { return u.node == node || u.node == around; });
    return use == waiting_uses.rend() ? nullptr : &*use;
}

} // namespace

void note_name(symbol *s, const expr_node *node) {
    if (!is_intrinsic_operator(s)) {
        waiting_uses.push_back({s, node, node->source_pos, use_referenced});
    }
}

void note_definition(const expr_node *designator) {
    if (waiting_use *use = find_use(designator)) {
        use->use = use_modified;
    }
}

void forget_use(const expr_node *designator) {
    if (const waiting_use *use = find_use(designator)) {
        waiting_uses.erase(waiting_uses.begin() + (use - waiting_uses.data()));
    }
}

void finish_uses() {
    for (const waiting_use &use : waiting_uses) {
        note_use(use.use, use.name, use.position);
    }
    waiting_uses.clear();
}

} // namespace zf90
