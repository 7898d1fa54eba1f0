// Type specifiers: the type that each gives, where it leaves the reader, and its messages.
#include "declarations/type_spec.h"

#include "declarations/scopes.h"
#include "declarations/symbols.h"
#include "declarations/units.h"
#include "il/constants.h"
#include "il/types.h"
#include "source/token_helpers.h"
#include "statements/loop.h"
#include "support/front_end.h"

#include <algorithm>

namespace zf90 {
namespace {

class TypeSpecTest : public FrontEndTest {
protected:
    void SetUp() override { start_unit(false); }

    void start_unit(bool fixed_form) {
        restart_front_end(fixed_form);
        if (curr_scope_depth < 0) {
            il_root.primary_scope = push_scope(sr_global);
        }
        set_standard_implicit_types(scope_stack[0]);
        push_scope(sr_unit);
        in_type_def = in_prefix_type = false;
    }

    // The type of the specifier at the start of the text, and the token behind it; then what was reported, as
    // "COLUMN: TEXT".
    std::string spec(const std::string &text) {
        std::string found = messages_of([&] { read(text); });
        std::string result = text_of(curr_type_spec) + (char_star_form ? " star" : "") +
                             (closed ? "" : " open") + " | " + token_name(curr_token);
        EXPECT_TRUE(std::all_of(stop_set.begin(), stop_set.end(), [](int n) { return n == 0; })) << text;
        EXPECT_FALSE(used_in_bound);
        for (std::size_t at = 0; at < found.size(); at = found.find('\n', at) + 1) {
            const std::string line = found.substr(at, found.find('\n', at) - at);
            const std::size_t colon = line.find(':');
            result += "; " + std::to_string(std::stoi(line.substr(colon + 1))) + ": " +
                      line.substr(line.find_first_not_of(' ', line.find(':', colon + 1) + 1));
        }
        return result;
    }

    void read(const std::string &text) {
        start(text);
        switch (curr_token) {
        case tok_kw_integer: closed = read_type_integer(lex_keyword); break;
        case tok_kw_real: closed = read_type_real(lex_keyword); break;
        case tok_kw_complex: closed = read_type_complex(lex_keyword); break;
        case tok_kw_logical: closed = read_type_logical(lex_keyword); break;
        case tok_kw_character: closed = read_type_character(lex_keyword); break;
        case tok_kw_type: closed = read_type_derived(lex_keyword); break;
        default: FAIL() << text;
        }
    }

    // The type that an entity of the type `base` gets from a length such as "*4".
    std::string entity_length(const std::string &text, type *base) {
        type *t = nullptr;
        std::string found = messages_of([&] {
            start(text);
            t = read_char_length(base, 0);
        });
        found.erase(found.find_last_not_of('\n') + 1);
        return text_of(t) + " | " + token_name(curr_token) +
               (found.empty() ? "" : "; " + found.substr(found.find_last_of(':') + 4));
    }

    void start(const std::string &text) {
        scratch_directory::write("t.f90", (fixed_form_input ? "      " : "") + text + "\n");
        il_root.primary_source_file = nullptr;
        lexer_init();
        open_source_file("t.f90", include_search_list);
        ASSERT_TRUE(next_statement());
        next_token(lex_keyword);
    }

    static std::string text_of(const type *t) {
        const std::string kind = std::to_string(t->kind);
        switch (t->type_code) {
        case tk_integer: return "int" + kind;
        case tk_float: return "real" + kind;
        case tk_complex: return "cplx" + kind;
        case tk_logical: return "log" + kind;
        case tk_error: return "error";
        case tk_derived_type: return "derived";
        case tk_fcharacter:
            switch (t->character.length.kind) {
            case bound_constant: return "char(" + std::to_string(t->character.length.value) + ")";
            case bound_assumed: return "char(*)";
            case bound_expression: EXPECT_EQ(t->size, 0U); return "char(expression)";
            default: break;
            }
            [[fallthrough]];
        default: return "?";
        }
    }

    static symbol *named(const char *spelling, symbol_kind kind) {
        name_locator name{};
        intern_name(spelling, name.atom);
        return new_symbol(kind, name, curr_scope_depth);
    }

