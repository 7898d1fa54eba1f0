// The statements of a program unit as text, as they stand before their expressions are checked: names and
// operators are symbols, and what has parentheses is a call. One statement a line, indented by depth; a block
// prints its statements below it, an IF and a WHERE their second branch behind a line "else".
#pragma once

#include "constants/arithmetic.h"
#include "declarations/symbols.h"
#include "il/constants.h"
#include "il/types.h"

#include <string>

namespace zf90 {

class statement_tree {
public:
    static std::string text(const statement *body) {
        statement_tree printer;
        printer.put(body, 0);
        return printer.out_;
    }

private:
    static std::string name_of(const atom *name) { return name ? name->spelling : "-"; }
    static std::string name_of(const label *l) { return l ? name_of(l->source_corresp.name) : "none"; }

    static std::string text_of(const constant *c) {
        if (!c) {
            return "none";
        }
        if (c->repr_kind == ck_expression && !c->value.bytes) {
            return text_of(c->value.expr);
        }
        if (c->repr_kind == ck_error) {
            return "error";
        }
        fold_value value = new_fold_value(ck_value);
        read_constant(c, value);
        switch (c->type->type_code) {
        case tk_integer: return std::to_string(value.integer);
        case tk_logical: return value.integer != 0 ? ".TRUE." : ".FALSE.";
        case tk_fcharacter:
            return "'" +
                   std::string(reinterpret_cast<const char *>(fold_text(value)),
                               static_cast<std::size_t>(constant_length(c->type))) +
                   "'";
        default: return std::to_string(value.real);
        }
    }

    static std::string list_of(const expr_node *e) {
        std::string result;
        for (; e; e = e->next) {
            result += (result.empty() ? "" : ", ") + text_of(e);
        }
        return result;
    }

    static std::string text_of(const expr_node *e) {
        if (!e) {
            return "none";
        }
        switch (e->node_kind) {
        case enk_error: return "error";
        case enk_constant: return text_of(e->constant);
        case enk_symbol: return name_of(e->symbol->name);
        case enk_symbol_call: return name_of(e->symbol->name) + "(" + list_of(e->operands) + ")";
        case enk_object: return name_of(e->object->source_corresp.name);
        case enk_stmt_label_value: return "*" + name_of(e->stmt_label_value);
        case enk_operation: return "operation(" + list_of(e->operands) + ")";
        case enk_generic_call:
            return name_of(e->generic->source_corresp.name) + "(" + list_of(e->operands) + ")";
        case enk_constructor: return "(/" + list_of(e->constructor) + "/)";
        case enk_triplet:
            return (e->first ? text_of(e->first) : "") + ":" + (e->second ? text_of(e->second) : "");
        default: return "?";
        }
    }

    static std::string labels_of(const statement *s) {
        std::string result;
        for (const label_list_entry *entry = s->label_list; entry; entry = entry->next) {
            result += (result.empty() ? "" : ", ") + name_of(entry->label);
        }
        return " -> " + result;
    }

    static std::string ranges_of(const case_range *range) {
        std::string result;
        for (; range; range = range->next) {
            result += result.empty() ? "" : ", ";
            switch (range->range_kind) {
            case crk_eq: result += text_of(range->low); break;
            case crk_le: result += text_of(range->low) + ":"; break;
            case crk_ge: result += ":" + text_of(range->high); break;
            default: result += text_of(range->low) + ":" + text_of(range->high); break;
            }
        }
        return result.empty() ? "default" : result;
    }

    void line(int depth, const std::string &text) {
        out_ += std::string(static_cast<std::size_t>(2 * depth), ' ') + text + "\n";
    }

    void put_list(const statement *s, int depth) {
        for (; s; s = s->next) {
            put(s, depth);
        }
    }

    void put(const statement *s, int depth) {
        if (!s) {
            return;
        }
        switch (s->kind) {
        case stmk_block: {
            line(depth, "block");
            put_list(s->statements, depth + 1);
            const statement *last = s->statements;
            while (last && last->next) {
                last = last->next;
            }
            if (last != s->last_statement) {
                line(depth, "wrong last_statement");
            }
            break;
        }
        case stmk_expr: line(depth, "expr " + text_of(s->expr)); break;
        case stmk_if:
        case stmk_where:
            line(depth, (s->kind == stmk_if ? "if " : "where ") + text_of(s->expr));
            put(s->then_statement, depth + 1);
            if (s->else_statement) {
                line(depth, "else");
                put(s->else_statement, depth + 1);
            }
            break;
        case stmk_while:
        case stmk_select:
            line(depth, (s->kind == stmk_while ? "while " : "select ") + text_of(s->expr));
            put(s->body_statement, depth + 1);
            break;
        case stmk_goto: line(depth, "goto " + name_of(s->label)); break;
        case stmk_label:
            line(depth, "label " + name_of(s->label) + (s->label->exec_stmt == s ? "" : " of another"));
            break;
        case stmk_return: line(depth, "return"); break;
        case stmk_ido: {
            const do_loop *d = s->do_loop;
            line(depth, !d ? "ido"
                           : "ido " + text_of(d->variable) + "=" + text_of(d->initial_value) + "," +
                                 text_of(d->final_value) +
                                 (d->increment ? "," + text_of(d->increment) : std::string()));
            put(s->loop_statement, depth + 1);
            break;
        }
        case stmk_iarith_if: line(depth, "iarith_if " + text_of(s->expr) + labels_of(s)); break;
        case stmk_computed_goto: line(depth, "computed_goto " + text_of(s->expr) + labels_of(s)); break;
        case stmk_assigned_goto: line(depth, "assigned_goto " + text_of(s->expr) + labels_of(s)); break;
        case stmk_alt_return: line(depth, "alt_return " + text_of(s->expr)); break;
        case stmk_stop:
        case stmk_pause:
            line(depth, std::string(s->kind == stmk_stop ? "stop" : "pause") +
                            (s->stop_pause_string ? " " + text_of(s->stop_pause_string) : std::string()));
            break;
        case stmk_case:
            line(depth, "case " + ranges_of(s->case_range_list));
            put(s->case_statements, depth + 1);
            break;
        case stmk_exit:
        case stmk_cycle:
            line(depth, (s->kind == stmk_exit ? "exit " : "cycle ") + name_of(s->constr_label->label));
            break;
        default: line(depth, "statement " + std::to_string(s->kind)); break;
        }
    }

    std::string out_;
};

} // namespace zf90
