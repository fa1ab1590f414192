// pdTextCtrl driven by the program: construction, the test of each kind as
// OnText runs it inside SetValue, the date and time forms, and what each typed
// setter and getter does. Real typing is in pdtextctrl_input_test.cpp.
#include "assert_capture.h"
#include "pdtextctrl_fixture.h"

#include <wx/intl.h>
#include <wx/valtext.h>

#include <climits>
#include <functional>
#include <string>
#include <type_traits>
#include <vector>

namespace {

struct TextCase {
    const char* text;
    bool valid;
};

// Pins the C library's number format to "C" for the life of the object.
class ScopedCLocale {
public:
    ScopedCLocale() : m_locale("C", "C", "C", false) {}

private:
    wxLocale m_locale;
};

// Puts each text into the control with the base's SetValue, which runs
// OnText, and checks the flag that the test leaves.
void ExpectForms(pdTextCtrl* ctrl, const std::vector<TextCase>& cases) {
    for (const TextCase& c : cases) {
        SCOPED_TRACE(std::string("text \"") + c.text + "\"");
        ctrl->SetValue(wxString::FromUTF8(c.text));
        EXPECT_EQ(ctrl->IsValid(), c.valid);
    }
}

} // namespace

static_assert(pdTEXT_PLAIN == 0 && pdTEXT_LONG == 1 && pdTEXT_DOUBLE == 2 && pdTEXT_TIME == 3 &&
                  pdTEXT_DATE == 4,
              "kind values are part of the interface");
static_assert(std::is_base_of<wxTextCtrl, pdTextCtrl>::value, "a wxTextCtrl for the host");
static_assert(std::has_virtual_destructor<pdTextCtrl>::value, "destroyed through the base");

// ---------------------------------------------------------------------------
// Construction

TEST_F(PdTextCtrlTest, StartsValidOnSystemBackgroundWhateverTheText) {
    const struct {
        pdTextCtrlType type;
        const char* value;
    } cases[] = {{pdTEXT_PLAIN, ""},        {pdTEXT_LONG, ""},      {pdTEXT_LONG, "abc"},
                 {pdTEXT_DOUBLE, "x"},      {pdTEXT_TIME, "99:99"}, {pdTEXT_DATE, "####"},
                 {pdTEXT_DATE, "2024-5-6"}, {pdTEXT_TIME, "12:30"}};
    for (const auto& c : cases) {
        SCOPED_TRACE(std::string("kind ") + std::to_string(c.type) + ", \"" + c.value + "\"");
        pdTextCtrl* ctrl = Make(c.type, c.value);
        EXPECT_TRUE(ctrl->IsValid());
        EXPECT_FALSE(ctrl->IsAltered());
        EXPECT_EQ(ctrl->GetText(), wxString(c.value));
        EXPECT_EQ(Background(ctrl), "system");
    }
    // Nothing was tested, so nothing was sent either.
    EXPECT_TRUE(m_textEvents.empty());
}

TEST_F(PdTextCtrlTest, HandsStyleValidatorIdAndNameToTheBase) {
    const long style = wxTE_RIGHT | wxTE_PROCESS_ENTER | wxBORDER_NONE;
    wxTextCtrl* plain = new wxTextCtrl(m_panel, wxID_ANY, "", wxDefaultPosition, wxDefaultSize,
                                       style, wxDefaultValidator, "plain");
    wxTextValidator digits(wxFILTER_DIGITS);
    pdTextCtrl* ctrl = new pdTextCtrl(m_panel, 4711, "12", wxPoint(5, 7), wxSize(150, -1),
                                      pdTEXT_LONG, style, digits, "amount");
    EXPECT_EQ(ctrl->GetWindowStyleFlag(), plain->GetWindowStyleFlag());
    EXPECT_EQ(ctrl->GetId(), 4711);
    EXPECT_EQ(ctrl->GetName(), "amount");
    EXPECT_EQ(ctrl->GetPosition(), wxPoint(5, 7));
    EXPECT_EQ(ctrl->GetSize().x, 150);
    EXPECT_EQ(ctrl->GetParent(), m_panel);
    auto* validator = wxDynamicCast(ctrl->GetValidator(), wxTextValidator);
    ASSERT_NE(validator, nullptr);
    EXPECT_EQ(validator->GetStyle(), long(wxFILTER_DIGITS));

    pdTextCtrl* readOnly = new pdTextCtrl(m_panel, wxID_ANY, "", wxDefaultPosition, wxDefaultSize,
                                          pdTEXT_PLAIN, wxTE_READONLY, wxDefaultValidator, "ro");
    EXPECT_FALSE(readOnly->IsEditable());
    EXPECT_TRUE(ctrl->IsEditable());
}

