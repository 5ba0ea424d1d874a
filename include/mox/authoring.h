/* Disc authoring projects. */
#ifndef MOX_AUTHORING_H
#define MOX_AUTHORING_H

#include <mox/base.h>

MOX_BEGIN_DECLS

/* The projects have no file form of their own: true when both pointers are set, nothing written
   or read. */
MOX_API mox_bool mox_dvdauthor_load_from_file(void* self, mox_file* file);
MOX_API mox_bool mox_dvdauthor_save_to_file(void* self, mox_file* file);
MOX_API mox_bool mox_spumux_load_from_file(void* self, mox_file* file);
MOX_API mox_bool mox_spumux_save_to_file(void* self, mox_file* file);

MOX_END_DECLS

#endif
