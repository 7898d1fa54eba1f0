// Stacks for deep recursion: threads, of which only one runs at a time.
#include "driver/deep_call.h"

#include "il/arena.h"

#include <cstddef>
#include <pthread.h>

namespace zf90 {

thread_local std::uintptr_t deep_call_limit;

namespace {

// Only what is used of a stack costs memory.
constexpr std::size_t stack_size = std::size_t{8} << 20;

// What is enough between two deep calls, with the wide frames of a build with sanitizers.
constexpr std::size_t reserve = std::size_t{1} << 20;

struct start {
    void (*run)(void *argument);
    void *argument;
};

// The limit of the thread's stack; if it is not to be known, one that is always passed.
std::uintptr_t limit_of_this_stack() {
    std::uintptr_t limit = UINTPTR_MAX;
    pthread_attr_t attributes;
    if (pthread_getattr_np(pthread_self(), &attributes) == 0) {
        void *lowest;
        std::size_t size;
        if (pthread_attr_getstack(&attributes, &lowest, &size) == 0) {
            limit = reinterpret_cast<std::uintptr_t>(lowest) + reserve;
        }
        pthread_attr_destroy(&attributes);
    }
    return limit;
}

} // namespace

void run_with_room(void (*run)(void *argument), void *argument) {
    start what{run, argument};
    if (deep_call_limit == 0) {
        deep_call_limit = limit_of_this_stack();
        if (reinterpret_cast<std::uintptr_t>(&what) > deep_call_limit) {
            run(argument);
            return;
        }
    }
    pthread_attr_t attributes;
    pthread_t thread;
    pthread_attr_init(&attributes);
    pthread_attr_setstacksize(&attributes, stack_size);
    const int failure = pthread_create(
        &thread, &attributes,
        [](void *p) -> void * {
            const start &s = *static_cast<start *>(p);
            deep_call_limit = limit_of_this_stack();
            s.run(s.argument);
            return nullptr;
        },
        &what);
    pthread_attr_destroy(&attributes);
    if (failure) {
        out_of_memory();
    }
    pthread_join(thread, nullptr);
}

} // namespace zf90
