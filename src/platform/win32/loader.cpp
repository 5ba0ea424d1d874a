// The system tells the library of its loading and unloading through DllMain, once per process for
// each; threads coming and going don't concern it.
#include "platform/win32/system.h"

#include "core/lifecycle.h"

extern "C" BOOL WINAPI DllMain(HINSTANCE, DWORD reason, LPVOID) {
    switch (reason) {
    case DLL_PROCESS_ATTACH:
        mox::process_attach();
        break;
    case DLL_PROCESS_DETACH:
        mox::process_detach();
        break;
    default:
        break;
    }
    return TRUE;
}
