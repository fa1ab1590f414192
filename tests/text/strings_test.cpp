// String bridge and helpers: wxStoC ownership, path joining, escaping and its
// inverse, the copyright sign and the month bridge.
#include <wxsupport/text/strings.h>

#include "assert_capture.h"

#include <gtest/gtest.h>

#include <climits>
#include <vector>

namespace {

wxString U8(const char* utf8) {
    return wxString::FromUTF8(utf8);
}

// Each copy owns its text (double frees and leaks show in the sanitizer build);
// a text without a UTF-8 form gives null, and so do its copies.
TEST(StoC, CopiesAndAssignmentsOwnTheirText) {
    const char* bytes = "\xC3\xA4 \xE2\x82\xAC \xF0\x9F\x98\x80";
    wxStoC a(U8(bytes)), b(a), c(wxString(wxT("other"))), empty(wxString{});
    c = a;
    EXPECT_STREQ("", empty.cstr());
    for (wxStoC* s : {&a, &b, &c})
        EXPECT_STREQ(bytes, s->cstr());
    wxStoC& alias = a;
    a = alias;
    std::vector<wxStoC> many(5, a);
    many.erase(many.begin());
    for (auto& s : many)
        EXPECT_STREQ(bytes, s.cstr());

    wxString bad(wxT("ok"));
    bad += static_cast<wchar_t>(0x110000); // beyond U+10FFFF: no UTF-8 form, quietly
    wxStoC n(bad), copy(n);
    c = n;
    EXPECT_EQ(n.cstr(), nullptr);
    EXPECT_EQ(copy.cstr(), nullptr);
    EXPECT_EQ(c.cstr(), nullptr);
    c = a;
    EXPECT_STREQ(bytes, c.cstr());
}

TEST(ConcatPath, JoinsWithOneBackslash) {
    EXPECT_EQ(wxT("dir\\name"), wx_concat_path(wxT("dir"), wxT("name")));
    EXPECT_EQ(wxT("dir\\name"), wx_concat_path(wxT("dir\\"), wxT("name")));
    EXPECT_EQ(wxT("name"), wx_concat_path(wxT(""), wxT("name")));
    EXPECT_EQ(wxT("dir\\"), wx_concat_path(wxT("dir"), wxT("")));
    EXPECT_EQ(wxT(""), wx_concat_path(wxT(""), wxT("")));
    EXPECT_EQ(wxT("dir/\\name"), wx_concat_path(wxT("dir/"), wxT("name")));
    EXPECT_EQ(wxT("dir\\\\name"), wx_concat_path(wxT("dir"), wxT("\\name")));
}

TEST(Escape, EscapeUnescapeAndRoundTrip) {
    const struct {
        const char *plain, *list, *escaped;
    } cases[] = {{"a\\b;c", ";=", "a\\\\b\\;c"}, {"k=v;w=x", ";=", "k\\=v\\;w\\=x"},
                 {"a\\b;c", "", "a\\\\b;c"},     {"", ";=", ""},
                 {"\\", "\\", "\\\\\\\\"}, // the escape character listed: doubled twice
                 {"\\n;", ";", "\\\\n\\;"}};
    for (const auto& c : cases) {
        EXPECT_EQ(U8(c.escaped), wx_escape_string(U8(c.plain), L'\\', U8(c.list))) << c.plain;
        EXPECT_EQ(U8(c.plain), wx_unescape_string(U8(c.escaped), L'\\', U8(c.list))) << c.escaped;
    }
    // A character listed twice gets two escape characters; other escapes work.
    EXPECT_EQ(wxT("\\\\;"), wx_escape_string(wxT(";"), L'\\', wxT(";;")));
    EXPECT_EQ(U8("%%\xC3\xA4%\xE2\x82\xAC"),
              wx_escape_string(U8("%\xC3\xA4\xE2\x82\xAC"), L'%', U8("\xE2\x82\xAC")));
    // 2n+1 escapes give n+1; pairs collapse before listed characters are read.
    EXPECT_EQ(wxT("\\\\x"), wx_unescape_string(wxT("\\\\\\x"), L'\\', wxT("")));
    EXPECT_EQ(wxT("\\n;"), wx_unescape_string(wxT("\\n\\;"), L'\\', wxT(";")));
    EXPECT_EQ(wxT(";"), wx_unescape_string(wxT("\\\\;"), L'\\', wxT(";")));
    const wxString list = wxT(";=[]\\");
    for (const char* t : {"", "plain", "a=b;c", "\\", "\\\\;", "[sec]\\", "x\\=y",
                          ";;;===", "\\n\\t", "\xC3\xB6=\\"}) {
        for (const wxString& l : {list, list.Left(4)}) {
            const wxString esc = wx_escape_string(U8(t), L'\\', l);
            EXPECT_EQ(U8(t), wx_unescape_string(esc, L'\\', l)) << t << " -> " << esc;
        }
    }
}

TEST(Copyright, ReplacesEveryUpperCaseMark) {
    const wxString sign = U8("\xC2\xA9");
    EXPECT_EQ(sign + wxT(" A, (c) ( C ) (") + sign + wxT(")") + sign,
              wx_replace_copyright(wxT("(C) A, (c) ( C ) ((C))(C)")));
}

TEST(MonthNumber, OneBasedAndOutOfRangeRefused) {
    for (int m = 1; m <= 12; ++m) {
        wxDateTime d(15, wxDateTime::Jan, 2023, 12, 0, 0);
        wx_set_month_number(d, m);
        EXPECT_EQ(static_cast<wxDateTime::Month>(m - 1), d.GetMonth());
        EXPECT_EQ(m, wx_get_month_number(d));
        EXPECT_EQ(d.GetDay(), 15);
        EXPECT_EQ(d.GetYear(), 2023);
    }
    for (int bad : {0, 13, -1, INT_MIN, INT_MAX}) {
        AssertCapture capture;
        wxDateTime d(15, wxDateTime::Jun, 2023, 12, 0, 0);
        wx_set_month_number(d, bad);
        EXPECT_GE(capture.count(), 1u) << bad;
    }
}

TEST(ValidateDate, CalendarRules) {
    const int lengths[12] = {31, 28, 31, 30, 31, 30, 31, 31, 30, 31, 30, 31};
    for (int year : {1999, 2023, 2100}) {
        for (int m = 0; m < 12; ++m) {
            const auto month = static_cast<wxDateTime::Month>(m);
            EXPECT_TRUE(pd_validate_wx_date(year, month, lengths[m])) << year << " " << m;
            EXPECT_FALSE(pd_validate_wx_date(year, month, lengths[m] + 1)) << year << " " << m;
            EXPECT_FALSE(pd_validate_wx_date(year, month, 0)) << year << " " << m;
        }
    }
    for (int year : {2024, 2000, 0, -4})
        EXPECT_TRUE(pd_validate_wx_date(year, wxDateTime::Feb, 29)) << year;
    EXPECT_FALSE(pd_validate_wx_date(1900, wxDateTime::Feb, 29));
    EXPECT_FALSE(pd_validate_wx_date(2023, wxDateTime::Mar, INT_MIN));
    EXPECT_FALSE(pd_validate_wx_date(2023, wxDateTime::Mar, INT_MAX));
    EXPECT_FALSE(pd_validate_wx_date(wxDateTime::Inv_Year, wxDateTime::Mar, 1));
    EXPECT_FALSE(pd_validate_wx_date(2023, wxDateTime::Inv_Month, 1));
    EXPECT_FALSE(pd_validate_wx_date(2023, static_cast<wxDateTime::Month>(-1), 1));
    EXPECT_TRUE(pd_validate_wx_date(-32767, wxDateTime::Jan, 1));
}

} // namespace
