// Expressions as text, as they stand before they are checked. Operators print between or before their
// operands, everything in parentheses: (A + (- B)). "{...}" is what stood in parentheses in the source.
#pragma once

#include "constants/arithmetic.h"
#include "il/records.h"
#include "il/types.h"

#include <charconv>
#include <string>

namespace zf90 {

class expression_tree {
public:
    static std::string text(const expr_node *e) {
        if (!e) {
            return "";
        }
        std::string result = keyword_of(e) + bare_text(e);
        return e->allow_reordering ? result : "{" + result + "}";
    }

    static std::string list(const expr_node *e, const char *separator = ", ") {
        std::string result;
        for (; e; e = e->next) {
            result += text(e) + (e->next ? separator : "");
        }
        return result;
    }

    static std::string text(const constant *c) {
        if (!c || c->repr_kind != ck_value) {
            return "bad";
        }
        fold_value value = new_fold_value(ck_value);
        read_constant(c, value);
        const std::string kind = "_" + std::to_string(c->type->kind);
        switch (c->type->type_code) {
        case tk_integer:
            return std::to_string(value.integer) + (c->type->kind == default_integer_kind ? "" : kind);
        case tk_logical: return value.integer != 0 ? ".TRUE." : ".FALSE.";
        case tk_float: return number(value.real) + kind;
        case tk_complex: return "<" + number(value.real) + ", " + number(value.imaginary) + ">" + kind;
        case tk_fcharacter:
            return "'" +
                   std::string(reinterpret_cast<const char *>(fold_text(value)),
                               static_cast<std::size_t>(constant_length(c->type))) +
                   "'";
        default: return "?";
        }
    }

private:
    static std::string number(double value) {
        char digits[40];
        return std::string(digits, std::to_chars(digits, digits + sizeof digits, value).ptr);
    }

    static std::string keyword_of(const expr_node *e) {
        if (e->is_specifier) {
            return "spec" + std::to_string(e->selector) + "=";
        }
        return e->keyword ? std::string(e->keyword->spelling) + "=" : "";
    }

    static bool is_operator(const symbol *s) {
        const int token = s->name->token_code;
        return s->name->spelling[0] == '.' || (token >= 22 && token <= 39);
    }

    static std::string call(const expr_node *e) {
        const std::string name = e->symbol->name->spelling;
        if (!is_operator(e->symbol)) {
            return name + (e->has_triplet ? "[" : "(") + list(e->operands) + (e->has_triplet ? "]" : ")");
        }
        const expr_node *left = e->operands;
        return left->next ? "(" + text(left) + " " + name + " " + text(left->next) + ")"
                          : "(" + name + " " + text(left) + ")";
    }

    static std::string bare_text(const expr_node *e) {
        switch (e->node_kind) {
        case enk_error: return "error";
        case enk_constant: return text(e->constant);
        case enk_stmt_label_value:
            return std::string("*") + e->stmt_label_value->source_corresp.name->spelling;
        case enk_symbol: return e->symbol->name->spelling;
        case enk_symbol_call: return call(e);
        case enk_field: return text(e->base_expr) + "%" + e->field_var->source_corresp.name->spelling;
        case enk_subscript: return text(e->array_expr) + " elements(" + list(e->ind_list) + ")";
        case enk_substring: return text(e->array_expr) + " substring(" + text(e->ind_list) + ")";
        case enk_constructor: return "(/" + list(e->constructor) + "/)";
        case enk_implied_do: {
            const do_loop *d = e->do_info;
            return "do(" + list(e->expr_list) + "; " + (e->has_a_scope ? "own " : "") + text(d->variable) +
                   "=" + text(d->initial_value) + "," + text(d->final_value) +
                   (d->increment ? "," + text(d->increment) : "") + ")";
        }
        case enk_triplet:
            return text(e->first) + ":" + text(e->second) + (e->stride ? ":" + text(e->stride) : "");
        default: return "?";
        }
    }
};

} // namespace zf90
