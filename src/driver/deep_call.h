// Recursion whose depth a source decides. A routine that calls itself along trees, types or chains of names
// makes its entry a `deep_call`: when the stack has little room left, the next one goes on on a stack of its
// own, so that depth costs memory and never the end of the stack.
#pragma once

#include <cstdint>

namespace zf90 {

// From this address downwards the stack of the thread has room only for what is between two deep calls. Zero
// before its first deep call.
extern thread_local std::uintptr_t deep_call_limit;

// Calls `run(argument)` and returns when it has; on a new stack if this one has no room.
void run_with_room(void (*run)(void *argument), void *argument);

// Calls `body()` and returns its result, which must have a default value.
template <class Body> auto deep_call(Body body) -> decltype(body()) {
    struct job {
        Body &body;
        decltype(body()) result;
    };
    job the_job{body, {}};
    if (deep_call_limit != 0 && reinterpret_cast<std::uintptr_t>(&the_job) > deep_call_limit) {
        the_job.result = body();
    } else {
        run_with_room(
            [](void *argument) {
                job &j = *static_cast<job *>(argument);
                j.result = j.body();
            },
            &the_job);
    }
    return the_job.result;
}

} // namespace zf90
