// What programs cannot show of the folder: trees whose sizes are known to nobody before they are folded, the
// memory of attempts, lists of elements in every form, and depth.
#include "constants/folding.h"

#include "constants/fold_parts.h"
#include "intrinsics/intrinsic_codes.h"
#include "support/front_end.h"

#include "il/constants.h"

#include <initializer_list>
#include <string>

using namespace zf90;

namespace {

class FoldingTest : public FrontEndTest {
public:
    using FrontEndTest::messages_of;
};

expr_node *integer_node(std::int32_t value) { return new_integer_constant_node(value, default_integer()); }

expr_node *list(std::initializer_list<expr_node *> nodes) {
    expr_node *first = nullptr;
    expr_node **link = &first;
    for (expr_node *node : nodes) {
        *link = node;
        link = &node->next;
    }
    return first;
}

// An array type of rank 1 whose extent nobody knows.
type *open_array() {
    type *t = new_array_type(default_integer(), 1);
    set_constant_bound(t->array.bound->bounds[0], 1);
    set_expression_bound(t->array.bound->bounds[1], new_error_node());
    return t;
}

expr_node *array_node(std::initializer_list<std::int32_t> values) {
    expr_node *node = new_expr_node(enk_constructor);
    expr_node **link = &node->constructor;
    for (const std::int32_t value : values) {
        *link = integer_node(value);
        link = &(*link)->next;
    }
    node->type = open_array();
    return node;
}

expr_node *intrinsic_node(intrinsic_code code, type *t, std::initializer_list<expr_node *> arguments) {
    expr_node *node = new_expr_node(enk_intrinsic);
    node->intrinsic = code;
    node->type = t;
    node->operands = list(arguments);
    return node;
}

expr_node *variable_node() {
    expr_node *node = new_expr_node(enk_object);
    node->object = new_object();
    node->object->type = node->type = default_integer();
    return node;
}

std::string text_of(const fold_value &value) {
    if (value.repr_kind == ck_value) {
        return std::to_string(value.integer);
    }
    if (value.repr_kind != ck_aggregate) {
        return "none";
    }
    std::string text;
    for (const constant *element : element_vector(value)) {
        text += (text.empty() ? "" : " ") + std::to_string(integer_value_of(element));
    }
    return "{" + text + "}";
}

// The value, or the message.
std::string folded(expr_node *node, bool must_fold = false) {
    fold_value value;
    bool good = false;
    std::string text = FoldingTest::messages_of([&] { good = fold_expression(node, value, must_fold); });
    EXPECT_EQ(good, text.empty());
    if (!text.empty()) {
        EXPECT_FALSE(has_value(value));
        text = text.substr(text.find(": ") + 2);
        text = text.substr(text.find_first_not_of(' '));
        return text.substr(0, text.size() - 1);
    }
    return text_of(value);
}

TEST_F(FoldingTest, ArraysOfDifferentSizes) {
    expr_node *operands = list({array_node({1, 2}), array_node({3, 4, 5})});
    expr_node *sum = new_operation(eok_iadd, open_array(), operands);
    EXPECT_EQ(folded(sum), "different array sizes");
    EXPECT_EQ(sum->node_kind, enk_error);
    expr_node *largest = intrinsic_node(intr_max, open_array(), {array_node({1, 2}), array_node({3})});
    EXPECT_EQ(folded(largest), "different array sizes");
    EXPECT_EQ(largest->node_kind, enk_error);
    EXPECT_EQ(folded(new_operation(eok_iadd, open_array(), list({array_node({1, 2}), array_node({3, 4})}))),
              "{4 6}");
}

TEST_F(FoldingTest, ShapesOfReshape) {
    const auto reshape = [](expr_node *shape, expr_node *order) {
        return intrinsic_node(intr_reshape, open_array(),
                              {array_node({1, 2, 3, 4}), shape, new_expr_node(enk_empty), order});
    };
    const auto absent = [] { return new_expr_node(enk_empty); };
    EXPECT_EQ(folded(reshape(array_node({}), absent())), "rank must be positive");
    EXPECT_EQ(folded(reshape(array_node({1, 1, 1, 1, 1, 1, 1, 1}), absent())), "maximum rank is seven");
    EXPECT_EQ(folded(reshape(array_node({2, 2}), array_node({1}))),
              "argument must have the same shape as SHAPE");
    EXPECT_EQ(folded(reshape(array_node({2, 2}), array_node({1, 2, 1}))),
              "argument must have the same shape as SHAPE");
    EXPECT_EQ(folded(reshape(array_node({2, 2}), array_node({2, 1, 1, 1, 1, 1, 1, 1, 1}))),
              "argument must have the same shape as SHAPE");
    EXPECT_EQ(folded(reshape(array_node({2, 2}), array_node({2, 1}))), "{1 3 2 4}");
}

TEST_F(FoldingTest, BitsMovedFromOneIntegerToAnother) {
    const auto mvbits = [](std::int32_t from, std::int32_t position, std::int32_t length, std::int32_t to,
                           std::int32_t to_position) {
        return folded(intrinsic_node(intr_mvbits, default_integer(),
                                     {integer_node(from), integer_node(position), integer_node(length),
                                      integer_node(to), integer_node(to_position)}));
    };
    EXPECT_EQ(mvbits(7, 0, 2, 0, 3), "24");
    EXPECT_EQ(mvbits(-1, 4, 4, 0, 28), std::to_string(-268435456));
    EXPECT_EQ(mvbits(5, 0, 32, 9, 0), "5");
    EXPECT_EQ(mvbits(5, 32, 0, 9, 32), "9");
    EXPECT_EQ(mvbits(5, 0, -1, 9, 0), "argument must not be negative");
    EXPECT_EQ(mvbits(5, -1, 1, 9, 0), "argument must not be negative");
    EXPECT_EQ(mvbits(5, 0, 1, 9, -1), "argument must not be negative");
    EXPECT_EQ(mvbits(5, 31, 2, 9, 0), "argument value out of bit size of integer");
    EXPECT_EQ(mvbits(5, 0, 2, 9, 31), "argument value out of bit size of integer");
}

TEST_F(FoldingTest, MemoryIsOfTheNodeItself) {
    expr_node *sum = new_operation(eok_iadd, default_integer(), list({variable_node(), integer_node(1)}));
    EXPECT_EQ(folded(sum), "none");
    // A copy with another operand is another expression.
    auto *copy = il_new<expr_node>();
    *copy = *sum;
    copy->operands = list({integer_node(2), integer_node(3)});
    EXPECT_EQ(folded(copy), "5");
    EXPECT_EQ(folded(sum), "none");
    EXPECT_EQ(folded(sum, true), "must be an initialization expression");
    EXPECT_EQ(sum->operands->node_kind, enk_error);
}

TEST_F(FoldingTest, FailuresAreReportedOnce) {
    expr_node *quotient =
        new_operation(eok_idivide, default_integer(), list({integer_node(1), integer_node(0)}));
    expr_node *sum = new_operation(eok_iadd, default_integer(), list({quotient, integer_node(1)}));
    EXPECT_EQ(folded(quotient), "division by zero");
    EXPECT_EQ(quotient->node_kind, enk_operation);
    fold_value value;
    EXPECT_EQ(messages_of([&] { EXPECT_FALSE(fold_expression(sum, value, false)); }), "");
    EXPECT_EQ(messages_of([&] { EXPECT_FALSE(fold_expression(sum, value, true)); }), "");
    EXPECT_FALSE(has_value(value));
}

TEST_F(FoldingTest, ListsOfElementsInEveryForm) {
    const auto element = [](std::int32_t value) { return make_integer_constant(value, default_integer()); };
    const auto form = [](constant_kind kind) {
        constant *c = new_constant();
        set_constant_repr(c, kind);
        return c;
    };
    constant *repeat = form(ck_init_repeat);
    repeat->repeat = {element(7), 3};
    constant *position = form(ck_init_position);
    position->position = {10, 2};
    constant *range = form(ck_init_index);
    range->index = {20, 26, 3};
    constant *all[] = {element(1), repeat, element(2), position, element(3), element(4), range, element(5)};
    for (std::size_t i = 0; i + 1 < std::size(all); ++i) {
        all[i]->next = all[i + 1];
    }
    const auto nth = [&](std::int64_t index) {
        const constant *c = nth_element(all[0], index);
        return c ? integer_value_of(c) : 0;
    };
    std::string found;
    for (const std::int64_t i : {0, 1, 3, 4, 5, 10, 11, 12, 20, 21, 23, 26, 29, 100, -1}) {
        found += std::to_string(nth(i)) + " ";
    }
    EXPECT_EQ(found, "1 7 7 2 0 3 4 0 5 0 5 5 0 0 0 ");
    element_cursor cursor{all[0], 0};
    std::string walked;
    while (const constant *c = next_element(cursor)) {
        walked += std::to_string(integer_value_of(c)) + " ";
    }
    EXPECT_EQ(walked, "1 7 7 7 2 3 4 5 ");
}

TEST_F(FoldingTest, LongListsAreFoundByTable) {
    fold_value value = new_fold_value(ck_aggregate);
    for (std::int32_t i = 0; i < 1000; ++i) {
        append_to_fold_value(value, make_integer_constant(i, default_integer()));
    }
    for (const std::int64_t i : {0, 31, 32, 500, 999}) {
        ASSERT_NE(nth_element(value.first_constant, i), nullptr);
        EXPECT_EQ(integer_value_of(nth_element(value.first_constant, i)), i);
    }
    EXPECT_EQ(nth_element(value.first_constant, 1000), nullptr);
    EXPECT_EQ(element_count(value, 5), 5);
    EXPECT_EQ(element_count(value, 5000), 1000);
}

TEST_F(FoldingTest, TextsTakeALength) {
    fold_value value = new_fold_value(ck_value);
    value.type = default_character(2);
    value.text[0] = 'a';
    value.text[1] = 'b';
    fold_value array = new_fold_value(ck_aggregate);
    array.type = new_array_type(default_character(2), 1);
    append_to_fold_value(array, store_fold_value(value));
    auto *repeat = new_constant();
    set_constant_repr(repeat, ck_init_repeat);
    repeat->repeat = {store_fold_value(value), 4};
    append_to_fold_value(array, repeat);
    fit_text_length(value, default_character(3));
    EXPECT_EQ(std::string(reinterpret_cast<const char *>(fold_text(value)), 3), "ab ");
    type *longer = new_array_type(default_character(1), 1);
    fit_text_length(array, longer);
    EXPECT_EQ(array.type, longer);
    EXPECT_EQ(array.first_constant->type, default_character(1));
    EXPECT_EQ(array.last_constant->repr_kind, ck_init_repeat);
    EXPECT_EQ(array.last_constant->repeat.constant->type, default_character(1));
    EXPECT_EQ(array.last_constant->repeat.count, 4u);
}

TEST_F(FoldingTest, DepthCostsMemoryOnly) {
    constexpr int depth = 200000;
    expr_node *constants = integer_node(0);
    expr_node *variables = variable_node();
    for (int i = 0; i < depth; ++i) {
        constants = new_operation(eok_iadd, default_integer(), list({constants, integer_node(1)}));
        variables = new_operation(eok_iadd, default_integer(), list({variables, integer_node(1)}));
        EXPECT_EQ(folded(variables), "none"); // at each level, as the checks do
    }
    EXPECT_EQ(folded(constants), std::to_string(depth));
}

} // namespace
