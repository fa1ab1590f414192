// The console on Windows (run under Wine here): a process started without a
// console, as a GUI host is, gets one from pd_console_create, and its standard
// streams write to and read from it (platform_console_child does the work and
// reports; this test starts it and reads the report).
#include <gtest/gtest.h>

#include <windows.h>

#include <cstdio>
#include <fstream>
#include <sstream>
#include <string>

namespace {

std::wstring BesideThisProgram(const wchar_t* name) {
    wchar_t path[MAX_PATH];
    const DWORD n = GetModuleFileNameW(nullptr, path, MAX_PATH);
    std::wstring p(path, n);
    return p.substr(0, p.find_last_of(L"\\/") + 1) + name;
}

std::string Narrow(const std::wstring& w) {
    const int n = WideCharToMultiByte(CP_ACP, 0, w.c_str(), -1, nullptr, 0, nullptr, nullptr);
    std::string s(static_cast<size_t>(n > 0 ? n : 1), '\0');
    WideCharToMultiByte(CP_ACP, 0, w.c_str(), -1, &s[0], n, nullptr, nullptr);
    s.resize(s.size() - 1);
    return s;
}

// Runs the child detached from any console; its exit code, or -1.
int RunDetached(const std::wstring& program, const std::wstring& report) {
    std::wstring command = L"\"" + program + L"\" \"" + report + L"\"";
    STARTUPINFOW si = {};
    si.cb = sizeof si;
    PROCESS_INFORMATION pi = {};
    if (!CreateProcessW(program.c_str(), &command[0], nullptr, nullptr, FALSE, DETACHED_PROCESS,
                        nullptr, nullptr, &si, &pi))
        return -1;
    DWORD code = static_cast<DWORD>(-1);
    if (WaitForSingleObject(pi.hProcess, 60000) == WAIT_OBJECT_0)
        GetExitCodeProcess(pi.hProcess, &code);
    else
        TerminateProcess(pi.hProcess, 99);
    CloseHandle(pi.hThread);
    CloseHandle(pi.hProcess);
    return static_cast<int>(code);
}

// Wine's console is a window: under Wine the test needs an X display.
bool WineWithoutDisplay() {
    const HMODULE ntdll = GetModuleHandleW(L"ntdll.dll");
    const bool wine = ntdll && GetProcAddress(ntdll, "wine_get_version");
    return wine && GetEnvironmentVariableW(L"DISPLAY", nullptr, 0) == 0;
}

TEST(ConsoleWindows, StreamsAndColoursReachANewConsole) {
    ASSERT_FALSE(WineWithoutDisplay()) << "run it through scripts/with-xvfb.sh";
    wchar_t dir[MAX_PATH];
    ASSERT_NE(0u, GetTempPathW(MAX_PATH, dir));
    wchar_t report[MAX_PATH];
    ASSERT_NE(0u, GetTempFileNameW(dir, L"con", 0, report));
    const int code = RunDetached(BesideThisProgram(L"platform_console_child.exe"), report);
    std::ifstream in(Narrow(report));
    std::stringstream problems;
    problems << in.rdbuf();
    in.close();
    DeleteFileW(report);
    EXPECT_EQ("", problems.str());
    EXPECT_EQ(0, code);
}

} // namespace