// ---------------------------------------------------------------------------
// The valid flag and the background

TEST_F(PdTextCtrlTest, BackgroundChangesOnlyWhenTheFlagChanges) {
    pdTextCtrl* ctrl = Make(pdTEXT_LONG, "1");
    ctrl->SetValue("2");
    EXPECT_TRUE(ctrl->IsValid());
    EXPECT_EQ(Background(ctrl), "system") << "a passing test on a valid control sets nothing";
    ctrl->SetValue("x");
    EXPECT_FALSE(ctrl->IsValid());
    EXPECT_EQ(Background(ctrl), "yellow");
    ctrl->SetValue("y");
    EXPECT_EQ(Background(ctrl), "yellow");
    ctrl->SetValue("3");
    EXPECT_TRUE(ctrl->IsValid());
    EXPECT_EQ(Background(ctrl), "white") << "back to valid is white, not the system's colour";
    ctrl->SetValue("");
    EXPECT_FALSE(ctrl->IsValid());
    EXPECT_EQ(Background(ctrl), "yellow");
}

TEST_F(PdTextCtrlTest, TextEventIsSkippedOnToTheParentOnEveryPath) {
    pdTextCtrl* plain = Make(pdTEXT_PLAIN);
    pdTextCtrl* number = Make(pdTEXT_LONG);
    plain->SetValue("anything");
    number->SetValue("5"); // valid, stays valid
    number->SetValue("x"); // to invalid
    number->SetValue("y"); // stays invalid
    number->SetValue("6"); // to valid
    plain->SetValue("more");
    ASSERT_EQ(m_textEvents.size(), 6u);
    EXPECT_EQ(m_textEvents[0].id, plain->GetId());
    for (size_t i = 1; i < 5; ++i)
        EXPECT_EQ(m_textEvents[i].id, number->GetId());
    EXPECT_EQ(m_textEvents[5].id, plain->GetId());
}

// The handlers are public; called directly they show what they hand on.
TEST_F(PdTextCtrlTest, HandlersPassTheEventOnAndSkipIt) {
    pdTextCtrl* ctrl = Make(pdTEXT_LONG, "", 300);
    wxFocusEvent gained(wxEVT_SET_FOCUS, 555);
    ctrl->OnSetFocus(gained);
    wxFocusEvent lost(wxEVT_KILL_FOCUS, 556);
    ctrl->OnKillFocus(lost);
    EXPECT_TRUE(gained.GetSkipped());
    EXPECT_TRUE(lost.GetSkipped());
    ASSERT_EQ(m_focusEvents.size(), 2u);
    EXPECT_EQ(m_focusEvents[0].type, wxEVT_COMMAND_SET_FOCUS);
    EXPECT_EQ(m_focusEvents[0].id, 555) << "the focus event's id";
    EXPECT_EQ(m_focusEvents[0].object, nullptr);
    EXPECT_EQ(m_focusEvents[1].type, wxEVT_COMMAND_KILL_FOCUS);
    EXPECT_EQ(m_focusEvents[1].id, 556);
    EXPECT_TRUE(ctrl->IsValid()) << "focus changes don't test the text";

    wxCommandEvent text(wxEVT_TEXT, 300);
    ctrl->OnText(text);
    EXPECT_TRUE(text.GetSkipped());
    EXPECT_FALSE(ctrl->IsValid()) << "the empty text was tested";
}

