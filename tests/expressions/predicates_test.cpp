// Equality of types and shapes, and the layout of components and frames.
#include "expressions/predicates.h"

#include "driver/diagnostics.h"
#include "il/il_fixture.h"
#include "il/types.h"

#include <string>
#include <vector>

using namespace zf90;

namespace {

using predicates = il_test;

atom *name(const char *spelling) {
    atom *a = il_new<atom>();
    a->spelling = spelling;
    return a;
}

// Bounds of one dimension; a kind other than constant has no value.
struct dimension {
    std::int32_t lower;
    std::int32_t upper;
    bound_kind upper_kind = bound_constant;
    bound_kind lower_kind = bound_constant;
};

type *array_of(type *element, const std::vector<dimension> &dimensions) {
    const auto rank = static_cast<unsigned>(dimensions.size());
    type *t = new_array_type(element, rank);
    for (unsigned i = 0; i < rank; ++i) {
        bound *b = t->array.bound->bounds;
        set_constant_bound(b[i], dimensions[i].lower);
        b[i].kind = dimensions[i].lower_kind;
        set_constant_bound(b[rank + i], dimensions[i].upper);
        b[rank + i].kind = dimensions[i].upper_kind;
    }
    return t;
}

type *text_of_expression() {
    type *t = new_type(tk_fcharacter);
    set_expression_bound(t->character.length, new_error_node());
    return t;
}

expr_node *node_of(type *t) {
    object *o = new_object();
    o->type = t;
    expr_node *node = new_expr_node(enk_object);
    node->object = o;
    return node;
}

type *same_shape_as(type *element, unsigned rank, expr_node *args) {
    type *t = new_type(tk_farray);
    t->array.element_type = element;
    t->array.rank = static_cast<std::uint8_t>(rank);
    t->array.shape_kind = same_shape;
    t->array.args = args;
    return t;
}

bool equal_both_ways(const type *a, const type *b) {
    const bool result = types_equal(a, b);
    EXPECT_EQ(types_equal(b, a), result);
    return result;
}

// ---- equality

TEST_F(predicates, plain_codes) {
    for (const enum type_code code :
         {tk_void, tk_stmt_label, tk_format, tk_association, tk_unspec_routine, tk_blockdata, tk_module,
          tk_error, tk_any_type, tk_any_derived, tk_any_numerical, tk_unknown}) {
        EXPECT_TRUE(types_equal(new_type(code), new_type(code))) << type_code_name(code);
        EXPECT_FALSE(types_equal(new_type(code), default_integer())) << type_code_name(code);
    }
}

TEST_F(predicates, kinds) {
    EXPECT_FALSE(equal_both_ways(integer_type(0), integer_type(1)));
    EXPECT_FALSE(equal_both_ways(default_real(), double_precision()));
    EXPECT_FALSE(equal_both_ways(default_real(), default_complex()));
    EXPECT_FALSE(equal_both_ways(default_integer(), default_logical()));
    for (const enum type_code code : {tk_integer, tk_logical, tk_float, tk_complex}) {
        type *a = new_type(code);
        type *b = new_type(code);
        EXPECT_TRUE(equal_both_ways(a, b));
        b->kind = 1 - a->kind;
        EXPECT_FALSE(equal_both_ways(a, b));
        b->kind = ANY_KIND;
        EXPECT_FALSE(equal_both_ways(a, b)) << "no wildcards here";
    }
}

TEST_F(predicates, lengths) {
    EXPECT_FALSE(equal_both_ways(character_type(0, 3), character_type(0, 4)));
    EXPECT_FALSE(equal_both_ways(character_type(0, 3), assumed_character_type(0)));
    type *three = new_type(tk_fcharacter);
    set_constant_bound(three->character.length, 3);
    EXPECT_TRUE(equal_both_ways(character_type(0, 3), three));
    type *assumed = new_type(tk_fcharacter);
    assumed->character.length.kind = bound_assumed;
    EXPECT_TRUE(equal_both_ways(assumed_character_type(0), assumed));
    EXPECT_FALSE(equal_both_ways(text_of_expression(), text_of_expression()));
    three->kind = ANY_KIND;
    EXPECT_FALSE(equal_both_ways(character_type(0, 3), three));
}

TEST_F(predicates, arrays) {
    type *a = array_of(default_real(), {{1, 3}});
    EXPECT_TRUE(equal_both_ways(a, array_of(default_real(), {{0, 2}})));
    EXPECT_FALSE(equal_both_ways(a, array_of(default_real(), {{1, 4}})));
    EXPECT_TRUE(equal_both_ways(a, array_of(default_real(), {{1, 0, bound_expression}})));
    EXPECT_TRUE(equal_both_ways(a, array_of(default_real(), {{1, 9, bound_constant, bound_expression}})));
    EXPECT_TRUE(equal_both_ways(a, array_of(default_real(), {{0, 0, bound_undefined, bound_undefined}})));
    EXPECT_FALSE(equal_both_ways(a, array_of(default_real(), {{1, 0, bound_assumed}})));
    EXPECT_FALSE(equal_both_ways(a, array_of(double_precision(), {{1, 3}})));
    EXPECT_FALSE(equal_both_ways(a, array_of(default_real(), {{1, 3}, {1, 1}})));
    EXPECT_TRUE(equal_both_ways(a, new_array_type(default_real(), 0))) << "rank 0 stands for any";
    EXPECT_FALSE(equal_both_ways(a, default_real()));
    type *real_too = new_type(tk_float);
    EXPECT_TRUE(equal_both_ways(a, array_of(real_too, {{1, 3}})));
    EXPECT_FALSE(
        equal_both_ways(array_of(text_of_expression(), {{1, 3}}), array_of(text_of_expression(), {{1, 3}})));
    type *text = text_of_expression();
    EXPECT_TRUE(equal_both_ways(array_of(text, {{1, 3}}), array_of(text, {{1, 3}})));
}

TEST_F(predicates, shapes) {
    type *t = default_real();
    EXPECT_TRUE(shapes_conform(array_of(t, {{1, 2}, {1, 3}}), array_of(t, {{0, 1}, {5, 7}})));
    EXPECT_FALSE(shapes_conform(array_of(t, {{1, 2}, {1, 3}}), array_of(t, {{1, 2}, {1, 4}})));
    EXPECT_FALSE(shapes_conform(array_of(t, {{1, 2}, {1, 3}}), array_of(t, {{1, 3}, {1, 3}})));
    EXPECT_TRUE(
        shapes_conform(array_of(t, {{1, 2}, {1, 0, bound_expression}}), array_of(t, {{1, 2}, {1, 4}})));
    EXPECT_TRUE(shapes_conform(array_of(t, {{1, 0}}), array_of(t, {{1, -5}}))) << "both empty";
    EXPECT_TRUE(shapes_conform(array_of(t, {{-2147483647 - 1, 2147483647}}),
                               array_of(t, {{-2147483647 - 1, 2147483647}})));
    EXPECT_FALSE(shapes_conform(array_of(t, {{-2147483647 - 1, 2147483647}}), array_of(t, {{1, 0}})));
    // The assumed bound counts when its dimension is reached.
    type *assumed = array_of(t, {{1, 2}, {1, 0, bound_assumed}});
    EXPECT_FALSE(shapes_conform(assumed, assumed));
    EXPECT_FALSE(shapes_conform(assumed, array_of(t, {{1, 2}, {1, 0, bound_expression}})));
    EXPECT_TRUE(shapes_conform(assumed, new_array_type(t, 0)));
    EXPECT_TRUE(shapes_conform(assumed, same_shape_as(t, 2, new_expr_node(enk_section))))
        << "no bounds known";
    EXPECT_FALSE(shapes_conform(assumed, array_of(t, {{1, 2}})));
}

TEST_F(predicates, bounds_through_expressions) {
    type *declared = array_of(default_integer(), {{0, 4}});
    EXPECT_EQ(bounds_of_type(declared), declared->array.bound);
    expr_node *node = node_of(declared);
    EXPECT_EQ(bounds_of_type(same_shape_as(default_real(), 1, node)), declared->array.bound);
    EXPECT_EQ(bounds_of_type(same_shape_as(default_real(), 1, new_ref(node))), declared->array.bound);
    EXPECT_EQ(bounds_of_type(same_shape_as(default_real(), 1, new_expr_node(enk_section))), nullptr);
    EXPECT_EQ(bounds_of_type(same_shape_as(default_real(), 1, new_expr_node(enk_call))), nullptr);
    EXPECT_EQ(bounds_of_type(same_shape_as(default_real(), 1, node_of(error_type()))), nullptr);
    EXPECT_EQ(bounds_of_type(same_shape_as(default_real(), 1, nullptr)), nullptr);
    EXPECT_EQ(bounds_of_type(same_shape_as(default_real(), 2, node)), nullptr) << "of another rank";
    EXPECT_TRUE(
        shapes_conform(same_shape_as(default_real(), 2, node), array_of(default_real(), {{1, 2}, {1, 3}})));
    type *spread = same_shape_as(default_real(), 1, node);
    spread->array.shape_kind = add_dimension;
    EXPECT_EQ(bounds_of_type(spread), nullptr);
    spread->array.shape_kind = delete_dimension;
    EXPECT_EQ(bounds_of_type(spread), nullptr);
    for (const shape_kind kind : {assumed_size, assumed_shape, deferred_shape, as_shaped}) {
        declared->array.shape_kind = kind;
        EXPECT_EQ(bounds_of_type(declared), declared->array.bound);
    }
    EXPECT_EQ(bounds_of_type(default_real()), nullptr);
}

TEST_F(predicates, lengths_through_expressions) {
    type *five = character_type(0, 5);
    EXPECT_EQ(&char_length_of_type(five), &five->character.length);
    const auto length_like = [](expr_node *node) {
        type *t = new_type(tk_fcharacter);
        t->character.length.kind = bound_same_as;
        t->character.length.expr = node;
        return t;
    };
    EXPECT_EQ(char_length_of_type(length_like(node_of(five))).value, 5);
    EXPECT_EQ(char_length_of_type(length_like(new_ref(node_of(five)))).value, 5);
    EXPECT_EQ(char_length_of_type(length_like(node_of(array_of(five, {{1, 2}})))).value, 5);
    EXPECT_EQ(char_length_of_type(length_like(node_of(assumed_character_type(0)))).kind, bound_assumed);
    expr_node *field = new_expr_node(enk_field);
    field->field_var = new_object();
    field->field_var->type = five;
    EXPECT_EQ(char_length_of_type(length_like(field)).value, 5);
    expr_node *param = new_expr_node(enk_param);
    param->parameter = new_param_type();
    param->parameter->type = five;
    EXPECT_EQ(char_length_of_type(length_like(param)).value, 5);
    type *of_call = length_like(new_expr_node(enk_call));
    EXPECT_EQ(&char_length_of_type(of_call), &of_call->character.length);
    type *of_error = length_like(node_of(error_type()));
    EXPECT_EQ(&char_length_of_type(of_error), &of_error->character.length);
}

// ---- routines

struct param {
    atom *keyword;
    type *t;
    bool is_optional = false;
    bool intent_in = false;
    bool intent_out = false;
    bool is_pointer = false;
};

type *routine(type *result, const std::vector<param> &params, bool known = true) {
    type *t = new_routine_type(nullptr, result);
    t->routine.has_param_info = known;
    param_type **link = &t->routine.param_type_list;
    for (const param &p : params) {
        *link = new_param_type();
        (*link)->source_corresp.name = p.keyword;
        (*link)->type = p.t;
        (*link)->is_optional = p.is_optional;
        (*link)->intent_in = p.intent_in;
        (*link)->intent_out = p.intent_out;
        (*link)->is_pointer = p.is_pointer;
        link = &(*link)->next;
    }
    return t;
}

TEST_F(predicates, routines) {
    atom *x = name("X");
    atom *y = name("Y");
    type *real = default_real();
    type *base = routine(real, {{x, real}});
    EXPECT_TRUE(equal_both_ways(base, routine(real, {{x, real}})));
    EXPECT_FALSE(equal_both_ways(base, routine(default_integer(), {{x, real}})));
    EXPECT_FALSE(equal_both_ways(base, routine(void_type(), {{x, real}})));
    EXPECT_TRUE(equal_both_ways(base, routine(unspec_routine_type(), {{x, real}})));
    EXPECT_FALSE(equal_both_ways(base, routine(unspec_routine_type(), {{y, real}})));
    EXPECT_FALSE(equal_both_ways(base, routine(real, {{y, real}})));
    EXPECT_FALSE(equal_both_ways(base, routine(real, {{x, default_integer()}})));
    EXPECT_FALSE(equal_both_ways(base, routine(real, {})));
    EXPECT_FALSE(equal_both_ways(base, routine(real, {{x, real}, {y, real}})));
    EXPECT_FALSE(equal_both_ways(base, routine(real, {{x, real, true}})));
    EXPECT_FALSE(equal_both_ways(base, routine(real, {{x, real, false, true}})));
    EXPECT_FALSE(equal_both_ways(base, routine(real, {{x, real, false, false, true}})));
    EXPECT_TRUE(equal_both_ways(base, routine(real, {{x, real, false, false, false, true}})));
    EXPECT_TRUE(equal_both_ways(base, routine(real, {}, false))) << "nothing is known of the other one";
    EXPECT_FALSE(equal_both_ways(base, routine(default_integer(), {}, false)));
    EXPECT_TRUE(
        equal_both_ways(routine(array_of(real, {{1, 2}}), {}), routine(array_of(real, {{2, 3}}), {})));

    // Dummy procedures.
    EXPECT_TRUE(equal_both_ways(routine(real, {{x, routine(real, {{y, real}})}}),
                                routine(real, {{x, routine(real, {{y, real}})}})));
    EXPECT_FALSE(equal_both_ways(routine(real, {{x, routine(real, {{y, real}})}}),
                                 routine(real, {{x, routine(real, {{x, real}})}})));

    EXPECT_TRUE(param_lists_equal(base, routine(default_integer(), {{x, real}})));
    EXPECT_FALSE(param_lists_equal(base, routine(real, {{y, real}})));
    type *of_integer = routine(real, {{x, default_integer()}});
    EXPECT_FALSE(param_lists_equal(base, of_integer));
    EXPECT_FALSE(param_lists_equal(base, of_integer)) << "the answer is found anew each time";
    EXPECT_FALSE(equal_both_ways(base, routine(real, {{x, nullptr}}))) << "no type yet";
    EXPECT_FALSE(param_lists_equal(base, routine(real, {}, false)));
}

TEST_F(predicates, a_routine_that_takes_itself) {
    atom *x = name("X");
    const auto self_taking = [&] {
        type *t = routine(void_type(), {{x, nullptr}});
        t->routine.param_type_list->type = t;
        return t;
    };
    EXPECT_TRUE(equal_both_ways(self_taking(), self_taking()));
}

// ---- derived types

struct component {
    atom *component_name;
    type *t;
};

void set_components(type *t, const std::vector<component> &components) {
    object **link = &t->derived.first_field;
    for (const component &c : components) {
        *link = new_object();
        (*link)->storage_class = sc_type_field;
        (*link)->source_corresp.name = c.component_name;
        (*link)->type = c.t;
        link = &(*link)->next;
    }
}

type *sequence(const std::vector<component> &components) {
    type *t = new_type(tk_derived_type);
    t->derived.is_seq = true;
    set_components(t, components);
    return t;
}

TEST_F(predicates, derived_types) {
    atom *a = name("A");
    atom *b = name("B");
    type *real = default_real();
    type *base = sequence({{a, real}, {b, real}});
    EXPECT_TRUE(types_equal(base, base));
    EXPECT_TRUE(equal_both_ways(base, sequence({{a, real}, {b, real}})));
    EXPECT_TRUE(equal_both_ways(base, sequence({{a, new_type(tk_float)}, {b, real}})));
    EXPECT_FALSE(equal_both_ways(base, sequence({{a, real}})));
    EXPECT_FALSE(equal_both_ways(base, sequence({{b, real}, {a, real}})));
    EXPECT_FALSE(equal_both_ways(base, sequence({{a, real}, {b, default_integer()}})));
    type *no_sequence = sequence({{a, real}, {b, real}});
    no_sequence->derived.is_seq = false;
    EXPECT_FALSE(equal_both_ways(base, no_sequence));
    type *no_sequence_too = sequence({{a, real}, {b, real}});
    no_sequence_too->derived.is_seq = false;
    EXPECT_FALSE(equal_both_ways(no_sequence, no_sequence_too));
    EXPECT_TRUE(types_equal(no_sequence, no_sequence));
    EXPECT_TRUE(equal_both_ways(sequence({{a, base}}), sequence({{a, sequence({{a, real}, {b, real}})}})));
    EXPECT_FALSE(equal_both_ways(sequence({{a, base}}), sequence({{a, sequence({{a, real}})}})));
}

TEST_F(predicates, derived_types_of_a_module) {
    object *module = new_object();
    atom *t_name = name("T");
    const auto of_module = [](object *m, atom *n) {
        type *t = new_type(tk_derived_type);
        t->derived.module = m;
        t->source_corresp.name = n;
        return t;
    };
    EXPECT_TRUE(equal_both_ways(of_module(module, t_name), of_module(module, t_name)));
    EXPECT_FALSE(equal_both_ways(of_module(module, t_name), of_module(module, name("U"))));
    EXPECT_FALSE(equal_both_ways(of_module(module, t_name), of_module(new_object(), t_name)));
    EXPECT_FALSE(equal_both_ways(of_module(nullptr, t_name), of_module(nullptr, t_name)));
}

TEST_F(predicates, types_that_point_to_themselves) {
    atom *next = name("NEXT");
    atom *value = name("VALUE");
    const auto chain = [&](type *of) {
        type *t = sequence({});
        set_components(t, {{value, of}, {next, t}});
        return t;
    };
    EXPECT_TRUE(equal_both_ways(chain(default_real()), chain(default_real())));
    EXPECT_FALSE(equal_both_ways(chain(default_real()), chain(default_integer())));
    // Through an array, and by way of another type.
    const auto tree = [&] {
        type *t = sequence({});
        type *children = new_array_type(t, 1);
        children->array.shape_kind = deferred_shape;
        set_components(t, {{next, children}});
        return t;
    };
    EXPECT_TRUE(equal_both_ways(tree(), tree()));
    const auto two = [&](type *last) {
        type *t = sequence({});
        type *u = sequence({});
        set_components(t, {{next, u}});
        set_components(u, {{next, t}, {value, last}});
        return t;
    };
    EXPECT_TRUE(equal_both_ways(two(default_real()), two(default_real())));
    EXPECT_FALSE(equal_both_ways(two(default_real()), two(default_logical())));
}

TEST_F(predicates, shared_components_are_compared_once) {
    atom *a = name("A");
    atom *b = name("B");
    const auto tower = [&](type *t, int levels) {
        for (int i = 0; i < levels; ++i) {
            t = sequence({{a, t}, {b, t}});
        }
        return t;
    };
    EXPECT_TRUE(equal_both_ways(tower(default_real(), 100000), tower(default_real(), 100000)));
    EXPECT_FALSE(equal_both_ways(tower(default_real(), 1000), tower(default_integer(), 1000)));
}

// ---- layout

object *field(type *t, object *&list, enum storage_class storage = sc_type_field) {
    object **link = &list;
    while (*link) {
        link = &(*link)->next;
    }
    *link = new_object();
    (*link)->type = t;
    (*link)->storage_class = storage;
    (*link)->association_offset = -1;
    return *link;
}

TEST_F(predicates, components_in_order) {
    type *t = new_type(tk_derived_type);
    object *&list = t->derived.first_field;
    const std::vector<std::pair<object *, int>> expected = {
        {field(character_type(0, 0), list), 0},
        {field(integer_type(0), list), 2},
        {field(array_of(default_real(), {{1, 0}}), list), 4},
        {field(array_of(double_precision(), {{5, 1}}), list), 8},
        {field(logical_type(0), list), 16},
        {field(array_of(character_type(0, 0), {{1, 3}}), list), 17},
        {field(complex_type(1), list), 24},
        {field(character_type(0, 3), list), 40},
    };
    complete_type(t);
    for (const auto &[o, offset] : expected) {
        EXPECT_EQ(o->association_offset, offset);
    }
    EXPECT_EQ(t->size, 48u);
    EXPECT_EQ(t->alignment, 8);

    type *outer = new_type(tk_derived_type);
    object *first = field(logical_type(0), outer->derived.first_field);
    object *inner = field(t, outer->derived.first_field);
    type *several = array_of(t, {{1, 3}});
    object *inner_array = field(several, outer->derived.first_field);
    complete_type(outer);
    EXPECT_EQ(first->association_offset, 0);
    EXPECT_EQ(inner->association_offset, 8);
    EXPECT_EQ(inner_array->association_offset, 56);
    EXPECT_EQ(outer->size, 200u);
    EXPECT_EQ(outer->alignment, 8);
}

TEST_F(predicates, the_size_is_rounded_up) {
    type *t = new_type(tk_derived_type);
    field(default_real(), t->derived.first_field);
    field(logical_type(0), t->derived.first_field);
    field_layout(t);
    EXPECT_EQ(t->size, 8u);
    EXPECT_EQ(t->alignment, 4);
    type *empty = new_type(tk_derived_type);
    field_layout(empty);
    EXPECT_EQ(empty->size, 0u);
    EXPECT_EQ(empty->alignment, 1);
    type *text = new_type(tk_derived_type);
    field(character_type(0, 5), text->derived.first_field);
    field_layout(text);
    EXPECT_EQ(text->size, 5u);
    EXPECT_EQ(text->alignment, 1);
}

TEST_F(predicates, objects_held_by_reference) {
    for (int flag = 0; flag < 4; ++flag) {
        type *t = new_type(tk_derived_type);
        object *&list = t->derived.first_field;
        std::vector<object *> objects = {
            field(double_precision(), list, sc_local),
            field(array_of(double_precision(), {{1, 9}, {1, 9}}), list, sc_local),
            field(assumed_character_type(0), list, sc_local),
            field(new_array_type(t, 7), list, sc_local),
        };
        for (object *o : objects) {
            o->is_pointer = flag == 0;
            o->is_allocatable = flag == 1;
            o->is_auto = flag == 2;
            o->is_parameter = flag == 3;
        }
        field_layout(t);
        EXPECT_EQ(objects[0]->association_offset, 0);
        EXPECT_EQ(objects[1]->association_offset, 4);
        EXPECT_EQ(objects[2]->association_offset, 32);
        EXPECT_EQ(objects[3]->association_offset, 36);
        EXPECT_EQ(t->size, 36u + 4 + 7 * 12);
        EXPECT_EQ(t->alignment, 4);
    }
}

TEST_F(predicates, frames) {
    type *t = new_type(tk_derived_type);
    object *&list = t->derived.first_field;
    field(logical_type(0), list, sc_local);
    struct expectation {
        object *o;
        int offset;
    };
    std::vector<expectation> expected;
    for (const auto storage : {sc_common, sc_module, sc_program, sc_blockdata, sc_stmt_func}) {
        expected.push_back({field(double_precision(), list, storage), 0});
    }
    for (const auto storage :
         {sc_associated, sc_use_associated, sc_intrinsic, sc_mod_proc, sc_implied_do_var, sc_unspecified}) {
        expected.push_back({field(double_precision(), list, storage), -1});
    }
    expected.push_back({field(new_routine_type(nullptr, void_type()), list, sc_internal), 1});
    expected.push_back({field(new_routine_type(nullptr, void_type()), list, sc_external), 0});
    expected.push_back({field(new_routine_type(nullptr, void_type()), list, sc_internal), 2});
    object *dummy_procedure = field(new_routine_type(nullptr, void_type()), list, sc_external);
    dummy_procedure->is_parameter = true;
    expected.push_back({dummy_procedure, 4});
    expected.push_back({field(integer_type(0), list, sc_local), 8});
    expected.push_back({field(nullptr, list, sc_local), 10});
    complete_type(t);
    for (const expectation &e : expected) {
        EXPECT_EQ(e.o->association_offset, e.offset) << e.o->storage_class;
    }
    EXPECT_EQ(t->size, 12u);
    EXPECT_EQ(t->alignment, 4);
}

} // namespace

