#include "support/temp_folder.h"

#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <iterator>

#if defined(_WIN32)
#include <windows.h>
#endif

namespace mox_test {

#if defined(_WIN32)
TempFolder::TempFolder() {
    // The system's temporary folder, and a name that no other test program has taken.
    static unsigned serial = 0;
    const std::filesystem::path base = std::filesystem::temp_directory_path();
    const std::string process = std::to_string(GetCurrentProcessId());
    for (int attempt = 0; attempt < 1000; ++attempt) {
        std::filesystem::path candidate = base / ("mox-test-" + process + "-" + std::to_string(serial++));
        std::error_code error;
        if (std::filesystem::create_directory(candidate, error)) {
            path_ = candidate.string();
            return;
        }
    }
    std::abort();
}
#else
TempFolder::TempFolder() {
    char pattern[] = "/tmp/mox-test-XXXXXX";
    if (mkdtemp(pattern) == nullptr)
        std::abort();
    path_ = pattern;
}
#endif

TempFolder::~TempFolder() {
    std::error_code ignored;
    std::filesystem::remove_all(path_, ignored);
}

std::string TempFolder::library_path(const std::string& name) const {
    std::string result = file(name);
    for (char& c : result)
        if (c == '/')
            c = '\\';
    return result;
}

void write_bytes(const std::string& path, const std::vector<uint8_t>& bytes) {
    std::ofstream out(path, std::ios::binary | std::ios::trunc);
    out.write(reinterpret_cast<const char*>(bytes.data()), static_cast<std::streamsize>(bytes.size()));
}

void write_text(const std::string& path, const std::string& text) {
    write_bytes(path, std::vector<uint8_t>(text.begin(), text.end()));
}

std::vector<uint8_t> read_bytes(const std::string& path) {
    std::ifstream in(path, std::ios::binary);
    return std::vector<uint8_t>(std::istreambuf_iterator<char>(in), std::istreambuf_iterator<char>());
}

std::string read_text(const std::string& path) {
    std::vector<uint8_t> bytes = read_bytes(path);
    return std::string(bytes.begin(), bytes.end());
}

} // namespace mox_test
