// Windows has no fork: the test program is started again, running only the current test, and told
// through its environment which call of run_in_child it is to carry out. That call runs the body with
// its output going to the parent's pipe, and ends the process; the calls before it in the same test
// are passed over (they answer as a child that ended well), as a death test does in the same place.
#include "support/child.h"

#include <gtest/gtest.h>

#include <windows.h>

#include <chrono>
#include <csignal>
#include <cstdio>
#include <cstdlib>
#include <fcntl.h>
#include <io.h>
#include <string>

namespace mox_test {

namespace {

constexpr const char* kChildVariable = "MOX_TEST_CHILD";
constexpr const char* kPipeVariable = "MOX_TEST_CHILD_PIPE";

// The calls of run_in_child are counted per test, so that a child can find its own again.
std::string current_test_name() {
    const ::testing::TestInfo* info = ::testing::UnitTest::GetInstance()->current_test_info();
    if (info == nullptr)
        return std::string();
    return std::string(info->test_suite_name()) + "." + info->name();
}

int next_call_number() {
    static std::string counted_test;
    static int count = 0;
    std::string name = current_test_name();
    if (name != counted_test) {
        counted_test = name;
        count = 0;
    }
    return ++count;
}

std::string variable(const char* name) {
    char value[512];
    DWORD length = GetEnvironmentVariableA(name, value, sizeof value);
    return length > 0 && length < sizeof value ? std::string(value, length) : std::string();
}

[[noreturn]] void run_as_child(const std::function<void()>& body) {
    auto pipe = reinterpret_cast<HANDLE>(
        static_cast<uintptr_t>(std::strtoull(variable(kPipeVariable).c_str(), nullptr, 10)));
    std::fflush(stdout);
    std::fflush(stderr);
    int descriptor = _open_osfhandle(reinterpret_cast<intptr_t>(pipe), _O_BINARY);
    _dup2(descriptor, 1);
    _dup2(descriptor, 2);
    SetStdHandle(STD_OUTPUT_HANDLE, pipe);
    SetStdHandle(STD_ERROR_HANDLE, pipe);
    setvbuf(stdout, nullptr, _IONBF, 0);
    body();
    std::fflush(stdout);
    std::fflush(stderr);
    _exit(0);
}

// A process that an unhandled exception ended reports the exception's code; those that stand for
// the signals of POSIX systems are reported as those signals.
bool signal_of_exception(DWORD code, int* signal) {
    switch (code) {
    case 0xC0000005: // access violation
        *signal = SIGSEGV;
        return true;
    case 0xC0000006: // in-page error
        *signal = 7; // SIGBUS
        return true;
    case 0xC000001D: // illegal instruction
    case 0xC0000096: // privileged instruction
        *signal = SIGILL;
        return true;
    case 0xC0000094: // integer divide by zero
    case 0xC0000095: // integer overflow
    case 0xC000008E: // floating-point divide by zero
    case 0xC0000090: // floating-point invalid operation
        *signal = SIGFPE;
        return true;
    case 0x80000003: // breakpoint
        *signal = 5; // SIGTRAP
        return true;
    default:
        return false;
    }
}

} // namespace

ChildOutcome run_in_child(const std::function<void()>& body, int deadline_ms) {
    ChildOutcome outcome;
    const int call = next_call_number();
    const std::string me = current_test_name() + "#" + std::to_string(call);

    std::string wanted = variable(kChildVariable);
    if (!wanted.empty()) {
        if (wanted == me)
            run_as_child(body);
        outcome.exited = true;
        outcome.status = 0;
        return outcome;
    }

    SECURITY_ATTRIBUTES inherit{sizeof(SECURITY_ATTRIBUTES), nullptr, TRUE};
    HANDLE read_end = nullptr;
    HANDLE write_end = nullptr;
    if (!CreatePipe(&read_end, &write_end, &inherit, 0))
        return outcome;
    SetHandleInformation(read_end, HANDLE_FLAG_INHERIT, 0);
    HANDLE nothing = CreateFileA("NUL", GENERIC_READ | GENERIC_WRITE, FILE_SHARE_READ | FILE_SHARE_WRITE,
                                 &inherit, OPEN_EXISTING, 0, nullptr);

    char program[MAX_PATH];
    GetModuleFileNameA(nullptr, program, MAX_PATH);
    std::string command = std::string("\"") + program + "\" --gtest_filter=" + current_test_name() +
                          " --gtest_also_run_disabled_tests";

    SetEnvironmentVariableA(kChildVariable, me.c_str());
    SetEnvironmentVariableA(kPipeVariable, std::to_string(reinterpret_cast<uintptr_t>(write_end)).c_str());
    STARTUPINFOA startup{};
    startup.cb = sizeof startup;
    startup.dwFlags = STARTF_USESTDHANDLES;
    startup.hStdInput = nothing;
    startup.hStdOutput = nothing;
    startup.hStdError = nothing;
    PROCESS_INFORMATION process{};
    BOOL started = CreateProcessA(nullptr, command.data(), nullptr, nullptr, TRUE, 0, nullptr, nullptr,
                                  &startup, &process);
    SetEnvironmentVariableA(kChildVariable, nullptr);
    SetEnvironmentVariableA(kPipeVariable, nullptr);
    CloseHandle(write_end);
    CloseHandle(nothing);
    if (!started) {
        CloseHandle(read_end);
        return outcome;
    }

    auto deadline = std::chrono::steady_clock::now() + std::chrono::milliseconds(deadline_ms);
    char buffer[4096];
    for (;;) {
        DWORD available = 0;
        while (PeekNamedPipe(read_end, nullptr, 0, nullptr, &available, nullptr) && available > 0) {
            DWORD got = 0;
            if (!ReadFile(read_end, buffer, sizeof buffer, &got, nullptr) || got == 0)
                break;
            outcome.output.append(buffer, got);
        }
        if (WaitForSingleObject(process.hProcess, 10) == WAIT_OBJECT_0) {
            // Whatever is still in the pipe.
            DWORD got = 0;
            while (PeekNamedPipe(read_end, nullptr, 0, nullptr, &available, nullptr) && available > 0 &&
                   ReadFile(read_end, buffer, sizeof buffer, &got, nullptr) && got > 0)
                outcome.output.append(buffer, got);
            break;
        }
        if (std::chrono::steady_clock::now() >= deadline) {
            outcome.timed_out = true;
            TerminateProcess(process.hProcess, 1);
            WaitForSingleObject(process.hProcess, INFINITE);
            break;
        }
    }
    CloseHandle(read_end);
    if (!outcome.timed_out) {
        DWORD code = 0;
        GetExitCodeProcess(process.hProcess, &code);
        int signal = 0;
        if (signal_of_exception(code, &signal)) {
            outcome.signaled = true;
            outcome.signal = signal;
        } else {
            outcome.exited = true;
            outcome.status = static_cast<int>(code);
        }
    }
    CloseHandle(process.hThread);
    CloseHandle(process.hProcess);
    return outcome;
}

// Windows keeps a process's memory within a limit through a job object; wine accepts the limit but
// doesn't enforce it, and says who it is through an export of its own.
const char* why_allocations_cannot_be_made_to_fail() {
    HMODULE ntdll = GetModuleHandleA("ntdll.dll");
    if (ntdll != nullptr && GetProcAddress(ntdll, "wine_get_version") != nullptr)
        return "wine doesn't enforce the memory limit of a job object";
    return nullptr;
}

void limit_address_space() {
    HANDLE job = CreateJobObjectA(nullptr, nullptr);
    if (job == nullptr)
        return;
    JOBOBJECT_EXTENDED_LIMIT_INFORMATION limit{};
    limit.BasicLimitInformation.LimitFlags = JOB_OBJECT_LIMIT_PROCESS_MEMORY;
    limit.ProcessMemoryLimit = static_cast<SIZE_T>(1) << 30;
    SetInformationJobObject(job, JobObjectExtendedLimitInformation, &limit, sizeof limit);
    AssignProcessToJobObject(job, GetCurrentProcess());
}

} // namespace mox_test
