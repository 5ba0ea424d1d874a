// A fresh folder under /tmp for one test, removed with everything in it at the end of the scope.
#pragma once

#include <cstdint>
#include <string>
#include <vector>

namespace mox_test {

class TempFolder {
public:
    TempFolder();
    ~TempFolder();
    TempFolder(const TempFolder&) = delete;
    TempFolder& operator=(const TempFolder&) = delete;

    const std::string& path() const { return path_; }
    // The system path of a file in the folder.
    std::string file(const std::string& name) const { return path_ + "/" + name; }
    // The same path written with the library's separator.
    std::string library_path(const std::string& name) const;

private:
    std::string path_;
};

// Whole-file helpers for checking what is on disc.
void write_bytes(const std::string& path, const std::vector<uint8_t>& bytes);
void write_text(const std::string& path, const std::string& text);
std::vector<uint8_t> read_bytes(const std::string& path);
std::string read_text(const std::string& path);

} // namespace mox_test
