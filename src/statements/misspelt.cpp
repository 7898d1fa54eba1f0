// Guesses from the words that a refused statement begins with. A word is like another one if few letters are
// missing, wrong, too many or changed about.
#include "statements/misspelt.h"

#include "declarations/symbols.h"
#include "declarations/units.h"
#include "driver/options.h"
#include "source/token_helpers.h"
#include "statements/classify.h"
#include "statements/constructs.h"
#include "statements/loop.h"

#include <algorithm>
#include <array>
#include <cstring>

namespace zf90 {

int word_distance(std::string_view a, std::string_view b) {
    using row = std::array<int, longest_word + 1>;
    row rows[3]{};
    for (std::size_t j = 0; j <= b.size(); ++j) {
        rows[0][j] = static_cast<int>(j);
    }
    for (std::size_t i = 1; i <= a.size(); ++i) {
        row &now = rows[i % 3];
        const row &before = rows[(i + 2) % 3];
        now[0] = static_cast<int>(i);
        for (std::size_t j = 1; j <= b.size(); ++j) {
            now[j] =
                std::min({before[j] + 1, now[j - 1] + 1, before[j - 1] + (a[i - 1] != b[j - 1] ? 1 : 0)});
            if (i > 1 && j > 1 && a[i - 1] == b[j - 2] && a[i - 2] == b[j - 1]) {
                now[j] = std::min(now[j], rows[(i + 1) % 3][j - 2] + 1);
            }
        }
    }
    return rows[a.size() % 3][b.size()];
}

namespace {

// The names that a statement begins with, in upper case and run together; and those that end it.
struct leading_words {
    std::array<char, longest_word> letters;
    std::size_t length = 0;

    std::string_view text() const { return {letters.data(), length}; }

    // Whether it is still short enough to be looked at.
    bool add(const char *word, std::size_t size) {
        if (length + size > longest_word) {
            return false;
        }
        std::transform(word, word + size, letters.data() + length, char_fold);
        length += size;
        return true;
    }
    bool add_token() { return add(token_text, static_cast<std::size_t>(token_length)); }

