// Prints the tokens of a Fortran source, one a line, in the form that tests/source/token_listing.h tells, and
// the messages of the tokenizer to standard error.
//
//     print_tokens [-F] [-A] [-U] [-m MODE]... FILE|-
//
// -F, -A, -U  as of the compiler: fixed form, strict FORTRAN 77, names with case
// -m MODE     mode bits by name, as in keyword,signed, or a number; a second -m is the mode of the second
//             token of each statement, and so on; the last one holds for the rest
#include "../source/token_listing.h"

#include "driver/driver.h"
#include "driver/options.h"
#include "il/entries.h"
#include "intrinsics/seed_table.h"
#include "source/files.h"

#include <cstring>
#include <vector>

int main(int argc, char **argv) {
    using namespace zf90;
    std::vector<std::uint32_t> modes;
    const char *file = nullptr;
    for (int i = 1; i < argc; ++i) {
        const std::string_view word = argv[i];
        if (word == "-F") {
            fixed_form_input = true;
        } else if (word == "-A") {
            strict_f77_mode = true;
        } else if (word == "-U") {
            case_sensitive_names = true;
        } else if (word == "-m" && i + 1 < argc && parse_lex_mode(argv[i + 1]) != ~std::uint32_t{0}) {
            modes.push_back(parse_lex_mode(argv[++i]));
        } else if (!file && (word == "-" || word[0] != '-')) {
            file = argv[i];
        } else {
            file = nullptr;
            break;
        }
    }
    if (!file) {
        std::fprintf(stderr, "usage: print_tokens [-F] [-A] [-U] [-m MODE]... FILE|-\n");
        return 1;
    }
    if (modes.empty()) {
        modes.push_back(0);
    }
    region_init();
    il_init();
    init_seed_tables();
    lexer_init();
    il_root.primary_scope = new_scope();
    open_source_file(file, {});
    std::fputs(list_tokens(modes).c_str(), stdout);
    return error_count == 0 ? 0 : 2;
}
