#include "support/child.h"

#include <cerrno>
#include <chrono>
#include <csignal>
#include <cstdio>
#include <fcntl.h>
#include <poll.h>
#include <sys/resource.h>
#include <sys/wait.h>
#include <unistd.h>

namespace mox_test {

ChildOutcome run_in_child(const std::function<void()>& body, int deadline_ms) {
    ChildOutcome outcome;
    int pipe_ends[2];
    if (pipe(pipe_ends) != 0)
        return outcome;
    std::fflush(stdout);
    std::fflush(stderr);
    pid_t pid = fork();
    if (pid < 0) {
        close(pipe_ends[0]);
        close(pipe_ends[1]);
        return outcome;
    }
    if (pid == 0) {
        dup2(pipe_ends[1], STDOUT_FILENO);
        dup2(pipe_ends[1], STDERR_FILENO);
        close(pipe_ends[0]);
        close(pipe_ends[1]);
        setvbuf(stdout, nullptr, _IONBF, 0);
        body();
        _exit(0);
    }
    close(pipe_ends[1]);
    fcntl(pipe_ends[0], F_SETFL, O_NONBLOCK);

    auto deadline = std::chrono::steady_clock::now() + std::chrono::milliseconds(deadline_ms);
    int wait_status = 0;
    bool reaped = false;
    char buffer[4096];
    for (;;) {
        ssize_t got;
        while ((got = read(pipe_ends[0], buffer, sizeof buffer)) > 0)
            outcome.output.append(buffer, static_cast<size_t>(got));
        if (!reaped && waitpid(pid, &wait_status, WNOHANG) == pid)
            reaped = true;
        if (reaped && got == 0)
            break;
        if (!reaped && std::chrono::steady_clock::now() >= deadline) {
            outcome.timed_out = true;
            kill(pid, SIGKILL);
            waitpid(pid, &wait_status, 0);
            reaped = true;
            continue;
        }
        pollfd watch{pipe_ends[0], POLLIN, 0};
        poll(&watch, 1, 10);
    }
    close(pipe_ends[0]);
    if (!outcome.timed_out) {
        if (WIFEXITED(wait_status)) {
            outcome.exited = true;
            outcome.status = WEXITSTATUS(wait_status);
        } else if (WIFSIGNALED(wait_status)) {
            outcome.signaled = true;
            outcome.signal = WTERMSIG(wait_status);
        }
    }
    return outcome;
}

const char* why_allocations_cannot_be_made_to_fail() {
#if defined(__SANITIZE_ADDRESS__)
    return "the address sanitizer's allocator does not fail under an address space limit";
#else
    return nullptr;
#endif
}

void limit_address_space() {
    rlimit limit{};
    getrlimit(RLIMIT_AS, &limit);
    limit.rlim_cur = rlim_t(1) << 30;
    setrlimit(RLIMIT_AS, &limit);
}

} // namespace mox_test
