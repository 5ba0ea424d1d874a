// Archives that the library's writer never makes: names that would lead out of the target folder,
// files cut short, counts and sizes that promise more than the file holds, deep nesting.
#include <mox/mox.h>

#include <gtest/gtest.h>

#include <algorithm>
#include <chrono>
#include <filesystem>
#include <string>
#include <unistd.h>
#include <vector>

#include "files/archive_bytes.h"
#include "support/temp_folder.h"

using archive_bytes::Builder;
using archive_bytes::Bytes;
using archive_bytes::bytes_of;
using archive_bytes::put32;
using archive_bytes::put64;
using mox_test::read_bytes;
using mox_test::TempFolder;
using mox_test::write_bytes;

namespace {

namespace fs = std::filesystem;
using archive_bytes::tree_of;

// The archive is read from "in.arc" in a fresh work folder, and unpacked into "t\\out", whose parent
// "t" is there beforehand: whatever lands beside "out" has escaped.
struct HostileTest : ::testing::Test {
    TempFolder folder;
    std::string saved;
    mox_archive archive{};

    void SetUp() override {
        saved = fs::current_path().string();
        ASSERT_EQ(chdir(folder.path().c_str()), 0);
        fs::create_directories("t");
        ASSERT_EQ(mox_archive_construct(&archive, nullptr), 1);
    }
    void TearDown() override {
        EXPECT_EQ(mox_archive_destruct(&archive), 1);
        ASSERT_EQ(chdir(saved.c_str()), 0);
    }

    mox_bool unpack(const Bytes& bytes) {
        write_bytes("in.arc", bytes);
        return mox_archive_decompress(&archive, "in.arc", "t\\out");
    }

    mox_bool read(const Bytes& bytes) {
        write_bytes("in.arc", bytes);
        return mox_archive_read_from(&archive, "in.arc");
    }

