// String bridge and helpers: wxStoC ownership, path joining, escaping and its
// inverse, the copyright sign and the month bridge.
#include <wxsupport/text/strings.h>

#include "assert_capture.h"

#include <gtest/gtest.h>

#include <cstring>
#include <utility>
#include <vector>

namespace {

wxString U8(const char* utf8) {
    return wxString::FromUTF8(utf8);
}

TEST(StoC, HoldsUtf8WhateverTheText) {
    wxStoC ascii(wxString(wxT("plain")));
    EXPECT_STREQ("plain", ascii.cstr());

    wxStoC empty(wxString{});
    ASSERT_NE(nullptr, empty.cstr());
    EXPECT_STREQ("", empty.cstr());

    // Umlaut, euro sign and a character outside the BMP.
    const char* bytes = "\xC3\xA4 \xE2\x82\xAC \xF0\x9F\x98\x80";
    wxStoC wide(U8(bytes));
    EXPECT_STREQ(bytes, wide.cstr());
}

TEST(StoC, CopiesHoldTheirOwnText) {
    wxStoC a(wxString(wxT("first")));
    wxStoC b(a);
    EXPECT_STREQ("first", b.cstr());
    EXPECT_NE(a.cstr(), b.cstr());

    wxStoC c(wxString(wxT("other")));
    c = a;
    EXPECT_STREQ("first", c.cstr());
    EXPECT_NE(a.cstr(), c.cstr());

    // The source lives on after its copies change or go.
    {
        wxStoC d(a);
        d = wxStoC(wxString(wxT("changed")));
        EXPECT_STREQ("changed", d.cstr());
    }
    EXPECT_STREQ("first", a.cstr());

    // Self-assignment keeps the text.
    wxStoC& alias = a;
    a = alias;
    EXPECT_STREQ("first", a.cstr());

    // Many copies in a container: each released once (checked by the
    // sanitizer build).
    std::vector<wxStoC> many(5, a);
    many.push_back(c);
    many.erase(many.begin());
    for (auto& s : many)
        EXPECT_STREQ("first", s.cstr());
}

TEST(StoC, TextWithoutUtf8FormGivesNull) {
    // A code point beyond U+10FFFF has no UTF-8 form; wxWidgets' converter
    // asserts on it.
    wxString bad(wxT("ok"));
    bad += static_cast<wchar_t>(0x110000);
    AssertCapture capture;
    wxStoC s(bad);
    EXPECT_EQ(nullptr, s.cstr());
    EXPECT_GE(capture.count(), 1u);

    wxStoC copy(s);
    EXPECT_EQ(nullptr, copy.cstr());
    wxStoC target(wxString(wxT("x")));
    target = s;
    EXPECT_EQ(nullptr, target.cstr());
    target = wxStoC(wxString(wxT("y")));
    EXPECT_STREQ("y", target.cstr());
}

TEST(ConcatPath, JoinsWithOneBackslash) {
    EXPECT_EQ(wxT("dir\\name"), wx_concat_path(wxT("dir"), wxT("name")));
    EXPECT_EQ(wxT("dir\\name"), wx_concat_path(wxT("dir\\"), wxT("name")));
    EXPECT_EQ(wxT("name"), wx_concat_path(wxT(""), wxT("name")));
    EXPECT_EQ(wxT("dir\\"), wx_concat_path(wxT("dir"), wxT("")));
    EXPECT_EQ(wxT("dir\\"), wx_concat_path(wxT("dir\\"), wxT("")));
    EXPECT_EQ(wxT(""), wx_concat_path(wxT(""), wxT("")));
    // A slash is no separator, and the name's side is never looked at.
    EXPECT_EQ(wxT("dir/\\name"), wx_concat_path(wxT("dir/"), wxT("name")));
    EXPECT_EQ(wxT("dir\\\\name"), wx_concat_path(wxT("dir"), wxT("\\name")));
    EXPECT_EQ(wxT("c:\\\\x"), wx_concat_path(wxT("c:\\\\"), wxT("x")));
}

TEST(Escape, DoublesEscapeThenEscapesListInOrder) {
    EXPECT_EQ(wxT("a\\\\b\\;c"), wx_escape_string(wxT("a\\b;c"), wxT('\\'), wxT(";=")));
    EXPECT_EQ(wxT("k\\=v\\;w\\=x"), wx_escape_string(wxT("k=v;w=x"), wxT('\\'), wxT(";=")));
    EXPECT_EQ(wxT("a\\\\b;c"), wx_escape_string(wxT("a\\b;c"), wxT('\\'), wxT("")));
    EXPECT_EQ(wxT(""), wx_escape_string(wxT(""), wxT('\\'), wxT(";=")));
    // Escape character in the list: doubled twice.
    EXPECT_EQ(wxT("\\\\\\\\"), wx_escape_string(wxT("\\"), wxT('\\'), wxT("\\")));
    // A character listed twice ends up behind two escape characters.
    EXPECT_EQ(wxT("\\\\;"), wx_escape_string(wxT(";"), wxT('\\'), wxT(";;")));
    // Non-backslash escape and non-ASCII characters.
    EXPECT_EQ(U8("%%\xC3\xA4%\xE2\x82\xAC"),
              wx_escape_string(U8("%\xC3\xA4\xE2\x82\xAC"), L'%', U8("\xE2\x82\xAC")));
}

TEST(Unescape, CollapsesPairsThenListedCharacters) {
    EXPECT_EQ(wxT("a\\b;c"), wx_unescape_string(wxT("a\\\\b\\;c"), wxT('\\'), wxT(";=")));
    // 2n+1 escape characters become n+1.
    EXPECT_EQ(wxT("\\\\x"), wx_unescape_string(wxT("\\\\\\x"), wxT('\\'), wxT("")));
    EXPECT_EQ(wxT("\\\\\\"), wx_unescape_string(wxT("\\\\\\\\\\"), wxT('\\'), wxT("")));
    // A lone escape before an unlisted character stays.
    EXPECT_EQ(wxT("\\n;"), wx_unescape_string(wxT("\\n\\;"), wxT('\\'), wxT(";")));
    EXPECT_EQ(wxT(""), wx_unescape_string(wxT(""), wxT('\\'), wxT(";")));
    EXPECT_EQ(wxT("\\"), wx_unescape_string(wxT("\\\\\\\\"), wxT('\\'), wxT("\\")));
    // Phases run in the same order as escaping: "\\;" collapses to "\;" and
    // then to ";".
    EXPECT_EQ(wxT(";"), wx_unescape_string(wxT("\\\\;"), wxT('\\'), wxT(";")));
}

TEST(Escape, RoundTrips) {
    const wxString list = wxT(";=[]");
    const wxString texts[] = {wxT(""),       wxT("plain"),     wxT("a=b;c"), wxT("\\"),
                              wxT("\\\\;"),  wxT("[sec]\\"),   wxT("x\\=y"), wxT(";;;==="),
                              wxT("\\n\\t"), U8("\xC3\xB6=\\")};
    for (const wxString& t : texts) {
        const wxString esc = wx_escape_string(t, wxT('\\'), list);
        EXPECT_EQ(t, wx_unescape_string(esc, wxT('\\'), list)) << t << " -> " << esc;
    }
    // The one case that doesn't come back: a doubly listed character that
    // had an escape character in front of it.
    const wxString dup = wx_escape_string(wxT("\\;"), wxT('\\'), wxT(";;"));
    EXPECT_EQ(wxT(";"), wx_unescape_string(dup, wxT('\\'), wxT(";;")));
}

TEST(Copyright, ReplacesEveryUpperCaseMark) {
    const wxString sign = U8("\xC2\xA9");
    EXPECT_EQ(sign + wxT(" 2024 A, ") + sign + wxT(" B"),
              wx_replace_copyright(wxT("(C) 2024 A, (C) B")));
    EXPECT_EQ(wxT("(c) 2024"), wx_replace_copyright(wxT("(c) 2024")));
    EXPECT_EQ(wxT("no mark ( C )"), wx_replace_copyright(wxT("no mark ( C )")));
    EXPECT_EQ(wxT("(") + sign + wxT(")"), wx_replace_copyright(wxT("((C))")));
    EXPECT_EQ(wxT(""), wx_replace_copyright(wxT("")));
    EXPECT_EQ(sign + sign, wx_replace_copyright(wxT("(C)(C)")));
}

TEST(MonthNumber, GetAndSetAreOneBased) {
    wxDateTime d(15, wxDateTime::Jun, 2023, 12, 0, 0);
    EXPECT_EQ(6, wx_get_month_number(d));
    wx_set_month_number(d, 1);
    EXPECT_EQ(wxDateTime::Jan, d.GetMonth());
    EXPECT_EQ(1, wx_get_month_number(d));
    wx_set_month_number(d, 12);
    EXPECT_EQ(wxDateTime::Dec, d.GetMonth());
    EXPECT_EQ(12, wx_get_month_number(d));
    EXPECT_EQ(15, d.GetDay());
    EXPECT_EQ(2023, d.GetYear());
    for (int m = 1; m <= 12; ++m) {
        wxDateTime x(1, wxDateTime::Jan, 2020, 12, 0, 0);
        wx_set_month_number(x, m);
        EXPECT_EQ(m, wx_get_month_number(x));
    }
}

TEST(MonthNumber, OutOfRangeIsRejectedByWxDateTime) {
    for (int bad : {0, 13, -1, INT_MIN, INT_MAX}) {
        AssertCapture capture;
        wxDateTime d(15, wxDateTime::Jun, 2023, 12, 0, 0);
        wx_set_month_number(d, bad);
        EXPECT_GE(capture.count(), 1u) << bad;
    }
}

TEST(ValidateDate, CalendarRules) {
    EXPECT_TRUE(pd_validate_wx_date(2024, wxDateTime::Feb, 29));
    EXPECT_FALSE(pd_validate_wx_date(2023, wxDateTime::Feb, 29));
    EXPECT_TRUE(pd_validate_wx_date(2000, wxDateTime::Feb, 29));
    EXPECT_FALSE(pd_validate_wx_date(1900, wxDateTime::Feb, 29));
    EXPECT_FALSE(pd_validate_wx_date(2023, wxDateTime::Mar, 0));
    EXPECT_FALSE(pd_validate_wx_date(2023, wxDateTime::Mar, -5));
    EXPECT_FALSE(pd_validate_wx_date(2023, wxDateTime::Mar, INT_MIN));
    EXPECT_FALSE(pd_validate_wx_date(2023, wxDateTime::Mar, INT_MAX));
    EXPECT_FALSE(pd_validate_wx_date(wxDateTime::Inv_Year, wxDateTime::Mar, 1));
    EXPECT_FALSE(pd_validate_wx_date(2023, wxDateTime::Inv_Month, 1));
    EXPECT_FALSE(pd_validate_wx_date(2023, static_cast<wxDateTime::Month>(-1), 1));
    // Years far from today are ordinary Gregorian years.
    EXPECT_TRUE(pd_validate_wx_date(1, wxDateTime::Jan, 1));
    EXPECT_TRUE(pd_validate_wx_date(0, wxDateTime::Feb, 29));
    EXPECT_TRUE(pd_validate_wx_date(-4, wxDateTime::Feb, 29));
    EXPECT_TRUE(pd_validate_wx_date(-32767, wxDateTime::Jan, 1));
}

TEST(ValidateDate, AgreesWithDayCounts) {
    const int lengths[12] = {31, 28, 31, 30, 31, 30, 31, 31, 30, 31, 30, 31};
    for (int year : {1999, 2023, 2100}) {
        for (int m = 0; m < 12; ++m) {
            const auto month = static_cast<wxDateTime::Month>(m);
            EXPECT_TRUE(pd_validate_wx_date(year, month, lengths[m]));
            EXPECT_FALSE(pd_validate_wx_date(year, month, lengths[m] + 1));
        }
    }
}

} // namespace
