// Attach and detach of the library to the process. The platform's loader hook calls these; they keep
// the counter and the order of the start and stop calls.
#pragma once

#include <cstdint>

namespace mox {

void process_attach();
void process_detach();
// How many attaches stand unmatched by a detach.
uint32_t attach_count();

} // namespace mox
