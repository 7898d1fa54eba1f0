// The command zf90-il: prints and checks files of intermediate language.
#include "driver/driver.h"
#include "library/il_file.h"
#include "output/fortran_printer.h"
#include "output/il_dump.h"
#include "tool/html_page.h"

#include <cstdio>
#include <cstring>

namespace zf90 {

namespace {

enum exit_status : std::uint8_t { status_sound = 0, status_unsound = 2, status_stopped = 4 };

void dump(loaded_il &file, const char *) {
    dump_stream = stdout;
    dump_il_file(file);
}

void print_page(loaded_il &file, const char *path) { print_html_page(file, path, stdout); }

void print_fortran(loaded_il &file, const char *) {
    dump_stream = stdout;
    add_scope_of_module(file);
    regenerate_fortran(file.header);
}

void print_nothing(loaded_il &, const char *) {}

constexpr struct {
    const char *name;
    void (*run)(loaded_il &file, const char *path);
} verbs[] = {{"dump", dump}, {"html", print_page}, {"fortran", print_fortran}, {"check", print_nothing}};

int usage() {
    std::fputs("usage: zf90-il dump|html|fortran|check FILE\n", stderr);
    return status_stopped;
}

int report_failure(const char *path, const il_failure &failure) {
    if (failure.line == 0) {
        std::fprintf(stderr, "%s: %s\n", path, failure.text);
        return status_stopped;
    }
    std::fprintf(stderr, "%s: line %llu: %s\n", path, static_cast<unsigned long long>(failure.line),
                 failure.text);
    return status_unsound;
}

int run(int argc, char **argv) {
    if (argc == 2 && std::strcmp(argv[1], "--version") == 0) {
        std::printf("zf90-il %s\n", compiler_version_text);
        return status_sound;
    }
    if (argc != 3) {
        return usage();
    }
    for (const auto &verb : verbs) {
        if (std::strcmp(argv[1], verb.name) != 0) {
            continue;
        }
        loaded_il file = load_il_file(argv[2]);
        const il_failure failure = check_il_file(file);
        if (failure.text) {
            return report_failure(argv[2], failure);
        }
        verb.run(file, argv[2]);
        if (std::fflush(stdout) != 0 || std::ferror(stdout)) {
            std::perror("standard output");
            return status_stopped;
        }
        return status_sound;
    }
    return usage();
}

} // namespace

} // namespace zf90

int main(int argc, char **argv) { return zf90::run(argc, argv); }
