/* Files and documents. */
#ifndef MOX_FILES_H
#define MOX_FILES_H

#include <mox/base.h>

MOX_BEGIN_DECLS

/* This build writes XML but does not read it: always false, silently. */
MOX_API mox_bool mox_xml_load_from_file(void* self, ...);

MOX_END_DECLS

#endif
