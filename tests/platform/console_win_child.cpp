// Started by console_win_test without a console (DETACHED_PROCESS): opens one
// with pd_console_create, writes through every standard stream, and reads the
// console's screen buffer back. Writes what went wrong, one item a line, to
// the report file named by its argument; exits with 0 when nothing did.
#include <wxsupport/console/console.h>

#include <windows.h>

#include <cstdio>
#include <iostream>
#include <string>
#include <vector>

namespace {

std::string g_problems;

void Check(bool ok, const std::string& what) {
    if (!ok)
        g_problems += what + "\n";
}

// The screen buffer's rows as text, trailing blanks dropped.
std::vector<std::wstring> ScreenRows(HANDLE out, const CONSOLE_SCREEN_BUFFER_INFO& info) {
    std::vector<std::wstring> rows;
    std::vector<wchar_t> cells(static_cast<size_t>(info.dwSize.X));
    for (SHORT y = 0; y < info.dwSize.Y && y <= info.dwCursorPosition.Y; ++y) {
        DWORD read = 0;
        const COORD at = {0, y};
        if (!ReadConsoleOutputCharacterW(out, cells.data(), static_cast<DWORD>(cells.size()), at,
                                         &read))
            break;
        std::wstring row(cells.data(), read);
        row.erase(row.find_last_not_of(L' ') + 1);
        rows.push_back(row);
    }
    return rows;
}

// Where `text` starts in the rows, or {-1, -1}.
COORD Find(const std::vector<std::wstring>& rows, const std::wstring& text) {
    for (size_t y = 0; y < rows.size(); ++y) {
        const size_t x = rows[y].find(text);
        if (x != std::wstring::npos)
            return {static_cast<SHORT>(x), static_cast<SHORT>(y)};
    }
    return {-1, -1};
}

WORD AttributeAt(HANDLE out, COORD at) {
    WORD attribute = 0xFFFF;
    DWORD read = 0;
    if (at.Y < 0 || !ReadConsoleOutputAttribute(out, &attribute, 1, at, &read) || read != 1)
        return 0xFFFF;
    return attribute;
}

// Types `text` and Enter into the console's input buffer.
void Type(const std::wstring& text) {
    HANDLE in = CreateFileW(L"CONIN$", GENERIC_READ | GENERIC_WRITE,
                            FILE_SHARE_READ | FILE_SHARE_WRITE, nullptr, OPEN_EXISTING, 0, nullptr);
    std::vector<INPUT_RECORD> records;
    for (wchar_t c : text + L"\r") {
        INPUT_RECORD r = {};
        r.EventType = KEY_EVENT;
        r.Event.KeyEvent.wRepeatCount = 1;
        r.Event.KeyEvent.uChar.UnicodeChar = c;
        r.Event.KeyEvent.wVirtualKeyCode = c == L'\r' ? VK_RETURN : 0;
        r.Event.KeyEvent.bKeyDown = TRUE;
        records.push_back(r);
        r.Event.KeyEvent.bKeyDown = FALSE;
        records.push_back(r);
    }
    DWORD written = 0;
    Check(in != INVALID_HANDLE_VALUE &&
              WriteConsoleInputW(in, records.data(), static_cast<DWORD>(records.size()), &written),
          "can't type into CONIN$");
    CloseHandle(in);
}

void Run() {
    Check(GetConsoleWindow() == nullptr && GetStdHandle(STD_OUTPUT_HANDLE) == nullptr,
          "started with a console");
    std::printf("before the console\n"); // goes nowhere
    if (pd_console_create() != 1) {
        Check(false, "pd_console_create gave no console");
        return;
    }
    // The console's own attribute, before any colour is set.
    CONSOLE_SCREEN_BUFFER_INFO first;
    Check(GetConsoleScreenBufferInfo(GetStdHandle(STD_OUTPUT_HANDLE), &first),
          "standard output isn't the console");

    // What the console shows, through stdio and iostreams, output and error.
    std::printf("printf %d\n", 1);
    std::cout << "cout " << 2 << std::endl;
    std::fprintf(stderr, "fprintf stderr %d\n", 3);
    std::cerr << "cerr " << 4 << std::endl;
    std::cout << "no newline, unbuffered";
    std::printf("\n");

    // Colours: the attribute of the text written after each call.
    pd_console_set_color(0x11, 4);
    std::cout << "RED-ON-BLUE" << std::flush;
    pd_console_set_color(0x19, 0x13);
    std::fputs("DEFAULT-ON-YELLOW", stderr);
    pd_console_set_color(9, 9);
    std::printf("\n");

    // Input: stdin and std::cin read what is typed into the console.
    Type(L"typed 5");
    char line[64] = {};
    Check(std::fgets(line, sizeof line, stdin) && std::string(line) == "typed 5\n",
          std::string("stdin read '") + line + "'");
    Type(L"6 seven");
    int number = 0;
    std::string word;
    std::cin >> number >> word;
    Check(number == 6 && word == "seven", "std::cin read " + std::to_string(number) + " " + word);

    HANDLE out =
        CreateFileW(L"CONOUT$", GENERIC_READ | GENERIC_WRITE, FILE_SHARE_READ | FILE_SHARE_WRITE,
                    nullptr, OPEN_EXISTING, 0, nullptr);
    CONSOLE_SCREEN_BUFFER_INFO info;
    if (out == INVALID_HANDLE_VALUE || !GetConsoleScreenBufferInfo(out, &info)) {
        Check(false, "no screen buffer to read");
        return;
    }
    Check(info.dwSize.Y == 500, "screen buffer of " + std::to_string(info.dwSize.Y) + " lines");
    Check(info.wAttributes == 7, "attribute after (9, 9): " + std::to_string(info.wAttributes));
    const std::vector<std::wstring> rows = ScreenRows(out, info);
    std::string screen;
    for (const std::wstring& row : rows)
        screen += std::string(row.begin(), row.end()) + "|";
    Check(Find(rows, L"before the console").Y < 0, "text from before the console shows");
    int last = -1;
    for (const wchar_t* text :
         {L"printf 1", L"cout 2", L"fprintf stderr 3", L"cerr 4", L"no newline, unbuffered"}) {
        const COORD at = Find(rows, text);
        Check(at.Y > last, std::string(text, text + wcslen(text)) + " not in order on " + screen);
        last = at.Y;
    }
    Check(AttributeAt(out, Find(rows, L"RED-ON-BLUE")) == pd_console_color_attribute(0x11, 4),
          "attribute of the red text");
    Check(AttributeAt(out, Find(rows, L"DEFAULT-ON-YELLOW")) ==
              pd_console_color_attribute(0x19, 0x13),
          "attribute of the default text");
    Check(AttributeAt(out, Find(rows, L"printf 1")) == first.wAttributes,
          "attribute before any colour");

    // A process that has its console gets no second one; the streams stay.
    Check(pd_console_create() == 0, "second pd_console_create gave 1");
    std::printf("after the second call\n");
    GetConsoleScreenBufferInfo(out, &info);
    Check(Find(ScreenRows(out, info), L"after the second call").Y > last,
          "stdout lost after the second call");
    CloseHandle(out);
}

} // namespace

int main(int argc, char** argv) {
    if (argc != 2)
        return 2;
    // Opened before the console exists, apart from the standard streams.
    FILE* report = std::fopen(argv[1], "w");
    if (!report)
        return 3;
    Run();
    std::fputs(g_problems.c_str(), report);
    std::fclose(report);
    return g_problems.empty() ? 0 : 1;
}