TEST_F(PdTextCtrlTest, PlainControlIsNeverTested) {
    pdTextCtrl* ctrl = Make(pdTEXT_PLAIN);
    ctrl->SetValue("12:99");
    ctrl->SetValue("");
    EXPECT_TRUE(ctrl->IsValid());
    EXPECT_EQ(Background(ctrl), "system");

    // Kinds beyond the enumeration act the same.
    pdTextCtrl* other = Make(static_cast<pdTextCtrlType>(7));
    other->SetValue("");
    EXPECT_TRUE(other->IsValid());
    EXPECT_EQ(Background(other), "system");
}

TEST_F(PdTextCtrlTest, ChangeValueSendsNoEventSoOnlyIsAlteredFollows) {
    pdTextCtrl* ctrl = Make(pdTEXT_LONG, "5");
    ctrl->ChangeValue("not a number");
    EXPECT_TRUE(m_textEvents.empty());
    EXPECT_TRUE(ctrl->IsValid());
    EXPECT_EQ(Background(ctrl), "system");
    EXPECT_TRUE(ctrl->IsAltered());
    ctrl->ChangeValue("5");
    EXPECT_FALSE(ctrl->IsAltered());
}

TEST_F(PdTextCtrlTest, IsAlteredComparesTextCaseSensitively) {
    pdTextCtrl* ctrl = Make(pdTEXT_LONG);
    ctrl->SetLong(12);
    EXPECT_FALSE(ctrl->IsAltered());
    ctrl->SetValue("012");
    EXPECT_TRUE(ctrl->IsValid());
    EXPECT_TRUE(ctrl->IsAltered()) << "the same number in other text is a change";
    ctrl->SetValue("12");
    EXPECT_FALSE(ctrl->IsAltered());

    pdTextCtrl* plain = Make(pdTEXT_PLAIN, "Name");
    plain->SetValue("name");
    EXPECT_TRUE(plain->IsAltered());
}

// ---------------------------------------------------------------------------
// Whole and floating-point numbers

TEST_F(PdTextCtrlTest, LongFollowsToLongInBaseTen) {
    ExpectForms(Make(pdTEXT_LONG), {{"12", true},
                                    {"-12", true},
                                    {"+12", true},
                                    {" 12", true},
                                    {"12 ", false},
                                    {"", false},
                                    {"5.5", false},
                                    {"0x10", false},
                                    {"1e3", false},
                                    {"12a", false},
                                    {"9223372036854775807", true},
                                    {"9223372036854775808", false},
                                    {"99999999999999999999", false},
                                    {"-9223372036854775809", false},
                                    {"007", true}});
}

TEST_F(PdTextCtrlTest, LongRangeIsInclusive) {
    pdTextCtrl* ctrl = Make(pdTEXT_LONG);
    ctrl->SetRange(1, 10);
    ExpectForms(ctrl, {{"1", true},
                       {"5", true},
                       {"10", true},
                       {"0", false},
                       {"11", false},
                       {"5.5", false},
                       {"", false},
                       {"-1", false}});

    pdTextCtrl* zero = Make(pdTEXT_LONG);
    zero->SetRange(0, 0);
    ExpectForms(zero, {{"0", true}, {"1", false}, {"-1", false}, {"-0", true}});

    pdTextCtrl* reversed = Make(pdTEXT_LONG);
    reversed->SetRange(10, 1);
    ExpectForms(reversed, {{"1", false}, {"5", false}, {"10", false}});
}

TEST_F(PdTextCtrlTest, SetRangeWaitsForTheNextTextEvent) {
    pdTextCtrl* ctrl = Make(pdTEXT_LONG);
    ctrl->SetValue("50");
    ctrl->SetRange(1, 10);
    EXPECT_TRUE(ctrl->IsValid());
    EXPECT_EQ(Background(ctrl), "system");
    ctrl->SetValue("50");
    EXPECT_FALSE(ctrl->IsValid());
    EXPECT_EQ(Background(ctrl), "yellow");
    // A second range replaces the first; none takes the range away.
    ctrl->SetRange(40, 60);
    ctrl->SetValue("50");
    EXPECT_TRUE(ctrl->IsValid());
}