// ---- matches

namespace {

type *any_kind_of(type_code code) {
    type *t = new_type(code);
    t->kind = ANY_KIND;
    return t;
}

// An array that takes its shape from the actual argument; rank 0 admits scalars and any rank.
type *form_of(type *element, unsigned rank) {
    type *t = new_array_type(element, rank);
    t->array.shape_kind = deferred_shape;
    return t;
}

using matches = il_test;

TEST_F(matches, kinds) {
    EXPECT_TRUE(type_matches_dummy(integer_type(0), any_kind_of(tk_integer)));
    EXPECT_TRUE(type_matches_dummy(integer_type(0), integer_type(0)));
    EXPECT_FALSE(type_matches_dummy(integer_type(0), integer_type(1)));
    EXPECT_FALSE(type_matches_dummy(default_real(), any_kind_of(tk_integer)));
    // The wildcards of an actual argument mean nothing.
    EXPECT_FALSE(type_matches_dummy(any_kind_of(tk_float), default_real()));
    EXPECT_TRUE(type_matches_dummy(default_character(3), default_character(5)));
    EXPECT_FALSE(type_matches_dummy(default_character(3), default_integer()));
}

TEST_F(matches, classes_of_types) {
    type *derived = new_type(tk_derived_type);
    EXPECT_TRUE(type_matches_dummy(default_complex(), new_type(tk_any_numerical)));
    EXPECT_FALSE(type_matches_dummy(default_logical(), new_type(tk_any_numerical)));
    EXPECT_TRUE(type_matches_dummy(derived, new_type(tk_any_derived)));
    EXPECT_FALSE(type_matches_dummy(default_real(), new_type(tk_any_derived)));
    EXPECT_TRUE(type_matches_dummy(derived, new_type(tk_any_type)));
    EXPECT_TRUE(type_matches_dummy(default_real(), error_type()));
    EXPECT_FALSE(type_matches_dummy(derived, derived)); // equal types are accepted before
    EXPECT_TRUE(type_matches_dummy(stmt_label_type(), stmt_label_type()));
    EXPECT_FALSE(type_matches_dummy(default_integer(), stmt_label_type()));
}

TEST_F(matches, ranks) {
    type *vector = array_of(default_real(), {{1, 3}});
    type *matrix = array_of(default_real(), {{1, 3}, {1, 3}});
    EXPECT_TRUE(type_matches_dummy(default_real(), form_of(default_real(), 0)));
    EXPECT_TRUE(type_matches_dummy(matrix, form_of(default_real(), 0)));
    EXPECT_TRUE(type_matches_dummy(vector, form_of(any_kind_of(tk_float), 1)));
    EXPECT_FALSE(type_matches_dummy(matrix, form_of(default_real(), 1)));
    EXPECT_FALSE(type_matches_dummy(default_real(), form_of(default_real(), 1)));
    EXPECT_FALSE(type_matches_dummy(vector, form_of(default_integer(), 0)));
    // An explicit shape takes its elements in sequence.
    EXPECT_TRUE(type_matches_dummy(matrix, vector));
    EXPECT_TRUE(type_matches_dummy(default_real(), vector));
}

TEST_F(matches, procedures) {
    type *real_function = new_routine_type(nullptr, default_real());
    type *array_function = new_routine_type(nullptr, array_of(default_real(), {{1, 3}}));
    EXPECT_TRUE(type_matches_dummy(new_routine_type(nullptr, unspec_routine_type()), real_function));
    EXPECT_TRUE(type_matches_dummy(real_function, new_routine_type(nullptr, unspec_routine_type())));
    EXPECT_FALSE(type_matches_dummy(default_real(), real_function));
    EXPECT_FALSE(type_matches_dummy(new_routine_type(nullptr, default_integer()), real_function));
    EXPECT_FALSE(type_matches_dummy(array_function, real_function));
    array_function->routine.is_elemental = true;
    EXPECT_TRUE(type_matches_dummy(array_function, real_function));
}

TEST_F(matches, assignment) {
    type *vector = array_of(default_real(), {{1, 3}});
    EXPECT_TRUE(assignment_compatible(default_integer(), default_complex()));
    EXPECT_FALSE(assignment_compatible(default_integer(), default_logical()));
    EXPECT_TRUE(assignment_compatible(logical_type(0), default_logical()));
    EXPECT_TRUE(assignment_compatible(default_character(3), default_character(8)));
    EXPECT_TRUE(assignment_compatible(vector, default_integer()));
    EXPECT_TRUE(assignment_compatible(vector, array_of(default_integer(), {{0, 2}})));
    EXPECT_FALSE(assignment_compatible(vector, array_of(default_integer(), {{1, 4}})));
    EXPECT_FALSE(assignment_compatible(default_real(), vector));
    EXPECT_TRUE(assignment_compatible(default_logical(), error_type()));
    EXPECT_TRUE(assignment_compatible(error_type(), default_logical()));
    EXPECT_FALSE(assignment_compatible(stmt_label_type(), default_integer()));
}

TEST_F(matches, what_a_shape_is_like) {
    type *open = array_of(default_real(), {{1, 3}, {1, 0, bound_assumed}});
    open->array.shape_kind = assumed_size;
    type *constant = array_of(default_real(), {{1, 3}, {0, 4}});
    type *variable = array_of(default_real(), {{1, 0, bound_expression}});
    EXPECT_TRUE(is_assumed_size(open));
    EXPECT_FALSE(is_assumed_size(constant));
    EXPECT_FALSE(is_assumed_size(default_real()));
    EXPECT_TRUE(is_assumed_size(same_shape_as(default_real(), 2, node_of(open))));
    EXPECT_TRUE(is_explicit_constant_shape(constant));
    EXPECT_FALSE(is_explicit_constant_shape(open));
    EXPECT_FALSE(is_explicit_constant_shape(variable));
    EXPECT_TRUE(has_nonconstant_bound(variable));
    EXPECT_FALSE(has_nonconstant_bound(constant));
}

TEST_F(matches, nothing_in_it) {
    type *empty = array_of(default_real(), {{1, 0}});
    type *one = array_of(default_real(), {{1, 1}});
    type *texts = array_of(default_character(0), {{1, 3}});
    for (type *t : {empty, one, texts}) {
        complete_type(t);
    }
    EXPECT_TRUE(is_zero_sized(empty));
    EXPECT_FALSE(is_zero_sized(one));
    EXPECT_TRUE(is_zero_sized(texts));
    EXPECT_TRUE(is_zero_sized(default_character(0)));
    EXPECT_FALSE(is_zero_sized(default_character(1)));
    EXPECT_FALSE(is_zero_sized(default_real()));
}

} // namespace
