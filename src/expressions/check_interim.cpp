// Stands in for the check and the folding of expressions until they exist: literals,
// signed ones, and named constants have a value, and nothing else has. To be replaced as a whole.
#include "constants/folding.h"
#include "declarations/scopes.h"
#include "declarations/symbols.h"
#include "driver/options.h"
#include "expressions/check.h"
#include "il/constants.h"
#include "il/entries.h"
#include "il/types.h"
#include "source/tokens.h"

namespace zf90 {

bool fold_expression(expr_node *node, fold_value &value, bool must_fold) {
    value.source_pos = node->source_pos;
    clear_fold_value(value);
    if (node->node_kind == enk_error) {
        return true;
    }
    const constant *c = nullptr;
    if (node->node_kind == enk_constant) {
        c = node->constant;
    } else if (node->node_kind == enk_object && node->object->is_constant) {
        constant *const initial = node->object->variant.initializer;
        if (initial && !check_initializer(initial)) {
            return false;
        }
        c = initial;
    }
    if (c) {
        read_constant(c, value);
        return true;
    }
    if (must_fold) {
        error_at(msg_must_be_initialization_expression, node->source_pos);
        mark_error_node(node);
        return true;
    }
    return false;
}

bool check_initializer(constant *value) {
    if (value->repr_kind != ck_expression || value->value.bytes || !value->value.expr) {
        return value->repr_kind != ck_error;
    }
    expr_node *const tree = value->value.expr;
    fold_value folded;
    if (!check_expression(tree, ECF_INIT, nullptr) || !fold_expression(tree, folded, true) ||
        !has_value(folded)) {
        set_constant_repr(value, ck_error);
        value->type = error_type();
        return false;
    }
    const constant *const c = store_fold_value(folded);
    if (!retain_constant_exprs) {
        set_constant_repr(value, ck_value);
    }
    value->type = c->type;
    value->value.bytes = c->value.bytes;
    return true;
}

} // namespace zf90