    static void named_constant(const char *spelling, std::int32_t value) {
        object *o = new_object();
        o->type = default_integer();
        o->is_constant = true;
        o->variant.initializer = make_integer_constant(value, o->type);
        symbol *s = named(spelling, sk_variable);
        s->entity = o;
        s->flags |= sf_typed;
    }

    bool closed = false;
};

std::string at(int column, error_code code) {
    return "; " + std::to_string(column) + ": " + message_text(code);
}

} // namespace

TEST_F(TypeSpecTest, DefaultTypes) {
    EXPECT_EQ(spec("integer x"), "int1 | name");
    EXPECT_EQ(spec("real :: x"), "real0 | double_colon");
    EXPECT_EQ(spec("complex, pointer :: x"), "cplx0 | comma");
    EXPECT_EQ(spec("logical function f()"), "log1 | kw_function");
    EXPECT_EQ(spec("character x"), "char(1) | name");
    EXPECT_EQ(spec("character :: x"), "char(1) | double_colon");
}

TEST_F(TypeSpecTest, LengthsOfNumbersAreLeftUnread) {
    EXPECT_EQ(spec("integer*4 x"), "int1 | star");
    EXPECT_EQ(spec("real*8 x"), "real0 | star");
    EXPECT_EQ(spec("logical*1 x"), "log1 | star");
    EXPECT_EQ(spec("complex*16 x"), "cplx0 | star");
}

TEST_F(TypeSpecTest, Kinds) {
    named_constant("DP", 2);
    EXPECT_EQ(spec("integer(1) x"), "int0 | name");
    EXPECT_EQ(spec("integer(kind=1) x"), "int0 | name");
    EXPECT_EQ(spec("integer ( KIND = 2 ) :: x"), "int1 | double_colon");
    EXPECT_EQ(spec("real(1) x"), "real0 | name");
    EXPECT_EQ(spec("real(dp) x"), "real1 | name");
    EXPECT_EQ(spec("complex(kind=dp) x"), "cplx1 | name");
    EXPECT_EQ(spec("logical(1) x"), "log0 | name");
    EXPECT_EQ(spec("logical(2) x"), "log1 | name");
}

TEST_F(TypeSpecTest, KindsThatAreNotThere) {
    const error_code missing = msg_kind_value_does_not_specify_representation_method;
    EXPECT_EQ(spec("integer(kind=3) x"), "error | name" + at(15, missing));
    EXPECT_EQ(spec("integer(3) x"), "error | name" + at(10, missing));
    EXPECT_EQ(spec("integer(-1) x"), "error | name" + at(11, missing));
    EXPECT_EQ(spec("real(4) x"), "error | name" + at(7, missing));
    EXPECT_EQ(spec("logical(kind=0) x"), "error | name" + at(15, missing));
    EXPECT_EQ(spec("complex(8) x"), "error | name" + at(10, missing));
    EXPECT_EQ(spec("character(kind=2) x"), "error | name" + at(17, missing));
    EXPECT_EQ(spec("character(len=4, kind=9) x"), "error | name" + at(24, missing));
    EXPECT_EQ(spec("character(len=*, kind=9) x"), "error | name" + at(24, missing));
    EXPECT_EQ(spec("character(len=n, kind=9) x"), "error | name" + at(24, missing));
}

TEST_F(TypeSpecTest, KindsInError) {
    EXPECT_EQ(spec("integer(len=2) x"), "error | name" + at(9, msg_invalid_specifier));
    EXPECT_EQ(spec("integer(size=2) x"), "error | name" + at(9, msg_invalid_specifier));
    EXPECT_EQ(spec("integer(n) x"), "error | name" + at(9, msg_must_be_initialization_expression));
    EXPECT_EQ(spec("integer() x"), "error | name" + at(9, msg_expected_expression));
    EXPECT_EQ(spec("integer(1 x"), "error open | eos" + at(11, msg_expected_rparen));
    EXPECT_EQ(spec("integer(1 2) x"), "error | name" + at(11, msg_expected_rparen));
    EXPECT_EQ(spec("integer(1.5) x"), "error | name" + at(9, msg_must_be_specification_expression));
    EXPECT_EQ(spec("integer(99999999999) x"), "error | name" + at(9, msg_integer_constant_is_too_large));
}

TEST_F(TypeSpecTest, CharacterSelectors) {
    named_constant("N", 6);
    EXPECT_EQ(spec("character(5) x"), "char(5) | name");
    EXPECT_EQ(spec("character(len=7) :: x"), "char(7) | double_colon");
    EXPECT_EQ(spec("character(n) x"), "char(6) | name");
    EXPECT_EQ(spec("character(kind=1) x"), "char(1) | name");
    EXPECT_EQ(spec("character(*) x"), "char(*) | name");
    EXPECT_EQ(spec("character(len=*) x"), "char(*) | name");
    EXPECT_EQ(spec("character(len=*, kind=1) x"), "char(*) | name");
    EXPECT_EQ(spec("character(kind=1, len=*) x"), "char(*) | name");
    EXPECT_EQ(spec("character(*, 1) x"), "char(*) | name");
    EXPECT_EQ(spec("character(m) x"), "char(expression) | name");
    EXPECT_EQ(spec("character(len=m+1) x"), "char(expression) | name");
    EXPECT_EQ(spec("character(-3) x"), "char(0) | name");
    EXPECT_EQ(spec("character(0) x"), "char(0) | name");
}

TEST_F(TypeSpecTest, SameLengthIsTheSameType) {
    spec("character(5) x");
    const type *first = curr_type_spec;
    for (const char *text : {"character(kind=1, len=5) x", "character(5, kind=1) x", "character(5, 1) x",
                             "character*5 x", "character*(5) x", "character(len=5,kind=1) x"}) {
        EXPECT_EQ(spec(text).substr(0, 7), "char(5)");
        EXPECT_EQ(curr_type_spec, first) << text;
    }
    spec("character(*) x");
    first = curr_type_spec;
    spec("character*(*) x");
    EXPECT_EQ(curr_type_spec, first);
    spec("character(m) x");
    first = curr_type_spec;
    EXPECT_TRUE(first->is_character);
    EXPECT_EQ(first->alignment, 1);
    spec("character(m) x");
    EXPECT_NE(curr_type_spec, first);
}

TEST_F(TypeSpecTest, NamesInALengthAreUsedInABound) {
    spec("character(m) x");
    const symbol *m = lookup_at_depth(curr_scope_depth);
    atom *name;
    intern_name("M", name);
    m = name->first_symbol;
    EXPECT_TRUE(m->flags & sf_used_as_bound);
}

TEST_F(TypeSpecTest, CharacterSelectorsInError) {
    const error_code repeated = msg_specifier_is_repeated;
    const error_code omitted = msg_keyword_must_not_be_omitted_from_actual_argument;
    EXPECT_EQ(spec("character(len=5, 1) x"), "error | name" + at(18, omitted));
    EXPECT_EQ(spec("character(len=*, 1) x"), "error | name" + at(18, omitted));
    EXPECT_EQ(spec("character(5, len=5) x"), "error | name" + at(14, repeated));
    EXPECT_EQ(spec("character(*, len=5) x"), "error | name" + at(14, repeated));
    EXPECT_EQ(spec("character(len=5, len=*) x"), "error | name" + at(18, repeated));
    EXPECT_EQ(spec("character(kind=1, kind=1) x"), "error | name" + at(19, repeated));
    EXPECT_EQ(spec("character(kind=1, 5) x"), "error | name" + at(19, repeated));
    EXPECT_EQ(spec("character(5, kind=n) x"), "error | name" + at(19, msg_must_be_initialization_expression));
    EXPECT_EQ(spec("character(5, kind=1, 3) x"), "error | name" + at(20, msg_expected_rparen));
    EXPECT_EQ(spec("character(5 x"), "error open | eos" + at(13, msg_expected_rparen));
    EXPECT_EQ(spec("character() x"), "error | name" + at(11, msg_expected_expression));
    EXPECT_EQ(spec("character(,1) x"), "error | name" + at(11, msg_expected_expression));
    EXPECT_EQ(spec("character(unit=5) x"), "error | name" + at(11, msg_invalid_specifier));
    EXPECT_EQ(spec("character(5, unit=5) x"), "error | name" + at(14, msg_invalid_specifier));
}

TEST_F(TypeSpecTest, CharacterStar) {
    named_constant("N", 6);
    EXPECT_EQ(spec("character*4 x"), "char(4) star | name");
    EXPECT_EQ(spec("character * 8, x"), "char(8) star | comma");
    EXPECT_EQ(spec("character*(*) x"), "char(*) star | name");
    EXPECT_EQ(spec("character*(n) x"), "char(6) star | name");
    EXPECT_EQ(spec("character*(m) x"), "char(expression) star | name");
    EXPECT_EQ(spec("character*(-3) x"), "char(0) star | name");
    EXPECT_EQ(spec("character*5 function f()"), "char(5) star | kw_function");
    EXPECT_EQ(spec("character*x y"), "char(1) star | name" + at(11, msg_expected_constant));
    EXPECT_EQ(spec("character*, y"), "char(1) star | comma" + at(11, msg_expected_length_specification));
    EXPECT_EQ(spec("character*(5 y"), "char(1) star | name" + at(14, msg_expected_rparen));
    EXPECT_EQ(spec("character*(5 6) y"), "char(1) star | name" + at(14, msg_expected_rparen));
    EXPECT_EQ(spec("character*() y"), "char(1) star | name" + at(12, msg_expected_expression));
    EXPECT_EQ(spec("character*99999999999 y"),
              "char(1) star | name" + at(11, msg_integer_constant_is_too_large));
}

TEST_F(TypeSpecTest, LengthOfAnEntity) {
    type *one = default_character(1);
    EXPECT_EQ(entity_length("*4, b", one), "char(4) | comma");
    EXPECT_EQ(entity_length("*(1), b", one), "char(1) | comma");
    EXPECT_EQ(entity_length("*(*)", one), "char(*) | eos");
    EXPECT_EQ(entity_length("*(m) = 'x'", one), "char(expression) | assign");
    EXPECT_EQ(entity_length("*n, b", one),
              std::string("error | comma; ") + message_text(msg_expected_constant));
    EXPECT_EQ(entity_length("*, b", one),
              std::string("error | comma; ") + message_text(msg_expected_length_specification));
    EXPECT_EQ(entity_length("*('a' b)", one),
              std::string("error | eos; ") + message_text(msg_expected_rparen));
}

TEST_F(TypeSpecTest, FixedForm) {
    start_unit(true);
    EXPECT_EQ(spec("LOGICAL(KIND=1)X"), "log0 | name");
    EXPECT_EQ(spec("CHARACTER*4HELLO"), "char(4) star | name");
    EXPECT_EQ(spec("CHARACTER(LEN=4)HELLO"), "char(4) | name");
    EXPECT_EQ(spec("REAL(2)FUNCTIONF"), "real1 | kw_function");
    EXPECT_EQ(spec("C H A R A C T E R ( L E N = 3 , K I N D = 1 ) X"), "char(3) | name");
}

TEST_F(TypeSpecTest, DerivedTypes) {
    type *t = new_type(tk_derived_type);
    named("PT", sk_derived_type)->entity = t;
    named("NOTYPE", sk_variable);
    EXPECT_EQ(spec("type(pt) x"), "derived | name");
    EXPECT_EQ(curr_type_spec, t);
    EXPECT_EQ(spec("type ( pt ), pointer :: x"), "derived | comma");
    EXPECT_EQ(spec("type(nowhere) x"), "error | name" + at(6, msg_undefined_derived_type));
    EXPECT_EQ(spec("type(notype) x"), "error | name" + at(6, msg_identifier_is_not_derived_type_name));
    EXPECT_EQ(spec("type(3) x"), "error | name" + at(6, msg_expected_identifier));
    EXPECT_EQ(spec("type() x"), "error | name" + at(6, msg_expected_identifier));
    EXPECT_EQ(spec("type(pt x"), "derived open | eos" + at(9, msg_expected_rparen));
    EXPECT_EQ(spec("type pt x"), "error open | eos" + at(6, msg_expected_lparen));
    push_scope(sr_unit);
    EXPECT_EQ(spec("type(pt) x"), "derived | name");
    EXPECT_EQ(curr_type_spec, t) << "by host association";
    push_scope(sr_derived_type);
    in_type_def = true;
    type *own = new_type(tk_derived_type);
    named("PT", sk_variable);
    --curr_scope_depth;
    named("PT", sk_derived_type)->entity = own;
    ++curr_scope_depth;
    spec("type(pt) x");
    in_type_def = false;
    EXPECT_EQ(curr_type_spec, own) << "the meaning around the definition, not a component";
}

} // namespace zf90
