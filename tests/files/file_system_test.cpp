#include <mox/mox.h>

#include <gtest/gtest.h>

#include <algorithm>
#include <cstring>
#include <filesystem>
#include <string>
#include <sys/stat.h>
#if defined(_WIN32)
#include <windows.h>
#else
#include <unistd.h>
#endif
#include <vector>

#include "support/error_listener.h"
#include "support/temp_folder.h"

using mox_test::ErrorListener;
using mox_test::read_text;
using mox_test::TempFolder;
using mox_test::write_text;

namespace fs = std::filesystem;

// The system's temporary folder, with its separator at the end: fixed on Linux, the user's own on
// Windows.
std::string system_temp_folder() {
#if defined(_WIN32)
    char path[MAX_PATH + 1] = {};
    GetTempPathA(sizeof path, path);
    return path;
#else
    return "/tmp/";
#endif
}

namespace {

// Every test works in a fresh folder that is also the current folder, so that the relative paths
// the walks rebuild land inside it; the former current folder comes back at the end.
struct FileSystemTest : ::testing::Test {
    TempFolder folder;
    std::string saved;
    void SetUp() override {
        char buffer[4096];
        ASSERT_NE(getcwd(buffer, sizeof buffer), nullptr);
        saved = buffer;
        ASSERT_EQ(chdir(folder.path().c_str()), 0);
    }
    void TearDown() override { ASSERT_EQ(chdir(saved.c_str()), 0); }

    // Links to folders are made by the tests where the system lets a test program make them.
    static const char* why_no_folder_links() {
#if defined(_WIN32)
        return "making a link to a folder needs a privilege that Windows gives no test program";
#else
        return nullptr;
#endif
    }
    static bool is_file(const std::string& path) { return fs::is_regular_file(fs::symlink_status(path)); }
    static bool is_dir(const std::string& path) { return fs::is_directory(fs::symlink_status(path)); }
    static std::vector<std::string> names(const mox_astring_array& array) {
        std::vector<std::string> result;
        for (uint32_t i = 0; i < array.length; ++i)
            result.emplace_back(array.items[i] != nullptr ? array.items[i] : "<null>");
        std::sort(result.begin(), result.end());
        return result;
    }
    static std::string cwd() {
        char buffer[4096];
        return getcwd(buffer, sizeof buffer) != nullptr ? buffer : "";
    }
};

} // namespace

// ---- Creating and deleting files ------------------------------------------------------------------

TEST_F(FileSystemTest, CreateFileMakesAnEmptyFile) {
    ErrorListener listener;
    EXPECT_EQ(mox_create_file("a", 0), 1);
    EXPECT_TRUE(is_file("a"));
    EXPECT_EQ(fs::file_size("a"), 0u);
    EXPECT_TRUE(listener.silent());
}

TEST_F(FileSystemTest, CreateFileRefusesAnExistingFileAndKeepsIt) {
    write_text("a", "keep");
    ErrorListener listener;
    EXPECT_EQ(mox_create_file("a", 0), 0);
    EXPECT_EQ(mox_create_file("a", 1), 0);
    EXPECT_EQ(read_text("a"), "keep");
    EXPECT_TRUE(listener.silent());
}

TEST_F(FileSystemTest, CreateFileWithoutFoldersFailsWhereTheFolderIsMissing) {
    EXPECT_EQ(mox_create_file("x\\y\\z.txt", 0), 0);
    EXPECT_FALSE(fs::exists("x"));
}

TEST_F(FileSystemTest, CreateFileMakesTheFoldersOnTheWay) {
    EXPECT_EQ(mox_create_file("x\\y\\z.txt", 1), 1);
    EXPECT_TRUE(is_dir("x"));
    EXPECT_TRUE(is_dir("x/y"));
    EXPECT_TRUE(is_file("x/y/z.txt"));
    EXPECT_EQ(fs::file_size("x/y/z.txt"), 0u);
}

TEST_F(FileSystemTest, CreateFileMakesNoFolderOfADriveName) {
#if defined(_WIN32)
    GTEST_SKIP() << "on Windows c: is a real drive, which the walk rightly passes through";
#endif
    EXPECT_EQ(mox_create_file("c:\\t\\z.txt", 1), 0);
    EXPECT_FALSE(fs::exists("c:"));
    EXPECT_FALSE(fs::exists("c:/t"));
    // With a folder "c:" already there the walk goes through it all the same.
    ASSERT_TRUE(fs::create_directory("c:"));
    EXPECT_EQ(mox_create_file("c:\\t\\z.txt", 1), 1);
    EXPECT_TRUE(is_file("c:/t/z.txt"));
}

