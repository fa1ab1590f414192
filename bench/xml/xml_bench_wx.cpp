// wxWidgets' own XML document, in a source file of its own: its wxXmlNode
// and ours share a name.
#include <wx/xml/xml.h>

// Loads the file with wxXmlDocument and counts its elements; -1 on failure.
long WxDocumentElements(const char* path) {
    wxXmlDocument doc;
    if (!doc.Load(wxString::FromUTF8(path)))
        return -1;
    long count = 0;
    const wxXmlNode* node = doc.GetRoot();
    while (node) {
        if (node->GetType() == wxXML_ELEMENT_NODE)
            ++count;
        if (node->GetChildren()) {
            node = node->GetChildren();
            continue;
        }
        while (node && !node->GetNext())
            node = node->GetParent();
        if (node)
            node = node->GetNext();
    }
    return count;
}
