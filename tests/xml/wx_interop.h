// wxWidgets' own XML classes, used from a source file of their own: their
// wxXmlNode and ours share a name, so no one file can see both.
#pragma once

#include <string>
#include <vector>

// Loads a UTF-8 document with wxXmlDocument and gives its element names in
// document order; empty when wxWidgets refuses it.
std::vector<std::string> WxElementNames(const std::string& utf8);

// Copies a loaded wxXmlDocument, assigns and destroys wxXmlNode objects (wx's
// copy constructor, assignment and virtual destructor run) and gives the
// element names of the copy.
std::vector<std::string> WxCopiedElementNames(const std::string& utf8);