    // DO10 was meant as DO and a label.
    void drop_label_of_do() {
        std::size_t end = length;
        while (end > 0 && letters[end - 1] >= '0' && letters[end - 1] <= '9') {
            --end;
        }
        if (std::string_view(letters.data(), end) == "DO") {
            length = end;
        }
    }
};

// What stands behind the words.
enum text_form : unsigned char {
    form_parentheses, // parentheses, and nothing else
    form_control,     // an "=" and a comma, as in `I = 1, 5`, of which the words include the variable
    form_name         // one name at most
};

struct misspelt_row {
    std::string_view words;
    int tolerance;
    text_form form;
    statement_kind kind;
};

constexpr misspelt_row misspelt_rows[] = {
    {"SELECTCASE", 3, form_parentheses, stmtk_select_case},
    {"SELECT", 1, form_parentheses, stmtk_select_case},
    {"SWITCH", 0, form_parentheses, stmtk_select_case},
    {"WHERE", 1, form_parentheses, stmtk_where_construct},
    {"DOWHILE", 1, form_parentheses, stmtk_do_while},
    {"WHILE", 0, form_parentheses, stmtk_do_while},
    {"DO", 1, form_control, stmtk_do},
    {"FOR", 0, form_control, stmtk_do},
    {"ENDIF", 1, form_name, stmtk_end_if},
    {"ENDDO", 1, form_name, stmtk_end_do},
    {"ENDFOR", 0, form_name, stmtk_end_do},
    {"ENDWHILE", 0, form_name, stmtk_end_do},
    {"NEXT", 0, form_name, stmtk_cycle}, // or the end of the loop
    {"WEND", 0, form_name, stmtk_cycle},
    {"ENDSELECT", 2, form_name, stmtk_end_select},
    {"ENDCASE", 0, form_name, stmtk_end_select},
    {"ENDWHERE", 1, form_name, stmtk_end_where},
};

bool is_form_of_head(text_form form) { return form != form_name; }

bool is_like(std::string_view text, const misspelt_row &row) {
    return word_distance(text, row.words) <= row.tolerance;
}

// The current token is the first behind the words that were looked at.
bool has_form(text_form form) {
    switch (form) {
    case form_parentheses:
        if (curr_token != tok_lparen) {
            return false;
        }
        skip_balanced();
        return curr_token == tok_rparen && next_token(lex_peek) == tok_eos;
    case form_control: // behind the first word: an optional label, and the variable
        if (curr_token == tok_integer) {
            next_token(lex_peek);
        }
        return curr_token == tok_name && next_token(lex_peek) == tok_assign && lookahead_find(tok_comma) == 1;
    case form_name: break;
    }
    if (curr_token == tok_name) {
        next_token(lex_peek);
    }
    return curr_token == tok_eos;
}

// Finds the row of the words read so far; the token behind them is current. No row fits an assignment, so
// the order of the rows does not matter.
const misspelt_row *find_row(std::string_view words, misspelt_kinds kinds) {
    char *const next = token_start;
    for (const misspelt_row &row : misspelt_rows) {
        if ((kinds == misspelt_heads && !is_form_of_head(row.form)) || !is_like(words, row)) {
            continue;
        }
        const bool found = has_form(row.form);
        line_cursor = next;
        next_token(lex_peek);
        if (found) {
            return &row;
        }
    }
    return nullptr;
}

// Whether the statement is a middle one of an IF: that would not begin anything.
bool is_like_middle(std::string_view words) {
    return word_distance(words, "ELSEIF") <= 2 || word_distance(words, "ELSE") <= 1 ||
           word_distance(words, "CASE") <= 1 || word_distance(words, "ELSEWHERE") <= 2;
}

constexpr std::string_view loop_words[] = {"DO", "D0", "FOR"};

// Whether the current token is the word THEN, or shows that it has been swallowed.
bool is_then() {
    constexpr std::string_view then = "THEN";
    auto length = static_cast<std::size_t>(token_length);
    switch (curr_token) {
    case tok_name:
        // In fixed form it has run into the name before it.
        if (!fixed_form_input && length > then.size()) {
            return false;
        }
        break;
    case tok_none: // by a text without an end
        while (length > 0 && token_text[length - 1] == ' ') {
            --length;
        }
        break;
    case tok_lparen: // by a comment: `IF (!L) THEN`
    case tok_and:
    case tok_or: return true;
    default: return false;
    }
    return length >= then.size() && std::equal(then.begin(), then.end(), token_text + length - then.size(),
                                               [](char a, char b) { return a == char_fold(b); });
}

statement_kind guess(misspelt_kinds kinds) {
    leading_words words;
    line_cursor = stmt_start;
    next_token(lex_peek);
    bool middle = false;
    const misspelt_row *found = nullptr; // by as many words as possible
    while (curr_token == tok_name && words.add_token()) {
        words.drop_label_of_do();
        next_token(lex_peek);
        if (const misspelt_row *row = find_row(words.text(), kinds)) {
            found = row;
        }
        middle = middle || is_like_middle(words.text());
    }
    if (found) {
        return found->kind;
    }
    if (middle) {
        reach_state = reachable; // of the branch that it was to begin
        return stmtk_bad;
    }
    return ends_with_then() ? stmtk_if_then : stmtk_bad;
}

} // namespace

bool ends_with_then() {
    line_cursor = stmt_start;
    bool found = false;
    while (next_token(lex_peek) != tok_eos) {
        found = is_then();
    }
    return found;
}

bool begins_like_loop() {
    return std::any_of(std::begin(loop_words), std::end(loop_words), [](std::string_view word) {
        return std::equal(word.begin(), word.end(), stmt_start,
                          [](char a, char b) { return a == char_fold(b); });
    });
}

bool sets_something() {
    line_cursor = stmt_start;
    while (next_token(lex_peek) != tok_eos) {
        if (curr_token == tok_assign) {
            return true;
        }
    }
    return false;
}

bool is_like_then(char *text) {
    line_cursor = text;
    leading_words words;
    if (next_token(lex_peek) != tok_name || !words.add_token()) {
        return false;
    }
    const int wrong = word_distance(words.text(), "THEN");
    return wrong == 0 || (wrong == 1 && next_token(lex_peek) == tok_eos);
}

bool classify_misspelt(misspelt_kinds kinds) {
    curr_stmt_kind = guess(kinds);
    // Among declarations these are too much like one.
    if (stmt_phase < ph_execution &&
        (curr_stmt_kind == stmtk_where_construct || curr_stmt_kind == stmtk_if_then)) {
        curr_stmt_kind = stmtk_bad;
    }
    line_cursor = stmt_resume;
    curr_token = tok_none;
    return curr_stmt_kind != stmtk_bad;
}

namespace {

// Closes the innermost construct if it is of that kind, and otherwise takes it for ended.
void close_misspelt(construct_kind kind) {
    const bool in_case = kind == cons_select && top_construct().kind == cons_case;
    const construct_entry &entry = construct_stack[construct_depth - (in_case ? 1 : 0)];
    const bool fits = entry.kind == kind || (kind == cons_do && entry.kind == cons_do_while);
    if (!fits || entry.end_label) {
        doubt_innermost_end();
        return;
    }
    if (in_case) {
        pop_construct();
    }
    pop_construct();
}

} // namespace

// ---- units and their parts

namespace {

// What stands behind the words of a statement, as bits.
enum text_behind : unsigned char {
    behind_nothing = 1,
    behind_name = 2,          // a name alone
    behind_name_and_list = 4, // a name and "("
    behind_names = 8,         // a name and ","
    behind_slash = 16,
    behind_colon = 32,
    behind_other = 64
};

struct unit_row {
    std::string_view words;
    int tolerance;
    unsigned text; // of text_behind
    statement_kind kind;
};

constexpr unit_row unit_rows[] = {
    {"CONTAINS", 2, behind_nothing, stmtk_contains},
    {"END", 1, behind_nothing, stmtk_end},
    {"ENDBLOCKDATA", 2, behind_nothing | behind_name, stmtk_end_block_data},
    {"ENDFUNCTION", 2, behind_nothing | behind_name, stmtk_end_function},
    {"ENDINTERFACE", 2, behind_nothing, stmtk_end_interface},
    {"ENDMODULE", 1, behind_nothing | behind_name, stmtk_end_module},
    {"ENDPROGRAM", 2, behind_nothing | behind_name, stmtk_end_program},
    {"ENDSUBROUTINE", 2, behind_nothing | behind_name, stmtk_end_subroutine},
    {"ENDTYPE", 1, behind_nothing | behind_name, stmtk_end_type},
    {"BLOCKDATA", 2, behind_nothing | behind_name, stmtk_block_data},
    {"INTERFACE", 2, behind_nothing | behind_name | behind_name_and_list, stmtk_interface},
    {"MODULE", 1, behind_name, stmtk_module},
    {"MODULEPROCEDURE", 2, behind_name | behind_names, stmtk_module_procedure},
    {"NAMELIST", 2, behind_slash, stmtk_namelist},
    {"PROGRAM", 1, behind_name, stmtk_program},
    {"TYPE", 1, behind_name | behind_colon, stmtk_type_definition},
};

// The words that make a procedure of what they stand in front of, with or without a prefix.
constexpr unit_row procedure_rows[] = {
    {"FUNCTION", 2, behind_name_and_list, stmtk_subprogram},
    {"SUBROUTINE", 2, behind_name | behind_name_and_list, stmtk_subprogram},
};

constexpr int most_words = 3; // END BLOCK DATA, or a prefix of two words

program_unit_kind procedure_meant;
bool procedure_has_prefix;

bool is_word_character(char c) {
    const char folded = char_fold(c);
    return (folded >= 'A' && folded <= 'Z') || (c >= '0' && c <= '9') || c == '_';
}

char *past_word(char *p) {
    while (is_word_character(*p)) {
        ++p;
    }
    return p;
}

text_behind text_at(char *p) {
    p = past_blanks(p);
    const bool has_name = is_word_character(*p);
    if (has_name) {
        p = past_blanks(past_word(p));
    }
    switch (*p) {
    case '\0':
    case '!':
    case ';': return has_name ? behind_name : behind_nothing;
    case '(': return has_name ? behind_name_and_list : behind_other;
    case ',': return has_name ? behind_names : behind_other;
    case '/': return has_name ? behind_other : behind_slash;
    case ':': return has_name ? behind_other : behind_colon;
    default: return behind_other;
    }
}

template <std::size_t size>
const unit_row *find_unit_row(const unit_row (&rows)[size], std::string_view words, char *rest) {
    const text_behind text = text_at(rest);
    const auto found = std::find_if(std::begin(rows), std::end(rows), [&](const unit_row &row) {
        return (row.text & text) != 0 && word_distance(words, row.words) <= row.tolerance;
    });
    return found == std::end(rows) ? nullptr : found;
}

// Behind a word of a prefix: past the selector of a type.
char *past_selector(char *p) {
    p = past_blanks(p);
    if (*p == '*') {
        return past_word(past_blanks(p + 1));
    }
    if (*p == '(') {
        while (*p != '\0' && *p != ')') {
            ++p;
        }
        return *p == ')' ? p + 1 : p;
    }
    return p;
}

// Whether a statement of which the line ends at `p` is continued.
bool goes_on_behind(char *p) {
    if (text_at(p) != behind_nothing) {
        return false;
    }
    line_cursor = p;
    return next_token(lex_peek) != tok_eos;
}

// Whether FUNCTION or SUBROUTINE, or a word like them, stands in the statement; the rest of it begins at
// `rest` then.
bool find_procedure_word(char *&rest) {
    rest = stmt_start;
    for (int count = 0; count < most_words; ++count) {
        char *const word = past_blanks(rest);
        rest = past_word(word);
        leading_words text;
        if (rest == word || !text.add(word, static_cast<std::size_t>(rest - word))) {
            return false;
        }
        if (const unit_row *row = find_unit_row(procedure_rows, text.text(), rest)) {
            procedure_meant = row == procedure_rows ? uk_function : uk_subroutine;
            procedure_has_prefix = count != 0;
            return true;
        }
        rest = past_selector(rest);
    }
    return false;
}

// The same for the words of the other statements.
const unit_row *find_unit_words(char *&rest) {
    leading_words words;
    rest = stmt_start;
    for (int count = 0; count < most_words; ++count) {
        char *const word = past_blanks(rest);
        rest = past_word(word);
        if (rest == word || !words.add(word, static_cast<std::size_t>(rest - word))) {
            return nullptr;
        }
        if (const unit_row *row = find_unit_row(unit_rows, words.text(), rest)) {
            // What is not misspelt was refused for something else.
            return row->words == words.text() || goes_on_behind(rest) ? nullptr : row;
        }
    }
    return nullptr;
}

} // namespace

bool classify_misspelt_unit(bool (*may_stand)(statement_kind kind)) {
    char *rest;
    if (may_stand(stmtk_subprogram) && find_procedure_word(rest)) {
        curr_stmt_kind = stmtk_subprogram;
        stmt_resume = rest;
    } else if (const unit_row *row = find_unit_words(rest); row && may_stand(row->kind)) {
        curr_stmt_kind = row->kind;
        stmt_resume = rest;
    } else {
        line_cursor = stmt_resume;
        return false;
    }
    line_cursor = stmt_resume;
    return true;
}

bool run_misspelt() {
    switch (curr_stmt_kind) {
    case stmtk_if_then: push_refused_construct(cons_block_if, stmk_if); break;
    case stmtk_do: push_refused_construct(cons_do, stmk_ido); break;
    case stmtk_do_while: push_refused_construct(cons_do_while, stmk_while); break;
    case stmtk_select_case: push_refused_construct(cons_select, stmk_select); break;
    case stmtk_where_construct: push_refused_construct(cons_where, stmk_where); break;
    case stmtk_end_do: close_misspelt(cons_do); break;
    case stmtk_cycle: doubt_innermost_end(); break;
    case stmtk_end_if: close_misspelt(cons_block_if); break;
    case stmtk_end_select: close_misspelt(cons_select); break;
    case stmtk_end_where: close_misspelt(cons_where); break;
    case stmtk_subprogram: begin_misspelt_procedure(procedure_meant, procedure_has_prefix); break;
    default: dispatch_statement(); break;
    }
    return false;
}

} // namespace zf90
