// The dialogs in a German locale: a host that adds the library's catalogue
// sees them in German, one that adds none sees the library's English, and
// wxWidgets' own stock labels are German in both.
#include "gui_helpers.h"

#include <gtest/gtest.h>
#include <wx/button.h>
#include <wx/intl.h>
#include <wx/stattext.h>
#include <wx/translation.h>
#include <wxsupport/dialogs/aboutdlg.h>
#include <wxsupport/dialogs/crashreportdialog.h>
#include <wxsupport/xml/xml-reader.h>

#include <memory>
#include <ostream>
#include <vector>

// Failures show texts as text, not as arrays of code points.
void PrintTo(const wxString& text, std::ostream* os) {
    *os << '"' << text.utf8_str() << '"';
}

namespace {

// Labels of every shown static text below `parent`, in creation order, with
// the line breaks of wrapped texts made blanks.
std::vector<wxString> Texts(wxWindow* parent) {
    std::vector<wxString> labels;
    for (wxWindow* w : parent->GetChildren()) {
        if (auto* t = dynamic_cast<wxStaticText*>(w); t && t->IsShown()) {
            labels.push_back(t->GetLabel());
            labels.back().Replace("\n", " ");
        }
        for (const wxString& label : Texts(w))
            labels.push_back(label);
    }
    return labels;
}

wxString CloseLabel(wxWindow* dlg) {
    wxWindow* button = dlg->FindWindow(wxID_CLOSE);
    return button ? wxStripMenuCodes(button->GetLabel()) : wxString("(no button)");
}

// What the library's texts read in one language (UTF-8).
struct Language {
    const char* buildCaption;
    const char* uptimePrefix; // "Uptime: " and its translation
    const char* secondsSuffix;
    const char* crashTitle;
    const char* headline; // for the application "Werkzeug"
    const char* messageStart;
    const char* thanks;
    const char* xmlError;
};

const Language kEnglish = {"Build info:",
                           "Uptime: ",
                           " seconds",
                           "Crash report",
                           "Werkzeug has crashed!",
                           "We are sorry to inform you that Werkzeug has experienced",
                           "Thank you for your participation!",
                           "Unhandled XML-error."};
const Language kGerman = {"Build-Informationen:",
                          "Laufzeit: ",
                          " Sekunden",
                          "Absturzbericht",
                          "Werkzeug ist abgest\xC3\xBCrzt!",
                          "Leider m\xC3\xBCssen wir Ihnen mitteilen, dass in Werkzeug ein",
                          "Vielen Dank f\xC3\xBCr Ihre Mithilfe!",
                          "Unbehandelter XML-Fehler."};

// wxWidgets' own German for its stock label "Close", whichever the language
// of the library's texts.
const wxString kSchliessen = wxString::FromUTF8("Schlie\xC3\x9F"
                                                "en");

// Builds an about box with a build row and a crash report dialog and checks
// what they read against `lang`. Gives the crash dialog, still alive.
CrashReportDialog* ExpectDialogsIn(const Language& lang) {
    const auto U = [](const char* utf8) { return wxString::FromUTF8(utf8); };
    AboutDlg* about = new AboutDlg(nullptr);
    about->SetBuildInfo("gcc 12");
    std::vector<wxString> rows = Texts(about); // caption, build text, uptime
    EXPECT_EQ(rows.size(), 3u);
    rows.resize(3);
    EXPECT_EQ(rows[0], U(lang.buildCaption));
    EXPECT_EQ(rows[1], "gcc 12");
    EXPECT_TRUE(rows[2].StartsWith(U(lang.uptimePrefix)) && rows[2].EndsWith(U(lang.secondsSuffix)))
        << rows[2];
    EXPECT_EQ(CloseLabel(about), kSchliessen);
    DestroyAndWait(about);

    CrashReportDialog* crash = new CrashReportDialog("Werkzeug", "fehler@example.org");
    EXPECT_EQ(crash->GetTitle(), U(lang.crashTitle));
    rows = Texts(crash); // headline, message, files, removal, thanks
    EXPECT_EQ(rows.size(), 5u);
    rows.resize(5);
    EXPECT_EQ(rows[0], U(lang.headline));
    EXPECT_TRUE(rows[1].StartsWith(U(lang.messageStart))) << rows[1];
    EXPECT_EQ(rows[4], U(lang.thanks));
    EXPECT_EQ(CloseLabel(crash), kSchliessen);
    // "Debug" is the one text the library never translates.
    EXPECT_TRUE(dynamic_cast<wxButton*>(crash->FindWindowByLabel("Debug")));

    EXPECT_EQ(wxXmlWriter().GetError(), U(lang.xmlError));
    return crash;
}

// A German locale as a host sets it up, the library's catalogue found in the
// build tree's share/locale/ (the installed tree has the same layout).
class German : public testing::Test {
protected:
    void SetUp() override {
        static const bool prefixAdded = [] {
            wxFileTranslationsLoader::AddCatalogLookupPathPrefix(WXS_LOCALE_DIR);
            return true;
        }();
        (void)prefixAdded;
        locale = std::make_unique<wxLocale>(wxLANGUAGE_GERMAN);
        ASSERT_TRUE(locale->IsOk()) << "no de_DE.UTF-8 locale: run scripts/setup.sh";
    }

    std::unique_ptr<wxLocale> locale;
};

} // namespace

TEST_F(German, HostWithTheCatalogueSeesTheDialogsInGerman) {
    ASSERT_TRUE(wxTranslations::Get()->AddCatalog("wxsupport"));
    CrashReportDialog* crash = ExpectDialogsIn(kGerman);

    const std::vector<wxString> rows = Texts(crash);
    ASSERT_EQ(rows.size(), 5u);
    EXPECT_TRUE(rows[1].Contains("E-Mail an <b>fehler@example.org<b> und")) << rows[1];
    EXPECT_EQ(rows[3], wxString::FromUTF8("Nachdem Sie sie an uns gesendet haben, k\xC3\xB6nnen "
                                          "Sie sie bedenkenlos l\xC3\xB6schen."));

    // A real click on the German Close button ends the modal run.
    crash->CallAfter([crash] {
        WaitFor([crash] { return crash->IsShownOnScreen(); });
        ClickInto(crash->FindWindow(wxID_CLOSE));
    });
    crash->Move(10, 10);
    EXPECT_EQ(crash->ShowModal(), wxID_CLOSE);
    DestroyAndWait(crash);
}

TEST_F(German, HostWithoutTheCatalogueSeesEnglishTextsAndGermanStockLabels) {
    DestroyAndWait(ExpectDialogsIn(kEnglish));
}
