/* Containers: list, tree, array, stack, FIFO, variant, dataset. */
#ifndef MOX_CONTAINERS_H
#define MOX_CONTAINERS_H

#include <mox/base.h>

MOX_BEGIN_DECLS

/* ---- List -------------------------------------------------------------------------------------- */

/* ---- Tree -------------------------------------------------------------------------------------- */

/* ---- Array, stack and FIFO --------------------------------------------------------------------- */

MOX_END_DECLS

#endif
