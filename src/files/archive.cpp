// The archive: a catalogue of folders and files on disc, written into one file of the library's own
// stored format and unpacked from it again.
//
// Archives come from outside, so the readers treat them as untrusted: no recursion over the records
// (a stack of counts on the heap instead, no larger than the file's count of folder records), no
// block larger than the bytes that are left in the file, no data beyond the file's end, and no
// stored name that could lead a path out of the folder it belongs to. The catalogue's trees are
// walked and ended without recursion too, so a deep tree costs heap, never the machine stack.
#include <mox/containers.h>
#include <mox/core.h>
#include <mox/files.h>
#include <mox/strings.h>

#include <cstddef>
#include <type_traits>

#include "containers/held_child.h"
#include "core/instance.h"
#include "core/words.h"
#include "files/file_words.h"

// The header is the file's 40 bytes on every target: byte arrays, no padding, no alignment.
static_assert(sizeof(mox_archive_info) == 40 && alignof(mox_archive_info) == 1);
static_assert(offsetof(mox_archive_info, method) == 4 && offsetof(mox_archive_info, reserved_1) == 12 &&
              offsetof(mox_archive_info, file_size) == 16 && offsetof(mox_archive_info, skip) == 24 &&
              offsetof(mox_archive_info, reserved_2) == 32);

#if UINTPTR_MAX == 0xFFFFFFFFu
static_assert(sizeof(mox_archive) == 116 && offsetof(mox_archive, info) == 16 &&
              offsetof(mox_archive, on_file) == 56 && offsetof(mox_archive, folders) == 60 &&
              offsetof(mox_archive, files) == 88);
static_assert(sizeof(mox_archive_folder) == 80 && offsetof(mox_archive_folder, path) == 16 &&
              offsetof(mox_archive_folder, name) == 20 && offsetof(mox_archive_folder, folders) == 24 &&
              offsetof(mox_archive_folder, files) == 52);
static_assert(sizeof(mox_archive_file) == 40 && offsetof(mox_archive_file, path) == 16 &&
              offsetof(mox_archive_file, name) == 20 && offsetof(mox_archive_file, offset) == 24 &&
              offsetof(mox_archive_file, size) == 32);
#endif

