// MD5 and HMAC-MD5 over a record in the caller's storage. The transform is fully unrolled and reads
// the block's words byte by byte, so the digest is the same on any byte order; whole blocks are read
// straight from the caller's buffer.
#include <mox/checksum.h>

#include <cstddef>
#include <cstring>

namespace mox {

namespace {

#if UINTPTR_MAX == 0xFFFFFFFFu
static_assert(sizeof(mox_md5) == 232 && offsetof(mox_md5, count_low) == 16 && offsetof(mox_md5, block) == 40);
#endif

constexpr uint32_t kBlockBytes = 64;

inline uint32_t load_le32(const uint8_t* in) {
    return static_cast<uint32_t>(in[0]) | (static_cast<uint32_t>(in[1]) << 8) |
           (static_cast<uint32_t>(in[2]) << 16) | (static_cast<uint32_t>(in[3]) << 24);
}

inline void store_le32(uint8_t* out, uint32_t value) {
    out[0] = static_cast<uint8_t>(value);
    out[1] = static_cast<uint8_t>(value >> 8);
    out[2] = static_cast<uint8_t>(value >> 16);
    out[3] = static_cast<uint8_t>(value >> 24);
}

inline uint32_t rotate_left(uint32_t value, int count) { return (value << count) | (value >> (32 - count)); }

// Scratch that held key material or message state is cleared in a way the optimiser may not drop.
void wipe(void* memory, size_t size) {
    std::memset(memory, 0, size);
    __asm__ __volatile__("" : : "r"(memory) : "memory");
}

// The first, third and fourth round functions, in the forms that need the fewest operations.
#define MOX_MD5_F(x, y, z) ((z) ^ ((x) & ((y) ^ (z))))
#define MOX_MD5_H(x, y, z) ((x) ^ (y) ^ (z))
#define MOX_MD5_I(x, y, z) ((y) ^ ((x) | ~(z)))
// The second round function is split over two additions, so that the half that waits for `b`, the
// value just computed, is a single operation.
#define MOX_MD5_G_STEP(a, b, c, d, word, constant, shift)                                                    \
    a += (~(d) & (c)) + (word) + (constant);                                                                 \
    a += (d) & (b);                                                                                          \
    a = rotate_left(a, shift) + (b)
#define MOX_MD5_STEP(f, a, b, c, d, word, constant, shift)                                                   \
    a += f(b, c, d) + (word) + (constant);                                                                   \
    a = rotate_left(a, shift) + (b)

void transform(mox_md5* state, const uint8_t* block) {
    uint32_t x[16];
    for (int i = 0; i < 16; ++i)
        x[i] = load_le32(block + 4 * i);
    uint32_t a = state->a, b = state->b, c = state->c, d = state->d;

    MOX_MD5_STEP(MOX_MD5_F, a, b, c, d, x[0], 0xd76aa478, 7);
    MOX_MD5_STEP(MOX_MD5_F, d, a, b, c, x[1], 0xe8c7b756, 12);
    MOX_MD5_STEP(MOX_MD5_F, c, d, a, b, x[2], 0x242070db, 17);
    MOX_MD5_STEP(MOX_MD5_F, b, c, d, a, x[3], 0xc1bdceee, 22);
    MOX_MD5_STEP(MOX_MD5_F, a, b, c, d, x[4], 0xf57c0faf, 7);
    MOX_MD5_STEP(MOX_MD5_F, d, a, b, c, x[5], 0x4787c62a, 12);
    MOX_MD5_STEP(MOX_MD5_F, c, d, a, b, x[6], 0xa8304613, 17);
    MOX_MD5_STEP(MOX_MD5_F, b, c, d, a, x[7], 0xfd469501, 22);
    MOX_MD5_STEP(MOX_MD5_F, a, b, c, d, x[8], 0x698098d8, 7);
    MOX_MD5_STEP(MOX_MD5_F, d, a, b, c, x[9], 0x8b44f7af, 12);
    MOX_MD5_STEP(MOX_MD5_F, c, d, a, b, x[10], 0xffff5bb1, 17);
    MOX_MD5_STEP(MOX_MD5_F, b, c, d, a, x[11], 0x895cd7be, 22);
    MOX_MD5_STEP(MOX_MD5_F, a, b, c, d, x[12], 0x6b901122, 7);
    MOX_MD5_STEP(MOX_MD5_F, d, a, b, c, x[13], 0xfd987193, 12);
    MOX_MD5_STEP(MOX_MD5_F, c, d, a, b, x[14], 0xa679438e, 17);
    MOX_MD5_STEP(MOX_MD5_F, b, c, d, a, x[15], 0x49b40821, 22);

    MOX_MD5_G_STEP(a, b, c, d, x[1], 0xf61e2562, 5);
    MOX_MD5_G_STEP(d, a, b, c, x[6], 0xc040b340, 9);
    MOX_MD5_G_STEP(c, d, a, b, x[11], 0x265e5a51, 14);
    MOX_MD5_G_STEP(b, c, d, a, x[0], 0xe9b6c7aa, 20);
    MOX_MD5_G_STEP(a, b, c, d, x[5], 0xd62f105d, 5);
    MOX_MD5_G_STEP(d, a, b, c, x[10], 0x02441453, 9);
    MOX_MD5_G_STEP(c, d, a, b, x[15], 0xd8a1e681, 14);
    MOX_MD5_G_STEP(b, c, d, a, x[4], 0xe7d3fbc8, 20);
    MOX_MD5_G_STEP(a, b, c, d, x[9], 0x21e1cde6, 5);
    MOX_MD5_G_STEP(d, a, b, c, x[14], 0xc33707d6, 9);
    MOX_MD5_G_STEP(c, d, a, b, x[3], 0xf4d50d87, 14);
    MOX_MD5_G_STEP(b, c, d, a, x[8], 0x455a14ed, 20);
    MOX_MD5_G_STEP(a, b, c, d, x[13], 0xa9e3e905, 5);
    MOX_MD5_G_STEP(d, a, b, c, x[2], 0xfcefa3f8, 9);
    MOX_MD5_G_STEP(c, d, a, b, x[7], 0x676f02d9, 14);
    MOX_MD5_G_STEP(b, c, d, a, x[12], 0x8d2a4c8a, 20);

    MOX_MD5_STEP(MOX_MD5_H, a, b, c, d, x[5], 0xfffa3942, 4);
    MOX_MD5_STEP(MOX_MD5_H, d, a, b, c, x[8], 0x8771f681, 11);
    MOX_MD5_STEP(MOX_MD5_H, c, d, a, b, x[11], 0x6d9d6122, 16);
    MOX_MD5_STEP(MOX_MD5_H, b, c, d, a, x[14], 0xfde5380c, 23);
    MOX_MD5_STEP(MOX_MD5_H, a, b, c, d, x[1], 0xa4beea44, 4);
    MOX_MD5_STEP(MOX_MD5_H, d, a, b, c, x[4], 0x4bdecfa9, 11);
    MOX_MD5_STEP(MOX_MD5_H, c, d, a, b, x[7], 0xf6bb4b60, 16);
    MOX_MD5_STEP(MOX_MD5_H, b, c, d, a, x[10], 0xbebfbc70, 23);
    MOX_MD5_STEP(MOX_MD5_H, a, b, c, d, x[13], 0x289b7ec6, 4);
    MOX_MD5_STEP(MOX_MD5_H, d, a, b, c, x[0], 0xeaa127fa, 11);
    MOX_MD5_STEP(MOX_MD5_H, c, d, a, b, x[3], 0xd4ef3085, 16);
    MOX_MD5_STEP(MOX_MD5_H, b, c, d, a, x[6], 0x04881d05, 23);
    MOX_MD5_STEP(MOX_MD5_H, a, b, c, d, x[9], 0xd9d4d039, 4);
    MOX_MD5_STEP(MOX_MD5_H, d, a, b, c, x[12], 0xe6db99e5, 11);
    MOX_MD5_STEP(MOX_MD5_H, c, d, a, b, x[15], 0x1fa27cf8, 16);
    MOX_MD5_STEP(MOX_MD5_H, b, c, d, a, x[2], 0xc4ac5665, 23);

    MOX_MD5_STEP(MOX_MD5_I, a, b, c, d, x[0], 0xf4292244, 6);
    MOX_MD5_STEP(MOX_MD5_I, d, a, b, c, x[7], 0x432aff97, 10);
    MOX_MD5_STEP(MOX_MD5_I, c, d, a, b, x[14], 0xab9423a7, 15);
    MOX_MD5_STEP(MOX_MD5_I, b, c, d, a, x[5], 0xfc93a039, 21);
    MOX_MD5_STEP(MOX_MD5_I, a, b, c, d, x[12], 0x655b59c3, 6);
    MOX_MD5_STEP(MOX_MD5_I, d, a, b, c, x[3], 0x8f0ccc92, 10);
    MOX_MD5_STEP(MOX_MD5_I, c, d, a, b, x[10], 0xffeff47d, 15);
    MOX_MD5_STEP(MOX_MD5_I, b, c, d, a, x[1], 0x85845dd1, 21);
    MOX_MD5_STEP(MOX_MD5_I, a, b, c, d, x[8], 0x6fa87e4f, 6);
    MOX_MD5_STEP(MOX_MD5_I, d, a, b, c, x[15], 0xfe2ce6e0, 10);
    MOX_MD5_STEP(MOX_MD5_I, c, d, a, b, x[6], 0xa3014314, 15);
    MOX_MD5_STEP(MOX_MD5_I, b, c, d, a, x[13], 0x4e0811a1, 21);
    MOX_MD5_STEP(MOX_MD5_I, a, b, c, d, x[4], 0xf7537e82, 6);
    MOX_MD5_STEP(MOX_MD5_I, d, a, b, c, x[11], 0xbd3af235, 10);
    MOX_MD5_STEP(MOX_MD5_I, c, d, a, b, x[2], 0x2ad7d2bb, 15);
    MOX_MD5_STEP(MOX_MD5_I, b, c, d, a, x[9], 0xeb86d391, 21);

    state->a += a;
    state->b += b;
    state->c += c;
    state->d += d;
}

#undef MOX_MD5_F
#undef MOX_MD5_H
#undef MOX_MD5_I
#undef MOX_MD5_STEP
#undef MOX_MD5_G_STEP

void start(mox_md5* self) {
    self->count_low = 0;
    self->count_high = 0;
    self->a = 0x67452301;
    self->b = 0xEFCDAB89;
    self->c = 0x98BADCFE;
    self->d = 0x10325476;
}

// The shared body of every update; the entries check their arguments and pass the size on whole.
void take(mox_md5* self, const uint8_t* data, uint32_t size) {
    uint32_t pending = self->count_low % kBlockBytes;
    uint32_t before = self->count_low;
    self->count_low += size;
    if (self->count_low < before)
        ++self->count_high;
    if (pending != 0 && size >= kBlockBytes - pending) {
        uint32_t fill = kBlockBytes - pending;
        std::memcpy(self->block + pending, data, fill);
        transform(self, self->block);
        data += fill;
        size -= fill;
        pending = 0;
    }
    for (; size >= kBlockBytes; data += kBlockBytes, size -= kBlockBytes)
        transform(self, data);
    if (size != 0)
        std::memcpy(self->block + pending, data, size);
}

void finish(mox_md5* self, uint8_t* digest) {
    static constexpr uint8_t kPadding[kBlockBytes] = {0x80};
    uint8_t bits[8];
    store_le32(bits, self->count_low << 3);
    store_le32(bits + 4, (self->count_high << 3) | (self->count_low >> 29));
    uint32_t pending = self->count_low % kBlockBytes;
    take(self, kPadding, pending < 56 ? 56 - pending : 120 - pending);
    take(self, bits, 8);
    store_le32(digest, self->a);
    store_le32(digest + 4, self->b);
    store_le32(digest + 8, self->c);
    store_le32(digest + 12, self->d);
}

void hmac_start(mox_md5* self, const uint8_t* key, int32_t key_size) {
    uint8_t key_digest[16];
    // A missing key or a size below 1 is the empty key.
    uint32_t size = key != nullptr && key_size > 0 ? static_cast<uint32_t>(key_size) : 0;
    if (size > kBlockBytes) {
        mox_md5_call(key, size, key_digest);
        key = key_digest;
        size = sizeof key_digest;
    }
    std::memset(self->inner_pad, 0x36, kBlockBytes);
    std::memset(self->outer_pad, 0x5C, kBlockBytes);
    for (uint32_t i = 0; i < size; ++i) {
        self->inner_pad[i] ^= key[i];
        self->outer_pad[i] ^= key[i];
    }
    start(self);
    take(self, self->inner_pad, kBlockBytes);
    wipe(key_digest, sizeof key_digest);
}

void hmac_finish(mox_md5* self, uint8_t* digest) {
    uint8_t inner[16];
    finish(self, inner);
    start(self);
    take(self, self->outer_pad, kBlockBytes);
    take(self, inner, sizeof inner);
    finish(self, digest);
    wipe(inner, sizeof inner);
}

} // namespace

} // namespace mox

