// wxWidgets' XML classes and ours in one process: both work, no symbol clashes.
#include <wxsupport/xml/xml-reader.h>

#include "xml_test_util.h"

#include <dlfcn.h>

// wx_interop_wx.cpp: loads with wxXmlDocument, copies and assigns wx's nodes,
// gives the copy's element names.
std::vector<std::string> WxElementNames(const std::string& utf8);

static const char* const kDoc =
    "<report version=\"1\"><system><os>Linux</os></system>\n"
    "<modules><module name=\"a\"/><module name=\"b\"/></modules></report>";

TEST(WxInterop, BothXmlNodeClassesWork) {
    const Names expected{"report", "system", "os", "modules", "module", "module"};
    EXPECT_EQ(WxElementNames(kDoc), expected);
    wxXmlTree tree;
    ASSERT_TRUE(tree.Parse(kDoc));
    wxXmlNode copy(tree.GetRoot()), moved(std::move(copy));
    copy = moved;
    moved = std::move(copy);
    EXPECT_EQ(moved.GetFirstElementChild().GetNextElementSibling().GetChildElementCount(), 2u);
    EXPECT_EQ(WxElementNames(kDoc), expected); // wx's again, after ours
}

TEST(WxInterop, LibraryDefinesNoWxXmlNodeMember) {
    void* ours = dlopen("libwxsupport.so.0", RTLD_LAZY | RTLD_NOLOAD);
    ASSERT_NE(ours, nullptr);
    for (const char* name : {"_ZN9wxXmlNodeC1ERKS_", "_ZN9wxXmlNodeC2ERKS_", "_ZN9wxXmlNodeaSERKS_",
                             "_ZN9wxXmlNodeD0Ev", "_ZN9wxXmlNodeD1Ev", "_ZN9wxXmlNodeD2Ev",
                             "_ZN9wxXmlNodeC1EOS_", "_ZN9wxXmlNodeC2EOS_", "_ZN9wxXmlNodeaSEOS_"}) {
        void* address = dlsym(ours, name); // found in a dependency too
        if (!address)
            continue;
        Dl_info info{};
        ASSERT_NE(dladdr(address, &info), 0) << name;
        EXPECT_EQ(std::string(info.dli_fname).find("libwxsupport"), std::string::npos)
            << name << " is defined in " << info.dli_fname;
    }
    EXPECT_NE(dlsym(RTLD_DEFAULT, "_ZN9wxXmlNodeD1Ev"), nullptr); // wx's own is there
    dlclose(ours);
}