namespace mox {

namespace {

using TopFolders = HeldChildren<mox_archive, &mox_archive::folders, mox_archive_folder,
                                mox_archive_folder_new, mox_archive_folder_free, NullArguments::silent>;
using TopFiles = HeldChildren<mox_archive, &mox_archive::files, mox_archive_file, mox_archive_file_new,
                              mox_archive_file_free, NullArguments::silent>;
// A folder's subfolders: some of their entries post on a null argument, the others are silent.
template <NullArguments rule>
using SubFolders = HeldChildren<mox_archive_folder, &mox_archive_folder::folders, mox_archive_folder,
                                mox_archive_folder_new, mox_archive_folder_free, rule>;
using FolderFiles = HeldChildren<mox_archive_folder, &mox_archive_folder::files, mox_archive_file,
                                 mox_archive_file_new, mox_archive_file_free, NullArguments::silent>;

constexpr uint32_t kBufferSize = 65535;
constexpr uint32_t kHeaderSize = 40;
constexpr uint64_t kFileSizeOffset = 16;
constexpr uint32_t kFolderKind = 1;
constexpr uint32_t kFileKind = 2;
constexpr const char* kSeparator = "\\";
// The longest path the readers rebuild: the most that the systems the library runs on take (4096
// bytes with the terminator on Linux, fewer on Windows).
constexpr uint32_t kLongestPath = 4095;

bool stored(const mox_archive_info& info) {
    for (uint8_t byte : info.method)
        if (byte != 0)
            return false;
    return true;
}

// ---- The catalogue's trees -----------------------------------------------------------------------

// The child a note of ours carries, or null for a note that doesn't carry one the normal way.
template <class Record, uint32_t class_id> Record* child_of(const mox_list_note* note) {
    auto* child = reinterpret_cast<Record*>(note->data);
    if (child == nullptr || child->header.class_id != class_id || child->header.owner != note)
        return nullptr;
    return child;
}

mox_archive_folder* folder_of(const mox_list_note* note) {
    return child_of<mox_archive_folder, MOX_ARCHIVE_FOLDER_CLASS_ID>(note);
}

mox_archive_file* file_of(const mox_list_note* note) {
    return child_of<mox_archive_file, MOX_ARCHIVE_FILE_CLASS_ID>(note);
}

// One level up from a folder's list of subfolders: the list that holds the folder itself. Only
// used on lists that the walk went down into, through checked notes.
mox_list* list_above(mox_list* folders) {
    auto* folder = static_cast<mox_archive_folder*>(folders->header.owner);
    auto* note = static_cast<mox_list_note*>(folder->header.owner);
    return static_cast<mox_list*>(note->header.owner);
}

// Ends every folder below `top`, deepest first, so that each note ends a folder without subfolders
// and no chain of releases nests. A note that doesn't carry one of our folders is ended as the list
// ends it.
void end_folders(mox_list* top) {
    mox_list* list = top;
    for (;;) {
        mox_list_note* first = list->first;
        if (first != nullptr) {
            mox_archive_folder* folder = folder_of(first);
            if (folder != nullptr && folder->folders.first != nullptr &&
                folder->folders.header.owner == folder) {
                list = &folder->folders;
            } else {
                mox_list_delete_note(list, &first);
            }
            continue;
        }
        if (list == top)
            return;
        list = list_above(list);
    }
}

mox_bool create_in(mox_archive* archive, mox_archive_folder* parent, mox_archive_folder** out) {
    return parent != nullptr ? SubFolders<NullArguments::silent>::create(parent, out, 0)
                             : TopFolders::create(archive, out, 0);
}

mox_bool create_in(mox_archive* archive, mox_archive_folder* parent, mox_archive_file** out) {
    return parent != nullptr ? FolderFiles::create(parent, out, 0) : TopFiles::create(archive, out, 0);
}

// ---- The catalogue from a folder on disc ---------------------------------------------------------

// The folders (or files) listed in `path`, as records at the tail of `parent`, or at the top of the
// archive for a null parent, each with its name and its path on disc.
template <class Record> bool add_entries(mox_archive* archive, mox_archive_folder* parent, const char* path) {
    constexpr bool folders = std::is_same_v<Record, mox_archive_folder>;
    mox_astring_array names;
    mox_astring_array_construct(&names, nullptr);
    mox_bool listed = folders ? mox_get_folders(&names, path) : mox_get_files(&names, path);
    // Intended: a folder that can't be listed has no subfolders, but its files must be listed.
    bool ok = folders || listed;
    for (uint32_t i = 0; i < names.length && ok; ++i) {
        Record* record = nullptr;
        ok = create_in(archive, parent, &record) && mox_astring_duplicate(&record->name, names.items[i]) &&
             mox_astring_concate_3(&record->path, path, kSeparator, names.items[i]);
    }
    mox_astring_array_destruct(&names);
    return ok;
}

// Every level of folders below `folder` down to `levels` (0: none), each with its files; the files
// of `folder` itself are left to the caller. Records are made level by level in the order of the
// listings, and the tree is walked through its notes, with no recursion.
bool walk_disc(mox_archive* archive, const char* folder, uint32_t levels) {
    if (levels == 0)
        return true;
    if (!add_entries<mox_archive_folder>(archive, nullptr, folder))
        return false;
    mox_list* top = &archive->folders;
    mox_list* list = top;
    mox_list_note* note = top->first;
    uint32_t left = levels - 1; // levels still to take below the folders of `list`
    while (note != nullptr) {
        auto* current = reinterpret_cast<mox_archive_folder*>(note->data);
        if (left != 0 && !add_entries<mox_archive_folder>(archive, current, current->path))
            return false;
        if (!add_entries<mox_archive_file>(archive, current, current->path))
            return false;
        if (current->folders.first != nullptr) {
            list = &current->folders;
            note = list->first;
            --left;
            continue;
        }
        while (note->next == nullptr) {
            if (list == top)
                return true;
            note = static_cast<mox_list_note*>(
                static_cast<mox_archive_folder*>(list->header.owner)->header.owner);
            list = list_above(list);
            ++left;
        }
        note = note->next;
    }
    return true;
}

// ---- The writer ----------------------------------------------------------------------------------

struct Writer {
    mox_archive* archive;
    mox_file* file;
    uint8_t* buffer = nullptr;
    // A write that takes fewer bytes than it was given spoils the archive: the whole is false.
    bool ok = true;

