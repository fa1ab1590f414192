/// \file
/// XML access over libxml2: a forward reader, a writer and a read-only document
/// tree, with attributes as text, integers, booleans, colours and dates.
///
/// Files are UTF-8 with two blanks of indentation a level. Names given as
/// `const char*` reach libxml2 untouched and must be UTF-8 (or plain ASCII).
///
/// Ownership. Each reader, writer and tree owns one libxml2 handle. Copies and
/// assignments copy the handle and share it: a count kept beside the handle
/// releases it when the last object holding it closes or dies, so the handle
/// is released exactly once whichever copy goes first. Close() drops this
/// object's share; the handle stays usable through the other copies.
///
/// Entity references in attribute values are expanded when a value is read.
/// An attribute whose expanded value would exceed 4 MiB (kMaxExpandedAttr in
/// the library) is answered as an unreadable one: an empty string, false, 0,
/// an invalid colour or wxDefaultDateTime; HasAttr still reports it present.
///
/// Documents are parsed with libxml2's default options: entities are not
/// substituted and no external DTD or entity is loaded. libxml2 reports parse
/// errors on standard error; this library installs no handler.
#ifndef WXSUPPORT_XML_XML_READER_H
#define WXSUPPORT_XML_XML_READER_H

#include <wxsupport/defs.h>

#include <libxml/tree.h>
#include <libxml/xmlreader.h>
#include <libxml/xmlwriter.h>
#include <wx/colour.h>
#include <wx/datetime.h>
#include <wx/string.h>

/// Word for a libxml2 node kind (xmlElementType, 1 to 21): "element", "text",
/// "comment", ... A number without a word asserts and gives an empty string.
WXSUPPORT_API wxString node_type_as_string(int type);

/// One pass over an XML file, front to back, without building a tree.
/// Comments and white space between elements are skipped.
///
/// \code
///   wxXmlReader r;
///   if (r.Open(path)) {
///       while (r.iRead()) {
///           if (r.IsElement() && r.CmpName("item"))
///               use(r.GetAttr("id"));
///       }
///       bool complete = r.IsEOF(); // false: the file is malformed
///       r.Close();
///   }
/// \endcode
///
/// Attributes are read while the reader stands on their element. The end flag
/// is set by iRead/iNext only; Open and Close leave it as it is.
class WXSUPPORT_API wxXmlReader {
public:
    /// A reader that holds no file yet.
    wxXmlReader();
    /// A copy that shares the other reader's handle and end flag.
    wxXmlReader(const wxXmlReader& other);
    /// Shares the other reader's handle and copies its end flag.
    wxXmlReader& operator=(const wxXmlReader& other);
    /// Drops this reader's share of the handle, as Close does.
    ~wxXmlReader();

    /// True when libxml2 gave a reader for the path (a directory gives one too;
    /// its first iRead fails). A reader held before is released first.
    bool Open(const wxString& path);
    /// Drops this reader's share of the handle; safe to repeat.
    void Close();

    /// Next node in document order, end tags included. False at the end of
    /// the document (IsEOF true) or on malformed input (IsEOF unchanged).
    bool iRead();
    /// As iRead, but skips the current node's subtree.
    bool iNext();
    /// True once iRead or iNext has reached the end of a well-formed document.
    bool IsEOF();

    /// Word for the current node's kind as node_type_as_string gives it; for
    /// the reader's own kinds 13 to 17: "whitespace", "significant whitespace",
    /// "end element", "end entity", "xml declaration". Asserts before a read.
    wxString GetType();
    /// True on a start tag (or a self-closing element).
    bool IsElement();
    /// True on an end tag.
    bool IsEndElement();
    /// True on a text node.
    bool IsText();
    /// Works, but comments are skipped by iRead/iNext.
    bool IsComment();
    /// Self-closing element: no end tag follows. Any non-zero answer of
    /// libxml2 counts, its -1 for "no current node" too.
    bool IsEmptyElement();

