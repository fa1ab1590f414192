// One process with wxWidgets' XML classes and ours: both work, and the
// special members of wx's wxXmlNode resolve to wxWidgets' own library.
#include <wxsupport/xml/xml-reader.h>

#include "tempdir.h"
#include "wx_interop.h"
#include "xml_test_util.h"

#include <gtest/gtest.h>

#include <dlfcn.h>
#include <string>
#include <vector>

namespace {

const char* const kDoc = "<?xml version=\"1.0\" encoding=\"UTF-8\"?>\n"
                         "<report version=\"1\">\n"
                         "  <system><os>Linux</os></system>\n"
                         "  <modules><module name=\"a\"/><module name=\"b\"/></modules>\n"
                         "</report>\n";

std::vector<std::string> OurElementNames(const wxXmlNode& element) {
    std::vector<std::string> names{std::string(element.GetNodeName().utf8_str())};
    for (wxXmlNode c = element.GetFirstElementChild(); !c.IsNull(); c = c.GetNextElementSibling()) {
        const std::vector<std::string> sub = OurElementNames(c);
        names.insert(names.end(), sub.begin(), sub.end());
    }
    return names;
}

TEST(WxInterop, BothXmlNodeClassesWork) {
    const std::vector<std::string> expected{"report",  "system", "os",
                                            "modules", "module", "module"};
    EXPECT_EQ(WxElementNames(kDoc), expected);
    EXPECT_EQ(WxCopiedElementNames(kDoc), expected);

    wxXmlTree tree;
    ASSERT_TRUE(tree.Parse(kDoc));
    const wxXmlNode root = tree.GetRoot();
    wxXmlNode copy(root);
    wxXmlNode moved(std::move(copy));
    copy = moved;
    moved = std::move(copy);
    EXPECT_EQ(OurElementNames(moved), expected);

    TempDir dir;
    const std::string path = WriteDoc(dir, "report.xml", kDoc);
    wxXmlReader reader;
    ASSERT_TRUE(reader.Open(wxString::FromUTF8(path)));
    std::vector<std::string> names;
    while (reader.iRead()) {
        if (reader.IsElement())
            names.push_back(std::string(reader.GetName().utf8_str()));
    }
    EXPECT_EQ(names, expected);

    // And wx's classes again, after ours have been used and destroyed.
    EXPECT_EQ(WxCopiedElementNames(kDoc), expected);
}

TEST(WxInterop, WxXmlNodeMembersComeFromWxWidgets) {
    // Copy and move constructors, assignments and destructors that both
    // classes could have: none may resolve into libwxsupport.
    const char* const mangled[] = {
        "_ZN9wxXmlNodeC1ERKS_", "_ZN9wxXmlNodeC2ERKS_", "_ZN9wxXmlNodeaSERKS_",
        "_ZN9wxXmlNodeD0Ev",    "_ZN9wxXmlNodeD1Ev",    "_ZN9wxXmlNodeD2Ev",
        "_ZN9wxXmlNodeC1EOS_",  "_ZN9wxXmlNodeC2EOS_",  "_ZN9wxXmlNodeaSEOS_"};
    int fromWx = 0;
    for (const char* name : mangled) {
        void* address = dlsym(RTLD_DEFAULT, name);
        if (!address)
            continue;
        Dl_info info{};
        ASSERT_NE(dladdr(address, &info), 0) << name;
        const std::string file = info.dli_fname ? info.dli_fname : "";
        EXPECT_NE(file.find("libwx_baseu_xml"), std::string::npos) << name << " from " << file;
        ++fromWx;
    }
    EXPECT_GE(fromWx, 6); // wx defines its copy members and destructors

    // libwxsupport itself defines none of them.
    void* ours = dlopen("libwxsupport.so.0", RTLD_LAZY | RTLD_NOLOAD);
    ASSERT_NE(ours, nullptr);
    for (const char* name : mangled) {
        void* address = dlsym(ours, name);
        if (!address)
            continue;
        Dl_info info{};
        ASSERT_NE(dladdr(address, &info), 0);
        EXPECT_EQ(std::string(info.dli_fname).find("libwxsupport"), std::string::npos) << name;
    }
    dlclose(ours);
}

} // namespace
