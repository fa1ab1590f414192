// Widgets::Animation as the screen shows it: strips cut into equal frames,
// played centred, paused, stopped, and kept when a new name fails to load.
#include "frame_test.h"
#include "screenshot.h"
#include "tempdir.h"

#include <gtest/gtest.h>
#include <wxsupport/controls/animation.h>

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

class AnimationTest : public FrameTest {
protected:
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
    Widgets::Animation* m_anim = nullptr;
};

TEST_F(AnimationTest, AnimationCutsStripsIntoEqualFramesOrFails) {
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

TEST_F(AnimationTest, AnimationPlaysCentredPausesStopsAndKeepsItsStripWhenANameFails) {
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

} // namespace