    /// True when the current node's name equals name (case counts).
    bool CmpName(const char* name);
    /// Qualified name of the current node ("#text" for a text node).
    wxString GetName();
    /// Value, or an empty string when missing.
    wxString GetAttr(const char* name);
    /// True when present, with an empty value too.
    bool HasAttr(const char* name);
    /// Missing: def. "0": false. Any other value, the empty one too: true.
    bool GetAttrAsBool(const char* name, bool def);
    /// Stores a whole decimal number and gives true; else false, *value unchanged.
    bool AttrAsInt(const char* name, int* value);
    /// Stores a colour in any wxColour text form; else false, value unchanged.
    bool AttrAsColor(const char* name, wxColour& value);
    /// Text content of the current node, or empty; does not move the reader.
    wxString GetText();

private:
    struct Share;

    xmlTextReaderPtr reader;
    bool eof;
    Share* share; // the objects sharing reader; null when none is held
};

/// Writes an indented UTF-8 XML file, front to back.
///
/// \code
///   wxXmlWriter w;
///   w.Open(path);
///   w.StartDocument();
///   w.StartElement("config");
///   w.WriteAttr("size", 12);
///   w.StartElement("name");
///   w.WriteText(wxS("Hello & welcome"));
///   w.EndElement();
///   w.EndElement();
///   w.EndDocument();
///   w.Close();
/// \endcode
///
/// Each operation gives false when libxml2 refuses it (wrong order, no file);
/// a failed operation leaves the file open, and Close is still right.
class WXSUPPORT_API wxXmlWriter {
public:
    /// A writer that holds no file yet.
    wxXmlWriter();
    /// A copy that shares the other writer's handle.
    wxXmlWriter(const wxXmlWriter& other);
    /// Shares the other writer's handle.
    wxXmlWriter& operator=(const wxXmlWriter& other);
    /// Drops this writer's share of the handle, as Close does.
    ~wxXmlWriter();

    /// Creates the file, indented by two blanks a level. A writer held before
    /// is closed first.
    bool Open(const wxString& path);
    /// XML declaration naming UTF-8.
    bool StartDocument();
    /// Opens an element; its attributes follow, then its content.
    bool StartElement(const char* name);
    /// Attribute of the open element, its value escaped by libxml2.
    bool WriteAttr(const char* name, const wxString& value);
    /// Attribute of the open element, its name converted to UTF-8.
    bool WriteAttr(const wxString& name, const wxString& value);
    /// Decimal.
    bool WriteAttr(const char* name, int value);
    /// Decimal, the name converted to UTF-8.
    bool WriteAttr(const wxString& name, int value);
    /// "#rrggbb", lower-case hex; alpha is not written. An invalid colour
    /// writes nothing and gives false.
    bool WriteAttr(const char* name, const wxColour& value);
    /// "YYYY-MM-DDTHH:MM:SS" in the date's local clock, whole seconds. An
    /// invalid date writes nothing and gives false.
    bool writeAttr(const char* name, const wxDateTime& value);
    /// Escaped by libxml2.
    bool WriteText(const wxString& text);
    /// Closes the innermost open element.
    bool EndElement();
    /// Closes every element still open.
    bool EndDocument();
    /// Flushes; releases the handle when no copy shares it.
    void Close();
    /// Always "Unhandled XML-error.".
    wxString GetError();

private:
    struct Share;

    xmlTextWriterPtr writer;
    Share* share; // the objects sharing writer; null when none is held
};

class wxXmlNode;

/// A whole XML document in memory, read-only. Copies share the document.
/// Node handles taken from it are valid until the tree (and every copy
/// sharing its document) has closed or died.
class WXSUPPORT_API wxXmlTree {
public:
    /// A tree that holds no document yet.
    wxXmlTree();
    /// A copy that shares the other tree's document.
    wxXmlTree(const wxXmlTree& other);
    /// Shares the other tree's document and drops this tree's share of its own.
    wxXmlTree& operator=(const wxXmlTree& other);
    /// Drops this tree's share of its documents, as Close does.
    virtual ~wxXmlTree();