TEST_F(FileSystemTest, CreateFileDropsEmptyPartsAndTheLeadingSeparator) {
    EXPECT_EQ(mox_create_file("\\\\p\\\\q\\r.txt", 1), 1);
    EXPECT_TRUE(is_file("p/q/r.txt"));
}

TEST_F(FileSystemTest, CreateFileOfAPlainNameAlsoTriesAFolderInVain) {
    EXPECT_EQ(mox_create_file("plain", 1), 1);
    EXPECT_TRUE(is_file("plain"));
}

TEST_F(FileSystemTest, CreateFileOfOnePartBehindASeparatorMakesAFolderAndNoFile) {
    // Intended: one part only, so the walk makes a folder of it and no file, and answers true.
    EXPECT_EQ(mox_create_file("\\file", 1), 1);
    EXPECT_TRUE(is_dir("file"));
}

TEST_F(FileSystemTest, CreateFileOfOnlySeparatorsIsFalse) {
    EXPECT_EQ(mox_create_file("\\\\", 1), 0);
    EXPECT_EQ(mox_create_file("", 1), 0);
}

TEST_F(FileSystemTest, CreateFileTakesAnAbsoluteNameWithoutFolders) {
    std::string name = folder.library_path("abs.txt");
    EXPECT_EQ(mox_create_file(name.c_str(), 0), 1);
    EXPECT_TRUE(is_file(folder.file("abs.txt")));
}

TEST_F(FileSystemTest, NullNamesPost) {
    ErrorListener listener;
    mox_file file;
    mox_file_construct(&file, nullptr);
    mox_astring text = nullptr;
    mox_astring_array array;
    mox_astring_array_construct(&array, nullptr);
    EXPECT_EQ(mox_create_file(nullptr, 1), 0);
    EXPECT_EQ(mox_file_create(nullptr, "a", 3, 0), 0);
    EXPECT_EQ(mox_file_create(&file, nullptr, 3, 0), 0);
    EXPECT_EQ(mox_delete_file(nullptr), 0);
    EXPECT_EQ(mox_exist_file(nullptr), 0);
    EXPECT_EQ(mox_copy_file(nullptr, "a", 1), 0);
    EXPECT_EQ(mox_copy_file("a", nullptr, 1), 0);
    EXPECT_EQ(mox_create_folder(nullptr, 1), 0);
    EXPECT_EQ(mox_delete_folder(nullptr, 1), 0);
    EXPECT_EQ(mox_exist_folder(nullptr), 0);
    EXPECT_EQ(mox_get_files(nullptr, "."), 0);
    EXPECT_EQ(mox_get_files(&array, nullptr), 0);
    EXPECT_EQ(mox_get_folders(nullptr, "."), 0);
    EXPECT_EQ(mox_get_folders(&array, nullptr), 0);
    EXPECT_EQ(mox_set_work_folder(nullptr), 0);
    EXPECT_EQ(mox_get_work_folder(nullptr), 0);
    EXPECT_EQ(mox_get_temp_folder(nullptr), 0);
    EXPECT_EQ(mox_get_temp_file_name(nullptr, ".", "p"), 0);
    EXPECT_EQ(mox_get_temp_file_name(&text, nullptr, "p"), 0);
    EXPECT_EQ(mox_get_temp_file_name(&text, ".", nullptr), 0);
    EXPECT_EQ(listener.hints(), std::vector<std::string>(20, "core.params"));
    EXPECT_TRUE(fs::is_empty(folder.path()));
    mox_astring_array_destruct(&array);
    mox_file_destruct(&file);
}

