// Page 5: the controls. Widgets::Animation playing the gallery's spinner
// strip, wx_dc_draw_text on a panel of its own, and pdSizeGroup in its three
// modes side by side.
#pragma once

#include <wx/panel.h>

namespace Widgets {
class Animation;
}
class wxStaticText;

class WidgetsPage : public wxPanel {
public:
    explicit WidgetsPage(wxWindow* parent);

private:
    wxSizer* CreateAnimationBox();
    wxSizer* CreateDrawingBox();
    wxSizer* CreateSizeGroupBox();

    Widgets::Animation* m_animation;
    wxStaticText* m_interval;
};
