// Linux has no loader callback with attach and detach: a constructor and a destructor of the shared
// object stand for them, and run once each per process.
#include "core/lifecycle.h"

namespace {

__attribute__((constructor)) void on_library_load() { mox::process_attach(); }

__attribute__((destructor)) void on_library_unload() { mox::process_detach(); }

} // namespace
