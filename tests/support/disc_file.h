// A file in a fresh temporary folder, open through the library, for the tests of what saves itself
// to a file and loads itself again.
#pragma once

#include <mox/files.h>

#include <cstdint>
#include <string>
#include <vector>

#include "support/temp_folder.h"

namespace mox_test {

class DiscFile {
public:
    explicit DiscFile(std::string name) : name_(std::move(name)) { mox_file_construct(&file, nullptr); }
    ~DiscFile() { mox_file_destruct(&file); }
    DiscFile(const DiscFile&) = delete;
    DiscFile& operator=(const DiscFile&) = delete;

    // Puts `bytes` on disc and opens the file at its start, by default for reading and writing and
    // shared for reading, so that the test may look at the disc while it is open (Windows refuses
    // that look otherwise).
    bool open_with(const std::vector<uint8_t>& bytes,
                   uint32_t mode = MOX_FILE_READ | MOX_FILE_WRITE | MOX_FILE_SHARE_READ) {
        write_bytes(folder_.file(name_), bytes);
        return mox_file_open(&file, folder_.library_path(name_).c_str(), mode) != 0;
    }

    // What the disc holds now; the file stays as it is.
    std::vector<uint8_t> on_disc() const { return read_bytes(folder_.file(name_)); }

    mox_file file{};

private:
    TempFolder folder_;
    std::string name_;
};

} // namespace mox_test
