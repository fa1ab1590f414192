/// \file
/// pdSizeGroup: one common size for several windows.
#ifndef WXSUPPORT_CONTROLS_PDSIZEGROUP_H
#define WXSUPPORT_CONTROLS_PDSIZEGROUP_H

#include <wxsupport/defs.h>

#include <vector>

class wxWindow;

/// Size group: gives a set of windows a common width, height or both, so that
/// labels, buttons or fields in different sizers line up. Create the group, Add
/// the windows once they exist, call Resize, then lay the parent out. The group
/// holds the windows without owning them; each of them must still exist at
/// every Resize.
class WXSUPPORT_API pdSizeGroup {
public:
    /// Which side Resize makes equal; any other value leaves both sides to
    /// each window's own best size (hence the fixed type, which holds them).
    enum SizeGroupMode : int {
        SIZE_GROUP_HORIZONTAL = 0, ///< greatest best width, each its own height
        SIZE_GROUP_VERTICAL = 1,   ///< greatest best height, each its own width
        SIZE_GROUP_BOTH = 2,       ///< greatest best width and greatest best height
    };

    /// An empty group that makes the sides named by mode equal.
    explicit pdSizeGroup(SizeGroupMode mode);

    /// Appends the window (no test for null or for one already in the group);
    /// its size changes at the next Resize.
    void Add(wxWindow* window);

    /// Measures every window's best size as it is now and gives each window
    /// the common size with SetInitialSize, so that it becomes the minimum
    /// size too; a side left open is -1. Lays nothing out. Nothing happens in
    /// an empty group; a null pointer in the list is passed over.
    void Resize();

private:
    std::vector<wxWindow*> m_windows;
    SizeGroupMode m_mode;
};

#endif // WXSUPPORT_CONTROLS_PDSIZEGROUP_H
