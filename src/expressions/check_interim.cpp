// Stands in for the check and the folding of expressions, and for derived types, until they exist: literals,
// signed ones, and named constants have a value, and nothing else has. To be replaced as a whole.
#include "constants/folding.h"
#include "declarations/derived_types.h"
#include "declarations/scopes.h"
#include "driver/options.h"
#include "expressions/check.h"
#include "il/constants.h"
#include "il/entries.h"
#include "il/types.h"
#include "source/tokens.h"

namespace zf90 {

void mark_error_node(expr_node *node) {
    node->node_kind = enk_error;
    node->type = error_type();
}

bool check_expression(expr_node *node, std::uint32_t flags, object *routine) {
    switch (node->node_kind) {
    case enk_error: return false;
    case enk_constant: node->type = node->constant->type; return true;
    case enk_symbol: {
        symbol *s = node->symbol;
        if (s->kind == sk_host_candidate) {
            s = resolve_candidate(s);
        }
        if (s && s->kind == sk_variable) {
            set_expr_node_kind(node, enk_object);
            node->object = entity_as<object>(s);
            node->type = node->object->type;
            return true;
        }
        break;
    }
    case enk_symbol_call: {
        expr_node *operand = node->operands;
        if (operand && !operand->next && node->symbol->name->token_code == tok_minus &&
            check_expression(operand, flags, routine) && operand->type->type_code == tk_integer) {
            fold_value value;
            fold_value result;
            if (fold_expression(operand, value, false) && has_value(value) &&
                fold_unary(eok_inegate, value, operand->type, result)) {
                set_expr_node_kind(node, enk_constant);
                node->constant = store_fold_value(result);
                node->type = node->constant->type;
                return true;
            }
        }
        break;
    }
    default: break;
    }
    node->type = default_integer();
    return true;
}

symbol *use_derived_type(symbol *s, name_locator &name) {
    if (s && s->kind == sk_derived_type) {
        return s;
    }
    if (s) {
        error_at(msg_identifier_is_not_derived_type_name, name.position);
        name.atom = nullptr;
    } else {
        error_at(msg_undefined_derived_type, name.position);
    }
    s = new_symbol(sk_derived_type, name, curr_scope_depth);
    s->entity = error_type();
    return s;
}

} // namespace zf90
