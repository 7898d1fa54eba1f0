// The intrinsic operators and assignment: which operation a pair of types makes, the type of its result, and
// the conversions around its operands.
#include "expressions/operators.h"

#include "constants/arithmetic.h"
#include "constants/folding.h"
#include "driver/diagnostics.h"
#include "driver/options.h"
#include "expressions/check.h"
#include "expressions/predicates.h"
#include "il/constants.h"
#include "il/entries.h"
#include "il/types.h"
#include "intrinsics/handlers.h"

namespace zf90 {

// ---- common types

namespace {

bool is_same(const type *a, const type *b) { return a == b || types_equal(a, b); }

// The order of the classes in which the weaker operand is converted to the stronger one.
unsigned rank_of_class(const type *t) {
    switch (t->type_code) {
    case tk_integer: return 1;
    case tk_float: return 2;
    case tk_complex: return 3;
    default: return 0;
    }
}

std::uint32_t kind_of_numeric(const type *t) {
    return rank_of_class(t) > 0 || t->type_code == tk_logical ? t->kind : 0;
}

// The stronger one of two element types; null if characters have no type in common.
type *stronger_type(type *left, type *right) {
    if (left->type_code == tk_fcharacter) {
        return right->type_code == tk_fcharacter && right->kind == left->kind ? left : nullptr;
    }
    const unsigned left_rank = rank_of_class(left);
    const unsigned right_rank = rank_of_class(right);
    if (left_rank != right_rank) {
        return right_rank > left_rank ? right : left;
    }
    return kind_of_numeric(right) > kind_of_numeric(left) ? right : left;
}

} // namespace

type *unchecked_copy(const type *t) {
    type *copy = new_type(t->type_code);
    copy_type(t, copy);
    copy->il_id = 0;
    copy->size = 0;
    copy->alignment = 1;
    if (t->type_code == tk_fcharacter) {
        copy->character.next_cached = nullptr;
    }
    return copy;
}

type *with_element(type *shape, type *element) {
    if (!is_array(shape)) {
        return element;
    }
    if (is_same(element, shape->array.element_type)) {
        return shape;
    }
    type *copy = unchecked_copy(shape);
    copy->array.element_type = element;
    copy->is_numeric = element->is_numeric;
    copy->is_character = element->is_character;
    copy->contains_ptrs = element->contains_ptrs;
    if (shape->array.shape_kind <= as_shaped && is_too_large(shape)) {
        copy->size = shape->size; // reported once, and not completed again
    }
    complete_type(copy);
    return copy;
}

type *combine_shapes(type *left, type *right, type *element) {
    if (!is_array(left)) {
        return with_element(right, element);
    }
    if (!is_array(right)) {
        return with_element(left, element);
    }
    if (!shapes_conform(left, right)) {
        return nullptr;
    }
    const bool is_right =
        !is_same(element, left->array.element_type) && is_same(element, right->array.element_type);
    return is_right ? right : with_element(left, element);
}

type *common_type(type *left, type *right) {
    type *element = stronger_type(element_type_of(left), element_type_of(right));
    return element ? combine_shapes(left, right, element) : nullptr;
}

// ---- conversions

void copy_keyword(const expr_node *from, expr_node *to) {
    to->is_specifier = from->is_specifier;
    if (from->is_specifier) {
        to->selector = from->selector;
    } else {
        to->keyword = from->keyword;
    }
}

namespace {

// Puts an operation in the place of its only operand, whose role it takes over.
void wrap(expr_node *&slot, operation_kind op, type *t) {
    expr_node *inner = slot;
    expr_node *outer = new_operation(op, t, inner);
    outer->source_pos = inner->source_pos;
    outer->next = inner->next;
    outer->is_optional = inner->is_optional;
    outer->element_sequence = inner->element_sequence;
    copy_keyword(inner, outer);
    outer->intent_in = true;
    inner->intent_in = true;
    inner->intent_out = false;
    inner->is_optional = false;
    inner->element_sequence = false;
    inner->next = nullptr;
    slot = outer;
}

// Spreads a scalar, of the element type, to the shape of the type; gives an array the type.
void convert_shape(expr_node *&slot, type *shape) {
    convert_expr(slot, with_element(shape, element_type_of(slot->type)));
}

} // namespace

void convert_expr(expr_node *&slot, type *t) {
    expr_node *e = slot;
    if (is_same(e->type, t)) {
        e->type = t;
        return;
    }
    if (e->type->type_code == tk_error) {
        return;
    }
    switch (t->type_code) {
    case tk_error: {
        expr_node *error_node = new_error_node();
        error_node->source_pos = e->source_pos;
        error_node->next = e->next;
        slot = error_node;
        return;
    }
    case tk_fcharacter: return; // the lengths of texts are left to the code that is generated
    case tk_farray:
        if (!is_array(e->type)) {
            convert_expr(slot, t->array.element_type);
            wrap(slot, eok_spread, t);
        } else if (t->array.element_type->type_code != tk_fcharacter) {
            wrap(slot, eok_cast, t);
            slot->for_all = true;
        }
        return;
    default: wrap(slot, eok_cast, t);
    }
}

type *convert_operands(expr_node *&operands) {
    type *common = common_type(operands->type, operands->next->type);
    if (common) {
        convert_expr(operands, common);
        convert_expr(operands->next, common);
    }
    return common;
}

// ---- assignment

namespace {

constant *resize_text(const constant *c, type *element) {
    fold_value value;
    value.source_pos = c->source_pos;
    read_constant(c, value);
    convert_value(value, element);
    return store_fold_value(value);
}

// The constant with the texts in it cut or padded to the length of the element type. `t` is the type of an
// array constant.
constant *resize_constant(const constant *c, type *element, type *t) {
    switch (c->repr_kind) {
    case ck_value:
    case ck_expression: return resize_text(c, element);
    case ck_aggregate: {
        constant *copy = il_new<constant>();
        init_constant(copy, ck_aggregate);
        copy->source_pos = c->source_pos;
        copy->type = t;
        for (const constant *item = c->aggregate.first_constant; item; item = item->next) {
            append_to_aggregate(copy, resize_constant(item, element, element));
        }
        return copy;
    }
    case ck_init_repeat: {
        constant *copy = il_new<constant>();
        *copy = *c;
        copy->next = nullptr;
        copy->repeat.constant = resize_constant(c->repeat.constant, element, element);
        return copy;
    }
    default: {
        constant *copy = il_new<constant>();
        *copy = *c;
        copy->next = nullptr;
        return copy;
    }
    }
}

bool has_constant_length(const type *t) {
    return t->type_code == tk_fcharacter && char_length_of_type(t).kind == bound_constant;
}

// Gives a text constant the length of what it is assigned to.
void fit_text_constant(const type *destination, expr_node *source) {
    type *to = is_array(destination) ? destination->array.element_type : const_cast<type *>(destination);
    const type *from = element_type_of(source->type);
    if (source->node_kind != enk_constant || retain_constant_exprs || !has_constant_length(to) ||
        !has_constant_length(from) || char_length_of_type(to).value == char_length_of_type(from).value) {
        return;
    }
    if (is_array(source->type)) {
        source->type = with_element(source->type, to);
    } else {
        source->type = to;
    }
    source->constant = resize_constant(source->constant, to, source->type);
}

} // namespace

bool assign_conversion(type *destination, expr_node *&source) {
    if (source->type != destination && !assignment_compatible(destination, source->type)) {
        error_at(msg_expression_type_is_incompatible_with_destination, source->source_pos);
        return false;
    }
    fit_text_constant(destination, source);
    convert_expr(source, destination);
    return true;
}

// ---- what all handlers do

bool check_operand_context(expr_node *node, std::uint32_t flags, object *routine) {
    bool ok = true;
    for (expr_node *operand = node->operands; operand; operand = operand->next) {
        if (is_restricted_context(flags)) {
            ok = restricted_walk(operand, routine) && ok;
        } else if (flags & ecf_stmt_func) {
            ok = stmt_func_walk(operand) && ok;
        } else if (operand->node_kind == enk_object && is_assumed_size(operand->type)) {
            error_at(msg_assumed_size_array_is_not_allowed, operand->source_pos);
            ok = false;
        }
    }
    if (!ok) {
        mark_error_node(node);
    }
    return ok;
}

namespace {

// The position of a class in the tables of operations.
enum operand_class : std::uint8_t {
    class_integer,
    class_real,
    class_complex,
    class_character,
    class_logical,
    class_derived,
    class_count
};

operand_class class_of(type *t) {
    switch (element_type_of(t)->type_code) {
    case tk_integer: return class_integer;
    case tk_float: return class_real;
    case tk_complex: return class_complex;
    case tk_fcharacter: return class_character;
    case tk_logical: return class_logical;
    case tk_derived_type: return class_derived;
    default: return class_count;
    }
}

bool fail(expr_node *node) {
    mark_error_node(node);
    return false;
}

bool incompatible(expr_node *node, const expr_node *where) {
    error_at(msg_operands_are_incompatible, where->source_pos);
    return fail(node);
}

// Makes the call of the operator the operation on its operands.
bool finish_operation(expr_node *node, operation_kind op, type *t) {
    expr_node *operands = node->operands;
    set_expr_node_kind(node, enk_operation);
    node->op_kind = op;
    node->operands = operands;
    node->type = t;
    node->for_all = is_array(t);
    return true;
}

void mark_text_operands(expr_node *operands) {
    for (expr_node *operand = operands; operand; operand = operand->next) {
        operand->any_type_argument = true;
    }
}

// ---- arithmetic

// By class: integer, real, complex.
struct numeric_operation {
    operation_kind selector;
    operation_kind of_class[3];
};

constexpr numeric_operation numeric_operations[] = {
    {eok_negate, {eok_inegate, eok_fnegate, eok_xnegate}},
    {eok_add, {eok_iadd, eok_fadd, eok_xadd}},
    {eok_subtract, {eok_isubtract, eok_fsubtract, eok_xsubtract}},
    {eok_multiply, {eok_imultiply, eok_fmultiply, eok_xmultiply}},
    {eok_divide, {eok_idivide, eok_fdivide, eok_xdivide}},
};

operation_kind select_numeric(operation_kind selector, type *t) {
    const operand_class c = class_of(t);
    for (const numeric_operation &row : numeric_operations) {
        if (row.selector == selector && c <= class_complex) {
            return row.of_class[c];
        }
    }
    return eok_error;
}

// A sign "+" leaves nothing but its operand.
void dissolve(expr_node *node) {
    const expr_node call = *node;
    *node = *call.operands;
    keep_fold_memo(node, call.operands);
    node->il_id = call.il_id;
    node->next = call.next;
    copy_keyword(&call, node);
    node->intent_in = call.intent_in;
    node->element_sequence = call.element_sequence;
}

bool handle_arithmetic(expr_node *node, std::uint32_t flags, object *routine, operation_kind selector) {
    if (!check_operand_context(node, flags, routine)) {
        return false;
    }
    type *t = node->operands->type;
    if (node->operands->next) {
        t = convert_operands(node->operands);
        if (!t) {
            return incompatible(node, node->operands);
        }
    } else if (selector == eok_add) {
        dissolve(node);
        return true;
    } else {
        selector = eok_negate;
    }
    return finish_operation(node, select_numeric(selector, t), t);
}

} // namespace

bool handle_add(expr_node *node, std::uint32_t flags, object *routine) {
    return handle_arithmetic(node, flags, routine, eok_add);
}

bool handle_subtract(expr_node *node, std::uint32_t flags, object *routine) {
    return handle_arithmetic(node, flags, routine, eok_subtract);
}

bool handle_multiply(expr_node *node, std::uint32_t flags, object *routine) {
    return handle_arithmetic(node, flags, routine, eok_multiply);
}

bool handle_divide(expr_node *node, std::uint32_t flags, object *routine) {
    return handle_arithmetic(node, flags, routine, eok_divide);
}

bool handle_power(expr_node *node, std::uint32_t flags, object *routine) {
    if (!check_operand_context(node, flags, routine)) {
        return false;
    }
    type *left = node->operands->type;
    type *right = node->operands->next->type;
    if (class_of(right) != class_integer) {
        type *t = convert_operands(node->operands);
        if (!t) {
            return incompatible(node, node->operands);
        }
        return finish_operation(node, class_of(t) == class_real ? eok_f_to_f_expon : eok_x_to_x_expon, t);
    }
    // An integer power is taken as it is, of its own kind.
    type *t = combine_shapes(left, right, element_type_of(left));
    if (!t) {
        return incompatible(node, node->operands);
    }
    if (is_array(t)) {
        convert_shape(node->operands, t);
        convert_shape(node->operands->next, t);
    }
    constexpr operation_kind operations[] = {eok_i_to_i_expon, eok_f_to_i_expon, eok_x_to_i_expon};
    const operand_class c = class_of(left);
    return finish_operation(node, c <= class_complex ? operations[c] : eok_error, t);
}

// ---- texts

namespace {

// LEN of an operand, which stays where it is.
expr_node *new_length_of(expr_node *operand) {
    expr_node *length = new_intrinsic_node(intr_len, default_integer(), new_ref(operand));
    length->source_pos = operand->source_pos;
    length->operands->source_pos = operand->source_pos;
    return length;
}

} // namespace

bool handle_concat(expr_node *node, std::uint32_t flags, object *routine) {
    if (!check_operand_context(node, flags, routine)) {
        return false;
    }
    expr_node *left = node->operands;
    expr_node *right = left->next;
    type *common = common_type(left->type, right->type);
    if (!common) {
        return incompatible(node, node);
    }
    expr_node *left_length = new_length_of(left);
    left_length->next = new_length_of(right);
    expr_node *length = new_operation(eok_iadd, default_integer(), left_length);
    length->source_pos = node->source_pos;
    type *element = unchecked_copy(element_type_of(left->type));
    set_expression_bound(element->character.length, length);
    type *t = combine_shapes(left->type, right->type, element);
    if (is_array(t)) {
        convert_shape(node->operands, common);
        convert_shape(node->operands->next, common);
    }
    mark_text_operands(node->operands);
    return finish_operation(node, eok_concat, t);
}

// ---- relations

namespace {

// By class: integer, real, complex, character. Complex numbers are not ordered.
struct relation {
    operation_kind selector;
    operation_kind of_class[4];
};

constexpr relation relations[] = {
    {eok_eq, {eok_ieq, eok_feq, eok_xeq, eok_ceq}},   {eok_ne, {eok_ine, eok_fne, eok_xne, eok_cne}},
    {eok_gt, {eok_igt, eok_fgt, eok_error, eok_cgt}}, {eok_lt, {eok_ilt, eok_flt, eok_error, eok_clt}},
    {eok_ge, {eok_ige, eok_fge, eok_error, eok_cge}}, {eok_le, {eok_ile, eok_fle, eok_error, eok_cle}},
};

operation_kind select_relation(operation_kind selector, operand_class c) {
    for (const relation &row : relations) {
        if (row.selector == selector && c <= class_character) {
            return row.of_class[c];
        }
    }
    return eok_error;
}

bool handle_relation(expr_node *node, std::uint32_t flags, object *routine, operation_kind selector) {
    if (!check_operand_context(node, flags, routine)) {
        return false;
    }
    type *common = convert_operands(node->operands);
    if (!common) {
        return incompatible(node, node->operands);
    }
    const operand_class c = class_of(common);
    if (c == class_character) {
        mark_text_operands(node->operands);
    }
    return finish_operation(node, select_relation(selector, c), with_element(common, default_logical()));
}

} // namespace

bool handle_eq(expr_node *node, std::uint32_t flags, object *routine) {
    return handle_relation(node, flags, routine, eok_eq);
}

bool handle_ne(expr_node *node, std::uint32_t flags, object *routine) {
    return handle_relation(node, flags, routine, eok_ne);
}

bool handle_gt(expr_node *node, std::uint32_t flags, object *routine) {
    return handle_relation(node, flags, routine, eok_gt);
}

bool handle_ge(expr_node *node, std::uint32_t flags, object *routine) {
    return handle_relation(node, flags, routine, eok_ge);
}

bool handle_lt(expr_node *node, std::uint32_t flags, object *routine) {
    return handle_relation(node, flags, routine, eok_lt);
}

bool handle_le(expr_node *node, std::uint32_t flags, object *routine) {
    return handle_relation(node, flags, routine, eok_le);
}

// ---- logical operators

namespace {

bool handle_logical(expr_node *node, std::uint32_t flags, object *routine, operation_kind op) {
    if (!check_operand_context(node, flags, routine)) {
        return false;
    }
    type *t = op == eok_not ? node->operands->type : convert_operands(node->operands);
    return t ? finish_operation(node, op, t) : incompatible(node, node->operands);
}

} // namespace

bool handle_not(expr_node *node, std::uint32_t flags, object *routine) {
    return handle_logical(node, flags, routine, eok_not);
}

bool handle_and(expr_node *node, std::uint32_t flags, object *routine) {
    return handle_logical(node, flags, routine, eok_land);
}

bool handle_or(expr_node *node, std::uint32_t flags, object *routine) {
    return handle_logical(node, flags, routine, eok_lor);
}

bool handle_eqv(expr_node *node, std::uint32_t flags, object *routine) {
    return handle_logical(node, flags, routine, eok_eqv);
}

bool handle_neqv(expr_node *node, std::uint32_t flags, object *routine) {
    return handle_logical(node, flags, routine, eok_neqv);
}

bool handle_assignment(expr_node *node, std::uint32_t flags, object *routine) {
    if (is_restricted_context(flags)) {
        error_at(msg_must_be_restricted_expression, node->source_pos);
        return fail(node);
    }
    if (!check_operand_context(node, flags, routine)) {
        return false;
    }
    if (!check_definable(node->operands) || !assign_conversion(node->operands->type, node->operands->next)) {
        return fail(node);
    }
    expr_node *left = node->operands;
    left->intent_out = true;
    const operand_class c = class_of(left->type);
    if (c == class_character) {
        mark_text_operands(left);
    }
    constexpr operation_kind operations[] = {eok_iassign, eok_fassign, eok_xassign, eok_cassign,
                                             eok_lassign, eok_sassign, eok_not};
    const bool is_array_assignment = is_array(left->type);
    finish_operation(node, operations[c], void_type());
    node->for_all = is_array_assignment;
    return true;
}

} // namespace zf90
