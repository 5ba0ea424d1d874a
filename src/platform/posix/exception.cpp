// Unhandled exceptions on Linux. A process has one filter, as on Windows. While a filter is set, the
// synchronous fault signals (SIGSEGV, SIGBUS, SIGFPE, SIGILL, SIGTRAP) are caught and turned into an
// exception record for it; a raised exception is a SIGTRAP sent to the raising thread, carrying the
// caller's record. What the filter answers decides:
//   EXCEPTION_EXECUTE_HANDLER    the process ends at once through _exit, with the low byte of the
//                                exception code as its status (255 where that byte is 0, so that an
//                                ended process never reports success);
//   EXCEPTION_CONTINUE_EXECUTION the thread resumes where the exception happened;
//   EXCEPTION_CONTINUE_SEARCH    the system's search goes on: the action that stood for the signal
//                                before the first filter was set runs (a program's own handler, or the
//                                default action, which ends the process by the signal).
#include "platform/os.h"

#include <csignal>
#include <cstring>
#include <ucontext.h>
#include <unistd.h>

namespace mox::os {

namespace {

constexpr int kFaultSignals[] = {SIGSEGV, SIGBUS, SIGFPE, SIGILL, SIGTRAP};

TopLevelExceptionFilter g_filter = nullptr;
bool g_handlers_installed = false;
struct sigaction g_earlier_actions[NSIG];

// The record of the exception the current thread is raising, while it raises it.
thread_local const EXCEPTION_RECORD* t_raising = nullptr;

uint32_t code_of_signal(int signal, int si_code) {
    switch (signal) {
    case SIGSEGV:
        return EXCEPTION_ACCESS_VIOLATION;
    case SIGBUS:
        return si_code == BUS_ADRALN ? EXCEPTION_DATATYPE_MISALIGNMENT : EXCEPTION_IN_PAGE_ERROR;
    case SIGILL:
        return (si_code == ILL_PRVOPC || si_code == ILL_PRVREG) ? EXCEPTION_PRIV_INSTRUCTION
                                                                : EXCEPTION_ILLEGAL_INSTRUCTION;
    case SIGFPE:
        switch (si_code) {
        case FPE_INTDIV:
            return EXCEPTION_INT_DIVIDE_BY_ZERO;
        case FPE_INTOVF:
            return EXCEPTION_INT_OVERFLOW;
        case FPE_FLTDIV:
            return EXCEPTION_FLT_DIVIDE_BY_ZERO;
        case FPE_FLTOVF:
            return EXCEPTION_FLT_OVERFLOW;
        case FPE_FLTUND:
            return EXCEPTION_FLT_UNDERFLOW;
        case FPE_FLTRES:
            return EXCEPTION_FLT_INEXACT_RESULT;
        case FPE_FLTSUB:
            return EXCEPTION_ARRAY_BOUNDS_EXCEEDED;
        default:
            return EXCEPTION_FLT_INVALID_OPERATION;
        }
    default:
        return EXCEPTION_BREAKPOINT;
    }
}

// Where the faulting instruction stands, as the exception record of Windows gives it.
void* instruction_address([[maybe_unused]] const siginfo_t* info, void* context) {
    const auto* uc = static_cast<const ucontext_t*>(context);
#if defined(__x86_64__)
    return reinterpret_cast<void*>(uc->uc_mcontext.gregs[REG_RIP]);
#elif defined(__i386__)
    return reinterpret_cast<void*>(uc->uc_mcontext.gregs[REG_EIP]);
#elif defined(__aarch64__)
    return reinterpret_cast<void*>(uc->uc_mcontext.pc);
#else
    (void)uc;
    return info->si_addr;
#endif
}

uintptr_t access_was_write(void* context) {
#if defined(__x86_64__)
    // Bit 1 of the page fault error code is set for a write.
    return (static_cast<const ucontext_t*>(context)->uc_mcontext.gregs[REG_ERR] & 2) ? 1 : 0;
#else
    (void)context;
    return 0;
#endif
}

void record_from_signal(EXCEPTION_RECORD& record, int signal, const siginfo_t* info, void* context) {
    record.ExceptionCode = code_of_signal(signal, info->si_code);
    record.ExceptionFlags = 0;
    record.ExceptionAddress = instruction_address(info, context);
    if (signal == SIGSEGV || signal == SIGBUS) {
        record.NumberParameters = 2;
        record.ExceptionInformation[0] = access_was_write(context);
        record.ExceptionInformation[1] = reinterpret_cast<uintptr_t>(info->si_addr);
    }
}

bool is_raise_of_this_thread(int signal, const siginfo_t* info) {
    return signal == SIGTRAP && t_raising != nullptr && info->si_code == SI_TKILL && info->si_pid == getpid();
}

void run_earlier_action(int signal, siginfo_t* info, void* context) {
    const struct sigaction& earlier = g_earlier_actions[signal];
    if ((earlier.sa_flags & SA_SIGINFO) && earlier.sa_sigaction != nullptr) {
        earlier.sa_sigaction(signal, info, context);
        return;
    }
    if (!(earlier.sa_flags & SA_SIGINFO) && earlier.sa_handler != SIG_DFL && earlier.sa_handler != SIG_IGN) {
        earlier.sa_handler(signal);
        return;
    }
    // The default action: a fault of the processor comes back when the instruction runs again; a
    // sent signal is sent again and arrives once this handler returns.
    struct sigaction fallback {};
    fallback.sa_handler = SIG_DFL;
    sigemptyset(&fallback.sa_mask);
    sigaction(signal, &fallback, nullptr);
    if (info->si_code <= 0)
        raise(signal);
}

// The address this function returns to: a point inside its caller, whatever inlining did around it.
__attribute__((noinline)) void* address_in_caller() { return __builtin_return_address(0); }

int exit_status_of(uint32_t code) {
    int low = static_cast<int>(code & 0xFF);
    return low != 0 ? low : 255;
}

void on_fault_signal(int signal, siginfo_t* info, void* context) {
    EXCEPTION_RECORD record{};
    if (is_raise_of_this_thread(signal, info))
        record = *t_raising;
    else
        record_from_signal(record, signal, info, context);
    EXCEPTION_POINTERS pointers{&record, context};

    TopLevelExceptionFilter filter = __atomic_load_n(&g_filter, __ATOMIC_ACQUIRE);
    int32_t verdict = filter != nullptr ? filter(&pointers) : EXCEPTION_CONTINUE_SEARCH;
    if (verdict == EXCEPTION_CONTINUE_EXECUTION)
        return;
    if (verdict == EXCEPTION_EXECUTE_HANDLER)
        _exit(exit_status_of(record.ExceptionCode));
    run_earlier_action(signal, info, context);
}

void install_handlers() {
    struct sigaction action {};
    action.sa_sigaction = on_fault_signal;
    action.sa_flags = SA_SIGINFO | SA_ONSTACK;
    sigemptyset(&action.sa_mask);
    for (int signal : kFaultSignals)
        sigaction(signal, &action, &g_earlier_actions[signal]);
}

void restore_earlier_handlers() {
    for (int signal : kFaultSignals)
        sigaction(signal, &g_earlier_actions[signal], nullptr);
}

} // namespace

TopLevelExceptionFilter SetUnhandledExceptionFilter(TopLevelExceptionFilter filter) {
    TopLevelExceptionFilter previous = __atomic_exchange_n(&g_filter, filter, __ATOMIC_ACQ_REL);
    if (filter != nullptr && !g_handlers_installed) {
        install_handlers();
        g_handlers_installed = true;
    } else if (filter == nullptr && g_handlers_installed) {
        restore_earlier_handlers();
        g_handlers_installed = false;
    }
    return previous;
}

void RaiseException(uint32_t code, uint32_t flags, uint32_t argument_count, const uintptr_t* arguments) {
    EXCEPTION_RECORD record{};
    record.ExceptionCode = code;
    record.ExceptionFlags = flags;
    // As on Windows, the exception is said to happen inside the raising function itself.
    record.ExceptionAddress = address_in_caller();
    if (arguments != nullptr) {
        record.NumberParameters =
            argument_count < EXCEPTION_MAXIMUM_PARAMETERS ? argument_count : EXCEPTION_MAXIMUM_PARAMETERS;
        std::memcpy(record.ExceptionInformation, arguments, record.NumberParameters * sizeof(uintptr_t));
    }
    const EXCEPTION_RECORD* outer = t_raising;
    t_raising = &record;
    raise(SIGTRAP);
    t_raising = outer;
}

} // namespace mox::os
