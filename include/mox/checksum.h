/* Checksums and hashes: CRC, MD5 and HMAC, the fast hash. None of these entries posts. */
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

/* ---- MD5 and HMAC-MD5 -------------------------------------------------------------------------- */

/* A plain record in the caller's storage, with no class: the header-sized space at its start is
   never set by the md5 entries. Digests are 16 bytes. */
typedef struct mox_md5 {
    mox_object header;
    uint32_t count_low;
    uint32_t count_high;
    uint32_t a;
    uint32_t b;
    uint32_t c;
    uint32_t d;
    uint8_t block[64];
    uint8_t inner_pad[64];
    uint8_t outer_pad[64];
} mox_md5;

MOX_API mox_bool mox_md5_init(mox_md5* self);
MOX_API mox_bool mox_md5_update(mox_md5* self, const void* data, int32_t size);
MOX_API mox_bool mox_md5_finish(mox_md5* self, uint8_t* digest);
MOX_API mox_bool mox_md5_call(const void* data, uint32_t size, uint8_t* digest);
MOX_API mox_bool mox_md5_hmac_init(mox_md5* self, const void* key, int32_t key_size);
MOX_API mox_bool mox_md5_hmac_update(mox_md5* self, const void* data, uint32_t size);
MOX_API mox_bool mox_md5_hmac_finish(mox_md5* self, uint8_t* digest);
MOX_API mox_bool mox_md5_hmac_call(const void* key, int32_t key_size, const void* data, uint32_t size,
                                   uint8_t* digest);

/* ---- Fast hash --------------------------------------------------------------------------------- */

/* The library's own 32-bit hash of a block; 0 for null data. */
MOX_API uint32_t mox_super_fast_hash(const uint8_t* data, uint32_t size);
/* The same over a narrow string without its terminator; 0 for null. */
MOX_API uint32_t mox_super_fast_hash_string(const char* text);

MOX_END_DECLS

#endif
