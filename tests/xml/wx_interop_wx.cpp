// wxWidgets' XML classes, apart from ours (see wx_interop_test.cpp).
#include <wx/mstream.h>
#include <wx/xml/xml.h>

#include <string>
#include <vector>

static void Collect(const wxXmlNode* node, std::vector<std::string>& names) {
    for (; node; node = node->GetNext()) {
        if (node->GetType() == wxXML_ELEMENT_NODE) {
            names.push_back(std::string(node->GetName().utf8_str()));
            Collect(node->GetChildren(), names);
        }
    }
}

std::vector<std::string> WxElementNames(const std::string& utf8) {
    std::vector<std::string> names;
    wxMemoryInputStream in(utf8.data(), utf8.size());
    wxXmlDocument doc;
    if (!doc.Load(in))
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
