// Linked into the commands that are fuzzed: whatever a command opens for writing is /dev/null, and nothing is
// deleted. A command line made up by a fuzzer can do no harm, and the folder it runs in does not fill up.
#include <cstdio>

extern "C" {

std::FILE *__real_fopen(const char *name, const char *mode);
std::FILE *__real_freopen(const char *name, const char *mode, std::FILE *stream);

std::FILE *__wrap_fopen(const char *name, const char *mode) {
    return __real_fopen(mode[0] == 'r' ? name : "/dev/null", mode);
}

std::FILE *__wrap_freopen(const char *, const char *mode, std::FILE *stream) {
    return __real_freopen("/dev/null", mode, stream);
}

int __wrap_remove(const char *) { return 0; }
}
