// Fuzz target: the date and time text forms of jmsDateTime and the escaping
// helpers.
//
// Dates and times: ParseDate/ParseTime must match the scanf reading they
// promise (numbers stored as read, then the range checks), keep every checked
// field in range, and read back what FormatDate/FormatTime print.
// Escaping: with the same escape character and a list without repeats,
// wx_unescape_string(wx_escape_string(text)) gives the text back.
#include <wxsupport/text/jmsdatetime.h>
#include <wxsupport/text/strings.h>

#include <fuzzer/FuzzedDataProvider.h>
#include <wx/init.h>

#include <clocale>
#include <cstdio>
#include <cstdlib>
#include <string>

namespace {

[[noreturn]] void Fail(const char* what, const std::string& input) {
    fprintf(stderr, "fuzz_text: %s (input \"%s\")\n", what, input.c_str());
    abort();
}

void Check(bool ok, const char* what, const std::string& input) {
    if (!ok)
        Fail(what, input);
}

struct Fields {
    int year, month, day, hour, minute;
};

Fields Read(jmsDateTime& d) {
    return {d.GetYear(), d.GetMonth(), d.GetDay(), d.GetHour(), d.GetMinute()};
}

bool operator==(const Fields& a, const Fields& b) {
    return a.year == b.year && a.month == b.month && a.day == b.day && a.hour == b.hour &&
           a.minute == b.minute;
}

// The exact scanf reading is the oracle only for plain ASCII without NUL and
// without a digit run long enough to overflow an int (that case is the
// library's own choice).
bool OracleApplies(const std::string& text) {
    int run = 0;
    for (unsigned char c : text) {
        if (c == 0 || c >= 0x80)
            return false;
        run = (c >= '0' && c <= '9') ? run + 1 : 0;
        if (run >= 10)
            return false;
    }
    return true;
}

jmsDateTime Start(const Fields& f) {
    jmsDateTime d;
    d.SetDate(f.year, f.month, f.day);
    d.SetTime(f.hour, f.minute);
    return d;
}

void FuzzDate(const std::string& text, const Fields& start) {
    jmsDateTime d = Start(start);
    const bool ok = d.ParseDate(wxString::From8BitData(text.data(), text.size()));
    const Fields got = Read(d);
    Check(got.hour == start.hour && got.minute == start.minute, "ParseDate changed the time", text);
    if (OracleApplies(text)) {
        Fields want = start;
        const int n = sscanf(text.c_str(), "%d-%d-%d", &want.year, &want.month, &want.day);
        bool wantOk = false;
        if (n == 3) {
            wantOk = true;
            if (want.month < 1 || want.month > 12) {
                want.month = 1;
                wantOk = false;
            }
            if (want.day < 1 || want.day > 31) {
                want.day = 1;
                wantOk = false;
            }
        }
        Check(ok == wantOk, "ParseDate result differs from the scanf reading", text);
        Check(got == want, "ParseDate fields differ from the scanf reading", text);
    }
    if (ok) {
        Check(got.month >= 1 && got.month <= 12 && got.day >= 1 && got.day <= 31,
              "ParseDate gave true with a field out of range", text);
        const wxString printed = d.FormatDate();
        jmsDateTime back = Start({1900, 1, 1, 0, 0});
        Check(back.ParseDate(printed), "FormatDate text does not parse", text);
        Check(Read(back).year == got.year && Read(back).month == got.month &&
                  Read(back).day == got.day,
              "FormatDate text reads back differently", text);
    }
}

void FuzzTime(const std::string& text, const Fields& start) {
    jmsDateTime d = Start(start);
    const bool ok = d.ParseTime(wxString::From8BitData(text.data(), text.size()));
    const Fields got = Read(d);
    Check(got.year == start.year && got.month == start.month && got.day == start.day,
          "ParseTime changed the date", text);
    if (OracleApplies(text)) {
        Fields want = start;
        const int n = sscanf(text.c_str(), "%d:%d", &want.hour, &want.minute);
        bool wantOk = false;
        if (n == 2) {
            wantOk = true;
            const int hourIn = want.hour;
            const int minuteIn = want.minute;
            if (want.hour < 0 || want.hour > 24) {
                want.hour = 0;
                wantOk = false;
            }
            if (want.minute < 0 || want.minute > 59) {
                want.minute = 0;
                wantOk = false;
            }
            if (hourIn >= 24 && minuteIn > 0) {
                want.minute = 0;
                wantOk = false;
            }
        }
        Check(ok == wantOk, "ParseTime result differs from the scanf reading", text);
        Check(got == want, "ParseTime fields differ from the scanf reading", text);
    }
    if (ok) {
        Check(got.hour >= 0 && got.hour <= 24 && got.minute >= 0 && got.minute <= 59 &&
                  (got.hour < 24 || got.minute == 0),
              "ParseTime gave true with a field out of range", text);
        jmsDateTime back = Start({1900, 1, 1, 0, 0});
        Check(back.ParseTime(d.FormatTime()), "FormatTime text does not parse", text);
        Check(Read(back).hour == got.hour && Read(back).minute == got.minute,
              "FormatTime text reads back differently", text);
    }
}

// Characters for the escaping check: mostly a small alphabet, so that escape
// characters, listed characters and their neighbours meet often.
wchar_t NextChar(FuzzedDataProvider& in) {
    static const wchar_t alphabet[] = {L'\\', L';', L'=', L'a', L'%', 0xE9, 0x20AC, L'\0'};
    const unsigned char b = in.ConsumeIntegral<unsigned char>();
    if (b < 0xF0)
        return alphabet[b % (sizeof alphabet / sizeof alphabet[0])];
    wchar_t c = static_cast<wchar_t>(in.ConsumeIntegralInRange<unsigned>(1, 0x10FFFF));
    if (c >= 0xD800 && c <= 0xDFFF)
        c = L'?';
    return c;
}

wxString NextText(FuzzedDataProvider& in, size_t maxLen) {
    wxString s;
    const size_t n = in.ConsumeIntegralInRange<size_t>(0, maxLen);
    for (size_t i = 0; i < n && in.remaining_bytes() > 0; ++i)
        s += wxUniChar(static_cast<wxUint32>(NextChar(in)));
    return s;
}

std::string Show(const wxString& s) {
    std::string out;
    for (wxUniChar c : s) {
        char buf[16];
        snprintf(buf, sizeof buf, c.GetValue() < 0x80 && c.GetValue() >= 0x20 ? "%c" : "<%x>",
                 static_cast<unsigned>(c.GetValue()));
        out += buf;
    }
    return out;
}

void FuzzEscape(FuzzedDataProvider& in) {
    wchar_t escape = NextChar(in);
    if (escape == 0)
        escape = L'\\';
    wxString list;
    for (wxUniChar c : NextText(in, 6))
        if (list.Find(c) == wxNOT_FOUND && c.GetValue() != 0)
            list += c;
    const wxString text = NextText(in, 64);

    const wxString escaped = wx_escape_string(text, escape, list);
    const wxString back = wx_unescape_string(escaped, escape, list);
    if (back != text) {
        const std::string what = "escape/unescape round trip: text " + Show(text) + " escape " +
                                 Show(wxString(escape)) + " list " + Show(list) + " escaped " +
                                 Show(escaped) + " back " + Show(back);
        Fail(what.c_str(), "");
    }

    const wxString copyright = wx_replace_copyright(text);
    Check(copyright.Find("(C)") == wxNOT_FOUND, "wx_replace_copyright left a (C)", "");
    wx_concat_path(text, list);
}

} // namespace

extern "C" int LLVMFuzzerInitialize(int*, char***) {
    setlocale(LC_ALL, "C");
    static wxInitializer init;
    return init.IsOk() ? 0 : 1;
}

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
    FuzzedDataProvider in(data, size);
    const int mode = in.ConsumeIntegralInRange<int>(0, 2);
    if (mode == 2) {
        FuzzEscape(in);
        return 0;
    }
    const Fields start{in.ConsumeIntegralInRange<int>(-3000, 3000),
                       in.ConsumeIntegralInRange<int>(1, 12), in.ConsumeIntegralInRange<int>(1, 31),
                       in.ConsumeIntegralInRange<int>(0, 23),
                       in.ConsumeIntegralInRange<int>(0, 59)};
    const std::string text = in.ConsumeRemainingBytesAsString();
    if (mode == 0)
        FuzzDate(text, start);
    else
        FuzzTime(text, start);
    return 0;
}
