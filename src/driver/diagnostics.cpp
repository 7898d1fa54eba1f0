// The layout of messages on the diagnostic stream and in the raw listing, their counting, and the two ways in
// which a report ends the run.
#include "driver/diagnostics.h"

#include "driver/driver.h"
#include "driver/options.h"
#include "source/files.h"

#include <algorithm>
#include <array>
#include <cstring>

namespace zf90 {

std::uint32_t remark_count, warning_count, error_count, catastrophe_count;
source_pos error_pos;

namespace {

constexpr int line_width = 1000;
constexpr int continuation_indent = 10;

constexpr std::array<const char *, message_count> message_table = {
#define MESSAGE(number, name, text) text,
#include "driver/messages.def"
#undef MESSAGE
};
static_assert(message_table.size() == 617);

struct severity_row {
    const char *label; // with a capital where no position stands before it
    std::uint32_t *counter;
    char listing_letter;
};

constexpr severity_row severities[] = {
    {"", nullptr, ' '},
    {"remark:  ", &remark_count, 'R'},
    {"warning: ", &warning_count, 'W'},
    {"error:   ", &error_count, 'E'},
    {"catastrophic error: ", &catastrophe_count, 'C'},
    {"command-line error: ", &catastrophe_count, 'C'},
    {"internal error:     ", &catastrophe_count, 'C'},
};

// The text of a message with its arguments in place. Memory beyond the fixed buffer is asked for only by
// arguments of many thousand characters; where there is none, the text is cut.
class expanded_text {
public:
    expanded_text(std::string_view text, std::span<const std::string_view> arguments) {
        std::size_t needed = text.size();
        for (std::string_view a : arguments) {
            needed += a.size();
        }
        if (needed > fixed_.size()) {
            allocated_ = static_cast<char *>(std::malloc(needed));
        }
        data_ = allocated_ ? allocated_ : fixed_.data();
        capacity_ = allocated_ ? needed : fixed_.size();
        for (std::size_t i = 0; i < text.size(); ++i) {
            if (text.substr(i, 2) != "%s") {
                append(text.substr(i, 1));
                continue;
            }
            ++i;
            if (!arguments.empty()) {
                append(arguments.front());
                arguments = arguments.subspan(1);
            }
        }
    }
    expanded_text(const expanded_text &) = delete;
    expanded_text &operator=(const expanded_text &) = delete;
    ~expanded_text() { std::free(allocated_); }
    std::string_view view() const { return {data_, size_}; }

private:
    void append(std::string_view piece) {
        const std::size_t n = std::min(piece.size(), capacity_ - size_);
        std::memcpy(data_ + size_, piece.data(), n);
        size_ += n;
    }

    std::array<char, 4096> fixed_;
    char *allocated_ = nullptr;
    char *data_;
    std::size_t capacity_;
    std::size_t size_ = 0;
};

void put(std::string_view text) { std::fwrite(text.data(), 1, text.size(), diagnostic_stream()); }

// The message, broken at blanks so that no line is longer than `line_width`.
void put_wrapped(std::string_view text, int column) {
    for (;;) {
        const auto width = static_cast<std::size_t>(std::max(line_width - column, 0));
        if (text.size() <= width) {
            break;
        }
        std::size_t piece = text.find_last_of(' ', width);
        if (piece != std::string_view::npos) {
            while (piece > 0 && text[piece - 1] == ' ') {
                --piece;
            }
        } else {
            piece = column <= continuation_indent ? width : 0;
        }
        put(text.substr(0, piece));
        text.remove_prefix(piece);
        text.remove_prefix(std::min(text.find_first_not_of(' '), text.size()));
        std::fprintf(diagnostic_stream(), "\n%*s", continuation_indent, "");
        column = continuation_indent;
    }
    put(text);
    put("\n");
}

} // namespace

void write_messages_by_lines() { std::setvbuf(diagnostic_stream(), nullptr, _IOLBF, BUFSIZ); }

const char *message_text(unsigned code) { return message_table[code < message_count ? code : 0]; }

void report(std::string_view text, source_pos position, severity level,
            std::span<const std::string_view> arguments) {
    if (level >= diagnostic_threshold) {
        const severity_row &row = severities[level];
        const bool has_position = position.seq != 0;
        const position_description where = describe_position(position.seq);
        int column = 0;
        if (has_position && where.at_end) {
            column += std::fprintf(diagnostic_stream(), "At end of source: ");
        } else if (has_position) {
            if (std::strcmp(where.name, "-") != 0) {
                column += std::fprintf(diagnostic_stream(), "%s ", where.name);
            }
            column += std::fprintf(diagnostic_stream(), "(%3lu", static_cast<unsigned long>(where.line));
            if (position.column > 0) {
                column += std::fprintf(diagnostic_stream(), ":%2d", position.column);
            }
            column += std::fprintf(diagnostic_stream(), ") ");
        }
        const char first = has_position ? row.label[0] : static_cast<char>(row.label[0] - 'a' + 'A');
        column += std::fprintf(diagnostic_stream(), "%c%s", first, row.label + 1);
        ++*row.counter;

        const expanded_text message(text, arguments);
        put_wrapped(message.view(), column);
        if (raw_listing_file) {
            std::fprintf(raw_listing_file, "%c \"%s\" %3lu %2d %s", row.listing_letter, where.name,
                         static_cast<unsigned long>(where.line), has_position ? position.column : 0,
                         level == severity_internal ? "(internal error) " : "");
            std::fwrite(message.view().data(), 1, message.view().size(), raw_listing_file);
            std::fputc('\n', raw_listing_file);
        }
    }
    if (level >= severity_catastrophe) {
        fe_exit(level);
    }
    // Also after a report that was suppressed.
    if (error_count + catastrophe_count >= error_limit) {
        put("Error limit reached.\n");
        fe_exit(completion_stopped);
    }
}

void command_line_error(std::string_view text, std::string_view argument) {
    error_pos = {0, 1};
    report(text, error_pos, severity_command_line, std::span(&argument, 1));
    std::abort();
}

} // namespace zf90