TEST_F(FileSystemTest, FileCreateMakesAndOpensTheFile) {
    mox_file file;
    mox_file_construct(&file, nullptr);
    EXPECT_EQ(mox_file_create(&file, "d\\f.bin", MOX_FILE_READ | MOX_FILE_WRITE, 1), 1);
    EXPECT_NE(file.handle, MOX_FILE_CLOSED);
    EXPECT_EQ(file.mode, MOX_FILE_READ | MOX_FILE_WRITE);
    EXPECT_EQ(mox_file_write(&file, "abc", 3), 3u);
    mox_file_close(&file);
    EXPECT_EQ(read_text("d/f.bin"), "abc");
    // A second time the file exists, and nothing is opened.
    EXPECT_EQ(mox_file_create(&file, "d\\f.bin", MOX_FILE_READ, 1), 0);
    EXPECT_EQ(file.handle, MOX_FILE_CLOSED);
    mox_file_destruct(&file);
}

TEST_F(FileSystemTest, DeleteFileRemovesFilesOnly) {
    write_text("a", "x");
    fs::create_directory("d");
    EXPECT_EQ(mox_delete_file("a"), 1);
    EXPECT_FALSE(fs::exists("a"));
    EXPECT_EQ(mox_delete_file("a"), 0);
    EXPECT_EQ(mox_delete_file("d"), 0);
    EXPECT_TRUE(is_dir("d"));
}

TEST_F(FileSystemTest, ExistFileTellsFilesFromFoldersAndMissingNames) {
    write_text("a", "x");
    fs::create_directory("d");
    ErrorListener listener;
    EXPECT_EQ(mox_exist_file("a"), 1);
    EXPECT_EQ(mox_exist_file("d"), 0);
    EXPECT_EQ(mox_exist_file("missing"), 0);
    EXPECT_EQ(mox_exist_file(folder.library_path("a").c_str()), 1);
    EXPECT_TRUE(listener.silent());
}

TEST_F(FileSystemTest, ExistFileCountsAFileHeldOpenAsMissing) {
    // The test opens without sharing, so any other opener with access collides with it.
    write_text("a", "x");
    mox_file file;
    mox_file_construct(&file, nullptr);
    ASSERT_EQ(mox_file_open(&file, "a", MOX_FILE_READ), 1);
    EXPECT_EQ(mox_exist_file("a"), 0);
    mox_file_close(&file);
    ASSERT_EQ(mox_file_open(&file, "a", MOX_FILE_READ | MOX_FILE_SHARE_READ | MOX_FILE_SHARE_WRITE), 1);
    EXPECT_EQ(mox_exist_file("a"), 0);
    mox_file_close(&file);
    EXPECT_EQ(mox_exist_file("a"), 1);
    mox_file_destruct(&file);
}

TEST_F(FileSystemTest, CopyFileTakesTheTargetFirst) {
    write_text("from", "source bytes");
    EXPECT_EQ(mox_copy_file("to", "from", 0), 1);
    EXPECT_EQ(read_text("to"), "source bytes");
    EXPECT_EQ(read_text("from"), "source bytes");
}

TEST_F(FileSystemTest, CopyFileReplacesOnlyWithOverwriteOne) {
    write_text("from", "new");
    write_text("to", "old and longer");
    EXPECT_EQ(mox_copy_file("to", "from", 0), 0);
    EXPECT_EQ(read_text("to"), "old and longer");
    EXPECT_EQ(mox_copy_file("to", "from", 2), 0);
    EXPECT_EQ(read_text("to"), "old and longer");
    EXPECT_EQ(mox_copy_file("to", "from", 1), 1);
    EXPECT_EQ(read_text("to"), "new");
}

TEST_F(FileSystemTest, CopyFileOfAMissingFileOrAFolderFails) {
    fs::create_directory("d");
    EXPECT_EQ(mox_copy_file("to", "missing", 1), 0);
    EXPECT_EQ(mox_copy_file("to", "d", 1), 0);
    EXPECT_FALSE(fs::exists("to"));
}

TEST_F(FileSystemTest, CopyFileCopiesALargeFileWhole) {
    std::string big(300000, '\0');
    for (size_t i = 0; i < big.size(); ++i)
        big[i] = static_cast<char>(i * 7);
    write_text("big", big);
#if defined(_WIN32)
    // Windows takes ".." away from the name before it looks for folders: "x" needn't exist.
    EXPECT_EQ(mox_copy_file("x\\..\\copy", "big", 0), 1);
    EXPECT_EQ(read_text("copy"), big);
    fs::remove("copy");
#else
    EXPECT_EQ(mox_copy_file("x\\..\\copy", "big", 0), 0); // no folder "x" to pass through
#endif
    EXPECT_EQ(mox_copy_file("copy", "big", 0), 1);
    EXPECT_EQ(read_text("copy"), big);
}

