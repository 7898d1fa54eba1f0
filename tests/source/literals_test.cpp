// The values of literals as folding gets them, kinds by name, the messages, and literals of extreme length.
#include "source/token_fixture.h"

#include "declarations/scopes.h"
#include "declarations/symbols.h"
#include "il/constants.h"

#include <cmath>
#include <limits>

namespace zf90 {
namespace {

class LiteralsTest : public TokenFixture {
protected:
    // Reads the text's first token, its messages left for messages_of.
    static token_kind first(const std::string &text, std::uint32_t mode = 0) {
        start(text);
        return next_token(mode);
    }

    static double real(const std::string &text) {
        EXPECT_EQ(first(text), tok_real) << text;
        EXPECT_TRUE(has_value(curr_constant)) << text;
        return curr_constant.real;
    }

    static std::string string(const std::string &text) {
        EXPECT_EQ(first(text), tok_character) << text;
        EXPECT_TRUE(has_value(curr_constant)) << text;
        return {reinterpret_cast<const char *>(fold_text(curr_constant)),
                static_cast<std::size_t>(constant_length(curr_constant.type))};
    }

    static symbol *declare(const char *name, symbol_kind kind) {
        name_locator locator{};
        intern_name(name, locator.atom);
        return new_symbol(kind, locator, curr_scope_depth);
    }

