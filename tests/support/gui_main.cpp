// Main of the GUI test programs: a wxApp on a real X display (GTK pinned to
// X11, so that wxUIActionSimulator can use XTest), every assertion going to
// the capturing handler, and the tests run from OnRun with an event loop
// active, which the helpers of gui_helpers.h pump in bounded steps.
#include "assert_capture.h"

#include <gtest/gtest.h>
#include <wx/app.h>
#include <wx/evtloop.h>
#include <wx/image.h>
#include <wx/init.h>
#include <wx/log.h>

#include <cstdio>
#include <cstdlib>
#include <memory>

namespace {

class GuiTestApp : public wxApp {
public:
    bool OnInit() override {
        // wxApp::OnInit would parse the command line, which is GoogleTest's.
        InstallCapturingAssertHandler();
        wxInitAllImageHandlers();
        // Log messages go to stderr, never into a message box.
        delete wxLog::SetActiveTarget(new wxLogStderr);
        // Tests create and destroy frames of their own.
        SetExitOnFrameDelete(false);
        return true;
    }

    int OnRun() override {
        std::unique_ptr<wxEventLoopBase> loop(CreateMainLoop());
        wxEventLoopActivator activate(loop.get());
        return RUN_ALL_TESTS();
    }
};

} // namespace

wxIMPLEMENT_APP_NO_MAIN(GuiTestApp);

int main(int argc, char** argv) {
    testing::InitGoogleTest(&argc, argv);
    setenv("GDK_BACKEND", "x11", 1);
    setenv("NO_AT_BRIDGE", "1", 1);
    const char* display = std::getenv("DISPLAY");
    if (!display || !*display) {
        std::fprintf(stderr, "%s: no X display; run it through scripts/with-xvfb.sh\n", argv[0]);
        return 2;
    }
    static_cast<void>(&wxGetApp); // the macro's accessor, unused: clang would warn
    return wxEntry(argc, argv);
}
