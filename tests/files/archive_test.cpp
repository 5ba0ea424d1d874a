#include <mox/mox.h>

#include <gtest/gtest.h>

#include <algorithm>
#include <cstddef>
#include <cstring>
#include <filesystem>
#include <functional>
#include <string>
#include <sys/stat.h>
#include <tuple>
#include <unistd.h>
#include <vector>

#include "files/archive_bytes.h"
#include "support/child.h"
#include "support/error_listener.h"
#include "support/temp_folder.h"

using archive_bytes::Builder;
using archive_bytes::Bytes;
using archive_bytes::bytes_of;
using archive_bytes::get64;
using mox_test::ErrorListener;
using mox_test::read_bytes;
using mox_test::TempFolder;
using mox_test::write_bytes;

namespace {

namespace fs = std::filesystem;
using archive_bytes::tree_of;

std::string str(const char* text) { return text == nullptr ? "<null>" : text; }

// The system form of a path in the library's form.
std::string system_path(std::string path) {
    std::replace(path.begin(), path.end(), '\\', '/');
    return path;
}

void make_file(const std::string& path, const Bytes& data) {
    fs::path where(system_path(path));
    if (where.has_parent_path())
        fs::create_directories(where.parent_path());
    write_bytes(where.string(), data);
}

void make_file(const std::string& path, const std::string& text) { make_file(path, bytes_of(text)); }

mox_archive_folder* folder_at(const mox_list& list, uint32_t index) {
    mox_list_note* note = list.first;
    for (uint32_t i = 0; i < index && note != nullptr; ++i)
        note = note->next;
    return note == nullptr ? nullptr : reinterpret_cast<mox_archive_folder*>(note->data);
}

mox_archive_file* file_at(const mox_list& list, uint32_t index) {
    mox_list_note* note = list.first;
    for (uint32_t i = 0; i < index && note != nullptr; ++i)
        note = note->next;
    return note == nullptr ? nullptr : reinterpret_cast<mox_archive_file*>(note->data);
}

// What on_file was called with, through the archive's user word.
struct Calls {
    std::vector<std::tuple<mox_archive*, uintptr_t, uintptr_t>> seen;
};

mox_bool note_call(mox_archive* self, uintptr_t first, uintptr_t second) {
    reinterpret_cast<Calls*>(self->header.user)->seen.emplace_back(self, first, second);
    return 0; // the result is ignored: the work goes on
}

// The library's own listing of a folder, in the system's order.
std::vector<std::string> listing(const std::string& folder, bool folders) {
    mox_astring_array names;
    mox_astring_array_construct(&names, nullptr);
    EXPECT_EQ(folders ? mox_get_folders(&names, folder.c_str()) : mox_get_files(&names, folder.c_str()), 1);
    std::vector<std::string> out;
    for (uint32_t i = 0; i < names.length; ++i)
        out.push_back(names.items[i]);
    mox_astring_array_destruct(&names);
    return out;
}

// The records of a folder on disc as the writer is expected to put them, in the listing's order.
void expected_folder(Builder& out, const std::string& path, const std::string& name) {
    std::vector<std::string> folders = listing(path, true);
    std::vector<std::string> files = listing(path, false);
    out.folder(name, static_cast<uint32_t>(folders.size()), static_cast<uint32_t>(files.size()));
    for (const std::string& folder : folders)
        expected_folder(out, path + "\\" + folder, folder);
    for (const std::string& file : files)
        out.file(file, read_bytes(system_path(path + "\\" + file)));
}

Bytes expected_archive(const std::string& root) {
    Builder out;
    std::vector<std::string> folders = listing(root, true);
    std::vector<std::string> files = listing(root, false);
    out.counts(static_cast<uint32_t>(folders.size()), static_cast<uint32_t>(files.size()));
    for (const std::string& folder : folders)
        expected_folder(out, root + "\\" + folder, folder);
    for (const std::string& file : files)
        out.file(file, read_bytes(system_path(root + "\\" + file)));
    return out.done();
}

Bytes pattern(size_t size) {
    Bytes out(size);
    for (size_t i = 0; i < size; ++i)
        out[i] = static_cast<uint8_t>(i * 131 + (i >> 9));
    return out;
}

// Each test works in a fresh folder of its own, which is also the work folder, so that the
// library's relative paths land there.
struct ArchiveTest : ::testing::Test {
    TempFolder folder;
    std::string saved;
    mox_archive archive{};
    Calls calls;

    void SetUp() override {
        saved = fs::current_path().string();
        ASSERT_EQ(chdir(folder.path().c_str()), 0);
        ASSERT_EQ(mox_archive_construct(&archive, nullptr), 1);
        archive.header.user = reinterpret_cast<uintptr_t>(&calls);
    }
    void TearDown() override {
        EXPECT_EQ(mox_archive_destruct(&archive), 1);
        ASSERT_EQ(chdir(saved.c_str()), 0);
    }

    mox_archive_file* add_file(const char* path, const char* name) {
        mox_archive_file* file = nullptr;
        EXPECT_EQ(mox_archive_create_file(&archive, &file, 0), 1);
        mox_astring_duplicate(&file->path, path);
        mox_astring_duplicate(&file->name, name);
        return file;
    }

    // The archive written through an open file that held `before`.
    mox_bool compress_to(const std::string& name, const Bytes& before = {}) {
        write_bytes(name, before);
        mox_file file;
        mox_file_construct(&file, nullptr);
        EXPECT_EQ(mox_file_open(&file, name.c_str(), MOX_FILE_WRITE), 1);
        mox_bool result = mox_archive_compress_to_file(&archive, &file);
        mox_file_destruct(&file);
        return result;
    }

    // Reads or unpacks `bytes` through an open file, which is checked afterwards for being closed.
    mox_bool read(const Bytes& bytes, bool* closed = nullptr) {
        write_bytes("in.arc", bytes);
        mox_file file;
        mox_file_construct(&file, nullptr);
        EXPECT_EQ(mox_file_open(&file, "in.arc", MOX_FILE_READ), 1);
        mox_bool result = mox_archive_read_from_file(&archive, &file);
        if (closed != nullptr)
            *closed = file.handle == MOX_FILE_CLOSED;
        mox_file_destruct(&file);
        return result;
    }

    mox_bool unpack(const Bytes& bytes, const char* target, bool* closed = nullptr) {
        write_bytes("in.arc", bytes);
        mox_file file;
        mox_file_construct(&file, nullptr);
        EXPECT_EQ(mox_file_open(&file, "in.arc", MOX_FILE_READ), 1);
        mox_bool result = mox_archive_decompress_from_file(&archive, &file, target);
        if (closed != nullptr)
            *closed = file.handle == MOX_FILE_CLOSED;
        mox_file_destruct(&file);
        return result;
    }

    // One folder and one file per level, so that listing order can't matter:
    //   src/top.txt  src/a/a.txt  src/a/b/empty.txt  src/a/b/c/
    void make_levels() {
        make_file("src/top.txt", "T");
        make_file("src/a/a.txt", "alpha");
        make_file("src/a/b/empty.txt", "");
        fs::create_directories("src/a/b/c");
    }

