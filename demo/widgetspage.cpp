#include "widgetspage.h"

#include "artwork.h"

#include "ui.h"

#include <wxsupport/controls/animation.h>
#include <wxsupport/controls/drawing.h>
#include <wxsupport/controls/pdsizegroup.h>

#include <wx/button.h>
#include <wx/dcbuffer.h>
#include <wx/intl.h>
#include <wx/settings.h>
#include <wx/sizer.h>
#include <wx/slider.h>
#include <wx/statbox.h>
#include <wx/stattext.h>

namespace {

const int kFrameSize = 64;
const int kDefaultInterval = 80;

// A panel that draws the same lines twice through wx_dc_draw_text: as they
// are, and centred on each other.
class TextPanel : public wxPanel {
public:
    explicit TextPanel(wxWindow* parent) : wxPanel(parent) {
        SetBackgroundStyle(wxBG_STYLE_PAINT);
        SetMinSize(wxSize(wx_size_to_fit_text(this, 40, 6).x, wx_size_to_fit_text(this, 1, 6).y));
        Bind(wxEVT_PAINT, &TextPanel::OnPaint, this);
        Bind(wxEVT_SIZE, [this](wxSizeEvent& event) {
            Refresh();
            event.Skip();
        });
    }

private:
    void OnPaint(wxPaintEvent&) {
        wxAutoBufferedPaintDC dc(this);
        const wxSize size = GetClientSize();
        dc.SetBackground(wxBrush(wxSystemSettings::GetColour(wxSYS_COLOUR_WINDOW)));
        dc.Clear();
        dc.SetPen(wxPen(wxSystemSettings::GetColour(wxSYS_COLOUR_BTNSHADOW)));
        dc.SetBrush(*wxTRANSPARENT_BRUSH);
        dc.DrawRectangle(0, 0, size.x, size.y);
        dc.DrawLine(size.x / 2, 6, size.x / 2, size.y - 6);
        dc.SetFont(GetFont());
        dc.SetTextForeground(wxSystemSettings::GetColour(wxSYS_COLOUR_WINDOWTEXT));

        const wxString lines = _("A few lines\nof quite different widths,\n\ndrawn at once");
        const int line = dc.GetCharHeight();
        wx_dc_draw_text(&dc, _("Plain:"), 12, 12, 0);
        wx_dc_draw_text(&dc, lines, 12, 12 + line * 2, 0);
        wx_dc_draw_text(&dc, _("Centred:"), size.x / 2 + 12, 12, 0);
        wx_dc_draw_text(&dc, lines, size.x / 2 + 12, 12 + line * 2, wxALIGN_CENTER_HORIZONTAL);
    }
};

} // namespace

WidgetsPage::WidgetsPage(wxWindow* parent) : wxPanel(parent) {
    wxBoxSizer* upper = new wxBoxSizer(wxHORIZONTAL);
    upper->Add(CreateAnimationBox(), 0, wxEXPAND | wxRIGHT, 12);
    upper->Add(CreateDrawingBox(), 1, wxEXPAND);
    wxBoxSizer* sizer = new wxBoxSizer(wxVERTICAL);
    sizer->Add(upper, 1, wxEXPAND | wxALL, 12);
    sizer->Add(CreateSizeGroupBox(), 0, wxEXPAND | wxLEFT | wxRIGHT | wxBOTTOM, 12);
    SetSizer(sizer);
}

