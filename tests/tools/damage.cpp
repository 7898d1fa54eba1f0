// damage FILE SCRATCH: reads variants of a file of intermediate language from standard input, one to a line,
// as a place, how many characters to drop there, and the number of a character to put there or -1; loads and
// checks and prints each of them, written to the file SCRATCH, in a process of its own; prints the line of
// the fault, 0 if there is none, or the signal that ended the process with a minus.
#include "library/il_file.h"
#include "output/fortran_printer.h"
#include "output/il_dump.h"

#include <cstdio>
#include <cstring>
#include <string>
#include <sys/wait.h>
#include <unistd.h>

extern "C" [[gnu::weak]] void __gcov_dump(); // there in a build that counts what is run

namespace {

bool read_file(const char *path, std::string &text) {
    std::FILE *stream = std::fopen(path, "rb");
    if (!stream) {
        return false;
    }
    for (int c = 0; (c = std::fgetc(stream)) != EOF;) {
        text += static_cast<char>(c);
    }
    return std::fclose(stream) == 0;
}

bool write_file(const char *path, const std::string &text) {
    std::FILE *stream = std::fopen(path, "wb");
    return stream && std::fwrite(text.data(), 1, text.size(), stream) == text.size() &&
           std::fclose(stream) == 0;
}

// In the child: what the checks say.
void report_fault(const char *path) {
    zf90::loaded_il file = zf90::load_il_file(path);
    const zf90::il_failure failure = zf90::check_il_file(file);
    if (!failure.text) {
        zf90::dump_stream = std::fopen("/dev/null", "w");
        zf90::dump_il_file(file);
        zf90::add_scope_of_module(file);
        zf90::regenerate_fortran(file.header);
    }
    std::printf("%lld\n", failure.text ? static_cast<long long>(failure.line) : 0);
    std::fflush(stdout);
    if (__gcov_dump) {
        __gcov_dump();
    }
    _exit(0);
}

} // namespace

int main(int argc, char **argv) {
    std::string text;
    if (argc != 3 || !read_file(argv[1], text)) {
        return 4;
    }
    unsigned long place = 0;
    unsigned long dropped = 0;
    int character = 0;
    while (std::scanf("%lu %lu %d", &place, &dropped, &character) == 3) { // NOLINT(cert-err34-c)
        std::string variant = text.substr(0, place);
        if (character >= 0) {
            variant += static_cast<char>(character);
        }
        variant.append(text, place + dropped);
        if (!write_file(argv[2], variant)) {
            return 4;
        }
        std::fflush(stdout);
        const pid_t child = fork();
        if (child == 0) {
            report_fault(argv[2]);
        }
        int status = 0;
        waitpid(child, &status, 0);
        if (!WIFEXITED(status) || WEXITSTATUS(status) != 0) {
            std::printf("%d\n", WIFSIGNALED(status) ? -WTERMSIG(status) : -1000);
        }
    }
    return 0;
}