// ---- Folders ---------------------------------------------------------------------------------------

TEST_F(FileSystemTest, CreateFolderWithoutParents) {
    EXPECT_EQ(mox_create_folder("x", 0), 1);
    EXPECT_TRUE(is_dir("x"));
    EXPECT_EQ(mox_create_folder("x", 0), 0);
    EXPECT_EQ(mox_create_folder("p\\q", 0), 0);
    EXPECT_FALSE(fs::exists("p"));
}

TEST_F(FileSystemTest, CreateFolderWithParentsMakesEveryLevel) {
    EXPECT_EQ(mox_create_folder("x\\y\\z", 1), 1);
    EXPECT_TRUE(is_dir("x/y/z"));
    EXPECT_EQ(mox_create_folder("x\\y", 1), 1);
    EXPECT_EQ(mox_create_folder("x\\y\\z", 1), 1);
}

TEST_F(FileSystemTest, CreateFolderOfAnExistingPlainNameIsFalse) {
    // Intended: a name without a separator is made at once and its failure counts.
    fs::create_directory("x");
    EXPECT_EQ(mox_create_folder("x", 1), 0);
    EXPECT_EQ(mox_create_folder("y", 1), 1);
    EXPECT_TRUE(is_dir("y"));
}

TEST_F(FileSystemTest, CreateFolderWithParentsIsTrueEvenWhenNothingCanBeMade) {
    // Intended: in the walk the system's answers are ignored.
    write_text("f", "a file in the way");
    EXPECT_EQ(mox_create_folder("f\\sub", 1), 1);
    EXPECT_TRUE(is_file("f"));
    EXPECT_EQ(mox_create_folder("\\\\", 1), 0);
}

TEST_F(FileSystemTest, CreateFolderWithParentsSkipsADriveAndLosesTheLeadingSeparator) {
    EXPECT_EQ(mox_create_folder("c:\\a", 1), 1);
    EXPECT_FALSE(fs::exists("c:"));
    EXPECT_EQ(mox_create_folder("\\lead\\sub", 1), 1);
    EXPECT_TRUE(is_dir("lead/sub"));
}

TEST_F(FileSystemTest, DeleteFolderWithoutRecursionNeedsAnEmptyFolder) {
    fs::create_directories("x/y");
    write_text("x/f", "1");
    EXPECT_EQ(mox_delete_folder("x", 0), 0);
    EXPECT_TRUE(is_dir("x/y"));
    EXPECT_EQ(mox_delete_folder("x\\y", 0), 1);
    EXPECT_FALSE(fs::exists("x/y"));
}

TEST_F(FileSystemTest, DeleteFolderRecursiveRemovesTheTree) {
    fs::create_directories("x/a/b/c");
    fs::create_directories("x/empty");
    write_text("x/f1", "1");
    write_text("x/a/f2", "2");
    write_text("x/a/b/c/f3", "3");
    write_text("x/.hidden", "4");
    EXPECT_EQ(mox_delete_folder("x", 1), 1);
    EXPECT_FALSE(fs::exists("x"));
}

TEST_F(FileSystemTest, DeleteFolderRecursiveOnAMissingFolderIsFalse) {
    EXPECT_EQ(mox_delete_folder("missing", 1), 0);
}

TEST_F(FileSystemTest, DeleteFolderRecursiveRemovesLinksWithoutFollowingThem) {
    fs::create_directories("outside");
    write_text("outside/keep", "k");
    fs::create_directories("x");
    if (const char* reason = why_no_folder_links())
        GTEST_SKIP() << reason;
    fs::create_directory_symlink(fs::absolute("outside"), "x/link");
    EXPECT_EQ(mox_delete_folder("x", 1), 1);
    EXPECT_FALSE(fs::exists("x"));
    EXPECT_EQ(read_text("outside/keep"), "k");
}

TEST_F(FileSystemTest, DeleteFolderRecursiveStopsAtTheFirstFailureAndKeepsWhatIsLeft) {
#if defined(_WIN32)
    GTEST_SKIP() << "Windows lets entries be removed from a folder whose read-only attribute is set";
#else
    if (geteuid() == 0)
        GTEST_SKIP() << "root may remove entries from a folder without write permission";
#endif
    fs::create_directories("x/locked");
    write_text("x/locked/f", "1");
    chmod("x/locked", 0555);
    EXPECT_EQ(mox_delete_folder("x", 1), 0);
    chmod("x/locked", 0755);
    EXPECT_TRUE(is_file("x/locked/f"));
}

