// The XML document: tags and their properties built in memory and written as UTF-8 with its mark,
// one tag per line, indented by tabs. This build writes XML and doesn't read it.
//
// Nothing is escaped: names, values and texts stand in the file as the caller gave them, so it is
// the caller who keeps "<", "&" and quotes out of them when the file must be well-formed. A document
// may be deep: it is written, cleared and ended without recursion, through the notes.
#include <mox/containers.h>
#include <mox/core.h>
#include <mox/files.h>
#include <mox/strings.h>

#include <cstddef>
#include <cstring>

#include "containers/free_instance.h"
#include "containers/held_child.h"
#include "core/instance.h"
#include "files/held_tree.h"
#include "files/text_writer.h"

#if UINTPTR_MAX == 0xFFFFFFFFu
static_assert(sizeof(mox_xml_prop) == 24 && offsetof(mox_xml_prop, name) == 16 &&
              offsetof(mox_xml_prop, value) == 20);
static_assert(sizeof(mox_xml_tag) == 80 && offsetof(mox_xml_tag, name) == 16 &&
              offsetof(mox_xml_tag, text) == 20 && offsetof(mox_xml_tag, props) == 24 &&
              offsetof(mox_xml_tag, children) == 52);
static_assert(sizeof(mox_xml) == 176 && offsetof(mox_xml, declaration) == 16 &&
              offsetof(mox_xml, root) == 96);
#endif

namespace mox {

namespace {

using Props = HeldChildren<mox_xml_tag, &mox_xml_tag::props, mox_xml_prop, mox_xml_prop_new,
                           mox_xml_prop_free, NullArguments::silent>;
using Tags = HeldChildren<mox_xml_tag, &mox_xml_tag::children, mox_xml_tag, mox_xml_tag_new, mox_xml_tag_free,
                          NullArguments::silent>;
using Tree = HeldTree<mox_xml_tag, &mox_xml_tag::children, MOX_XML_TAG_CLASS_ID>;

// ---- The tree ------------------------------------------------------------------------------------

// Children, properties, text and name, in this order. Each child ends its own subtree without
// recursion, so clearing the list nests no deeper than one child.
void end_contents(mox_xml_tag* tag) {
    Tags::clear(tag);
    Props::clear(tag);
    mox_memory_free(reinterpret_cast<void**>(&tag->text));
    mox_memory_free(reinterpret_cast<void**>(&tag->name));
}

bool add_prop(mox_xml_tag* tag, const char* name, const char* value) {
    mox_xml_prop* prop = nullptr;
    return Props::create(tag, &prop, 0) && mox_astring_duplicate(&prop->name, name) &&
           mox_astring_duplicate(&prop->value, value);
}

// ---- The writer ----------------------------------------------------------------------------------

// A piece of a tag's line: a fixed piece of the format (ASCII, so it goes out as it is) or the
// user's text, which is recoded.
struct Piece {
    const char* text;
    bool user;
};

constexpr Piece fixed(const char* text) { return {text, false}; }
constexpr Piece user(const char* text) { return {text, true}; }

// The pieces of the tags of one top tag: the plain form, or the declaration form, which the
// declaration's children inherit.
struct XmlPieces {
    TextWriter& out;
    bool declaration;

    // A list of pieces ends at its first null piece: a null name stops an opening behind "<" and a
    // closing behind "</", and a null value stops its property behind "=\"".
    template <size_t count> void list(const Piece (&pieces)[count]) {
        for (const Piece& piece : pieces) {
            if (piece.text == nullptr)
                return;
            if (piece.user)
                out.text(piece.text);
            else
                out.raw(piece.text, static_cast<uint32_t>(std::strlen(piece.text)));
        }
    }