    // A named constant of this value in the scope.
    static object *declare_constant(const char *name, type *t, constant *value) {
        object *const o = new_object();
        o->type = t;
        o->is_constant = true;
        o->variant.initializer = value;
        declare(name, sk_variable)->entity = o;
        return o;
    }
};

TEST_F(LiteralsTest, TypesAreTheSharedOnes) {
    first("1");
    EXPECT_EQ(curr_constant.type, default_integer());
    first("1_1");
    EXPECT_EQ(curr_constant.type, integer_type(0));
    first("1.");
    EXPECT_EQ(curr_constant.type, default_real());
    first("1d0");
    EXPECT_EQ(curr_constant.type, double_precision());
    first(".true.");
    EXPECT_EQ(curr_constant.type, default_logical());
    first("z'1'");
    EXPECT_EQ(curr_constant.type, integer_type(integer_kind_count - 1));
    first("'abc'");
    EXPECT_EQ(curr_constant.type, default_character(3));
}

TEST_F(LiteralsTest, ConstantsAreAtTheirToken) {
    first("  12");
    EXPECT_EQ(curr_constant.source_pos, (source_pos{1, 3}));
    EXPECT_EQ(curr_constant.repr_kind, ck_value);
    messages_of([] { first("  12_"); });
    EXPECT_EQ(curr_constant.source_pos, (source_pos{1, 3}));
    EXPECT_EQ(curr_constant.repr_kind, ck_error);
    EXPECT_EQ(curr_constant.type, error_type());
}

TEST_F(LiteralsTest, StoredConstants) {
    first("  258_1");
    const constant *const c = store_fold_value(curr_constant);
    EXPECT_EQ(c->repr_kind, ck_value);
    EXPECT_EQ(c->source_pos, (source_pos{1, 3}));
    EXPECT_EQ(c->value.bytes[0], 2);
    EXPECT_EQ(c->value.bytes[1], 1);
}

TEST_F(LiteralsTest, RealsAreTheNearestDouble) {
    EXPECT_EQ(real("0.1"), 0.1);
    EXPECT_EQ(real("1.e0"), 1.0);
    EXPECT_EQ(real("5e-1"), 0.5);
    EXPECT_EQ(real("123456789.123456789d-3"), 123456.789123456789);
    EXPECT_EQ(real("1.7976931348623157d308"), std::numeric_limits<double>::max());
    EXPECT_EQ(real("4.9406564584124654d-324"), std::numeric_limits<double>::denorm_min());
    EXPECT_EQ(real("1e-400"), 0.0);
    EXPECT_EQ(real("0." + std::string(100, '0') + "1"), 1e-101);
    EXPECT_EQ(real("9007199254740993."), 9007199254740992.0);
    EXPECT_EQ(real("9007199254740993.00000000000000000000000000000000000001"), 9007199254740994.0);
}

TEST_F(LiteralsTest, NegativeReals) {
    first("-0.0", lex_signed);
    EXPECT_TRUE(std::signbit(curr_constant.real));
    first("- .5d0", lex_signed);
    EXPECT_EQ(curr_constant.real, -0.5);
    EXPECT_STREQ(token_text, "-.5D0");
}

TEST_F(LiteralsTest, RealsOfManyDigits) {
    use_fixed_form();
    std::string text = "      X = ." + std::string(60, '0') + "\n";
    for (int i = 1; i < 38; ++i) {
        text += "     1" + std::string(66, '0') + "\n";
    }
    text += "     11E2503\n"; // 60 + 37 * 66 zeros, then the one
    start(text);
    next_token(0);
    next_token(0);
    EXPECT_EQ(next_token(0), tok_real);
    EXPECT_EQ(curr_constant.real, 1.0);
}

TEST_F(LiteralsTest, Strings) {
    EXPECT_EQ(string("'It''s'"), "It's");
    EXPECT_EQ(string("''"), "");
    EXPECT_EQ(string("''''''"), "''");
    EXPECT_EQ(string("1_'x'"), "x");
    const std::string forty(40, 'a');
    EXPECT_EQ(string("'" + forty + "'"), forty);
    EXPECT_EQ(curr_constant.value_bytes, nullptr);
    EXPECT_EQ(string("'" + forty + "b'"), forty + "b");
    EXPECT_NE(curr_constant.value_bytes, nullptr);
}

TEST_F(LiteralsTest, LongStringsStayWhileOthersAreRead) {
    const std::string text(100, 'x');
    start("'" + text + "' 'y'");
    next_token(0);
    const fold_value kept = curr_constant;
    next_token(0);
    EXPECT_EQ(std::string(reinterpret_cast<const char *>(fold_text(kept)), 100), text);
}

TEST_F(LiteralsTest, BytesAboveAsciiInStrings) { EXPECT_EQ(string("'\xff\x80'"), "\xff\x80"); }

TEST_F(LiteralsTest, HollerithHasNoConstant) {
    first("12");
    next_token(0);
    start("3Habc");
    EXPECT_EQ(next_token(0), tok_hollerith);
    EXPECT_STREQ(token_text, "3Habc");
}

TEST_F(LiteralsTest, HollerithEndsAtItsCount) {
    use_fixed_form();
    start("      X = 3HA B C");
    next_token(0);
    next_token(0);
    EXPECT_EQ(next_token(0), tok_hollerith);
    EXPECT_STREQ(token_text, "3HA B");
    EXPECT_EQ(next_token(0), tok_name);
    EXPECT_STREQ(token_text, "C");
}

TEST_F(LiteralsTest, NamedKinds) {
    scopes_init();
    push_scope(sr_global);
    push_scope(sr_unit);
    declare_constant("K1", default_integer(), make_integer_constant(1, default_integer()));
    declare_constant("K2", integer_type(0), make_integer_constant(2, integer_type(0)));
    declare_constant("BAD", default_integer(), make_integer_constant(9, default_integer()));
    declare_constant("NEG", default_integer(), make_integer_constant(-1, default_integer()));
    declare_constant("R", default_real(), make_real_constant(1.0, default_real()));
    declare_constant("OPEN", default_integer(), nullptr);
    declare_constant("VAR", default_integer(), make_integer_constant(1, default_integer()))->is_constant =
        false;
    declare_constant("FAULTY", default_integer(), new_constant());
    declare("U", sk_undetermined);

    first("12_k1");
    EXPECT_EQ(curr_constant.type, integer_type(0));
    first("12_K2");
    EXPECT_EQ(curr_constant.type, integer_type(1));
    first("1.5_k2");
    EXPECT_EQ(curr_constant.type, real_type(1));
    first(".true._k1");
    EXPECT_EQ(curr_constant.type, logical_type(0));
    EXPECT_EQ(string("k1_'abc'"), "abc");

    const auto message_of = [](const char *text) { return messages_of([text] { first(text); }); };
    EXPECT_EQ(message_of("1_neg"), error_text(1, 1, msg_negative_type_kind_parameter_value));
    EXPECT_EQ(message_of("1_bad"), error_text(1, 1, msg_kind_value_does_not_specify_representation_method));
    EXPECT_EQ(message_of("k2_'x'"), error_text(1, 1, msg_kind_value_does_not_specify_representation_method));
    for (const char *const text :
         {"1_r", "1_open", "1_var", "1_faulty", "1_u", "1_nothing", "1.5_r", ".true._r", "r_'x'"}) {
        EXPECT_EQ(message_of(text), error_text(1, 1, msg_kind_name_is_not_constant)) << text;
        EXPECT_FALSE(has_value(curr_constant));
    }
    EXPECT_EQ(messages_of([] { first("1_neg", lex_peek); }), "");
}

TEST_F(LiteralsTest, NamedKindsOfTheHost) {
    scopes_init();
    push_scope(sr_global);
    push_scope(sr_unit);
    declare_constant("K1", default_integer(), make_integer_constant(1, default_integer()));
    declare_constant("K2", default_integer(), make_integer_constant(2, default_integer()));
    push_scope(sr_unit);
    declare_constant("K2", default_integer(), make_integer_constant(1, default_integer()));
    first("12_k1");
    EXPECT_EQ(curr_constant.type, integer_type(0));
    EXPECT_EQ(string("k1_'abc'"), "abc");
    first("12_k2");
    EXPECT_EQ(curr_constant.type, integer_type(0));
    atom *name;
    EXPECT_TRUE(intern_name("K1", name)->flags & sf_referenced);
}

// The value of a named constant is a tree until it is asked for.
TEST_F(LiteralsTest, NamedKindsWithATreeForAValue) {
    scopes_init();
    push_scope(sr_global);
    push_scope(sr_unit);
    constant *const tree = new_constant();
    set_constant_repr(tree, ck_expression);
    tree->value.expr = new_integer_constant_node(1, default_integer());
    declare_constant("K", default_integer(), tree);
    first("12_k");
    EXPECT_EQ(curr_constant.type, integer_type(0));
    EXPECT_EQ(curr_constant.integer, 12);
    first("12_k");
    EXPECT_EQ(curr_constant.type, integer_type(0));
}

TEST_F(LiteralsTest, UnknownKindsMakeNoAtom) {
    messages_of([] { first("12_nosuchkind"); });
    EXPECT_EQ(find_atom("NOSUCHKIND", 10), nullptr);
}

TEST_F(LiteralsTest, NamedKindsWithCase) {
    scopes_init();
    push_scope(sr_global);
    push_scope(sr_unit);
    case_sensitive_names = true;
    declare_constant("kind", default_integer(), make_integer_constant(1, default_integer()));
    first("12_kind");
    EXPECT_EQ(curr_constant.type, integer_type(0));
    EXPECT_EQ(messages_of([] { first("12_KIND"); }), error_text(1, 1, msg_kind_name_is_not_constant));
}

TEST_F(LiteralsTest, MessagesAtTheCharacter) {
    EXPECT_EQ(messages("i = 1_"), error_text(1, 7, msg_invalid_integer_constant));
    EXPECT_EQ(messages("x = 1.e+"), error_text(1, 9, msg_invalid_real_constant));
    EXPECT_EQ(messages("x = 1.5_"), error_text(1, 9, msg_invalid_real_constant));
    EXPECT_EQ(messages("q = .true._"), error_text(1, 12, msg_invalid_logical_constant));
    EXPECT_EQ(messages("x = 0H"), error_text(1, 7, msg_invalid_hollerith_constant));
    EXPECT_EQ(messages("x = 3Hab"), error_text(1, 9, msg_invalid_hollerith_constant));
}

TEST_F(LiteralsTest, MessagesAtTheLiteral) {
    EXPECT_EQ(messages("i = 2147483648"), error_text(1, 5, msg_integer_constant_is_too_large));
    EXPECT_EQ(messages("x = 1.e999"), error_text(1, 5, msg_floating_constant_is_out_of_range));
    EXPECT_EQ(messages("x = 1.d0_2"), error_text(1, 5, msg_exponent_letter_is_not_e_while_type_kind));
    EXPECT_EQ(messages("x = 1._3"), error_text(1, 5, msg_kind_value_does_not_specify_representation_method));
    EXPECT_EQ(messages("x = 1._2147483648"), error_text(1, 5, msg_kind_constant_is_too_large));
    EXPECT_EQ(messages("s = 'abc"), error_text(1, 5, msg_missing_closing_quote));
    EXPECT_EQ(messages("i = z'abc"), error_text(1, 5, msg_missing_closing_quote_on_hex_oct_bin_constant));
    EXPECT_EQ(messages("i = b'2'"), error_text(1, 5, msg_invalid_binary_digit));
    EXPECT_EQ(messages("i = o'8'"), error_text(1, 5, msg_invalid_octal_digit));
    EXPECT_EQ(messages("i = z'g'"), error_text(1, 5, msg_invalid_hexadecimal_digit));
    EXPECT_EQ(messages("i = z''"), error_text(1, 5, msg_hex_oct_bin_constant_has_no_digits));
    EXPECT_EQ(messages("i = z'123456789'"), error_text(1, 5, msg_boz_constant_is_too_large));
    EXPECT_EQ(messages("-1_'x'", {lex_signed}), error_text(1, 1, msg_negative_type_kind_parameter_value));
    EXPECT_EQ(messages("  123456", {lex_label}), error_text(1, 3, msg_label_has_too_many_digits));
    EXPECT_EQ(messages("  000", {lex_label}),
              error_text(1, 3, msg_label_must_have_at_least_one_nonzero_digit));
}

TEST_F(LiteralsTest, NoMessageWhilePeeking) {
    for (const char *const text : {"1_", "1.e+", "1.5_", ".true._", "0H", "3Hab", "2147483648", "1.e999",
                                   "1.d0_2", "1._3", "'abc", "z'abc", "b'2'", "z''", "1_nothing"}) {
        EXPECT_EQ(messages(text, {lex_peek}), "") << text;
    }
    EXPECT_EQ(messages("000 123456", {lex_peek | lex_label}), "");
}

TEST_F(LiteralsTest, LabelsAreNames) {
    EXPECT_EQ(first(" 00120", lex_label), tok_label);
    EXPECT_STREQ(curr_name.atom->spelling, "120");
    EXPECT_EQ(curr_name.position, (source_pos{1, 2}));
    EXPECT_STREQ(token_text, "120");
}

TEST_F(LiteralsTest, EveryFaultLeavesTheErrorConstant) {
    for (const char *const text : {"1_", "1.e+", "1.5_", ".true._", "0H", "3Hab", "2147483648", "1.e999",
                                   "1.d0_2", "1._3", "'abc", "z'abc", "b'2'", "z''", "1_nothing"}) {
        first("1");
        messages_of([text] { EXPECT_NE(first(text), tok_none) << text; });
        EXPECT_FALSE(has_value(curr_constant)) << text;
    }
}

} // namespace
} // namespace zf90
