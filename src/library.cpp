// Load-time set-up of libwxsupport. The library keeps one piece of state: the
// moment at which it was loaded, from which the about dialog counts its
// uptime. It is this library's only static initialisation; there is nothing
// to tear down.
#include <wxsupport/dialogs/aboutdlg.h>

#include <wx/datetime.h>

#if defined(_WIN32)
#include <windows.h>
#endif

wxDateTime AboutDlg::start_time = wxDateTime::Now();

#if defined(_WIN32)
// The library has no per-thread work, so it asks not to be told of thread
// starts and ends.
BOOL WINAPI DllMain(HINSTANCE instance, DWORD reason, LPVOID) {
    if (reason == DLL_PROCESS_ATTACH)
        DisableThreadLibraryCalls(instance);
    return TRUE;
}
#endif
