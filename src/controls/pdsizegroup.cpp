#include <wxsupport/controls/pdsizegroup.h>

#include <wx/gdicmn.h>
#include <wx/window.h>

pdSizeGroup::pdSizeGroup(SizeGroupMode mode) : m_mode(mode) {}

void pdSizeGroup::Add(wxWindow* window) {
    m_windows.push_back(window);
}

void pdSizeGroup::Resize() {
    // -1 stands for "nothing seen yet"; the two sides are tracked apart, so
    // the result may come from two different windows.
    int width = -1;
    int height = -1;
    for (wxWindow* window : m_windows) {
        if (!window)
            continue;
        const wxSize best = window->GetBestSize();
        if (width == -1 || best.x > width)
            width = best.x;
        if (height == -1 || best.y > height)
            height = best.y;
    }

    if (m_mode != SIZE_GROUP_BOTH) {
        if (m_mode != SIZE_GROUP_HORIZONTAL)
            width = -1;
        if (m_mode != SIZE_GROUP_VERTICAL)
            height = -1;
    }

    // SetInitialSize sets the minimum size as well, so that sizers keep the
    // common size; on a side given as -1 each window keeps its best size.
    for (wxWindow* window : m_windows) {
        if (window)
            window->SetInitialSize(wxSize(width, height));
    }
}
