// The SON document: a tree of named text values, its writer (always UTF-8 with the mark) and its
// reader (narrow text or UTF-16 of either order, told by the first bytes). The two don't make a
// closed circle; the points where they part are kept, each marked where it happens.
//
// The reader meets untrusted files, so it works without recursion (the parent of a level is found
// through the owners of the held-child pattern), ends the tree without recursion, and bounds the
// two places where the format itself has no end condition.

#include <mox/containers.h>
#include <mox/core.h>
#include <mox/files.h>
#include <mox/strings.h>

#include <cstddef>

#include "containers/held_child.h"
#include "core/instance.h"
#include "files/held_tree.h"
#include "files/text_writer.h"

#if UINTPTR_MAX == 0xFFFFFFFFu
static_assert(sizeof(mox_son_tag) == 52 && offsetof(mox_son_tag, children) == 24);
static_assert(sizeof(mox_son) == 68 && offsetof(mox_son, root) == 16);
#endif

namespace mox {

namespace {

using Tags = HeldChildren<mox_son_tag, &mox_son_tag::children, mox_son_tag, mox_son_tag_new, mox_son_tag_free,
                          NullArguments::silent>;

constexpr uint32_t kTokenSize = 65535;

// ---- The tree and the writer --------------------------------------------------------------------

using Tree = HeldTree<mox_son_tag, &mox_son_tag::children, MOX_SON_TAG_CLASS_ID>;

struct SonPieces {
    TextWriter& out;

    // The line that opens a tag. Its piece list ends at the first null piece, so a null name
    // leaves only the first quote, and a null value stops behind the opening quote of the value.
    void open(const mox_son_tag* tag, uint32_t depth) {
        out.tabs(depth);
        out.raw("\"", 1);
        if (tag->name == nullptr)
            return;
        out.text(tag->name);
        if (tag->children.first != nullptr) {
            // The value of a tag with children isn't written.
            out.raw("\" = {\r\n", 7);
            return;
        }
        out.raw("\" = \"", 5);
        if (tag->value == nullptr)
            return;
        out.text(tag->value);
        out.raw("\"\r\n", 3);
    }

    bool enter(mox_son_tag* tag, uint32_t depth) {
        open(tag, depth);
        return out.ok;
    }

    // A block closes on the depth of the tag that opened it.
    bool leave(mox_son_tag* tag, uint32_t depth) {
        if (tag->children.first != nullptr) {
            out.tabs(depth);
            out.raw("}\r\n", 3);
        }
        return out.ok;
    }
};

// ---- The reader ----------------------------------------------------------------------------------

mox_bool grow_token(mox_array* self) { return mox_array_resize(self, self->size + kTokenSize); }

bool is_blank(uint32_t c) { return c == 9 || c == 10 || c == 13 || c == 32; }

enum class Kind { none = 0, narrow = 1, wide_high_first = 2, wide_low_first = 3 };

struct Reader {
    mox_file_stream* stream;
    mox_array* token;
    Kind kind;
    uint32_t count = 0; // tags started, shared by all levels

    // The next character; `end` tells that the stream ran out, when what comes is its stale byte.
    uint32_t next(bool* end) {
        uint8_t bytes[2] = {0, 0};
        uint32_t size = kind == Kind::narrow ? 1 : 2;
        bool read = mox_file_stream_read(stream, bytes, size) != 0;
        *end = !read || stream->cache_filled == 0;
        if (kind == Kind::narrow)
            return bytes[0];
        if (kind == Kind::wide_high_first)
            return static_cast<uint32_t>(bytes[0]) << 8 | bytes[1];
        return static_cast<uint32_t>(bytes[1]) << 8 | bytes[0];
    }

    // Past the end every read gives the same stale character. A loop that is still going after its
    // second read past the end would go on for ever: that is where the bound cuts it with false.
    static constexpr uint32_t kReadsPastEnd = 2;

    // The text of a token up to its closing quote, terminated in the buffer.
    bool read_token() {
        mox_array_resize(token, kTokenSize);
        uint32_t unit = kind == Kind::narrow ? 1 : 2;
        uint32_t past_end = 0;
        for (;;) {
            bool end = false;
            uint32_t c = next(&end);
            if (c == '"')
                break;
            if (end && ++past_end > kReadsPastEnd)
                return false;
            uint16_t value = static_cast<uint16_t>(c);
            uint8_t bytes[2] = {static_cast<uint8_t>(value), static_cast<uint8_t>(value >> 8)};
            if (!mox_array_write(token, bytes, unit))
                return false;
        }
        const uint8_t zero[2] = {0, 0};
        if (!mox_array_write(token, zero, unit) || token->data == nullptr)
            return false;
        if (kind != Kind::narrow) {
            // The buffer's size is odd, so a growth in the middle of a token shifts the units by a
            // byte; a zero unit is then made sure of before the end of the block.
            auto* units = reinterpret_cast<uint16_t*>(token->data);
            uint32_t total = token->size / 2;
            uint32_t i = 0;
            while (i < total && units[i] != 0)
                ++i;
            if (i == total)
                units[total - 1] = 0;
        }
        return true;
    }

