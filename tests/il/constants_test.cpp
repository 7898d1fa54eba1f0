// Constructors, equality and hash of constants, and the merge: its order is compared with that of plain
// chains.
#include "il/constants.h"

#include "driver/diagnostics.h"
#include "expressions/predicates.h"
#include "il/il_fixture.h"
#include "il/types.h"

#include <chrono>
#include <cstring>
#include <random>
#include <string>
#include <vector>

using namespace zf90;

namespace {

using constants = il_test;

constant *text_constant(const std::string &text) {
    constant *c = new_constant();
    set_constant_repr(c, ck_value);
    c->type = character_type(0, static_cast<std::int32_t>(text.size()));
    c->value.bytes = static_cast<unsigned char *>(il_alloc(static_cast<std::int32_t>(c->type->size)));
    std::memcpy(c->value.bytes, text.data(), text.size());
    return c;
}

constant *complex_constant(double real, double imaginary, std::uint32_t kind) {
    constant *c = new_constant();
    set_constant_repr(c, ck_value);
    c->type = complex_type(kind);
    c->value.bytes = static_cast<unsigned char *>(il_alloc(static_cast<std::int32_t>(c->type->size)));
    real_kinds[kind].write_value(c->value.bytes, real);
    real_kinds[kind].write_value(c->value.bytes + real_kinds[kind].byte_size, imaginary);
    return c;
}

constant *aggregate(type *t, std::initializer_list<constant *> elements) {
    constant *c = new_constant();
    set_constant_repr(c, ck_aggregate);
    c->type = t;
    for (constant *e : elements) {
        append_to_aggregate(c, e);
    }
    return c;
}

constant *integer(std::int32_t value) { return make_integer_constant(value, default_integer()); }

type *vector_of(type *element, std::int32_t extent) {
    type *t = new_array_type(element, 1);
    set_constant_bound(t->array.bound->bounds[0], 1);
    set_constant_bound(t->array.bound->bounds[1], extent);
    complete_type(t);
    return t;
}

// ---- constructors

TEST_F(constants, initialisation) {
    error_pos = {12, 34};
    constant c{};
    c.il_id = 5;
    c.next = &c;
    init_constant(&c, ck_value);
    EXPECT_EQ(c.il_id, 0u);
    EXPECT_EQ(c.next, nullptr);
    EXPECT_EQ(c.source_pos, (source_pos{12, 34}));
    EXPECT_EQ(c.type, unknown_type());
    EXPECT_EQ(c.repr_kind, ck_value);
    EXPECT_EQ(c.value.bytes, nullptr);

    const constant *fresh = new_constant();
    EXPECT_EQ(fresh->repr_kind, ck_error);
    EXPECT_EQ(fresh->type, error_type());
    EXPECT_EQ(fresh->source_pos, (source_pos{12, 34}));
    EXPECT_EQ(null_constant.repr_kind, ck_error);
    EXPECT_EQ(null_constant.type, unknown_type());
    error_pos = {};
}

TEST_F(constants, variants_start_with_their_defaults) {
    constant c{};
    init_constant(&c, ck_expression);
    EXPECT_EQ(c.value.bytes, nullptr);
    EXPECT_EQ(c.value.expr, nullptr);
    c.type = default_real();
    set_constant_repr(&c, ck_aggregate);
    EXPECT_EQ(c.aggregate.first_constant, nullptr);
    EXPECT_EQ(c.aggregate.last_constant, nullptr);
    EXPECT_EQ(c.type, default_real()) << "only the kind and the variant change";
    set_constant_repr(&c, ck_init_position);
    EXPECT_EQ(c.position.offset, 0);
    EXPECT_EQ(c.position.segment_size, 0u);
    set_constant_repr(&c, ck_init_index);
    EXPECT_EQ(c.index.first, 0);
    EXPECT_EQ(c.index.second, 0);
    EXPECT_EQ(c.index.stride, 1);
    set_constant_repr(&c, ck_init_repeat);
    EXPECT_EQ(c.repeat.constant, nullptr);
    EXPECT_EQ(c.repeat.count, 1u);
    EXPECT_EQ(c.repr_kind, ck_init_repeat);
}

TEST_F(constants, numbers_and_logicals) {
    const constant *i = make_integer_constant(70000, integer_type(0));
    EXPECT_EQ(i->repr_kind, ck_value);
    EXPECT_EQ(i->type, integer_type(0));
    EXPECT_EQ(integer_value_of(i), 70000 - 65536);
    EXPECT_EQ(integer_value_of(integer(-2)), -2);
    EXPECT_EQ(integer_value_of(make_logical_constant(1, logical_type(0))), 1);
    EXPECT_EQ(integer_value_of(make_logical_constant(1, logical_type(1))), 1);
    const constant *r = make_real_constant(2.5, default_real());
    EXPECT_EQ(real_kinds[0].read_value(r->value.bytes), 2.5);
    const constant *d = make_real_constant(0.1, double_precision());
    EXPECT_EQ(real_kinds[1].read_value(d->value.bytes), 0.1);
}

TEST_F(constants, nodes) {
    error_pos = {3, 4};
    const expr_node *nodes[] = {new_integer_constant_node(7, default_integer()),
                                new_real_constant_node(7, default_real()),
                                new_logical_constant_node(1, default_logical())};
    for (const expr_node *node : nodes) {
        EXPECT_EQ(node->node_kind, enk_constant);
        EXPECT_TRUE(node->intent_in);
        EXPECT_TRUE(node->allow_reordering);
        EXPECT_EQ(node->source_pos, (source_pos{3, 4}));
        EXPECT_EQ(node->constant->repr_kind, ck_value);
        EXPECT_EQ(node->constant->type, node->type);
        EXPECT_EQ(node->constant->source_pos, (source_pos{3, 4}));
    }
    EXPECT_EQ(nodes[0]->type, default_integer());
    EXPECT_EQ(nodes[1]->type, default_real());
    EXPECT_EQ(nodes[2]->type, default_logical());
    error_pos = {};
}

TEST_F(constants, names) {
    EXPECT_STREQ(constant_kind_name(ck_error), "ck_error");
    EXPECT_STREQ(constant_kind_name(ck_init_repeat), "ck_init_repeat");
    EXPECT_STREQ(constant_kind_name(7), "**BAD CONSTANT REPR KIND**");
}

// ---- equality

TEST_F(constants, values_are_equal_by_type_and_bytes) {
    EXPECT_TRUE(constants_equal(integer(5), integer(5)));
    EXPECT_FALSE(constants_equal(integer(5), integer(6)));
    EXPECT_FALSE(constants_equal(integer(1), make_integer_constant(1, integer_type(0)))) << "size";
    EXPECT_FALSE(constants_equal(integer(1), make_logical_constant(1, default_logical()))) << "type";
    type *other_entry = new_type(tk_integer);
    complete_type(other_entry);
    EXPECT_TRUE(constants_equal(integer(5), make_integer_constant(5, other_entry)));
    EXPECT_FALSE(
        constants_equal(make_real_constant(0.0, default_real()), make_real_constant(-0.0, default_real())));
    EXPECT_TRUE(constants_equal(text_constant("abc"), text_constant("abc")));
    EXPECT_FALSE(constants_equal(text_constant("abc"), text_constant("abcd")));
    EXPECT_TRUE(constants_equal(text_constant(""), text_constant("")));
    EXPECT_FALSE(constants_equal(text_constant(""), text_constant(" "))) << "same size, other length";
    EXPECT_TRUE(constants_equal(complex_constant(1, 2, 0), complex_constant(1, 2, 0)));
    EXPECT_FALSE(constants_equal(complex_constant(1, 2, 0), complex_constant(2, 1, 0)));
}

TEST_F(constants, other_kinds_equal_only_themselves) {
    for (const constant_kind kind :
         {ck_error, ck_expression, ck_init_position, ck_init_index, ck_init_repeat}) {
        constant *a = new_constant();
        constant *b = new_constant();
        set_constant_repr(a, kind);
        set_constant_repr(b, kind);
        EXPECT_TRUE(constants_equal(a, a));
        EXPECT_FALSE(constants_equal(a, b));
        EXPECT_EQ(hash_constant(a), a);
        EXPECT_EQ(hash_constant(b), b);
        EXPECT_EQ(hash_constant(a), a);
    }
    EXPECT_FALSE(constants_equal(new_constant(), integer(0)));
}

TEST_F(constants, aggregates) {
    type *t3 = vector_of(default_integer(), 3);
    type *t3_too = vector_of(default_integer(), 3);
    const auto three = [&](type *t, int a, int b, int c) {
        return aggregate(t, {integer(a), integer(b), integer(c)});
    };
    EXPECT_TRUE(constants_equal(three(t3, 1, 2, 3), three(t3_too, 1, 2, 3)));
    EXPECT_FALSE(constants_equal(three(t3, 1, 2, 3), three(t3, 1, 2, 4)));
    EXPECT_FALSE(constants_equal(three(t3, 1, 2, 3), aggregate(t3, {integer(1), integer(2)})));
    EXPECT_FALSE(constants_equal(aggregate(t3, {}), three(t3, 1, 2, 3)));
    EXPECT_TRUE(constants_equal(aggregate(t3, {}), aggregate(t3, {})));
    EXPECT_FALSE(constants_equal(three(t3, 1, 2, 3), three(vector_of(default_integer(), 4), 1, 2, 3)));
    EXPECT_FALSE(constants_equal(three(t3, 1, 2, 3), three(vector_of(default_real(), 3), 1, 2, 3)));

    // Nested ones, and the parts of a list of initial values.
    EXPECT_TRUE(constants_equal(aggregate(t3, {three(t3, 1, 2, 3), integer(4)}),
                                aggregate(t3, {three(t3, 1, 2, 3), integer(4)})));
    EXPECT_FALSE(constants_equal(aggregate(t3, {three(t3, 1, 2, 3), integer(4)}),
                                 aggregate(t3, {three(t3, 1, 2, 5), integer(4)})));
    constant *repeat = new_constant();
    set_constant_repr(repeat, ck_init_repeat);
    constant *repeat_too = new_constant();
    set_constant_repr(repeat_too, ck_init_repeat);
    constant *with_repeat = aggregate(t3, {repeat});
    EXPECT_FALSE(constants_equal(with_repeat, aggregate(t3, {repeat_too})));
    constant *shared = new_constant();
    *shared = *with_repeat;
    EXPECT_TRUE(constants_equal(with_repeat, shared)) << "the same elements";
    EXPECT_EQ(hash_constant(with_repeat), with_repeat);
    EXPECT_EQ(hash_constant(shared), with_repeat);
}

TEST_F(constants, shared_elements_to_any_depth_are_compared_once) {
    type *t = vector_of(default_integer(), 2);
    const auto tower = [&] {
        constant *c = aggregate(t, {integer(1), integer(2)});
        for (int level = 0; level < 200; ++level) {
            constant *left = new_constant();
            *left = *c;
            constant *right = new_constant();
            *right = *c;
            c = aggregate(t, {left, right});
        }
        return c;
    };
    constant *a = tower();
    constant *b = tower();
    EXPECT_TRUE(constants_equal(a, b));
    EXPECT_EQ(hash_constant(a), a);
    EXPECT_EQ(hash_constant(b), a);
}

TEST_F(constants, deeply_nested_aggregates) {
    type *t = vector_of(default_integer(), 1);
    const auto tower = [&](int innermost) {
        constant *c = integer(innermost);
        for (int level = 0; level < 200000; ++level) {
            c = aggregate(t, {c});
        }
        return c;
    };
    constant *a = tower(1);
    EXPECT_TRUE(constants_equal(a, tower(1)));
    EXPECT_FALSE(constants_equal(a, tower(2)));
    EXPECT_EQ(hash_constant(a), a);
    EXPECT_EQ(hash_constant(tower(1)), a);
}

// ---- hash

TEST_F(constants, buckets) {
    EXPECT_EQ(constant_hash(integer(0)), 0u);
    EXPECT_EQ(constant_hash(integer(292)), 292u);
    EXPECT_EQ(constant_hash(integer(293)), 0u);
    EXPECT_EQ(constant_hash(integer(-1)), 4294967295u % 293);
    EXPECT_EQ(constant_hash(make_integer_constant(-1, integer_type(0))), 4294967295u % 293);
    EXPECT_EQ(constant_hash(make_logical_constant(1, logical_type(0))), 1u);
    EXPECT_EQ(constant_hash(make_real_constant(0, default_real())), 500u % 293);
    EXPECT_EQ(constant_hash(make_real_constant(1.5, default_real())), (500u - 64 + 63) % 293);
    // Bytes count as signed, so the sum may fall below zero.
    constant *low = make_real_constant(0, double_precision());
    std::memset(low->value.bytes, 0x80, 8);
    EXPECT_EQ(constant_hash(low), (500u - 8 * 128) % 293);
    EXPECT_EQ(constant_hash(complex_constant(0, 0, 1)), 700u % 293);
    EXPECT_EQ(constant_hash(text_constant("")), 100u);
    EXPECT_EQ(constant_hash(text_constant("a")), (100u + 1 + 64 * 97 + 97) % 293);
    EXPECT_EQ(constant_hash(text_constant("axb")), (100u + 3 + 64 * 97 + 98) % 293);
    EXPECT_EQ(constant_hash(text_constant("axb")), constant_hash(text_constant("ayb")));
    EXPECT_EQ(constant_hash(text_constant("\xff")), (100u + 1 - 64 - 1) % 293);
    EXPECT_EQ(constant_hash(text_constant("\x80")), (100u + 1 - 64 * 128 - 128) % 293);
    for (const constant_kind kind :
         {ck_error, ck_expression, ck_aggregate, ck_init_position, ck_init_index, ck_init_repeat}) {
        constant *c = new_constant();
        set_constant_repr(c, kind);
        EXPECT_EQ(constant_hash(c), kind + 200u);
    }
    constant *odd = new_constant();
    set_constant_repr(odd, ck_value);
    EXPECT_EQ(constant_hash(odd), 0u) << "a value of any other type";
}

TEST_F(constants, the_table_gives_the_first_of_equals) {
    constant *first = integer(17);
    EXPECT_EQ(hash_constant(first), first);
    EXPECT_EQ(hash_constant(integer(17)), first);
    EXPECT_EQ(hash_constant(first), first);
    constant *other = integer(17 + 293);
    EXPECT_EQ(hash_constant(other), other);
    EXPECT_EQ(hash_constant(text_constant("ab")), hash_constant(text_constant("ab")));
    EXPECT_NE(hash_constant(text_constant("axb")), hash_constant(text_constant("ayb")));
    constants_init();
    constant *again = integer(17);
    EXPECT_EQ(hash_constant(again), again);
}

// ---- merge

// A compilation of some units; the expressions of a unit are the items of one statement.
struct program {
    il_header header{};
    std::vector<scope *> scopes;

