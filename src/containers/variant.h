// What the dataset needs of the variant beyond its entries.
#pragma once

#include <mox/containers.h>

namespace mox {

// Reads one saved variant from the file and drops it again, text of tag 12 included: the file moves on
// as a load would move it, and nothing of the value stays in memory.
void var_skip_in_file(mox_file* file);

} // namespace mox