    void put(const void* data, uint32_t size) {
        if (ok && size != 0 && mox_file_write(file, data, size) != size)
            ok = false;
    }

    void word(uint32_t value) {
        uint8_t bytes[4];
        put_u32_le(bytes, value);
        put(bytes, 4);
    }

    void name(const char* text) {
        if (!ok)
            return;
        uint64_t expected = file->position + 4 + mox_astring_length(text);
        mox_astring_save_to_file(text, file);
        ok = file->position == expected;
    }

    bool file_record(mox_archive_file* record) {
        if (archive->on_file != nullptr)
            archive->on_file(archive, 0, 0);
        mox_file source;
        mox_file_construct(&source, nullptr);
        if (!mox_file_open(&source, record->path, MOX_FILE_READ)) {
            mox_file_destruct(&source);
            return false;
        }
        uint64_t size = 0;
        mox_file_get_size_u64(&source, &size);
        word(kFileKind);
        name(record->name);
        uint8_t bytes[8];
        put_u64_le(bytes, size);
        put(bytes, 8);
        // Intended: the remainder falls only by what the reads bring, so a source that gives fewer
        // bytes than its size said keeps this loop going; it has no other exit.
        uint64_t remaining = size;
        while (remaining != 0 && ok) {
            uint32_t want = remaining < kBufferSize ? static_cast<uint32_t>(remaining) : kBufferSize;
            uint32_t got = mox_file_read(&source, buffer, want);
            put(buffer, got);
            remaining -= got;
        }
        mox_file_destruct(&source);
        return ok;
    }

    bool files(mox_list* list) {
        for (mox_list_note* note = list->first; note != nullptr; note = note->next) {
            mox_archive_file* record = file_of(note);
            if (record == nullptr || !file_record(record))
                return false;
        }
        return true;
    }

    // Depth first through the notes: a folder, its whole subtree of folders, then its files, then
    // its next sibling.
    bool folders(mox_list* top) {
        mox_list* list = top;
        mox_list_note* note = top->first;
        while (note != nullptr) {
            mox_archive_folder* folder = folder_of(note);
            if (folder == nullptr)
                return false;
            word(kFolderKind);
            name(folder->name);
            word(folder->folders.count);
            word(folder->files.count);
            if (!ok)
                return false;
            if (folder->folders.first != nullptr) {
                // The way back up goes through the list's owner.
                if (folder->folders.header.owner != folder)
                    return false;
                list = &folder->folders;
                note = list->first;
                continue;
            }
            if (!files(&folder->files))
                return false;
            while (note->next == nullptr) {
                if (list == top)
                    return true;
                auto* parent = static_cast<mox_archive_folder*>(list->header.owner);
                if (!files(&parent->files))
                    return false;
                note = static_cast<mox_list_note*>(parent->header.owner);
                list = list_above(list);
            }
            note = note->next;
        }
        return true;
    }
};

// ---- The readers ---------------------------------------------------------------------------------

// A stored name is one component of a path: it may not be empty, be made of dots only, or hold a
// separator of either kind or a colon (which names a drive or a stream of a file on Windows). No
// Windows listing gives such a name, so an archive that holds one was made by other hands, and it is
// refused where the name stands. A Linux file whose name holds a colon or a backslash can be packed,
// but its archive doesn't unpack.
bool is_plain_name(const char* name) {
    if (name == nullptr || name[0] == 0)
        return false;
    bool dots_only = true;
    for (const char* c = name; *c != 0; ++c) {
        if (*c == '\\' || *c == '/' || *c == ':')
            return false;
        if (*c != '.')
            dots_only = false;
    }
    return !dots_only;
}

enum class Mode { catalogue, unpack };

struct Reader {
    mox_archive* archive;
    mox_file* file;
    Mode mode;
    uint64_t file_size; // checked against the header, so the end of the records is known
    uint8_t* buffer = nullptr;

