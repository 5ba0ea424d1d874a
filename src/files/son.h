// What the SON unit shares with the other documents that keep children by the held-child pattern.
#pragma once

#include <mox/core.h>

namespace mox {

// The sibling walk of a held child, starting from the child alone: its owner must be a list note,
// and `*out` becomes the data word of that note's next (or previous) neighbour. False, with a null
// `*out`, for a child without such an owner or without a neighbour. One body for every class whose
// children carry no other link (the SON tag, the archive's files and folders).
mox_bool held_sibling(void* self, void** out, bool forward);

} // namespace mox
