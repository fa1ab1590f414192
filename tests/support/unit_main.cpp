// Main of the test programs that need no display: wxWidgets' base is
// initialised and every assertion goes to the capturing handler.
#include "assert_capture.h"

#include <gtest/gtest.h>
#include <wx/init.h>

int main(int argc, char** argv) {
    testing::InitGoogleTest(&argc, argv);
    wxInitializer init;
    if (!init.IsOk())
        return 2;
    InstallCapturingAssertHandler();
    return RUN_ALL_TESTS();
}
