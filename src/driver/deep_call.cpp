// Stacks for deep recursion: threads, of which only one runs at a time.
#include "driver/deep_call.h"

#include "il/arena.h"

#include <cstddef>
#include <pthread.h>

namespace zf90 {

unsigned deep_call_depth;

namespace {

// Enough for `deep_calls_per_stack` calls with the wide frames of a build with sanitizers. Only what is used
// of it costs memory.
constexpr std::size_t stack_size = std::size_t{8} << 20;

struct start {
    void (*run)(void *argument);
    void *argument;
};

} // namespace

void run_on_new_stack(void (*run)(void *argument), void *argument) {
    start what{run, argument};
    pthread_attr_t attributes;
    pthread_t thread;
    pthread_attr_init(&attributes);
    pthread_attr_setstacksize(&attributes, stack_size);
    const int failure = pthread_create(
        &thread, &attributes,
        [](void *p) -> void * {
            const start &s = *static_cast<start *>(p);
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