    // The token in the buffer, into `slot`: bytes as they are for narrow text, recoded from UTF-16
    // to the ANSI page for wide text.
    bool take_token(mox_astring* slot) {
        if (kind == Kind::narrow)
            return mox_astring_duplicate(slot, reinterpret_cast<const char*>(token->data)) != 0;
        return mox_wstring_to_astring(slot, reinterpret_cast<const uint16_t*>(token->data),
                                      mox_get_code_page(0)) != 0;
    }

    // One tag, from behind its opening quote. On true `*down` tells whether it opened a block.
    bool tag(mox_son_tag* parent, mox_son_tag** tag_out, bool* down) {
        mox_son_tag* tag = parent;
        if (count != 0 && !mox_son_tag_create_child(parent, &tag, 0))
            return false;
        *tag_out = tag;
        if (!read_token() || !take_token(&tag->name))
            return false;
        bool equals = false;
        uint32_t past_end = 0;
        for (;;) {
            bool end = false;
            uint32_t c = next(&end);
            if (is_blank(c)) {
                // Left open by the format: a file that ends here would keep this loop going on its
                // stale byte. Bounded: false.
                if (end && ++past_end > kReadsPastEnd)
                    return false;
                continue;
            }
            if (c == '=') {
                if (equals)
                    return false;
                equals = true;
                continue;
            }
            if (c == '"') {
                if (!equals || !read_token())
                    return false;
                // Intended: the narrow reader puts the value into `name`, over the name; only the
                // wide reader fills `value`.
                if (!take_token(kind == Kind::narrow ? &tag->name : &tag->value))
                    return false;
                // The first tag may not be a plain value.
                if (count == 0)
                    return false;
                ++count;
                *down = false;
                return true;
            }
            if (c == '{') {
                if (!equals)
                    return false;
                ++count;
                *down = true;
                return true;
            }
            return false;
        }
    }

    bool document(mox_son_tag* root) {
        mox_son_tag* parent = root;
        uint32_t depth = 0;
        for (;;) {
            bool end = false;
            uint32_t c = next(&end);
            // End of file in the outer position is true at any level: open blocks read as closed.
            if (end)
                return true;
            if (is_blank(c))
                continue;
            if (c == '}') {
                // At the top level this ends the reading, whatever follows.
                if (depth == 0)
                    return true;
                --depth;
                // The first level's parent is the root, read at level 0 with the root as parent.
                parent = depth == 0 ? root : Tree::parent_of(parent);
                continue;
            }
            if (c != '"')
                return false;
            mox_son_tag* tag = nullptr;
            bool down = false;
            if (!this->tag(parent, &tag, &down))
                return false;
            if (down) {
                parent = tag;
                ++depth;
            }
        }
    }
};

Kind kind_of(const uint8_t* first, uint32_t* start) {
    *start = 0;
    if (first[0] == 0xFE && first[1] == 0xFF) {
        *start = 2;
        return Kind::wide_high_first;
    }
    if (first[0] == 0xFF && first[1] == 0xFE) {
        *start = 2;
        return Kind::wide_low_first;
    }
    // Intended: the UTF-8 mark is recognised, but the text still starts at the start of the file,
    // so the reader meets the byte EF and refuses it. The writer keeps writing the mark.
    if (first[0] == 0xEF && first[1] == 0xBB && first[2] == 0xBF)
        return Kind::narrow;
    if (first[0] == 0 && first[1] != 0)
        return Kind::wide_high_first;
    if (first[0] != 0 && first[1] == 0)
        return Kind::wide_low_first;
    if (first[0] != 0 && first[1] != 0)
        return Kind::narrow;
    return Kind::none;
}

} // namespace

} // namespace mox

