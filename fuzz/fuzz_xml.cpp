// Fuzz target: XML documents through wxXmlTree and wxXmlReader.
//
// The bytes are parsed in memory by wxXmlTree::Parse (as UTF-8 text, or as
// ISO-8859-1 text when they aren't UTF-8) and, written to a file, opened by
// wxXmlTree::Open and walked by wxXmlReader. The walks use every operation as
// a careful host does (each Has before its Get, IsNull on each element step,
// GetText on text nodes only), so no wxWidgets assertion may fire, and the
// answers must agree with each other: element counts, attribute presence and
// the fallbacks of the typed attribute readers.
#include "ini_common.h"

#include <wxsupport/xml/xml-reader.h>

#include <libxml/parser.h>
#include <libxml/xmlerror.h>
#include <wx/init.h>

using fuzzini::Check;
using fuzzini::Fail;

namespace {

void AssertHandler(const wxString& file, int line, const wxString& func, const wxString& cond,
                   const wxString& msg) {
    Fail("unexpected assertion \"" + std::string(cond.utf8_str()) + "\" in " +
         std::string(func.utf8_str()) + " (" + std::string(file.utf8_str()) + ":" +
         std::to_string(line) + ") " + std::string(msg.utf8_str()));
}

void Quiet(void*, const char*, ...) {}
void QuietStructured(void*, xmlErrorPtr) {}

const char* const kAttrs[] = {"a", "id", "color", "date", "name"};

void CheckNodeAttrs(const wxXmlNode& n) {
    for (const char* a : kAttrs) {
        const wxString name(a);
        if (!n.HasAttr(name)) {
            Check(n.GetAttr(name).empty(), "GetAttr of a missing attribute is not empty");
            Check(n.GetAttrAsInt(name) == 0, "GetAttrAsInt of a missing attribute");
            Check(n.GetAttrAsDouble(name) == 0.0, "GetAttrAsDouble of a missing attribute");
            Check(!n.getAttrAsColour(name).IsOk(), "getAttrAsColour of a missing attribute");
            Check(!n.getAttrAsDateTime(name).IsValid(), "getAttrAsDateTime of a missing one");
            continue;
        }
        const wxString value = n.GetAttr(name);
        const int asInt = n.GetAttrAsInt(name);
        long l = 0;
        if (!value.ToLong(&l, 10))
            Check(asInt == 0, "GetAttrAsInt of a text that isn't a number");
        n.GetAttrAsDouble(name);
        n.getAttrAsColour(name);
        n.getAttrAsDateTime(name);
    }
}

// Walks every node below n (all kinds) and checks the element walk against it.
void WalkTree(const wxXmlNode& n, int depth) {
    Check(!n.IsNull(), "null handle in the walk");
    Check(depth < 10000, "walk too deep");
    n.GetNodeName();
    Check(!n.GetType().empty(), "node kind without a word");
    const bool element = n.IsElement();
    const bool text = n.IsText();
    n.IsComment();
    if (n.IsWhitespace())
        Check(text, "IsWhitespace on a node that isn't text");
    if (text)
        n.GetText();
    if (element) {
        n.GetTextContent();
        CheckNodeAttrs(n);
    }

    // An entity reference's "children" are libxml2's entity declaration,
    // whose siblings are the other declarations: following them would cycle
    // (entities that refer to each other), so a host stops there.
    if (n.GetType() == "entity ref")
        return;
    unsigned elements = 0;
    if (n.HasChildren()) {
        wxXmlNode c = n.GetFirstChild();
        for (;;) {
            WalkTree(c, depth + 1);
            if (c.IsElement())
                ++elements;
            if (!c.HasNextSibling())
                break;
            c = c.GetNextSibling();
        }
    }
    unsigned stepped = 0;
    for (wxXmlNode e = n.GetFirstElementChild(); !e.IsNull(); e = e.GetNextElementSibling()) {
        Check(e.IsElement(), "element walk met a node that isn't an element");
        ++stepped;
    }
    if (element || depth == 0) {
        Check(n.GetChildElementCount() == elements, "GetChildElementCount differs from the walk");
        Check(stepped == elements, "element walk differs from the walk of all nodes");
    }
}

void WalkTreeOf(wxXmlTree& tree) {
    const wxXmlNode root = tree.GetRoot();
    if (!root.IsNull())
        WalkTree(root, 0);
}

void WalkReader(const std::string& path, unsigned pattern) {
    wxXmlReader r;
    if (!r.Open(path)) {
        r.Close();
        return;
    }
    for (unsigned step = 0; step < 100000; ++step) {
        // A step pattern from the input: mostly iRead, sometimes iNext.
        const bool next = (pattern >> (step % 32)) & 1 && (step % 3 == 0);
        if (!(next ? r.iNext() : r.iRead()))
            break;
        Check(!r.IsComment(), "reader stands on a comment");
        r.GetType();
        const bool element = r.IsElement();
        r.IsEndElement();
        r.IsText();
        r.IsEmptyElement();
        const wxString name = r.GetName();
        if (!name.empty())
            Check(r.CmpName(name.utf8_str()), "CmpName of the node's own name is false");
        if (element) {
            for (const char* a : kAttrs) {
                if (!r.HasAttr(a)) {
                    Check(r.GetAttr(a).empty(), "reader: GetAttr of a missing attribute");
                    Check(r.GetAttrAsBool(a, true) && !r.GetAttrAsBool(a, false),
                          "reader: GetAttrAsBool of a missing attribute isn't def");
                    int v = 12345;
                    Check(!r.AttrAsInt(a, &v) && v == 12345, "reader: AttrAsInt of a missing");
                    wxColour c(1, 2, 3);
                    Check(!r.AttrAsColor(a, c) && c == wxColour(1, 2, 3),
                          "reader: AttrAsColor of a missing attribute");
                    continue;
                }
                const wxString value = r.GetAttr(a);
                if (!value.empty())
                    Check(r.GetAttrAsBool(a, true) == (value != "0"),
                          "reader: GetAttrAsBool differs from the text");
                int v = 12345;
                if (!r.AttrAsInt(a, &v))
                    Check(v == 12345, "reader: failed AttrAsInt changed the value");
                wxColour c(1, 2, 3);
                if (!r.AttrAsColor(a, c))
                    Check(c == wxColour(1, 2, 3), "reader: failed AttrAsColor changed the colour");
            }
        }
        r.GetText();
    }
    r.IsEOF();
    r.Close();
    r.Close();
}

} // namespace