    program() {
        header.primary_scope = new_scope();
        header.primary_scope->assoc_block = new_statement(stmk_block);
    }
    void add_unit() {
        object *o = new_object();
        o->storage_class = sc_external;
        o->type = new_routine_type(o, void_type());
        o->variant.assoc_scope = new_scope();
        o->variant.assoc_scope->assoc_routine = o;
        o->variant.assoc_scope->assoc_block = new_statement(stmk_expr);
        object **link = &header.primary_scope->objects;
        while (*link) {
            link = &(*link)->next;
        }
        *link = o;
        scopes.push_back(o->variant.assoc_scope);
        last = &scopes.back()->assoc_block->expr;
    }
    expr_node *use(constant *c) {
        expr_node *node = new_expr_node(enk_constant);
        node->type = c->type;
        node->constant = c;
        *last = node;
        last = &node->next;
        return node;
    }
    void merge() { merge_constants(&header); }
    std::vector<constant *> merged() const { return list(header.primary_scope); }
    static std::vector<constant *> list(const scope *s) {
        std::vector<constant *> result;
        for (constant *c = s->constants; c; c = c->next) {
            result.push_back(c);
        }
        return result;
    }

    expr_node **last = nullptr;
};

std::vector<std::int32_t> integers(const std::vector<constant *> &list) {
    std::vector<std::int32_t> values;
    for (const constant *c : list) {
        values.push_back(integer_value_of(c));
    }
    return values;
}

TEST_F(constants, merging_orders_by_bucket_and_last_use) {
    program p;
    p.add_unit();
    for (const int value : {1, 294, 293, 587, 292, 294}) {
        p.use(integer(value));
    }
    p.header.primary_scope->constants = integer(99); // forgotten by the merge
    p.merge();
    EXPECT_EQ(integers(p.merged()), (std::vector<std::int32_t>{292, 1, 587, 294, 293}));
}

TEST_F(constants, merging_makes_equal_constants_one) {
    program p;
    p.add_unit();
    expr_node *a = p.use(integer(7));
    expr_node *b = p.use(integer(7));
    expr_node *l = p.use(make_logical_constant(7, default_logical()));
    p.add_unit();
    expr_node *c = p.use(integer(7));
    p.merge();
    EXPECT_EQ(a->constant, b->constant);
    EXPECT_EQ(a->constant, c->constant);
    EXPECT_NE(a->constant, l->constant);
    EXPECT_EQ(p.merged(), (std::vector<constant *>{l->constant, a->constant}));
    // The table is empty again.
    constant *fresh = integer(7);
    EXPECT_EQ(hash_constant(fresh), fresh);
}

TEST_F(constants, merging_leaves_constants_that_no_node_holds) {
    program p;
    p.add_unit();
    expr_node *node = p.use(integer(7));
    object *named = new_object();
    named->storage_class = sc_local;
    named->is_constant = true;
    named->type = default_integer();
    named->variant.initializer = integer(7);
    p.scopes[0]->objects = named;
    constant *initializer = named->variant.initializer;
    p.merge();
    EXPECT_EQ(named->variant.initializer, initializer);
    EXPECT_NE(node->constant, initializer);
    EXPECT_EQ(p.merged(), (std::vector<constant *>{node->constant}));
}

TEST_F(constants, merging_aggregates_and_expressions) {
    program p;
    p.add_unit();
    type *t = vector_of(default_integer(), 2);
    expr_node *a = p.use(aggregate(t, {integer(1), integer(2)}));
    expr_node *b = p.use(aggregate(vector_of(default_integer(), 2), {integer(1), integer(2)}));
    constant *expressions[2];
    for (constant *&c : expressions) {
        c = new_constant();
        set_constant_repr(c, ck_expression);
        c->type = default_integer();
        c->value.bytes = static_cast<unsigned char *>(il_alloc(4));
        p.use(c);
    }
    p.merge();
    EXPECT_EQ(a->constant, b->constant);
    EXPECT_EQ(p.merged(), (std::vector<constant *>{a->constant, expressions[0], expressions[1]}));
    EXPECT_EQ(integers({a->constant->aggregate.first_constant, a->constant->aggregate.last_constant}),
              (std::vector<std::int32_t>{1, 2}))
        << "elements stay on their list";
}

TEST_F(constants, derived_type_constants_stay_with_their_scope) {
    type *t = new_type(tk_derived_type);
    t->derived.is_seq = true;
    t->size = 4;
    type *array = vector_of(t, 1);
    program p;
    std::vector<expr_node *> nodes;
    const auto structure = [&](int value) { return aggregate(t, {integer(value)}); };
    for (int unit = 0; unit < 2; ++unit) {
        p.add_unit();
        for (const int value : {3, 1, 3, 2, 1}) {
            nodes.push_back(p.use(structure(value)));
        }
        nodes.push_back(p.use(aggregate(array, {structure(3)})));
        p.use(integer(1));
    }
    constant *present = structure(2);
    p.scopes[1]->constants = present;
    nodes[11]->constant->next = present; // forgotten when it goes on the list
    p.merge();
    using list = std::vector<constant *>;
    EXPECT_EQ(program::list(p.scopes[0]),
              (list{nodes[0]->constant, nodes[1]->constant, nodes[3]->constant, nodes[5]->constant}));
    EXPECT_EQ(nodes[2]->constant, nodes[0]->constant);
    EXPECT_EQ(nodes[4]->constant, nodes[1]->constant);
    EXPECT_EQ(program::list(p.scopes[1]),
              (list{present, nodes[6]->constant, nodes[7]->constant, nodes[11]->constant}));
    EXPECT_EQ(nodes[9]->constant, present);
    EXPECT_NE(nodes[0]->constant, nodes[6]->constant) << "not across scopes";
    EXPECT_EQ(p.merged().size(), 1u);
}

unsigned visited_atoms;

TEST_F(constants, a_walk_after_the_merge_meets_everything) {
    program p;
    p.add_unit();
    expr_node *node = p.use(integer(7));
    atom *name = il_new<atom>();
    name->spelling = "N";
    node->keyword = name;
    p.merge();
    visited_atoms = 0;
    const auto count = [](il_entry *, entry_kind kind, std::uint32_t) { visited_atoms += kind == kind_atom; };
    walk_il(&p.header, kind_il_header, 0, nullptr, count, nullptr, count);
    EXPECT_EQ(visited_atoms, 2u);
}

// The order as plain chains give it: search a bucket from its head, move what is found to the head.
struct plain_chains {
    std::vector<std::vector<constant *>> buckets{constant_bucket_count};