TEST_F(FileSystemTest, ExistFolderTellsFoldersAndRestoresTheWorkFolder) {
    fs::create_directories("d/e");
    write_text("f", "x");
    std::string before = cwd();
    EXPECT_EQ(mox_exist_folder(const_cast<char*>("d")), 1);
    EXPECT_EQ(cwd(), before);
    char nested[] = "d\\e";
    EXPECT_EQ(mox_exist_folder(nested), 1);
    EXPECT_EQ(cwd(), before);
    EXPECT_EQ(mox_exist_folder(const_cast<char*>("f")), 0);
    EXPECT_EQ(mox_exist_folder(const_cast<char*>("missing")), 0);
    EXPECT_EQ(mox_exist_folder(const_cast<char*>("")), 0);
    std::string absolute = folder.library_path("d");
    EXPECT_EQ(mox_exist_folder(absolute.data()), 1);
    EXPECT_EQ(cwd(), before);
}

TEST_F(FileSystemTest, GetFilesListsFilesOnly) {
    write_text("b.txt", "1");
    write_text("a.txt", "2");
    write_text(".dot", "3");
    fs::create_directories("sub/inner");
    write_text("sub/inner/deep", "4");
    mox_astring_array array;
    mox_astring_array_construct(&array, nullptr);
    EXPECT_EQ(mox_get_files(&array, "."), 1);
    EXPECT_EQ(names(array), (std::vector<std::string>{".dot", "a.txt", "b.txt"}));
    EXPECT_EQ(mox_get_files(&array, folder.library_path("sub\\inner").c_str()), 1);
    EXPECT_EQ(names(array), (std::vector<std::string>{"deep"}));
    mox_astring_array_destruct(&array);
}

TEST_F(FileSystemTest, GetFilesOfAFolderWithOnlySubfoldersLeavesTheArray) {
    fs::create_directories("only/a");
    fs::create_directories("only/b");
    mox_astring_array array;
    mox_astring_array_construct(&array, nullptr);
    EXPECT_EQ(mox_get_files(&array, "only"), 1);
    EXPECT_EQ(array.length, 0u);
    EXPECT_EQ(array.items, nullptr);
    // An array that held names keeps them.
    write_text("only/a/f", "1");
    ASSERT_EQ(mox_get_files(&array, "only\\a"), 1);
    ASSERT_EQ(names(array), std::vector<std::string>{"f"});
    EXPECT_EQ(mox_get_files(&array, "only"), 1);
    EXPECT_EQ(names(array), std::vector<std::string>{"f"});
    mox_astring_array_destruct(&array);
}

TEST_F(FileSystemTest, GetFoldersListsFoldersWithoutTheDotEntries) {
    fs::create_directories("top/one");
    fs::create_directories("top/two/three");
    write_text("top/file", "1");
    if (const char* reason = why_no_folder_links())
        GTEST_SKIP() << reason;
    fs::create_directory_symlink(fs::absolute("top/one"), "top/link");
    mox_astring_array array;
    mox_astring_array_construct(&array, nullptr);
    EXPECT_EQ(mox_get_folders(&array, "top"), 1);
    EXPECT_EQ(names(array), (std::vector<std::string>{"one", "two"}));
    EXPECT_EQ(mox_get_files(&array, "top"), 1);
    EXPECT_EQ(names(array), (std::vector<std::string>{"file", "link"}));
    mox_astring_array_destruct(&array);
}

TEST_F(FileSystemTest, ListingAMissingFolderIsFalse) {
    mox_astring_array array;
    mox_astring_array_construct(&array, nullptr);
    ErrorListener listener;
    EXPECT_EQ(mox_get_files(&array, "missing"), 0);
    EXPECT_EQ(mox_get_folders(&array, "missing"), 0);
    EXPECT_TRUE(listener.silent());
    mox_astring_array_destruct(&array);
}