extern "C" {

// ---- Tags ----------------------------------------------------------------------------------------

MOX_API mox_bool mox_son_tag_construct(mox_son_tag* self, void* owner) {
    if (!mox_object_construct(self, owner, MOX_SON_TAG_CLASS_ID))
        return 0;
    mox_astring_construct(&self->name);
    mox_astring_construct(&self->value);
    mox_list_construct(&self->children, self);
    return 1;
}

MOX_API mox_bool mox_son_tag_destruct(mox_son_tag* self) {
    if (self == nullptr)
        return 0;
    mox_memory_free(reinterpret_cast<void**>(&self->name));
    mox_memory_free(reinterpret_cast<void**>(&self->value));
    mox::Tree::end_descendants(self);
    mox_list_destruct(&self->children);
    return mox_object_destruct(self);
}

MOX_API mox_bool mox_son_tag_new(mox_son_tag** out, void* owner) {
    return mox::new_instance<mox_son_tag, mox_son_tag_construct, mox::NullArguments::silent>(out, owner);
}

MOX_API mox_bool mox_son_tag_free(mox_son_tag** slot) {
    if (slot == nullptr)
        return 0;
    if (*slot != nullptr)
        mox_son_tag_destruct(*slot);
    return mox_memory_free(reinterpret_cast<void**>(slot));
}

MOX_API mox_bool mox_son_tag_create_child(mox_son_tag* self, mox_son_tag** out, uint8_t position) {
    return mox::Tags::create(self, out, position);
}

MOX_API mox_bool mox_son_tag_delete_child(mox_son_tag* self, mox_son_tag** slot) {
    return mox::Tags::remove(self, slot);
}

MOX_API mox_bool mox_son_tag_clear_child(mox_son_tag* self) {
    if (self == nullptr)
        return 0;
    mox::Tree::end_descendants(self);
    return mox::Tags::clear(self);
}

MOX_API mox_bool mox_son_tag_first_child(mox_son_tag* self, mox_son_tag** out) {
    return mox::Tags::first(self, out);
}

MOX_API mox_bool mox_son_tag_last_child(mox_son_tag* self, mox_son_tag** out) {
    return mox::Tags::last(self, out);
}

// False for the root, whose owner is the document and not a note.
MOX_API mox_bool mox_son_tag_next(mox_son_tag* self, mox_son_tag** out) { return mox::Tags::next(self, out); }

MOX_API mox_bool mox_son_tag_prev(mox_son_tag* self, mox_son_tag** out) { return mox::Tags::prev(self, out); }

MOX_API mox_bool mox_son_tag_find_child(mox_son_tag* self, const char* name, mox_son_tag** out) {
    if (self == nullptr)
        return 0;
    return mox::find_named(&self->children, name, out);
}

// ---- The document --------------------------------------------------------------------------------

MOX_API mox_bool mox_son_construct(mox_son* self, void* owner) {
    if (!mox_object_construct(self, owner, MOX_SON_CLASS_ID))
        return 0;
    return mox_son_tag_construct(&self->root, self);
}

MOX_API mox_bool mox_son_destruct(mox_son* self) {
    if (self == nullptr)
        return 0;
    mox_son_tag_destruct(&self->root);
    return mox_object_destruct(self);
}

MOX_API mox_bool mox_son_new(mox_son** out, void* owner) {
    return mox::new_instance<mox_son, mox_son_construct, mox::NullArguments::silent>(out, owner);
}

MOX_API mox_bool mox_son_free(mox_son** slot) {
    if (slot == nullptr)
        return 0;
    if (*slot != nullptr)
        mox_son_destruct(*slot);
    return mox_memory_free(reinterpret_cast<void**>(slot));
}

MOX_API mox_bool mox_son_clear(mox_son* self) {
    if (self == nullptr)
        return 0;
    mox_memory_free(reinterpret_cast<void**>(&self->root.name));
    mox_memory_free(reinterpret_cast<void**>(&self->root.value));
    return mox_son_tag_clear_child(&self->root);
}

MOX_API mox_bool mox_son_save_to_file(mox_son* self, mox_file* file) {
    if (self == nullptr || file == nullptr)
        return 0;
    return mox::write_text_document(file, [self](mox::TextWriter& writer) {
        mox::SonPieces pieces{writer};
        mox::Tree::walk(&self->root, pieces);
    });
}

MOX_API mox_bool mox_son_load_from_file(mox_son* self, mox_file* file) {
    if (self == nullptr || file == nullptr)
        return 0;
    mox_file_stream stream;
    mox_array token;
    mox_file_stream_construct(&stream, nullptr);
    mox_array_construct(&token, nullptr);
    stream.file = file;
    token.on_full = mox::grow_token;
    mox_bool result = 0;
    uint8_t first[4] = {0, 0, 0, 0};
    uint32_t start = 0;
    mox::Kind kind = mox::Kind::none;
    if (mox_file_stream_cache_size(&stream, mox::kDocumentCacheSize) &&
        mox_array_resize(&token, mox::kTokenSize) && mox_file_stream_read(&stream, first, 4))
        kind = mox::kind_of(first, &start);
    if (kind != mox::Kind::none) {
        stream.cache_position = start;
        // From here on the document is replaced, whatever the reader makes of the text.
        mox_son_clear(self);
        mox::Reader reader{&stream, &token, kind};
        result = reader.document(&self->root) ? 1 : 0;
    }
    mox_array_destruct(&token);
    mox_file_stream_destruct(&stream);
    return result;
}

MOX_API mox_bool mox_son_save_to(mox_son* self, const char* name) {
    return mox::save_text_document_to<mox_son, mox_son_save_to_file>(self, name);
}

MOX_API mox_bool mox_son_load_from(mox_son* self, const char* name) {
    if (self == nullptr || name == nullptr)
        return 0;
    if (!mox_exist_file(name))
        return 0;
    mox_file file;
    mox_file_construct(&file, nullptr);
    mox_bool result = 0;
    if (mox_file_open(&file, name, MOX_FILE_READ))
        result = mox_son_load_from_file(self, &file);
    mox_file_destruct(&file);
    return result;
}

} // extern "C"
