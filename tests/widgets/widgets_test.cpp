// Size groups, the animation (as the screen shows it) and the drawing helpers
// on real windows; drawn text is compared with its lines drawn one by one.
#include "gui_helpers.h"
#include "screenshot.h"
#include "tempdir.h"

#include <gtest/gtest.h>
#include <wx/dcmemory.h>
#include <wx/frame.h>
#include <wx/panel.h>
#include <wx/stattext.h>
#include <wxsupport/controls/animation.h>
#include <wxsupport/controls/drawing.h>
#include <wxsupport/controls/pdsizegroup.h>

#include <string>

namespace {

const wxColour kColours[] = {*wxRED, *wxGREEN, *wxBLUE};

// A strip of three square frames, `side` pixels each, in kColours order.
wxBitmap Strip(int side) {
    wxImage image(side * 3, side);
    for (int i = 0; i < 3; ++i)
        image.SetRGB(wxRect(i * side, 0, side, side), kColours[i].Red(), kColours[i].Green(),
                     kColours[i].Blue());
    return wxBitmap(image);
}

// The pixels that `draw` leaves on a white 200x100 bitmap.
template <class Draw>
std::string Render(const Draw& draw) {
    wxBitmap bitmap(200, 100);
    {
        wxMemoryDC dc(bitmap);
        dc.SetBackground(*wxWHITE_BRUSH);
        dc.Clear();
        draw(dc);
    }
    const wxImage image = bitmap.ConvertToImage();
    return std::string(reinterpret_cast<const char*>(image.GetData()), 200 * 100 * 3);
}

class Fixed : public wxWindow { // a window of a fixed best size
public:
    Fixed(wxWindow* parent, const wxSize& best) : wxWindow(parent, wxID_ANY), m_best(best) {}
    wxSize DoGetBestSize() const override { return m_best; }
    wxSize m_best;
};

class WidgetsTest : public testing::Test {
protected:
    void SetUp() override {
        m_frame = new wxFrame(nullptr, wxID_ANY, "w", {40, 40}, {320, 200});
        m_panel = new wxPanel(m_frame);
    }
    void TearDown() override { DestroyAndWait(m_frame); }
    // Index of the colour that fills the centred 32x32 frame, or -1.
    int Shown() {
        for (int i = 0; i < 3; ++i)
            if (ShareOfColour(CaptureWindow(m_anim), kColours[i], {34, 14, 32, 32}) == 1.0)
                return i;
        return -1;
    }
    bool Becomes(int colour) {
        return WaitFor([&] { return Shown() == colour; }, 3000);
    }
    wxFrame* m_frame = nullptr;
    wxPanel* m_panel = nullptr;
    Widgets::Animation* m_anim = nullptr;
};

} // namespace

TEST_F(WidgetsTest, SizeGroupGivesEachModeItsCommonSides) {
    // best sizes 80x20 and 60x30; mode, size of each afterwards, their minimum
    const int cases[][7] = {{2, 80, 30, 80, 30, 80, 30},
                            {0, 80, 20, 80, 30, 80, -1},
                            {1, 80, 30, 60, 30, -1, 30},
                            {7, 80, 20, 60, 30, -1, -1}};
    for (const auto& c : cases) {
        SCOPED_TRACE(c[0]);
        Fixed* a = new Fixed(m_panel, {80, 20});
        Fixed* b = new Fixed(m_panel, {60, 30});
        pdSizeGroup group(static_cast<pdSizeGroup::SizeGroupMode>(c[0]));
        group.Resize(); // empty
        for (wxWindow* w : {a, b, a})
            group.Add(w);
        group.Resize();
        EXPECT_EQ(a->GetSize(), wxSize(c[1], c[2]));
        EXPECT_EQ(b->GetSize(), wxSize(c[3], c[4]));
        EXPECT_EQ(b->GetMinSize(), wxSize(c[5], c[6]));
    }
}

TEST_F(WidgetsTest, AnimationCutsStripsIntoEqualFramesOrFails) {
    // strip width, height, count, frame width (0: fails)
    const int cases[][4] = {{96, 32, 0, 32}, {96, 32, 4, 24}, {96, 32, 5, 0}, {100, 30, 0, 0},
                            {96, 32, 1, 96}, {96, 32, 97, 0}, {16, 32, 0, 0}};
    m_anim = new Widgets::Animation(m_panel, wxID_ANY, "", 0);
    for (const auto& c : cases) {
        SCOPED_TRACE(testing::Message() << c[0] << "x" << c[1] << "/" << c[2]);
        EXPECT_EQ(m_anim->load(wxBitmap(wxImage(c[0], c[1])), c[2]), c[3] != 0);
        if (c[3]) {
            EXPECT_EQ(m_anim->GetMinSize(), wxSize(c[3], c[1]));
        }
    }
    EXPECT_FALSE(m_anim->load(wxBitmap(), 0));
}

