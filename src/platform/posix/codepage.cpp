// Code pages on Linux: text is UTF-8 both for programs and for the console.
#include "platform/os.h"

namespace mox::os {

uint32_t GetACP() { return CP_UTF8; }
uint32_t GetOEMCP() { return CP_UTF8; }

} // namespace mox::os