TEST_F(PdTextCtrlTest, DoubleFollowsToDoubleAndTheRange) {
    ScopedCLocale c;
    ExpectForms(Make(pdTEXT_DOUBLE), {{"1.5", true},
                                      {"-0.25", true},
                                      {"1e3", true},
                                      {"12", true},
                                      {"inf", true},
                                      {"nan", true},
                                      {" 2.5", true},
                                      {"2.5 ", false},
                                      {"1,5", false},
                                      {"", false},
                                      {"1.5.", false},
                                      {"abc", false}});

    pdTextCtrl* ranged = Make(pdTEXT_DOUBLE);
    ranged->SetRange(0.0, 1.0);
    ExpectForms(ranged, {{"0", true},
                         {"0.5", true},
                         {"1", true},
                         {"1.0001", false},
                         {"-0.0001", false},
                         {"nan", false},
                         {"inf", false},
                         {"-inf", false}});
}

// ---------------------------------------------------------------------------
// Times and dates through OnText

TEST_F(PdTextCtrlTest, TimeForms) {
    ExpectForms(Make(pdTEXT_TIME), {{"12:30", true},     {"7:5", true},
                                    {"0:0", true},       {"23:59", true},
                                    {"24:00", true},     {"24:0", true},
                                    {"24:01", false},    {"25:00", false},
                                    {"12:60", false},    {"-1:30", false},
                                    {"12:-1", false},    {"12", false},
                                    {"12:", false},      {":30", false},
                                    {"12:30:45", false}, {"12.30", false},
                                    {"", false},         {" 12: 30", true},
                                    {"12 :30", false},   {"99999999999999999999:00", false}});
}

TEST_F(PdTextCtrlTest, DateForms) {
    ExpectForms(Make(pdTEXT_DATE),
                {{"2024-05-06", true},        {"2024-5-6", true},     {"24-5-6", true},
                 {"2024-5", false},           {"2024", false},        {"2024/05/06", false},
                 {"20240506", false},         {"-2024-05-06", false}, {"2024-05-06-", false},
                 {"2024-05-06 12:00", false}, {"2024-02-30", false},  {"", false},
                 {"2024-02-29", true},        {"2023-02-29", false},  {"1900-02-29", false},
                 {"2000-02-29", true},        {"2024-12-31", true},   {"0-1-1", true},
                 {" 2024-+5- 6", true},       {"2024 -5-6", false},   {"####", false}});
}

// Numbers that would make wxDateTime assert, or that narrowing would turn
// into another date, are screened: the text is merely invalid.
TEST_F(PdTextCtrlTest, ImpossibleDatesAreInvalidWithoutAssertion) {
    AssertCapture capture;
    pdTextCtrl* ctrl = Make(pdTEXT_DATE);
    ExpectForms(ctrl, {{"2024-13-01", false},
                       {"2024-0-5", false},
                       {"2024-00-05", false},
                       {"2024-5-0", false},
                       {"2024-5-32", false},
                       {"2024-04-31", false},
                       {"2024-05-65543", false},      // 7 if cut to 16 bits
                       {"2024-05-4294967302", false}, // 6 if cut to 32 bits
                       {"2024-4294967301-06", false}, // month 5 if cut to 32 bits
                       {"2147483648-1-1", false},     // int's minimum if cut
                       {"4294969320-1-1", false},     // 2024 if cut to 32 bits
                       {"99999999999999999999-1-1", false},
                       {"1000001-1-1", false},
                       {"1000000-12-31", true},
                       {"2024-05-06", true}});
    pdTextCtrl* other = Make(pdTEXT_DATE);
    other->SetValue("2024-13-01");
    EXPECT_FALSE(other->GetDateTime().IsValid());
    other->SetValue("2024-0-5");
    EXPECT_FALSE(other->GetDateTime().IsValid());
    EXPECT_EQ(capture.count(), 0u);
}

// ---------------------------------------------------------------------------
// GetDateTime