TEST_F(FileSystemTest, WorkFolderGoesAndComesBack) {
    fs::create_directory("w");
    mox_astring text = nullptr;
    ASSERT_EQ(mox_get_work_folder(&text), 1);
    EXPECT_EQ(std::string(text), cwd());
    EXPECT_EQ(mox_set_work_folder("w"), 1);
    EXPECT_EQ(cwd(), fs::path(folder.path()) / "w");
    EXPECT_EQ(mox_set_work_folder(".."), 1);
    EXPECT_EQ(mox_set_work_folder("missing"), 0);
    EXPECT_EQ(cwd(), folder.path());
    ASSERT_EQ(mox_get_work_folder(&text), 1);
    EXPECT_EQ(std::string(text), folder.path());
    mox_astring_destruct(&text);
}

TEST_F(FileSystemTest, TempFolderIsTheSystemsWithItsSeparator) {
    mox_astring text = nullptr;
    ASSERT_EQ(mox_get_temp_folder(&text), 1);
    EXPECT_EQ(std::string(text), system_temp_folder());
    mox_astring_destruct(&text);
}

TEST_F(FileSystemTest, TempFileNameMakesANewFileEachTime) {
    mox_astring first = nullptr;
    mox_astring second = nullptr;
    std::string here = folder.library_path("");
    here.pop_back(); // without the separator at the end
    ASSERT_EQ(mox_get_temp_file_name(&first, here.c_str(), "abcdef"), 1);
    ASSERT_EQ(mox_get_temp_file_name(&second, here.c_str(), "abcdef"), 1);
    std::string a = first;
    std::string b = second;
    EXPECT_NE(a, b);
    ASSERT_EQ(a.size(), here.size() + 1 + 3 + 4 + 4);
    EXPECT_EQ(a.substr(0, here.size() + 4), here + "\\abc");
#if defined(_WIN32)
    // Windows writes the extension in lower case, whatever its documents show.
    EXPECT_EQ(a.substr(a.size() - 4), ".tmp");
#else
    EXPECT_EQ(a.substr(a.size() - 4), ".TMP");
#endif
    for (char c : a.substr(here.size() + 4, 4))
        EXPECT_TRUE(std::isxdigit(static_cast<unsigned char>(c))) << a;
    EXPECT_EQ(mox_exist_file(first), 1);
    EXPECT_EQ(mox_exist_file(second), 1);
    mox_astring_destruct(&first);
    mox_astring_destruct(&second);
}

TEST_F(FileSystemTest, TempFileNameInAMissingFolderIsAnEmptyName) {
    // Intended: the system's answer is ignored, so the entry is true with an empty name.
    mox_astring text = nullptr;
    EXPECT_EQ(mox_get_temp_file_name(&text, "missing", "p"), 1);
    EXPECT_STREQ(text, "");
    mox_astring_destruct(&text);
}

TEST_F(FileSystemTest, TempFileNameInTheTempFolder) {
    mox_astring temp = nullptr;
    mox_astring name = nullptr;
    ASSERT_EQ(mox_get_temp_folder(&temp), 1);
    ASSERT_EQ(mox_get_temp_file_name(&name, temp, "mox"), 1);
    std::string text = name;
    EXPECT_EQ(text.rfind(system_temp_folder() + "mox", 0), 0u) << text;
    EXPECT_EQ(mox_delete_file(name), 1);
    mox_astring_destruct(&temp);
    mox_astring_destruct(&name);
}

TEST_F(FileSystemTest, ExistFolderRefusesAWorkFolderTooLongToPutBack) {
#if defined(_WIN32)
    GTEST_SKIP() << "Windows can't make a work folder longer than MAX_PATH characters";
#else
    // Our decision: a current folder longer than the 260 characters couldn't be restored from the
    // buffer, so the entry answers false and leaves it where it is.
    std::string deep = folder.path();
    while (deep.size() < 300)
        deep += "/" + std::string(40, 'l');
    fs::create_directories(deep);
    ASSERT_EQ(chdir(deep.c_str()), 0);
    EXPECT_EQ(mox_exist_folder(const_cast<char*>(".")), 0);
    EXPECT_EQ(cwd(), deep);
    mox_astring text = nullptr;
    // The count of the system says how much room it needs: true, with the block left without text.
    EXPECT_EQ(mox_get_work_folder(&text), 1);
    EXPECT_EQ(std::string(text).find(deep), std::string::npos);
    mox_astring_destruct(&text);
#endif
}
