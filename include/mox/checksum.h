/* Checksums and hashes: CRC, MD5 and HMAC, the fast hash. */
#ifndef MOX_CHECKSUM_H
#define MOX_CHECKSUM_H

#include <mox/base.h>

MOX_BEGIN_DECLS

MOX_END_DECLS

#endif