wxSizer* WidgetsPage::CreateAnimationBox() {
    wxStaticBoxSizer* box = new wxStaticBoxSizer(wxVERTICAL, this, _("Widgets::Animation"));
    wxWindow* parent = box->GetStaticBox();
    // The strip is drawn in code and handed over as a bitmap.
    m_animation = new Widgets::Animation(parent, wxID_ANY, wxEmptyString, 0);
    m_animation->load(SpinnerStrip(kFrameSize), kSpinnerFrames);
    m_animation->SetMinSize(wxSize(kFrameSize + 24, kFrameSize + 24));
    m_animation->setInterval(kDefaultInterval);

    wxBoxSizer* buttons = new wxBoxSizer(wxHORIZONTAL);
    const auto button = [parent, buttons](const wxString& label) {
        wxButton* b =
            new wxButton(parent, wxID_ANY, label, wxDefaultPosition, wxDefaultSize, wxBU_EXACTFIT);
        buttons->Add(b, 0, wxRIGHT, 6);
        return b;
    };
    button(_("Play"))->Bind(wxEVT_BUTTON, [this](wxCommandEvent&) { m_animation->play(); });
    button(_("Pause"))->Bind(wxEVT_BUTTON, [this](wxCommandEvent&) { m_animation->pause(); });
    button(_("Stop"))->Bind(wxEVT_BUTTON, [this](wxCommandEvent&) {
        m_animation->stop();
        m_animation->Refresh();
    });

    wxSlider* slider = new wxSlider(parent, wxID_ANY, kDefaultInterval, 20, 400);
    // Wide enough for fine steps, and for the box's title.
    slider->SetMinSize(wxSize(wx_size_to_fit_text(slider, 14, 1).x, -1));
    m_interval = new wxStaticText(parent, wxID_ANY, wxEmptyString);
    const auto showInterval = [this](int ms) {
        m_interval->SetLabel(wxString::Format(_("Interval: %d ms"), ms));
    };
    showInterval(kDefaultInterval);
    slider->Bind(wxEVT_SLIDER, [this, showInterval](wxCommandEvent& event) {
        m_animation->setInterval(event.GetInt());
        showInterval(event.GetInt());
    });

    box->Add(m_animation, 1, wxALIGN_CENTER_HORIZONTAL | wxALL, 6);
    box->Add(buttons, 0, wxLEFT | wxRIGHT, 6);
    box->Add(m_interval, 0, wxLEFT | wxRIGHT | wxTOP, 6);
    box->Add(slider, 0, wxEXPAND | wxALL, 6);
    m_animation->play();
    return box;
}

wxSizer* WidgetsPage::CreateDrawingBox() {
    wxStaticBoxSizer* box = new wxStaticBoxSizer(wxVERTICAL, this, _("wx_dc_draw_text"));
    box->Add(new TextPanel(box->GetStaticBox()), 1, wxEXPAND | wxALL, 6);
    return box;
}

wxSizer* WidgetsPage::CreateSizeGroupBox() {
    wxStaticBoxSizer* box = new wxStaticBoxSizer(wxHORIZONTAL, this, _("pdSizeGroup"));
    wxWindow* parent = box->GetStaticBox();
    const struct {
        pdSizeGroup::SizeGroupMode mode;
        wxString title;
        wxString explanation;
    } modes[] = {
        {pdSizeGroup::SIZE_GROUP_HORIZONTAL, _("Horizontal"), _("one width, own heights")},
        {pdSizeGroup::SIZE_GROUP_VERTICAL, _("Vertical"), _("one height, own widths")},
        {pdSizeGroup::SIZE_GROUP_BOTH, _("Both"), _("one width and one height")},
    };
    for (const auto& m : modes) {
        wxBoxSizer* column = new wxBoxSizer(wxVERTICAL);
        wxStaticText* title = NewHeading(parent, m.title);
        column->Add(title);
        column->Add(new wxStaticText(parent, wxID_ANY, m.explanation), 0, wxBOTTOM, 6);
        pdSizeGroup group(m.mode);
        for (const wxString& label : {_("OK"), _("Apply\nchanges"), _("A longer label")}) {
            wxButton* b = new wxButton(parent, wxID_ANY, label);
            group.Add(b);
            column->Add(b, 0, wxTOP, 6);
        }
        group.Resize();
        box->Add(column, 1, wxALL, 6);
    }
    return box;
}
