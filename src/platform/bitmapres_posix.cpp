#include "platform/bitmapres.h"

#include <wx/filefn.h>
#include <wx/filename.h>
#include <wx/log.h>
#include <wx/stdpaths.h>

namespace {

// Where a name points: an absolute path as it stands; a relative one beside
// the executable when a file is there, else against the working directory.
wxString Locate(const wxString& name) {
    const wxFileName file(name);
    if (file.IsAbsolute())
        return name;
    const wxFileName executable(wxStandardPaths::Get().GetExecutablePath());
    wxFileName beside(file);
    if (beside.MakeAbsolute(executable.GetPath()) && beside.FileExists())
        return beside.GetFullPath();
    return name;
}

} // namespace

bool bitmapres_load(wxBitmap* bitmap, const wxString& name) {
    if (name.empty())
        return false;
    const wxString path = Locate(name);
    // wxImage would report a missing or unreadable file through wxLogError,
    // which a GUI host shows in a message box; the caller's false is enough.
    if (!wxFileExists(path))
        return false;
    wxLogNull quiet;
    return bitmap->LoadFile(path, wxBITMAP_TYPE_ANY) && bitmap->IsOk();
}
