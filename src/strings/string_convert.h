// The one body of number formatting and reading, recognition, tokens, replacing and string files for
// both string families. The rules are the library's own and are kept exactly, peculiar results
// included: callers inside the library depend on them. Each entry is a forward into this.
#pragma once

#include <mox/files.h>

#include "files/file_words.h"
#include "strings/string_core.h"

#include <cmath>
#include <type_traits>

namespace mox::strings {

// Literals in the family's units.
template <class Char, size_t N> struct Literal {
    Char units[N];
    constexpr Literal(const char (&ascii)[N]) : units{} {
        for (size_t i = 0; i < N; ++i)
            units[i] = static_cast<Char>(ascii[i]);
    }
};

template <class Char> struct Convert {
    using C = Core<Char>;
    using Array = typename Traits<Char>::Array;

    static constexpr Literal<Char, 5> kTrue{"true"};
    static constexpr Literal<Char, 6> kFalse{"false"};

    static bool is_blank(Char c) { return Traits<Char>::is_blank(c); }
    static bool is_digit(Char c) { return c >= '0' && c <= '9'; }

    // ---- Number to text ------------------------------------------------------------------------

    // Digits above 15 are not part of the rules; they go on with the letters after "F" so that any
    // base above 1 writes something and reads nothing out of bounds.
    static Char digit_unit(uint32_t digit) {
        return static_cast<Char>(digit < 10 ? '0' + digit : 'A' + (digit - 10));
    }

    template <class Int> static mox_bool from_integer(Char** out, Int value, uint32_t base, uint32_t width) {
        using Unsigned = std::make_unsigned_t<Int>;
        constexpr uint32_t default_width_base2 = sizeof(Int) * 8;
        constexpr uint32_t default_width_base16 = sizeof(Int) * 2;
        // Our decision: base 0 would divide by zero and base 1 would never end, so both are refused.
        if (base < 2)
            return 0;
        // The work buffer starts zeroed: a negative value in a base with signs and no width shows
        // one position nobody wrote, and that position reads as a terminator.
        Char work[32] = {};
        if (width >= 32)
            width = 32;
        bool binary_or_hex = base == 2 || base == 16;
        if (binary_or_hex && width == 0)
            width = base == 2 ? default_width_base2 : default_width_base16;
        for (uint32_t i = 0; i < width; ++i)
            work[i] = '0';
        uint32_t count = 0;
        bool negative = false;
        Unsigned magnitude = static_cast<Unsigned>(value);
        if constexpr (std::is_signed_v<Int>) {
            if (value < 0) {
                negative = true;
                magnitude = static_cast<Unsigned>(Unsigned(0) - magnitude);
            }
        }
        if (!binary_or_hex && magnitude == 0) {
            work[0] = '0';
            count = 1;
        }
        while (magnitude != 0) {
            work[count++] = digit_unit(static_cast<uint32_t>(magnitude % base));
            magnitude = static_cast<Unsigned>(magnitude / base);
        }
        // Intended: the sign takes position 0, over the lowest digit, and bases 2, 8 and 16 drop it.
        if (negative && base != 2 && base != 8 && base != 16) {
            work[0] = '-';
            ++count;
        }
        uint32_t result_length = width > 0 ? width : count;
        if (out == nullptr)
            return 0;
        Char* block = C::reserve(out, result_length);
        if (block == nullptr)
            return 0;
        for (uint32_t i = 0; i < result_length; ++i)
            block[i] = work[result_length - 1 - i];
        return 1;
    }

    static mox_bool from_bool(Char** out, uint8_t value) {
        if (out == nullptr || value > 1)
            return 0;
        return value == 1 ? C::assign(out, kTrue.units, 4) : C::assign(out, kFalse.units, 5);
    }

    // One digit of the cut: the integer part of what `m` holds beyond `acc`. Digits above 9 are taken
    // modulo 10; our decision is to bring equally large negative ones into range the same way, so
    // the conversion to an integer stays defined when rounding leaves `acc` above `m`.
    static Char cut_digit(double m, double* acc) {
        double d = std::trunc(m - *acc);
        // Our decision: near the top of the range the arithmetic runs into infinity and then into
        // NaN; such a digit is written as "0".
        if (!std::isfinite(d))
            d = 0;
        if (d > 9 || d < -9)
            d = std::fmod(d, 10);
        *acc = (*acc + d) * 10;
        return static_cast<Char>('0' + static_cast<int>(d));
    }

    static mox_bool from_real(Char** out, double value, Char separator, uint32_t decimals) {
        // The wide family looks at a null `out` before anything else; the result is the same.
        if (sizeof(Char) == 2 && out == nullptr)
            return 0;
        if (decimals < 1 || decimals > 16)
            return 0;
        // Our decision: an infinity would divide by 10 for ever and a NaN has no digits, so neither
        // is written.
        if (!std::isfinite(value))
            return 0;
        bool negative = value < 0;
        double m = negative ? -value : value;
        uint32_t count = 1;
        while (m >= 10) {
            m /= 10;
            ++count;
        }
        if (out == nullptr)
            return 0;
        uint32_t size = count + decimals + 3;
        Char* block = C::reserve(out, size - 1);
        if (block == nullptr)
            return 0;
        uint32_t at = 0;
        if (negative)
            block[at++] = '-';
        double acc = 0;
        for (uint32_t i = 0; i < count; ++i) {
            block[at++] = cut_digit(m, &acc);
            m *= 10;
        }
        block[at++] = separator;
        m -= acc;
        acc = 0;
        for (uint32_t i = 0; i < decimals; ++i) {
            block[at++] = cut_digit(m, &acc);
            m *= 10;
        }
        block[at] = 0;
        return 1;
    }

    // ---- Text to number ------------------------------------------------------------------------

    // How many characters (a sign included) are read before the rest is ignored.
    template <class Int> static uint32_t digit_limit(uint32_t base) {
        constexpr uint32_t bits = sizeof(Int) * 8;
        switch (base) {
        case 2:
            return bits;
        case 8:
            return bits == 8 ? 3 : bits == 16 ? 5 : 11;
        case 10:
            return bits == 8 ? 3 : bits == 16 ? 5 : 10;
        case 16:
            return bits / 4;
        default:
            return 0;
        }
    }

    // The value of a digit in `base`, or -1 for a character the base refuses.
    static int64_t digit_value(Char c, uint32_t base) {
        switch (base) {
        case 2:
            return (c == '0' || c == '1') ? c - '0' : -1;
        case 8:
            return (c >= '0' && c <= '7') ? c - '0' : -1;
        case 10:
            return is_digit(c) ? c - '0' : -1;
        case 16:
            if (is_digit(c))
                return c - '0';
            if (c >= 'a' && c <= 'f')
                return c - 'a' + 10;
            if (c >= 'A' && c <= 'F')
                return c - 'A' + 10;
            return -1;
        default:
            // Intended: any other base refuses nothing.
            return static_cast<int64_t>(c) - '0';
        }
    }

    // Our decision: a null text is a bad argument and gives false, after the value is cleared.
    template <class Int> static mox_bool to_integer(const Char* text, Int* value, uint32_t base) {
        using Unsigned = std::make_unsigned_t<Int>;
        if (value == nullptr)
            return 0;
        *value = 0;
        if (text == nullptr)
            return 0;
        uint32_t limit = digit_limit<Int>(base);
        uint32_t taken = 0;
        bool sign = false;
        Unsigned result = 0;
        for (const Char* at = text; *at != 0;) {
            Char c = *at;
            if (is_blank(c)) {
                ++at;
                continue;
            }
            if (std::is_signed_v<Int> && base == 10 && taken == 0 && (c == '+' || c == '-')) {
                // Intended: either sign negates, and the character behind it is passed over unread.
                sign = true;
                ++taken;
                // Our decision: a sign that ends the text does not step over the terminator.
                at += at[1] == 0 ? 1 : 2;
            } else {
                int64_t digit = digit_value(c, base);
                if (digit < 0 && (base == 2 || base == 8 || base == 10 || base == 16)) {
                    *value = 0;
                    return 0;
                }
                // Wraps in the target's width, whatever the base.
                result = static_cast<Unsigned>(static_cast<uint64_t>(result) * base +
                                               static_cast<uint64_t>(digit));
                ++taken;
                ++at;
            }
            if (limit != 0 && taken >= limit)
                break;
        }
        if (sign)
            result = static_cast<Unsigned>(Unsigned(0) - result);
        *value = static_cast<Int>(result);
        return 1;
    }

    static mox_bool to_bool(const Char* text, uint8_t* out) {
        if (out == nullptr)
            return 0;
        if (C::compare(text, kTrue.units, true)) {
            *out = 1;
            return 1;
        }
        if (C::compare(text, kFalse.units, true)) {
            *out = 0;
            return 1;
        }
        return 0;
    }

    // Every step is stored to the target's own width; the arithmetic of a step is done in double,
    // so a 32-bit target is rounded once per digit and once per division.
    template <class Real>
    static mox_bool to_real(const Char* text, Real* value, Char separator, uint32_t decimals) {
        if (value == nullptr)
            return 0;
        *value = 0;
        if (text == nullptr)
            return 0;
        const Char* at = text;
        while (*at != 0 && is_blank(*at))
            ++at;
        bool negative = false;
        if (*at == '-') {
            negative = true;
            ++at;
        }
        // Our reading: the "+" is optional whether or not a "-" stood before it.
        if (*at == '+')
            ++at;
        Real result = 0;
        for (; *at != 0 && *at != separator; ++at) {
            if (is_blank(*at))
                continue;
            if (!is_digit(*at)) {
                *value = 0;
                return 0;
            }
            result = static_cast<Real>(static_cast<double>(result) * 10 + (*at - '0'));
        }
        uint32_t fraction = 0;
        if (*at == separator && *at != 0) {
            for (++at; *at != 0; ++at) {
                if (is_blank(*at))
                    continue;
                if (fraction >= decimals)
                    break;
                if (!is_digit(*at)) {
                    *value = 0;
                    return 0;
                }
                result = static_cast<Real>(static_cast<double>(result) * 10 + (*at - '0'));
                ++fraction;
            }
        }
        for (uint32_t i = 0; i < fraction; ++i)
            result = static_cast<Real>(static_cast<double>(result) / 10);
        *value = negative ? -result : result;
        return 1;
    }

    // ---- Recognition ---------------------------------------------------------------------------

    enum class Kind { bin, oct, dec, hex, real };

    // Our decision: a null text is false, like an empty one.
    static mox_bool recognise(const Char* text, Kind kind, Char separator = 0) {
        if (text == nullptr)
            return 0;
        bool seen = false;
        bool separator_seen = false;
        for (const Char* at = text; *at != 0; ++at) {
            Char c = *at;
            if (is_blank(c))
                continue;
            bool first = !seen;
            seen = true;
            bool ok;
            switch (kind) {
            case Kind::bin:
                ok = c == '0' || c == '1';
                break;
            case Kind::oct:
                ok = c >= '0' && c <= '7';
                break;
            case Kind::dec:
                // Intended: the first character may be anything, to leave room for a sign.
                ok = first || is_digit(c);
                break;
            case Kind::hex:
                ok = digit_value(c, 16) >= 0;
                break;
            case Kind::real:
            default:
                ok = first || is_digit(c);
                if (!first && c == separator && !separator_seen)
                    ok = separator_seen = true;
                break;
            }
            if (!ok)
                return 0;
        }
        return seen;
    }

    // ---- Tokens --------------------------------------------------------------------------------

    // The pass that both counts and fills: `sink(start, length, end_of_text)` gets every token.
    template <class Sink> static void tokens(const Char* text, const Char* separator, Sink&& sink) {
        const Char* start = text;
        uint32_t token_length = 0;
        uint32_t since_hit = 0;
        for (const Char* at = text; *at != 0; ++at) {
            if (*at != separator[0]) {
                ++token_length;
            } else {
                uint32_t compared = 0;
                while (separator[compared] != 0 && at[compared] == separator[compared])
                    ++compared;
                bool matched = separator[compared] == 0;
                if (since_hit > 0) {
                    if (token_length > 0 && matched) {
                        if (!sink(start, token_length))
                            return;
                        token_length = 0;
                    }
                    since_hit = 0;
                }
                // Intended: the start moves behind the compared characters even when they didn't
                // match, and the pass still steps one position on, so the rest of a long separator
                // is counted into the next token.
                start = at + compared;
            }
            ++since_hit;
        }
        if (token_length > 0)
            sink(start, token_length);
    }

    // Our decision: a null text or separator is false.
    static mox_bool parse_inc(const Char* text, const Char* separator, uint32_t* count) {
        if (count == nullptr || text == nullptr || separator == nullptr)
            return 0;
        uint32_t found = 0;
        tokens(text, separator, [&](const Char*, uint32_t) {
            ++found;
            return true;
        });
        *count = found;
        return 1;
    }

    // A token's slot has `length` units filled from `start`; where the text ends first (a long
    // separator moves the start ahead of the counted characters) the rest of the slot is zero.
    static mox_bool parse(Array* self, const Char* text, const Char* separator) {
        uint32_t count = 0;
        if (self == nullptr || !parse_inc(text, separator, &count))
            return 0;
        if (!C::array_set_length(self, count))
            return 0;
        uint32_t next = 0;
        bool ok = true;
        tokens(text, separator, [&](const Char* start, uint32_t length) {
            Char* block = C::reserve(&self->items[next++], length);
            if (block == nullptr) {
                ok = false;
                return false;
            }
            uint32_t i = 0;
            for (; i < length && start[i] != 0; ++i)
                block[i] = start[i];
            for (; i < length; ++i)
                block[i] = 0;
            return true;
        });
        return ok;
    }

    // ---- Replacing -----------------------------------------------------------------------------

    // Our decision: a null `to` is false; a null text or `from` finds nothing and is duplicated.
    static mox_bool replace(Char** out, const Char* text, const Char* from, const Char* to) {
        if (out == nullptr)
            return 0;
        uint32_t count = 0;
        C::search(text, from, &count, C::Search::count);
        if (count == 0)
            return C::duplicate(out, text);
        if (to == nullptr)
            return 0;
        uint32_t text_length = C::length(text);
        uint32_t from_length = C::length(from);
        uint32_t to_length = C::length(to);
        // Intended: overlapping occurrences are all counted, so a self-overlapping `from` gets a
        // length that the walk below doesn't fill exactly.
        uint32_t new_length = text_length + (to_length - from_length) * count;
        if (static_cast<uint64_t>(new_length) + 1 > UINT32_MAX / sizeof(Char))
            return 0;
        Char* block = C::reserve(out, new_length);
        if (block == nullptr)
            return 0;
        // Our decision: the walk never writes past that length, and what it leaves unwritten is zero.
        uint32_t written = 0;
        for (uint32_t at = 0; at < text_length && written < new_length;) {
            if (text[at] == from[0] && C::matches_at(text, at, from)) {
                for (uint32_t i = 0; i < to_length && written < new_length; ++i)
                    block[written++] = to[i];
                at += from_length;
            } else {
                block[written++] = text[at++];
            }
        }
        for (; written < new_length; ++written)
            block[written] = 0;
        return 1;
    }

    static mox_bool replace_ext(Char** out, const Char* text, uint32_t count, const Char** from,
                                const Char** to) {
        if (out == nullptr || from == nullptr || to == nullptr)
            return 0;
        for (uint32_t i = 0; i < count; ++i)
            if (from[i] == nullptr || to[i] == nullptr)
                return 0;
        // Intended: a count of 0 still applies the first pair.
        if (count == 0)
            return replace(out, text, from[0], to[0]);
        // Intended: with one pair the pair is applied twice, first into a temporary, then into `out`.
        Char* carried[2] = {nullptr, nullptr};
        mox_bool ok = replace(&carried[0], text, from[0], to[0]);
        uint32_t held = 0;
        for (uint32_t i = 1; ok && i + 1 < count; ++i) {
            ok = replace(&carried[1 - held], carried[held], from[i], to[i]);
            held = 1 - held;
        }
        if (ok)
            ok = replace(out, carried[held], from[count - 1], to[count - 1]);
        mox_memory_free(reinterpret_cast<void**>(&carried[0]));
        mox_memory_free(reinterpret_cast<void**>(&carried[1]));
        return ok;
    }

    // ---- Files ---------------------------------------------------------------------------------

    // A count in four little-endian bytes, then each unit in little-endian order, no terminator.
    // Intended: the result doesn't tell whether the writes succeeded.
    static mox_bool save_to_file(const Char* text, mox_file* file) {
        if (file == nullptr)
            return 0;
        uint32_t count = C::length(text);
        uint8_t header[4];
        put_u32_le(header, count);
        mox_file_write(file, header, 4);
        // Where memory already holds the file order the units go out in one write.
        if (sizeof(Char) == 1 || __BYTE_ORDER__ == __ORDER_LITTLE_ENDIAN__) {
            if (count != 0)
                mox_file_write(file, text, count * static_cast<uint32_t>(sizeof(Char)));
            return 1;
        }
        // Otherwise through a small buffer in file order, without allocating.
        uint8_t chunk[512];
        uint32_t filled = 0;
        for (uint32_t i = 0; i < count; ++i) {
            auto unit = static_cast<uint32_t>(static_cast<std::make_unsigned_t<Char>>(text[i]));
            for (uint32_t b = 0; b < sizeof(Char); ++b)
                chunk[filled++] = static_cast<uint8_t>(unit >> (8 * b));
            if (filled == sizeof chunk) {
                mox_file_write(file, chunk, filled);
                filled = 0;
            }
        }
        if (filled != 0)
            mox_file_write(file, chunk, filled);
        return 1;
    }

    // A missing or short count reads as what arrived of it, zero for the rest; a short body leaves
    // zeros behind what was read.
    static mox_bool load_from_file(Char** slot, mox_file* file) {
        if (slot == nullptr || file == nullptr)
            return 0;
        uint8_t header[4] = {0, 0, 0, 0};
        mox_file_read(file, header, 4);
        uint32_t count = get_u32_le(header);
        // Intended: the answer is true whatever happens once both arguments are there. A count too
        // large for any block leaves the slot alone; a failed resize leaves it as the resize did.
        if ((static_cast<uint64_t>(count) + 1) * sizeof(Char) > UINT32_MAX)
            return 1;
        Char* block = C::reserve(slot, count);
        if (block == nullptr)
            return 1;
        if (count == 0)
            return 1;
        // The bytes land in the block and are turned into units in place, front to back.
        uint32_t got = mox_file_read(file, block, count * static_cast<uint32_t>(sizeof(Char)));
        auto* bytes = reinterpret_cast<uint8_t*>(block);
        for (uint32_t b = got; b < count * sizeof(Char); ++b)
            bytes[b] = 0;
        if constexpr (sizeof(Char) == 2)
            for (uint32_t i = 0; i < count; ++i)
                block[i] = static_cast<Char>(bytes[2 * i] | (bytes[2 * i + 1] << 8));
        return 1;
    }
};

} // namespace mox::strings
