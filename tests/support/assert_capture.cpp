#include "assert_capture.h"

#include <gtest/gtest.h>
#include <wx/debug.h>

namespace {
AssertCapture* g_current = nullptr;

void CapturingHandler(const wxString& file, int line, const wxString& func, const wxString& cond,
                      const wxString& msg) {
    CapturedAssert a{file, line, func, cond, msg};
    AssertCapture::Record(a);
}
} // namespace

AssertCapture::AssertCapture() : m_previous(g_current) {
    g_current = this;
}

AssertCapture::~AssertCapture() {
    g_current = m_previous;
}

std::vector<wxString> AssertCapture::conditions() const {
    std::vector<wxString> out;
    for (const auto& a : m_asserts)
        out.push_back(a.cond);
    return out;
}

void AssertCapture::Record(const CapturedAssert& a) {
    if (g_current) {
        g_current->m_asserts.push_back(a);
        return;
    }
    ADD_FAILURE() << "unexpected wxWidgets assertion \"" << a.cond.utf8_str() << "\" in "
                  << a.func.utf8_str() << " (" << a.file.utf8_str() << ":" << a.line << ")"
                  << (a.msg.empty() ? "" : ": ") << a.msg.utf8_str();
}

void InstallCapturingAssertHandler() {
    wxSetAssertHandler(CapturingHandler);
}
