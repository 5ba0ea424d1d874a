#include "core/lifecycle.h"

#include <mox/core.h>
#include <mox/image.h>
#include <mox/system.h>

namespace mox {

namespace {

uint32_t g_attach_count = 0;

} // namespace

// Error reporting comes up first and goes down last, so that every other step can post. The results
// of the steps are not looked at: a facility that fails to start does not keep the library from
// loading. The image file library joins between exceptions and sockets once it is built in.
void process_attach() {
    if (g_attach_count == 0) {
        mox_global_error_startup();
        mox_global_exception_startup();
        mox_socket_startup();
    }
    ++g_attach_count;
}

void process_detach() {
    --g_attach_count;
    if (g_attach_count == 0) {
        mox_socket_cleanup();
        mox_devil_cleanup();
        mox_global_exception_cleanup();
        mox_global_error_cleanup();
    }
}

uint32_t attach_count() { return g_attach_count; }

} // namespace mox