    // The indentation, the opening with the properties, and either the end of the opening line
    // (a tag with children) or the whole tag.
    bool enter(mox_xml_tag* tag, uint32_t depth) {
        out.tabs(depth);
        list({fixed(declaration ? "<?" : "<"), user(tag->name)});
        for (mox_list_note* note = tag->props.first; note != nullptr; note = note->next) {
            auto* prop = reinterpret_cast<mox_xml_prop*>(note->data);
            if (prop != nullptr)
                list({fixed(" "), user(prop->name), fixed("=\""), user(prop->value), fixed("\"")});
        }
        if (tag->children.first != nullptr) {
            list({fixed(declaration ? "?>" : ">")});
        } else if (tag->text != nullptr) {
            // An empty text is text too: the tag gets an opening and a closing.
            if (declaration)
                list({fixed("?>"), user(tag->text), fixed("<?"), user(tag->name), fixed("?>")});
            else
                list({fixed(">"), user(tag->text), fixed("</"), user(tag->name), fixed(">")});
        } else {
            list({fixed(declaration ? "?>" : "/>")});
        }
        out.line_end();
        return out.ok;
    }

    // Behind the children: the text, if any, stands in front of the closing, on its line.
    bool leave(mox_xml_tag* tag, uint32_t depth) {
        if (tag->children.first == nullptr)
            return out.ok;
        out.tabs(depth);
        if (tag->text != nullptr)
            out.text(tag->text);
        if (declaration)
            list({fixed("<?"), user(tag->name), fixed("?>")});
        else
            list({fixed("</"), user(tag->name), fixed(">")});
        out.line_end();
        return out.ok;
    }
};

} // namespace

} // namespace mox

