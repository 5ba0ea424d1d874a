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

// The child runs `body`, then exits with status 0. After `deadline_ms` it is killed. On Windows the
// child is the test program started again for the current test only; a process that an unhandled
// exception ended is reported as ended by the signal that stands for it on POSIX systems (an access
// violation as SIGSEGV, and so on).
ChildOutcome run_in_child(const std::function<void()>& body, int deadline_ms = 10000);

// Allocation failures are shown in a child whose address space is kept at 1 GiB, so that a large
// request fails there. Where that can't be done, the reason, for the test's skip message; otherwise
// null.
const char* why_allocations_cannot_be_made_to_fail();
// In the child: sets that limit.
void limit_address_space();

} // namespace mox_test
