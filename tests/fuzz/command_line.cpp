// The command with the command line of a file, for fuzzing: each line of the file is an argument, but for
// lines NAME=VALUE before the first argument, which go into the environment.
#include "driver/driver.h"

#include <cctype>
#include <cstdio>
#include <cstdlib>
#include <string>
#include <vector>

namespace {

std::string contents(const char *path) {
    std::string text;
    if (std::FILE *file = std::fopen(path, "rb")) {
        char bytes[4096];
        for (std::size_t n; (n = std::fread(bytes, 1, sizeof bytes, file)) > 0;) {
            text.append(bytes, n);
        }
        std::fclose(file);
    }
    return text;
}

bool is_assignment(const std::string &line) {
    const std::size_t sign = line.find('=');
    return sign != std::string::npos && sign > 0 && std::isupper(static_cast<unsigned char>(line[0]));
}

} // namespace

int main(int argc, char **argv) {
    static std::vector<std::string> lines;
    const std::string text = argc == 2 ? contents(argv[1]) : "";
    for (std::size_t begin = 0; begin < text.size();) {
        std::size_t end = text.find('\n', begin);
        end = end == std::string::npos ? text.size() : end;
        // As for any program, an argument ends at its first NUL.
        lines.emplace_back(text.substr(begin, end - begin).c_str());
        begin = end + 1;
    }
    static std::vector<char *> arguments = {argv[0]};
    for (std::string &line : lines) {
        if (arguments.size() == 1 && is_assignment(line)) {
            putenv(line.data());
        } else {
            arguments.push_back(line.data());
        }
    }
    const int count = static_cast<int>(arguments.size());
    arguments.push_back(nullptr);
    zf90::compile(count, arguments.data());
}