extern "C" {

// ---- Properties ----------------------------------------------------------------------------------

MOX_API mox_bool mox_xml_prop_construct(mox_xml_prop* self, void* owner) {
    if (!mox_object_construct(self, owner, MOX_XML_PROP_CLASS_ID))
        return 0;
    mox_astring_construct(&self->name);
    mox_astring_construct(&self->value);
    return 1;
}

MOX_API mox_bool mox_xml_prop_destruct(mox_xml_prop* self) {
    if (self == nullptr)
        return 0;
    mox_memory_free(reinterpret_cast<void**>(&self->name));
    mox_memory_free(reinterpret_cast<void**>(&self->value));
    return mox_object_destruct(self);
}

MOX_API mox_bool mox_xml_prop_new(mox_xml_prop** out, void* owner) {
    return mox::new_instance<mox_xml_prop, mox_xml_prop_construct, mox::NullArguments::silent>(out, owner);
}

MOX_API mox_bool mox_xml_prop_free(mox_xml_prop** slot) {
    return mox::free_instance<mox_xml_prop, mox_xml_prop_destruct>(slot);
}

// ---- Tags ----------------------------------------------------------------------------------------

MOX_API mox_bool mox_xml_tag_construct(mox_xml_tag* self, void* owner) {
    if (!mox_object_construct(self, owner, MOX_XML_TAG_CLASS_ID))
        return 0;
    mox_astring_construct(&self->name);
    mox_astring_construct(&self->text);
    mox_list_construct(&self->props, self);
    mox_list_construct(&self->children, self);
    return 1;
}

MOX_API mox_bool mox_xml_tag_destruct(mox_xml_tag* self) {
    if (self == nullptr)
        return 0;
    mox::Tree::end_descendants(self);
    mox::end_contents(self);
    mox_list_destruct(&self->children);
    mox_list_destruct(&self->props);
    return mox_object_destruct(self);
}

MOX_API mox_bool mox_xml_tag_new(mox_xml_tag** out, void* owner) {
    return mox::new_instance<mox_xml_tag, mox_xml_tag_construct, mox::NullArguments::silent>(out, owner);
}

MOX_API mox_bool mox_xml_tag_free(mox_xml_tag** slot) {
    return mox::free_instance<mox_xml_tag, mox_xml_tag_destruct>(slot);
}

MOX_API mox_bool mox_xml_tag_create_prop(mox_xml_tag* self, mox_xml_prop** out, uint8_t position) {
    return mox::Props::create(self, out, position);
}

MOX_API mox_bool mox_xml_tag_create_child(mox_xml_tag* self, mox_xml_tag** out, uint8_t position) {
    return mox::Tags::create(self, out, position);
}

// Intended: both are false in every case; the cleared slot tells that the property or tag has gone.
MOX_API mox_bool mox_xml_tag_delete_prop(mox_xml_tag* self, mox_xml_prop** slot) {
    return mox::Props::remove(self, slot);
}

MOX_API mox_bool mox_xml_tag_delete_child(mox_xml_tag* self, mox_xml_tag** slot) {
    return mox::Tags::remove(self, slot);
}

// A null tag has no list to clear: false, silently, like every other refusal of the family.
MOX_API mox_bool mox_xml_tag_clear_prop(mox_xml_tag* self) { return mox::Props::clear(self); }

MOX_API mox_bool mox_xml_tag_clear_child(mox_xml_tag* self) { return mox::Tags::clear(self); }

MOX_API mox_bool mox_xml_tag_find_prop(mox_xml_tag* self, const char* name, mox_xml_prop** out) {
    if (self == nullptr)
        return 0;
    return mox::find_named(&self->props, name, out);
}

MOX_API mox_bool mox_xml_tag_find_child(mox_xml_tag* self, const char* name, mox_xml_tag** out) {
    if (self == nullptr)
        return 0;
    return mox::find_named(&self->children, name, out);
}

// ---- The document --------------------------------------------------------------------------------

MOX_API mox_bool mox_xml_construct(mox_xml* self, void* owner) {
    if (!mox_object_construct(self, owner, MOX_XML_CLASS_ID))
        return 0;
    mox_xml_tag_construct(&self->root, self);
    mox_xml_tag_construct(&self->declaration, self);
    if (mox_astring_duplicate(&self->declaration.name, "xml") &&
        mox::add_prop(&self->declaration, "version", "1.0") &&
        mox::add_prop(&self->declaration, "encoding", "utf-8"))
        return 1;
    // Out of memory on the way: what was made goes again.
    mox_xml_destruct(self);
    return 0;
}

MOX_API mox_bool mox_xml_destruct(mox_xml* self) {
    if (self == nullptr)
        return 0;
    mox_xml_tag_destruct(&self->declaration);
    mox_xml_tag_destruct(&self->root);
    return mox_object_destruct(self);
}

// A document that can't be constructed doesn't stay in the slot: its block is released and the
// slot is null again.
MOX_API mox_bool mox_xml_new(mox_xml** out, void* owner) {
    if (mox::new_instance<mox_xml, mox_xml_construct, mox::NullArguments::silent>(out, owner))
        return 1;
    if (out != nullptr && *out != nullptr)
        mox_memory_free(reinterpret_cast<void**>(out));
    return 0;
}

MOX_API mox_bool mox_xml_free(mox_xml** slot) { return mox::free_instance<mox_xml, mox_xml_destruct>(slot); }

MOX_API mox_bool mox_xml_clear(mox_xml* self) {
    if (self == nullptr)
        return 0;
    mox::end_contents(&self->declaration);
    mox::end_contents(&self->root);
    return 1;
}

MOX_API mox_bool mox_xml_save_to_file(mox_xml* self, mox_file* file) {
    if (self == nullptr || file == nullptr)
        return 0;
    return mox::write_text_document(file, [self](mox::TextWriter& writer) {
        mox::XmlPieces declaration{writer, true};
        mox::XmlPieces plain{writer, false};
        if (mox::Tree::walk(&self->declaration, declaration))
            mox::Tree::walk(&self->root, plain);
    });
}

MOX_API mox_bool mox_xml_save_to(mox_xml* self, const char* name) {
    return mox::save_text_document_to<mox_xml, mox_xml_save_to_file>(self, name);
}

// Intended: this build reads no XML. An existing file is opened for reading and closed again, nothing
// is read, the document stays as it is, and the answer is false.
MOX_API mox_bool mox_xml_load_from(mox_xml* self, const char* name) {
    if (self == nullptr || name == nullptr)
        return 0;
    if (!mox_exist_file(name))
        return 0;
    mox_file file;
    mox_file_construct(&file, nullptr);
    if (mox_file_open(&file, name, MOX_FILE_READ))
        mox_file_close(&file);
    mox_file_destruct(&file);
    return 0;
}

} // extern "C"
