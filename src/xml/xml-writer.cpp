// wxXmlWriter: an indented UTF-8 file through libxml2's text writer.
#include <wxsupport/xml/xml-reader.h>

#include <wx/translation.h>

#include <new>

namespace {

const xmlChar* X(const char* s) {
    return reinterpret_cast<const xmlChar*>(s);
}

// Flushes what the writer holds and drops this object's share of it; the
// last share frees it.
void DropShare(xmlTextWriterPtr& writer, unsigned long*& shares) {
    if (writer)
        xmlTextWriterFlush(writer);
    if (shares && --*shares == 0) {
        xmlFreeTextWriter(writer);
        delete shares;
    }
    writer = nullptr;
    shares = nullptr;
}

} // namespace

wxXmlWriter::wxXmlWriter() : writer(nullptr), shares(nullptr) {}

wxXmlWriter::wxXmlWriter(const wxXmlWriter& other) : writer(other.writer), shares(other.shares) {
    if (shares)
        ++*shares;
}

wxXmlWriter& wxXmlWriter::operator=(const wxXmlWriter& other) {
    if (&other == this)
        return *this; // dropping a share flushes; nothing to do here
    if (other.shares)
        ++*other.shares;
    DropShare(writer, shares);
    writer = other.writer;
    shares = other.shares;
    return *this;
}

wxXmlWriter::~wxXmlWriter() {
    DropShare(writer, shares);
}

bool wxXmlWriter::Open(const wxString& path) {
    DropShare(writer, shares);
    writer = xmlNewTextWriterFilename(path.ToUTF8().data(), 0);
    if (!writer)
        return false;
    shares = new (std::nothrow) unsigned long(1);
    if (!shares) {
        xmlFreeTextWriter(writer);
        writer = nullptr;
        return false;
    }
    xmlTextWriterSetIndent(writer, 1);
    xmlTextWriterSetIndentString(writer, X("  "));
    return true;
}

bool wxXmlWriter::StartDocument() {
    return xmlTextWriterStartDocument(writer, nullptr, "UTF-8", nullptr) >= 0;
}

bool wxXmlWriter::StartElement(const char* name) {
    return xmlTextWriterStartElement(writer, X(name)) >= 0;
}

bool wxXmlWriter::WriteAttr(const char* name, const wxString& value) {
    return xmlTextWriterWriteAttribute(writer, X(name), X(value.mb_str(wxConvUTF8).data())) >= 0;
}

bool wxXmlWriter::WriteAttr(const wxString& name, const wxString& value) {
    return WriteAttr(name.mb_str(wxConvUTF8).data(), value);
}

bool wxXmlWriter::WriteAttr(const char* name, int value) {
    return xmlTextWriterWriteFormatAttribute(writer, X(name), "%d", value) >= 0;
}

bool wxXmlWriter::WriteAttr(const wxString& name, int value) {
    return WriteAttr(name.mb_str(wxConvUTF8).data(), value);
}

// An invalid colour or date has no text form: it writes nothing and gives
// false, rather than wxWidgets' assertions and a made-up value.
bool wxXmlWriter::WriteAttr(const char* name, const wxColour& value) {
    if (!value.IsOk())
        return false;
    return xmlTextWriterWriteFormatAttribute(
               writer, X(name), "#%02x%02x%02x", static_cast<unsigned>(value.Red()),
               static_cast<unsigned>(value.Green()), static_cast<unsigned>(value.Blue())) >= 0;
}

bool wxXmlWriter::writeAttr(const char* name, const wxDateTime& value) {
    if (!value.IsValid())
        return false;
    return xmlTextWriterWriteAttribute(
               writer, X(name), X(value.FormatISOCombined('T').mb_str(wxConvUTF8).data())) >= 0;
}

bool wxXmlWriter::WriteText(const wxString& text) {
    return xmlTextWriterWriteString(writer, X(text.mb_str(wxConvUTF8).data())) >= 0;
}

bool wxXmlWriter::EndElement() {
    return xmlTextWriterEndElement(writer) >= 0;
}

bool wxXmlWriter::EndDocument() {
    return xmlTextWriterEndDocument(writer) >= 0;
}

void wxXmlWriter::Close() {
    DropShare(writer, shares);
}

wxString wxXmlWriter::GetError() {
    return _("Unhandled XML-error.");
}
