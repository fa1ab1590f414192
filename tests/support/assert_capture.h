// wxWidgets assertions in tests: a handler installed by the test mains records
// every assertion. An assertion that no AssertCapture expects fails the test.
#pragma once

#include <wx/string.h>

#include <vector>

struct CapturedAssert {
    wxString file;
    int line = 0;
    wxString func;
    wxString cond;
    wxString msg;
};

// While an AssertCapture lives, assertions are collected instead of failing
// the running test.
class AssertCapture {
public:
    AssertCapture();
    ~AssertCapture();
    AssertCapture(const AssertCapture&) = delete;
    AssertCapture& operator=(const AssertCapture&) = delete;

    const std::vector<CapturedAssert>& asserts() const { return m_asserts; }
    size_t count() const { return m_asserts.size(); }
    // Conditions of the captured assertions, in order.
    std::vector<wxString> conditions() const;
    void clear() { m_asserts.clear(); }

    // Called by the installed handler.
    static void Record(const CapturedAssert& a);

private:
    std::vector<CapturedAssert> m_asserts;
    AssertCapture* m_previous;
};

// Installs the recording handler; the test mains call it once.
void InstallCapturingAssertHandler();
