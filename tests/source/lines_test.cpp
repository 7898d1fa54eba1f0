// Lines and statements: classification in both source forms, the label field, continuation, limits and the
// one-shot warnings of strict FORTRAN 77.
#include "source/lines.h"

#include "support/front_end.h"

#include <cstring>
#include <vector>

namespace zf90 {
namespace {

class LinesTest : public FrontEndTest {
protected:
    static void use_fixed_form() { restart_front_end(true); }

    // Statement texts, each with its segments' texts joined by '|'. Continuation is fetched where the text
    // ends (fixed form) or has a trailing "&" (free form).
    std::vector<std::string> statements(std::string_view text) {
        open_text(text);
        std::vector<std::string> result;
        while (next_statement()) {
            std::string s = line_cursor;
            for (;;) {
                line_cursor += std::strlen(line_cursor);
                if (!fixed_form_input && (s.empty() || s.back() != '&')) {
                    break;
                }
                if (!next_segment()) {
                    break;
                }
                s += std::string("|") + line_cursor;
            }
            result.push_back(s);
        }
        return result;
    }

    using texts = std::vector<std::string>;

    // The messages of reading the whole text.
    std::string messages(std::string_view text) {
        return messages_of([&] { statements(text); });
    }

    static std::string message(int line, int column, const char *label, error_code code) {
        char head[64];
        if (column > 0) {
            std::snprintf(head, sizeof head, "t.f90 (%3d:%2d) %s", line, column, label);
        } else {
            std::snprintf(head, sizeof head, "t.f90 (%3d) %s", line, label);
        }
        return std::string(head) + message_text(code) + "\n";
    }
    static std::string error_text(int line, int column, error_code code) {
        return message(line, column, "error:   ", code);
    }
    static std::string warning_text(int line, int column, error_code code) {
        return message(line, column, "warning: ", code);
    }
};

TEST_F(LinesTest, FreeFormCommentsAndBlankLinesArePassedOver) {
    EXPECT_EQ(statements("! c\n\n  \t\n  a = 1 ! x\n\t! d\nb\n"), (texts{"a = 1 ! x", "b"}));
}

TEST_F(LinesTest, FreeFormContinuationSkipsComments) {
    EXPECT_EQ(statements("a = &\n! comment\n\n  1 + &\n & 2\nb\n"), (texts{"a = &|1 + &|& 2", "b"}));
}

TEST_F(LinesTest, ContinuationLineWithoutAStatement) {
    EXPECT_EQ(messages("& a\nb\n& c\n"), error_text(1, 0, msg_expected_initial_line_of_statement) +
                                             error_text(3, 0, msg_expected_initial_line_of_statement));
}

TEST_F(LinesTest, FixedFormClasses) {
    use_fixed_form();
    EXPECT_EQ(statements("C comment\n"
                         "c comment\n"
                         "* comment\n"
                         "! comment\n"
                         "     ! continuation mark at the start of nothing\n"
                         "      A = 1\n"
                         "   ! comment\n"
                         "     !+ 2\n"
                         "     0B = 3\n"
                         "     1+ 4\n"
                         "\n"
                         "     &+ 5\n"
                         "D     NOT COMPILED\n"
                         "10\n"),
              (texts{"A = 1|+ 2", "B = 3|+ 4|+ 5", ""}));
}

TEST_F(LinesTest, FixedFormTextBeginsAtTheFirstNonblankBehindColumn6) {
    use_fixed_form();
    EXPECT_EQ(statements("          A = 1\n"), (texts{"A = 1"}));
}

TEST_F(LinesTest, FixedFormTextEndsAtColumn72) {
    use_fixed_form();
    const std::string line = "      " + std::string(66, 'X') + "IGNORED\n";
    EXPECT_EQ(statements(line), (texts{std::string(66, 'X')}));
    restart_front_end(true);
    EXPECT_EQ(statements(std::string(72, ' ') + "A = 1\n      B\n"), (texts{"B"}));
}

TEST_F(LinesTest, FixedFormTabs) {
    use_fixed_form();
    EXPECT_EQ(statements("\tA = 1\n\t1+ 2\n\t0B\n10\tC\n\t9+ 3\n1234\t\tD\n"),
              (texts{"A = 1|+ 2", "0B", "C|+ 3", "\tD"}));
    restart_front_end(true);
    EXPECT_EQ(statements("     \tA\n     \t1B\n"), (texts{"A|B"})) << "a tab in column 6";
}

TEST_F(LinesTest, DebugLines) {
    use_fixed_form();
    debug_lines_enabled = true;
    EXPECT_EQ(statements("D     A\nd 10  B\n"), (texts{"A", "B"}));
    EXPECT_STREQ(label_text, "10");
}

TEST_F(LinesTest, DebugLinesInStrictMode) {
    use_fixed_form();
    strict_f77_mode = true;
    const std::string pad(60, ' ');
    EXPECT_EQ(messages("D     A" + pad + "     X\nD     B" + pad + "     X\n"),
              warning_text(1, 1, msg_debugging_lines_beginning_with_d_are_not_standard) +
                  warning_text(2, 1, msg_debugging_lines_beginning_with_d_are_not_standard));
}

TEST_F(LinesTest, FixedFormLabels) {
    use_fixed_form();
    open_text("00120 A\n 1 2  B\n      C\n99999 D\n");
    ASSERT_TRUE(next_statement());
    ASSERT_NE(stmt_label.atom, nullptr);
    EXPECT_STREQ(stmt_label.atom->spelling, "120");
    EXPECT_EQ(stmt_label.position, (source_pos{1, 1}));
    ASSERT_TRUE(next_statement());
    EXPECT_STREQ(stmt_label.atom->spelling, "12");
    EXPECT_EQ(stmt_label.position, (source_pos{2, 2}));
    ASSERT_TRUE(next_statement());
    EXPECT_EQ(stmt_label.atom, nullptr);
    EXPECT_EQ(label_pos, null_pos);
    ASSERT_TRUE(next_statement());
    EXPECT_STREQ(stmt_label.atom->spelling, "99999");
}

TEST_F(LinesTest, BadLabels) {
    use_fixed_form();
    EXPECT_EQ(messages("00000 A\n 0    B\n1A    C\n  X   D\n  7  &E\n"),
              error_text(1, 1, msg_label_must_have_at_least_one_nonzero_digit) +
                  error_text(2, 2, msg_label_must_have_at_least_one_nonzero_digit) +
                  error_text(3, 2, msg_invalid_character_in_statement_label) +
                  error_text(4, 3, msg_invalid_character_in_statement_label) +
                  warning_text(5, 3, msg_label_field_of_continuation_line_is_nonblank));
}

TEST_F(LinesTest, LinesOfAnyLength) {
    for (bool fixed : {false, true}) {
        restart_front_end(fixed);
        const std::string comment = fixed ? "C" : "!";
        std::string text = comment + std::string(131, 'x') + "\n";
        text += comment + std::string(132, 'x') + "\n";
        text += comment + std::string(1000000, 'x') + "\n";
        text += "      END\n";
        EXPECT_EQ(messages(text), error_text(2, 133, msg_source_line_is_too_long) +
                                      error_text(3, 133, msg_source_line_is_too_long));
    }
}

TEST_F(LinesTest, LastLineWithoutANewline) {
    EXPECT_EQ(messages("a\nend"), warning_text(2, 4, msg_last_line_of_file_ends_without_newline));
    restart_front_end();
    EXPECT_EQ(messages(""), "");
    restart_front_end();
    EXPECT_EQ(messages("a\nend\n"), "");
}

TEST_F(LinesTest, NulBytesAreReportedAndGiveWayToBlanks) {
    using namespace std::string_literals;
    EXPECT_EQ(messages("a\0b\0c\n! \0\n"s), error_text(1, 2, msg_unrecognized_token));
    restart_front_end();
    testing::internal::CaptureStderr();
    EXPECT_EQ(statements("a\0b\n"s), (texts{"a b"}));
    testing::internal::GetCapturedStderr();
}

TEST_F(LinesTest, NulBytesOutsideOfStatementsAreNoMatter) {
    using namespace std::string_literals;
    EXPECT_EQ(messages("a ! \0\nb = '!' \0\n"s), error_text(2, 9, msg_unrecognized_token));
    restart_front_end(true);
    EXPECT_EQ(messages("      A" + std::string(65, ' ') + "\0\n"s), "");
}

TEST_F(LinesTest, DroppedLinesOfALiteralAreNotTakenForStatements) {
    std::string text = "a = 'x&\n";
    for (int i = 0; i < 45; ++i) {
        text += "&text ! " + std::to_string(i) + " &\n";
    }
    EXPECT_EQ(messages(text + "&'\nb\n"), error_text(41, 0, msg_too_many_lines_in_statement));
}

TEST_F(LinesTest, AnyByteMayStandInALine) {
    std::string all;
    for (int c = 1; c < 256; ++c) {
        if (c != '\n') {
            all += static_cast<char>(c);
        }
    }
    const std::string text = "a" + all.substr(0, 120) + "\nb" + all.substr(120) + "\n\xff\n";
    for (bool fixed : {false, true}) {
        restart_front_end(fixed);
        EXPECT_EQ(error_count, 0u);
        testing::internal::CaptureStderr();
        statements(text);
        testing::internal::GetCapturedStderr();
    }
}

TEST_F(LinesTest, CarriageReturnsAreOrdinaryCharacters) {
    EXPECT_EQ(statements("a\r\nb\n"), (texts{"a\r", "b"}));
}

TEST_F(LinesTest, FortyLinesAStatementInFixedForm) {
    use_fixed_form();
    std::string text = "      A = 1\n";
    for (int i = 0; i < 39; ++i) {
        text += "     &+1\n";
    }
    EXPECT_EQ(messages(text), "");
    restart_front_end(true);
    EXPECT_EQ(messages(text + "     &+1\n     &+1\nC\n     &+1\n      B\n"),
              error_text(41, 0, msg_too_many_lines_in_statement));
    restart_front_end(true);
    testing::internal::CaptureStderr();
    const texts found = statements(text + "     &+1\n     &+1\n      B\n");
    testing::internal::GetCapturedStderr();
    ASSERT_EQ(found.size(), 2u);
    EXPECT_EQ(found[1], "B");
}

TEST_F(LinesTest, FortyLinesAStatementInFreeForm) {
    std::string text = "a = 1";
    for (int i = 0; i < 39; ++i) {
        text += " &\n  + 1";
    }
    EXPECT_EQ(messages(text + "\nb\n"), "");
    restart_front_end();
    testing::internal::CaptureStderr();
    const texts found = statements(text + " &\n + '&' & ! more\n + '!' // \"&\" &\n + 3 ! &\nb\n");
    EXPECT_EQ(testing::internal::GetCapturedStderr(), error_text(41, 0, msg_too_many_lines_in_statement));
    ASSERT_EQ(found.size(), 2u);
    EXPECT_EQ(found[1], "b");
}

TEST_F(LinesTest, FortyLinesOf132CharactersFitTheStatement) {
    std::string text = "a" + std::string(130, 'x') + "&\n";
    for (int i = 0; i < 39; ++i) {
        text += "b" + std::string(130, 'x') + (i < 38 ? "&\n" : "\n");
    }
    EXPECT_EQ(messages(text), "");
    EXPECT_EQ(stmt_buffer_size, max_statement_lines * (max_line_length + 1));
}

TEST_F(LinesTest, RewindingFindsLoadedLinesAgain) {
    open_text("a &\nb &\nc\nd\n");
    ASSERT_TRUE(next_statement());
    char *const start = line_cursor;
    ASSERT_TRUE(next_segment());
    ASSERT_TRUE(next_segment());
    EXPECT_STREQ(line_cursor, "c");
    line_cursor = start;
    ASSERT_TRUE(next_segment());
    EXPECT_STREQ(line_cursor, "b &");
    EXPECT_EQ(position_of_cursor(line_cursor + 2), (source_pos{2, 3}));
    ASSERT_TRUE(next_segment());
    EXPECT_STREQ(line_cursor, "c");
    EXPECT_EQ(segment_count, 3);
}

TEST_F(LinesTest, PositionAtTheEndOfTheSource) {
    open_text("a\n");
    ASSERT_TRUE(next_statement());
    EXPECT_FALSE(next_statement());
    EXPECT_TRUE(at_source_end);
    EXPECT_EQ(position_of_cursor(line_cursor), (source_pos{2, 0}));
    EXPECT_TRUE(describe_position(2).at_end);
    EXPECT_FALSE(next_statement());
    EXPECT_EQ(messages_of([] { error_at(msg_unexpected_end_of_file, position_of_cursor(line_cursor)); }),
              "At end of source: error:   unexpected end of file\n");
}

// ---- free-form continuation

class ContinuationTest : public LinesTest {
protected:
    // Reads the first statement and puts the cursor on its first "&".
    bool continued(std::string_view text, bool between_tokens) {
        open_text(text);
        next_statement();
        line_cursor = std::strchr(line_cursor, '&');
        return free_form_continuation(between_tokens);
    }
};

TEST_F(ContinuationTest, BetweenTokens) {
    EXPECT_TRUE(continued("a & ! c\n  b\n", true));
    EXPECT_STREQ(line_cursor, "b");
}

TEST_F(ContinuationTest, TheNextLineMayBeginWithAnAmpersand) {
    EXPECT_TRUE(continued("a &\n  &  b\n", true));
    EXPECT_STREQ(line_cursor, "b");
}

TEST_F(ContinuationTest, InsideATokenTheNextLineMustBeginWithAnAmpersand) {
    EXPECT_FALSE(continued("a&\n  b\n", false));
    EXPECT_STREQ(line_cursor, "&");
    restart_front_end();
    EXPECT_TRUE(continued("a&\n  &b\n", false));
    EXPECT_STREQ(line_cursor, "b");
}

TEST_F(ContinuationTest, Faults) {
    EXPECT_EQ(messages_of([&] { continued("a & b\n c\n", true); }),
              error_text(1, 5, msg_invalid_text_following_continuation_character_ampersand));
    EXPECT_STREQ(line_cursor, "c");
    restart_front_end();
    EXPECT_EQ(messages_of([&] { continued("a &\n &\n", true); }),
              error_text(2, 2, msg_line_may_not_consist_of_single_ampersand));
    restart_front_end();
    EXPECT_EQ(messages_of([&] { continued("a &\n & ! c\n", true); }),
              error_text(2, 2, msg_line_may_not_consist_of_single_ampersand));
    restart_front_end();
    EXPECT_EQ(messages_of([&] { continued("a &\n! c\n", true); }),
              error_text(1, 3, msg_expected_continuation_line_following_this_line));
    EXPECT_STREQ(line_cursor, "");
}

TEST_F(ContinuationTest, PeekingReportsNothing) {
    lex_peeking = true;
    EXPECT_EQ(messages_of([&] { continued("a & b\n &\n", true); }), "");
    restart_front_end();
    lex_peeking = true;
    EXPECT_EQ(messages_of([&] { continued("a &\n", true); }), "");
    lex_peeking = false;
}

TEST_F(ContinuationTest, CommentsInFixedFormGoOnWithTheStatement) {
    use_fixed_form();
    open_text("      A ! c\n     & B ! d\n      C\n");
    next_statement();
    line_cursor = std::strchr(line_cursor, '!');
    skip_comment();
    EXPECT_STREQ(line_cursor, " B ! d");
    line_cursor = std::strchr(line_cursor, '!');
    skip_comment();
    EXPECT_STREQ(line_cursor, "");
}

// ---- #line

TEST_F(LinesTest, LineDirectives) {
    EXPECT_EQ(statements("a\n#line 5 \"x.src\"\n# 7\n #line 1\n"), (texts{"a", "#line 1"}));
    EXPECT_EQ(find_position(4).line, 7u);
    EXPECT_STREQ(find_position(4).record->file_name, "x.src");
}

TEST_F(LinesTest, BadLineDirectives) {
    EXPECT_EQ(messages("#line abc\n#line 0\n#line 4294967296\n#line 99999999999999999999999\n#line 5 "
                       "xyz\n#line 5 \"abc\n"),
              error_text(1, 7, msg_expected_line_number) + error_text(2, 7, msg_invalid_line_number) +
                  error_text(3, 7, msg_invalid_line_number) + error_text(4, 7, msg_invalid_line_number) +
                  error_text(5, 9, msg_expected_file_name) + error_text(6, 9, msg_missing_closing_quote));
    restart_front_end();
    EXPECT_EQ(messages("#line 4294967295 \"x\" junk\na\n"), "");
    EXPECT_EQ(find_position(2).line, 4294967295u);
}

TEST_F(LinesTest, WhatIsNoLineDirectiveIsAStatement) {
    EXPECT_EQ(statements("#line\n#lines 5\n#define x\n#\t line\t5\n"),
              (texts{"#line", "#lines 5", "#define x"}));
}

// ---- strict FORTRAN 77

TEST_F(LinesTest, OneShotWarnings) {
    use_fixed_form();
    strict_f77_mode = true;
    EXPECT_EQ(messages("\tA\n\tB\n! c\n! d\n#line 7\n#line 8\n"),
              warning_text(1, 0, msg_lines_less_than_72_columns_long_are_not_standard) +
                  warning_text(1, 1, msg_tab_character_is_not_standard_fortran_77) +
                  warning_text(3, 1, msg_exclamation_to_indicate_comments_is_not_standard_fortran) +
                  warning_text(5, 1, msg_line_directive_is_not_standard_fortran_77));
}

TEST_F(LinesTest, LinesOf72ColumnsAreNotShort) {
    use_fixed_form();
    strict_f77_mode = true;
    EXPECT_EQ(messages("      A" + std::string(65, ' ') + "\n"), "");
    restart_front_end(true);
    strict_f77_mode = true;
    EXPECT_EQ(messages("      A" + std::string(64, ' ') + "\n"),
              warning_text(1, 0, msg_lines_less_than_72_columns_long_are_not_standard));
}

TEST_F(LinesTest, StrictModeInFreeFormLeavesShortLinesAlone) {
    strict_f77_mode = true;
    EXPECT_EQ(messages("\ta\n\tb\n"), warning_text(1, 1, msg_tab_character_is_not_standard_fortran_77));
}

} // namespace
} // namespace zf90
