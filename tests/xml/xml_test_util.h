// XML tests' fixture: silences libxml2 on the malformed input, writes documents.
#pragma once

#include "assert_capture.h"
#include "tempdir.h"

#include <gtest/gtest.h>
#include <libxml/xmlerror.h>
#include <wx/string.h>

#include <string>
#include <vector>

using Names = std::vector<std::string>;

inline std::string Utf8(const wxString& s) {
    return std::string(s.utf8_str());
}

inline void QuietLibxml() {
    xmlSetStructuredErrorFunc(nullptr, [](void*, xmlErrorPtr) {});
}

class XmlTest : public testing::Test {
protected:
    void SetUp() override { QuietLibxml(); }
    wxString Path(const std::string& name) const { return wxString::FromUTF8(dir.file(name)); }
    wxString Doc(const std::string& bytes) {
        const std::string name = "doc" + std::to_string(++count) + ".xml";
        WriteFileBytes(dir.file(name), bytes);
        return Path(name);
    }

    TempDir dir;
    int count = 0;
};

// Conditions that fn asserted, one after the other.
template <class Fn>
std::string Asserted(Fn fn) {
    AssertCapture capture;
    fn();
    std::string out;
    for (const wxString& c : capture.conditions())
        out += Utf8(c);
    return out;
}
