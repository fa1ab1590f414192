#include <gtest/gtest.h>
#include <wxsupport/config/inifile.h>
TEST(Store, Smoke) {
    inifile h = inifile_new();
    inifile_write_string(h, "a", "b", "c");
    EXPECT_STREQ("c", inifile_read_string(h, "A", "B", "x"));
    inifile_delete(h);
}