TEST_F(PdTextCtrlTest, GetDateTimeReadsDatesAtMidnight) {
    pdTextCtrl* ctrl = Make(pdTEXT_DATE);
    const struct {
        const char* text;
        int year;
        wxDateTime::Month month;
        int day;
    } cases[] = {
        {"2024-05-06", 2024, wxDateTime::May, 6},  {"2024-5-6", 2024, wxDateTime::May, 6},
        {"24-5-6", 24, wxDateTime::May, 6},        {"1969-12-31", 1969, wxDateTime::Dec, 31},
        {"2038-01-20", 2038, wxDateTime::Jan, 20}, {"2024-02-29", 2024, wxDateTime::Feb, 29}};
    for (const auto& c : cases) {
        SCOPED_TRACE(c.text);
        ctrl->SetValue(c.text);
        const wxDateTime date = ctrl->GetDateTime();
        ASSERT_TRUE(date.IsValid());
        EXPECT_EQ(date, wxDateTime(static_cast<wxDateTime::wxDateTime_t>(c.day), c.month, c.year));
        EXPECT_EQ(date.GetHour(), 0);
        EXPECT_EQ(date.GetMinute(), 0);
        EXPECT_EQ(date.GetSecond(), 0);
        EXPECT_EQ(date.GetMillisecond(), 0);
    }
    for (const char* bad : {"", "2024-5", "2024-02-30", "####"}) {
        SCOPED_TRACE(bad);
        ctrl->SetValue(bad);
        EXPECT_FALSE(ctrl->GetDateTime().IsValid());
    }

    // Every kind but the time reads a date.
    for (pdTextCtrlType type : {pdTEXT_PLAIN, pdTEXT_LONG, pdTEXT_DOUBLE}) {
        pdTextCtrl* other = Make(type, "2024-05-06");
        EXPECT_EQ(other->GetDateTime(), wxDateTime(6, wxDateTime::May, 2024));
        other->SetValue("12:30");
        EXPECT_FALSE(other->GetDateTime().IsValid());
    }
}

TEST_F(PdTextCtrlTest, GetDateTimeReadsTimesIntoThePresentDay) {
    pdTextCtrl* ctrl = Make(pdTEXT_TIME, "12:30");
    // The moment before and after bound what the parser took from Now().
    wxDateTime before = wxDateTime::Now();
    wxDateTime time = ctrl->GetDateTime();
    wxDateTime after = wxDateTime::Now();
    ASSERT_TRUE(time.IsValid());
    EXPECT_EQ(time.GetHour(), 12);
    EXPECT_EQ(time.GetMinute(), 30);
    EXPECT_TRUE(time.IsSameDate(before) || time.IsSameDate(after));
    EXPECT_TRUE(time.GetSecond() == before.GetSecond() || time.GetSecond() == after.GetSecond());

    ctrl->SetValue("7:5");
    time = ctrl->GetDateTime();
    EXPECT_EQ(time.GetHour(), 7);
    EXPECT_EQ(time.GetMinute(), 5);

    // A bad text gives the present moment, not an invalid date.
    for (const char* bad : {"", "12:60", "12", "24:01", "garbage"}) {
        SCOPED_TRACE(bad);
        ctrl->SetValue(bad);
        before = wxDateTime::Now();
        time = ctrl->GetDateTime();
        after = wxDateTime::Now();
        ASSERT_TRUE(time.IsValid());
        EXPECT_TRUE(time.IsBetween(before, after));
    }
}

// wxDateTime has no hour 24; 24:00 is midnight at the start of the next day.
TEST_F(PdTextCtrlTest, TwentyFourHundredIsTheNextDaysMidnight) {
    pdTextCtrl* ctrl = Make(pdTEXT_TIME);
    ctrl->SetValue("24:00");
    EXPECT_TRUE(ctrl->IsValid());
    const wxDateTime before = wxDateTime::Now();
    const wxDateTime time = ctrl->GetDateTime();
    const wxDateTime after = wxDateTime::Now();
    ASSERT_TRUE(time.IsValid());
    EXPECT_EQ(time.GetHour(), 0);
    EXPECT_EQ(time.GetMinute(), 0);
    EXPECT_TRUE(time.IsSameDate(before + wxDateSpan::Day()) ||
                time.IsSameDate(after + wxDateSpan::Day()));
    EXPECT_TRUE(time.GetSecond() == before.GetSecond() || time.GetSecond() == after.GetSecond());
}

// ---------------------------------------------------------------------------
// Setters: the text they write, the flag they leave, the background OnText
// left on the way