extern "C" int LLVMFuzzerInitialize(int*, char***) {
    static wxInitializer init;
    wxSetAssertHandler(AssertHandler);
    // The host's choice: keep libxml2's parse errors off the fuzzer's output.
    xmlSetGenericErrorFunc(nullptr, Quiet);
    xmlSetStructuredErrorFunc(nullptr, QuietStructured);
    return init.IsOk() ? 0 : 1;
}

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
    const char* bytes = reinterpret_cast<const char*>(data);
    unsigned pattern = 0;
    for (size_t i = 0; i < size; ++i)
        pattern = pattern * 31 + data[i];

    // In memory.
    wxString text = wxString::FromUTF8(bytes, size);
    if (text.empty() && size > 0)
        text = wxString::From8BitData(bytes, size);
    {
        wxXmlTree tree;
        if (tree.Parse(text)) {
            WalkTreeOf(tree);
            wxXmlTree copy(tree); // a shared document, freed once
            tree.Close();
            WalkTreeOf(copy);
        }
        tree.Close();
    }

    // From a file.
    const std::string path = fuzzini::ScratchFile("input.xml");
    fuzzini::WriteBytes(path, data, size);
    {
        wxXmlTree tree;
        if (tree.Open(path))
            WalkTreeOf(tree);
        tree.Close();
        tree.Close();
    }
    WalkReader(path, pattern);
    return 0;
}
