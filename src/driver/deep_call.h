// Recursion whose depth a source decides. A routine that calls itself along trees, types or chains of names
// makes its entry a `deep_call`: when many of these are within each other, the next one goes on on a stack of
// its own, so that depth costs memory and never the end of the stack.
#pragma once

namespace zf90 {

// How many deep calls share a stack.
inline constexpr unsigned deep_calls_per_stack = 200;

// The number of deep calls that are under way. Only deep_call changes it.
extern unsigned deep_call_depth;

// Calls `run(argument)` on a new stack and returns when it has.
void run_on_new_stack(void (*run)(void *argument), void *argument);

// Calls `body()` and returns its result, which must have a default value.
template <class Body> auto deep_call(Body body) -> decltype(body()) {
    struct job {
        Body &body;
        decltype(body()) result;
    };
    job the_job{body, {}};
    if (++deep_call_depth % deep_calls_per_stack) {
        the_job.result = body();
    } else {
        run_on_new_stack(
            [](void *argument) {
                job &j = *static_cast<job *>(argument);
                j.result = j.body();
            },
            &the_job);
    }
    --deep_call_depth;
    return the_job.result;
}

} // namespace zf90
