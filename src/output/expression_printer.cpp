// Expressions, constants and types as Fortran.
#include "driver/deep_call.h"
#include "il/constants.h"
#include "il/kind_names.h"
#include "il/types.h"
#include "intrinsics/intrinsic_codes.h"
#include "output/fortran_printer.h"
#include "output/il_dump.h"

#include <cstdarg>
#include <cstdio>
#include <cstring>

namespace zf90 {

const object *printed_unit;

namespace {

int print_to_dump_stream(const char *format, ...) {
    std::va_list arguments;
    va_start(arguments, format);
    const int count = std::vfprintf(dump_stream, format, arguments);
    va_end(arguments);
    return count;
}

} // namespace

print_function print_hook = print_to_dump_stream;

void set_print_hook(print_function hook) { print_hook = hook ? hook : print_to_dump_stream; }

void print_escaped(const char *text) {
    for (const char *c = text; *c; ++c) {
        print_hook(dump_html && *c == '<' ? "&lt;" : dump_html && *c == '>' ? "&gt;" : "%c", *c);
    }
}

void print_bracketed(const char *text) { print_hook(dump_html ? "&lt;%s&gt;" : "<%s>", text); }

// ---- constants

const char *real_text(double value, unsigned digits) {
    static char text[40];
    std::snprintf(text, sizeof text - 3, "%.*g", static_cast<int>(digits), value);
    if (!std::strpbrk(text, ".en")) {
        std::strcat(text, ".0");
    }
    return text;
}

namespace {

void print_kind_suffix(std::int32_t kind_number, bool is_default) {
    if (!is_default) {
        print_hook("_%i", kind_number);
    }
}

void print_integer(const type *t, const unsigned char *bytes) {
    const auto &row = integer_kinds[t->kind];
    print_hook("%i", row.read_value(bytes));
    print_kind_suffix(row.kind_number, t->kind == default_integer_kind);
}

void print_real(const type *t, const unsigned char *bytes) {
    const auto &row = real_kinds[t->kind];
    print_hook("%s", real_text(row.read_value(bytes), row.byte_size == 4 ? 9 : 17));
    print_kind_suffix(row.kind_number, t->kind == default_real_kind);
}

void print_characters(const type *t, const unsigned char *bytes) {
    static_assert(character_kind_count == 1, "a text of another kind has the kind before it");
    print_hook("\"");
    for (std::int32_t i = 0; i < constant_length(t); ++i) {
        const unsigned char c = bytes[i];
        if (c == '"') {
            print_hook("\"\"");
        } else if (dump_html && (c == '<' || c == '>')) {
            print_hook(c == '<' ? "&lt;" : "&gt;");
        } else if (c >= ' ' && c < 0x7f) {
            print_hook("%c", c);
        } else {
            print_hook("\\%02xu", c);
        }
    }
    print_hook("\"");
}

void print_value(const type *t, const unsigned char *bytes) {
    switch (t->type_code) {
    case tk_integer: print_integer(t, bytes); break;
    case tk_float: print_real(t, bytes); break;
    case tk_logical: {
        const auto &row = logical_kinds[t->kind];
        print_hook("%s", row.read_value(bytes) != 0 ? ".TRUE." : ".FALSE.");
        print_kind_suffix(row.kind_number, t->kind == default_logical_kind);
        break;
    }
    case tk_complex:
        print_hook("(");
        print_real(t, bytes);
        print_hook(", ");
        print_real(t, bytes + real_kinds[t->kind].byte_size);
        print_hook(")");
        break;
    case tk_fcharacter: print_characters(t, bytes); break;
    default: print_bracketed("bad constant kind"); break;
    }
}

const char *name_text(const named_entry *entry) {
    return entry && entry->source_corresp.name ? entry->source_corresp.name->spelling : "";
}

bool is_place(const constant *c) { return c->repr_kind == ck_init_position || c->repr_kind == ck_init_index; }

// Values of DATA statements say where they go or how often they stand; those of constructors do not.
bool is_of_data(const constant *aggregate) {
    for (const constant *e = aggregate->aggregate.first_constant; e; e = e->next) {
        if (is_place(e) || e->repr_kind == ck_init_repeat) {
            return true;
        }
    }
    return false;
}

void print_aggregate(const constant *c) {
    const type *t = c->type;
    const char *closing = "/)";
    if (is_of_data(c)) {
        print_bracketed("data");
        print_hook(" /");
        closing = "/";
    } else if (t && t->type_code == tk_derived_type) {
        print_hook("%s (", name_text(t));
        closing = ")";
    } else {
        print_hook("(/");
    }
    for (const constant *e = c->aggregate.first_constant; e; e = e->next) {
        print_constant(e);
        if (e->next && !is_place(e)) {
            print_hook(", ");
        }
    }
    print_hook("%s", closing);
}

void print_position(const char *what, std::int32_t number) {
    char text[48];
    std::snprintf(text, sizeof text, "%s %d", what, number);
    print_bracketed(text);
    print_hook(" ");
}

void print_constant_here(const constant *c) {
    switch (c->repr_kind) {
    case ck_value:
    case ck_expression:
        if (c->value.bytes) {
            print_value(c->type, c->value.bytes);
        } else {
            print_expression(c->value.expr);
        }
        break;
    case ck_aggregate: print_aggregate(c); break;
    case ck_init_position: print_position("from pos", c->position.offset); break;
    case ck_init_index:
        print_position("from index", c->index.first);
        print_position("to", c->index.second);
        print_position("with", c->index.stride);
        break;
    case ck_init_repeat:
        print_position("repeat", static_cast<std::int32_t>(c->repeat.count));
        if (c->repeat.constant) {
            print_constant(c->repeat.constant);
        }
        break;
    default: print_bracketed("bad constant kind"); break;
    }
}

} // namespace

void print_constant(const constant *c) {
    deep_call([&] {
        print_constant_here(c);
        return true;
    });
}

// ---- types

namespace {

void print_bound(const bound &b) {
    switch (b.kind) {
    case bound_constant: print_hook("%i", b.value); break;
    case bound_expression: print_expression(b.expr); break;
    case bound_assumed: print_hook("*"); break;
    default: break;
    }
}

void print_bounds(const type *t) {
    print_hook(", dimension (");
    for (unsigned i = 0; i < t->array.rank; ++i) {
        print_hook(i > 0 ? ", " : "");
        if (t->array.shape_kind <= as_shaped && t->array.bound) {
            const bound *const bounds = t->array.bound->bounds;
            print_bound(bounds[i]);
            print_hook(":");
            print_bound(bounds[t->array.rank + i]);
        } else {
            print_hook(":");
        }
    }
    print_hook(")");
}

void print_length(const type *t) {
    const bound &length = t->character.length;
    if (length.kind == bound_same_as) {
        print_hook("len(");
        print_expression(length.expr);
        print_hook(")");
    } else {
        print_bound(length);
    }
}

// The number of a kind as a program writes it; a dummy argument of an intrinsic may have any.
template <class Row, std::size_t count> void print_kind(const Row (&rows)[count], const type *t) {
    if (t->kind < count) {
        print_hook("%u)", rows[t->kind].kind_number);
    } else {
        print_hook("*)");
    }
}

void print_type_here(const type *t) {
    switch (t->type_code) {
    case tk_integer:
        print_hook("integer(");
        print_kind(integer_kinds, t);
        break;
    case tk_logical:
        print_hook("logical(");
        print_kind(logical_kinds, t);
        break;
    case tk_float:
        if (t->kind == double_precision_kind) {
            print_hook("double precision");
        } else {
            print_hook("real(");
            print_kind(real_kinds, t);
        }
        break;
    case tk_complex:
        print_hook("complex(");
        print_kind(real_kinds, t);
        break;
    case tk_routine: print_type(t->routine.return_type); break;
    case tk_fcharacter:
        print_hook("character(");
        print_length(t);
        print_hook(", ");
        print_kind(character_kinds, t);
        break;
    case tk_farray:
        print_type(t->array.element_type);
        print_bounds(t);
        break;
    case tk_derived_type:
        print_hook("type (");
        if (t->derived.module && t->derived.module != printed_unit) {
            print_hook("%s_%s)", name_text(t->derived.module), name_text(t));
        } else {
            print_hook("%s)", name_text(t));
        }
        break;
    case tk_error: print_hook("error-type"); break;
    case tk_unknown: print_hook("unknown-type"); break;
    default: break;
    }
}

} // namespace

void print_type(const type *t) {
    deep_call([&] {
        print_type_here(t);
        return true;
    });
}

// ---- expressions

const char *operator_text(operation_kind op) {
    switch (op) {
    case eok_not: return ".not.";
    case eok_inegate:
    case eok_fnegate:
    case eok_xnegate:
    case eok_negate:
    case eok_isubtract:
    case eok_fsubtract:
    case eok_xsubtract:
    case eok_subtract: return "-";
    case eok_cast:
    case eok_spread: return "";
    case eok_concat: return "//";
    case eok_land: return ".and.";
    case eok_lor: return ".or.";
    case eok_neqv: return ".neqv.";
    case eok_eqv: return ".eqv.";
    case eok_lassign:
    case eok_iassign:
    case eok_fassign:
    case eok_xassign:
    case eok_cassign:
    case eok_sassign:
    case eok_assign: return "=";
    case eok_iadd:
    case eok_fadd:
    case eok_xadd:
    case eok_add: return "+";
    case eok_imultiply:
    case eok_fmultiply:
    case eok_xmultiply:
    case eok_multiply: return "*";
    case eok_idivide:
    case eok_fdivide:
    case eok_xdivide:
    case eok_divide: return "/";
    case eok_i_to_i_expon:
    case eok_f_to_i_expon:
    case eok_f_to_f_expon:
    case eok_x_to_i_expon:
    case eok_x_to_x_expon:
    case eok_an_to_an_expon: return "**";
    case eok_ieq:
    case eok_feq:
    case eok_xeq:
    case eok_ceq:
    case eok_eq: return "==";
    case eok_ine:
    case eok_fne:
    case eok_xne:
    case eok_cne:
    case eok_ne: return "/=";
    case eok_igt:
    case eok_fgt:
    case eok_cgt:
    case eok_gt: return ">";
    case eok_ilt:
    case eok_flt:
    case eok_clt:
    case eok_lt: return "<";
    case eok_ige:
    case eok_fge:
    case eok_cge:
    case eok_ge: return ">=";
    case eok_ile:
    case eok_fle:
    case eok_cle:
    case eok_le: return "<=";
    case eok_passign: return "=>";
    case eok_reorder: return "reorder";
    case eok_expand: return "expand";
    case eok_reshape: return "reshape";
    default: return "<error operator>";
    }
}

namespace {

// Operations between whose operands no parentheses are needed: logical ones, comparisons and assignments.
bool drops_parentheses(operation_kind op) {
    static constexpr const char *texts[] = {
        ".and.", ".or.", ".neqv.", ".eqv.", "==", "/=", ">", "<", ">=", "<=", "=", "=>"};
    for (const char *text : texts) {
        if (std::strcmp(operator_text(op), text) == 0) {
            return true;
        }
    }
    return false;
}

void print_operator(operation_kind op) { print_escaped(operator_text(op)); }

void print_list(const char *opening, const expr_node *list, const char *closing) {
    print_hook("%s", opening);
    for (const expr_node *e = list; e; e = e->next) {
        print_expression(e);
        print_hook("%s", e->next ? ", " : "");
    }
    print_hook("%s", closing);
}

// The left side of an assignment of a label: ASSIGN.
bool is_label_assignment(const expr_node *e) {
    return e->operands && e->operands->next && e->operands->next->node_kind == enk_stmt_label_value &&
           std::strcmp(operator_text(e->op_kind), "=") == 0;
}

void print_binary(const expr_node *e, const expr_node *left, const expr_node *right) {
    const bool bare = drops_parentheses(e->op_kind);
    print_hook(bare ? "" : "(");
    print_expression(left);
    print_hook(" ");
    print_operator(e->op_kind);
    print_hook(" ");
    print_expression(right);
    print_hook(bare ? "" : ")");
}

void print_operation(const expr_node *e) {
    const expr_node *left = e->operands;
    if (e->treated_as_subroutine_call && left) {
        print_expression(left);
        print_hook("=");
        left = left->next;
    }
    const expr_node *const right = left ? left->next : nullptr;
    if (!left) {
        print_operator(e->op_kind);
    } else if (!right) {
        print_operator(e->op_kind);
        print_expression(left);
    } else if (is_label_assignment(e)) {
        print_hook("assign ");
        print_expression(right);
        print_hook(" to ");
        print_expression(left);
    } else if (e->op_kind >= eok_reorder && e->op_kind <= eok_assign) {
        print_operator(e->op_kind);
        print_list("(", left, ")");
    } else {
        print_binary(e, left, right);
    }
}

void print_object_name(const object *o) {
    const bool is_imported = o->storage_class == sc_use_associated || o->storage_class == sc_mod_proc;
    if (is_imported && o->assoc.module) {
        print_hook("%s_", name_text(o->assoc.module));
    }
    print_escaped(name_text(o));
}

void print_control(const do_loop *control) {
    print_expression(control->variable);
    print_hook(" = ");
    print_expression(control->initial_value);
    print_hook(", ");
    print_expression(control->final_value);
    if (control->increment) {
        print_hook(", ");
        print_expression(control->increment);
    }
}

void print_implied_do(const expr_node *e) {
    print_list("(", e->expr_list, ", ");
    if (e->do_info) {
        print_control(e->do_info);
    }
    print_hook(")");
}

void print_optional(const expr_node *e) {
    if (e) {
        print_expression(e);
    }
}

void print_here(const expr_node *e) {
    switch (e->node_kind) {
    case enk_error: print_bracketed("error expression"); break;
    case enk_operation: print_operation(e); break;
    case enk_intrinsic:
        print_escaped(intrinsic_spelling(e->intrinsic));
        print_list("(", e->operands, ")");
        break;
    case enk_call:
        print_object_name(e->routine);
        print_list("(", e->operands, ")");
        break;
    case enk_generic_call:
        print_escaped(name_text(e->generic));
        print_list("(", e->operands, ")");
        break;
    case enk_constant: print_constant(e->constant); break;
    case enk_stmt_label_value: print_hook("%s", name_text(e->stmt_label_value)); break;
    case enk_object: print_object_name(e->object); break;
    case enk_field:
        print_expression(e->base_expr);
        print_hook("%%%s", name_text(e->field_var));
        break;
    case enk_subscript:
    case enk_substring:
    case enk_section:
        print_expression(e->array_expr);
        print_list(e->ignore_lbound ? "[" : "(", e->ind_list, e->ignore_lbound ? "]" : ")");
        break;
    case enk_constructor:
        if (e->type && e->type->type_code == tk_derived_type) {
            print_hook("%s (", name_text(e->type));
            print_list("", e->constructor, ")");
        } else {
            print_list("(/", e->constructor, "/)");
        }
        break;
    case enk_implied_do: print_implied_do(e); break;
    case enk_isum:
        print_hook("sum((/");
        print_implied_do(e);
        print_hook("/))");
        break;
    case enk_triplet:
        print_optional(e->first);
        print_hook(":");
        print_optional(e->second);
        if (e->stride) {
            print_hook(":");
            print_expression(e->stride);
        }
        break;
    case enk_empty: print_bracketed("empty"); break;
    case enk_ref: print_expression(e->reference); break;
    case enk_param: print_hook("%s", name_text(e->parameter)); break;
    case enk_interface_block: print_escaped(name_text(e->interface_block)); break;
    default: break;
    }
}

} // namespace

void print_expression(const expr_node *e) {
    if (!e) {
        return;
    }
    deep_call([&] {
        print_here(e);
        return true;
    });
}

} // namespace zf90
