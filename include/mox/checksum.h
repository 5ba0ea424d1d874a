/* Checksums and hashes. None of these entries posts. */
#ifndef MOX_CHECKSUM_H
#define MOX_CHECKSUM_H

#include <mox/base.h>

MOX_BEGIN_DECLS

/* ---- CRC --------------------------------------------------------------------------------------- */

#define MOX_CRC_CLASS_ID 0x21642065u

/* A table-driven CRC of width 8, 16 or 32. The parameters may be written directly; they take effect
   at the next mox_crc_make. `polynomial` is in the direct form. `table` belongs to the record. */
typedef struct mox_crc {
    mox_object header;
    uint32_t width;
    uint32_t polynomial;
    uint32_t init;
    uint8_t reflect;
    uint32_t final_xor;
    void* table;
} mox_crc;

MOX_API mox_bool mox_crc_construct(mox_crc* self, void* owner);
MOX_API mox_bool mox_crc_destruct(mox_crc* self);
MOX_API mox_bool mox_crc_new(mox_crc** out, void* owner);
MOX_API mox_bool mox_crc_free(mox_crc** slot);
/* Presets 100 (8 bits), 200, 201, 202 (16 bits) and 300 (32 bits); sets the parameters only. */
MOX_API mox_bool mox_crc_preset(mox_crc* self, int32_t preset);
MOX_API mox_bool mox_crc_make(mox_crc* self);
/* Starts from `init` on every call; the result is the register xor `final_xor`. */
MOX_API int32_t mox_crc_calc(mox_crc* self, const uint8_t* data, int32_t size);
/* The five parameters as 17 little-endian bytes at the file's position; the table isn't stored. */
MOX_API mox_bool mox_crc_save_to_file(mox_crc* self, mox_file* file);
MOX_API mox_bool mox_crc_load_from_stream(mox_crc* self, mox_file* file);

MOX_END_DECLS

#endif
