// The rules of the members of operators, of the assignment and of generic names.
#include "declarations/generic_sets.h"

#include "declarations/units_fixture.h"

namespace zf90 {
namespace {

class GenericSetsTest : public UnitsTest {
protected:
    // The messages of the check of all generics of the module M, which has the text.
    std::string check(const std::string &text) { return compile("module m\n" + text + "end module m\n"); }

    // The same for one generic with one procedure, P.
    std::string check_one(const std::string &generic, const std::string &procedure) {
        SetUp();
        return check("type t\ninteger i\nend type t\ninterface " + generic +
                     "\nmodule procedure p\nend interface\ncontains\n" + procedure + "end " +
                     procedure.substr(0, procedure.find(' ')) + "\n");
    }

    // The same for one generic with a procedure for each declaration of an argument.
    std::string check_all(const std::vector<std::string> &arguments) {
        SetUp();
        std::string procedures = "p1";
        std::string bodies;
        for (std::size_t i = 1; i <= arguments.size(); ++i) {
            const std::string name = "p" + std::to_string(i);
            procedures += i > 1 ? ", " + name : "";
            bodies += "subroutine " + name + "(x)\n" + arguments[i - 1] + " x\nend subroutine\n";
        }
        return check("type t\ninteger i\nend type t\ntype s\nsequence\ninteger i\nend type s\n"
                     "interface g\nmodule procedure " +
                     procedures + "\nend interface\ncontains\n" + bodies);
    }
};

constexpr const char *not_subroutine = "defined assignment procedure must be subroutine";
constexpr const char *not_function = "defined operation procedure must be function";
constexpr const char *not_assigned = "nonoptional INTENT(OUT) or INTENT(INOUT) argument required";
constexpr const char *not_operand = "nonoptional INTENT(IN) argument required";
constexpr const char *wrong_count = "incorrect number of arguments";
constexpr const char *ambiguous = "the procedure violates rules of unambiguous generic procedure references";

// Whether the messages are the one with the text, and end there; an empty text is no message.
testing::AssertionResult is_only(const std::string &messages, const std::string &text) {
    const std::string end = "error:   " + text + "\n";
    const bool good = text.empty()
                          ? messages.empty()
                          : messages.size() >= end.size() && messages.find('\n') + 1 == messages.size() &&
                                messages.compare(messages.size() - end.size(), end.size(), end) == 0;
    return good ? testing::AssertionSuccess() : testing::AssertionFailure() << messages;
}

TEST_F(GenericSetsTest, TheAssignment) {
    const struct {
        const char *procedure;
        const char *message;
    } rows[] = {
        {"subroutine p(a, b)\ntype(t), intent(out) :: a\ninteger, intent(in) :: b\n", ""},
        {"subroutine p(a, b)\ntype(t), intent(inout) :: a\ninteger, intent(in) :: b\n", ""},
        {"function p(a, b)\ntype(t), intent(out) :: a\ninteger, intent(in) :: b\n", not_subroutine},
        {"subroutine p\n", wrong_count},
        {"subroutine p(a)\ntype(t), intent(out) :: a\n", wrong_count},
        {"subroutine p(a, b, c)\ntype(t), intent(out) :: a\ninteger, intent(in) :: b, c\n", wrong_count},
        {"subroutine p(a, b)\ntype(t) :: a\ninteger, intent(in) :: b\n", not_assigned},
        {"subroutine p(a, b)\ntype(t), intent(in) :: a\ninteger, intent(in) :: b\n", not_assigned},
        {"subroutine p(a, b)\ntype(t), intent(out), optional :: a\ninteger, intent(in) :: b\n", not_assigned},
        {"subroutine p(a, b)\ntype(t), intent(out) :: a\ninteger :: b\n", not_operand},
        {"subroutine p(a, b)\ntype(t), intent(out) :: a\ninteger, intent(inout) :: b\n", not_operand},
        {"subroutine p(a, b)\ntype(t), intent(out) :: a\ninteger, intent(in), optional :: b\n", not_operand},
    };
    for (const auto &row : rows) {
        EXPECT_TRUE(is_only(check_one("assignment(=)", row.procedure), row.message)) << row.procedure;
    }
}

TEST_F(GenericSetsTest, TheNumberOfOperands) {
    const std::string operands[] = {"function p()\n", "function p(a)\ntype(t), intent(in) :: a\n",
                                    "function p(a, b)\ntype(t), intent(in) :: a, b\n",
                                    "function p(a, b, c)\ntype(t), intent(in) :: a, b, c\n"};
    const char *const unary[] = {"+", "-", ".not.", ".mine."};
    const char *const binary[] = {"*",    "/",    "**",    "//",   "<",     "<=",    ">",
                                  ">=",   "==",   "/=",    ".lt.", ".gt.",  ".le.",  ".ge.",
                                  ".eq.", ".ne.", ".and.", ".or.", ".eqv.", ".neqv."};
    for (const std::string op : unary) {
        EXPECT_TRUE(is_only(check_one("operator (" + op + ")", operands[0]), wrong_count)) << op;
        EXPECT_TRUE(is_only(check_one("operator (" + op + ")", operands[1]), "")) << op;
        EXPECT_TRUE(is_only(check_one("operator (" + op + ")", operands[2]), "")) << op;
        EXPECT_TRUE(is_only(check_one("operator (" + op + ")", operands[3]), wrong_count)) << op;
    }
    for (const std::string op : binary) {
        EXPECT_TRUE(is_only(check_one("operator (" + op + ")", operands[0]), wrong_count)) << op;
        EXPECT_TRUE(is_only(check_one("operator (" + op + ")", operands[1]), wrong_count)) << op;
        EXPECT_TRUE(is_only(check_one("operator (" + op + ")", operands[2]), "")) << op;
        EXPECT_TRUE(is_only(check_one("operator (" + op + ")", operands[3]), wrong_count)) << op;
    }
}

TEST_F(GenericSetsTest, Operands) {
    EXPECT_TRUE(
        is_only(check_one("operator(+)", "subroutine p(a)\ntype(t), intent(in) :: a\n"), not_function));
    EXPECT_TRUE(is_only(check_one("operator(+)", "function p(a)\ntype(t) :: a\n"), not_operand));
    EXPECT_TRUE(
        is_only(check_one("operator(+)", "function p(a)\ntype(t), intent(inout) :: a\n"), not_operand));
    EXPECT_TRUE(is_only(check_one("operator(+)", "function p(a)\ntype(t), intent(in), optional :: a\n"),
                        not_operand));
    // One message for a procedure, whatever else is wrong with its arguments, but for what it is.
    EXPECT_TRUE(is_only(check_one("operator(*)", "function p(a, b)\ntype(t) :: a, b\n"), not_operand));
    const std::string both = check_one("operator(*)", "subroutine p(a)\ntype(t) :: a\n");
    EXPECT_EQ(both, "t.f90 (  9:12) error:   " + std::string(not_function) +
                        "\nt.f90 (  9:12) error:   " + wrong_count + "\n");
    EXPECT_TRUE(is_only(check_one("g", "subroutine p(a)\ntype(t) :: a\n"), "")); // no rule of a name
    EXPECT_TRUE(is_only(check_one("read", "subroutine p(a)\ntype(t) :: a\n"), ""));
}

TEST_F(GenericSetsTest, ArgumentsThatDiffer) {
    const std::vector<std::string> all = {
        "integer",
        "integer(1)",
        "real",
        "double precision",
        "complex",
        "complex(2)",
        "logical",
        "logical(1)",
        "character",
        "type(t)",
        "type(s)",
        "integer, dimension(:) ::",
        "real, dimension(2) ::",
        "integer, dimension(:,:) ::",
        "type(t), dimension(3) ::",
    };
    EXPECT_EQ(check_all(all), "");
    for (const std::string &argument : all) {
        EXPECT_TRUE(is_only(check_all({argument, argument}), ambiguous)) << argument;
    }
}

TEST_F(GenericSetsTest, ArgumentsThatDontDiffer) {
    EXPECT_TRUE(is_only(check_all({"character(*)", "character(5)"}), ambiguous));
    EXPECT_TRUE(is_only(check_all({"integer, dimension(:) ::", "integer, dimension(2) ::"}), ambiguous));
    EXPECT_TRUE(
        is_only(check_all({"integer, dimension(*) ::", "integer, pointer, dimension(:) ::"}), ambiguous));
    EXPECT_TRUE(is_only(check_all({"integer, pointer ::", "integer, intent(in) ::"}), ambiguous));
    // Each procedure that can't be told from an earlier one is reported once.
    const std::string messages = check_all({"integer", "integer", "real", "integer"});
    EXPECT_EQ(messages, "t.f90 ( 16:12) error:   " + std::string(ambiguous) +
                            "\nt.f90 ( 22:12) error:   " + ambiguous + "\n");
}

TEST_F(GenericSetsTest, SequenceTypesAreComparedByTheirComponents) {
    const std::string block = "interface g\nmodule procedure p, q\nend interface\ncontains\n";
    const auto body = [](const std::string &name, const std::string &component) {
        return "subroutine " + name + "(x)\ntype v\nsequence\ninteger i\nreal " + component +
               "\nend type v\ntype(v) x\nend subroutine\n";
    };
    EXPECT_TRUE(is_only(check(block + body("p", "r") + body("q", "r")), ambiguous));
    SetUp();
    EXPECT_EQ(check(block + body("p", "r") + body("q", "s")), "");
}

TEST_F(GenericSetsTest, OnlyPositionsCount) {
    const std::string block = "interface g\nmodule procedure p, q\nend interface\ncontains\n";
    EXPECT_TRUE(is_only(check(block + "subroutine p(i, j)\noptional j\nend subroutine\n"
                                      "subroutine q(j, i)\nend subroutine\n"),
                        ambiguous));
    SetUp();
    EXPECT_EQ(check(block + "subroutine p(i, j)\noptional j\nend subroutine\n"
                            "subroutine q(i)\nend subroutine\n"),
              "");
    SetUp();
    EXPECT_TRUE(
        is_only(check(block + "subroutine p\nend subroutine\nsubroutine q\nend subroutine\n"), ambiguous));
}

TEST_F(GenericSetsTest, TheHostsProceduresCount) {
    EXPECT_EQ(compile("module m\ninterface g\nmodule procedure p\nend interface\ncontains\n"
                      "subroutine p(i)\nend subroutine\n"
                      "subroutine user\ninterface g\nsubroutine q(x)\nend subroutine\n"
                      "subroutine r(k)\nend subroutine\nend interface\nend subroutine\nend\n"),
              "t.f90 ( 12:12) error:   " + std::string(ambiguous) + "\n");
    interface *inner = routine("M/USER")->variant.assoc_scope->interfaces;
    ASSERT_NE(inner, nullptr);
    EXPECT_EQ(inner->inherited, routine("M")->variant.assoc_scope->interfaces);
}

TEST_F(GenericSetsTest, AnErrorInAnArgumentIsTheOnlyOne) {
    SetUp();
    EXPECT_NE(compile("module m\ninterface g\nmodule procedure p, q\nend interface\ncontains\n"
                      "subroutine p(x)\ntype(nix) x\nend subroutine\n"
                      "subroutine q(x)\ntype(nix) x\nend subroutine\nend\n"),
              "");
    interface *generic = routine("M")->variant.assoc_scope->interfaces;
    EXPECT_EQ(messages_of([&] { check_generic_set(generic, [](object *) { return true; }); }), "");
}

TEST_F(GenericSetsTest, MembersThatFailTheirOwnCheckTakeNoPart) {
    EXPECT_EQ(compile("module m\ninterface g\nmodule procedure p, q\nend interface\ncontains\n"
                      "subroutine p(i)\nend subroutine\nsubroutine q(i)\nend subroutine\nend\n"),
              "t.f90 (  8:12) error:   " + std::string(ambiguous) + "\n");
    interface *generic = routine("M")->variant.assoc_scope->interfaces;
    EXPECT_EQ(messages_of([&] { EXPECT_FALSE(check_generic_set(generic, [](object *) { return false; })); }),
              "");
}

TEST_F(GenericSetsTest, PrivateTypes) {
    EXPECT_EQ(
        check("private t\npublic u, g\ntype t\ninteger i\nend type\ntype u\ninteger i\nend type\n"
              "interface g\nmodule procedure p, q, r, f\nend interface\n"
              "interface h\nmodule procedure p\nend interface\nprivate h, p, q, f\ncontains\n"
              "subroutine p(x)\ntype(t) x(3)\nend subroutine\n"
              "subroutine q(x)\ntype(u) x\nend subroutine\n"
              "subroutine r(x, y)\ntype(u) x\ninteger y\nend subroutine\n"
              "type(t) function f()\nend function\n"),
        "t.f90 ( 18:12) error:   procedure dependent of a private type should not have a public generic "
        "identifier\n"
        "t.f90 ( 28:18) error:   procedure dependent of a private type should not have a public generic "
        "identifier\n");
    const object *q = routine("M/Q");
    EXPECT_TRUE(q->is_public);
    EXPECT_TRUE(q->source_corresp.referenced);
    EXPECT_FALSE(depends_on_private_type(q));
    EXPECT_TRUE(depends_on_private_type(routine("M/P")));
    EXPECT_TRUE(depends_on_private_type(routine("M/F")));
}

TEST_F(GenericSetsTest, ComponentsAreAsPublicAsTheirType) {
    EXPECT_EQ(compile("module m\nprivate\npublic a, b\ntype a\ninteger i\nend type\n"
                      "type b\nprivate\ninteger i\nend type\ntype c\ninteger i\nend type\nend\n"),
              "");
    const type *a = body("M")->types;
    EXPECT_TRUE(a->is_public);
    EXPECT_TRUE(a->derived.first_field->is_public);
    EXPECT_TRUE(a->next->is_public);
    EXPECT_FALSE(a->next->derived.first_field->is_public);
    EXPECT_FALSE(a->next->next->is_public);
    EXPECT_FALSE(a->next->next->derived.first_field->is_public);
}

} // namespace
} // namespace zf90