    uint64_t left() const { return file->position < file_size ? file_size - file->position : 0; }

    bool word(uint32_t* value) { return read_u32_le(file, value); }

    bool quad(uint64_t* value) {
        uint8_t bytes[8];
        if (mox_file_read(file, bytes, 8) != 8)
            return false;
        *value = get_u64_le(bytes);
        return true;
    }

    // A name as the writer stores it. A count beyond the bytes that are left is refused before any
    // block is asked for, and so is a name with a zero byte inside.
    bool name(mox_astring* slot) {
        uint32_t count = 0;
        if (!word(&count) || count > left() || !mox_astring_set_length(slot, count))
            return false;
        if (count != 0 && mox_file_read(file, *slot, count) != count)
            return false;
        return mox_astring_length(*slot) == count && is_plain_name(*slot);
    }

    // The record at the tail of its parent, with its name and the path rebuilt from the base. A
    // path longer than any system takes could be neither made nor opened; refusing it also keeps
    // the paths of deeply nested records from claiming memory without bound.
    template <class Record> Record* record(mox_archive_folder* parent, const char* base) {
        Record* record = nullptr;
        if (!create_in(archive, parent, &record) || !name(&record->name))
            return nullptr;
        uint64_t length =
            static_cast<uint64_t>(mox_astring_length(base)) + 1 + mox_astring_length(record->name);
        if (length > kLongestPath || !mox_astring_concate_3(&record->path, base, kSeparator, record->name))
            return nullptr;
        return record;
    }

    // A folder record up to its counts; the caller reads what it holds.
    mox_archive_folder* folder_record(mox_archive_folder* parent, const char* base, uint32_t* folders,
                                      uint32_t* files) {
        uint32_t kind = 0;
        if (!word(&kind) || kind != kFolderKind)
            return nullptr;
        auto* folder = record<mox_archive_folder>(parent, base);
        if (folder == nullptr)
            return nullptr;
        if (mode == Mode::unpack && !mox_exist_folder(folder->path) && !mox_create_folder(folder->path, 1))
            return nullptr;
        if (!word(folders) || !word(files))
            return nullptr;
        return folder;
    }

    // The data of a file record must lie inside the file; the reader passes over it.
    bool catalogue_file(mox_archive_folder* parent, const char* base) {
        uint8_t kind[8];
        // Intended: eight bytes for the kind, of which the second word is the count of the name that
        // follows. So only a file record with an empty name is accepted, and a further name is then
        // read as the record's name. Archives with named files are refused here.
        if (mox_file_read(file, kind, 8) != 8 || get_u32_le(kind) != kFileKind || get_u32_le(kind + 4) != 0)
            return false;
        auto* record = this->record<mox_archive_file>(parent, base);
        uint64_t size = 0;
        if (record == nullptr || !quad(&size))
            return false;
        record->offset = file->position;
        record->size = size;
        if (size > left())
            return false;
        return mox_file_set_pointer_u64(file, file->position + size) != 0;
    }

    // Writes the data over the target from its start. Intended: nothing cuts the target, so a longer
    // file that was there keeps its tail.
    bool unpack_file(mox_archive_folder* parent, const char* base) {
        uint32_t kind = 0;
        if (!word(&kind) || kind != kFileKind)
            return false;
        auto* record = this->record<mox_archive_file>(parent, base);
        if (record == nullptr)
            return false;
        if (!mox_exist_file(record->path) && !mox_create_file(record->path, 1))
            return false;
        mox_file target;
        mox_file_construct(&target, nullptr);
        uint64_t size = 0;
        bool ok = mox_file_open(&target, record->path, MOX_FILE_WRITE) && quad(&size);
        if (ok) {
            record->offset = file->position;
            record->size = size;
            // Data that would run past the end of the archive is refused before a byte is written.
            ok = size <= left();
        }
        uint64_t remaining = ok ? size : 0;
        while (remaining != 0 && ok) {
            uint32_t chunk = remaining < kBufferSize ? static_cast<uint32_t>(remaining) : kBufferSize;
            ok = mox_file_read(file, buffer, chunk) == chunk &&
                 mox_file_write(&target, buffer, chunk) == chunk;
            remaining -= chunk;
        }
        mox_file_destruct(&target);
        return ok;
    }

