// Writing a text document (SON, XML): UTF-8 with its mark, through a local stream cache over an
// already open file, with the user's text recoded from the system's ANSI page piece by piece.
#pragma once

#include <mox/core.h>
#include <mox/files.h>
#include <mox/strings.h>

namespace mox {

constexpr uint32_t kDocumentCacheSize = 65535;

struct TextWriter {
    mox_file_stream stream;
    bool ok = true;

    void raw(const char* bytes, uint32_t size) {
        if (ok && !mox_file_stream_write(&stream, bytes, size))
            ok = false;
    }

    // A piece of the user's text: copied, recoded from the ANSI page to UTF-8, written. A failure
    // of either step ends all writing. The fixed pieces are ASCII, which the recoding leaves as
    // they are, and go out directly.
    void text(const char* piece) {
        if (!ok)
            return;
        mox_astring copy = nullptr;
        if (!mox_astring_duplicate(&copy, piece) ||
            !mox_astring_convert(&copy, 65001, mox_get_code_page(0))) {
            ok = false;
        } else {
            uint32_t size = mox_astring_length(copy);
            if (size != 0)
                raw(copy, size);
        }
        mox_memory_free(reinterpret_cast<void**>(&copy));
    }

    void tabs(uint32_t depth) {
        for (uint32_t i = 0; i < depth && ok; ++i)
            raw("\t", 1);
    }

    void line_end() { raw("\r\n", 2); }
};

// The frame of a document's save to an open file: the stream with its cache, the mark, the body's
// pieces, and the flush, whose result is the result. When a piece fails, what the cache holds is
// dropped with the stream and nothing more reaches the file.
template <class Body> mox_bool write_text_document(mox_file* file, Body&& body) {
    TextWriter writer;
    mox_file_stream_construct(&writer.stream, nullptr);
    writer.stream.file = file;
    mox_bool result = 0;
    if (mox_file_stream_cache_size(&writer.stream, kDocumentCacheSize)) {
        // The mark goes out as it is, without recoding.
        writer.raw("\xEF\xBB\xBF", 3);
        body(writer);
        result = writer.ok ? mox_file_stream_flush(&writer.stream) : 0;
    }
    mox_file_stream_destruct(&writer.stream);
    return result;
}

// The save of a document by name: the file is made if it is missing (with its folders), opened for
// writing, written from its start, and cut behind the document. The result is that of the save.
template <class Document, mox_bool (*save_to_file)(Document*, mox_file*)>
mox_bool save_text_document_to(Document* self, const char* name) {
    if (self == nullptr || name == nullptr)
        return 0;
    if (!mox_exist_file(name) && !mox_create_file(name, 1))
        return 0;
    mox_file file;
    mox_file_construct(&file, nullptr);
    mox_file_open(&file, name, MOX_FILE_WRITE);
    mox_bool result = save_to_file(self, &file);
    // Whatever a former, longer file had behind the document goes.
    mox_file_set_eof(&file);
    mox_file_destruct(&file);
    return result;
}

} // namespace mox
