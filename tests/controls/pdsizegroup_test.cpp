// pdSizeGroup on real windows: each mode gives its windows their common sides.
#include "frame_test.h"

#include <gtest/gtest.h>
#include <wxsupport/controls/pdsizegroup.h>

namespace {

class Fixed : public wxWindow { // a window of a fixed best size
public:
    Fixed(wxWindow* parent, const wxSize& best) : wxWindow(parent, wxID_ANY), m_best(best) {}
    wxSize DoGetBestSize() const override { return m_best; }
    wxSize m_best;
};

using SizeGroupTest = FrameTest;

TEST_F(SizeGroupTest, SizeGroupGivesEachModeItsCommonSides) {
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

} // namespace
