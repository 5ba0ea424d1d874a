#include "support/error_listener.h"

namespace mox_test {

namespace {

ErrorListener* g_active = nullptr;

} // namespace

ErrorListener::ErrorListener() {
    g_active = this;
    mox_global_error_set_on_hint(&ErrorListener::on_hint);
    mox_global_error_set_on_warning(&ErrorListener::on_warning);
    mox_global_error_set_on_fatal(&ErrorListener::on_fatal);
}

ErrorListener::~ErrorListener() {
    mox_global_error_set_on_hint(nullptr);
    mox_global_error_set_on_warning(nullptr);
    mox_global_error_set_on_fatal(nullptr);
    g_active = nullptr;
}

void ErrorListener::clear() {
    hints_.clear();
    warnings_.clear();
    fatals_.clear();
    told_.clear();
}

mox_bool ErrorListener::on_hint(mox_error* self, uintptr_t word) {
    if (g_active != nullptr) {
        g_active->hints_.emplace_back(reinterpret_cast<const char*>(word));
        g_active->told_.push_back(self);
    }
    return 1;
}

mox_bool ErrorListener::on_warning(mox_error* self, uintptr_t word) {
    if (g_active != nullptr) {
        g_active->warnings_.emplace_back(reinterpret_cast<const char*>(word));
        g_active->told_.push_back(self);
    }
    return 1;
}

mox_bool ErrorListener::on_fatal(mox_error* self, uintptr_t value) {
    if (g_active != nullptr) {
        g_active->fatals_.push_back(value);
        g_active->told_.push_back(self);
    }
    return 1;
}

} // namespace mox_test
