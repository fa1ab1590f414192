// The drawing helpers: drawn text is compared with its lines drawn one by one,
// and sizes and fonts follow the window's font.
#include "frame_test.h"

#include <gtest/gtest.h>
#include <wx/dcmemory.h>
#include <wx/stattext.h>
#include <wxsupport/controls/drawing.h>

#include <string>

namespace {

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

using DrawingTest = FrameTest;

TEST_F(DrawingTest, DrawTextPlacesLinesLeftOrCentred) {
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

TEST_F(DrawingTest, TextSizeAndBoldFollowTheWindowsFont) {
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

} // namespace
