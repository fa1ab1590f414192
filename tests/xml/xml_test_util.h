// Helpers of the XML tests: quiet libxml2's error output in the test process
// and write small documents into a temporary directory.
#pragma once

#include "tempdir.h"

#include <libxml/xmlerror.h>

#include <string>

// libxml2 prints every parse error of the malformed documents on standard
// error; the tests feed it many on purpose. Only the test process does this.
inline void IgnoreLibxmlMessage(void*, const char*, ...) {}
inline void IgnoreLibxmlError(void*, xmlErrorPtr) {}
inline void QuietLibxml() {
    xmlSetGenericErrorFunc(nullptr, IgnoreLibxmlMessage);
    xmlSetStructuredErrorFunc(nullptr, IgnoreLibxmlError);
}

// Writes bytes to dir/name and gives the path.
inline std::string WriteDoc(const TempDir& dir, const std::string& name, const std::string& bytes) {
    const std::string path = dir.file(name);
    WriteFileBytes(path, bytes);
    return path;
}