TEST_F(PdTextCtrlTest, SetTextRemembersTheTextAndLetsTheTestDecide) {
    pdTextCtrl* ctrl = Make(pdTEXT_LONG, "1");
    ctrl->SetText("abc");
    EXPECT_EQ(ctrl->GetText(), "abc");
    EXPECT_FALSE(ctrl->IsValid());
    EXPECT_FALSE(ctrl->IsAltered());
    EXPECT_EQ(Background(ctrl), "yellow");

    m_textEvents.clear();
    ctrl->SetText("abc");
    EXPECT_EQ(m_textEvents.size(), 1u) << "the same text still runs the test";
    EXPECT_FALSE(ctrl->IsAltered());

    ctrl->SetText("42");
    EXPECT_TRUE(ctrl->IsValid());
    EXPECT_EQ(Background(ctrl), "white");
    EXPECT_EQ(ctrl->GetLong(), 42);
}

TEST_F(PdTextCtrlTest, SetNoValueMarksTheFieldInvalid) {
    pdTextCtrl* date = Make(pdTEXT_DATE, "2024-05-06");
    date->SetNoValue();
    EXPECT_EQ(date->GetText(), "####");
    EXPECT_FALSE(date->IsValid());
    EXPECT_FALSE(date->IsAltered());
    EXPECT_EQ(Background(date), "yellow");
    EXPECT_EQ(date->GetLong(), 0);
    EXPECT_FALSE(date->GetDateTime().IsValid());
    date->SetValue("2024-05-06");
    EXPECT_TRUE(date->IsValid());
    EXPECT_TRUE(date->IsAltered());
    EXPECT_EQ(Background(date), "white");

    // A plain control is never tested: the flag stays down on its own
    // background until a typed setter raises it.
    pdTextCtrl* plain = Make(pdTEXT_PLAIN, "text");
    plain->SetNoValue();
    EXPECT_FALSE(plain->IsValid());
    EXPECT_EQ(Background(plain), "system");
    plain->SetValue("other text");
    plain->SetText("more");
    EXPECT_FALSE(plain->IsValid());
    plain->SetLong(3);
    EXPECT_TRUE(plain->IsValid());
    EXPECT_EQ(Background(plain), "system");
}

TEST_F(PdTextCtrlTest, SetLongAndSetDoubleLeaveTheFlagUpWhateverTheRange) {
    pdTextCtrl* ctrl = Make(pdTEXT_LONG);
    ctrl->SetRange(10, 20);
    ctrl->SetLong(5);
    EXPECT_EQ(ctrl->GetText(), "5");
    EXPECT_TRUE(ctrl->IsValid());
    EXPECT_EQ(Background(ctrl), "yellow") << "OnText saw 5 outside the range";
    EXPECT_FALSE(ctrl->IsAltered());

    // Flag and background are apart now: good text changes neither...
    ctrl->SetValue("15");
    EXPECT_TRUE(ctrl->IsValid());
    EXPECT_EQ(Background(ctrl), "yellow");
    // ...until a bad text and a good one have passed.
    ctrl->SetValue("25");
    ctrl->SetValue("15");
    EXPECT_TRUE(ctrl->IsValid());
    EXPECT_EQ(Background(ctrl), "white");

    pdTextCtrl* number = Make(pdTEXT_DOUBLE);
    number->SetRange(0, 1);
    number->SetDouble(2.5);
    EXPECT_TRUE(number->IsValid());
    EXPECT_EQ(Background(number), "yellow");
}

TEST_F(PdTextCtrlTest, NumberTextForms) {
    ScopedCLocale c;
    pdTextCtrl* ctrl = Make(pdTEXT_DOUBLE);
    const struct {
        double value;
        const char* text;
        double readBack;
    } doubles[] = {{0.5, "0.5", 0.5},
                   {-2.0, "-2", -2.0},
                   {1234567.0, "1.23457e+06", 1234570.0},
                   {0.0001, "0.0001", 0.0001},
                   {1e-5, "1e-05", 1e-5},
                   {100000.0, "100000", 100000.0},
                   {1.0 / 3.0, "0.333333", 0.333333}};
    for (const auto& d : doubles) {
        SCOPED_TRACE(d.text);
        ctrl->SetDouble(d.value);
        EXPECT_EQ(ctrl->GetText(), d.text);
        EXPECT_EQ(ctrl->GetDouble(), d.readBack);
        EXPECT_TRUE(ctrl->IsValid());
        EXPECT_FALSE(ctrl->IsAltered());
    }

    pdTextCtrl* whole = Make(pdTEXT_LONG);
    for (long value : {0L, 42L, -42L, LONG_MAX, LONG_MIN}) {
        whole->SetLong(value);
        EXPECT_EQ(whole->GetText(), wxString::Format("%ld", value));
        EXPECT_EQ(whole->GetLong(), value);
        EXPECT_TRUE(whole->IsValid());
    }
}

