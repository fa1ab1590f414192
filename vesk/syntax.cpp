#include "syntax.h"

namespace vesk {

namespace {

void appendEscaped(String& out, string_view s) {
    out += '"';
    for (char c : s) {
        switch (c) {
        case '\\':
            out += "\\\\";
            break;
        case '"':
            out += "\\\"";
            break;
        case '\n':
            out += "\\n";
            break;
        case '\r':
            out += "\\r";
            break;
        case '\t':
            out += "\\t";
            break;
        default:
            out += c;
        }
    }
    out += '"';
}

bool hasLineBreak(string_view s) {
    return s.find_first_of("\r\n") != string_view::npos;
}

bool edgeBlank(string_view s) {
    return !s.empty() && (isBlank(s.front()) || isBlank(s.back()));
}

bool valueNeedsQuotes(string_view v) {
    return edgeBlank(v) || hasLineBreak(v) ||
           (v.size() >= 2 && v.front() == '"' && v.back() == '"');
}

bool keyNeedsQuotes(string_view k) {
    if (k.empty())
        return false;
    char f = k.front();
    return f == ';' || f == '#' || f == '[' || f == '"' || edgeBlank(k) || hasLineBreak(k) ||
           k.find('=') != string_view::npos;
}

bool sectionNeedsQuotes(string_view s) {
    return (!s.empty() && s.front() == '"') || edgeBlank(s) || hasLineBreak(s) ||
           s.find(']') != string_view::npos;
}

void appendQuotedIf(String& out, string_view s, bool quote) {
    if (quote)
        appendEscaped(out, s);
    else
        out.append(s.data(), s.size());
}

} // namespace

String unescape(string_view s) {
    String out;
    out.reserve(s.size());
    for (size_t i = 0; i < s.size(); ++i) {
        char c = s[i];
        if (c == '\\' && i + 1 < s.size()) {
            char d = 0;
            switch (s[i + 1]) {
            case '\\':
                d = '\\';
                break;
            case '"':
                d = '"';
                break;
            case 'n':
                d = '\n';
                break;
            case 'r':
                d = '\r';
                break;
            case 't':
                d = '\t';
                break;
            default:
                break;
            }
            if (d) {
                out += d;
                ++i;
                continue;
            }
        }
        out += c;
    }
    return out;
}

size_t closingQuote(string_view s) {
    for (size_t i = 1; i < s.size(); ++i) {
        if (s[i] == '\\')
            ++i;
        else if (s[i] == '"')
            return i;
    }
    return string_view::npos;
}

bool headerName(string_view line, string_view& name, String& decoded, bool& quoted) {
    string_view rest = line.substr(line.find('[') + 1);
    quoted = false;
    if (!rest.empty() && rest.front() == '"') {
        size_t close = closingQuote(rest);
        if (close != string_view::npos) {
            size_t j = close + 1;
            while (j < rest.size() && isBlank(rest[j]))
                ++j;
            if (j < rest.size() && rest[j] == ']') {
                decoded = unescape(rest.substr(1, close - 1));
                name = string_view(decoded.data(), decoded.size());
                quoted = true;
                return true;
            }
        }
    }
    size_t close = rest.find(']');
    if (close == string_view::npos)
        return false;
    name = trim(rest.substr(0, close));
    return true;
}

String headerLine(string_view name) {
    String out = "[";
    appendQuotedIf(out, name, sectionNeedsQuotes(name));
    out += ']';
    return out;
}

String keyLine(string_view key, string_view value) {
    String line;
    line.reserve(key.size() + value.size() + 8);
    appendQuotedIf(line, key, keyNeedsQuotes(key));
    line += '=';
    appendQuotedIf(line, value, valueNeedsQuotes(value));
    return line;
}

KeyLineParts splitKeyLine(string_view line) {
    KeyLineParts r{};
    size_t n = line.size();
    size_t b = 0;
    while (b < n && isBlank(line[b]))
        ++b;
    r.keyBeg = b;
    size_t eq = string_view::npos;
    if (b < n && line[b] == '"') {
        size_t close = closingQuote(line.substr(b));
        if (close != string_view::npos) {
            size_t after = b + close + 1, j = after;
            while (j < n && isBlank(line[j]))
                ++j;
            if (j == n || line[j] == '=') {
                r.quotedKey = true;
                r.keyEnd = after;
                eq = j < n ? j : string_view::npos;
            }
        }
    }
    if (!r.quotedKey) {
        const void* e = std::memchr(line.data() + b, '=', n - b);
        eq = e ? static_cast<size_t>(static_cast<const char*>(e) - line.data()) : string_view::npos;
        size_t ke = eq == string_view::npos ? n : eq;
        while (ke > b && isBlank(line[ke - 1]))
            --ke;
        r.keyEnd = ke;
    }
    if (eq == string_view::npos) {
        r.hasEq = false;
        r.valBeg = r.valEnd = n;
        return r;
    }
    r.hasEq = true;
    size_t vb = eq + 1, ve = n;
    while (vb < ve && isBlank(line[vb]))
        ++vb;
    while (ve > vb && isBlank(line[ve - 1]))
        --ve;
    r.valBeg = vb;
    r.valEnd = ve;
    return r;
}

void keyLineText(string_view line, const KeyLineParts& parts, string_view& key, String& keyBuf,
                 bool& keyDecoded, string_view& value, String& valueBuf, bool& valueDecoded) {
    string_view rawKey = line.substr(parts.keyBeg, parts.keyEnd - parts.keyBeg);
    keyDecoded = parts.quotedKey;
    if (keyDecoded) {
        keyBuf = unescape(rawKey.substr(1, rawKey.size() - 2));
        key = string_view(keyBuf.data(), keyBuf.size());
    } else {
        key = rawKey;
    }
    string_view rawVal = line.substr(parts.valBeg, parts.valEnd - parts.valBeg);
    valueDecoded = rawVal.size() >= 2 && rawVal.front() == '"' && rawVal.back() == '"';
    if (valueDecoded) {
        valueBuf = unescape(rawVal.substr(1, rawVal.size() - 2));
        value = string_view(valueBuf.data(), valueBuf.size());
    } else {
        value = rawVal;
    }
}

String rewriteKeyLine(string_view old, string_view key, string_view value) {
    KeyLineParts parts = splitKeyLine(old);
    String text(old.data(), parts.keyBeg);
    // The key keeps its spelling, unless it was read as plain text that a
    // new value could turn into something else (a leading '"' that the value
    // might close): then it is written quoted.
    if (!parts.quotedKey && keyNeedsQuotes(key))
        appendEscaped(text, key);
    else
        text.append(old.data() + parts.keyBeg, parts.keyEnd - parts.keyBeg);
    if (parts.hasEq) {
        text.append(old.data() + parts.keyEnd, parts.valBeg - parts.keyEnd);
        appendQuotedIf(text, value, valueNeedsQuotes(value));
        text.append(old.data() + parts.valEnd, old.size() - parts.valEnd);
    } else {
        text += '=';
        appendQuotedIf(text, value, valueNeedsQuotes(value));
        text.append(old.data() + parts.keyEnd, old.size() - parts.keyEnd);
    }
    return text;
}

} // namespace vesk
