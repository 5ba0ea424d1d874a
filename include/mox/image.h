/* Colour, bitmaps and image files. */
#ifndef MOX_IMAGE_H
#define MOX_IMAGE_H

#include <mox/base.h>

MOX_BEGIN_DECLS

/* Nothing to shut down in the image library: always true. */
MOX_API mox_bool mox_devil_cleanup(void);

MOX_END_DECLS

#endif
