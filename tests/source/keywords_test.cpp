// Keyword recognition: look-up of whole words, and the recogniser of fixed form on its own.
#include "source/keywords.h"

#include "declarations/symbols.h"
#include "source/stepping.h"
#include "source/token_fixture.h"

#include <map>

namespace zf90 {
namespace {

class KeywordsTest : public TokenFixture {
protected:
    void SetUp() override {
        FrontEndTest::SetUp();
        use_fixed_form();
    }

    static token_kind lookup(std::string_view word) { return lookup_keyword(word.data(), word.size()); }

    // What the recogniser finds at the front of a statement, and the text that it leaves.
    static token_kind recognise(const std::string &text) {
        start("      " + text);
        return fixed_keyword();
    }
    static std::string rest() { return line_cursor; }
};

TEST_F(KeywordsTest, WholeWords) {
    const std::map<std::string, token_kind> words = {
#define KEYWORD(code, word, name) {word, tok_kw_##name},
#define SPECIFIER(code, word, name) {word, tok_spec_##name},
#define OPERATOR(code, word, name) {word, tok_##name},
#define OPERATOR_FORM(code, word, name) {word, tok_##name},
#include "source/keywords.def"
    };
    EXPECT_EQ(words.size(), 98u + 37u + 18u + 8u);
    for (const auto &[word, token] : words) {
        EXPECT_EQ(lookup(word), token) << word;
    }
}

TEST_F(KeywordsTest, CaseIsNoMatter) {
    for (const bool with_case : {false, true}) {
        case_sensitive_names = with_case;
        EXPECT_EQ(lookup("EndDo"), tok_kw_enddo);
        EXPECT_EQ(lookup("unit="), tok_spec_unit);
        EXPECT_EQ(lookup(".nEQv."), tok_neqv);
        EXPECT_EQ(lookup(".true."), tok_logical);
        EXPECT_EQ(case_sensitive_names, with_case);
    }
}

TEST_F(KeywordsTest, OtherWords) {
    EXPECT_EQ(lookup("NOSUCHWORD"), tok_name);
    EXPECT_EQ(lookup("SIN"), tok_name);
    EXPECT_EQ(lookup("TEGER"), tok_name);
    EXPECT_EQ(lookup(".NOSUCHWORD."), tok_defined_op);
    EXPECT_EQ(lookup(".T"), tok_defined_op);
    EXPECT_EQ(find_atom("NOSUCHWORD", 10), nullptr);
    EXPECT_EQ(find_atom(".NOSUCHWORD.", 12), nullptr);
}

// The vocabulary in full, each word with a tail that it leaves.
TEST_F(KeywordsTest, Vocabulary) {
    const std::map<std::string, int> words = {
        {"ALLOCATABLE", 40}, {"ALLOCATE", 41},   {"ASSIGN", 42},     {"BACKSPACE", 44},   {"BLOCK", 45},
        {"CALL", 47},        {"CASE", 48},       {"CHARACTER", 49},  {"CLOSE", 50},       {"CLUDE", 141},
        {"COMMON", 51},      {"COMPLEX", 52},    {"CONTAINS", 53},   {"CONTINUE", 54},    {"CYCLE", 55},
        {"DATA", 56},        {"DEALLOCATE", 57}, {"DEFAULT", 58},    {"DIMENSION", 59},   {"DO", 60},
        {"ELSE", 63},        {"END", 66},        {"ENTRY", 80},      {"EQUIVALENCE", 81}, {"EXIT", 82},
        {"EXTERNAL", 83},    {"FILE", 84},       {"FORMAT", 85},     {"FUNCTION", 86},    {"GO", 87},
        {"IF", 89},          {"IMPLICIT", 90},   {"IN", 91},         {"LOGICAL", 99},     {"MENT", 138},
        {"MODULE", 100},     {"NAMELIST", 101},  {"NONE", 102},      {"NULLIFY", 103},    {"ONLY", 104},
        {"OPEN", 105},       {"OPERATOR", 106},  {"OPTIONAL", 107},  {"OUT", 108},        {"PARAMETER", 109},
        {"PAUSE", 110},      {"POINTER", 111},   {"PRECISION", 112}, {"PRINT", 113},      {"PRIVATE", 114},
        {"PROCEDURE", 115},  {"PROGRAM", 116},   {"PUBLIC", 117},    {"QUIRE", 142},      {"READ", 118},
        {"REAL", 119},       {"RECURSIVE", 120}, {"RESULT", 121},    {"RETURN", 122},     {"REWIND", 123},
        {"SAVE", 124},       {"SELECT", 125},    {"SEQUENCE", 127},  {"STOP", 128},       {"SUBROUTINE", 129},
        {"TARGET", 130},     {"TEGER", 143},     {"TENT", 144},      {"TERFACE", 145},    {"THEN", 131},
        {"TO", 132},         {"TRINSIC", 146},   {"TYPE", 133},      {"UBLE", 139},       {"USE", 134},
        {"WHERE", 140},      {"WHILE", 136},     {"WRITE", 137}};
    EXPECT_EQ(words.size(), 78u);
    for (const auto &[word, code] : words) {
        EXPECT_EQ(int{recognise(word + "QQ")}, code) << word;
        EXPECT_EQ(rest(), "QQ") << word;
        std::string apart;
        for (const char c : word) {
            apart += std::string(1, static_cast<char>(c + ('a' - 'A'))) + " ";
        }
        EXPECT_EQ(int{recognise(apart + "=")}, code) << word;
        EXPECT_EQ(rest(), " =") << word;
        // Nothing is found without the last letter, and nothing moves.
        const std::string cut = word.substr(0, word.size() - 1);
        EXPECT_EQ(recognise(cut), tok_name) << word;
        EXPECT_EQ(rest(), cut);
    }
}

TEST_F(KeywordsTest, NoWord) {
    for (const char *const text : {"X", "QA", "1DO", "_IF", "(IF", "'IF'", "KIND", "\x80IF", "D\xffO"}) {
        EXPECT_EQ(recognise(text), tok_name) << text;
        EXPECT_EQ(rest(), text);
        EXPECT_EQ(text_end, token_text);
    }
}

TEST_F(KeywordsTest, TheBranchForU) {
    EXPECT_EQ(recognise("USE X"), tok_kw_use);
    EXPECT_EQ(rest(), " X");
    for (const char *const text : {"UNSE", "UBXSE", "UBLXSE", "USXSE", "U1SE", "U=SE", "U'SE"}) {
        EXPECT_EQ(recognise(text), tok_kw_use) << text;
        EXPECT_EQ(rest(), "") << text;
    }
    for (const char *const text : {"U", "US", "UB", "UBL", "USSE", "UNS", "UN", "UNNSE", "USXS", "UBSE"}) {
        EXPECT_EQ(recognise(text), tok_name) << text;
        EXPECT_EQ(rest(), text);
    }
}

TEST_F(KeywordsTest, WordsOverLines) {
    start("      SUBR\nC comment\n     1   OUTINE X\n");
    EXPECT_EQ(fixed_keyword(), tok_kw_subroutine);
    EXPECT_EQ(rest(), " X");
    start("      SUBR\n     1   OUTX\n");
    char *const begin = line_cursor;
    EXPECT_EQ(fixed_keyword(), tok_name);
    EXPECT_EQ(line_cursor, begin);
}

TEST_F(KeywordsTest, TheTextOfTheWordIsAsWritten) {
    start("      In Te\tGer X");
    EXPECT_EQ(next_token(lex_keyword), tok_kw_in);
    EXPECT_STREQ(token_text, "In");
    EXPECT_EQ(next_token(lex_keyword), tok_kw_teger);
    EXPECT_STREQ(token_text, "Te\tGer");
}

} // namespace
} // namespace zf90
