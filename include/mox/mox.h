/* The whole interface of the mox library. */
#ifndef MOX_MOX_H
#define MOX_MOX_H

#include <mox/base.h>
#include <mox/core.h>
#include <mox/containers.h>
#include <mox/strings.h>
#include <mox/files.h>
#include <mox/math.h>
#include <mox/time.h>
#include <mox/image.h>
#include <mox/scene.h>
#include <mox/window.h>
#include <mox/system.h>
#include <mox/checksum.h>
#include <mox/authoring.h>
#include <mox/database.h>

#endif
