#include "platform/bitmapres.h"

bool bitmapres_load(wxBitmap* bitmap, const wxString& name) {
    return bitmap->LoadFile(name, wxBITMAP_TYPE_BMP_RESOURCE);
}