    // Nothing but the archive and the target's own tree.
    void expect_nothing_escaped(const std::string& what) {
        for (const std::string& entry : tree_of("."))
            EXPECT_TRUE(entry == "in.arc" || entry == "t/" || entry.rfind("t/out/", 0) == 0)
                << entry << " after " << what;
    }
};

// Bytes put together by hand behind a builder's header, with the size filled in.
Bytes finished(const Bytes& bytes) {
    Builder out;
    out.bytes = bytes;
    return out.done();
}

std::string shown(const std::string& name) {
    std::string out;
    for (char c : name)
        out += c == 0 ? std::string("\\0") : std::string(1, c);
    return "\"" + out + "\"";
}

// Names that are no single component of a path.
const std::vector<std::string> kBadNames = {"",
                                            ".",
                                            "..",
                                            "...",
                                            "..\\escape",
                                            "..\\..\\escape",
                                            "../escape",
                                            "a\\b",
                                            "a/b",
                                            "/escape",
                                            "\\escape",
                                            "c:",
                                            "c:escape",
                                            "x:y",
                                            std::string("a\0b", 3),
                                            std::string("\0", 1)};

TEST_F(HostileTest, NamesThatLeaveTheirFolderAreRefusedWhereTheyStand) {
    for (const std::string& bad : kBadNames) {
        std::string what = shown(bad);
        fs::remove_all("t/out");

        // As a top folder, as a top file, as a file in a good folder, as a folder in a good folder.
        EXPECT_EQ(unpack(Builder().counts(1, 0).folder(bad, 0, 0).done()), 0) << what;
        expect_nothing_escaped(what + " as a folder");
        EXPECT_FALSE(fs::exists("t/out")) << what;

        EXPECT_EQ(unpack(Builder().counts(0, 1).file(bad, "payload").done()), 0) << what;
        expect_nothing_escaped(what + " as a file");

        // What came before the bad record is unpacked; what follows it isn't.
        EXPECT_EQ(
            unpack(
                Builder().counts(1, 1).folder("good", 0, 1).file(bad, "payload").file("after", "x").done()),
            0)
            << what;
        expect_nothing_escaped(what + " as a file in a folder");
        EXPECT_TRUE(fs::is_directory("t/out/good")) << what;
        EXPECT_TRUE(fs::is_empty("t/out/good")) << what;
        EXPECT_FALSE(fs::exists("t/out/after")) << what;

        EXPECT_EQ(
            unpack(Builder().counts(1, 0).folder("good", 1, 0).folder(bad, 0, 1).file("f", "payload").done()),
            0)
            << what;
        expect_nothing_escaped(what + " as a folder in a folder");
        EXPECT_TRUE(fs::is_empty("t/out/good")) << what;
    }
    // The same archives with good names do unpack, so the refusals above are the names' doing.
    fs::remove_all("t/out");
    EXPECT_EQ(unpack(Builder()
                         .counts(1, 1)
                         .folder("good", 1, 0)
                         .folder("a..b", 0, 1)
                         .file("f", "payload")
                         .file(".hidden", "h")
                         .done()),
              1);
    EXPECT_EQ(read_bytes("t/out/good/a..b/f"), bytes_of("payload"));
    EXPECT_EQ(read_bytes("t/out/.hidden"), bytes_of("h"));
}

TEST_F(HostileTest, TheCatalogueRefusesTheSameNames) {
    for (const std::string& bad : kBadNames) {
        std::string what = shown(bad);
        EXPECT_EQ(read(Builder().counts(1, 0).folder(bad, 0, 0).done()), 0) << what;
        EXPECT_EQ(read(Builder().counts(0, 1).catalogue_file(bad, bytes_of("data")).done()), 0) << what;
        EXPECT_EQ(
            read(Builder().counts(1, 0).folder("ok", 0, 1).catalogue_file(bad, bytes_of("data")).done()), 0)
            << what;
    }
    EXPECT_EQ(read(Builder().counts(1, 0).folder("ok", 0, 1).catalogue_file("fine", bytes_of("data")).done()),
              1);
    expect_nothing_escaped("reading");
    EXPECT_FALSE(fs::exists("t/out"));
}

// A writer's archive with folders, nested files and an empty file, and its form for the catalogue
// reader; `large` is the size of one of the files.
Bytes sample(bool catalogue, size_t large) {
    Builder out;
    out.counts(2, 2);
    auto file = [&](const std::string& name, const Bytes& data) {
        if (catalogue)
            out.catalogue_file(name, data);
        else
            out.file(name, data);
    };
    out.folder("a", 1, 2);
    out.folder("b", 0, 1);
    file("deep.txt", bytes_of("deep"));
    file("one.txt", bytes_of("one"));
    file("empty", {});
    out.folder("c", 0, 0);
    file("top.bin", Bytes(large, 0x5A));
    file("last", bytes_of("z"));
    return out.done();
}

Bytes cut(const Bytes& bytes, size_t length, bool patch_size) {
    Bytes out(bytes.begin(), bytes.begin() + static_cast<long>(length));
    if (patch_size)
        for (int i = 0; i < 8; ++i)
            out[16 + static_cast<size_t>(i)] = static_cast<uint8_t>(static_cast<uint64_t>(length) >> (8 * i));
    return out;
}

TEST_F(HostileTest, AnArchiveCutAtAnyLengthIsRefused) {
    for (bool catalogue : {false, true}) {
        Bytes whole = sample(catalogue, 10);
        ASSERT_EQ(catalogue ? read(whole) : unpack(whole), 1);
        for (size_t length = 0; length < whole.size(); ++length) {
            // As cut, the size at offset 16 no longer matches; with the size made to match, the
            // records themselves run short.
            for (bool patch : {false, true}) {
                if (patch && length < 24)
                    continue;
                Bytes bytes = cut(whole, length, patch);
                EXPECT_EQ(catalogue ? read(bytes) : unpack(bytes), 0)
                    << "cut at " << length << (patch ? " with its size" : "")
                    << (catalogue ? ", reading" : "");
            }
        }
        expect_nothing_escaped("cutting");
    }
}

TEST_F(HostileTest, AnArchiveCutInsideDataLargerThanTheBufferIsRefused) {
    for (bool catalogue : {false, true}) {
        Bytes whole = sample(catalogue, 200000);
        ASSERT_EQ(catalogue ? read(whole) : unpack(whole), 1);
        for (size_t length = whole.size() - 200010; length < whole.size(); length += 9973) {
            Bytes bytes = cut(whole, length, true);
            EXPECT_EQ(catalogue ? read(bytes) : unpack(bytes), 0) << "cut at " << length;
        }
        EXPECT_EQ(catalogue ? read(cut(whole, whole.size() - 1, true))
                            : unpack(cut(whole, whole.size() - 1, true)),
                  0);
    }
    expect_nothing_escaped("cutting");
}

TEST_F(HostileTest, CountsThatPromiseMoreThanTheFileHoldsAreRefusedAtOnce) {
    auto started = std::chrono::steady_clock::now();
    for (bool reading : {false, true}) {
        auto run = [&](const Bytes& bytes) { return reading ? read(bytes) : unpack(bytes); };
        EXPECT_EQ(run(Builder().counts(0xFFFFFFFFu, 0).done()), 0);
        EXPECT_EQ(run(Builder().counts(0, 0xFFFFFFFFu).done()), 0);
        EXPECT_EQ(run(Builder().counts(0xFFFFFFFFu, 0xFFFFFFFFu).folder("a", 0, 0).done()), 0);
        EXPECT_EQ(run(Builder().counts(1, 0).folder("a", 0xFFFFFFFFu, 0xFFFFFFFFu).done()), 0);
        EXPECT_EQ(run(Builder().counts(2, 0).folder("a", 0, 0).done()), 0);
        EXPECT_EQ(run(Builder().counts(1, 0).folder("a", 0, 0).folder("extra", 0, 0).done()), 1);
        // A skip beyond the file.
        EXPECT_EQ(run(Builder(0, 0xFFFFFFFFFFFFFFFFull).counts(0, 0).done()), 0);
        EXPECT_EQ(run(Builder(0, 9).counts(0, 0).done()), 0);
    }
    EXPECT_LT(std::chrono::steady_clock::now() - started, std::chrono::seconds(10));
}

// The record is made before its name is read; a refused count leaves it without a block.
TEST_F(HostileTest, ANameLongerThanTheRestOfTheFileGetsNoBlock) {
    for (uint32_t count : {0xFFFFFFF0u, 0x7FFFFFFFu, 100u}) {
        Bytes folder = Builder().counts(1, 0).bytes;
        put32(folder, 1);
        put32(folder, count);
        folder.insert(folder.end(), {'a', 'b', 'c'});
        folder = finished(folder);
        EXPECT_EQ(unpack(folder), 0) << count;
        ASSERT_EQ(archive.folders.count, 1u);
        EXPECT_EQ(reinterpret_cast<mox_archive_folder*>(archive.folders.first->data)->name, nullptr) << count;
        EXPECT_EQ(read(folder), 0) << count;
        ASSERT_EQ(archive.folders.count, 1u);
        EXPECT_EQ(reinterpret_cast<mox_archive_folder*>(archive.folders.first->data)->name, nullptr) << count;

        Bytes file = Builder().counts(0, 1).bytes;
        put32(file, 2);
        put32(file, count);
        file.insert(file.end(), {'x', 'y'});
        file = finished(file);
        EXPECT_EQ(unpack(file), 0) << count;
        ASSERT_EQ(archive.files.count, 1u);
        EXPECT_EQ(reinterpret_cast<mox_archive_file*>(archive.files.first->data)->name, nullptr) << count;
    }
    expect_nothing_escaped("long names");
    EXPECT_FALSE(fs::exists("t/out")) << "no folder is made for a file that has no name";
}

TEST_F(HostileTest, DataBeyondTheEndOfTheFileIsRefusedBeforeAByteIsWritten) {
    struct Case {
        uint64_t size;
        size_t present;
    };
    // The last case has more than a buffer's worth of the data it promises.
    for (Case c : {Case{1000, 3}, Case{0xFFFFFFFFFFFFFFFFull, 3}, Case{4, 3}, Case{200000, 70000}}) {
        fs::remove_all("t/out");
        Bytes bytes = Builder().counts(0, 1).bytes;
        put32(bytes, 2);
        archive_bytes::put_name(bytes, "f");
        put64(bytes, c.size);
        bytes.insert(bytes.end(), c.present, 0x61);
        bytes = finished(bytes);
        EXPECT_EQ(unpack(bytes), 0) << c.size;
        // The file was made before its size was read, and nothing went into it.
        EXPECT_TRUE(fs::exists("t/out/f")) << c.size;
        EXPECT_TRUE(read_bytes("t/out/f").empty()) << c.size;

        Bytes listed = Builder().counts(0, 1).bytes;
        put32(listed, 2);
        put32(listed, 0);
        archive_bytes::put_name(listed, "f");
        put64(listed, c.size);
        listed.insert(listed.end(), c.present, 0x61);
        listed = finished(listed);
        EXPECT_EQ(read(listed), 0) << c.size;
    }
    expect_nothing_escaped("long data");
}

TEST_F(HostileTest, RecordsOfTheWrongKindAreRefused) {
    Bytes folder_as_file = Builder().counts(1, 0).file("f", "x").done();
    Bytes file_as_folder = Builder().counts(0, 1).folder("f", 0, 0).done();
    Bytes kind_three = Builder().counts(0, 1).bytes;
    put32(kind_three, 3);
    archive_bytes::put_name(kind_three, "f");
    put64(kind_three, 0);
    kind_three = finished(kind_three);
    for (const Bytes& bytes : {folder_as_file, file_as_folder, kind_three}) {
        EXPECT_EQ(unpack(bytes), 0);
        EXPECT_EQ(read(bytes), 0);
    }
}

// Nested records are read without recursion; the rebuilt paths are bounded by what a system takes.
TEST_F(HostileTest, DeepNestingIsReadUpToTheLongestPath) {
    auto nested = [](int levels) {
        Builder out;
        out.counts(1, 0);
        for (int i = 0; i < levels; ++i)
            out.folder("d", i + 1 < levels ? 1 : 0, 0);
        return out.done();
    };
    // "\\d" per level: 2047 levels make 4094 characters, 2048 one too many.
    ASSERT_EQ(read(nested(2047)), 1);
    mox_archive_folder* folder = reinterpret_cast<mox_archive_folder*>(archive.folders.first->data);
    int depth = 1;
    while (folder->folders.first != nullptr) {
        folder = reinterpret_cast<mox_archive_folder*>(folder->folders.first->data);
        ++depth;
    }
    EXPECT_EQ(depth, 2047);
    EXPECT_EQ(std::string(folder->path).size(), 4094u);
    EXPECT_EQ(read(nested(2048)), 0);
    EXPECT_EQ(read(nested(100000)), 0);
}

TEST_F(HostileTest, ModerateNestingUnpacks) {
    Builder out;
    out.counts(1, 0);
    for (int i = 0; i < 40; ++i)
        out.folder("n", 1, i + 1 == 40 ? 1 : 0);
    out.folder("n", 0, 0);
    out.file("bottom", "b");
    ASSERT_EQ(unpack(out.done()), 1);
    std::string path = "t/out";
    for (int i = 0; i < 41; ++i)
        path += "/n";
    EXPECT_TRUE(fs::is_directory(path));
    EXPECT_EQ(read_bytes(path.substr(0, path.size() - 2) + "/bottom"), bytes_of("b"));
}

} // namespace
