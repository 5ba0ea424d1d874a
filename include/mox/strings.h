/* Narrow and wide strings. */
#ifndef MOX_STRINGS_H
#define MOX_STRINGS_H

#include <mox/base.h>

MOX_BEGIN_DECLS

/* True for a non-null argument; exchanges nothing. */
MOX_API mox_bool mox_astring_swap(void* self);

MOX_END_DECLS

#endif
