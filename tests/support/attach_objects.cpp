// Windows attaches a library when it loads it as a DLL. A white-box test links the library's objects
// into the program itself, where nothing attaches them: the program does it before its tests run,
// and detaches at its end, as the loader would.
#include "core/lifecycle.h"

namespace {

struct AttachForProgram {
    AttachForProgram() { mox::process_attach(); }
    ~AttachForProgram() { mox::process_detach(); }
    AttachForProgram(const AttachForProgram&) = delete;
    AttachForProgram& operator=(const AttachForProgram&) = delete;
};

// Before any test: static objects of the program start before main.
AttachForProgram g_attach;

} // namespace