MOX_API mox_bool mox_md5_init(mox_md5* self) {
    if (self == nullptr)
        return 0;
    mox::start(self);
    return 1;
}

MOX_API mox_bool mox_md5_update(mox_md5* self, const void* data, int32_t size) {
    if (self == nullptr || data == nullptr || size < 1)
        return 0;
    mox::take(self, static_cast<const uint8_t*>(data), static_cast<uint32_t>(size));
    return 1;
}

// The digest pointer is not checked.
MOX_API mox_bool mox_md5_finish(mox_md5* self, uint8_t* digest) {
    if (self == nullptr)
        return 0;
    mox::finish(self, digest);
    return 1;
}

// The one-call forms work in a record on the stack and allocate nothing.
MOX_API mox_bool mox_md5_call(const void* data, uint32_t size, uint8_t* digest) {
    if (data == nullptr)
        return 0;
    mox_md5 state;
    mox::start(&state);
    mox::take(&state, static_cast<const uint8_t*>(data), size);
    mox::finish(&state, digest);
    mox::wipe(&state, sizeof state);
    return 1;
}

MOX_API mox_bool mox_md5_hmac_init(mox_md5* self, const void* key, int32_t key_size) {
    if (self == nullptr)
        return 0;
    mox::hmac_start(self, static_cast<const uint8_t*>(key), key_size);
    return 1;
}

// True for any size, an empty one included, once both pointers are there.
MOX_API mox_bool mox_md5_hmac_update(mox_md5* self, const void* data, uint32_t size) {
    if (self == nullptr || data == nullptr)
        return 0;
    mox::take(self, static_cast<const uint8_t*>(data), size);
    return 1;
}

MOX_API mox_bool mox_md5_hmac_finish(mox_md5* self, uint8_t* digest) {
    if (self == nullptr)
        return 0;
    mox::hmac_finish(self, digest);
    return 1;
}

MOX_API mox_bool mox_md5_hmac_call(const void* key, int32_t key_size, const void* data, uint32_t size,
                                   uint8_t* digest) {
    if (key == nullptr || data == nullptr)
        return 0;
    mox_md5 state;
    mox::hmac_start(&state, static_cast<const uint8_t*>(key), key_size);
    mox::take(&state, static_cast<const uint8_t*>(data), size);
    mox::hmac_finish(&state, digest);
    mox::wipe(&state, sizeof state);
    return 1;
}
