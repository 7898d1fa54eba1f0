// The walk of the folder over the kinds of nodes: constants and names, operations, constructors, implied DOs.
//
// Folding is tried at each level of a tree, from below, so that what has no value is come across again at
// every level above it. Each node therefore remembers what came of the last attempt. The memory names the
// node that it is for: that of a copy counts for nothing, as its operands may be others.
#include "constants/folding.h"

#include "constants/fold_parts.h"
#include "driver/deep_call.h"
#include "driver/options.h"
#include "expressions/check.h"
#include "expressions/shapes.h"
#include "il/constants.h"
#include "il/entries.h"

#include <algorithm>

namespace zf90 {

namespace {

std::uint32_t effort;       // elements and rounds of the current attempt
std::uint32_t effort_limit; // of it

std::uint32_t total_without_need; // the effort of all attempts that need not fold

unsigned running_loops; // implied DOs whose variable has a value

bool spend() { return ++effort <= effort_limit; }

// ---- what is known of a node

constexpr std::uintptr_t memo_bits = 7;
static_assert(alignof(expr_node) > memo_bits);

std::uintptr_t memo_of(const expr_node *node, fold_outcome outcome) {
    return reinterpret_cast<std::uintptr_t>(node) | static_cast<std::uintptr_t>(outcome);
}

void remember(expr_node *node, fold_outcome outcome) { node->fold_memo = memo_of(node, outcome); }

// Whether an attempt would find nothing new; `outcome` is what it would come to.
bool is_known(const expr_node *node, bool must_fold, fold_outcome &outcome) {
    if ((node->fold_memo & ~memo_bits) != memo_of(node, fold_outcome{})) {
        return false;
    }
    outcome = static_cast<fold_outcome>(node->fold_memo & memo_bits);
    switch (outcome) {
    case fold_outcome::failed: return true;
    // Where it must fold, the message is for the operand that does not.
    case fold_outcome::never:
    case fold_outcome::not_here: return !must_fold;
    case fold_outcome::open: return !must_fold && running_loops == 0;
    case fold_outcome::folded: break;
    }
    return false;
}

} // namespace

void keep_fold_memo(expr_node *copy, const expr_node *original) {
    if ((copy->fold_memo & ~memo_bits) == memo_of(original, fold_outcome{})) {
        copy->fold_memo = memo_of(copy, static_cast<fold_outcome>(copy->fold_memo & memo_bits));
    }
}

fold_outcome fold_failure(error_code code, expr_node *culprit) {
    error_at(code, culprit->source_pos);
    mark_error_node(culprit);
    return fold_outcome::failed;
}

fold_outcome too_large(expr_node *node, bool must_fold) {
    return must_fold ? fold_failure(msg_array_is_too_large, node) : fold_outcome::never;
}

// ---- aggregates

fold_value new_aggregate(const expr_node *node) {
    fold_value value = new_fold_value(ck_aggregate);
    value.source_pos = node->source_pos;
    value.type = node->type;
    return value;
}

bool append_element(fold_value &aggregate, const fold_value &element) {
    append_to_fold_value(aggregate, store_fold_value(element));
    return spend();
}

bool append_copy(fold_value &aggregate, const constant *element) {
    auto *copy = il_new<constant>();
    *copy = *element;
    copy->il_id = 0;
    copy->next = nullptr;
    append_to_fold_value(aggregate, copy);
    return spend();
}

bool append_all(fold_value &aggregate, const fold_value &array) {
    element_cursor cursor = elements_of(array);
    while (const constant *element = next_element(cursor)) {
        if (!append_copy(aggregate, element)) {
            return false;
        }
    }
    return true;
}

// ---- names

namespace {

// The value that references to the variable of an implied DO have from now on; null: none. It is kept where
// a named constant has its own. Returns the one before, which the caller puts back.
constant *set_implied_do_value(object *variable, constant *value) {
    constant *before = variable->variant.initializer;
    variable->variant.initializer = value;
    return before;
}

fold_outcome fold_object(const expr_node *node, fold_value &value) {
    const object *o = node->object;
    if (!o->is_constant && o->storage_class != sc_implied_do_var) {
        return fold_outcome::never;
    }
    constant *known = o->variant.initializer;
    if (!known) {
        return o->is_constant ? fold_outcome::never : fold_outcome::open;
    }
    if (o->is_constant && !check_initializer(known)) {
        return fold_outcome::failed;
    }
    read_constant(known, value);
    if (!has_value(value)) {
        return fold_outcome::open; // a named constant whose value is being worked out
    }
    if (is_array(node->type)) {
        value.type = node->type; // the bounds are those of the declaration
    }
    return fold_outcome::folded;
}

// ---- operations

bool is_unary(operation_kind op) { return op <= eok_cast; }

bool is_binary(operation_kind op) {
    switch (op) {
    case eok_f_to_f_expon:
    case eok_x_to_x_expon:
    case eok_lassign:
    case eok_iassign:
    case eok_fassign:
    case eok_xassign: return false;
    default: return op >= eok_concat && op <= eok_cle;
    }
}

// An operator on scalars.
fold_outcome apply(const expr_node *node, const fold_value &a, const fold_value *b, type *result_type,
                   fold_value &result) {
    result.source_pos = node->source_pos;
    if (!b) {
        return fold_unary(node->op_kind, a, result_type, result) ? fold_outcome::folded : fold_outcome::never;
    }
    if (node->op_kind == eok_concat &&
        std::int64_t{text_length(a.type)} + text_length(b->type) > largest_folded_size) {
        return fold_outcome::never;
    }
    return fold_binary(node->op_kind, a, *b, result_type, result) ? fold_outcome::folded
                                                                  : fold_outcome::failed;
}

void report_different_sizes(expr_node *node) { fold_failure(msg_different_array_sizes, node); }

// An operator on the elements of one or two arrays.
fold_outcome apply_to_elements(expr_node *node, const fold_value &a, const fold_value *b, fold_value &result,
                               bool must_fold) {
    result = new_aggregate(node);
    element_cursor left = elements_of(a);
    element_cursor right = b ? elements_of(*b) : element_cursor{};
    for (;;) {
        const constant *p = next_element(left);
        const constant *q = b ? next_element(right) : p;
        if (!p || !q) {
            if (p || q) {
                report_different_sizes(node);
                return fold_outcome::failed;
            }
            return fold_outcome::folded;
        }
        fold_value x;
        fold_value y;
        fold_value element;
        read_constant(p, x);
        read_constant(q, y);
        const fold_outcome outcome = apply(node, x, b ? &y : nullptr, element_type_of(node->type), element);
        if (outcome != fold_outcome::folded) {
            return outcome;
        }
        if (!append_element(result, element)) {
            return too_large(node, must_fold);
        }
    }
}

// The number of elements of a type of constant shape; -1 for another one.
std::int64_t element_count_of_type(const type *t) {
    const bound_info_entry *info = t->array.shape_kind == explicit_shape ? t->array.bound : nullptr;
    std::int64_t count = 1;
    for (unsigned i = 0; info && i < t->array.rank; ++i) {
        const bound &lower = info->bounds[i];
        const bound &upper = info->bounds[t->array.rank + i];
        if (lower.kind != bound_constant || upper.kind != bound_constant) {
            return -1;
        }
        // No overflow: a type of 2 ** 32 elements has been reported.
        count *= std::min<std::int64_t>(static_cast<std::int64_t>(constant_extent(lower, upper)),
                                        std::int64_t{1} << 32);
        if (count > std::int64_t{1} << 32) {
            count = std::int64_t{1} << 32;
        }
    }
    return info ? count : -1;
}

// A scalar as each element of an array. More of them than can be listed become a repetition.
fold_outcome spread_value(const expr_node *node, const fold_value &scalar, fold_value &result) {
    const std::int64_t count = element_count_of_type(node->type);
    if (count < 0 || count > UINT32_MAX) {
        return fold_outcome::never;
    }
    result = new_aggregate(node);
    if (count > effort_limit - std::min(effort, effort_limit)) {
        auto *repetition = il_new<constant>();
        init_constant(repetition, ck_init_repeat);
        repetition->source_pos = node->source_pos;
        repetition->type = scalar.type;
        repetition->repeat = {store_fold_value(scalar), static_cast<std::uint32_t>(count)};
        append_to_fold_value(result, repetition);
        return fold_outcome::folded;
    }
    for (std::int64_t i = 0; i < count; ++i) {
        append_element(result, scalar);
    }
    return fold_outcome::folded;
}

bool is_spread(const expr_node *node) {
    return node->node_kind == enk_operation && node->op_kind == eok_spread && !is_array(node->operands->type);
}

// A text that is compared with the elements of an array keeps its own length, which may be more than theirs.
fold_outcome fold_operand(const expr_node *node, expr_node *operand, fold_value &value, bool must_fold) {
    const bool is_compared = node->op_kind >= eok_ceq && node->op_kind <= eok_cle;
    if (!must_fold || !is_compared || !is_spread(operand)) {
        return fold_node(operand, value, must_fold);
    }
    fold_value text;
    const fold_outcome outcome = fold_node(operand->operands, text, must_fold);
    return outcome == fold_outcome::folded ? spread_value(operand, text, value) : outcome;
}

fold_outcome fold_operation(expr_node *node, fold_value &value, bool must_fold) {
    expr_node *first = node->operands;
    if (node->type->type_code == tk_void || !first) {
        return fold_outcome::never;
    }
    expr_node *second = first->next;
    const bool spreads = node->op_kind == eok_spread && !second;
    if (second ? !is_binary(node->op_kind) : !spreads && !is_unary(node->op_kind)) {
        // Its operands are of no interest, unless they are in error.
        for (const expr_node *e = first; e; e = e->next) {
            if (e->node_kind == enk_error) {
                return fold_outcome::failed;
            }
        }
        return fold_outcome::never;
    }
    fold_value a;
    if (const fold_outcome outcome = fold_operand(node, first, a, must_fold);
        outcome != fold_outcome::folded) {
        return outcome;
    }
    if (!second) {
        if (!spreads) {
            return is_array(node->type) ? apply_to_elements(node, a, nullptr, value, must_fold)
                                        : apply(node, a, nullptr, node->type, value);
        }
        if (is_array(first->type)) {
            value = a;
            return fold_outcome::folded;
        }
        if (!must_fold) {
            return fold_outcome::not_here;
        }
        convert_value(a, element_type_of(node->type));
        return spread_value(node, a, value);
    }
    fold_value b;
    if (const fold_outcome outcome = fold_operand(node, second, b, must_fold);
        outcome != fold_outcome::folded) {
        return outcome;
    }
    return is_array(node->type) ? apply_to_elements(node, a, &b, value, must_fold)
                                : apply(node, a, &b, node->type, value);
}

// ---- implied DOs

// The variable, the expressions of the control folded, and what the loop does to the variable.
struct implied_loop {
    object *variable = nullptr;
    std::int32_t first = 0;
    std::int32_t last = 0;
    std::int32_t step = 1;
};

fold_outcome prepare_loop(const expr_node *node, bool must_fold, implied_loop &loop) {
    const do_loop *control = node->do_info;
    const expr_node *variable = control->variable ? without_refs(control->variable) : nullptr;
    if (!variable || variable->node_kind != enk_object ||
        variable->object->storage_class != sc_implied_do_var ||
        variable->object->type->type_code != tk_integer || !control->initial_value || !control->final_value) {
        return fold_outcome::never;
    }
    loop.variable = variable->object;
    fold_outcome outcome = fold_integer(control->initial_value, loop.first, must_fold);
    if (outcome == fold_outcome::folded) {
        outcome = fold_integer(control->final_value, loop.last, must_fold);
    }
    if (outcome == fold_outcome::folded && is_present(control->increment)) {
        outcome = fold_integer(control->increment, loop.step, must_fold);
    }
    if (outcome == fold_outcome::folded && loop.step == 0) {
        fold_failure(msg_increment_of_do_is_not_allowed_to_be_zero, control->increment);
        return fold_outcome::failed;
    }
    return outcome;
}

// Runs `body` for each value of the variable, until it comes to something else than a fold.
template <class Body>
fold_outcome run_loop(expr_node *node, const implied_loop &loop, bool must_fold, Body body) {
    unsigned char bytes[8];
    constant current{};
    init_constant(&current, ck_value);
    current.type = loop.variable->type;
    current.value.bytes = bytes;
    const auto &row = integer_kinds[current.type->kind];
    constant *before = set_implied_do_value(loop.variable, &current);
    ++running_loops;
    fold_outcome outcome = fold_outcome::folded;
    for (std::int64_t i = loop.first; loop.step > 0 ? i <= loop.last : i >= loop.last; i += loop.step) {
        if (!spend()) {
            outcome = too_large(node, must_fold);
            break;
        }
        row.write_value(bytes, static_cast<std::int32_t>(i));
        outcome = body();
        if (outcome != fold_outcome::folded) {
            break;
        }
    }
    --running_loops;
    set_implied_do_value(loop.variable, before);
    return outcome;
}

// The values of an array constructor or of an implied DO in one.
fold_outcome append_values(expr_node *list, fold_value &result, bool must_fold);

fold_outcome fold_implied_do(expr_node *node, fold_value &result, bool must_fold) {
    implied_loop loop;
    fold_outcome outcome = prepare_loop(node, must_fold, loop);
    if (outcome == fold_outcome::folded) {
        outcome = run_loop(node, loop, must_fold,
                           [&] { return append_values(node->expr_list, result, must_fold); });
    }
    if (outcome == fold_outcome::failed) {
        mark_error_node(node);
    }
    return outcome;
}

fold_outcome append_values(expr_node *list, fold_value &result, bool must_fold) {
    for (expr_node *e = list; e; e = e->next) {
        if (e->node_kind == enk_implied_do) {
            const fold_outcome outcome = deep_call([&] { return fold_implied_do(e, result, must_fold); });
            if (outcome != fold_outcome::folded) {
                return outcome;
            }
            continue;
        }
        fold_value element;
        if (const fold_outcome outcome = fold_node(e, element, must_fold); outcome != fold_outcome::folded) {
            return outcome;
        }
        if (!(is_array(element.type) ? append_all(result, element) : append_element(result, element))) {
            return too_large(e, must_fold);
        }
    }
    return fold_outcome::folded;
}

// The sum of the values of its body.
fold_outcome fold_isum(expr_node *node, fold_value &value, bool must_fold) {
    implied_loop loop;
    fold_outcome outcome = prepare_loop(node, must_fold, loop);
    if (outcome != fold_outcome::folded) {
        return outcome;
    }
    std::uint32_t sum = 0;
    outcome = run_loop(node, loop, must_fold, [&] {
        for (expr_node *e = node->expr_list; e; e = e->next) {
            std::int32_t term = 0;
            if (const fold_outcome o = fold_integer(e, term, must_fold); o != fold_outcome::folded) {
                return o;
            }
            sum += static_cast<std::uint32_t>(term);
        }
        return fold_outcome::folded;
    });
    if (outcome == fold_outcome::folded) {
        set_integer_value(value, static_cast<std::int32_t>(sum));
    }
    return outcome;
}

// ---- constructors

} // namespace

void fit_text_length(fold_value &value, type *t) {
    type *to = element_type_of(t);
    const type *from = has_value(value) ? element_type_of(value.type) : nullptr;
    if (!from || from->type_code != tk_fcharacter || to->type_code != tk_fcharacter ||
        to->character.length.kind != bound_constant || text_length(from) == text_length(to)) {
        return;
    }
    if (value.repr_kind == ck_value) {
        convert_value(value, to);
        return;
    }
    const auto fitted_element = [&](const constant *c) {
        fold_value element;
        element.source_pos = c->source_pos;
        read_constant(c, element);
        convert_value(element, to);
        return store_fold_value(element);
    };
    fold_value fitted = value;
    fitted.first_constant = fitted.last_constant = nullptr;
    fitted.type = t;
    for (const constant *c = value.first_constant; c; c = c->next) {
        constant *element;
        if (c->repr_kind == ck_init_repeat) {
            element = il_new<constant>();
            init_constant(element, ck_init_repeat);
            element->source_pos = c->source_pos;
            element->type = to;
            element->repeat = {fitted_element(c->repeat.constant), c->repeat.count};
        } else {
            element = fitted_element(c);
        }
        append_to_fold_value(fitted, element);
    }
    value = fitted;
}

namespace {

fold_outcome fold_structure(expr_node *node, fold_value &value, bool must_fold) {
    value = new_aggregate(node);
    const object *component =
        node->type->type_code == tk_derived_type ? node->type->derived.first_field : nullptr;
    for (expr_node *e = node->constructor; e; e = e->next) {
        fold_value part;
        if (const fold_outcome outcome = fold_node(e, part, must_fold); outcome != fold_outcome::folded) {
            return outcome;
        }
        if (component) {
            fit_text_length(part, component->type); // no conversion of texts is ever put into a tree
            component = component->next;
        }
        if (!append_element(value, part)) {
            return too_large(node, must_fold);
        }
    }
    return fold_outcome::folded;
}

// Gives an array type of rank 1 a constant extent, unless it has one.
type *with_extent(type *t, std::int64_t extent) {
    if (t->array.shape_kind == explicit_shape && t->array.bound->bounds[0].kind == bound_constant &&
        t->array.bound->bounds[1].kind == bound_constant) {
        return t;
    }
    type *result = new_array_type(t->array.element_type, 1);
    result->source_corresp.decl_position = t->source_corresp.decl_position;
    result->is_numeric = t->is_numeric;
    result->is_character = t->is_character;
    result->contains_ptrs = t->contains_ptrs;
    set_constant_bound(result->array.bound->bounds[0], 1);
    set_constant_bound(result->array.bound->bounds[1], static_cast<std::int32_t>(extent));
    complete_type(result);
    return result;
}

fold_outcome fold_constructor(expr_node *node, fold_value &value, bool must_fold) {
    if (!is_array(node->type)) {
        return fold_structure(node, value, must_fold);
    }
    if (node->type->array.shape_kind == explicit_shape &&
        is_too_large(node->type)) { // which has been reported
        mark_error_node(node);
        return fold_outcome::failed;
    }
    value = new_aggregate(node);
    const fold_outcome outcome = append_values(node->constructor, value, must_fold);
    if (outcome == fold_outcome::folded) {
        node->type = with_extent(node->type, element_count(value, INT32_MAX));
        value.type = node->type;
    }
    return outcome;
}

// ---- all kinds

// Makes the shape of a folded array one of constants, and the length of its elements a constant.
void settle_type(expr_node *node, fold_value &value) {
    const auto copy_of = [](type *t) {
        type *copy = new_type(t->type_code);
        copy_type(t, copy);
        copy->il_id = 0;
        copy->size = 0;
        return copy;
    };
    type *t = node->type;
    if (t->array.shape_kind != explicit_shape) {
        t = copy_of(t);
        make_constant_bounds(t);
    }
    const type *element = t->array.element_type;
    if (element->type_code == tk_fcharacter && element->character.length.kind != bound_constant &&
        value.first_constant) {
        const type *first = value.first_constant->type;
        if (t == node->type) {
            t = copy_of(t);
        }
        t->array.element_type = character_type(element->kind, text_length(first));
    }
    if (t != node->type) {
        complete_type(t);
        node->type = t;
    }
    value.type = t;
}

fold_outcome fold_by_kind(expr_node *node, fold_value &value, bool must_fold) {
    switch (node->node_kind) {
    case enk_error: return fold_outcome::failed;
    case enk_constant:
        if (!check_initializer(node->constant)) {
            return fold_outcome::failed;
        }
        read_constant(node->constant, value);
        return has_value(value) ? fold_outcome::folded : fold_outcome::failed;
    case enk_object: return fold_object(node, value);
    // DATA works out what depends on its variables on its own.
    case enk_data_implied_do_var: return fold_outcome::open;
    case enk_ref: {
        const fold_outcome outcome = fold_node(node->reference, value, must_fold);
        node->type = node->reference->type;
        return outcome;
    }
    case enk_operation: return fold_operation(node, value, must_fold);
    case enk_intrinsic: return fold_intrinsic(node, value, must_fold);
    case enk_field: return fold_field(node, value, must_fold);
    case enk_subscript: return fold_subscript(node, value, must_fold);
    case enk_substring: return fold_substring(node, value, must_fold);
    case enk_section: return fold_section(node, value, must_fold);
    case enk_constructor: return fold_constructor(node, value, must_fold);
    case enk_isum: return fold_isum(node, value, must_fold);
    default: return fold_outcome::never;
    }
}

} // namespace

fold_outcome fold_node(expr_node *node, fold_value &value, bool must_fold) {
    fold_outcome outcome;
    const auto start = [&] {
        value = fold_value{};
        value.source_pos = node->source_pos;
        clear_fold_value(value);
    };
    start();
    if (is_known(node, must_fold, outcome)) {
        return outcome;
    }
    outcome = deep_call([&] { return fold_by_kind(node, value, must_fold); });
    if (outcome == fold_outcome::folded) {
        value.source_pos = node->source_pos;
        if (is_array(node->type) && value.repr_kind == ck_aggregate && node->node_kind != enk_constant) {
            settle_type(node, value);
        }
        return outcome;
    }
    start();
    if (must_fold && outcome != fold_outcome::failed) {
        outcome = fold_failure(msg_must_be_initialization_expression, node);
    }
    // An operation that failed stays as it is, which goes on having a type.
    if (outcome == fold_outcome::failed && node->node_kind != enk_operation) {
        mark_error_node(node);
    }
    remember(node, outcome);
    return outcome;
}

fold_outcome fold_integer(expr_node *node, std::int32_t &value, bool must_fold) {
    fold_value folded;
    const fold_outcome outcome = fold_node(node, folded, must_fold);
    if (outcome != fold_outcome::folded) {
        return outcome;
    }
    if (folded.repr_kind != ck_value || folded.type->type_code != tk_integer) {
        return fold_outcome::never;
    }
    value = folded.integer;
    return outcome;
}

namespace {

std::uint32_t limit_without_need() {
    return std::clamp(largest_total_without_need - total_without_need, short_array_count,
                      largest_count_without_need);
}

} // namespace

bool fold_expression(expr_node *node, fold_value &value, bool must_fold) {
    // The values of named constants are worked out in the middle of other attempts.
    const std::uint32_t outer_effort = effort;
    const std::uint32_t outer_limit = effort_limit;
    effort = 0;
    effort_limit = must_fold ? largest_element_count : limit_without_need();
    const fold_outcome outcome = fold_node(node, value, must_fold);
    if (!must_fold) {
        total_without_need += std::min(effort, largest_total_without_need - total_without_need);
    }
    effort = outer_effort;
    effort_limit = outer_limit;
    return outcome != fold_outcome::failed;
}

// ---- named constants

namespace {

bool fail_initializer(constant *value) {
    set_constant_repr(value, ck_error);
    value->type = error_type();
    return false;
}

void replace_constant(constant *value, const constant *by) {
    constant *next = value->next;
    const std::uint32_t marks = value->il_id;
    *value = *by;
    value->next = next;
    value->il_id = marks;
}

bool fold_initializer(constant *value) {
    expr_node *tree = value->value.expr;
    if (value->value.bytes || !tree) {
        return value->value.bytes; // it has been read from a module file
    }
    tree->intent_in = true;
    if (!check_expression(tree, ECF_INIT, nullptr)) {
        return fail_initializer(value);
    }
    if (tree->node_kind == enk_constant) {
        if (!check_initializer(tree->constant)) {
            return fail_initializer(value);
        }
        replace_constant(value, tree->constant);
        return true;
    }
    fold_value folded;
    if (!fold_expression(tree, folded, true) || !has_value(folded)) {
        return fail_initializer(value);
    }
    const constant *stored = store_fold_value(folded);
    if (retain_constant_exprs && stored->repr_kind == ck_value) {
        value->type = stored->type;
        value->value.bytes = stored->value.bytes;
    } else {
        replace_constant(value, stored);
    }
    return true;
}

bool check_elements(constant *aggregate) {
    bool good = true;
    for (constant *c = aggregate->aggregate.first_constant; c; c = c->next) {
        good = check_initializer(c) && good;
    }
    return good;
}

} // namespace

bool check_initializer(constant *value) {
    if (!begin_check(value)) {
        return value->repr_kind != ck_error;
    }
    if (value->type && value->type->type_code != tk_unknown && !check_type(value->type, nullptr)) {
        return fail_initializer(value);
    }
    switch (value->repr_kind) {
    case ck_error: return false;
    case ck_expression: return deep_call([&] { return fold_initializer(value); });
    case ck_aggregate: return deep_call([&] { return check_elements(value); }) || fail_initializer(value);
    default: return true;
    }
}

void folding_init() {
    forget_element_tables();
    total_without_need = 0;
}

} // namespace zf90
