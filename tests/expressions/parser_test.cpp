// Trees of expressions, and what the parser says of those that are none.
#include "expressions/parser.h"

#include "declarations/scopes.h"
#include "declarations/symbols.h"
#include "expression_tree.h"
#include "source/token_helpers.h"
#include "statements/constructs.h"
#include "support/front_end.h"

#include <algorithm>
#include <array>
#include <vector>

namespace zf90 {
namespace {

class ParserTest : public FrontEndTest {
protected:
    void SetUp() override { start_unit(false); }

    void start_unit(bool fixed_form) {
        restart_front_end(fixed_form);
        if (curr_scope_depth < 0) {
            il_root.primary_scope = push_scope(sr_global);
        }
        set_standard_implicit_types(scope_stack[0]);
        push_scope(sr_unit);
        begin_construct_state();
        stop_set.fill(0);
    }

    // Makes the text the current statement, and its first token the current one.
    void start(const std::string &text, std::uint32_t mode = lex_signed) {
        scratch_directory::write("t.f90", (fixed_form_input ? "      " : "") + text + "\n");
        il_root.primary_source_file = nullptr;
        lexer_init();
        open_source_file("t.f90", include_search_list);
        ASSERT_TRUE(next_statement());
        next_token(mode);
    }

    // The tree, with the token that ends it unless that is the end of the statement. No message may come.
    std::string tree(const std::string &text) {
        std::string result;
        EXPECT_EQ(messages(text, &result), "") << text;
        return result;
    }

    // The messages about an expression: position and text of each, a line each.
    std::string messages(const std::string &text, std::string *printed = nullptr) {
        expr_node *node = nullptr;
        bool good = false;
        const std::string result = messages_of([&] {
            start(text);
            good = parse_expression(node);
        });
        EXPECT_EQ(good, node->node_kind != enk_error);
        EXPECT_TRUE(std::all_of(stop_set.begin(), stop_set.end(), [](int n) { return n == 0; })) << text;
        EXPECT_EQ(implied_do_depth, -1) << text;
        if (printed) {
            *printed = expression_tree::text(node) + rest();
        }
        return bare(result);
    }

    // The expression is in error, or an operand of it is, and these are the messages.
    void expect_error(const std::string &text, const std::string &expected, const std::string &printed = "") {
        std::string result;
        EXPECT_EQ(messages(text, &result), expected) << text;
        if (!printed.empty()) {
            EXPECT_EQ(result, printed) << text;
        }
    }

    static std::string rest() {
        return curr_token == tok_eos ? "" : std::string(" | ") + token_name(curr_token);
    }

    // "COLUMN: TEXT" for each message, separated by "; ".
    static std::string bare(const std::string &lines) {
        std::string result;
        for (std::size_t at = 0; at < lines.size(); at = lines.find('\n', at) + 1) {
            const std::string line = lines.substr(at, lines.find('\n', at) - at);
            const std::size_t colon = line.find(':');
            const std::size_t text = line.find_first_not_of(' ', line.find(':', colon + 1) + 1);
            result += (result.empty() ? "" : "; ") + std::to_string(std::stoi(line.substr(colon + 1))) +
                      ": " + line.substr(text);
        }
        return result;
    }

    static name_locator name(const char *spelling) {
        name_locator result{};
        intern_name(spelling, result.atom);
        return result;
    }

    static symbol *variable(const char *spelling, type *t) {
        symbol *s = new_symbol(sk_variable, name(spelling), curr_scope_depth);
        object *o = new_object();
        o->type = t;
        o->source_corresp.name = s->name;
        s->entity = o;
        s->flags |= sf_typed;
        return s;
    }

    static void define_operator(const char *spelling) {
        new_symbol(sk_interface, name(spelling), curr_scope_depth)->entity = new_interface();
    }

    struct field {
        const char *name;
        struct type *type;
    };

