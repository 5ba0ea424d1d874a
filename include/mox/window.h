/* Windowing: application loop, window, graphics context, image view. */
#ifndef MOX_WINDOW_H
#define MOX_WINDOW_H

#include <mox/base.h>

MOX_BEGIN_DECLS

/* Regions and the image view's file form are placeholders: true when both pointers are set. */
MOX_API mox_bool mox_imageview_load_from_file(void* self, mox_file* file);
MOX_API mox_bool mox_imageview_save_to_file(void* self, mox_file* file);
MOX_API mox_bool mox_window_get_region(void* self, void* other);
MOX_API mox_bool mox_window_set_region(void* self, void* other);

MOX_END_DECLS

#endif