    bool file_record(mox_archive_folder* parent, const char* base) {
        if (archive->on_file != nullptr)
            archive->on_file(archive, 0, 0);
        return mode == Mode::catalogue ? catalogue_file(parent, base) : unpack_file(parent, base);
    }

    // What a folder (or the top level) still has to read.
    struct Level {
        mox_archive_folder* folder;
        uint32_t folders;
        uint32_t files;
    };

    // The records in file order, depth first, with the open levels on a heap stack instead of the
    // machine's.
    bool records(uint32_t folders, uint32_t files, const char* base) {
        Level* levels = nullptr;
        uint32_t depth = 0;
        uint32_t capacity = 0;
        auto push = [&](Level level) {
            if (depth == capacity) {
                uint32_t grown = capacity == 0 ? 16 : capacity * 2;
                if (grown <= capacity || grown > UINT32_MAX / sizeof(Level) ||
                    !mox_memory_resize(reinterpret_cast<void**>(&levels),
                                       static_cast<uint32_t>(grown * sizeof(Level))) ||
                    levels == nullptr)
                    return false;
                capacity = grown;
            }
            levels[depth++] = level;
            return true;
        };
        bool ok = push({nullptr, folders, files});
        while (ok && depth != 0) {
            Level& level = levels[depth - 1];
            const char* path = level.folder != nullptr ? level.folder->path : base;
            if (level.folders != 0) {
                --level.folders;
                Level inner{nullptr, 0, 0};
                inner.folder = folder_record(level.folder, path, &inner.folders, &inner.files);
                ok = inner.folder != nullptr && push(inner);
            } else if (level.files != 0) {
                --level.files;
                ok = file_record(level.folder, path);
            } else {
                --depth;
            }
        }
        mox_memory_free(reinterpret_cast<void**>(&levels));
        return ok;
    }

    // From behind a good header: the lists are emptied, the counts read where `skip` says.
    bool body(const char* base) {
        mox_archive_clear_all(archive);
        uint64_t skip = get_u64_le(archive->info.skip);
        uint32_t folders = 0;
        uint32_t files = 0;
        if (skip > file_size || !mox_file_set_pointer_u64(file, kHeaderSize + skip) || !word(&folders) ||
            !word(&files))
            return false;
        return records(folders, files, base);
    }
};

// The header into `info`. Intended: a bad one closes the caller's file.
bool read_header(mox_archive* self, mox_file* file, uint64_t* file_size) {
    uint32_t got = mox_file_read(file, &self->info, kHeaderSize);
    mox_file_get_size_u64(file, file_size);
    if (got != kHeaderSize || get_u32_le(self->info.format) != 0 ||
        get_u64_le(self->info.file_size) != *file_size) {
        mox_file_destruct(file);
        return false;
    }
    return true;
}

// The body of the two `free` entries of the folder and the file, which post on a null slot and on a
// slot holding null.
template <class Record, mox_bool (*destruct)(Record*)> mox_bool free_posted(Record** slot) {
    if (slot == nullptr)
        return fail_params();
    if (*slot == nullptr)
        hint_params();
    else
        destruct(*slot);
    return mox_memory_free(reinterpret_cast<void**>(slot));
}

} // namespace

} // namespace mox

using mox::fail_params;
using mox::NullArguments;

