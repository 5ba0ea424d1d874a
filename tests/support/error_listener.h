// Listens to the library's error channels through its own hooks on the global entry, and takes them
// away again at the end of the scope.
#pragma once

#include <mox/core.h>

#include <cstdint>
#include <string>
#include <vector>

namespace mox_test {

class ErrorListener {
public:
    ErrorListener();
    ~ErrorListener();
    ErrorListener(const ErrorListener&) = delete;
    ErrorListener& operator=(const ErrorListener&) = delete;

    const std::vector<std::string>& hints() const { return hints_; }
    const std::vector<std::string>& warnings() const { return warnings_; }
    const std::vector<uintptr_t>& fatals() const { return fatals_; }
    // The error entries the hooks were called with, in order, across all channels.
    const std::vector<mox_error*>& told() const { return told_; }
    bool silent() const { return hints_.empty() && warnings_.empty() && fatals_.empty(); }
    void clear();

    // The hooks themselves, for tests that set them on entries of their own.
    static mox_bool on_hint(mox_error* self, uintptr_t word);
    static mox_bool on_warning(mox_error* self, uintptr_t word);
    static mox_bool on_fatal(mox_error* self, uintptr_t value);

private:
    std::vector<std::string> hints_;
    std::vector<std::string> warnings_;
    std::vector<uintptr_t> fatals_;
    std::vector<mox_error*> told_;
};

} // namespace mox_test
