// Keyword recognition in both source forms.
//
// The fixed-form recogniser stops at the first word that it completes, so that IFLAG begins with IF and
// INTEGER with IN. Its vocabulary therefore holds no word that has another one in front: of INTEGER only the
// tail TEGER is left, for a second call behind IN. The classification of statements puts the pieces together,
// and takes a statement that reads as an assignment for one whatever its first letters spell.
#include "source/keywords.h"

#include "declarations/symbols.h"
#include "driver/options.h"
#include "source/stepping.h"

#include <algorithm>
#include <array>
#include <cstring>
#include <string_view>

namespace zf90 {

namespace {

struct keyword {
    std::string_view word;
    token_kind token;
};

constexpr keyword all_words[] = {
#define KEYWORD(code, word, name) {word, tok_kw_##name},
#define KEYWORD_PIECE(code, word, name) {word, tok_kw_##name},
#include "source/keywords.def"
};

constexpr std::size_t longest_word = 15; // DOUBLEPRECISION

// Whether the recogniser knows a word: none is its front, and it has no other code as a piece.
constexpr bool is_recognised(const keyword &candidate) {
    return std::ranges::none_of(all_words, [&candidate](const keyword &other) {
        return other.word == candidate.word ? other.token > candidate.token
                                            : candidate.word.starts_with(other.word);
    });
}

constexpr std::size_t recognised_count =
    static_cast<std::size_t>(std::ranges::count_if(all_words, is_recognised));

constexpr auto recognised_words = [] {
    std::array<keyword, recognised_count> table{};
    std::ranges::copy_if(all_words, table.begin(), is_recognised);
    std::ranges::sort(table, {}, &keyword::word);
    return table;
}();
static_assert(recognised_count == 78);

// The rows of the recogniser's table whose words begin with each letter: from [n] up to [n + 1].
constexpr auto first_rows = [] {
    std::array<std::uint8_t, 27> rows{};
    std::size_t row = 0;
    for (std::size_t letter = 0; letter < 26; ++letter) {
        rows[letter] = static_cast<std::uint8_t>(row);
        while (row < recognised_count && recognised_words[row].word[0] == static_cast<char>('A' + letter)) {
            ++row;
        }
    }
    rows[26] = static_cast<std::uint8_t>(row);
    return rows;
}();
static_assert(first_rows[26] == recognised_count);

// Walks the cursor over the letters of a word; the caller puts it back after a failure.
class letter_walk {
public:
    // The character at the cursor, in upper case; it becomes the last of the word.
    char take() {
        last_ = line_cursor;
        const char c = char_fold(*line_cursor);
        if (length_ < letters_.size()) {
            letters_[length_++] = c;
        }
        return c;
    }

    // The next character that is no blank, on the next line if need be.
    char step() {
        step_in_token();
        return take();
    }

    // The match is complete: the word as written becomes the token's text, or its letters alone where it is
    // spread over lines, and the cursor is left right behind it.
    void accept() {
        const auto span = static_cast<std::size_t>(last_ + 1 - start_);
        if (std::memchr(start_, '\0', span) == nullptr) {
            text_end = std::copy(start_, last_ + 1, text_end);
        } else {
            text_end = std::copy_n(letters_.begin(), length_, text_end);
        }
        line_cursor = last_ + 1;
    }

    void give_up() { line_cursor = start_; }

private:
    char *start_ = line_cursor;
    char *last_ = line_cursor;
    std::size_t length_ = 0;
    std::array<char, longest_word> letters_{};
};

// The words with U, behind that letter. An irregular branch on purpose: where neither USE nor UBLE comes, two
// more characters are read, and if they are S and E the word counts as USE with whatever stands in between,
// as in UNSE. A statement that is none by its form is sorted out like any other whose front looks like a
// keyword.
token_kind match_after_u(letter_walk &walk) {
    char c = walk.step();
    if (c == 'S') {
        c = walk.step();
        if (c == 'E') {
            return tok_kw_use;
        }
    } else if (c == 'B') {
        c = walk.step();
        if (c == 'L') {
            c = walk.step();
            if (c == 'E') {
                return tok_kw_uble;
            }
        }
    }
    return c != '\0' && walk.step() == 'S' && walk.step() == 'E' ? tok_kw_use : tok_name;
}

token_kind match_word(letter_walk &walk) {
    char c = walk.take();
    if (c < 'A' || c > 'Z') {
        return tok_name;
    }
    if (c == 'U') {
        return match_after_u(walk);
    }
    const auto letter = static_cast<std::size_t>(c - 'A');
    std::size_t first = first_rows[letter];
    std::size_t last = first_rows[letter + 1];
    for (std::size_t length = 1; first < last; ++length) {
        if (recognised_words[first].word.size() == length) {
            return recognised_words[first].token;
        }
        c = walk.step();
        while (first < last && recognised_words[first].word[length] < c) {
            ++first;
        }
        while (first < last && recognised_words[last - 1].word[length] > c) {
            --last;
        }
    }
    return tok_name;
}

} // namespace

token_kind lookup_keyword(const char *text, std::size_t length) {
    const bool case_sensitive = case_sensitive_names;
    case_sensitive_names = false;
    const atom *a = find_atom(text, length);
    case_sensitive_names = case_sensitive;
    if (a) {
        return static_cast<token_kind>(a->token_code);
    }
    return text[0] == '.' ? tok_defined_op : tok_name;
}

token_kind fixed_keyword() {
    letter_walk walk;
    const token_kind token = match_word(walk);
    if (token == tok_name) {
        walk.give_up();
    } else {
        walk.accept();
    }
    return token;
}

} // namespace zf90
