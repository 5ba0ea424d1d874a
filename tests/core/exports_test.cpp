// What the shared library exports must be exactly what the public headers declare.
#include <mox/mox.h>

#include <gtest/gtest.h>

#include <cstdio>
#include <filesystem>
#include <fstream>
#include <regex>
#include <set>
#include <sstream>
#include <string>

#if defined(_WIN32)
#include <windows.h>
#endif

namespace {

std::string run(const std::string& command) {
    std::string output;
    FILE* pipe = popen(command.c_str(), "r");
    if (pipe == nullptr)
        return output;
    char buffer[4096];
    size_t got;
    while ((got = fread(buffer, 1, sizeof buffer, pipe)) > 0)
        output.append(buffer, got);
    pclose(pipe);
    return output;
}

#if defined(_WIN32)
// The names in the export table of the DLL, read from its image in memory.
std::set<std::string> exported_symbols() {
    std::set<std::string> names;
    // The DLL beside the test program, loaded for the look (nothing here calls into it).
    HMODULE module = LoadLibraryA("mox.dll");
    if (module == nullptr)
        return names;
    const auto* base = reinterpret_cast<const uint8_t*>(module);
    const auto* dos = reinterpret_cast<const IMAGE_DOS_HEADER*>(base);
    const auto* nt = reinterpret_cast<const IMAGE_NT_HEADERS*>(base + dos->e_lfanew);
    const IMAGE_DATA_DIRECTORY& entry = nt->OptionalHeader.DataDirectory[IMAGE_DIRECTORY_ENTRY_EXPORT];
    if (entry.VirtualAddress == 0)
        return names;
    const auto* exports = reinterpret_cast<const IMAGE_EXPORT_DIRECTORY*>(base + entry.VirtualAddress);
    const auto* name_offsets = reinterpret_cast<const DWORD*>(base + exports->AddressOfNames);
    for (DWORD i = 0; i < exports->NumberOfNames; ++i)
        names.insert(reinterpret_cast<const char*>(base + name_offsets[i]));
    return names;
}
#else
std::set<std::string> exported_symbols() {
    std::set<std::string> names;
    std::istringstream lines(run(std::string("nm -D --defined-only ") + MOX_LIBRARY_FILE));
    std::string address, kind, name;
    while (lines >> address >> kind >> name)
        names.insert(name);
    return names;
}
#endif

std::string without_comments(const std::string& text) {
    static const std::regex comments(R"(/\*[\s\S]*?\*/|//[^\n]*)");
    return std::regex_replace(text, comments, " ");
}

std::set<std::string> declared_entries() {
    std::set<std::string> names;
    static const std::regex declaration(R"(MOX_API[^;{(]*?\b(mox_[A-Za-z0-9_]+)\s*\()");
    for (const auto& file : std::filesystem::directory_iterator(MOX_INCLUDE_DIR)) {
        std::ifstream stream(file.path());
        std::stringstream text;
        text << stream.rdbuf();
        std::string source = without_comments(text.str());
        for (std::sregex_iterator it(source.begin(), source.end(), declaration), end; it != end; ++it)
            names.insert((*it)[1]);
    }
    return names;
}

} // namespace

TEST(Exports, EveryDeclaredEntryIsExportedAndNothingElse) {
    std::set<std::string> exported = exported_symbols();
    std::set<std::string> declared = declared_entries();
    ASSERT_FALSE(exported.empty()) << "no exported names found for " << MOX_LIBRARY_FILE;
    ASSERT_GT(declared.size(), 150u) << "the header scan found too little";
    for (const std::string& name : declared)
        EXPECT_TRUE(exported.count(name)) << "declared but not exported: " << name;
    for (const std::string& name : exported)
        EXPECT_TRUE(declared.count(name)) << "exported but not declared: " << name;
}

TEST(Exports, TheSonameFollowsTheReportedVersion) {
#if defined(_WIN32)
    GTEST_SKIP() << "a DLL has no soname: Windows programs load it by its fixed name, mox.dll";
#endif
    uint8_t major = 0, minor = 0;
    uint16_t patch = 0;
    mox_version_ext(&major, &minor, &patch);
    std::string expected = "libmox.so." + std::to_string(major) + "." + std::to_string(minor);
    std::string dynamic = run(std::string("readelf -d ") + MOX_LIBRARY_FILE);
    EXPECT_NE(dynamic.find("Library soname: [" + expected + "]"), std::string::npos) << dynamic;
    std::string file = std::filesystem::path(MOX_LIBRARY_FILE).filename().string();
    EXPECT_EQ(file, expected + "." + std::to_string(patch));
}
