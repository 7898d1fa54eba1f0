// Preloaded into a command (LD_PRELOAD), makes one allocation of memory fail: the one whose number, counted
// from 1, stands in the environment variable FAIL_ALLOCATION; with a `+` behind it, all after it as well. The
// number of allocations goes to the file that FAIL_REPORT names.
#include <atomic>
#include <cerrno>
#include <cstddef>
#include <cstdlib>
#include <cstring>
#include <fcntl.h>
#include <sys/mman.h>
#include <unistd.h>

extern "C" {
void *__libc_malloc(std::size_t size);
void *__libc_calloc(std::size_t count, std::size_t size);
void *__libc_realloc(void *old, std::size_t size);
void *__libc_memalign(std::size_t alignment, std::size_t size);
}

namespace {

struct report {
    std::atomic<unsigned long> count;
};

// Shared with the file of the report, so that it holds the number however the command ends.
report *allocations;
unsigned long failing;
bool and_all_later;

[[gnu::constructor]] void begin_count() {
    const char *const number = std::getenv("FAIL_ALLOCATION");
    const char *const path = std::getenv("FAIL_REPORT");
    const int file = number && path ? open(path, O_RDWR | O_CREAT | O_TRUNC | O_CLOEXEC, 0666) : -1;
    if (file < 0 || ftruncate(file, sizeof(report)) != 0) {
        return;
    }
    void *const memory = mmap(nullptr, sizeof(report), PROT_READ | PROT_WRITE, MAP_SHARED, file, 0);
    close(file);
    if (memory != MAP_FAILED) {
        char *rest;
        failing = std::strtoul(number, &rest, 10);
        and_all_later = *rest == '+';
        allocations = static_cast<report *>(memory);
    }
}

bool fails() {
    if (!allocations) {
        return false;
    }
    const unsigned long number = ++allocations->count;
    const bool result = and_all_later && failing != 0 ? number >= failing : number == failing;
    if (result) {
        errno = ENOMEM;
    }
    return result;
}

} // namespace

extern "C" {

void *malloc(std::size_t size) { return fails() ? nullptr : __libc_malloc(size); }

void *calloc(std::size_t count, std::size_t size) { return fails() ? nullptr : __libc_calloc(count, size); }

void *realloc(void *old, std::size_t size) { return fails() ? nullptr : __libc_realloc(old, size); }

void *aligned_alloc(std::size_t alignment, std::size_t size) {
    return fails() ? nullptr : __libc_memalign(alignment, size);
}

int posix_memalign(void **result, std::size_t alignment, std::size_t size) {
    void *const memory = aligned_alloc(alignment, size);
    if (!memory) {
        return ENOMEM;
    }
    *result = memory;
    return 0;
}
}