TEST_F(WidgetsTest, AnimationPlaysCentredPausesStopsAndKeepsItsStripWhenANameFails) {
    TempDir dir;
    ASSERT_TRUE(Strip(32).SaveFile(dir.file("s.bmp"), wxBITMAP_TYPE_BMP));
    m_anim = new Widgets::Animation(m_panel, wxID_ANY, dir.file("s.bmp"), 3);
    m_anim->SetSize(100, 60);
    ASSERT_TRUE(ShowAndActivate(m_frame));
    ASSERT_TRUE(Becomes(0));
    EXPECT_EQ(ShareOfColour(CaptureWindow(m_anim), *wxRED), 32.0 * 32 / (100 * 60));
    SaveScreenshot("animation", m_frame);
    m_anim->setInterval(250); // idle: starts nothing
    m_anim->play();
    for (int colour : {1, 2, 0, 1})
        EXPECT_TRUE(Becomes(colour)) << colour;
    m_anim->pause();
    m_anim->stop(); // after pause: keeps the paused frame
    Pump(400);
    EXPECT_EQ(Shown(), 1);
    m_anim->play();
    EXPECT_TRUE(Becomes(2));
    m_anim->stop(); // frame 0, but only at the next paint
    EXPECT_EQ(Shown(), 2);
    m_anim->Refresh();
    EXPECT_TRUE(Becomes(0));

    m_anim->play();
    EXPECT_TRUE(Becomes(1));
    EXPECT_FALSE(m_anim->load(dir.file("missing.bmp"), 3));
    m_anim->Refresh();
    EXPECT_TRUE(Becomes(0));                  // stopped, the old strip at frame 0
    EXPECT_FALSE(m_anim->load(Strip(32), 5)); // leaves nothing to paint
    m_anim->play();
    m_anim->Refresh();
    EXPECT_TRUE(Becomes(-1));
}

TEST_F(WidgetsTest, DrawTextPlacesLinesLeftOrCentred) {
    const auto draw = [](const char* text, long flags) {
        return Render([&](wxDC& dc) { wx_dc_draw_text(&dc, text, 10, 20, flags); });
    };
    const std::string centred = Render([](wxDC& dc) {
        const wxSize wide = dc.GetTextExtent("Wide line");
        dc.DrawText("Wide line", 10, 20);
        dc.DrawText("ab", 10 + (wide.x - dc.GetTextExtent("ab").x) / 2, 20 + wide.y);
        dc.DrawText("Wide line", 10, 20 + 2 * wide.y);
    });
    EXPECT_TRUE(draw("Wide line\nab\n\nWide line", wxALIGN_CENTER_HORIZONTAL) == centred);
    EXPECT_TRUE(draw("Wide line\nab\nWide line\n", wxALIGN_CENTER_VERTICAL) == centred);
    const std::string left = Render([](wxDC& dc) {
        dc.DrawText("ab", 10, 20);
        dc.DrawText("Wide line", 10, 20 + dc.GetTextExtent("ab").y);
    });
    EXPECT_TRUE(draw("ab\n\n\nWide line", wxALIGN_RIGHT) == left);
    EXPECT_TRUE(draw("ab", wxALIGN_CENTER) == draw("ab", 0));
    EXPECT_TRUE(draw("\n\n", wxALIGN_CENTER) == Render([](wxDC&) {}));
}

TEST_F(WidgetsTest, TextSizeAndBoldFollowTheWindowsFont) {
    wxStaticText* label = new wxStaticText(m_panel, wxID_ANY, "label");
    const wxSize ten = label->GetTextExtent("XXXXXXXXXX");
    const wxSize cases[][2] = {
        {{10, 1}, ten}, {{-1, 3}, {-1, 3 * ten.y}}, {{10, -1}, {ten.x, -1}}, {{0, 0}, {0, 0}}};
    for (const auto& c : cases)
        EXPECT_EQ(wx_size_to_fit_text(label, c[0].x, c[0].y), c[1]) << c[0].x << c[0].y;
    label->SetFont(wxFont(wxFontInfo(15).Italic()));
    wx_make_bold(label);
    EXPECT_EQ(label->GetFont(), wxFont(wxFontInfo(15).Italic().Bold()));
}