TEST_F(PdTextCtrlTest, NumberGettersFallBackToZero) {
    ScopedCLocale c;
    pdTextCtrl* ctrl = Make(pdTEXT_PLAIN);
    EXPECT_EQ(ctrl->GetDouble(), 0.0);
    EXPECT_EQ(ctrl->GetLong(), 0);
    ctrl->SetNoValue();
    EXPECT_EQ(ctrl->GetLong(), 0);
    EXPECT_EQ(ctrl->GetDouble(), 0.0);
    ctrl->SetValue("abc");
    EXPECT_EQ(ctrl->GetLong(), 0);
    EXPECT_EQ(ctrl->GetDouble(), 0.0);
    // A failed conversion still hands on what it read.
    ctrl->SetValue("12.5abc");
    EXPECT_EQ(ctrl->GetLong(), 12);
    EXPECT_EQ(ctrl->GetDouble(), 12.5);
    // The getters ignore the kind and the range.
    pdTextCtrl* date = Make(pdTEXT_DATE, "7");
    date->SetRange(100, 200);
    EXPECT_EQ(date->GetLong(), 7);
    EXPECT_EQ(date->GetDouble(), 7.0);
}

TEST_F(PdTextCtrlTest, SetDateWritesPaddedNumbersAndChecksThem) {
    AssertCapture capture;
    pdTextCtrl* ctrl = Make(pdTEXT_DATE);
    const struct {
        int year, month, day;
        const char* text;
        bool valid;
    } cases[] = {{2024, 5, 6, "2024-05-06", true},   {24, 5, 6, "0024-05-06", true},
                 {2024, 2, 29, "2024-02-29", true},  {2024, 2, 30, "2024-02-30", false},
                 {2024, 13, 1, "2024-13-01", false}, {2024, 0, 1, "2024-00-01", false},
                 {2024, 1, 0, "2024-01-00", false},  {12345, 1, 1, "12345-01-01", true},
                 {-5, 1, 1, "-005-01-01", false},    {2024, -1, 5, "2024--1-05", false}};
    for (const auto& c : cases) {
        SCOPED_TRACE(c.text);
        ctrl->SetDate(c.year, c.month, c.day);
        EXPECT_EQ(ctrl->GetText(), c.text);
        EXPECT_EQ(ctrl->IsValid(), c.valid);
        EXPECT_FALSE(ctrl->IsAltered());
    }
    // The kind isn't looked at: a date goes into a number control, and the
    // flag is the date's while OnText's number test turned the field yellow.
    pdTextCtrl* number = Make(pdTEXT_LONG);
    number->SetDate(2024, 5, 6);
    EXPECT_EQ(number->GetText(), "2024-05-06");
    EXPECT_TRUE(number->IsValid());
    EXPECT_EQ(Background(number), "yellow");
    EXPECT_EQ(capture.count(), 0u);
}