    Bytes levels_archive(uint64_t offsets[3] = nullptr) {
        uint64_t ignored[3];
        uint64_t* at = offsets != nullptr ? offsets : ignored;
        return Builder()
            .counts(1, 1)
            .folder("a", 1, 1)
            .folder("b", 1, 1)
            .folder("c", 0, 0)
            .file("empty.txt", "", &at[0])
            .file("a.txt", "alpha", &at[1])
            .file("top.txt", "T", &at[2])
            .done();
    }
};

// ---- Records --------------------------------------------------------------------------------------

TEST(ArchiveRecords, TheHeaderIsTheFilesFortyBytesAndLeadsTheRecord) {
    EXPECT_EQ(sizeof(mox_archive_info), 40u);
    EXPECT_EQ(alignof(mox_archive_info), 1u);
    EXPECT_EQ(offsetof(mox_archive_info, format), 0u);
    EXPECT_EQ(offsetof(mox_archive_info, method), 4u);
    EXPECT_EQ(offsetof(mox_archive_info, reserved_1), 12u);
    EXPECT_EQ(offsetof(mox_archive_info, file_size), 16u);
    EXPECT_EQ(offsetof(mox_archive_info, skip), 24u);
    EXPECT_EQ(offsetof(mox_archive_info, reserved_2), 32u);
    EXPECT_EQ(offsetof(mox_archive, info), sizeof(mox_object));
    EXPECT_EQ(offsetof(mox_archive, on_file), sizeof(mox_object) + 40);
    EXPECT_EQ(offsetof(mox_archive_folder, path), sizeof(mox_object));
    EXPECT_EQ(offsetof(mox_archive_file, path), sizeof(mox_object));
}

TEST(ArchiveRecords, ConstructZeroesTheHeaderAndEmbedsBothLists) {
    mox_archive archive;
    std::memset(&archive, 0xAB, sizeof archive);
    int owner = 0;
    ASSERT_EQ(mox_archive_construct(&archive, &owner), 1);
    EXPECT_EQ(archive.header.owner, &owner);
    EXPECT_EQ(archive.header.class_id, 0x32BF55FDu);
    EXPECT_EQ(archive.header.flags, 0u);
    EXPECT_EQ(archive.header.user, 0u);
    EXPECT_EQ(
        Bytes(reinterpret_cast<uint8_t*>(&archive.info), reinterpret_cast<uint8_t*>(&archive.info) + 40),
        Bytes(40, 0));
    EXPECT_EQ(archive.on_file, nullptr);
    for (mox_list* list : {&archive.folders, &archive.files}) {
        EXPECT_EQ(list->header.class_id, MOX_LIST_CLASS_ID);
        EXPECT_EQ(list->header.owner, &archive);
        EXPECT_EQ(list->count, 0u);
        EXPECT_EQ(list->first, nullptr);
        EXPECT_EQ(list->last, nullptr);
    }
    EXPECT_EQ(mox_archive_destruct(&archive), 1);
}

TEST(ArchiveRecords, NewAndFreeOfTheArchive) {
    int owner = 0;
    mox_archive* archive = nullptr;
    ASSERT_EQ(mox_archive_new(&archive, &owner), 1);
    ASSERT_NE(archive, nullptr);
    EXPECT_EQ(archive->header.class_id, MOX_ARCHIVE_CLASS_ID);
    EXPECT_EQ(archive->header.owner, &owner);
    mox_archive_folder* folder = nullptr;
    mox_archive_file* file = nullptr;
    ASSERT_EQ(mox_archive_create_folder(archive, &folder, 0), 1);
    ASSERT_EQ(mox_archive_folder_create_file(folder, &file, 0), 1);
    ASSERT_EQ(mox_archive_create_file(archive, &file, 0), 1);
    EXPECT_EQ(mox_archive_free(&archive), 1);
    EXPECT_EQ(archive, nullptr);
}

TEST(ArchiveRecords, TheFolderAndTheFileStartEmpty) {
    int owner = 0;
    mox_archive_folder* folder = nullptr;
    ASSERT_EQ(mox_archive_folder_new(&folder, &owner), 1);
    EXPECT_EQ(folder->header.class_id, 0x84CE83FCu);
    EXPECT_EQ(folder->header.owner, &owner);
    EXPECT_EQ(folder->path, nullptr);
    EXPECT_EQ(folder->name, nullptr);
    EXPECT_EQ(folder->folders.header.owner, folder);
    EXPECT_EQ(folder->files.header.owner, folder);
    EXPECT_EQ(folder->folders.count + folder->files.count, 0u);
    EXPECT_EQ(mox_archive_folder_free(&folder), 1);
    EXPECT_EQ(folder, nullptr);

    mox_archive_file file;
    std::memset(&file, 0xCD, sizeof file);
    ASSERT_EQ(mox_archive_file_construct(&file, &owner), 1);
    EXPECT_EQ(file.header.class_id, 0xBEBFC02Bu);
    EXPECT_EQ(file.header.owner, &owner);
    EXPECT_EQ(file.path, nullptr);
    EXPECT_EQ(file.name, nullptr);
    EXPECT_EQ(file.offset, 0u);
    EXPECT_EQ(file.size, 0u);
    mox_astring_duplicate(&file.path, "p");
    mox_astring_duplicate(&file.name, "n");
    EXPECT_EQ(mox_archive_file_destruct(&file), 1);

    mox_archive_file* made = nullptr;
    ASSERT_EQ(mox_archive_file_new(&made, nullptr), 1);
    mox_astring_duplicate(&made->name, "n");
    EXPECT_EQ(mox_archive_file_free(&made), 1);
    EXPECT_EQ(made, nullptr);
}

// ---- Who posts ------------------------------------------------------------------------------------

void expect_posted(const std::function<mox_bool()>& call, const char* what) {
    ErrorListener listener;
    EXPECT_EQ(call(), 0) << what;
    EXPECT_EQ(listener.hints(), std::vector<std::string>{"core.params"}) << what;
    EXPECT_TRUE(listener.warnings().empty()) << what;
}

void expect_silent(const std::function<mox_bool()>& call, const char* what) {
    ErrorListener listener;
    EXPECT_EQ(call(), 0) << what;
    EXPECT_TRUE(listener.silent()) << what;
}

TEST(ArchivePosting, TheFolderAndFileEntriesThatPost) {
    mox_archive_folder* folder = nullptr;
    mox_archive_file* file = nullptr;
    mox_archive_folder* null_folder = nullptr;
    mox_archive_file* null_file = nullptr;
    ASSERT_EQ(mox_archive_folder_new(&folder, nullptr), 1);
    expect_posted([] { return mox_archive_file_construct(nullptr, nullptr); }, "file_construct");
    expect_posted([] { return mox_archive_file_destruct(nullptr); }, "file_destruct");
    expect_posted([] { return mox_archive_file_new(nullptr, nullptr); }, "file_new");
    expect_posted([] { return mox_archive_file_free(nullptr); }, "file_free(null)");
    expect_posted([&] { return mox_archive_file_free(&null_file); }, "file_free(&null)");
    expect_posted([] { return mox_archive_folder_construct(nullptr, nullptr); }, "folder_construct");
    expect_posted([] { return mox_archive_folder_destruct(nullptr); }, "folder_destruct");
    expect_posted([] { return mox_archive_folder_new(nullptr, nullptr); }, "folder_new");
    expect_posted([] { return mox_archive_folder_free(nullptr); }, "folder_free(null)");
    expect_posted([&] { return mox_archive_folder_free(&null_folder); }, "folder_free(&null)");
    expect_posted([] { return mox_archive_folder_clear_all(nullptr); }, "folder_clear_all");
    expect_posted([] { return mox_archive_folder_clear_folder(nullptr); }, "folder_clear_folder");
    expect_posted([&] { return mox_archive_folder_create_folder(nullptr, &null_folder, 0); },
                  "folder_create_folder(null, out)");
    expect_posted([&] { return mox_archive_folder_create_folder(folder, nullptr, 0); },
                  "folder_create_folder(self, null)");
    {
        // Their normal paths are quiet.
        ErrorListener listener;
        mox_archive_folder* child = nullptr;
        EXPECT_EQ(mox_archive_folder_create_folder(folder, &child, 0), 1);
        EXPECT_EQ(mox_archive_folder_create_file(folder, &file, 0), 1);
        EXPECT_EQ(mox_archive_folder_clear_folder(folder), 1);
        EXPECT_EQ(mox_archive_folder_clear_all(folder), 1);
        EXPECT_TRUE(listener.silent());
    }
    EXPECT_EQ(mox_archive_folder_free(&folder), 1);
}

TEST(ArchivePosting, EveryOtherEntryIsSilent) {
    mox_archive archive;
    mox_archive_folder* folder = nullptr;
    mox_archive_file* file = nullptr;
    mox_file open;
    ASSERT_EQ(mox_archive_construct(&archive, nullptr), 1);
    ASSERT_EQ(mox_archive_create_folder(&archive, &folder, 0), 1);
    ASSERT_EQ(mox_archive_create_file(&archive, &file, 0), 1);
    mox_file_construct(&open, nullptr);
    mox_archive* no_archive = nullptr;
    mox_archive_folder* no_folder = nullptr;
    mox_archive_file* no_file = nullptr;
    mox_archive* a = &archive;
    mox_archive_folder* f = folder;
    mox_file* o = &open;

    expect_silent([] { return mox_archive_construct(nullptr, nullptr); }, "construct");
    expect_silent([] { return mox_archive_destruct(nullptr); }, "destruct");
    expect_silent([] { return mox_archive_new(nullptr, nullptr); }, "new");
    expect_silent([] { return mox_archive_free(nullptr); }, "free(null)");
    expect_silent([&] { return mox_archive_free(&no_archive); }, "free(&null)");
    expect_silent([] { return mox_archive_clear_all(nullptr); }, "clear_all");
    expect_silent([] { return mox_archive_clear_folder(nullptr); }, "clear_folder");
    expect_silent([] { return mox_archive_clear_file(nullptr); }, "clear_file");
    expect_silent([&] { return mox_archive_create_folder(nullptr, &no_folder, 0); }, "create_folder");
    expect_silent([&] { return mox_archive_create_folder(a, nullptr, 0); }, "create_folder(out)");
    expect_silent([&] { return mox_archive_create_file(nullptr, &no_file, 0); }, "create_file");
    expect_silent([&] { return mox_archive_create_file(a, nullptr, 0); }, "create_file(out)");
    expect_silent([&] { return mox_archive_delete_folder(nullptr, &no_folder); }, "delete_folder");
    expect_silent([&] { return mox_archive_delete_folder(a, nullptr); }, "delete_folder(slot)");
    expect_silent([&] { return mox_archive_delete_file(nullptr, &no_file); }, "delete_file");
    expect_silent([&] { return mox_archive_delete_file(a, nullptr); }, "delete_file(slot)");
    expect_silent([&] { return mox_archive_first_folder(nullptr, &no_folder); }, "first_folder");
    expect_silent([&] { return mox_archive_last_folder(a, nullptr); }, "last_folder");
    expect_silent([&] { return mox_archive_first_file(nullptr, &no_file); }, "first_file");
    expect_silent([&] { return mox_archive_last_file(a, nullptr); }, "last_file");
    expect_silent([] { return mox_archive_from_folder(nullptr, "x", 0); }, "from_folder");
    expect_silent([&] { return mox_archive_from_folder(a, nullptr, 0); }, "from_folder(folder)");
    expect_silent([] { return mox_archive_read_from(nullptr, "x"); }, "read_from");
    expect_silent([&] { return mox_archive_read_from(a, nullptr); }, "read_from(name)");
    expect_silent([&] { return mox_archive_read_from_file(nullptr, o); }, "read_from_file");
    expect_silent([&] { return mox_archive_read_from_file(a, nullptr); }, "read_from_file(file)");
    expect_silent([] { return mox_archive_compress(nullptr, "x"); }, "compress");
    expect_silent([&] { return mox_archive_compress(a, nullptr); }, "compress(name)");
    expect_silent([&] { return mox_archive_compress_to_file(nullptr, o); }, "compress_to_file");
    expect_silent([&] { return mox_archive_compress_to_file(a, nullptr); }, "compress_to_file(file)");
    expect_silent([] { return mox_archive_decompress(nullptr, "x", "y"); }, "decompress");
    expect_silent([&] { return mox_archive_decompress(a, nullptr, "y"); }, "decompress(name)");
    expect_silent([&] { return mox_archive_decompress(a, "x", nullptr); }, "decompress(folder)");
    expect_silent([&] { return mox_archive_decompress_from_file(nullptr, o, "y"); }, "decompress_from_file");
    expect_silent([&] { return mox_archive_decompress_from_file(a, nullptr, "y"); },
                  "decompress_from_file(f)");
    expect_silent([&] { return mox_archive_decompress_from_file(a, o, nullptr); }, "decompress_from_file(d)");
    expect_silent([] { return mox_archive_folder_clear_file(nullptr); }, "folder_clear_file");
    expect_silent([&] { return mox_archive_folder_create_file(nullptr, &no_file, 0); }, "folder_create_file");
    expect_silent([&] { return mox_archive_folder_create_file(f, nullptr, 0); }, "folder_create_file(out)");
    expect_silent([&] { return mox_archive_folder_delete_folder(nullptr, &no_folder); },
                  "folder_delete_folder");
    expect_silent([&] { return mox_archive_folder_delete_folder(f, nullptr); }, "folder_delete_folder(s)");
    expect_silent([&] { return mox_archive_folder_delete_file(nullptr, &no_file); }, "folder_delete_file");
    expect_silent([&] { return mox_archive_folder_delete_file(f, nullptr); }, "folder_delete_file(s)");
    expect_silent([&] { return mox_archive_folder_first_folder(nullptr, &no_folder); },
                  "folder_first_folder");
    expect_silent([&] { return mox_archive_folder_last_folder(f, nullptr); }, "folder_last_folder");
    expect_silent([&] { return mox_archive_folder_first_file(nullptr, &no_file); }, "folder_first_file");
    expect_silent([&] { return mox_archive_folder_last_file(f, nullptr); }, "folder_last_file");
    expect_silent([&] { return mox_archive_folder_next(nullptr, &no_folder); }, "folder_next");
    expect_silent([&] { return mox_archive_folder_prev(f, nullptr); }, "folder_prev");
    expect_silent([&] { return mox_archive_file_next(nullptr, &no_file); }, "file_next");
    expect_silent([&] { return mox_archive_file_prev(file, nullptr); }, "file_prev");

    mox_file_destruct(&open);
    EXPECT_EQ(mox_archive_destruct(&archive), 1);
}

// ---- Held children --------------------------------------------------------------------------------

TEST(ArchiveChildren, TopFoldersAndFilesFollowTheHeldChildPattern) {
    mox_archive archive;
    ASSERT_EQ(mox_archive_construct(&archive, nullptr), 1);
    mox_archive_folder *a = nullptr, *b = nullptr, *c = nullptr, *out = nullptr;
    ASSERT_EQ(mox_archive_create_folder(&archive, &a, 0), 1);
    ASSERT_EQ(mox_archive_create_folder(&archive, &b, 1), 1); // at the head
    ASSERT_EQ(mox_archive_create_folder(&archive, &c, 255), 1);
    EXPECT_EQ(archive.folders.count, 3u);
    auto* note = static_cast<mox_list_note*>(a->header.owner);
    EXPECT_EQ(note->header.class_id, MOX_LIST_NOTE_CLASS_ID);
    EXPECT_EQ(note->header.owner, &archive.folders);
    EXPECT_EQ(note->data, reinterpret_cast<uintptr_t>(a));
    EXPECT_NE(note->destroy, nullptr);

    EXPECT_EQ(mox_archive_first_folder(&archive, &out), 1);
    EXPECT_EQ(out, b);
    EXPECT_EQ(mox_archive_last_folder(&archive, &out), 1);
    EXPECT_EQ(out, c);
    EXPECT_EQ(mox_archive_folder_next(b, &out), 1);
    EXPECT_EQ(out, a);
    EXPECT_EQ(mox_archive_folder_prev(c, &out), 1);
    EXPECT_EQ(out, a);
    EXPECT_EQ(mox_archive_folder_next(c, &out), 0);
    EXPECT_EQ(out, nullptr);
    out = a;
    EXPECT_EQ(mox_archive_folder_prev(b, &out), 0);
    EXPECT_EQ(out, nullptr);

    // Intended: false on success; the cleared slot tells it.
    mox_archive_folder* gone = a;
    EXPECT_EQ(mox_archive_delete_folder(&archive, &gone), 0);
    EXPECT_EQ(gone, nullptr);
    EXPECT_EQ(archive.folders.count, 2u);
    EXPECT_EQ(mox_archive_folder_next(b, &out), 1);
    EXPECT_EQ(out, c);

    mox_archive_file *x = nullptr, *y = nullptr, *file_out = nullptr;
    ASSERT_EQ(mox_archive_create_file(&archive, &x, 2), 1);
    ASSERT_EQ(mox_archive_create_file(&archive, &y, 1), 1);
    EXPECT_EQ(mox_archive_first_file(&archive, &file_out), 1);
    EXPECT_EQ(file_out, y);
    EXPECT_EQ(mox_archive_last_file(&archive, &file_out), 1);
    EXPECT_EQ(file_out, x);
    EXPECT_EQ(mox_archive_file_next(y, &file_out), 1);
    EXPECT_EQ(file_out, x);
    EXPECT_EQ(mox_archive_file_prev(x, &file_out), 1);
    EXPECT_EQ(file_out, y);
    EXPECT_EQ(mox_archive_file_prev(y, &file_out), 0);
    EXPECT_EQ(file_out, nullptr);

    // A child of another archive isn't found, and its slot stays.
    mox_archive other;
    ASSERT_EQ(mox_archive_construct(&other, nullptr), 1);
    mox_archive_file* foreign = nullptr;
    ASSERT_EQ(mox_archive_create_file(&other, &foreign, 0), 1);
    mox_archive_file* slot = foreign;
    EXPECT_EQ(mox_archive_delete_file(&archive, &slot), 0);
    EXPECT_EQ(slot, foreign);
    EXPECT_EQ(mox_archive_delete_file(&other, &slot), 0);
    EXPECT_EQ(slot, nullptr);
    EXPECT_EQ(other.files.count, 0u);
    EXPECT_EQ(mox_archive_destruct(&other), 1);

    EXPECT_EQ(mox_archive_clear_folder(&archive), 1);
    EXPECT_EQ(archive.folders.count, 0u);
    EXPECT_EQ(archive.files.count, 2u);
    EXPECT_EQ(mox_archive_first_folder(&archive, &out), 0);
    EXPECT_EQ(out, nullptr);
    EXPECT_EQ(mox_archive_clear_file(&archive), 1);
    EXPECT_EQ(archive.files.count, 0u);
    EXPECT_EQ(mox_archive_last_file(&archive, &file_out), 0);

    ASSERT_EQ(mox_archive_create_folder(&archive, &a, 0), 1);
    ASSERT_EQ(mox_archive_create_file(&archive, &x, 0), 1);
    EXPECT_EQ(mox_archive_clear_all(&archive), 1);
    EXPECT_EQ(archive.folders.count + archive.files.count, 0u);
    EXPECT_EQ(mox_archive_destruct(&archive), 1);
}

TEST(ArchiveChildren, AFolderHoldsFoldersAndFilesTheSameWay) {
    mox_archive_folder folder;
    ASSERT_EQ(mox_archive_folder_construct(&folder, nullptr), 1);
    mox_archive_folder *a = nullptr, *b = nullptr, *out = nullptr;
    mox_archive_file *x = nullptr, *y = nullptr, *file_out = nullptr;
    ASSERT_EQ(mox_archive_folder_create_folder(&folder, &a, 0), 1);
    ASSERT_EQ(mox_archive_folder_create_folder(&folder, &b, 1), 1);
    ASSERT_EQ(mox_archive_folder_create_file(&folder, &x, 0), 1);
    ASSERT_EQ(mox_archive_folder_create_file(&folder, &y, 0), 1);
    EXPECT_EQ(static_cast<mox_list_note*>(x->header.owner)->header.owner, &folder.files);
    EXPECT_EQ(mox_archive_folder_first_folder(&folder, &out), 1);
    EXPECT_EQ(out, b);
    EXPECT_EQ(mox_archive_folder_last_folder(&folder, &out), 1);
    EXPECT_EQ(out, a);
    EXPECT_EQ(mox_archive_folder_first_file(&folder, &file_out), 1);
    EXPECT_EQ(file_out, x);
    EXPECT_EQ(mox_archive_folder_last_file(&folder, &file_out), 1);
    EXPECT_EQ(file_out, y);

    mox_archive_folder* slot = b;
    EXPECT_EQ(mox_archive_folder_delete_folder(&folder, &slot), 0);
    EXPECT_EQ(slot, nullptr);
    EXPECT_EQ(folder.folders.count, 1u);
    mox_archive_file* file_slot = x;
    EXPECT_EQ(mox_archive_folder_delete_file(&folder, &file_slot), 0);
    EXPECT_EQ(file_slot, nullptr);
    // A slot holding null is left alone, and so is the list.
    EXPECT_EQ(mox_archive_folder_delete_file(&folder, &file_slot), 0);
    EXPECT_EQ(folder.files.count, 1u);

    EXPECT_EQ(mox_archive_folder_clear_file(&folder), 1);
    EXPECT_EQ(folder.files.count, 0u);
    EXPECT_EQ(mox_archive_folder_first_file(&folder, &file_out), 0);
    EXPECT_EQ(file_out, nullptr);
    EXPECT_EQ(mox_archive_folder_clear_folder(&folder), 1);
    EXPECT_EQ(folder.folders.count, 0u);
    EXPECT_EQ(mox_archive_folder_last_folder(&folder, &out), 0);
    ASSERT_EQ(mox_archive_folder_create_folder(&folder, &a, 0), 1);
    ASSERT_EQ(mox_archive_folder_create_file(&folder, &x, 0), 1);
    EXPECT_EQ(mox_archive_folder_clear_all(&folder), 1);
    EXPECT_EQ(folder.folders.count + folder.files.count, 0u);
    EXPECT_EQ(mox_archive_folder_destruct(&folder), 1);
}

TEST(ArchiveChildren, ChildrenMadeOutsideAListHaveNoSiblings) {
    mox_archive_folder* folder = nullptr;
    mox_archive_file* file = nullptr;
    ASSERT_EQ(mox_archive_folder_new(&folder, nullptr), 1);
    ASSERT_EQ(mox_archive_file_new(&file, folder), 1);
    mox_archive_folder* out = folder;
    mox_archive_file* file_out = file;
    EXPECT_EQ(mox_archive_folder_next(folder, &out), 0);
    EXPECT_EQ(out, nullptr);
    EXPECT_EQ(mox_archive_file_prev(file, &file_out), 0);
    EXPECT_EQ(file_out, nullptr);
    EXPECT_EQ(mox_archive_file_free(&file), 1);
    EXPECT_EQ(mox_archive_folder_free(&folder), 1);
}

// A catalogue far deeper than the machine stack would allow to end by recursion.
TEST(ArchiveChildren, ADeepTreeEndsWithoutRecursion) {
    mox_archive archive;
    ASSERT_EQ(mox_archive_construct(&archive, nullptr), 1);
    mox_archive_folder* folder = nullptr;
    ASSERT_EQ(mox_archive_create_folder(&archive, &folder, 0), 1);
    mox_archive_folder* top = folder;
    for (int i = 0; i < 200000; ++i) {
        mox_archive_folder* inner = nullptr;
        ASSERT_EQ(mox_archive_folder_create_folder(folder, &inner, 0), 1);
        mox_archive_file* file = nullptr;
        if (i % 1000 == 0) {
            ASSERT_EQ(mox_archive_folder_create_file(folder, &file, 0), 1);
        }
        folder = inner;
    }
    mox_archive_folder* second = nullptr;
    ASSERT_EQ(mox_archive_create_folder(&archive, &second, 0), 1);
    mox_archive_folder* slot = top;
    EXPECT_EQ(mox_archive_delete_folder(&archive, &slot), 0);
    EXPECT_EQ(slot, nullptr);
    EXPECT_EQ(archive.folders.count, 1u);
    folder = second;
    for (int i = 0; i < 200000; ++i) {
        mox_archive_folder* inner = nullptr;
        ASSERT_EQ(mox_archive_folder_create_folder(folder, &inner, 0), 1);
        folder = inner;
    }
    EXPECT_EQ(mox_archive_destruct(&archive), 1);
}

// ---- The catalogue from a folder ------------------------------------------------------------------

TEST_F(ArchiveTest, FromFolderTakesAsManyLevelsAsTheDepthSays) {
    make_levels();

    ASSERT_EQ(mox_archive_from_folder(&archive, "src", 1), 1);
    EXPECT_EQ(archive.folders.count, 0u);
    ASSERT_EQ(archive.files.count, 1u);
    EXPECT_EQ(str(file_at(archive.files, 0)->name), "top.txt");
    EXPECT_EQ(str(file_at(archive.files, 0)->path), "src\\top.txt");

    ASSERT_EQ(mox_archive_from_folder(&archive, "src", 2), 1);
    ASSERT_EQ(archive.folders.count, 1u);
    EXPECT_EQ(archive.files.count, 1u);
    mox_archive_folder* a = folder_at(archive.folders, 0);
    EXPECT_EQ(str(a->name), "a");
    EXPECT_EQ(str(a->path), "src\\a");
    EXPECT_EQ(a->folders.count, 0u);
    ASSERT_EQ(a->files.count, 1u);
    EXPECT_EQ(str(file_at(a->files, 0)->path), "src\\a\\a.txt");

    ASSERT_EQ(mox_archive_from_folder(&archive, "src", 3), 1);
    a = folder_at(archive.folders, 0);
    ASSERT_EQ(a->folders.count, 1u);
    mox_archive_folder* b = folder_at(a->folders, 0);
    EXPECT_EQ(str(b->path), "src\\a\\b");
    EXPECT_EQ(b->folders.count, 0u);
    ASSERT_EQ(b->files.count, 1u);
    EXPECT_EQ(str(file_at(b->files, 0)->name), "empty.txt");

    // Depth 0 wraps round to every level.
    ASSERT_EQ(mox_archive_from_folder(&archive, "src", 0), 1);
    b = folder_at(folder_at(archive.folders, 0)->folders, 0);
    ASSERT_EQ(b->folders.count, 1u);
    mox_archive_folder* c = folder_at(b->folders, 0);
    EXPECT_EQ(str(c->name), "c");
    EXPECT_EQ(str(c->path), "src\\a\\b\\c");
    EXPECT_EQ(c->folders.count + c->files.count, 0u);
    EXPECT_EQ(archive.files.count, 1u);
}

TEST_F(ArchiveTest, FromFolderKeepsTheListingOrderAtEveryLevel) {
    for (const char* name : {"src/f1", "src/zz", "src/b.bin", "src/d1/x", "src/d1/y", "src/d1/e1/p",
                             "src/d2/q", "src/d3/e3/e4/r", "src/d3/s"})
        make_file(name, std::string(name));
    fs::create_directories("src/d1/e2");
    ASSERT_EQ(mox_archive_from_folder(&archive, "src", 0), 1);

    // Walks the catalogue and the listings side by side.
    std::function<void(const mox_list&, const mox_list&, const std::string&)> check =
        [&](const mox_list& folders, const mox_list& files, const std::string& path) {
            std::vector<std::string> names = listing(path, true);
            ASSERT_EQ(folders.count, names.size()) << path;
            for (uint32_t i = 0; i < folders.count; ++i) {
                mox_archive_folder* folder = folder_at(folders, i);
                EXPECT_EQ(str(folder->name), names[i]);
                EXPECT_EQ(str(folder->path), path + "\\" + names[i]);
                check(folder->folders, folder->files, path + "\\" + names[i]);
            }
            names = listing(path, false);
            ASSERT_EQ(files.count, names.size()) << path;
            for (uint32_t i = 0; i < files.count; ++i) {
                EXPECT_EQ(str(file_at(files, i)->name), names[i]);
                EXPECT_EQ(str(file_at(files, i)->path), path + "\\" + names[i]);
            }
        };
    check(archive.folders, archive.files, "src");
    EXPECT_EQ(archive.folders.count, 3u);
    EXPECT_EQ(archive.files.count, 3u);
}

TEST_F(ArchiveTest, FromFolderOfAMissingFolderFailsAndClears) {
    make_levels();
    ASSERT_EQ(mox_archive_from_folder(&archive, "src", 0), 1);
    EXPECT_EQ(mox_archive_from_folder(&archive, "missing", 0), 0);
    EXPECT_EQ(archive.folders.count, 0u);
    EXPECT_EQ(archive.files.count, 0u);
    // A file is no folder: it has no files to list.
    EXPECT_EQ(mox_archive_from_folder(&archive, "src\\top.txt", 0), 0);
    EXPECT_EQ(archive.folders.count + archive.files.count, 0u);
}

// A folder whose name holds the library's separator can be listed but not entered, which fails the
// walk below the top and clears the catalogue.
TEST_F(ArchiveTest, FromFolderFailingBelowTheTopClearsBothLists) {
#if defined(_WIN32)
    GTEST_SKIP() << "on Windows the separator is the system's own and can't stand in a name";
#endif
    make_levels();
    fs::create_directories("src/a/odd\\name");
    EXPECT_EQ(mox_archive_from_folder(&archive, "src", 0), 0);
    EXPECT_EQ(archive.folders.count, 0u);
    EXPECT_EQ(archive.files.count, 0u);
    // Not reached at a depth that stops above it.
    EXPECT_EQ(mox_archive_from_folder(&archive, "src", 2), 1);
    EXPECT_EQ(archive.folders.count, 1u);
}

// ---- The writer -----------------------------------------------------------------------------------

TEST_F(ArchiveTest, AnEmptyArchiveIsFortyEightBytes) {
    ASSERT_EQ(mox_archive_compress(&archive, "empty.arc"), 1);
    Bytes bytes = read_bytes("empty.arc");
    EXPECT_EQ(bytes, Builder().counts(0, 0).done());
    ASSERT_EQ(bytes.size(), 48u);
    EXPECT_EQ(get64(bytes, 16), 48u);
    // The header in memory is left as it was: the size goes to the file only.
    EXPECT_EQ(archive.info.file_size[0], 0u);
}

TEST_F(ArchiveTest, OneFileOfFiveBytesMakesSeventyFour) {
    make_file("a.txt", "hello");
    add_file("a.txt", "a.txt");
    ASSERT_EQ(mox_archive_compress(&archive, "one.arc"), 1);
    Bytes bytes = read_bytes("one.arc");
    EXPECT_EQ(bytes, Builder().counts(0, 1).file("a.txt", "hello").done());
    EXPECT_EQ(bytes.size(), 74u);
    EXPECT_EQ(get64(bytes, 16), 74u);
    // Writing sets nothing in the records.
    EXPECT_EQ(file_at(archive.files, 0)->offset, 0u);
    EXPECT_EQ(file_at(archive.files, 0)->size, 0u);
}

TEST_F(ArchiveTest, TheHeaderIsWrittenAsItStandsAndTheCountsFollowAtOnce) {
    archive.info.reserved_1[0] = 0x11;
    archive.info.reserved_1[3] = 0x44;
    archive.info.reserved_2[7] = 0x77;
    archive.info.skip[0] = 4; // Intended: the writer doesn't leave the room that `skip` asks for
    archive.info.file_size[0] = 0x99;
    ASSERT_EQ(compress_to("skip.arc"), 1);
    EXPECT_EQ(read_bytes("skip.arc"), Builder(0, 4, 0, 0x44000011u, 0x7700000000000000u).counts(0, 0).done());
}

TEST_F(ArchiveTest, TheWriterWritesFoldersDepthFirst) {
    make_levels();
    ASSERT_EQ(mox_archive_from_folder(&archive, "src", 0), 1);
    ASSERT_EQ(mox_archive_compress(&archive, "levels.arc"), 1);
    EXPECT_EQ(read_bytes("levels.arc"), levels_archive());
}

TEST_F(ArchiveTest, TheWriterCutsALongerFileBehindTheArchive) {
    make_file("a.txt", "hello");
    add_file("a.txt", "a.txt");
    ASSERT_EQ(compress_to("long.arc", Bytes(500, 0xEE)), 1);
    EXPECT_EQ(read_bytes("long.arc"), Builder().counts(0, 1).file("a.txt", "hello").done());
    write_bytes("long2.arc", Bytes(500, 0xEE));
    ASSERT_EQ(mox_archive_compress(&archive, "long2.arc"), 1);
    EXPECT_EQ(read_bytes("long2.arc").size(), 74u);
}

TEST_F(ArchiveTest, AMethodOtherThanStoredWritesTheHeaderOnly) {
    make_file("a.txt", "hello");
    add_file("a.txt", "a.txt");
    archive.on_file = note_call;
    archive.info.method[0] = 1;
    EXPECT_EQ(compress_to("method.arc", Bytes(300, 0xEE)), 0);
    // Header and counts, cut there; the size field keeps what `info` held.
    EXPECT_EQ(read_bytes("method.arc"), Builder(1).counts(0, 1).bytes);
    EXPECT_TRUE(calls.seen.empty());

    archive.info.method[0] = 0;
    archive.info.method[7] = 0x80;
    write_bytes("named.arc", Bytes(10, 1));
    EXPECT_EQ(mox_archive_compress(&archive, "named.arc"), 0);
    EXPECT_FALSE(fs::exists("named.arc"));
    EXPECT_EQ(mox_archive_compress(&archive, "fresh.arc"), 0);
    EXPECT_FALSE(fs::exists("fresh.arc"));
}

TEST_F(ArchiveTest, AMissingSourceFailsTheWriting) {
    make_levels();
    ASSERT_EQ(mox_archive_from_folder(&archive, "src", 0), 1);
    fs::remove("src/a/a.txt");
    archive.on_file = note_call;
    EXPECT_EQ(compress_to("missing.arc"), 0);
    // Everything up to the record that failed, cut there, with no size filled in.
    Bytes expected = Builder()
                         .counts(1, 1)
                         .folder("a", 1, 1)
                         .folder("b", 1, 1)
                         .folder("c", 0, 0)
                         .file("empty.txt", "")
                         .bytes;
    EXPECT_EQ(read_bytes("missing.arc"), expected);
    // The hook ran for the file that was written and for the one that couldn't be opened.
    EXPECT_EQ(calls.seen.size(), 2u);

    EXPECT_EQ(mox_archive_compress(&archive, "missing.arc"), 0);
    EXPECT_FALSE(fs::exists("missing.arc"));
}

TEST_F(ArchiveTest, OnFileRunsOncePerFileInWriting) {
    make_levels();
    ASSERT_EQ(mox_archive_from_folder(&archive, "src", 0), 1);
    archive.on_file = note_call;
    ASSERT_EQ(mox_archive_compress(&archive, "hook.arc"), 1);
    ASSERT_EQ(calls.seen.size(), 3u);
    for (const auto& call : calls.seen)
        EXPECT_EQ(call, std::make_tuple(&archive, uintptr_t{0}, uintptr_t{0}));
    // The hook's false answer changed nothing.
    EXPECT_EQ(read_bytes("hook.arc"), levels_archive());
}

TEST_F(ArchiveTest, RecordsTheWriterCannotFollowFailIt) {
    mox_archive_file* file = add_file(nullptr, "nameless.txt");
    EXPECT_EQ(compress_to("null.arc"), 0);
    EXPECT_EQ(read_bytes("null.arc"), Builder().counts(0, 1).bytes);
    // A note put in by hand that carries no record.
    mox_archive_clear_all(&archive);
    mox_list_note* note = nullptr;
    ASSERT_EQ(mox_list_create_note(&archive.folders, &note, 0), 1);
    EXPECT_EQ(compress_to("foreign.arc"), 0);
    (void)file;
}

TEST_F(ArchiveTest, NamelessRecordsAreWrittenWithAnEmptyName) {
    make_file("a.txt", "xyz");
    add_file("a.txt", nullptr);
    mox_archive_folder* folder = nullptr;
    ASSERT_EQ(mox_archive_create_folder(&archive, &folder, 0), 1);
    ASSERT_EQ(compress_to("empty-names.arc"), 1);
    EXPECT_EQ(read_bytes("empty-names.arc"), Builder().counts(1, 1).folder("", 0, 0).file("", "xyz").done());
}

// ---- The catalogue reader -------------------------------------------------------------------------

TEST_F(ArchiveTest, ReadingAnEmptyArchiveEmptiesTheCatalogue) {
    make_levels();
    ASSERT_EQ(mox_archive_from_folder(&archive, "src", 0), 1);
    EXPECT_EQ(read(Builder().counts(0, 0).done()), 1);
    EXPECT_EQ(archive.folders.count + archive.files.count, 0u);
}

TEST_F(ArchiveTest, ReadingFoldersRebuildsTheirPathsFromTheSeparator) {
    Bytes bytes = Builder().counts(2, 0).folder("a", 1, 0).folder("b", 0, 0).folder("z", 0, 0).done();
    bool closed = false;
    ASSERT_EQ(read(bytes, &closed), 1);
    EXPECT_FALSE(closed);
    ASSERT_EQ(archive.folders.count, 2u);
    mox_archive_folder* a = folder_at(archive.folders, 0);
    EXPECT_EQ(str(a->name), "a");
    EXPECT_EQ(str(a->path), "\\a");
    ASSERT_EQ(a->folders.count, 1u);
    EXPECT_EQ(str(folder_at(a->folders, 0)->path), "\\a\\b");
    EXPECT_EQ(str(folder_at(archive.folders, 1)->path), "\\z");
    EXPECT_EQ(archive.files.count, 0u);
    // The header as read stays in `info`.
    EXPECT_EQ(archive.info.file_size[0], bytes.size());
}

TEST_F(ArchiveTest, ReadingRefusesTheWritersNamedFiles) {
    make_levels();
    ASSERT_EQ(mox_archive_from_folder(&archive, "src", 0), 1);
    ASSERT_EQ(mox_archive_compress(&archive, "levels.arc"), 1);
    // Intended: the reader's eight-byte kind takes the name's count for its second word.
    EXPECT_EQ(mox_archive_read_from(&archive, "levels.arc"), 0);
    // What came before the first file record stands.
    ASSERT_EQ(archive.folders.count, 1u);
    mox_archive_folder* c = folder_at(folder_at(folder_at(archive.folders, 0)->folders, 0)->folders, 0);
    ASSERT_NE(c, nullptr);
    EXPECT_EQ(str(c->path), "\\a\\b\\c");
    EXPECT_EQ(mox_archive_read_from(&archive, "missing.arc"), 0);
}

TEST_F(ArchiveTest, ReadingTakesFilesWithAnEmptyNameInFront) {
    uint64_t first = 0, second = 0;
    Bytes bytes = Builder()
                      .counts(1, 1)
                      .folder("docs", 0, 1)
                      .catalogue_file("x.bin", Bytes{1, 2, 3}, &first)
                      .catalogue_file("top", Bytes(70000, 9), &second)
                      .done();
    archive.on_file = note_call;
    write_bytes("cat.arc", bytes);
    mox_file file;
    mox_file_construct(&file, nullptr);
    ASSERT_EQ(mox_file_open(&file, "cat.arc", MOX_FILE_READ), 1);
    ASSERT_EQ(mox_archive_read_from_file(&archive, &file), 1);
    // Past the data of the last record: the end of the file.
    EXPECT_EQ(file.position, bytes.size());
    mox_file_destruct(&file);

    mox_archive_file* inner = file_at(folder_at(archive.folders, 0)->files, 0);
    EXPECT_EQ(str(inner->name), "x.bin");
    EXPECT_EQ(str(inner->path), "\\docs\\x.bin");
    EXPECT_EQ(inner->offset, first);
    EXPECT_EQ(inner->size, 3u);
    mox_archive_file* top = file_at(archive.files, 0);
    EXPECT_EQ(str(top->path), "\\top");
    EXPECT_EQ(top->offset, second);
    EXPECT_EQ(top->size, 70000u);
    EXPECT_EQ(calls.seen.size(), 2u);
    // Nothing was unpacked.
    EXPECT_FALSE(fs::exists("docs"));

    EXPECT_EQ(mox_archive_read_from(&archive, "cat.arc"), 1);
    EXPECT_EQ(archive.files.count, 1u);
}

TEST_F(ArchiveTest, ReadingIgnoresTheMethodAndHonoursSkip) {
    Bytes bytes = Builder(7, 4).raw({0xAA, 0xBB, 0xCC, 0xDD}).counts(1, 0).folder("f", 0, 0).done();
    ASSERT_EQ(read(bytes), 1);
    ASSERT_EQ(archive.folders.count, 1u);
    EXPECT_EQ(str(folder_at(archive.folders, 0)->name), "f");
    EXPECT_EQ(archive.info.method[0], 7u);
}

TEST_F(ArchiveTest, ABadHeaderClosesTheCallersFile) {
    Bytes good = Builder().counts(0, 0).done();
    Bytes wrong_size = good;
    wrong_size[16] = 47;
    Bytes format = Builder(0, 0, 1).counts(0, 0).done();
    Bytes longer = good;
    longer.push_back(0);
    for (const Bytes& bytes : {wrong_size, format, longer, Bytes(good.begin(), good.begin() + 39), Bytes()}) {
        bool closed = false;
        EXPECT_EQ(read(bytes, &closed), 0);
        EXPECT_TRUE(closed);
        closed = false;
        EXPECT_EQ(unpack(bytes, "out", &closed), 0);
        EXPECT_TRUE(closed);
    }
    EXPECT_FALSE(fs::exists("out"));
}

// ---- The unpacker ---------------------------------------------------------------------------------

TEST_F(ArchiveTest, UnpackingAnEmptyArchiveIsTrue) {
    write_bytes("empty.arc", Builder().counts(0, 0).done());
    EXPECT_EQ(mox_archive_decompress(&archive, "empty.arc", "out"), 1);
    EXPECT_EQ(mox_archive_decompress(&archive, "missing.arc", "out"), 0);
}

TEST_F(ArchiveTest, UnpackingMakesTheTargetFolderWithItsParents) {
    uint64_t offset = 0;
    write_bytes("one.arc", Builder().counts(0, 1).file("a.txt", "hello", &offset).done());
    ASSERT_EQ(mox_archive_decompress(&archive, "one.arc", "x\\y\\out"), 1);
    EXPECT_EQ(read_bytes("x/y/out/a.txt"), bytes_of("hello"));
    mox_archive_file* file = file_at(archive.files, 0);
    EXPECT_EQ(str(file->name), "a.txt");
    EXPECT_EQ(str(file->path), "x\\y\\out\\a.txt");
    EXPECT_EQ(offset, 69u);
    EXPECT_EQ(file->offset, 69u);
    EXPECT_EQ(file->size, 5u);
}

TEST_F(ArchiveTest, UnpackingRebuildsTheTree) {
    uint64_t offsets[3];
    Bytes bytes = levels_archive(offsets);
    archive.on_file = note_call;
    ASSERT_EQ(unpack(bytes, "out"), 1);
    EXPECT_EQ(tree_of("out"),
              (std::vector<std::string>{"a/", "a/a.txt", "a/b/", "a/b/c/", "a/b/empty.txt", "top.txt"}));
    EXPECT_EQ(read_bytes("out/top.txt"), bytes_of("T"));
    EXPECT_EQ(read_bytes("out/a/a.txt"), bytes_of("alpha"));
    EXPECT_TRUE(read_bytes("out/a/b/empty.txt").empty());
    EXPECT_EQ(calls.seen.size(), 3u);

    mox_archive_folder* a = folder_at(archive.folders, 0);
    mox_archive_folder* b = folder_at(a->folders, 0);
    EXPECT_EQ(str(a->path), "out\\a");
    EXPECT_EQ(str(folder_at(b->folders, 0)->path), "out\\a\\b\\c");
    mox_archive_file* empty = file_at(b->files, 0);
    EXPECT_EQ(str(empty->path), "out\\a\\b\\empty.txt");
    EXPECT_EQ(empty->offset, offsets[0]);
    EXPECT_EQ(empty->size, 0u);
    EXPECT_EQ(file_at(a->files, 0)->offset, offsets[1]);
    EXPECT_EQ(file_at(a->files, 0)->size, 5u);
    EXPECT_EQ(file_at(archive.files, 0)->offset, offsets[2]);
    EXPECT_EQ(file_at(archive.files, 0)->size, 1u);
}

TEST_F(ArchiveTest, AnExistingLongerFileKeepsItsTail) {
    make_file("out/a.txt", "0123456789");
    write_bytes("one.arc", Builder().counts(0, 1).file("a.txt", "hello").done());
    ASSERT_EQ(mox_archive_decompress(&archive, "one.arc", "out"), 1);
    // Intended: nothing cuts the target.
    EXPECT_EQ(read_bytes("out/a.txt"), bytes_of("hello56789"));
}

TEST_F(ArchiveTest, UnpackingHonoursSkip) {
    Bytes bytes = Builder(0, 3).raw({1, 2, 3}).counts(0, 1).file("s.txt", "skip").done();
    ASSERT_EQ(unpack(bytes, "out"), 1);
    EXPECT_EQ(read_bytes("out/s.txt"), bytes_of("skip"));
}

TEST_F(ArchiveTest, AMethodOtherThanStoredUnpacksNothing) {
    make_levels();
    ASSERT_EQ(mox_archive_from_folder(&archive, "src", 0), 1);
    Bytes bytes = Builder(2).counts(0, 1).file("a.txt", "hello").done();
    archive.on_file = note_call;
    bool closed = true;
    EXPECT_EQ(unpack(bytes, "out", &closed), 0);
    EXPECT_FALSE(closed);
    EXPECT_FALSE(fs::exists("out"));
    EXPECT_TRUE(calls.seen.empty());
    // The catalogue is emptied only once the method has passed.
    EXPECT_EQ(archive.folders.count, 1u);
    EXPECT_EQ(archive.info.method[0], 2u);
}

// ---- Round trips ----------------------------------------------------------------------------------

TEST_F(ArchiveTest, ATreeWithSeveralEntriesPerFolderGoesThereAndBack) {
    for (const char* name : {"src/readme", "src/b.bin", "src/zz.txt", "src/docs/one.txt", "src/docs/two.txt",
                             "src/docs/deep/three", "src/docs/deep/er/four", "src/img/p.png", "src/img/q.png",
                             "src/img/raw/r.raw"})
        make_file(name, std::string("content of ") + name);
    make_file("src/empty", "");
    make_file("src/docs/nothing", "");
    fs::create_directories("src/hollow/inner");
    ASSERT_EQ(mox_archive_from_folder(&archive, "src", 0), 1);
    archive.on_file = note_call;
    ASSERT_EQ(mox_archive_compress(&archive, "tree.arc"), 1);
    EXPECT_EQ(calls.seen.size(), 12u);
    EXPECT_EQ(read_bytes("tree.arc"), expected_archive("src"));

    calls.seen.clear();
    ASSERT_EQ(mox_archive_decompress(&archive, "tree.arc", "copy\\of"), 1);
    EXPECT_EQ(calls.seen.size(), 12u);
    std::vector<std::string> original = tree_of("src");
    ASSERT_EQ(tree_of("copy/of"), original);
    for (const std::string& entry : original)
        if (entry.back() != '/') {
            EXPECT_EQ(read_bytes("copy/of/" + entry), read_bytes("src/" + entry)) << entry;
        }
}

TEST_F(ArchiveTest, LargeFilesGoThroughTheBufferInPieces) {
    Bytes big = pattern(3 * 1024 * 1024 + 12345);
    make_file("src/big.bin", big);
    make_file("src/exact.bin", pattern(65535));
    make_file("src/over.bin", pattern(65536));
    ASSERT_EQ(mox_archive_from_folder(&archive, "src", 1), 1);
    ASSERT_EQ(mox_archive_compress(&archive, "big.arc"), 1);
    Bytes bytes = read_bytes("big.arc");
    EXPECT_EQ(bytes, expected_archive("src"));
    EXPECT_EQ(bytes.size(), 48u + 3 * (4 + 4 + 8) + 7 + 9 + 8 + big.size() + 65535 + 65536);

    ASSERT_EQ(mox_archive_decompress(&archive, "big.arc", "out"), 1);
    EXPECT_EQ(read_bytes("out/big.bin"), big);
    EXPECT_EQ(read_bytes("out/exact.bin"), pattern(65535));
    EXPECT_EQ(read_bytes("out/over.bin"), pattern(65536));
    // Each record's offset points at its bytes in the archive.
    for (uint32_t i = 0; i < archive.files.count; ++i) {
        mox_archive_file* file = file_at(archive.files, i);
        Bytes original = read_bytes(system_path(file->path));
        ASSERT_EQ(file->size, original.size());
        EXPECT_TRUE(
            std::equal(original.begin(), original.end(), bytes.begin() + static_cast<long>(file->offset)))
            << str(file->name);
    }
}

// ---- A source shorter than its size ---------------------------------------------------------------

// Intended: the writer's copy loop has no exit but the bytes it was promised. A system file that
// reports a larger size than it gives keeps it going; the child is stopped at its deadline.
TEST(ArchiveWriterPosix, ASourceThatGivesLessThanItsSizeKeepsTheWriterGoing) {
#if defined(_WIN32)
    GTEST_SKIP() << "the file that reports more than it gives is one of Linux's own";
#else
    const char* source = "/sys/devices/system/cpu/online";
    struct stat info {};
    if (stat(source, &info) != 0)
        GTEST_SKIP() << source << " is not there on this system";
    Bytes given = read_bytes(source);
    if (static_cast<uint64_t>(info.st_size) <= given.size())
        GTEST_SKIP() << source << " gives all the bytes its size promises here";

    TempFolder folder;
    std::string target = folder.file("hang.arc");
    write_bytes(target, {});
    mox_test::ChildOutcome outcome = mox_test::run_in_child(
        [&] {
            mox_archive archive;
            mox_archive_construct(&archive, nullptr);
            mox_archive_file* file = nullptr;
            mox_archive_create_file(&archive, &file, 0);
            mox_astring_duplicate(&file->path, "\\sys\\devices\\system\\cpu\\online");
            mox_astring_duplicate(&file->name, "online");
            mox_file out;
            mox_file_construct(&out, nullptr);
            std::string name = folder.library_path("hang.arc");
            mox_file_open(&out, name.c_str(), MOX_FILE_WRITE);
            mox_archive_compress_to_file(&archive, &out);
        },
        1500);
    EXPECT_TRUE(outcome.timed_out);
    // Everything up to the bytes that came, and no size at offset 16: the writing never ended.
    Bytes expected = Builder().counts(0, 1).bytes;
    archive_bytes::put32(expected, 2);
    archive_bytes::put_name(expected, "online");
    archive_bytes::put64(expected, static_cast<uint64_t>(info.st_size));
    expected.insert(expected.end(), given.begin(), given.end());
    EXPECT_EQ(read_bytes(target), expected);
#endif
}

} // namespace