    void use(constant *c) {
        std::vector<constant *> &chain = buckets[constant_hash(c)];
        for (std::size_t i = 0; i < chain.size(); ++i) {
            if (constants_equal(chain[i], c)) {
                c = chain[i];
                chain.erase(chain.begin() + static_cast<std::ptrdiff_t>(i));
                break;
            }
        }
        chain.insert(chain.begin(), c);
    }
    std::vector<constant *> merged() const {
        std::vector<constant *> list;
        for (const auto &chain : buckets) {
            for (constant *c : chain) {
                list.insert(list.begin(), c);
            }
        }
        return list;
    }
};

TEST_F(constants, the_order_is_that_of_plain_chains) {
    std::mt19937 random(7);
    const auto below = [&](unsigned n) { return static_cast<std::int32_t>(random() % n); };
    type *pair = vector_of(default_integer(), 2);
    program p;
    plain_chains plain;
    for (int unit = 0; unit < 5; ++unit) {
        p.add_unit();
        for (int i = 0; i < 1500; ++i) {
            constant *c = nullptr;
            switch (below(7)) {
            case 0:
            case 1: c = integer(below(3000)); break;
            case 2: c = make_integer_constant(below(600), integer_type(0)); break;
            case 3: c = make_real_constant(below(1000) / 8.0, real_type(random() % 2)); break;
            case 4:
                c = text_constant(std::string(static_cast<std::size_t>(below(4)), 'a') +
                                  char('a' + below(3)));
                break;
            case 5: c = complex_constant(below(5), below(5), 0); break;
            case 6: c = aggregate(pair, {integer(below(4)), integer(below(4))}); break;
            }
            plain.use(c);
            p.use(c);
        }
    }
    p.merge();
    EXPECT_EQ(p.merged(), plain.merged());
}

TEST_F(constants, merging_is_linear_in_the_number_of_types) {
    // The same value of a hundred thousand types, half of them with differently named components.
    program p;
    p.add_unit();
    const unsigned types = 100000;
    for (unsigned i = 0; i < types; ++i) {
        type *t = new_type(tk_derived_type);
        t->size = 4;
        atom *name = il_new<atom>();
        if (i % 2 == 0) {
            t->source_corresp.name = name;
        } else {
            t->derived.is_seq = true;
            t->derived.first_field = new_object();
            t->derived.first_field->source_corresp.name = name;
            t->derived.first_field->type = default_integer();
        }
        p.use(aggregate(t, {integer(1)}));
    }
    const auto begin = std::chrono::steady_clock::now();
    p.merge();
    const std::chrono::duration<double> time = std::chrono::steady_clock::now() - begin;
    EXPECT_EQ(program::list(p.scopes[0]).size(), types);
    EXPECT_LT(time.count(), 10);
}

TEST_F(constants, merging_is_linear) {
    // Hundreds of thousands of constants, all in one bucket, and as many structures in one scope: minutes, if
    // each was searched for along a chain.
    type *t = new_type(tk_derived_type);
    t->size = 4;
    program p;
    p.add_unit();
    for (int i = 0; i < 200000; ++i) {
        p.use(integer(i * 293));
        p.use(aggregate(t, {integer(i)}));
    }
    const auto begin = std::chrono::steady_clock::now();
    p.merge();
    const std::chrono::duration<double> time = std::chrono::steady_clock::now() - begin;
    EXPECT_EQ(p.merged().size(), 200000u);
    EXPECT_EQ(program::list(p.scopes[0]).size(), 200000u);
    EXPECT_LT(time.count(), 10);
}

} // namespace
