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
#include <vector>

namespace {

wxString U(const char* utf8) {
    return wxString::FromUTF8(utf8);
}

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

wxString ButtonText(wxWindow* dlg, int id) {
    wxWindow* button = dlg->FindWindow(id);
    return button ? wxStripMenuCodes(button->GetLabel()) : wxString("(no button)");
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

    AboutDlg* about = new AboutDlg(nullptr);
    about->SetBuildInfo("gcc 12");
    std::vector<wxString> rows = Texts(about);
    ASSERT_EQ(rows.size(), 3u);
    EXPECT_EQ(rows[0], "Build-Informationen:");
    EXPECT_EQ(rows[1], "gcc 12");
    EXPECT_TRUE(rows[2].StartsWith("Laufzeit: ") && rows[2].EndsWith(" Sekunden")) << rows[2];
    EXPECT_EQ(ButtonText(about, wxID_CLOSE), U("Schlie\xC3\x9F"
                                               "en"));
    DestroyAndWait(about);

    CrashReportDialog* crash = new CrashReportDialog("Werkzeug", "fehler@example.org");
    EXPECT_EQ(crash->GetTitle(), "Absturzbericht");
    rows = Texts(crash);
    ASSERT_EQ(rows.size(), 5u);
    EXPECT_EQ(rows[0], U("Werkzeug ist abgest\xC3\xBCrzt!"));
    EXPECT_TRUE(rows[1].StartsWith(U("Leider m\xC3\xBCssen wir Ihnen mitteilen, dass in "
                                     "Werkzeug ein unerwartetes Problem")))
        << rows[1];
    EXPECT_TRUE(rows[1].Contains("E-Mail an <b>fehler@example.org<b> und")) << rows[1];
    EXPECT_EQ(rows[3], U("Nachdem Sie sie an uns gesendet haben, k\xC3\xB6nnen Sie sie "
                         "bedenkenlos l\xC3\xB6schen."));
    EXPECT_EQ(rows[4], U("Vielen Dank f\xC3\xBCr Ihre Mithilfe!"));
    // "Debug" is the one text the library never translates.
    EXPECT_TRUE(dynamic_cast<wxButton*>(crash->FindWindowByLabel("Debug")));

    // A real click on the German Close button ends the modal run.
    crash->CallAfter([crash] {
        WaitFor([crash] { return crash->IsShownOnScreen(); });
        ClickInto(crash->FindWindow(wxID_CLOSE));
    });
    crash->Move(10, 10);
    EXPECT_EQ(crash->ShowModal(), wxID_CLOSE);
    EXPECT_EQ(ButtonText(crash, wxID_CLOSE), U("Schlie\xC3\x9F"
                                               "en"));
    DestroyAndWait(crash);

    EXPECT_EQ(wxXmlWriter().GetError(), "Unbehandelter XML-Fehler.");
}

TEST_F(German, HostWithoutTheCatalogueSeesEnglishTextsAndGermanStockLabels) {
    AboutDlg* about = new AboutDlg(nullptr);
    about->SetBuildInfo("gcc 12");
    std::vector<wxString> rows = Texts(about);
    ASSERT_EQ(rows.size(), 3u);
    EXPECT_EQ(rows[0], "Build info:");
    EXPECT_TRUE(rows[2].StartsWith("Uptime: ") && rows[2].EndsWith(" seconds")) << rows[2];
    EXPECT_EQ(ButtonText(about, wxID_CLOSE), U("Schlie\xC3\x9F"
                                               "en"));
    DestroyAndWait(about);

    CrashReportDialog* crash = new CrashReportDialog("Werkzeug", "fehler@example.org");
    EXPECT_EQ(crash->GetTitle(), "Crash report");
    rows = Texts(crash);
    ASSERT_EQ(rows.size(), 5u);
    EXPECT_EQ(rows[0], "Werkzeug has crashed!");
    EXPECT_TRUE(rows[1].StartsWith("We are sorry to inform you that Werkzeug")) << rows[1];
    EXPECT_EQ(rows[4], "Thank you for your participation!");
    DestroyAndWait(crash);

    EXPECT_EQ(wxXmlWriter().GetError(), "Unhandled XML-error.");
}