extern "C" {

// ---- The archive ---------------------------------------------------------------------------------

MOX_API mox_bool mox_archive_construct(mox_archive* self, void* owner) {
    if (!mox_object_construct(self, owner, MOX_ARCHIVE_CLASS_ID))
        return 0;
    self->info = mox_archive_info{};
    self->on_file = nullptr;
    mox_list_construct(&self->folders, self);
    mox_list_construct(&self->files, self);
    return 1;
}

MOX_API mox_bool mox_archive_destruct(mox_archive* self) {
    if (self == nullptr)
        return 0;
    mox_list_destruct(&self->folders);
    mox_list_destruct(&self->files);
    return mox_object_destruct(self);
}

MOX_API mox_bool mox_archive_new(mox_archive** out, void* owner) {
    return mox::new_instance<mox_archive, mox_archive_construct, NullArguments::silent>(out, owner);
}

MOX_API mox_bool mox_archive_free(mox_archive** slot) {
    if (slot == nullptr)
        return 0;
    if (*slot != nullptr)
        mox_archive_destruct(*slot);
    return mox_memory_free(reinterpret_cast<void**>(slot));
}

MOX_API mox_bool mox_archive_clear_all(mox_archive* self) {
    if (self == nullptr)
        return 0;
    mox_bool folders = mox::TopFolders::clear(self);
    mox_bool files = mox::TopFiles::clear(self);
    return folders && files;
}

MOX_API mox_bool mox_archive_clear_folder(mox_archive* self) { return mox::TopFolders::clear(self); }

MOX_API mox_bool mox_archive_clear_file(mox_archive* self) { return mox::TopFiles::clear(self); }

MOX_API mox_bool mox_archive_create_folder(mox_archive* self, mox_archive_folder** out, uint8_t position) {
    return mox::TopFolders::create(self, out, position);
}

MOX_API mox_bool mox_archive_create_file(mox_archive* self, mox_archive_file** out, uint8_t position) {
    return mox::TopFiles::create(self, out, position);
}

MOX_API mox_bool mox_archive_delete_folder(mox_archive* self, mox_archive_folder** slot) {
    return mox::TopFolders::remove(self, slot);
}

MOX_API mox_bool mox_archive_delete_file(mox_archive* self, mox_archive_file** slot) {
    return mox::TopFiles::remove(self, slot);
}

MOX_API mox_bool mox_archive_first_folder(mox_archive* self, mox_archive_folder** out) {
    return mox::TopFolders::first(self, out);
}

MOX_API mox_bool mox_archive_last_folder(mox_archive* self, mox_archive_folder** out) {
    return mox::TopFolders::last(self, out);
}

MOX_API mox_bool mox_archive_first_file(mox_archive* self, mox_archive_file** out) {
    return mox::TopFiles::first(self, out);
}

MOX_API mox_bool mox_archive_last_file(mox_archive* self, mox_archive_file** out) {
    return mox::TopFiles::last(self, out);
}

// `depth` counts the levels of folders taken, `folder` being the first; 0 wraps round to all.
MOX_API mox_bool mox_archive_from_folder(mox_archive* self, const char* folder, uint32_t depth) {
    if (self == nullptr || folder == nullptr)
        return 0;
    mox_archive_clear_all(self);
    if (!mox::walk_disc(self, folder, depth - 1)) {
        mox_archive_clear_folder(self);
        return 0;
    }
    if (!mox::add_entries<mox_archive_file>(self, nullptr, folder)) {
        mox_archive_clear_all(self);
        return 0;
    }
    return 1;
}

MOX_API mox_bool mox_archive_read_from_file(mox_archive* self, mox_file* file) {
    if (self == nullptr || file == nullptr)
        return 0;
    uint64_t file_size = 0;
    if (!mox::read_header(self, file, &file_size))
        return 0;
    // `method` isn't looked at: the catalogue reads no data.
    mox::Reader reader{self, file, mox::Mode::catalogue, file_size};
    return reader.body("") ? 1 : 0;
}

MOX_API mox_bool mox_archive_read_from(mox_archive* self, const char* name) {
    if (self == nullptr || name == nullptr || !mox_exist_file(name))
        return 0;
    mox_file file;
    mox_file_construct(&file, nullptr);
    mox_bool result = 0;
    if (mox_file_open(&file, name, MOX_FILE_READ))
        result = mox_archive_read_from_file(self, &file);
    mox_file_destruct(&file);
    return result;
}

MOX_API mox_bool mox_archive_compress_to_file(mox_archive* self, mox_file* file) {
    if (self == nullptr || file == nullptr)
        return 0;
    mox::Writer writer{self, file};
    // Intended: the counts follow the header at once, whatever `skip` holds.
    writer.put(&self->info, mox::kHeaderSize);
    writer.word(self->folders.count);
    writer.word(self->files.count);
    bool ok = false;
    if (mox_memory_new(reinterpret_cast<void**>(&writer.buffer), mox::kBufferSize)) {
        // Intended: any method but "stored" writes nothing more and fails.
        if (mox::stored(self->info)) {
            ok = writer.ok && writer.folders(&self->folders) && writer.files(&self->files);
            if (ok) {
                uint64_t total = file->position;
                uint8_t bytes[8];
                mox::put_u64_le(bytes, total);
                ok = mox_file_set_pointer_u64(file, mox::kFileSizeOffset) &&
                     mox_file_write(file, bytes, 8) == 8 && mox_file_set_pointer_u64(file, total);
            }
        }
        mox_memory_free(reinterpret_cast<void**>(&writer.buffer));
    }
    // Whatever was there behind the archive, or behind a failure, goes.
    mox_file_set_eof(file);
    return ok ? 1 : 0;
}

MOX_API mox_bool mox_archive_compress(mox_archive* self, const char* name) {
    if (self == nullptr || name == nullptr)
        return 0;
    if (!mox_exist_file(name))
        mox_create_file(name, 1);
    mox_file file;
    mox_file_construct(&file, nullptr);
    mox_bool result = 0;
    if (mox_file_open(&file, name, MOX_FILE_WRITE))
        result = mox_archive_compress_to_file(self, &file);
    mox_file_destruct(&file);
    // No half-written archive is left behind.
    if (!result)
        mox_delete_file(name);
    return result;
}

MOX_API mox_bool mox_archive_decompress_from_file(mox_archive* self, mox_file* file, const char* folder) {
    if (self == nullptr || file == nullptr || folder == nullptr)
        return 0;
    uint64_t file_size = 0;
    if (!mox::read_header(self, file, &file_size))
        return 0;
    mox::Reader reader{self, file, mox::Mode::unpack, file_size};
    if (!mox_memory_new(reinterpret_cast<void**>(&reader.buffer), mox::kBufferSize))
        return 0;
    // Intended: any method but "stored" unpacks nothing and fails.
    bool ok = mox::stored(self->info) && reader.body(folder);
    mox_memory_free(reinterpret_cast<void**>(&reader.buffer));
    return ok ? 1 : 0;
}

MOX_API mox_bool mox_archive_decompress(mox_archive* self, const char* name, const char* folder) {
    if (self == nullptr || name == nullptr || folder == nullptr || !mox_exist_file(name))
        return 0;
    mox_file file;
    mox_file_construct(&file, nullptr);
    mox_bool result = 0;
    if (mox_file_open(&file, name, MOX_FILE_READ))
        result = mox_archive_decompress_from_file(self, &file, folder);
    mox_file_destruct(&file);
    return result;
}

// ---- Folders -------------------------------------------------------------------------------------

MOX_API mox_bool mox_archive_folder_construct(mox_archive_folder* self, void* owner) {
    if (self == nullptr)
        return fail_params();
    mox_object_construct(self, owner, MOX_ARCHIVE_FOLDER_CLASS_ID);
    mox_astring_construct(&self->path);
    mox_astring_construct(&self->name);
    mox_list_construct(&self->folders, self);
    mox_list_construct(&self->files, self);
    return 1;
}

MOX_API mox_bool mox_archive_folder_destruct(mox_archive_folder* self) {
    if (self == nullptr)
        return fail_params();
    mox::end_folders(&self->folders);
    mox_list_destruct(&self->folders);
    mox_list_destruct(&self->files);
    mox_memory_free(reinterpret_cast<void**>(&self->path));
    mox_memory_free(reinterpret_cast<void**>(&self->name));
    return mox_object_destruct(self);
}

MOX_API mox_bool mox_archive_folder_new(mox_archive_folder** out, void* owner) {
    return mox::new_instance<mox_archive_folder, mox_archive_folder_construct, NullArguments::posted>(out,
                                                                                                      owner);
}

MOX_API mox_bool mox_archive_folder_free(mox_archive_folder** slot) {
    return mox::free_posted<mox_archive_folder, mox_archive_folder_destruct>(slot);
}

MOX_API mox_bool mox_archive_folder_clear_all(mox_archive_folder* self) {
    if (self == nullptr)
        return fail_params();
    mox_bool folders = mox::SubFolders<NullArguments::posted>::clear(self);
    mox_bool files = mox::FolderFiles::clear(self);
    return folders && files;
}

MOX_API mox_bool mox_archive_folder_clear_folder(mox_archive_folder* self) {
    return mox::SubFolders<NullArguments::posted>::clear(self);
}

MOX_API mox_bool mox_archive_folder_clear_file(mox_archive_folder* self) {
    return mox::FolderFiles::clear(self);
}

MOX_API mox_bool mox_archive_folder_create_folder(mox_archive_folder* self, mox_archive_folder** out,
                                                  uint8_t position) {
    return mox::SubFolders<NullArguments::posted>::create(self, out, position);
}

MOX_API mox_bool mox_archive_folder_create_file(mox_archive_folder* self, mox_archive_file** out,
                                                uint8_t position) {
    return mox::FolderFiles::create(self, out, position);
}

MOX_API mox_bool mox_archive_folder_delete_folder(mox_archive_folder* self, mox_archive_folder** slot) {
    return mox::SubFolders<NullArguments::silent>::remove(self, slot);
}

// A slot holding null is left alone.
MOX_API mox_bool mox_archive_folder_delete_file(mox_archive_folder* self, mox_archive_file** slot) {
    if (slot != nullptr && *slot == nullptr)
        return 0;
    return mox::FolderFiles::remove(self, slot);
}

MOX_API mox_bool mox_archive_folder_first_folder(mox_archive_folder* self, mox_archive_folder** out) {
    return mox::SubFolders<NullArguments::silent>::first(self, out);
}

MOX_API mox_bool mox_archive_folder_last_folder(mox_archive_folder* self, mox_archive_folder** out) {
    return mox::SubFolders<NullArguments::silent>::last(self, out);
}

MOX_API mox_bool mox_archive_folder_first_file(mox_archive_folder* self, mox_archive_file** out) {
    return mox::FolderFiles::first(self, out);
}

MOX_API mox_bool mox_archive_folder_last_file(mox_archive_folder* self, mox_archive_file** out) {
    return mox::FolderFiles::last(self, out);
}

MOX_API mox_bool mox_archive_folder_next(mox_archive_folder* self, mox_archive_folder** out) {
    return mox::TopFolders::next(self, out);
}

MOX_API mox_bool mox_archive_folder_prev(mox_archive_folder* self, mox_archive_folder** out) {
    return mox::TopFolders::prev(self, out);
}

// ---- Files ---------------------------------------------------------------------------------------

MOX_API mox_bool mox_archive_file_construct(mox_archive_file* self, void* owner) {
    if (self == nullptr)
        return fail_params();
    mox_object_construct(self, owner, MOX_ARCHIVE_FILE_CLASS_ID);
    mox_astring_construct(&self->path);
    mox_astring_construct(&self->name);
    self->offset = 0;
    self->size = 0;
    return 1;
}

MOX_API mox_bool mox_archive_file_destruct(mox_archive_file* self) {
    if (self == nullptr)
        return fail_params();
    mox_memory_free(reinterpret_cast<void**>(&self->path));
    mox_memory_free(reinterpret_cast<void**>(&self->name));
    return mox_object_destruct(self);
}

MOX_API mox_bool mox_archive_file_new(mox_archive_file** out, void* owner) {
    return mox::new_instance<mox_archive_file, mox_archive_file_construct, NullArguments::posted>(out, owner);
}

MOX_API mox_bool mox_archive_file_free(mox_archive_file** slot) {
    return mox::free_posted<mox_archive_file, mox_archive_file_destruct>(slot);
}

MOX_API mox_bool mox_archive_file_next(mox_archive_file* self, mox_archive_file** out) {
    return mox::TopFiles::next(self, out);
}

MOX_API mox_bool mox_archive_file_prev(mox_archive_file* self, mox_archive_file** out) {
    return mox::TopFiles::prev(self, out);
}

} // extern "C"
