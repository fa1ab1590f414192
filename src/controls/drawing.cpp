#include <wxsupport/controls/drawing.h>

#include <wx/dc.h>
#include <wx/font.h>
#include <wx/tokenzr.h>
#include <wx/window.h>

void wx_make_bold(wxWindow* window) {
    wxCHECK_RET(window, "window");
    wxFont font = window->GetFont();
    // wxFONTWEIGHT_BOLD is 92 in wxWidgets 3.0 and 700 in 3.2; both are bold.
    font.SetWeight(wxFONTWEIGHT_BOLD);
    window->SetFont(font);
}

wxSize wx_size_to_fit_text(const wxWindow* window, int columns, int rows) {
    wxCHECK_MSG(window, wxDefaultSize, "window");
    const wxString model =
        columns >= 0 ? wxString(wxT('X'), static_cast<size_t>(columns)) : wxString(wxT("X"));
    int width = 0;
    int height = 0;
    window->GetTextExtent(model, &width, &height);
    return wxSize(columns < 0 ? -1 : width, rows < 0 ? -1 : height * rows);
}

namespace {

// Either bit selects the centred form.
constexpr long kCentreMask = wxALIGN_CENTER_HORIZONTAL | wxALIGN_CENTER_VERTICAL;

} // namespace

void wx_dc_draw_text(wxDC* dc, const wxString& text, int x, int y, long flags) {
    wxCHECK_RET(dc, "dc");
    // wxTOKEN_DEFAULT drops empty tokens: an empty line takes no room.
    wxStringTokenizer tokens(text, wxT("\n"), wxTOKEN_DEFAULT);

    const bool centred = (flags & kCentreMask) != 0;
    int widest = 0;
    if (centred) {
        while (tokens.HasMoreTokens()) {
            wxCoord width = 0;
            wxCoord height = 0;
            dc->GetTextExtent(tokens.GetNextToken(), &width, &height);
            if (width > widest)
                widest = width;
        }
        tokens.SetString(text, wxT("\n"), wxTOKEN_DEFAULT);
    }

    // The line height is that of the first line measuring more than 0 high,
    // and holds for every line after it.
    int lineHeight = 0;
    int top = y;
    while (tokens.HasMoreTokens()) {
        const wxString line = tokens.GetNextToken();
        wxCoord width = 0;
        wxCoord height = 0;
        if (centred || lineHeight == 0)
            dc->GetTextExtent(line, &width, &height);
        if (lineHeight == 0)
            lineHeight = height;
        const int left = centred ? x + (widest - width) / 2 : x;
        dc->DrawText(line, left, top);
        top += lineHeight;
    }
}
