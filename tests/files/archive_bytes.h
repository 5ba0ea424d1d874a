// Archive files built byte by byte (what the writer is expected to produce, and what it never does),
// and a look at what unpacking left on disc.
#pragma once

#include <algorithm>
#include <cstdint>
#include <filesystem>
#include <string>
#include <vector>

namespace archive_bytes {

using Bytes = std::vector<uint8_t>;

// Every entry below `root`, relative, with "/" behind folders, in sorted order.
inline std::vector<std::string> tree_of(const std::string& root) {
    namespace fs = std::filesystem;
    std::vector<std::string> out;
    for (const auto& entry : fs::recursive_directory_iterator(root)) {
        std::string name = fs::relative(entry.path(), root).generic_string();
        out.push_back(entry.is_directory() ? name + "/" : name);
    }
    std::sort(out.begin(), out.end());
    return out;
}

inline void put32(Bytes& out, uint32_t value) {
    for (int i = 0; i < 4; ++i)
        out.push_back(static_cast<uint8_t>(value >> (8 * i)));
}

inline void put64(Bytes& out, uint64_t value) {
    for (int i = 0; i < 8; ++i)
        out.push_back(static_cast<uint8_t>(value >> (8 * i)));
}

inline uint64_t get64(const Bytes& in, size_t at) {
    uint64_t value = 0;
    for (int i = 7; i >= 0; --i)
        value = value << 8 | in.at(at + static_cast<size_t>(i));
    return value;
}

inline void put_name(Bytes& out, const std::string& name) {
    put32(out, static_cast<uint32_t>(name.size()));
    out.insert(out.end(), name.begin(), name.end());
}

inline Bytes bytes_of(const std::string& text) { return Bytes(text.begin(), text.end()); }

// The header and the records in the order they are added; `done` fills in the size at offset 16.
struct Builder {
    Bytes bytes;

    explicit Builder(uint64_t method = 0, uint64_t skip = 0, uint32_t format = 0, uint32_t reserved_1 = 0,
                     uint64_t reserved_2 = 0) {
        put32(bytes, format);
        put64(bytes, method);
        put32(bytes, reserved_1);
        put64(bytes, 0);
        put64(bytes, skip);
        put64(bytes, reserved_2);
    }

    Builder& raw(const Bytes& more) {
        bytes.insert(bytes.end(), more.begin(), more.end());
        return *this;
    }

    Builder& counts(uint32_t folders, uint32_t files) {
        put32(bytes, folders);
        put32(bytes, files);
        return *this;
    }

    Builder& folder(const std::string& name, uint32_t folders, uint32_t files) {
        put32(bytes, 1);
        put_name(bytes, name);
        return counts(folders, files);
    }

    // A file record as the writer makes it; `offset` receives where the data starts.
    Builder& file(const std::string& name, const Bytes& data, uint64_t* offset = nullptr) {
        put32(bytes, 2);
        put_name(bytes, name);
        put64(bytes, data.size());
        if (offset != nullptr)
            *offset = bytes.size();
        return raw(data);
    }
    Builder& file(const std::string& name, const std::string& data, uint64_t* offset = nullptr) {
        return file(name, bytes_of(data), offset);
    }

    // The only file record the catalogue reader takes: an empty name in front of the real one.
    Builder& catalogue_file(const std::string& name, const Bytes& data, uint64_t* offset = nullptr) {
        put32(bytes, 2);
        put32(bytes, 0);
        put_name(bytes, name);
        put64(bytes, data.size());
        if (offset != nullptr)
            *offset = bytes.size();
        return raw(data);
    }

    Bytes done() const {
        Bytes out = bytes;
        for (int i = 0; i < 8; ++i)
            out[16 + static_cast<size_t>(i)] =
                static_cast<uint8_t>(static_cast<uint64_t>(out.size()) >> (8 * i));
        return out;
    }
};

} // namespace archive_bytes
