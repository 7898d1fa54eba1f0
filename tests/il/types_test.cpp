// The kind tables row by row, the caches, the constructors and the sizes of types.
#include "il/types.h"

#include "driver/diagnostics.h"
#include "il/il_fixture.h"

#include <cfloat>
#include <cmath>
#include <cstring>
#include <limits>
#include <vector>

using namespace zf90;

namespace {

using types = il_test;

struct row {
    std::int32_t kind_number;
    std::uint32_t byte_size;
    unsigned alignment, radix, digits;
    int min_exponent, max_exponent;
    char blank;
};

template <class Value> void expect_row(const kind_row<Value> &k, row expected) {
    EXPECT_EQ(k.kind_number, expected.kind_number);
    EXPECT_EQ(k.byte_size, expected.byte_size);
    EXPECT_EQ(k.byte_alignment, expected.alignment);
    EXPECT_EQ(k.radix, expected.radix);
    EXPECT_EQ(k.digits, expected.digits);
    EXPECT_EQ(k.min_exponent, expected.min_exponent);
    EXPECT_EQ(k.max_exponent, expected.max_exponent);
    EXPECT_EQ(k.blank_char, expected.blank);
}

template <class Value> std::vector<unsigned> written(const kind_row<Value> &k, Value value) {
    unsigned char bytes[16];
    std::memset(bytes, 0xee, sizeof bytes);
    k.write_value(bytes, value);
    for (std::size_t i = k.byte_size; i < sizeof bytes; ++i) {
        EXPECT_EQ(bytes[i], 0xee) << "written past the size";
    }
    return {bytes, bytes + k.byte_size};
}

template <class Value> Value there_and_back(const kind_row<Value> &k, Value value) {
    unsigned char bytes[16] = {};
    k.write_value(bytes, value);
    return k.read_value(bytes);
}

std::int32_t read(const kind_row<std::int32_t> &k, std::initializer_list<unsigned char> bytes) {
    return k.read_value(std::data(bytes));
}

TEST(kind_tables, rows) {
    expect_row(integer_kinds[0], {1, 2, 2, 2, 15, 0, 0, '\0'});
    expect_row(integer_kinds[1], {2, 4, 4, 2, 31, 0, 0, '\0'});
    expect_row(real_kinds[0], {1, 4, 4, 2, 24, -125, 128, '\0'});
    expect_row(real_kinds[1], {2, 8, 8, 2, 53, -1021, 1024, '\0'});
    expect_row(logical_kinds[0], {1, 1, 1, 0, 0, 0, 0, '\0'});
    expect_row(logical_kinds[1], {2, 4, 4, 0, 0, 0, 0, '\0'});
    expect_row(character_kinds[0], {1, 1, 1, 0, 0, 0, 0, ' '});
    EXPECT_EQ(default_integer_kind, 1u);
    EXPECT_EQ(default_real_kind, 0u);
    EXPECT_EQ(double_precision_kind, 1u);
    EXPECT_EQ(default_logical_kind, 1u);
    EXPECT_EQ(default_character_kind, 0u);
}

TEST(kind_tables, integers) {
    using bytes = std::vector<unsigned>;
    EXPECT_EQ(written(integer_kinds[0], 0x12345678), (bytes{0x78, 0x56}));
    EXPECT_EQ(written(integer_kinds[1], 0x12345678), (bytes{0x78, 0x56, 0x34, 0x12}));
    EXPECT_EQ(written(logical_kinds[0], 0x101), (bytes{1}));
    EXPECT_EQ(written(logical_kinds[1], -1), (bytes{0xff, 0xff, 0xff, 0xff}));
    EXPECT_EQ(written(character_kinds[0], 0x141), (bytes{0x41}));
    EXPECT_EQ(read(integer_kinds[0], {0xff, 0xff}), -1);
    EXPECT_EQ(read(integer_kinds[0], {0x00, 0x80}), -32768);
    EXPECT_EQ(read(integer_kinds[1], {0x00, 0x00, 0x00, 0x80}), std::numeric_limits<std::int32_t>::min());
    EXPECT_EQ(read(integer_kinds[1], {0xff, 0xff, 0xff, 0x7f}), 2147483647);
    EXPECT_EQ(read(logical_kinds[0], {0x80}), -128);
    EXPECT_EQ(read(logical_kinds[1], {1, 0, 0, 0}), 1);
    EXPECT_EQ(read(character_kinds[0], {0xe4}), -28);
    EXPECT_EQ(there_and_back(integer_kinds[0], 40000), 40000 - 65536);
}

TEST(kind_tables, reals) {
    using bytes = std::vector<unsigned>;
    EXPECT_EQ(written(real_kinds[0], 1.5), (bytes{0, 0, 0xc0, 0x3f}));
    EXPECT_EQ(written(real_kinds[1], 1.5), (bytes{0, 0, 0, 0, 0, 0, 0xf8, 0x3f}));
    EXPECT_EQ(there_and_back(real_kinds[1], 0.1), 0.1);
    EXPECT_EQ(there_and_back(real_kinds[0], 0.1), static_cast<double>(0.1f));
    EXPECT_EQ(there_and_back(real_kinds[0], 1e-300), 0.0);
    EXPECT_TRUE(std::signbit(there_and_back(real_kinds[0], -1e-300)));
}

TEST(kind_tables, reals_beyond_the_range_become_infinite_when_stored) {
    const double largest = FLT_MAX;
    const double infinite = std::numeric_limits<double>::infinity();
    EXPECT_EQ(there_and_back(real_kinds[0], largest), largest);
    EXPECT_EQ(there_and_back(real_kinds[0], std::nextafter(largest, infinite)), largest);
    EXPECT_EQ(there_and_back(real_kinds[0], std::nextafter(0x1.ffffffp127, 0.0)), largest);
    EXPECT_EQ(there_and_back(real_kinds[0], 0x1.ffffffp127), infinite);
    EXPECT_EQ(there_and_back(real_kinds[0], 1e76), infinite);
    EXPECT_EQ(there_and_back(real_kinds[0], -1e76), -infinite);
    EXPECT_EQ(there_and_back(real_kinds[0], -infinite), -infinite);
    EXPECT_TRUE(std::isnan(there_and_back(real_kinds[0], std::nan(""))));
}

TEST(kind_tables, models) {
    EXPECT_EQ(largest_model_integer(0), 32767u);
    EXPECT_EQ(largest_model_integer(1), 2147483647u);
    EXPECT_EQ(largest_model_real(0), static_cast<double>(FLT_MAX));
    EXPECT_EQ(largest_model_real(1), DBL_MAX);
}

TEST(kind_tables, indexes) {
    EXPECT_EQ(integer_kind_index(1), 0);
    EXPECT_EQ(integer_kind_index(2), 1);
    EXPECT_EQ(integer_kind_index(4), -1);
    EXPECT_EQ(real_kind_index(2), 1);
    EXPECT_EQ(logical_kind_index(2), 1);
    EXPECT_EQ(logical_kind_index(-1), -1);
    EXPECT_EQ(character_kind_index(1), 0);
    EXPECT_EQ(character_kind_index(0), -1);
}

// ---- caches

void expect_type(const type *t, enum type_code code, std::uint32_t kind, std::uint32_t size,
                 unsigned alignment, bool is_numeric) {
    EXPECT_EQ(t->type_code, code);
    EXPECT_EQ(t->kind, kind);
    EXPECT_EQ(t->size, size);
    EXPECT_EQ(t->alignment, alignment);
    EXPECT_EQ(t->is_numeric, is_numeric);
    EXPECT_FALSE(t->contains_ptrs || t->is_public);
}

TEST_F(types, numbers_and_logicals) {
    expect_type(integer_type(0), tk_integer, 0, 2, 2, false);
    expect_type(integer_type(1), tk_integer, 1, 4, 4, true);
    expect_type(real_type(0), tk_float, 0, 4, 4, true);
    expect_type(real_type(1), tk_float, 1, 8, 8, true);
    expect_type(complex_type(0), tk_complex, 0, 8, 4, true);
    expect_type(complex_type(1), tk_complex, 1, 16, 8, false);
    expect_type(logical_type(0), tk_logical, 0, 1, 1, false);
    expect_type(logical_type(1), tk_logical, 1, 4, 4, true);
}

TEST_F(types, same_arguments_same_entry) {
    EXPECT_EQ(integer_type(1), integer_type(1));
    EXPECT_EQ(default_integer(), integer_type(1));
    EXPECT_EQ(default_real(), real_type(0));
    EXPECT_EQ(double_precision(), real_type(1));
    EXPECT_EQ(default_complex(), complex_type(0));
    EXPECT_EQ(default_logical(), logical_type(1));
    EXPECT_NE(integer_type(0), integer_type(1));
    EXPECT_EQ(error_type(), error_type());
    EXPECT_EQ(error_type()->type_code, tk_error);
    EXPECT_EQ(error_type()->size, 1u);
    EXPECT_EQ(unknown_type()->type_code, tk_unknown);
    EXPECT_EQ(void_type()->type_code, tk_void);
    EXPECT_EQ(format_type()->type_code, tk_format);
    EXPECT_EQ(unspec_routine_type()->type_code, tk_unspec_routine);
    EXPECT_EQ(stmt_label_type()->type_code, tk_stmt_label);
    EXPECT_EQ(void_type()->size, 0u);
    EXPECT_EQ(void_type()->alignment, 1);
    EXPECT_NE(new_type(tk_module), new_type(tk_module));
}

TEST_F(types, initialisation_clears_the_caches) {
    const type *before = default_integer();
    const type *error_before = error_type();
    const type *text_before = character_type(0, 3);
    il_init();
    EXPECT_NE(default_integer(), before);
    EXPECT_NE(error_type(), error_before);
    EXPECT_NE(character_type(0, 3), text_before);
}

TEST_F(types, characters) {
    type *empty = character_type(0, 0);
    EXPECT_EQ(empty->size, 1u);
    EXPECT_EQ(empty->alignment, 1);
    EXPECT_TRUE(empty->is_character);
    EXPECT_FALSE(empty->is_numeric);
    EXPECT_EQ(empty->character.length.kind, bound_constant);
    EXPECT_EQ(empty->character.length.value, 0);
    type *five = character_type(0, 5);
    EXPECT_EQ(five->size, 5u);
    EXPECT_EQ(default_character(5), five);
    EXPECT_EQ(character_type(0, 2147483647)->size, 2147483647u);

    type *assumed = assumed_character_type(0);
    EXPECT_EQ(assumed_character_type(0), assumed);
    EXPECT_EQ(assumed->character.length.kind, bound_assumed);
    EXPECT_EQ(assumed->size, 0u);
    EXPECT_EQ(assumed->alignment, 1);
    EXPECT_TRUE(assumed->is_character);
    EXPECT_NE(character_type(0, 0), assumed);
    EXPECT_EQ(constant_length(assumed), 0);
    EXPECT_EQ(constant_length(five), 5);
}

TEST_F(types, one_entry_for_each_length) {
    std::vector<type *> made;
    for (int length = 0; length < 2000; ++length) {
        made.push_back(character_type(0, length));
    }
    for (int length = 1999; length >= 0; --length) {
        ASSERT_EQ(character_type(0, length), made[static_cast<std::size_t>(length)]);
        ASSERT_EQ(made[static_cast<std::size_t>(length)]->character.length.value, length);
    }
}

TEST_F(types, by_kind_number) {
    bool failed = false;
    EXPECT_EQ(integer_type_for_kind_number(1, failed), integer_type(0));
    EXPECT_EQ(integer_type_for_kind_number(2, failed), integer_type(1));
    EXPECT_EQ(real_type_for_kind_number(2, failed), real_type(1));
    EXPECT_EQ(complex_type_for_kind_number(2, failed), complex_type(1));
    EXPECT_EQ(logical_type_for_kind_number(1, failed), logical_type(0));
    EXPECT_EQ(character_type_for_kind_number(1, 7, failed), character_type(0, 7));
    EXPECT_EQ(assumed_character_type_for_kind_number(1, failed), assumed_character_type(0));
    EXPECT_FALSE(failed);
    type *(*const functions[])(std::int32_t, bool &) = {
        integer_type_for_kind_number, real_type_for_kind_number, complex_type_for_kind_number,
        logical_type_for_kind_number, assumed_character_type_for_kind_number};
    for (auto *function : functions) {
        for (const std::int32_t number : {-1, 0, 3, 4, 8}) {
            failed = false;
            EXPECT_EQ(function(number, failed), error_type());
            EXPECT_TRUE(failed);
        }
    }
    failed = false;
    EXPECT_EQ(character_type_for_kind_number(2, 7, failed), error_type());
    EXPECT_TRUE(failed);
    EXPECT_EQ(integer_type_for_kind_number(2, failed), integer_type(1));
    EXPECT_TRUE(failed) << "a later success does not hide a failure";
}

TEST_F(types, by_size) {
    bool failed = false;
    EXPECT_EQ(integer_type_for_size(2, failed), integer_type(0));
    EXPECT_EQ(integer_type_for_size(4, failed), integer_type(1));
    EXPECT_EQ(real_type_for_size(4, failed), real_type(0));
    EXPECT_EQ(real_type_for_size(8, failed), real_type(1));
    EXPECT_EQ(complex_type_for_size(8, failed), complex_type(0));
    EXPECT_EQ(complex_type_for_size(16, failed), complex_type(1));
    EXPECT_EQ(logical_type_for_size(1, failed), logical_type(0));
    EXPECT_EQ(logical_type_for_size(4, failed), logical_type(1));
    EXPECT_FALSE(failed);
    EXPECT_EQ(integer_type_for_size(8, failed), error_type());
    EXPECT_TRUE(failed);
    failed = false;
    EXPECT_EQ(complex_type_for_size(9, failed), error_type());
    EXPECT_TRUE(failed);
}

// ---- constructors

TEST_F(types, a_new_type_is_empty) {
    for (unsigned code = 0; code < type_code_count; ++code) {
        const type *t = new_type(static_cast<enum type_code>(code));
        EXPECT_EQ(t->type_code, code);
        EXPECT_EQ(t->il_id, 0u);
        EXPECT_EQ(t->symbol_link, nullptr);
        EXPECT_EQ(t->source_corresp.name, nullptr);
        EXPECT_TRUE(t->source_corresp.referenced);
        EXPECT_FALSE(t->source_corresp.host_associated);
        EXPECT_EQ(t->source_corresp.scope_depth, depth_out_of_scope);
        EXPECT_EQ(t->next, nullptr);
        EXPECT_EQ(t->size, 0u);
        EXPECT_EQ(t->alignment, 1);
        EXPECT_FALSE(t->is_numeric || t->is_character || t->contains_ptrs || t->is_public);
    }
    EXPECT_EQ(new_type(tk_integer)->kind, default_integer_kind);
    EXPECT_EQ(new_type(tk_logical)->kind, default_logical_kind);
    EXPECT_EQ(new_type(tk_float)->kind, default_real_kind);
    EXPECT_EQ(new_type(tk_complex)->kind, default_real_kind);
    const type *text = new_type(tk_fcharacter);
    EXPECT_EQ(text->kind, default_character_kind);
    EXPECT_EQ(text->character.length.kind, bound_constant);
    EXPECT_EQ(text->character.length.value, 0);
    const type *array = new_type(tk_farray);
    EXPECT_EQ(array->array.element_type, nullptr);
    EXPECT_EQ(array->array.bound, nullptr);
    EXPECT_EQ(array->array.rank, 0);
    EXPECT_EQ(array->array.shape_kind, explicit_shape);
    const type *routine = new_type(tk_routine);
    EXPECT_EQ(routine->routine.return_type, nullptr);
    EXPECT_FALSE(routine->routine.has_param_info || routine->routine.is_elemental);
    const type *derived = new_type(tk_derived_type);
    EXPECT_EQ(derived->derived.first_field, nullptr);
    EXPECT_FALSE(derived->derived.is_seq);
}

TEST_F(types, arrays_and_routines) {
    const type *array = new_array_type(default_real(), 3);
    EXPECT_EQ(array->type_code, tk_farray);
    EXPECT_EQ(array->array.element_type, default_real());
    EXPECT_EQ(array->array.rank, 3);
    for (int i = 0; i < 6; ++i) {
        EXPECT_EQ(array->array.bound->bounds[i].kind, bound_undefined);
    }
    object *o = new_object();
    const type *routine = new_routine_type(o, default_logical());
    EXPECT_EQ(routine->type_code, tk_routine);
    EXPECT_EQ(routine->routine.assoc_routine, o);
    EXPECT_EQ(routine->routine.return_type, default_logical());
    EXPECT_EQ(routine->routine.param_type_list, nullptr);
}

TEST_F(types, copying_keeps_the_list_link) {
    type *from = new_array_type(default_real(), 1);
    from->next = default_integer();
    from->is_public = true;
    from->source_corresp.scope_depth = 3;
    type *to = new_type(tk_unknown);
    to->next = default_logical();
    copy_type(from, to);
    EXPECT_EQ(to->next, default_logical());
    EXPECT_EQ(to->type_code, tk_farray);
    EXPECT_EQ(to->array.bound, from->array.bound);
    EXPECT_TRUE(to->is_public);
    EXPECT_EQ(to->source_corresp.scope_depth, 3);
}

// ---- sizes

using extents = std::vector<std::pair<std::int32_t, std::int32_t>>;

type *array_of(type *element, const extents &dimensions) {
    const auto rank = static_cast<unsigned>(dimensions.size());
    type *t = new_array_type(element, rank);
    for (unsigned i = 0; i < rank; ++i) {
        set_constant_bound(t->array.bound->bounds[i], dimensions[i].first);
        set_constant_bound(t->array.bound->bounds[rank + i], dimensions[i].second);
    }
    return t;
}

std::uint32_t size_of(type *t) {
    complete_type(t);
    return t->size;
}

TEST_F(types, any_kind_has_no_size) {
    for (const enum type_code code : {tk_integer, tk_logical, tk_float, tk_complex, tk_fcharacter}) {
        type *t = new_type(code);
        t->kind = ANY_KIND;
        complete_type(t);
        EXPECT_EQ(t->size, 0u);
        EXPECT_EQ(t->alignment, 1);
    }
}

TEST_F(types, plain_codes_have_no_size) {
    for (const enum type_code code :
         {tk_void, tk_routine, tk_stmt_label, tk_format, tk_association, tk_unspec_routine, tk_blockdata,
          tk_module, tk_any_type, tk_any_derived, tk_any_numerical, tk_unknown, tk_derived_type}) {
        type *t = new_type(code);
        complete_type(t);
        EXPECT_EQ(t->size, 0u) << code;
        EXPECT_EQ(t->alignment, 1) << code;
    }
    EXPECT_EQ(size_of(new_type(tk_error)), 1u);
    EXPECT_EQ(size_of(new_type(tk_integer)), 4u);
    EXPECT_EQ(size_of(new_type(tk_fcharacter)), 1u);
}

TEST_F(types, a_size_is_found_once) {
    type *t = new_type(tk_integer);
    t->size = 99;
    complete_type(t);
    EXPECT_EQ(t->size, 99u);
    EXPECT_EQ(t->alignment, 1);
}

TEST_F(types, a_length_that_is_no_constant_has_no_size) {
    for (const bound_kind kind :
         {bound_error, bound_expression, bound_assumed, bound_undefined, bound_same_as}) {
        type *t = new_type(tk_fcharacter);
        t->character.length.expr = nullptr;
        t->character.length.kind = kind;
        EXPECT_EQ(size_of(t), 0u);
    }
    type *negative = new_type(tk_fcharacter);
    set_constant_bound(negative->character.length, -4);
    EXPECT_EQ(size_of(negative), 1u);
}

TEST_F(types, array_sizes) {
    type *t = array_of(double_precision(), {{1, 10}, {-1, 1}});
    EXPECT_EQ(size_of(t), 240u);
    EXPECT_EQ(t->alignment, 8);
    EXPECT_EQ(size_of(array_of(default_real(), {{5, 5}})), 4u);
    EXPECT_EQ(size_of(array_of(character_type(0, 3), {{1, 4}})), 12u);
    EXPECT_EQ(size_of(array_of(complex_type(1), {{0, 1}, {0, 1}, {0, 1}, {0, 1}, {0, 1}, {0, 1}, {0, 1}})),
              2048u);
}

TEST_F(types, an_empty_array_has_the_room_of_one_element) {
    EXPECT_EQ(size_of(array_of(default_real(), {{1, 0}})), 4u);
    EXPECT_EQ(size_of(array_of(default_real(), {{1, 2147483647}, {5, 1}, {1, 2147483647}})), 4u);
    EXPECT_EQ(size_of(array_of(default_real(), {{2147483647, -2147483647}})), 4u);
    EXPECT_EQ(size_of(array_of(character_type(0, 0), {{1, 3}})), 1u);
    EXPECT_EQ(error_count, 0u);
}

TEST_F(types, arrays_that_stay_incomplete) {
    type *deferred = new_array_type(double_precision(), 1);
    EXPECT_EQ(size_of(deferred), 0u);
    EXPECT_EQ(deferred->alignment, 8) << "the element's alignment is known";
    type *assumed = array_of(default_real(), {{1, 1}, {1, 1}});
    assumed->array.bound->bounds[3].kind = bound_assumed;
    EXPECT_EQ(size_of(assumed), 0u);
    type *expression = array_of(default_real(), {{1, 5}});
    expr_node *node = new_error_node();
    set_expression_bound(expression->array.bound->bounds[0], node);
    EXPECT_EQ(expression->array.bound->bounds[0].expr, node);
    EXPECT_EQ(size_of(expression), 0u);
    type *of_incomplete = array_of(assumed_character_type(0), {{1, 5}});
    EXPECT_EQ(size_of(of_incomplete), 0u);
    EXPECT_EQ(of_incomplete->alignment, 1);
    type *of_none = new_array_type(nullptr, 1);
    EXPECT_EQ(size_of(of_none), 0u);
    for (const shape_kind kind : {add_dimension, delete_dimension}) {
        type *t = new_type(tk_farray);
        t->array.element_type = default_real();
        t->array.rank = 1;
        t->array.shape_kind = kind;
        EXPECT_EQ(size_of(t), 0u);
    }
    // A dimension behind an empty one is not looked at.
    type *empty_first = array_of(default_real(), {{1, 0}, {1, 1}});
    empty_first->array.bound->bounds[3].kind = bound_assumed;
    EXPECT_EQ(size_of(empty_first), 4u);
}

TEST_F(types, the_largest_array) {
    EXPECT_EQ(size_of(array_of(default_real(), {{1, 1073741823}})), 4294967292u);
    EXPECT_EQ(size_of(array_of(integer_type(0), {{1, 2}, {1, 1073741823}})), 4294967292u);
    EXPECT_EQ(size_of(array_of(logical_type(0), {{-2147483647 - 1, 2147483646}})), 4294967295u);
    EXPECT_EQ(error_count, 0u);
}

// Counts the errors of completing it twice, and checks their place and text.
unsigned errors_of(type *t) {
    t->source_corresp.decl_position = {7, 21};
    testing::internal::CaptureStderr();
    const std::uint32_t before = error_count;
    complete_type(t);
    complete_type(t);
    std::fflush(stderr);
    const std::string text = testing::internal::GetCapturedStderr();
    if (error_count != before) {
        EXPECT_NE(text.find(message_text(msg_array_is_too_large)), std::string::npos) << text;
        EXPECT_NE(text.find(":21) error:"), std::string::npos) << text;
    }
    return error_count - before;
}

TEST_F(types, arrays_that_are_too_large) {
    EXPECT_EQ(errors_of(array_of(double_precision(), {{1, 2147483647}})), 1u);
    EXPECT_EQ(errors_of(array_of(default_real(), {{1, 1073741824}})), 1u);
    EXPECT_EQ(errors_of(array_of(logical_type(0), {{-2147483647 - 1, 2147483647}})), 1u);
    EXPECT_EQ(errors_of(array_of(logical_type(0), {{1, 65536}, {1, 65536}})), 1u);
    EXPECT_EQ(errors_of(array_of(logical_type(0), {{1, 65536}, {1, 65536}, {1, 0}})), 1u);
    EXPECT_EQ(errors_of(array_of(logical_type(0), {{1, 0}, {1, 65536}, {1, 65536}})), 0u);
    EXPECT_EQ(errors_of(array_of(character_type(0, 0), {{1, 65536}, {1, 65536}})), 1u);
}

TEST_F(types, an_array_that_is_too_large_is_reported_once_for_all_its_uses) {
    const auto shaped_like = [](type *declared, type *element) {
        expr_node *node = new_expr_node(enk_object);
        node->object = new_object();
        node->object->type = declared;
        type *t = new_type(tk_farray);
        t->array.element_type = element;
        t->array.rank = 1;
        t->array.shape_kind = same_shape;
        t->array.args = node;
        return t;
    };
    type *too_large = array_of(default_real(), {{1, 1073741824}});
    EXPECT_EQ(errors_of(too_large), 1u);
    EXPECT_EQ(errors_of(shaped_like(too_large, default_real())), 0u);
    EXPECT_EQ(errors_of(shaped_like(too_large, double_precision())), 0u);
    type *fits = array_of(default_real(), {{1, 536870912}});
    EXPECT_EQ(errors_of(fits), 0u);
    EXPECT_EQ(errors_of(shaped_like(fits, double_precision())), 1u) << "only with the longer elements";
}

TEST_F(types, same_shape_follows_the_expression) {
    type *declared = array_of(default_integer(), {{0, 4}});
    object *o = new_object();
    o->type = declared;
    expr_node *node = new_expr_node(enk_object);
    node->object = o;

    const auto shaped_like = [](expr_node *args) {
        type *t = new_type(tk_farray);
        t->array.element_type = double_precision();
        t->array.rank = 1;
        t->array.shape_kind = same_shape;
        t->array.args = args;
        complete_type(t);
        return t->size;
    };
    EXPECT_EQ(shaped_like(node), 40u);
    EXPECT_EQ(shaped_like(new_ref(node)), 40u);

    expr_node *field = new_expr_node(enk_field);
    field->field_var = o;
    EXPECT_EQ(shaped_like(field), 40u);

    param_type *p = new_param_type();
    p->type = declared;
    expr_node *param = new_expr_node(enk_param);
    param->parameter = p;
    EXPECT_EQ(shaped_like(param), 40u);

    EXPECT_EQ(shaped_like(new_expr_node(enk_section)), 0u);
    EXPECT_EQ(shaped_like(new_expr_node(enk_operation)), 0u);
}

TEST_F(types, names) {
    EXPECT_STREQ(type_code_name(tk_void), "tk_void");
    EXPECT_STREQ(type_code_name(tk_fcharacter), "tk_fcharacter");
    EXPECT_STREQ(type_code_name(tk_unknown), "tk_unknown");
    EXPECT_STREQ(type_code_name(20), "**BAD TYPE CODE**");
    EXPECT_EQ(tk_unknown, 19);
    EXPECT_EQ(tk_derived_type, 14);
}

} // namespace
