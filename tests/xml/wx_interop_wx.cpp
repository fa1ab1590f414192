#include "wx_interop.h"

#include <wx/mstream.h>
#include <wx/xml/xml.h>

namespace {

void Collect(const wxXmlNode* node, std::vector<std::string>& names) {
    for (; node; node = node->GetNext()) {
        if (node->GetType() == wxXML_ELEMENT_NODE) {
            names.push_back(std::string(node->GetName().utf8_str()));
            Collect(node->GetChildren(), names);
        }
    }
}

bool Load(wxXmlDocument& doc, const std::string& utf8) {
    wxMemoryInputStream in(utf8.data(), utf8.size());
    return doc.Load(in);
}

} // namespace

std::vector<std::string> WxElementNames(const std::string& utf8) {
    std::vector<std::string> names;
    wxXmlDocument doc;
    if (Load(doc, utf8))
        Collect(doc.GetRoot(), names);
    return names;
}

std::vector<std::string> WxCopiedElementNames(const std::string& utf8) {
    std::vector<std::string> names;
    wxXmlDocument doc;
    if (!Load(doc, utf8))
        return names;
    wxXmlDocument copy(doc);
    wxXmlNode assigned(wxXML_ELEMENT_NODE, "placeholder");
    assigned = *copy.GetRoot();
    wxXmlNode* again = new wxXmlNode(assigned);
    names.push_back(std::string(again->GetName().utf8_str()));
    delete again;
    Collect(copy.GetRoot()->GetChildren(), names);
    return names;
}