TEST_F(PdTextCtrlTest, SetTimeWritesPaddedNumbersAndChecksThem) {
    pdTextCtrl* ctrl = Make(pdTEXT_TIME);
    const struct {
        int hour, minute;
        const char* text;
        bool valid;
    } cases[] = {{7, 5, "07:05", true},   {0, 0, "00:00", true},    {23, 59, "23:59", true},
                 {24, 0, "24:00", true},  {24, 30, "24:30", false}, {12, 60, "12:60", false},
                 {-1, 0, "-1:00", false}, {12, -5, "12:-5", false}, {100, 7, "100:07", false}};
    for (const auto& c : cases) {
        SCOPED_TRACE(c.text);
        ctrl->SetTime(c.hour, c.minute);
        EXPECT_EQ(ctrl->GetText(), c.text);
        EXPECT_EQ(ctrl->IsValid(), c.valid);
        EXPECT_FALSE(ctrl->IsAltered());
        // On a fresh control, OnText turns the background only for bad text.
        pdTextCtrl* fresh = Make(pdTEXT_TIME);
        fresh->SetTime(c.hour, c.minute);
        EXPECT_EQ(Background(fresh), c.valid ? "system" : "yellow");
    }
}

TEST_F(PdTextCtrlTest, SetDateTimeWritesADateOnlyIntoDateControls) {
    const wxDateTime moment(6, wxDateTime::May, 2024, 14, 5, 33);
    const struct {
        pdTextCtrlType type;
        const char* text;
        const char* background;
    } cases[] = {{pdTEXT_DATE, "2024-05-06", "system"},
                 {pdTEXT_TIME, "14:05", "system"},
                 {pdTEXT_LONG, "14:05", "yellow"},
                 {pdTEXT_DOUBLE, "14:05", "yellow"},
                 {pdTEXT_PLAIN, "14:05", "system"}};
    for (const auto& c : cases) {
        SCOPED_TRACE(c.text);
        pdTextCtrl* ctrl = Make(c.type);
        ctrl->SetDateTime(moment);
        EXPECT_EQ(ctrl->GetText(), c.text);
        EXPECT_TRUE(ctrl->IsValid()) << "set last, after OnText";
        EXPECT_FALSE(ctrl->IsAltered());
        EXPECT_EQ(Background(ctrl), c.background);
    }

    // Round trips through the text.
    pdTextCtrl* date = Make(pdTEXT_DATE);
    date->SetDateTime(wxDateTime(29, wxDateTime::Feb, 2024));
    EXPECT_EQ(date->GetDateTime(), wxDateTime(29, wxDateTime::Feb, 2024));
    pdTextCtrl* time = Make(pdTEXT_TIME);
    time->SetDateTime(wxDateTime(1, wxDateTime::Jan, 2000, 9, 45));
    EXPECT_EQ(time->GetText(), "09:45");
    EXPECT_EQ(time->GetDateTime().GetHour(), 9);
    EXPECT_EQ(time->GetDateTime().GetMinute(), 45);
}

// The setters' effect on the flag against the test that OnText makes inside
// them: each setter is called on a control whose flag is down.
TEST_F(PdTextCtrlTest, SettersWriteTheFlagAfterOnText) {
    struct Setter {
        const char* name;
        std::function<void(pdTextCtrl*)> call;
        bool valid;
    };
    const std::vector<Setter> setters = {
        {"SetLong", [](pdTextCtrl* c) { c->SetLong(99); }, true},
        {"SetDouble", [](pdTextCtrl* c) { c->SetDouble(99.5); }, true},
        {"SetDateTime", [](pdTextCtrl* c) { c->SetDateTime(wxDateTime(1, wxDateTime::Mar, 2020)); },
         true},
        {"SetDate good", [](pdTextCtrl* c) { c->SetDate(2020, 3, 1); }, true},
        {"SetDate bad", [](pdTextCtrl* c) { c->SetDate(2020, 2, 31); }, false},
        {"SetTime good", [](pdTextCtrl* c) { c->SetTime(10, 0); }, true},
        {"SetTime bad", [](pdTextCtrl* c) { c->SetTime(10, 61); }, false},
        {"SetText", [](pdTextCtrl* c) { c->SetText("12"); }, true},
        {"SetNoValue", [](pdTextCtrl* c) { c->SetNoValue(); }, false},
    };
    for (const Setter& s : setters) {
        SCOPED_TRACE(s.name);
        pdTextCtrl* ctrl = Make(pdTEXT_LONG);
        ctrl->SetValue("bad");
        ASSERT_FALSE(ctrl->IsValid());
        s.call(ctrl);
        EXPECT_EQ(ctrl->IsValid(), s.valid);
        EXPECT_FALSE(ctrl->IsAltered());
    }
}