    static type *derived(const char *spelling, const std::vector<field> &fields) {
        type *t = new_type(tk_derived_type);
        new_symbol(sk_derived_type, name(spelling), curr_scope_depth)->entity = t;
        object **link = &t->derived.first_field;
        for (const field &f : fields) {
            object *o = new_object();
            o->source_corresp.name = name(f.name).atom;
            o->type = f.type;
            *link = o;
            link = &o->next;
        }
        return t;
    }
};

// ---- operators

struct spelled_operator {
    const char *spelling;
    const char *sign; // as it prints
    int level;
};

constexpr spelled_operator binary_operators[] = {
    {"**", "**", 11},      {"*", "*", 10},          {"/", "/", 10},          {"+", "+", 9},
    {"-", "-", 9},         {"//", "//", 8},         {"<", "<", 7},           {".lt.", "<", 7},
    {"<=", "<=", 7},       {".LE.", "<=", 7},       {"==", "==", 7},         {".eq.", "==", 7},
    {"/=", "/=", 7},       {".ne.", "/=", 7},       {">", ">", 7},           {".gt.", ">", 7},
    {">=", ">=", 7},       {".ge.", ">=", 7},       {".and.", ".AND.", 5},   {".or.", ".OR.", 4},
    {".eqv.", ".EQV.", 3}, {".neqv.", ".NEQV.", 3}, {".mine.", ".MINE.", 2},
};

struct prefix_operator {
    const char *spelling;
    const char *sign;
    int level;
};

constexpr prefix_operator prefix_operators[] = {
    {"+", "+", 9}, {"-", "-", 9}, {".not.", ".NOT.", 6}, {".mine.", ".MINE.", 12}};

std::string quoted(int column, error_code code) { return std::to_string(column) + ": " + message_text(code); }

} // namespace

TEST_F(ParserTest, EveryPairOfBinaryOperators) {
    define_operator(".MINE.");
    for (const auto &first : binary_operators) {
        for (const auto &second : binary_operators) {
            const std::string text = std::string("a ") + first.spelling + " b " + second.spelling + " c";
            const std::string one = first.sign;
            const std::string two = second.sign;
            const bool to_the_right = second.level > first.level || (second.level == 11 && first.level == 11);
            EXPECT_EQ(tree(text), to_the_right ? "(A " + one + " (B " + two + " C))"
                                               : "((A " + one + " B) " + two + " C)")
                << text;
        }
    }
}

TEST_F(ParserTest, EveryPrefixOperatorAheadOfEveryBinaryOne) {
    define_operator(".MINE.");
    for (const auto &prefix : prefix_operators) {
        for (const auto &binary : binary_operators) {
            const std::string text = std::string(prefix.spelling) + " a " + binary.spelling + " b";
            const std::string one = prefix.sign;
            const std::string two = binary.sign;
            EXPECT_EQ(tree(text), binary.level > prefix.level ? "(" + one + " (A " + two + " B))"
                                                              : "((" + one + " A) " + two + " B)")
                << text;
        }
    }
}

TEST_F(ParserTest, EveryPrefixOperatorBehindEveryBinaryOne) {
    define_operator(".MINE.");
    for (const auto &binary : binary_operators) {
        for (const auto &prefix : prefix_operators) {
            const std::string text = std::string("a ") + binary.spelling + " " + prefix.spelling + " b";
            std::string printed;
            const std::string expected =
                binary.level >= prefix.level
                    ? quoted(static_cast<int>(std::string(binary.spelling).size()) + 4,
                             msg_invalid_consecutive_operators)
                    : "";
            EXPECT_EQ(messages(text, &printed), expected) << text;
            EXPECT_EQ(printed, std::string("(A ") + binary.sign + " (" + prefix.sign + " B))") << text;
        }
    }
}

TEST_F(ParserTest, EveryPairOfPrefixOperators) {
    define_operator(".MINE.");
    for (const auto &first : prefix_operators) {
        for (const auto &second : prefix_operators) {
            const std::string text = std::string(first.spelling) + " " + second.spelling + " a";
            std::string printed;
            const std::string expected =
                first.level >= second.level ? quoted(static_cast<int>(std::string(first.spelling).size()) + 2,
                                                     msg_invalid_consecutive_operators)
                                            : "";
            EXPECT_EQ(messages(text, &printed), expected) << text;
            EXPECT_EQ(printed, std::string("(") + first.sign + " (" + second.sign + " A))") << text;
        }
    }
}

TEST_F(ParserTest, OperandOfASignEndsWhereItMust) {
    EXPECT_EQ(tree("-a*b+c"), "((- (A * B)) + C)");
    EXPECT_EQ(tree("-a**b**c"), "(- (A ** (B ** C)))");
    expect_error("a**-b**c*d", quoted(4, msg_invalid_consecutive_operators), "(A ** (- ((B ** C) * D)))");
    EXPECT_EQ(tree("a == -b + c"), "(A == ((- B) + C))");
    EXPECT_EQ(tree(".not. a == b .and. c"), "((.NOT. (A == B)) .AND. C)");
    EXPECT_EQ(tree("a .and. .not. b .or. c"), "((A .AND. (.NOT. B)) .OR. C)");
}

TEST_F(ParserTest, UnknownOperators) {
    expect_error("a .foo. b", quoted(3, msg_operator_unknown), "error");
    expect_error(".foo. b", quoted(1, msg_operator_unknown), "error");
    expect_error("a .foo. b .baz. c",
                 quoted(3, msg_operator_unknown) + "; " + quoted(11, msg_operator_unknown), "error");
    expect_error("a * (b .foo. c)", quoted(8, msg_operator_unknown), "(A * {error})");
}

TEST_F(ParserTest, OperandsOfOperatorsAreOnlyRead) {
    start("a + f(b)");
    expr_node *node = nullptr;
    parse_expression(node);
    EXPECT_TRUE(node->operands->intent_in);
    EXPECT_FALSE(node->operands->next->intent_in);
    EXPECT_FALSE(node->intent_in);
    EXPECT_EQ(node->type, unknown_type());
}

// ---- literals

TEST_F(ParserTest, Literals) {
    EXPECT_EQ(tree("12"), "12");
    EXPECT_EQ(tree("12_1"), "12_0");
    EXPECT_EQ(tree("1.5"), "1.5_0");
    EXPECT_EQ(tree("1.5d0"), "1.5_1");
    EXPECT_EQ(tree(".true."), ".TRUE.");
    EXPECT_EQ(tree("'it''s'"), "'it's'");
    EXPECT_EQ(tree("'abc'(2:3)"), "'abc' substring(2:3)");
    EXPECT_EQ(tree("'abc'(:)//'d'(1:)"), "('abc' substring(:) // 'd' substring(1:))");
}

TEST_F(ParserTest, LiteralInErrorIsReportedOnce) {
    expect_error("99999999999 + 1", quoted(1, msg_integer_constant_is_too_large), "(bad + 1)");
    expect_error("-99999999999**2", quoted(1, msg_integer_constant_is_too_large), "(bad ** 2)");
}

TEST_F(ParserTest, SignOfALiteral) {
    EXPECT_EQ(tree("-5"), "-5");
    EXPECT_EQ(tree("- 5 + 1"), "(-5 + 1)");
    EXPECT_EQ(tree("-5*a"), "(-5 * A)");
    EXPECT_EQ(tree("-2147483648"), "-2147483648");
    EXPECT_EQ(tree("(-2147483648)"), "{-2147483648}");
    EXPECT_EQ(tree("-2**2"), "(- (2 ** 2))");
    EXPECT_EQ(tree("- 2.5 ** 2 * 3"), "(- ((2.5_0 ** 2) * 3))");
    EXPECT_EQ(tree("(-2)**2"), "({-2} ** 2)");
    EXPECT_EQ(tree("f(-2**2, -3)"), "F((- (2 ** 2)), -3)");
    EXPECT_EQ(tree("a - 5"), "(A - 5)");
    EXPECT_EQ(tree("a-5**2"), "(A - (5 ** 2))");
    expect_error("-2147483648**2", quoted(2, msg_integer_constant_is_too_large), "(- (bad ** 2))");
}

TEST_F(ParserTest, BozConstants) {
    expect_error("b'101'", quoted(1, msg_boz_constant_not_in_data_statement), "error");
    expect_error("1 + z'ff'", quoted(5, msg_boz_constant_not_in_data_statement), "(1 + error)");
    expect_error("f(o'17', a)", quoted(3, msg_boz_constant_not_in_data_statement), "F(error, A)");
}

TEST_F(ParserTest, ComplexConstants) {
    EXPECT_EQ(tree("(1,2)"), "<1, 2>_0");
    EXPECT_EQ(tree("(1.0d0,2)"), "<1, 2>_1");
    EXPECT_EQ(tree("(1,2.5)"), "<1, 2.5>_0");
    EXPECT_EQ(tree("(1.5,2.5d0)"), "<1.5, 2.5>_1");
    EXPECT_EQ(tree("(-1.5,+2)"), "<-1.5, 2>_0");
    EXPECT_EQ(tree("(- 1, - 2)"), "<-1, -2>_0");
    EXPECT_EQ(tree("(1,2)*(3,4)"), "(<1, 2>_0 * <3, 4>_0)");
    EXPECT_EQ(tree("((1,2))"), "{<1, 2>_0}");
    EXPECT_EQ(tree("f((1,2),3)"), "F(<1, 2>_0, 3)");
    EXPECT_EQ(tree("(f(1,2))"), "{F(1, 2)}");
}

TEST_F(ParserTest, ComplexConstantsInError) {
    const error_code part = msg_expected_integer_or_real_constant;
    expect_error("(x,1)", quoted(2, part), "error");
    expect_error("(1.0,y)", quoted(6, part), "error");
    expect_error("(1.0,-y)+2", quoted(7, part), "(error + 2)");
    expect_error("(1.0,- -1)", quoted(8, part), "error");
    expect_error("(1.0 2.0,3.0)", quoted(6, msg_expected_comma), "<1, 3>_0");
    expect_error("(f(a,b),c)", quoted(2, part), "error"); // once for both
    expect_error("(1,2,3)", quoted(5, msg_expected_rparen), "error");
    expect_error("(1,2", quoted(5, msg_expected_rparen), "error");
    expect_error("(99999999999,1)", quoted(2, msg_integer_constant_is_too_large), "error");
}

// ---- parentheses

TEST_F(ParserTest, ParenthesesLeaveNoNode) {
    EXPECT_EQ(tree("(a)"), "{A}");
    EXPECT_EQ(tree("((a))"), "{A}");
    EXPECT_EQ(tree("(a+b)*c"), "({(A + B)} * C)");
    EXPECT_EQ(tree("a-(b-c)"), "(A - {(B - C)})");
    EXPECT_EQ(tree("-(-a)"), "(- {(- A)})");
    EXPECT_EQ(tree("a*(-b)"), "(A * {(- B)})");
}

TEST_F(ParserTest, ParenthesesInError) {
    const error_code missing = msg_expected_rparen;
    expect_error("(a+b", quoted(5, missing), "{error}");
    expect_error("a*(b-(c+d)", quoted(11, missing), "error");
    expect_error("(a b)", quoted(4, missing), "{error}");
    expect_error("((a) b)+c", quoted(6, missing), "({error} + C)");
    expect_error("((a+b", quoted(6, missing), "{error}");
    expect_error("f((a b)", quoted(6, missing) + "; " + quoted(8, missing), "error");
    expect_error("(/ (a b /)", quoted(7, missing), "error");
    expect_error("()", quoted(2, msg_expected_expression), "{error}");
    expect_error("(a+)*b", quoted(4, msg_expected_expression), "({(A + error)} * B)");
}

TEST_F(ParserTest, ExpressionMissing) {
    const error_code missing = msg_expected_expression;
    expect_error("a+", quoted(3, missing), "(A + error)");
    expect_error("a*/b", quoted(3, missing), "(A * error)");
    expect_error("f(a,)", quoted(5, missing), "F(A, error)");
    expect_error("f(,a)", quoted(3, missing), "F(error, A)");
    expect_error("a.and.", quoted(7, missing), "(A .AND. error)");
    expect_error("=", quoted(1, missing), "error");
    expect_error("3habc", quoted(1, missing), "error");
    expect_error("a + ?", quoted(5, msg_unrecognized_token), "(A + error)");
}

TEST_F(ParserTest, ExpressionEndsAtWhatDoesNotBelongToIt) {
    EXPECT_EQ(tree("a b"), "A | name");
    EXPECT_EQ(tree("a .not. b"), "A | not");
    EXPECT_EQ(tree("a = b"), "A | assign");
    EXPECT_EQ(tree("a, b"), "A | comma");
    EXPECT_EQ(tree("f(a)(b:c) d"), "F(A) substring(B:C) | name");
    EXPECT_EQ(tree("'abc'%x"), "'abc' | percent");
}

// ---- lists

TEST_F(ParserTest, Lists) {
    EXPECT_EQ(tree("f()"), "F()");
    EXPECT_EQ(tree("f(a)"), "F(A)");
    EXPECT_EQ(tree("f(a, g(b+1), (c))"), "F(A, G((B + 1)), {C})");
    EXPECT_EQ(tree("f(k=1)"), "F(K=1)");
    EXPECT_EQ(tree("f(a, k=b+1, l = -1)"), "F(A, K=(B + 1), L=-1)");
    EXPECT_EQ(tree("f(a == b)"), "F((A == B))");
    EXPECT_EQ(tree("f((/1, 2/))"), "F((/1, 2/))");
}

TEST_F(ParserTest, SectionsInLists) {
    EXPECT_EQ(tree("a(1:2,3)"), "A[1:2, 3]");
    EXPECT_EQ(tree("a(:)"), "A[:]");
    EXPECT_EQ(tree("a(:,:)"), "A[:, :]");
    EXPECT_EQ(tree("a(::2)"), "A[::2]");
    EXPECT_EQ(tree("a(: :2)"), "A[::2]");
    EXPECT_EQ(tree("a(1::2)"), "A[1::2]");
    EXPECT_EQ(tree("a(1:)"), "A[1:]");
    EXPECT_EQ(tree("a(:2)"), "A[:2]");
    EXPECT_EQ(tree("a(1:2:3, -1: :-1)"), "A[1:2:3, -1::-1]");
    EXPECT_EQ(tree("a(b(1:2))"), "A(B[1:2])");
    EXPECT_EQ(tree("a(i)(j:k)"), "A(I) substring(J:K)");
    EXPECT_EQ(tree("c(1:2)(3:)"), "C[1:2] substring(3:)");
}

TEST_F(ParserTest, NamesWithListsWithoutTripletsAreCalled) {
    tree("f(a(1:2))");
    EXPECT_TRUE(name("F").atom->first_symbol->flags & sf_called);
    EXPECT_FALSE(name("A").atom->first_symbol->flags & sf_called);
}

TEST_F(ParserTest, LabelsInLists) {
    EXPECT_EQ(tree("f(*10)"), "F(*10)");
    EXPECT_EQ(tree("f(a, * 20 , *30)"), "F(A, *20, *30)");
    EXPECT_EQ(tree("f(*10, k=2)"), "F(*10, K=2)");
    start("f(*10)");
    expr_node *node = nullptr;
    parse_expression(node);
    EXPECT_EQ(node->operands->type, stmt_label_type());
    EXPECT_EQ(node->operands->source_pos.column, 3);
    expect_error("f(*x)", quoted(4, msg_expected_label), "F(error)");
    expect_error("f(1,*)", quoted(6, msg_expected_label), "F(1, error)");
}

TEST_F(ParserTest, KeywordsAreNotOmittedBehindOne) {
    const error_code omitted = msg_keyword_must_not_be_omitted_from_actual_argument;
    expect_error("f(x=1,2)", quoted(7, omitted), "error");
    expect_error("f(x=1,2,3)", quoted(7, omitted), "error");
    expect_error("f(k=2,*10)", quoted(7, omitted), "error");
    expect_error("f(1,n=2,3,4)+1", quoted(9, omitted), "(error + 1)");
    expect_error("f(k=1:2)", quoted(6, msg_expected_rparen), "error");
    expect_error("f(k=1,:)", quoted(7, msg_expected_expression), "F(K=1, error)");
    expect_error("f(k=1,)", quoted(7, msg_expected_expression), "F(K=1, error)");
}

TEST_F(ParserTest, ListsInError) {
    const error_code missing = msg_expected_rparen;
    expect_error("f(a,b", quoted(6, missing), "error");
    expect_error("f(a b)+c", quoted(5, missing), "(error + C)");
    expect_error("f(g(a b, c), d)", quoted(7, missing), "F(error, D)");
    expect_error("f(", quoted(3, missing), "error");
    expect_error("f(a,", quoted(5, msg_expected_expression), "error");
    expect_error("f(a(1:", quoted(7, msg_expected_expression), "error");
    expect_error("f(a, g(b,), c d)", quoted(10, msg_expected_expression) + "; " + quoted(15, missing),
                 "error");
    expect_error("f((/1 2, 3/), x)", quoted(7, msg_expected_array_close), "F(error, X)");
}

TEST_F(ParserTest, StatementsReadTheListOfACall) {
    const auto call = [&](const std::string &text) {
        start(text);
        symbol *s = lookup_reference();
        next_token(0);
        std::string result;
        const std::string messages = bare(messages_of([&] {
            result = expression_tree::text(parse_actual_list(s, {1, 1}));
        }));
        return result + rest() + messages;
    };
    EXPECT_EQ(call("s(a, *10)"), "S(A, *10)");
    EXPECT_EQ(call("s() + 1"), "S() | plus");
    EXPECT_EQ(call("s(a)(1:2)"), "S(A) | lparen");
    EXPECT_EQ(call("s a"), "error" + quoted(3, msg_expected_lparen));
    EXPECT_EQ(call("s(a"), "error" + quoted(4, msg_expected_rparen));
    EXPECT_FALSE(name("S").atom->first_symbol->flags & sf_called);
}

TEST_F(ParserTest, ItemsWithSpecifiers) {
    const auto item = [&](const std::string &text, std::uint32_t mode) {
        start(text, mode);
        expr_node *node = nullptr;
        parse_actual_item(node);
        return expression_tree::text(node) + rest();
    };
    EXPECT_EQ(item("unit=5)", lex_specifier), "spec33=5 | rparen");
    EXPECT_EQ(item("kind=-1", lex_specifier), "spec35=-1");
    EXPECT_EQ(item("len=n", lex_specifier), "spec36=N");
    EXPECT_EQ(item("stat=n", lex_specifier), "spec37=N");
    EXPECT_EQ(item("access='x'", lex_specifier), "spec0='x'");
    EXPECT_EQ(item("status='x'", lex_specifier), "spec31='x'");
    EXPECT_EQ(item("iolength=x", lex_specifier), "spec14=X");
    EXPECT_EQ(item("x=1", lex_keyword_arg), "X=1");
    EXPECT_EQ(item("x", lex_keyword_arg), "X");
}

// ---- components

TEST_F(ParserTest, Components) {
    type *inner = derived("INNER", {{"X", new_array_type(default_real(), 1)},
                                    {"TAG", default_character(4)},
                                    {"TAGS", new_array_type(default_character(4), 2)}});
    type *outer =
        derived("OUTER", {{"CORE", inner}, {"ARR", new_array_type(inner, 1)}, {"N", default_integer()}});
    variable("O", outer);
    variable("OO", new_array_type(outer, 1));
    EXPECT_EQ(tree("o%n"), "O%N");
    EXPECT_EQ(tree("o % core % x"), "O%CORE%X");
    EXPECT_EQ(tree("o%core%x(2)"), "O%CORE%X elements(2)");
    EXPECT_EQ(tree("o%arr(1)%x(1:3)"), "O%ARR elements(1)%X elements(1:3)");
    EXPECT_EQ(tree("oo(i)%arr(2)%x(i)"), "OO(I)%ARR elements(2)%X elements(I)");
    EXPECT_EQ(tree("oo%n"), "OO%N");
    EXPECT_EQ(tree("oo(1:2)%n"), "OO[1:2]%N");
    EXPECT_EQ(tree("o%core%tag"), "O%CORE%TAG");
    EXPECT_EQ(tree("o%core%tag(2:3)"), "O%CORE%TAG substring(2:3)");
    EXPECT_EQ(tree("o%core%tags(1,:)(2:)"), "O%CORE%TAGS elements(1, :) substring(2:)");
    EXPECT_EQ(tree("o%core%tags(::2,1::2)"), "O%CORE%TAGS elements(::2, 1::2)");
    EXPECT_EQ(tree("oo(2)%core%tag(:)//o%n"), "(OO(2)%CORE%TAG substring(:) // O%N)");
    start("o%core%x(2)");
    expr_node *node = nullptr;
    parse_expression(node);
    EXPECT_EQ(node->array_expr->type, inner->derived.first_field->type);
    EXPECT_EQ(node->array_expr->base_expr->type, inner);
    EXPECT_EQ(node->source_pos.column, 1);
    EXPECT_EQ(node->array_expr->source_pos.column, 1);
}

TEST_F(ParserTest, ComponentsInError) {
    type *pt = derived("PT", {{"X", default_real()},
                              {"M", new_array_type(default_real(), 2)},
                              {"NAME", default_character(8)},
                              {"BAD", error_type()}});
    variable("Q", pt);
    variable("QQ", new_array_type(pt, 1));
    variable("I", default_integer());
    variable("W", error_type());
    expect_error("i%j", quoted(1, msg_object_is_not_of_derived_type), "error");
    expect_error("b%x", quoted(1, msg_object_is_not_of_derived_type), "error");
    expect_error("b(3)%x(1)%y + i", quoted(1, msg_object_is_not_of_derived_type), "(error + I)");
    expect_error("q%x%y", quoted(1, msg_object_is_not_of_derived_type), "error");
    expect_error("q%z", quoted(3, msg_there_is_no_field_with_name), "error");
    expect_error("qq(2)%w(1,2)%v + i%j",
                 quoted(7, msg_there_is_no_field_with_name) + "; " +
                     quoted(18, msg_object_is_not_of_derived_type),
                 "(error + error)");
    expect_error("f(q%z, 1)", quoted(5, msg_there_is_no_field_with_name), "F(error, 1)");
    expect_error("q%3", quoted(3, msg_expected_identifier), "error");
    expect_error("f(q%, 1)", quoted(5, msg_expected_identifier), "F(error, 1)");
    expect_error("w%x + q%x", "", "(error + Q%X)");
    expect_error("q%bad%x(1)", "", "error");
    expect_error("pt(1)%x", quoted(1, msg_object_is_not_of_derived_type), "error");
    expect_error("q%name(1:2)%x", quoted(1, msg_object_is_not_of_derived_type), "error");
}

TEST_F(ParserTest, SubscriptsOfComponentsAreCounted) {
    type *pt = derived("PT", {{"S", default_real()},
                              {"V", new_array_type(default_real(), 1)},
                              {"M", new_array_type(default_real(), 2)},
                              {"BAD", error_type()}});
    variable("Q", pt);
    expect_error("q%s(1)", quoted(1, msg_subscript_used_on_non_array), "error");
    expect_error("q%m(1)", quoted(6, msg_too_few_subscripts), "error");
    expect_error("q%v(1,2)+1", quoted(7, msg_too_many_subscripts), "(error + 1)");
    expect_error("q%v(1,2,3)", quoted(7, msg_too_many_subscripts), "error");
    expect_error("q%v()", quoted(5, msg_expected_expression), "Q%V elements(error)");
    expect_error("q%m(1 2)", quoted(7, msg_expected_rparen), "error");
    expect_error("q%bad(1)", "", "Q%BAD elements(1)");
    expect_error("q%v(1", quoted(6, msg_expected_rparen), "error");
    expect_error("f(q%m(1), q%v(2))", quoted(8, msg_too_few_subscripts), "F(error, Q%V elements(2))");
}

TEST_F(ParserTest, SubstringsInError) {
    variable("T", derived("REC", {{"NAME", default_character(8)}}));
    const error_code colon = msg_expected_colon;
    expect_error("ca(2)(3)", quoted(8, colon), "error");
    expect_error("t%name(3)+1", quoted(9, colon), "(error + 1)");
    expect_error("'abc'(2)", quoted(8, colon), "error");
    expect_error("'abc'()", quoted(7, msg_expected_expression), "error");
    expect_error("'abc'(1:2", quoted(10, msg_expected_rparen), "error");
    expect_error("f('abc'(1 2), b)", quoted(11, colon), "F(error, B)");
    expect_error("'abc'(1:2:3)", quoted(10, msg_expected_rparen), "error");
}

// ---- constructors and implied DOs

TEST_F(ParserTest, Constructors) {
    EXPECT_EQ(tree("(/1, 2, 3/)"), "(/1, 2, 3/)");
    EXPECT_EQ(tree("(/-1/)"), "(/-1/)");
    EXPECT_EQ(tree("(/(1,2), (a), (/b/)/)"), "(/<1, 2>_0, {A}, (/B/)/)");
    EXPECT_EQ(tree("(/1,(i,i=1,3),2/)"), "(/1, do(I; own I=1,3), 2/)");
    EXPECT_EQ(tree("(/(a(i), b(i)*2, i = n, m-1, -2)/)"), "(/do(A(I), (B(I) * 2); own I=N,(M - 1),-2)/)");
    EXPECT_EQ(tree("(/((i*j, i=1,2), j=1,3)/)"), "(/do(do((I * J); own I=1,2); own J=1,3)/)");
    EXPECT_EQ(tree("(/(-1, (i+1)*2, (j, j=1,i), i=1,2)/)"),
              "(/do(-1, ({(I + 1)} * 2), do(J; own J=1,I); own I=1,2)/)");
    EXPECT_EQ(tree("(/1/)*(/2/)"), "((/1/) * (/2/))");
    start("(/1/)");
    expr_node *node = nullptr;
    parse_expression(node);
    ASSERT_EQ(node->type->type_code, tk_farray);
    EXPECT_EQ(node->type->array.rank, 1);
    EXPECT_EQ(node->type->array.element_type, unknown_type());
}

TEST_F(ParserTest, VariableOfAConstructorIsItsOwn) {
    symbol *i = variable("I", integer_type(0));
    start("(/(i, (i, i=i,3), i=1,i)/)");
    expr_node *node = nullptr;
    parse_expression(node);
    const expr_node *loop = node->constructor;
    const symbol *own = loop->expr_list->symbol;
    EXPECT_NE(own, i);
    EXPECT_EQ(own->kind, sk_implied_do_var);
    EXPECT_EQ(own->entity, integer_type(0)) << "the type is that of the name outside";
    EXPECT_EQ(loop->do_info->variable->symbol, own);
    EXPECT_EQ(loop->do_info->variable->source_pos.column, 19);
    EXPECT_EQ(loop->do_info->final_value->symbol, i);
    const expr_node *inner = loop->expr_list->next;
    EXPECT_NE(inner->expr_list->symbol, own);
    EXPECT_EQ(inner->do_info->initial_value->symbol, own);
    EXPECT_EQ(lookup_reference(), i);
}

TEST_F(ParserTest, ConstructorsInError) {
    const error_code close = msg_expected_array_close;
    const error_code missing = msg_expected_expression;
    expect_error("(/1.0, 2.0)", quoted(11, close), "error");
    expect_error("(/ /)", quoted(4, missing), "(/error/)");
    expect_error("(/1 2/)+a", quoted(5, close), "(error + A)");
    expect_error("(/1, /)", quoted(6, missing), "(/1, error/)");
    expect_error("(/1", quoted(4, close), "error");
    expect_error("(/1, */2, 3/)", quoted(6, missing), "(/1, error, 3/)");
    expect_error("(/(i,i=1,3)+1/)", quoted(12, close), "error");
}

TEST_F(ParserTest, ImpliedDosInError) {
    const error_code comma = msg_expected_comma;
    expect_error("(/(a(i) i=1,3), 2/)", quoted(9, comma), "(/error, 2/)");
    expect_error("(/(i, i=1), 2/)", quoted(10, comma), "(/error, 2/)");
    expect_error("(/(i=1,3), 2/)", quoted(5, comma), "(/error, 2/)");
    expect_error("(/(=1,3), 2/)", quoted(4, msg_expected_identifier), "(/error, 2/)");
    expect_error("(/(i, i=1,3,4,5)/)", quoted(14, msg_expected_rparen), "(/error/)");
    expect_error("(/(i, i=1,3/)", quoted(12, msg_expected_rparen), "error");
    expect_error("(/(a(j), x%y=1,n), 2/)", quoted(10, msg_do_variable_must_be_named_variable),
                 "(/error, 2/)");
    expect_error("(/(a(j), b(j)=1,n), 2/)", quoted(10, msg_do_variable_must_be_named_variable),
                 "(/error, 2/)");
    expect_error("(/(a, 1=1,3), 2/)", quoted(8, comma), "(/error, 2/)");
    expect_error("(/(a+, i=1,3), 2/)", quoted(6, msg_expected_expression),
                 "(/do((A + error); own I=1,3), 2/)");
    expect_error("(/(i, i=,3), 2/)", quoted(9, msg_expected_expression), "(/do(I; own I=error,3), 2/)");
    expect_error("(/((i, i=1 2), j=1,3), 2/)", quoted(12, comma), "(/do(error; own J=1,3), 2/)");
}

class ListTest : public ParserTest {
protected:
    std::string list(const std::string &text, bool data_context, element_parser parser = parse_expression) {
        start(text);
        expr_node *items = nullptr;
        const std::string lines =
            messages_of([&] { good = parse_element_list(parser, items, data_context); });
        EXPECT_TRUE(std::all_of(stop_set.begin(), stop_set.end(), [](int n) { return n == 0; })) << text;
        EXPECT_EQ(implied_do_depth, -1);
        std::string found = bare(lines);
        return expression_tree::list(items) + rest() + (found.empty() ? "" : "; " + found);
    }
    bool good = false;
};

TEST_F(ListTest, OutputUsesTheVariablesOfTheProgram) {
    EXPECT_EQ(list("a, (b(i), i=1,n), c+1", false), "A, do(B(I); I=1,N), (C + 1)");
    EXPECT_TRUE(good);
    EXPECT_EQ(list("((b(i,j), i=1,3), j=1,4)", false), "do(do(B(I, J); I=1,3); J=1,4)");
    EXPECT_EQ(list("(1,2), (a), (f(k=1))", false), "<1, 2>_0, {A}, {F(K=1)}");
    EXPECT_EQ(list("((/(i, i=1,2)/), j=1,2)", false), "do((/do(I; own I=1,2)/); J=1,2)");
    symbol *i = variable("I", default_integer());
    start("(i, i=1,2)");
    expr_node *node = nullptr;
    EXPECT_TRUE(parse_implied_do(parse_expression, node, false));
    EXPECT_EQ(node->expr_list->symbol, i);
    EXPECT_EQ(node->do_info->variable->symbol, i);
}

TEST_F(ListTest, DataHasVariablesOfItsOwn) {
    EXPECT_EQ(list("a, (b(i), i=1,n), c(1) / 1", true), "A, do(B(I); own I=1,N), (C(1) / 1)");
    EXPECT_EQ(list("((b(i,j), i=1,j), j=1,4)", true), "do(do(B(I, J); own I=1,J); own J=1,4)");
    EXPECT_EQ(list("((b(i,i), i=1,j), i=1,4)", true), "do(do(B(I, I); own I=1,J); own I=1,4)");
}

TEST_F(ListTest, VariableThatIsActive) {
    const error_code active = msg_variable_is_same_as_do_variable_of_enclosing;
    EXPECT_EQ(list("((b(i,i), i=1,3), i=1,4)", false),
              "do(do(B(I, I); error=1,3); I=1,4); " + quoted(11, active));
    symbol *k = variable("K", default_integer());
    k->var_flags |= vf_do_variable;
    EXPECT_EQ(list("(b(k), k=1,3)", false), "do(B(K); error=1,3); " + quoted(8, active));
    push_construct(cons_routine, new_statement(stmk_block));
    statement *loop = new_statement(stmk_ido);
    loop->do_loop = new_do_loop();
    push_construct(cons_do, loop);
    start("j");
    parse_expression(loop->do_loop->variable);
    EXPECT_EQ(list("(b(j), j=1,3), (b(i), i=1,3)", false),
              "do(B(J); error=1,3), do(B(I); I=1,3); " + quoted(8, active));
    EXPECT_TRUE(good) << "the lists are well formed";
}

TEST_F(ListTest, ElementsOfOthers) {
    static int count;
    count = 0;
    const element_parser parser = [](expr_node *&element) {
        ++count;
        parse_expression(element);
        return element->node_kind == enk_symbol;
    };
    EXPECT_EQ(list("a, ((b, (c, j=1,2), k, i=1,2), l=1,2), d", false, parser),
              "A, do(do(B, do(C; J=1,2), K; I=1,2); L=1,2), D");
    EXPECT_EQ(count, 5);
    EXPECT_TRUE(good);
    list("a, b(1)", false, parser);
    EXPECT_FALSE(good);
}

TEST_F(ListTest, InError) {
    EXPECT_EQ(list("(i, i=1,3", false), "error; " + quoted(10, msg_expected_rparen));
    EXPECT_EQ(list("(a(i) i=1,3), b", false), "error, B; " + quoted(7, msg_expected_comma));
    EXPECT_FALSE(good);
    EXPECT_EQ(list("(j(i), j(1) = 1, 3)", false),
              "error; " + quoted(8, msg_do_variable_must_be_named_variable));
    EXPECT_EQ(list("a,", false), "A, error; " + quoted(3, msg_expected_expression));
}

// ---- the whole

TEST_F(ParserTest, FixedForm) {
    start_unit(true);
    EXPECT_EQ(tree("A * * B + A * B"), "((A ** B) + (A * B))");
    EXPECT_EQ(tree("1.EQ.2.OR.A.LT.B . AND . .NOT. L"), "((1 == 2) .OR. ((A < B) .AND. (.NOT. L)))");
    EXPECT_EQ(tree("- A * 2 . 5"), "(- (A * 2.5_0))");
    EXPECT_EQ(tree("- 2 * * 2"), "(- (2 ** 2))");
    EXPECT_EQ(tree("F(I NDEX = 1, K = 2 3)"), "F(INDEX=1, K=23)");
    EXPECT_EQ(tree("(/ (I, I = 1, 3 ) /)"), "(/do(I; own I=1,3)/)");
    expect_error("B * - C", quoted(11, msg_invalid_consecutive_operators), "(B * (- C))");
}

TEST_F(ParserTest, Continuation) {
    scratch_directory::write("t.f90", "a + &\n  b * -c\n");
    il_root.primary_source_file = nullptr;
    lexer_init();
    open_source_file("t.f90", include_search_list);
    ASSERT_TRUE(next_statement());
    next_token(lex_signed);
    expr_node *node = nullptr;
    EXPECT_EQ(messages_of([&] { parse_expression(node); }),
              std::string("t.f90 (  2: 7) error:   ") + message_text(msg_invalid_consecutive_operators) +
                  "\n");
}

TEST_F(ParserTest, PositionsOfNodes) {
    start("aa + bb * f(cc)(1:2)");
    expr_node *node = nullptr;
    parse_expression(node);
    EXPECT_EQ(error_pos.column, 1);
    EXPECT_EQ(node->source_pos.column, 1);
    EXPECT_EQ(node->operands->next->source_pos.column, 6);
    EXPECT_EQ(node->operands->next->operands->next->source_pos.column, 11);
    start("a + (- b)");
    parse_expression(node);
    EXPECT_EQ(node->operands->next->source_pos.column, 6);
}

TEST_F(ParserTest, HostNamesHaveTheirTypesAtOnce) {
    variable("Q", derived("PT", {{"X", default_real()}}));
    push_scope(sr_unit);
    EXPECT_EQ(tree("q%x"), "Q%X");
    expect_error("r%x", quoted(1, msg_object_is_not_of_derived_type), "error");
    curr_row().implicit_types['R' - 'A'] = entity_as<type>(name("PT").atom->first_symbol);
    EXPECT_EQ(tree("rr%x"), "RR%X");
}

// Whatever stands in a statement, the parser comes to an end with its state as it was.
TEST_F(ListTest, AnyTokensInAnyOrder) {
    type *pt = derived("PT", {{"S", default_real()},
                              {"C", default_character(4)},
                              {"V", new_array_type(default_real(), 1)},
                              {"N", nullptr}});
    pt->derived.first_field->next->next->next->type = pt;
    variable("Q", pt);
    define_operator(".OP.");
    static constexpr const char *pieces[] = {
        "a",   "q",    "i",    "f(",    "q%",    "%",    "s",      "c", "v(",   "n%", "(",   "(",
        ")",   ")",    ")",    "(/",    "/)",    ",",    ",",      ":", "::",   "=",  "==",  "i=1,3)",
        "k=",  "*",    "**",   "/",     "//",    "+",    "-",      "1", "2.5",  "-3", "'x'", "'y'(",
        "*10", ".op.", ".no.", ".not.", ".and.", "b'1'", ".true.", "?", "4hxx", "=>", ".",   "1.0_9"};
    std::uint32_t seed = 12345;
    const auto next = [&](std::uint32_t limit) {
        seed = seed * 1664525U + 1013904223U;
        return (seed >> 8) % limit;
    };
    std::string text;
    constexpr int statements = 20000;
    for (int i = 0; i < statements; ++i) {
        std::string line;
        for (std::uint32_t n = 1 + next(16); n > 0; --n) {
            line += pieces[next(std::size(pieces))];
            line += next(3) == 0 ? " " : "";
        }
        text += line.substr(0, 130) + "\n";
    }
    text += "end\n";
    testing::internal::CaptureStderr();
    scratch_directory::write("t.f90", text);
    il_root.primary_source_file = nullptr;
    lexer_init();
    open_source_file("t.f90", include_search_list);
    int count = 0;
    for (; count < statements && next_statement(); ++count) {
        expr_node *node = nullptr;
        next_token(lex_signed);
        switch (count % 3) {
        case 0: parse_expression(node); break;
        case 1: parse_element_list(parse_expression, node, false); break;
        default: parse_element_list(parse_expression, node, true); break;
        }
        ASSERT_NE(node, nullptr);
        expression_tree::list(node);
        ASSERT_TRUE(std::all_of(stop_set.begin(), stop_set.end(), [](int n) { return n == 0; }));
        ASSERT_EQ(implied_do_depth, -1);
        while (curr_token != tok_eos || token_length != 0) {
            next_token(lex_peek);
        }
    }
    std::fflush(stderr);
    testing::internal::GetCapturedStderr();
    EXPECT_EQ(count, statements);
}

// As deep as the longest statement allows.
TEST_F(ParserTest, DepthCostsNoStack) {
    const auto deep = [&](const std::string &front, const std::string &back) {
        const std::size_t pair = front.size() + back.size();
        constexpr std::size_t line = 130;
        std::string one_line;
        for (std::size_t i = 0; i < 4900 / pair; ++i) {
            one_line += front;
        }
        one_line += "a";
        for (std::size_t i = 0; i < 4900 / pair; ++i) {
            one_line += back;
        }
        std::string text;
        for (std::size_t at = 0; at < one_line.size(); at += line) {
            text += "&" + one_line.substr(at, line) + (at + line < one_line.size() ? "&\n" : "\n");
        }
        scratch_directory::write("t.f90", " " + text.substr(1));
        il_root.primary_source_file = nullptr;
        lexer_init();
        open_source_file("t.f90", include_search_list);
        ASSERT_TRUE(next_statement());
        next_token(lex_signed);
        expr_node *node = nullptr;
        const std::string lines = messages_of([&] { parse_expression(node); });
        EXPECT_EQ(curr_token, tok_eos) << front << lines.substr(0, 200);
    };
    derived("NODE", {});
    for (const char *front :
         {"(", "-", "f(", "(/", "(/(", "f(k=", "f(1:", "'a'(", "a**", "a+", ".not.", "a(1)("}) {
        deep(front, "");
    }
    deep("(", ")");
    deep("f(", ")");
    deep("(/", "/)");
    deep("f(1:(", "))");
    deep("(/(", ",i=1,2)/)");
    type *node = derived("LINK", {{"C", default_character(2)}});
    object *next = new_object();
    next->source_corresp.name = name("N").atom;
    next->type = new_array_type(node, 1);
    node->derived.first_field->next = next;
    variable("X", node);
    deep("x%n(", ")%n(:)");
    deep("x%c(", ":)");
}

} // namespace zf90
