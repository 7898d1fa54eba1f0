// The tokenizer: the cases of the *.tokens files, and what a listing does not show: the state that callers
// use, looking ahead, the one-shot warnings, and text of any bytes.
#include "source/tokens.h"

#include "declarations/symbols.h"
#include "source/token_fixture.h"

#include <filesystem>
#include <fstream>
#include <random>
#include <sstream>

namespace zf90 {
namespace {

class TokensTest : public TokenFixture {
protected:
    // The tokens of the first statement, in the mode, up to its end.
    std::string first_kinds(std::uint32_t mode) {
        std::string result;
        do {
            next_token(mode);
            result += (result.empty() ? "" : " ") + std::string(token_name(curr_token));
        } while (curr_token != tok_eos);
        return result;
    }
};

// ---- the listings

struct listing_case {
    std::string name;
    std::string options;
    std::string source;
    std::string expected;
};

std::vector<listing_case> load_cases(const std::filesystem::path &file) {
    std::vector<listing_case> cases;
    std::ifstream stream(file);
    std::string *part = nullptr;
    for (std::string line; std::getline(stream, line);) {
        if (line.starts_with("=== ")) {
            cases.push_back({line.substr(4), "", "", ""});
            part = &cases.back().options;
        } else if (cases.empty() || (part == &cases.back().options && line.starts_with("#"))) {
            continue;
        } else if (line == "---") {
            part = &cases.back().source;
        } else if (line == ">>>") {
            part = &cases.back().expected;
        } else {
            *part += line + "\n";
        }
    }
    for (listing_case &c : cases) {
        while (c.expected.ends_with("\n\n")) {
            c.expected.pop_back();
        }
    }
    return cases;
}

// As print_tokens reads them.
std::vector<std::uint32_t> apply_options(const std::string &options) {
    std::vector<std::uint32_t> modes;
    std::istringstream words(options);
    bool fixed_form = false;
    bool strict = false;
    bool with_case = false;
    for (std::string word; words >> word;) {
        fixed_form |= word == "-F";
        strict |= word == "-A";
        with_case |= word == "-U";
        if (word == "-m" && words >> word) {
            modes.push_back(parse_lex_mode(word));
            EXPECT_NE(modes.back(), ~std::uint32_t{0}) << word;
        }
    }
    restart_front_end(fixed_form);
    strict_f77_mode = strict;
    case_sensitive_names = with_case;
    if (modes.empty()) {
        modes.push_back(0);
    }
    return modes;
}

class TokenListings : public TokenFixture, public testing::WithParamInterface<const char *> {
protected:
    const std::filesystem::path folder = std::filesystem::path(TESTS_FOLDER) / "source";
};

TEST_P(TokenListings, AreAsExpected) {
    const std::vector<listing_case> cases = load_cases(folder / GetParam());
    ASSERT_FALSE(cases.empty());
    for (const listing_case &c : cases) {
        const std::vector<std::uint32_t> modes = apply_options(c.options);
        std::string got;
        const std::string reported = messages_of([&] {
            open_anew(c.source);
            got = list_tokens(modes);
        });
        std::istringstream lines(reported);
        for (std::string line; std::getline(lines, line);) {
            got += line.starts_with("t.f90 ") ? line.substr(6) + "\n" : line + "\n";
        }
        EXPECT_EQ(got, c.expected) << c.name;
    }
}

INSTANTIATE_TEST_SUITE_P(Files, TokenListings,
                         testing::Values("tokens.tokens", "literals.tokens", "keywords.tokens"));

// ---- tables and names

TEST_F(TokensTest, CodesOfTokens) {
    EXPECT_EQ(int{tok_eos}, 21);
    EXPECT_EQ(int{tok_power}, 22);
    EXPECT_EQ(int{tok_assign}, 39);
    EXPECT_EQ(int{tok_kw_allocatable}, 40);
    EXPECT_EQ(int{tok_kw_write}, 137);
    EXPECT_EQ(int{tok_kw_ment}, 138);
    EXPECT_EQ(int{tok_kw_fixed_where}, 140);
    EXPECT_EQ(int{tok_kw_trinsic}, 146);
    EXPECT_EQ(int{tok_spec_access}, 147);
    EXPECT_EQ(int{tok_spec_unit}, 183);
    EXPECT_EQ(int{tok_none}, 184);
}

TEST_F(TokensTest, NamesOfTokens) {
    EXPECT_STREQ(token_name(tok_name), "name");
    EXPECT_STREQ(token_name(tok_eos), "eos");
    EXPECT_STREQ(token_name(tok_neqv), "neqv");
    EXPECT_STREQ(token_name(tok_kw_write), "kw_write");
    EXPECT_STREQ(token_name(tok_kw_ment), "kw_ment");
    EXPECT_STREQ(token_name(tok_spec_unit), "spec_unit");
    EXPECT_STREQ(token_name(tok_none), "none");
    EXPECT_STREQ(token_name(1000), "?");
}

TEST_F(TokensTest, ModesOfCallersCombine) {
    EXPECT_EQ(parse_lex_mode("peek,label,plain_digits,no_hollerith"), 389u);
    EXPECT_EQ(parse_lex_mode("peek,no_kind_string"), 1025u);
    EXPECT_EQ(parse_lex_mode("peek,no_hollerith,no_kind_suffix,plain_digits"), 33153u);
}

// ---- the state of the token

TEST_F(TokensTest, StateOfTheToken) {
    start("  abc = 12");
    EXPECT_EQ(curr_token, tok_none);
    next_token(0);
    EXPECT_EQ(curr_token, tok_name);
    EXPECT_EQ(curr_token_pos, (source_pos{1, 3}));
    EXPECT_EQ(error_pos, curr_token_pos);
    EXPECT_EQ(token_start, line_segments[0].base + 2);
    EXPECT_STREQ(token_text, "ABC");
    EXPECT_EQ(token_length, 3);
    EXPECT_STREQ(curr_name.atom->spelling, "ABC");
    EXPECT_EQ(curr_name.position, curr_token_pos);
}

TEST_F(TokensTest, RewindReadsTheTokenAgain) {
    start("a = -5");
    next_token(0);
    next_token(0);
    next_token(lex_signed);
    EXPECT_EQ(curr_constant.integer, -5);
    lex_rewind_token();
    EXPECT_EQ(next_token(0), tok_minus);
    EXPECT_EQ(next_token(0), tok_integer);
    EXPECT_EQ(curr_constant.integer, 5);
}

TEST_F(TokensTest, SkipToTokenReadsNothing) {
    start("a ;   & \n  ! c\n\n & x = 1");
    next_token(0);
    next_token(0);
    skip_to_token();
    EXPECT_EQ(*line_cursor, 'x');
    EXPECT_EQ(curr_token, tok_eos);
    EXPECT_EQ(next_token(0), tok_name);
    EXPECT_EQ(curr_token_pos, (source_pos{4, 4}));
}

TEST_F(TokensTest, PeekingLeavesNameAndConstantAlone) {
    start("abc 12 def 34 .and.");
    next_token(0);
    next_token(0);
    const atom *const name = curr_name.atom;
    next_token(lex_peek);
    EXPECT_EQ(curr_name.atom, name);
    EXPECT_EQ(curr_name.position, (source_pos{1, 8}));
    EXPECT_STREQ(token_text, "def");
    next_token(lex_peek);
    EXPECT_EQ(curr_constant.integer, 12);
    next_token(lex_peek);
    EXPECT_EQ(curr_name.atom, name);
    EXPECT_FALSE(lex_peeking);
}

TEST_F(TokensTest, PeekingMakesNoAtoms) {
    start("unheardof .unheardof. 77777");
    first_kinds(lex_peek | lex_label);
    EXPECT_EQ(find_atom("UNHEARDOF", 9), nullptr);
    EXPECT_EQ(find_atom(".UNHEARDOF.", 11), nullptr);
    EXPECT_EQ(find_atom("77777", 5), nullptr);
    lex_rewind_token();
    line_cursor = line_segments[0].text;
    first_kinds(lex_label);
    EXPECT_NE(find_atom("UNHEARDOF", 9), nullptr);
    EXPECT_NE(find_atom(".UNHEARDOF.", 11), nullptr);
    EXPECT_NE(find_atom("77777", 5), nullptr);
}

TEST_F(TokensTest, SpecifiersThatAreNoneMakeNoAtom) {
    start("foo=1");
    EXPECT_EQ(next_token(lex_specifier), tok_name);
    EXPECT_STREQ(token_text, "FOO");
    EXPECT_EQ(find_atom("FOO=", 4), nullptr);
    EXPECT_EQ(next_token(0), tok_integer);
}

TEST_F(TokensTest, OperatorsNameTheirAtom) {
    start("a .lt. b < c");
    next_token(0);
    next_token(0);
    const atom *const less = curr_name.atom;
    EXPECT_STREQ(less->spelling, "<");
    EXPECT_EQ(curr_name.position, (source_pos{1, 3}));
    next_token(0);
    next_token(0);
    EXPECT_EQ(curr_name.atom, less);
}

TEST_F(TokensTest, OtherPunctuationLeavesTheName) {
    start("a(b%c)");
    next_token(0);
    const atom *const a = curr_name.atom;
    next_token(0);
    EXPECT_EQ(curr_name.atom, a);
    EXPECT_EQ(curr_name.position, (source_pos{1, 1}));
}

TEST_F(TokensTest, AtTheEndOfTheSource) {
    start("a\n");
    next_token(0);
    next_token(0);
    EXPECT_FALSE(next_statement());
    EXPECT_EQ(next_token(0), tok_eos);
    EXPECT_EQ(next_token(lex_keyword | lex_label), tok_eos);
    EXPECT_EQ(curr_token_pos, (source_pos{2, 0}));
}

TEST_F(TokensTest, TheEndOfAStatementStays) {
    use_fixed_form();
    start("      a\n      b\n");
    EXPECT_EQ(next_token(0), tok_name);
    EXPECT_EQ(next_token(0), tok_eos);
    EXPECT_EQ(next_token(0), tok_eos);
    ASSERT_TRUE(next_statement());
    EXPECT_EQ(next_token(0), tok_name);
    EXPECT_EQ(curr_token_pos, (source_pos{2, 7}));
}

TEST_F(TokensTest, RewindOverLines) {
    use_fixed_form();
    start("      a =\n     1 b +\n     2 c\n      d\n");
    char *const begin = line_cursor;
    const std::string once = first_kinds(lex_peek);
    line_cursor = begin;
    EXPECT_EQ(first_kinds(0), once);
    EXPECT_EQ(once, "name assign name plus name eos");
}

// ---- looking ahead

TEST_F(TokensTest, LookaheadFindsTheFirstOfItsTokens) {
    start("a(i=1, b) = c, d");
    EXPECT_EQ(lookahead_find(tok_comma, tok_assign), 2);
    EXPECT_EQ(next_token(0), tok_name);
    EXPECT_EQ(curr_token_pos.column, 13);
    EXPECT_EQ(lookahead_find(tok_assign, tok_comma), 2);
    EXPECT_EQ(lookahead_find(tok_assign, tok_comma), 0);
}

TEST_F(TokensTest, LookaheadStopsAtAnUnmatchedParenthesis) {
    start("a + (b)) = c");
    EXPECT_EQ(lookahead_find(tok_assign), 0);
    start("a + (b)) = c");
    EXPECT_EQ(lookahead_find(tok_assign, tok_rparen), 2);
    start("a / (/ 1, 2 /)) = c");
    EXPECT_EQ(lookahead_find(tok_arrow, tok_assign, tok_comma), 0);
    start("a / (/ 1, 2 /), c");
    EXPECT_EQ(lookahead_find(tok_arrow, tok_assign, tok_comma), 3);
}

TEST_F(TokensTest, LookaheadStopsAtTheEndOfTheStatement) {
    start("a ; b = c");
    EXPECT_EQ(lookahead_find(tok_assign), 0);
    start("a ; b => c");
    EXPECT_EQ(lookahead_find(tok_arrow), 0);
    start("a ! = c");
    EXPECT_EQ(lookahead_find(tok_assign), 0);
}

TEST_F(TokensTest, LookaheadIsNotMisledByLiterals) {
    start("a '=' // \"(=\" = b");
    EXPECT_EQ(lookahead_find(tok_assign), 1);
    EXPECT_EQ(next_token(0), tok_name);
    EXPECT_EQ(curr_token_pos.column, 17);
    start("a 3H=== b");
    EXPECT_EQ(lookahead_find(tok_assign), 0);
    start("height(h, 3) = 1");
    EXPECT_EQ(lookahead_find(tok_comma, tok_assign), 2);
    start("x = 'a', 'b");
    EXPECT_EQ(lookahead_find(tok_comma), 1);
    EXPECT_EQ(lookahead_find(tok_comma), 0);
}

TEST_F(TokensTest, LookaheadTakesLongerSignsWhole) {
    for (const char *const quote : {"", " 'x'"}) {
        start(std::string("a == b >= c <= d /= e => f") + quote);
        EXPECT_EQ(lookahead_find(tok_assign), 0);
        start(std::string("a(:) :: b") + quote);
        EXPECT_EQ(lookahead_find(tok_colon), 0);
        start(std::string("a == b = c") + quote);
        EXPECT_EQ(lookahead_find(tok_assign), 1);
    }
}

TEST_F(TokensTest, LookaheadFollowsContinuation) {
    start("a & ! =\n ! c\n  (1, &\n 2) &\n = b");
    EXPECT_EQ(lookahead_find(tok_comma, tok_assign), 2);
    EXPECT_EQ(next_token(0), tok_name);
    EXPECT_EQ(curr_token_pos, (source_pos{5, 4}));
    use_fixed_form();
    start("      a ! =\nC c\n     1 (1,\n     2 2\n     3 ) = b");
    EXPECT_EQ(lookahead_find(tok_comma, tok_assign), 2);
    EXPECT_EQ(next_token(0), tok_name);
    EXPECT_EQ(curr_token_pos, (source_pos{5, 12}));
}

TEST_F(TokensTest, LookaheadReportsNothing) {
    start("a & x\n = b, ? c");
    EXPECT_EQ(messages_of([] { lookahead_find(tok_comma); }), "");
    line_cursor = line_segments[0].text;
    EXPECT_EQ(messages_of([] { lookahead_find(tok_comma, tok_arrow); }), "");
    EXPECT_FALSE(lex_peeking);
}

TEST_F(TokensTest, LookaheadByTokens) {
    start("p%q => r");
    EXPECT_EQ(lookahead_find(tok_assign, tok_arrow, tok_none), 2);
    start("p%q = r => s");
    EXPECT_EQ(lookahead_find(tok_assign, tok_arrow, tok_none), 1);
    start("a :: b = c");
    EXPECT_EQ(lookahead_find(tok_assign, tok_double_colon), 2);
    start("a ? b");
    EXPECT_EQ(lookahead_find(tok_arrow, tok_none, tok_none), 0);
}

// What the search by characters finds is what a search by tokens finds, which a third token brings about.
TEST_F(TokensTest, BothWaysOfLookingAheadAgree) {
    std::mt19937 random(5);
    const std::string alphabet = "abde01.()(),,:=/<>*+- ;%&_!\t";
    const auto add = [&](std::string &text, int count) {
        while (count-- > 0) {
            const char c = alphabet[random() % alphabet.size()];
            const bool twins = c == '=' && (text.ends_with("(/") || text.ends_with("//"));
            text += twins ? ' ' : c; // "(/=" and "//=" are nothing, whichever way they are read
        }
    };
    std::string text;
    for (int i = 0; i < 2000; ++i) {
        const bool fixed_form = i < 1000;
        text += fixed_form ? "      " : "";
        add(text, 24);
        text += fixed_form ? "\n     1" : "&\n &";
        add(text, 12);
        text += '\n';
        if (i % 1000 != 999) {
            continue;
        }
        restart_front_end(fixed_form);
        messages_of([&] {
            open_anew(text);
            while (next_statement()) {
                char *const begin = line_cursor;
                const int found = lookahead_find(tok_assign, tok_comma);
                line_cursor = begin;
                EXPECT_EQ(lookahead_find(tok_assign, tok_comma, tok_letter), found) << stmt_buffer;
                line_cursor = begin;
                const int colon = lookahead_find(tok_colon);
                line_cursor = begin;
                EXPECT_EQ(lookahead_find(tok_colon, tok_letter), colon) << stmt_buffer;
            }
        });
        text.clear();
    }
}

TEST_F(TokensTest, LookaheadAtDepthRestores) {
    start("x (1.0, 'h') + y");
    next_token(0);
    next_token(0);
    char *const cursor = line_cursor;
    const source_pos position = curr_token_pos;
    const name_locator name = curr_name;
    EXPECT_TRUE(lookahead_find_at_depth(tok_comma, false));
    EXPECT_EQ(line_cursor, cursor);
    EXPECT_EQ(curr_token, tok_lparen);
    EXPECT_EQ(curr_token_pos, position);
    EXPECT_EQ(error_pos, position);
    EXPECT_EQ(curr_name.position, name.position);
    EXPECT_STREQ(token_text, "");
    EXPECT_EQ(token_length, 0);
    lex_rewind_token();
    EXPECT_EQ(next_token(0), tok_lparen);
    EXPECT_FALSE(lookahead_find_at_depth(tok_assign, false));
}

TEST_F(TokensTest, LookaheadAtDepthBehindTheNextToken) {
    start("(a = 1)");
    EXPECT_FALSE(lookahead_find_at_depth(tok_assign, false));
    EXPECT_TRUE(lookahead_find_at_depth(tok_assign, true));
}

TEST_F(TokensTest, SkipBalancedFromAParenthesis) {
    start("a(b, (/ c(1), ')' /), d) = e");
    next_token(0);
    next_token(0);
    skip_balanced();
    EXPECT_EQ(curr_token, tok_rparen);
    EXPECT_EQ(curr_token_pos.column, 24);
    EXPECT_EQ(next_token(0), tok_assign);
}

TEST_F(TokensTest, SkipBalancedToTheEnd) {
    start("a(b, (c)");
    next_token(0);
    next_token(0);
    skip_balanced();
    EXPECT_EQ(curr_token, tok_eos);
}

TEST_F(TokensTest, SkipBalancedFromAnotherToken) {
    start(", (a), 1) b c");
    next_token(0);
    skip_balanced();
    EXPECT_EQ(curr_token, tok_name);
    EXPECT_STREQ(token_text, "b");
    next_token(0);
    skip_balanced();
    EXPECT_EQ(curr_token, tok_eos);
}

// ---- messages

TEST_F(TokensTest, MessagesOfTheTokenizer) {
    EXPECT_EQ(messages("a ? b"), error_text(1, 3, msg_unrecognized_token));
    EXPECT_EQ(messages("a 10x"), warning_text(1, 5, msg_expected_blank_as_separator));
    EXPECT_EQ(messages("'abc&\n def'"),
              error_text(2, 2, msg_continuation_line_in_character_context_must_begin_with_ampersand));
    EXPECT_EQ(messages("3Habc + 'x&"), error_text(1, 11, msg_expected_continuation_line_following_this_line) +
                                           error_text(1, 9, msg_missing_closing_quote));
}

TEST_F(TokensTest, ContinuationFaultsAreReportedOnceAWordIsDecided) {
    EXPECT_EQ(messages("f(a & b\n = 1)", {lex_keyword_arg}),
              error_text(1, 7, msg_invalid_text_following_continuation_character_ampersand));
    EXPECT_EQ(messages("f(a & b\n , 1)", {lex_keyword_arg}),
              error_text(1, 7, msg_invalid_text_following_continuation_character_ampersand));
}

TEST_F(TokensTest, LowerCaseIsReportedOnce) {
    use_strict_f77(true);
    const std::string text = "      PRINT 'abc', X\n      Y = z + w\n      V = u\n";
    const std::string short_line = warning_text(1, 0, msg_lines_less_than_72_columns_long_are_not_standard);
    EXPECT_EQ(messages(text),
              short_line + warning_text(2, 11, msg_lower_case_letters_are_not_standard_fortran_77));
    EXPECT_EQ(messages(text, {lex_peek}),
              short_line + warning_text(2, 11, msg_lower_case_letters_are_not_standard_fortran_77));
    EXPECT_EQ(messages("      INTEGer X\n", {lex_keyword}),
              short_line + warning_text(1, 12, msg_lower_case_letters_are_not_standard_fortran_77));
    EXPECT_EQ(messages("      X = 1.0e3\n"),
              short_line + warning_text(1, 14, msg_lower_case_letters_are_not_standard_fortran_77));
}

TEST_F(TokensTest, LowerCaseInFreeForm) {
    use_strict_f77(false);
    EXPECT_EQ(messages("A = 'x' // 'y'\nB = 3Habc\nC = D .or. e\n"),
              warning_text(3, 8, msg_lower_case_letters_are_not_standard_fortran_77));
    start("x = y");
    EXPECT_EQ(messages_of([] {
                  lookahead_find(tok_assign);
                  line_cursor = line_segments[0].text;
                  next_token(lex_peek);
                  next_token(0);
              }),
              warning_text(1, 1, msg_lower_case_letters_are_not_standard_fortran_77));
}

TEST_F(TokensTest, LowerCaseIsNoMatterOtherwise) { EXPECT_EQ(messages("a = b\n"), ""); }

TEST_F(TokensTest, TabsAreReportedOnceAndNotWhilePeeking) {
    use_strict_f77(false);
    EXPECT_EQ(messages("A =\tB\tC"), warning_text(1, 4, msg_tab_character_is_not_standard_fortran_77));
    EXPECT_EQ(messages("A =\tB\tC", {lex_peek}), "");
}

// Within a token of fixed form, to which the blanks behind it belong, a tab is passed over like a blank.
TEST_F(TokensTest, TabsInFixedForm) {
    use_strict_f77(true);
    const std::string short_line = warning_text(1, 0, msg_lines_less_than_72_columns_long_are_not_standard);
    EXPECT_EQ(messages("      A\t=\tB", {lex_keyword}), short_line);
    EXPECT_EQ(messages("      DO\t10", {lex_keyword}),
              short_line + warning_text(1, 9, msg_tab_character_is_not_standard_fortran_77));
}

TEST_F(TokensTest, CommentsBehindStatementsAreReportedOnce) {
    use_strict_f77(false);
    EXPECT_EQ(messages("A = B ! c\nD ! e\n"),
              warning_text(1, 7, msg_exclamation_to_indicate_comments_is_not_standard_fortran));
    EXPECT_EQ(messages("A = B ! c\n", {lex_peek}), "");
}

// ---- any text

std::string repeated(const char *piece, int count) {
    std::string result;
    while (count-- > 0) {
        result += piece;
    }
    return result;
}

// A free-form statement of `lines` lines, each of the text between ampersands.
std::string continued(const std::string &text, int lines) {
    std::string result = text;
    for (int i = 1; i < lines; ++i) {
        result += "&\n&" + text;
    }
    return result + "\n";
}

TEST_F(TokensTest, TokensAsLongAsAStatement) {
    EXPECT_EQ(kinds(continued(repeated("a", 120), 40)), "name eos");
    EXPECT_EQ(token_length, 0);
    std::string text = "'" + continued(repeated("x", 120), 40);
    EXPECT_EQ(kinds(text), "character eos");
    text.insert(text.size() - 1, "'");
    EXPECT_EQ(kinds(text), "character eos");
    EXPECT_EQ(kinds("." + continued(repeated("q", 120), 40)), "none eos");
    EXPECT_EQ(kinds("z'" + continued(repeated("0", 120), 40)), "boz eos");
    EXPECT_EQ(kinds(continued(repeated("9", 120), 40)), "integer eos");
    EXPECT_EQ(kinds(continued(repeated("9", 120), 40), {lex_label}), "label eos");
    EXPECT_EQ(kinds("1." + continued(repeated("9", 120), 40)), "real eos");
    EXPECT_EQ(kinds("1e" + continued(repeated("9", 120), 40)), "real eos");
    EXPECT_EQ(kinds("1_" + continued(repeated("9", 120), 40)), "integer eos");
    EXPECT_EQ(kinds(".true._" + continued(repeated("k", 120), 40)), "logical eos");
    EXPECT_EQ(kinds("9999H" + continued(repeated("k", 120), 40)), "hollerith eos");
}

TEST_F(TokensTest, LongNamesAreWhole) {
    open_anew(continued(repeated("ab", 60), 40));
    ASSERT_TRUE(next_statement());
    EXPECT_EQ(next_token(0), tok_name);
    EXPECT_EQ(token_length, 4800);
    EXPECT_EQ(curr_name.atom->length, 4800u);
}

TEST_F(TokensTest, FixedFormTokensUpToTheLimitOfAStatement) {
    use_fixed_form();
    std::string text = "      " + repeated("A", 66) + "\n";
    for (int i = 1; i < 45; ++i) {
        text += "     1" + repeated("A", 66) + "\n";
    }
    EXPECT_EQ(kinds(text), "name eos");
}

TEST_F(TokensTest, EveryByteInEveryPlace) {
    const char *const fronts[] = {"",    "a",  "a_",  "1",   "1.",  "1.5", "1e",     "1e+",     "1e5", "1_",
                                  "1_2", ".",  ".a",  ".a.", "'",   "'a'", "b'",     "b'1'",    "3H",  "3Ha",
                                  "-",   "(",  "/",   "*",   "<",   "=",   ">",      ":",       ";",   "k_'",
                                  "U",   "UB", "INT", "1.d", "1_a", "a =", ".true.", ".true._", "1_'", "''"};
    for (const bool fixed_form : {false, true}) {
        restart_front_end(fixed_form);
        for (const std::uint32_t mode :
             {0u, 1u, 2u, 3u, 4u, 7u, 8u, 32u, 385u, 389u, 0x200u, 0x4800u, 45288u, 0x10000u}) {
            std::string text;
            for (const char *const front : fronts) {
                for (int byte = 0; byte < 256; ++byte) {
                    if (byte != '\n') {
                        text += (fixed_form ? "      " : "") + std::string(front) + static_cast<char>(byte) +
                                "x\n";
                    }
                }
            }
            EXPECT_NE(kinds(text, {mode}), "");
        }
    }
}

TEST_F(TokensTest, RandomText) {
    std::mt19937 random(90);
    const std::string alphabet = "aBbDdEeHhOoZzTtRrUuSs_0123456789,.:;%'\"()+-*/<=> \t&&!\n\n\x80\xff?";
    for (int round = 0; round < 400; ++round) {
        const bool fixed_form = round % 2 == 1;
        restart_front_end(fixed_form);
        strict_f77_mode = round % 5 == 0;
        std::string text;
        for (int i = 0; i < 2000; ++i) {
            const char c = alphabet[random() % alphabet.size()];
            text += c;
            if (c == '\n' && fixed_form) {
                text += random() % 3 == 0 ? "     1" : "      ";
            }
        }
        const std::uint32_t mode = static_cast<std::uint32_t>(random()) & 0x1ffffu;
        kinds(text, {mode});
        messages_of([&] {
            open_anew(text);
            while (next_statement()) {
                char *const begin = line_cursor;
                lookahead_find(tok_assign, tok_comma);
                line_cursor = begin;
                lookahead_find(tok_arrow, tok_slash, tok_eos);
                line_cursor = begin;
                next_token(lex_peek);
                skip_balanced();
            }
        });
    }
}

// While peeking, a statement has the tokens of the real read; only what is not closed is no token.
TEST_F(TokensTest, PeekingSeesTheSameTokens) {
    std::mt19937 random(77);
    const std::string alphabet = "abhde_012.'(+-*/<=>: ,;%";
    for (int round = 0; round < 300; ++round) {
        restart_front_end(round % 2 == 1);
        std::string text = "      ";
        for (int i = 0; i < 60; ++i) {
            text += alphabet[random() % alphabet.size()];
        }
        const std::uint32_t mode = static_cast<std::uint32_t>(random()) & 0x1fffeu;
        std::istringstream peeked(kinds(text, {mode | lex_peek}));
        std::istringstream real(kinds(text, {mode}));
        std::string a;
        std::string b;
        while (real >> b) {
            ASSERT_TRUE(peeked >> a);
            EXPECT_TRUE(a == b || (a == "none" && (b == "character" || b == "boz" || b == "hollerith")))
                << text;
        }
        EXPECT_FALSE(peeked >> a);
    }
}

} // namespace
} // namespace zf90
