// Runs a piece of a test in a child process of its own, for what must not happen in the test's own
// process: faults, a process that ends, a call that never returns.
#pragma once

#include <functional>
#include <string>

namespace mox_test {

struct ChildOutcome {
    bool exited = false; // ended by itself; `status` holds its exit status
    int status = -1;
    bool signaled = false; // ended by a signal; `signal` holds it
    int signal = 0;
    bool timed_out = false; // still running at the deadline, and then killed
    std::string output;     // what it wrote to stdout and stderr
};

// The child runs `body`, then exits with status 0. After `deadline_ms` it is killed.
ChildOutcome run_in_child(const std::function<void()>& body, int deadline_ms = 10000);

} // namespace mox_test
