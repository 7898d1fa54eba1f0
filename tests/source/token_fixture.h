// What the tests of the tokenizer share: sources from text, their listings and their messages.
#pragma once

#include "source/token_listing.h"
#include "support/front_end.h"

#include <initializer_list>
#include <string>
#include <string_view>
#include <vector>

namespace zf90 {

class TokenFixture : public FrontEndTest {
protected:
    static void use_fixed_form() { restart_front_end(true); }

    static void use_strict_f77(bool fixed_form) {
        restart_front_end(fixed_form);
        strict_f77_mode = true;
    }

    // Opens a text as the first source of a compilation with the options that are set. Its last line may lack
    // the newline.
    static void open_anew(std::string text) {
        if (!text.ends_with('\n')) {
            text += '\n';
        }
        scratch_directory::write("t.f90", text);
        il_root.primary_source_file = nullptr;
        lexer_init();
        open_source_file("t.f90", include_search_list);
    }

    // Makes the text's first statement the current one.
    static void start(const std::string &text) {
        open_anew(text);
        ASSERT_TRUE(next_statement());
    }

    // The listing of the text's tokens; the messages are left for messages_of.
    static std::string listing(const std::string &text, std::initializer_list<std::uint32_t> modes = {0}) {
        open_anew(text);
        return list_tokens(std::vector<std::uint32_t>(modes));
    }

    // The messages of reading the text in these modes.
    static std::string messages(const std::string &text, std::initializer_list<std::uint32_t> modes = {0}) {
        return messages_of([&] { listing(text, modes); });
    }

    // The names of the tokens of the text, of each statement together with its ends, separated by blanks.
    static std::string kinds(const std::string &text, std::initializer_list<std::uint32_t> modes = {0}) {
        std::string result;
        testing::internal::CaptureStderr();
        const std::string lines = listing(text, modes);
        std::fflush(stderr);
        testing::internal::GetCapturedStderr();
        for (std::size_t at = 0; at < lines.size(); at = lines.find('\n', at) + 1) {
            const std::size_t name = lines.find(' ', at) + 1;
            result +=
                (result.empty() ? "" : " ") + lines.substr(name, lines.find_first_of(" \n", name) - name);
        }
        return result;
    }

    static std::string message(const char *label, int line, int column, error_code code) {
        char head[64];
        if (column > 0) {
            std::snprintf(head, sizeof head, "t.f90 (%3d:%2d) %s", line, column, label);
        } else {
            std::snprintf(head, sizeof head, "t.f90 (%3d) %s", line, label);
        }
        return std::string(head) + message_text(code) + "\n";
    }
    static std::string error_text(int line, int column, error_code code) {
        return message("error:   ", line, column, code);
    }
    static std::string warning_text(int line, int column, error_code code) {
        return message("warning: ", line, column, code);
    }
};

} // namespace zf90
