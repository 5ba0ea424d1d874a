// Files and file mappings over POSIX descriptors. Handles are entries of a table of our own, so that
// the access a handle was granted is known to every call, and a closed handle is recognised as such
// instead of reaching a descriptor that has been reused meanwhile.
#include "platform/os.h"
#include "platform/posix/path.h"

#include <cerrno>
#include <climits>
#include <cstring>
#include <fcntl.h>
#include <pthread.h>
#include <sys/file.h>
#include <sys/mman.h>
#include <sys/stat.h>
#include <unistd.h>

namespace mox::os {

namespace {

enum class Kind : uint32_t { free_slot = 0, file, mapping };

struct Entry {
    Kind kind;
    uint32_t serial;     // the part of the handle value that tells a reused slot from the old one
    int fd;              // own descriptor; a mapping keeps the file alive through a duplicate
    uint32_t access;     // GENERIC_READ and GENERIC_WRITE as granted
    uint32_t protection; // mappings only
    uint64_t size;       // mappings only: bytes mapped
};

struct View {
    void* base;
    size_t length;
};

pthread_mutex_t g_lock = PTHREAD_MUTEX_INITIALIZER;
Entry* g_entries = nullptr;
uint32_t g_entry_count = 0;
uint32_t g_serial = 0;
View* g_views = nullptr;
uint32_t g_view_count = 0;

constexpr uint32_t kSlotBits = 16;
constexpr uint32_t kSlotMask = (1u << kSlotBits) - 1;

struct Locked {
    Locked() { pthread_mutex_lock(&g_lock); }
    ~Locked() { pthread_mutex_unlock(&g_lock); }
    Locked(const Locked&) = delete;
    Locked& operator=(const Locked&) = delete;
};

// The value of a handle: the serial above the slot number plus one, so that it is never null and
// never INVALID_HANDLE_VALUE.
HANDLE handle_of(uint32_t slot, uint32_t serial) {
    uintptr_t value = (static_cast<uintptr_t>(serial) << kSlotBits) | (slot + 1);
    return reinterpret_cast<HANDLE>(value);
}

// Called with the lock held. Null for a handle that is not live or of another kind.
Entry* find(HANDLE handle, Kind kind) {
    auto value = reinterpret_cast<uintptr_t>(handle);
    uint32_t slot_plus_one = static_cast<uint32_t>(value & kSlotMask);
    if (slot_plus_one == 0 || slot_plus_one > g_entry_count)
        return nullptr;
    Entry* entry = &g_entries[slot_plus_one - 1];
    if (entry->kind != kind || static_cast<uintptr_t>(entry->serial) != (value >> kSlotBits))
        return nullptr;
    return entry;
}

// Called with the lock held.
HANDLE add_entry(const Entry& entry) {
    uint32_t slot = 0;
    while (slot < g_entry_count && g_entries[slot].kind != Kind::free_slot)
        ++slot;
    if (slot == g_entry_count) {
        if (g_entry_count == kSlotMask)
            return nullptr;
        uint32_t grown = g_entry_count == 0 ? 16 : g_entry_count * 2;
        if (grown > kSlotMask)
            grown = kSlotMask;
        void* block = HeapReAlloc(GetProcessHeap(), HEAP_ZERO_MEMORY, g_entries, grown * sizeof(Entry));
        if (block == nullptr)
            return nullptr;
        g_entries = static_cast<Entry*>(block);
        g_entry_count = grown;
    }
    // The serial takes what the handle value has room for above the slot.
    constexpr uintptr_t serial_mask =
        (UINTPTR_MAX >> kSlotBits) > 0xFFFFFFFFu ? 0xFFFFFFFFu : (UINTPTR_MAX >> kSlotBits);
    g_serial = static_cast<uint32_t>((g_serial + 1u) & serial_mask);
    if (g_serial == 0)
        g_serial = 1;
    g_entries[slot] = entry;
    g_entries[slot].serial = g_serial;
    return handle_of(slot, g_serial);
}

// Share modes over open-file-description locks on marker bytes far beyond any real data. Each
// handle holds a read lock on the markers of what it does, and a new opener looks for locks of the
// others on the markers that would clash with it. The locks belong to the descriptor, so they go
// with its close.
constexpr off_t kMarkerBase = static_cast<off_t>(0x7FFFFFFFFFFFF000LL);
constexpr off_t kMarkerReading = kMarkerBase + 0;
constexpr off_t kMarkerWriting = kMarkerBase + 1;
constexpr off_t kMarkerDenyingRead = kMarkerBase + 2;
constexpr off_t kMarkerDenyingWrite = kMarkerBase + 3;

bool hold_marker(int fd, off_t marker) {
    struct flock lock {};
    lock.l_type = F_RDLCK;
    lock.l_whence = SEEK_SET;
    lock.l_start = marker;
    lock.l_len = 1;
    return fcntl(fd, F_OFD_SETLK, &lock) == 0;
}

// True if another descriptor holds the marker.
bool marker_held_by_others(int fd, off_t marker) {
    struct flock lock {};
    lock.l_type = F_WRLCK;
    lock.l_whence = SEEK_SET;
    lock.l_start = marker;
    lock.l_len = 1;
    if (fcntl(fd, F_OFD_GETLK, &lock) != 0)
        return false;
    return lock.l_type != F_UNLCK;
}

bool claim_share(int fd, uint32_t access, uint32_t share) {
    // A handle with neither read nor write access takes no part in sharing.
    if ((access & (GENERIC_READ | GENERIC_WRITE)) == 0)
        return true;
    bool reads = access & GENERIC_READ;
    bool writes = access & GENERIC_WRITE;
    bool denies_read = !(share & FILE_SHARE_READ);
    bool denies_write = !(share & FILE_SHARE_WRITE);
    if ((reads && !hold_marker(fd, kMarkerReading)) || (writes && !hold_marker(fd, kMarkerWriting)) ||
        (denies_read && !hold_marker(fd, kMarkerDenyingRead)) ||
        (denies_write && !hold_marker(fd, kMarkerDenyingWrite)))
        return false;
    // Taken first and checked afterwards, so that two openers racing each other both fail rather
    // than both succeed.
    if (reads && marker_held_by_others(fd, kMarkerDenyingRead))
        return false;
    if (writes && marker_held_by_others(fd, kMarkerDenyingWrite))
        return false;
    if (denies_read && marker_held_by_others(fd, kMarkerReading))
        return false;
    if (denies_write && marker_held_by_others(fd, kMarkerWriting))
        return false;
    return true;
}

bool write_all(int fd, const uint8_t* data, uint32_t size, uint32_t* done) {
    uint32_t total = 0;
    while (total < size) {
        ssize_t n = ::write(fd, data + total, size - total);
        if (n < 0) {
            if (errno == EINTR)
                continue;
            *done = total;
            return false;
        }
        if (n == 0)
            break;
        total += static_cast<uint32_t>(n);
    }
    *done = total;
    return true;
}

} // namespace

HANDLE CreateFileA(const char* name, uint32_t access, uint32_t share, void*, uint32_t disposition, uint32_t,
                   HANDLE) {
    if (name == nullptr)
        return INVALID_HANDLE_VALUE;
    char path[PATH_MAX];
    if (!system_path(name, path, sizeof path))
        return INVALID_HANDLE_VALUE;

    int create = 0;
    switch (disposition) {
    case CREATE_NEW:
        create = O_CREAT | O_EXCL;
        break;
    case CREATE_ALWAYS:
    case OPEN_ALWAYS:
        create = O_CREAT;
        break;
    case OPEN_EXISTING:
    case TRUNCATE_EXISTING:
        break;
    default:
        return INVALID_HANDLE_VALUE;
    }
    if (disposition == TRUNCATE_EXISTING && !(access & GENERIC_WRITE))
        return INVALID_HANDLE_VALUE;

    // The descriptor is readable whenever it can be, because share locks need a readable one; what
    // the caller may do is the access kept in the table.
    int fd = -1;
    bool readable = true;
    if (access & GENERIC_WRITE) {
        fd = ::open(path, O_RDWR | O_CLOEXEC | create, 0666);
        if (fd < 0 && errno == EACCES && !(access & GENERIC_READ)) {
            fd = ::open(path, O_WRONLY | O_CLOEXEC | create, 0666);
            readable = false;
        }
    } else {
        fd = ::open(path, O_RDONLY | O_CLOEXEC | create, 0666);
    }
    if (fd < 0)
        return INVALID_HANDLE_VALUE;

    struct stat info {};
    if (fstat(fd, &info) != 0 || S_ISDIR(info.st_mode)) {
        ::close(fd);
        return INVALID_HANDLE_VALUE;
    }
    // A write-only descriptor cannot hold share locks; such a handle is not checked against others.
    if (readable && !claim_share(fd, access, share)) {
        ::close(fd);
        return INVALID_HANDLE_VALUE;
    }
    // Cut only once the share check has let us in, so that a refused opener destroys nothing.
    if ((disposition == CREATE_ALWAYS || disposition == TRUNCATE_EXISTING) && ftruncate(fd, 0) != 0) {
        ::close(fd);
        return INVALID_HANDLE_VALUE;
    }

    Entry entry{};
    entry.kind = Kind::file;
    entry.fd = fd;
    entry.access = access & (GENERIC_READ | GENERIC_WRITE);
    HANDLE handle;
    {
        Locked locked;
        handle = add_entry(entry);
    }
    if (handle == nullptr) {
        ::close(fd);
        return INVALID_HANDLE_VALUE;
    }
    return handle;
}

bool CloseHandle(HANDLE handle) {
    int fd = -1;
    {
        Locked locked;
        Entry* entry = find(handle, Kind::file);
        if (entry == nullptr)
            entry = find(handle, Kind::mapping);
        if (entry == nullptr)
            return false;
        fd = entry->fd;
        *entry = Entry{};
    }
    ::close(fd);
    return true;
}

namespace {

// The descriptor of a live file handle that was granted `needed`, or -1.
int file_fd(HANDLE handle, uint32_t needed) {
    Locked locked;
    Entry* entry = find(handle, Kind::file);
    if (entry == nullptr || (entry->access & needed) != needed)
        return -1;
    return entry->fd;
}

} // namespace

bool ReadFile(HANDLE handle, void* data, uint32_t size, uint32_t* read, void*) {
    if (read != nullptr)
        *read = 0;
    int fd = file_fd(handle, GENERIC_READ);
    if (fd < 0 || (data == nullptr && size != 0))
        return false;
    auto* bytes = static_cast<uint8_t*>(data);
    uint32_t total = 0;
    while (total < size) {
        ssize_t n = ::read(fd, bytes + total, size - total);
        if (n < 0) {
            if (errno == EINTR)
                continue;
            if (read != nullptr)
                *read = total;
            return false;
        }
        if (n == 0)
            break;
        total += static_cast<uint32_t>(n);
    }
    if (read != nullptr)
        *read = total;
    return true;
}

bool WriteFile(HANDLE handle, const void* data, uint32_t size, uint32_t* written, void*) {
    if (written != nullptr)
        *written = 0;
    int fd = file_fd(handle, GENERIC_WRITE);
    if (fd < 0 || (data == nullptr && size != 0))
        return false;
    uint32_t done = 0;
    bool ok = write_all(fd, static_cast<const uint8_t*>(data), size, &done);
    if (written != nullptr)
        *written = done;
    return ok;
}

uint32_t SetFilePointer(HANDLE handle, int32_t distance_low, int32_t* distance_high, uint32_t method) {
    int fd = file_fd(handle, 0);
    if (fd < 0)
        return INVALID_SET_FILE_POINTER;
    int64_t distance;
    if (distance_high == nullptr)
        distance = distance_low;
    else
        distance = static_cast<int64_t>((static_cast<uint64_t>(static_cast<uint32_t>(*distance_high)) << 32) |
                                        static_cast<uint32_t>(distance_low));
    int whence;
    switch (method) {
    case FILE_BEGIN:
        whence = SEEK_SET;
        break;
    case FILE_CURRENT:
        whence = SEEK_CUR;
        break;
    case FILE_END:
        whence = SEEK_END;
        break;
    default:
        return INVALID_SET_FILE_POINTER;
    }
    // A position in front of the file's start is refused, as the system refuses a negative seek.
    off_t result = lseek(fd, static_cast<off_t>(distance), whence);
    if (result < 0)
        return INVALID_SET_FILE_POINTER;
    auto position = static_cast<uint64_t>(result);
    if (distance_high != nullptr)
        *distance_high = static_cast<int32_t>(static_cast<uint32_t>(position >> 32));
    return static_cast<uint32_t>(position);
}

uint32_t GetFileSize(HANDLE handle, uint32_t* size_high) {
    int fd = file_fd(handle, 0);
    struct stat info {};
    if (fd < 0 || fstat(fd, &info) != 0)
        return INVALID_FILE_SIZE;
    auto size = static_cast<uint64_t>(info.st_size);
    if (size_high != nullptr)
        *size_high = static_cast<uint32_t>(size >> 32);
    return static_cast<uint32_t>(size);
}

bool SetEndOfFile(HANDLE handle) {
    int fd = file_fd(handle, GENERIC_WRITE);
    if (fd < 0)
        return false;
    off_t here = lseek(fd, 0, SEEK_CUR);
    return here >= 0 && ftruncate(fd, here) == 0;
}

// ---- Mappings ------------------------------------------------------------------------------------

namespace {

struct Protection {
    bool valid;
    bool read;
    bool write;
    bool execute;
};

// Exactly one protection value is accepted, as by the system; a sum of two is not one of them.
Protection protection_meaning(uint32_t protection) {
    switch (protection) {
    case PAGE_READONLY:
    case PAGE_WRITECOPY:
        return {true, true, false, false};
    case PAGE_READWRITE:
        return {true, true, true, false};
    case PAGE_EXECUTE:
        return {true, false, false, true};
    case PAGE_EXECUTE_READ:
        return {true, true, false, true};
    case PAGE_EXECUTE_READWRITE:
        return {true, true, true, true};
    default:
        return {false, false, false, false};
    }
}

} // namespace

HANDLE CreateFileMappingA(HANDLE file, void*, uint32_t protection, uint32_t size_high, uint32_t size_low,
                          const char*) {
    Protection meaning = protection_meaning(protection);
    if (!meaning.valid)
        return nullptr;
    int fd;
    uint32_t access;
    {
        Locked locked;
        Entry* entry = find(file, Kind::file);
        if (entry == nullptr)
            return nullptr;
        fd = entry->fd;
        access = entry->access;
    }
    // What the pages allow must have been granted to the file handle; this library's files never
    // ask for execute access.
    if ((meaning.read && !(access & GENERIC_READ)) || (meaning.write && !(access & GENERIC_WRITE)) ||
        meaning.execute)
        return nullptr;
    struct stat info {};
    if (fstat(fd, &info) != 0)
        return nullptr;
    uint64_t size = (static_cast<uint64_t>(size_high) << 32) | size_low;
    auto file_size = static_cast<uint64_t>(info.st_size);
    if (size == 0)
        size = file_size;
    // An empty file cannot be mapped, and only a writable mapping may grow its file.
    if (size == 0)
        return nullptr;
    if (size > file_size && (!meaning.write || ftruncate(fd, static_cast<off_t>(size)) != 0))
        return nullptr;
    int copy = fcntl(fd, F_DUPFD_CLOEXEC, 0);
    if (copy < 0)
        return nullptr;
    Entry entry{};
    entry.kind = Kind::mapping;
    entry.fd = copy;
    entry.access = access;
    entry.protection = protection;
    entry.size = size;
    HANDLE handle;
    {
        Locked locked;
        handle = add_entry(entry);
    }
    if (handle == nullptr)
        ::close(copy);
    return handle;
}

void* MapViewOfFile(HANDLE mapping, uint32_t access, uint32_t offset_high, uint32_t offset_low, size_t size) {
    int fd;
    uint64_t mapped;
    Protection meaning;
    {
        Locked locked;
        Entry* entry = find(mapping, Kind::mapping);
        if (entry == nullptr)
            return nullptr;
        fd = entry->fd;
        mapped = entry->size;
        meaning = protection_meaning(entry->protection);
    }
    bool wants_write = access & FILE_MAP_WRITE;
    bool wants_read = (access & (FILE_MAP_READ | FILE_MAP_WRITE | FILE_MAP_COPY)) != 0;
    bool wants_execute = access & FILE_MAP_EXECUTE;
    if (access == 0 || (wants_write && !meaning.write) || (wants_read && !meaning.read) ||
        (wants_execute && !meaning.execute))
        return nullptr;
    uint64_t offset = (static_cast<uint64_t>(offset_high) << 32) | offset_low;
    if (offset % ALLOCATION_GRANULARITY != 0 || offset >= mapped)
        return nullptr;
    if (size == 0)
        size = static_cast<size_t>(mapped - offset);
    if (size > mapped - offset)
        return nullptr;
    int prot =
        (wants_read ? PROT_READ : 0) | (wants_write ? PROT_WRITE : 0) | (wants_execute ? PROT_EXEC : 0);
    int flags = (access & FILE_MAP_COPY) && !wants_write ? MAP_PRIVATE : MAP_SHARED;
    if (access & FILE_MAP_COPY)
        prot |= PROT_WRITE;
    void* base = mmap(nullptr, size, prot, flags, fd, static_cast<off_t>(offset));
    if (base == MAP_FAILED)
        return nullptr;
    Locked locked;
    void* block = HeapReAlloc(GetProcessHeap(), 0, g_views, (g_view_count + 1) * sizeof(View));
    if (block == nullptr) {
        munmap(base, size);
        return nullptr;
    }
    g_views = static_cast<View*>(block);
    g_views[g_view_count++] = View{base, size};
    return base;
}

bool UnmapViewOfFile(const void* view) {
    Locked locked;
    for (uint32_t i = 0; i < g_view_count; ++i) {
        if (g_views[i].base == view) {
            munmap(g_views[i].base, g_views[i].length);
            g_views[i] = g_views[--g_view_count];
            return true;
        }
    }
    return false;
}

bool FlushViewOfFile(const void* base, size_t size) {
    auto address = reinterpret_cast<uintptr_t>(base);
    uintptr_t start = 0;
    uintptr_t end = 0;
    {
        Locked locked;
        for (uint32_t i = 0; i < g_view_count; ++i) {
            auto view = reinterpret_cast<uintptr_t>(g_views[i].base);
            if (address >= view && address < view + g_views[i].length) {
                start = view;
                end = view + g_views[i].length;
                break;
            }
        }
    }
    if (end == 0 || (size != 0 && size > end - address))
        return false;
    uintptr_t last = size == 0 ? end : address + size;
    auto page = static_cast<uintptr_t>(sysconf(_SC_PAGESIZE));
    uintptr_t first = address - (address - start) % page;
    return msync(reinterpret_cast<void*>(first), last - first, MS_SYNC) == 0;
}

} // namespace mox::os