    /// Parses a file; false when it is missing or malformed. Asserts when a
    /// document is held; that one then stays alive until Close.
    bool Open(const wxString& path);
    /// Parses a UTF-8 text; the same rules as Open.
    bool Parse(const wxString& xml);
    /// Drops this tree's share of its documents; safe to repeat.
    void Close();
    /// Root element; a null handle (and an assertion) when closed.
    wxXmlNode GetRoot();

private:
    struct Share;

    xmlDocPtr doc;
    xmlNodePtr root;
    Share* share; // keeps doc (and documents replaced without Close) alive
};

/// A handle on one node of a wxXmlTree; a plain value that does not own the
/// node. A null handle reports the end of an element walk: test IsNull first.
class WXSUPPORT_API wxXmlNode {
public:
    // Copy, move and destruction are trivial and inline: never emitted as
    // symbols, so they cannot collide with wxWidgets' own class of this name.

    /// A copy of the handle; both name the same node.
    wxXmlNode(const wxXmlNode&) = default;
    /// A copy of the handle; both name the same node.
    wxXmlNode(wxXmlNode&&) = default;
    /// Makes this handle name the other's node.
    wxXmlNode& operator=(const wxXmlNode&) = default;
    /// Makes this handle name the other's node.
    wxXmlNode& operator=(wxXmlNode&&) = default;
    /// Leaves the node alone: the tree owns it.
    ~wxXmlNode() = default;

    /// True for the handle that stands for no node (the end of a walk).
    bool IsNull() const;
    /// Name of the node (an element's tag, "text" for a text node); empty for
    /// a null handle.
    wxString GetNodeName() const;
    /// node_type_as_string of the node's kind.
    wxString GetType() const;
    /// True for an element.
    bool IsElement() const;
    /// Text node (CDATA is not text here).
    bool IsText() const;
    /// True for a comment.
    bool IsComment() const;
    /// Text node holding only blanks, tabs, CR and LF, or nothing.
    bool IsWhitespace() const;
    /// False for a leaf, and for an entity reference: the walk over all nodes
    /// does not go into the entity's declaration.
    bool HasChildren() const;
    /// Element children only, not deeper.
    unsigned int GetChildElementCount() const;
    /// First child of any kind; asserts when there is none.
    wxXmlNode GetFirstChild() const;
    /// Null handle when there is none.
    wxXmlNode GetFirstElementChild() const;
    /// True when a sibling of any kind follows.
    bool HasNextSibling() const;
    /// Next sibling of any kind; asserts when there is none.
    wxXmlNode GetNextSibling() const;
    /// Null handle when there is none.
    wxXmlNode GetNextElementSibling() const;
    /// True when present, with an empty value too.
    bool HasAttr(const wxString& name) const;
    /// Value, or an empty string.
    wxString GetAttr(const wxString& name) const;
    /// Base 10; 0 when missing or not a whole number.
    int GetAttrAsInt(const wxString& name) const;
    /// Current locale's decimal point; 0.0 when missing or not a number.
    double GetAttrAsDouble(const wxString& name) const;
    /// Invalid colour when missing or not a colour.
    wxColour getAttrAsColour(const wxString& name) const;
    /// "YYYY-MM-DDTHH:MM:SS"; wxDefaultDateTime when missing or not whole.
    wxDateTime getAttrAsDateTime(const wxString& name) const;
    /// Content of a text node; asserts on other kinds.
    wxString GetText() const;
    /// Text of an element whose only child is a text node, else empty;
    /// asserts on other kinds.
    wxString GetTextContent() const;

private:
    friend class wxXmlTree;
    explicit wxXmlNode(_xmlNode* n) : node(n) {}

    _xmlNode* node;
};

#endif // WXSUPPORT_XML_XML_READER_H
