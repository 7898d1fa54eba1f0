// The layout of messages, their counting, the thresholds, and the ways in which a report ends the run.
#include "driver/diagnostics.h"

#include "support/front_end.h"

namespace zf90 {
namespace {

class DiagnosticsTest : public FrontEndTest {
protected:
    void SetUp() override {
        FrontEndTest::SetUp();
        open_text("line 1\nline 2\n");
        read_source_line();
    }
};

TEST_F(DiagnosticsTest, Layouts) {
    diagnostic_threshold = severity_remark;
    EXPECT_EQ(messages_of([] {
                  error_at(msg_expected_expression, {1, 34});
                  error_at(msg_expected_expression, {1, 5});
                  error_at(msg_expected_expression, {1, 0});
                  warning_at(msg_statement_is_unreachable, {1, 132});
                  remark_at(msg_statement_is_unreachable, {1, 1});
                  warning_at(msg_statement_is_unreachable, null_pos);
                  error_at(msg_expected_expression, null_pos);
              }),
              "t.f90 (  1:34) error:   expected an expression\n"
              "t.f90 (  1: 5) error:   expected an expression\n"
              "t.f90 (  1) error:   expected an expression\n"
              "t.f90 (  1:132) warning: statement is unreachable\n"
              "t.f90 (  1: 1) remark:  statement is unreachable\n"
              "Warning: statement is unreachable\n"
              "Error:   expected an expression\n");
    EXPECT_EQ(remark_count, 1u);
    EXPECT_EQ(warning_count, 2u);
    EXPECT_EQ(error_count, 4u);
}

TEST_F(DiagnosticsTest, FormsWithoutAPositionUseErrorPos) {
    diagnostic_threshold = severity_remark;
    error_pos = {1, 3};
    EXPECT_EQ(messages_of([] {
                  error(msg_expected_expression);
                  warning(msg_expected_expression);
                  remark(msg_expected_expression);
              }),
              "t.f90 (  1: 3) error:   expected an expression\n"
              "t.f90 (  1: 3) warning: expected an expression\n"
              "t.f90 (  1: 3) remark:  expected an expression\n");
}

TEST_F(DiagnosticsTest, ArgumentsTakeTheirPlaces) {
    EXPECT_EQ(messages_of([] {
                  error_at(msg_entity_declared_repeatedly, null_pos, "X", "SAVE");
                  error_at(msg_entity_declared_repeatedly, null_pos, "100%s");
              }),
              "Error:   entity \"X\" declared SAVE repeatedly\n"
              "Error:   entity \"100%s\" declared  repeatedly\n");
}

TEST_F(DiagnosticsTest, SuppressedOnesAreNotCounted) {
    diagnostic_threshold = severity_error;
    EXPECT_EQ(messages_of([] {
                  warning_at(msg_statement_is_unreachable, {1, 1});
                  remark_at(msg_statement_is_unreachable, {1, 1});
              }),
              "");
    EXPECT_EQ(warning_count, 0u);
    EXPECT_EQ(remark_count, 0u);
}

TEST_F(DiagnosticsTest, CodesOutOfRangeGiveTheUnknownError) {
    EXPECT_EQ(message_count, 617);
    EXPECT_STREQ(message_text(617), message_text(msg_unknown_error));
    EXPECT_STREQ(message_text(100000), "unknown error");
    EXPECT_STREQ(message_text(616), "argument must be of type double precision");
}

TEST_F(DiagnosticsTest, CatastrophesEndTheRun) {
    EXPECT_EXIT(catastrophe_at(msg_out_of_memory, {1, 2}), testing::ExitedWithCode(4),
                "^t.f90 .  1: 2. catastrophic error: out of memory\n$");
    EXPECT_EXIT(command_line_error("invalid option: %s", "-z"), testing::ExitedWithCode(4),
                "^Command-line error: invalid option: -z\n$");
    EXPECT_EXIT(report("broken", null_pos, severity_internal, {}), testing::KilledBySignal(SIGABRT),
                "Internal error:     broken\n");
}

TEST_F(DiagnosticsTest, ErrorLimit) {
    error_limit = 2;
    const auto fail_often = [] {
        for (;;) {
            warning_at(msg_statement_is_unreachable, null_pos);
            error_at(msg_expected_expression, {1, 1});
        }
    };
    EXPECT_EXIT(fail_often(), testing::ExitedWithCode(4),
                "^Warning: statement is unreachable\n"
                "t.f90 .  1: 1. error:   expected an expression\n"
                "Warning: statement is unreachable\n"
                "t.f90 .  1: 1. error:   expected an expression\n"
                "Error limit reached.\n$");
}

TEST_F(DiagnosticsTest, TheLimitIsTestedOnSuppressedReportsToo) {
    error_limit = 1;
    error_count = 1;
    diagnostic_threshold = severity_error;
    EXPECT_EXIT(warning_at(msg_statement_is_unreachable, null_pos), testing::ExitedWithCode(4),
                "^Error limit reached.\n$");
}

TEST_F(DiagnosticsTest, LongMessagesBreakAtBlanks) {
    const std::string word(600, 'x');
    EXPECT_EQ(messages_of([&] { error_at(msg_entity_declared_repeatedly, null_pos, word, word); }),
              "Error:   entity \"" + word + "\" declared\n" + std::string(10, ' ') + word + " repeatedly\n");
}

TEST_F(DiagnosticsTest, LongWordsAreCutOnlyAtTheStartOfALine) {
    const std::string word(2500, 'x');
    // Behind the prefix the word has no blank to break at within the width: the break comes before it; the
    // lines that begin with it are cut hard.
    EXPECT_EQ(messages_of([&] {
                  error_at(msg_variable_declared_and_never_referenced, {1, 1}, word);
              }),
              "t.f90 (  1: 1) error:   variable\n"
              "          \"" +
                  std::string(989, 'x') + "\n" + "          " + std::string(990, 'x') + "\n" + "          " +
                  std::string(521, 'x') + "\" declared and never referenced\n");
}

TEST_F(DiagnosticsTest, RawListing) {
    raw_listing_file = std::fopen("lst", "w");
    messages_of([] {
        error_at(msg_expected_expression, {1, 5});
        warning_at(msg_statement_is_unreachable, null_pos);
        error_at(msg_expected_expression, {1, 0});
    });
    std::fclose(raw_listing_file);
    raw_listing_file = nullptr;
    std::ifstream file("lst");
    const std::string text((std::istreambuf_iterator<char>(file)), std::istreambuf_iterator<char>());
    EXPECT_EQ(text, "E \"t.f90\"   1  5 expected an expression\n"
                    "W \"\"   0  0 statement is unreachable\n"
                    "E \"t.f90\"   1  0 expected an expression\n");
}

} // namespace
} // namespace zf90
