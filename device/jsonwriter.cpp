#include "device/jsonwriter.h"

#include <cstdio>

JSONWriter::JSONWriter(std::size_t nReserve) {
    m_text.reserve(nReserve);
}

JSONWriter& JSONWriter::Member(std::string_view sKey, std::string_view sValue) {
    StartItem(sKey);
    Quote(sValue);
    return *this;
}

JSONWriter& JSONWriter::Bare(std::string_view sKey, std::string_view sValue) {
    StartItem(sKey);
    m_text += sValue;
    return *this;
}

void JSONWriter::StartItem(std::string_view sKey) {
    if (m_nDepth > 0) {
        m_text += m_bFirst ? "\n" : ",\n";
        m_text.append(m_nDepth, '\t');
    }
    m_bFirst = false;
    if (!sKey.empty()) {
        Quote(sKey);
        m_text += " : ";
    }
}

JSONWriter& JSONWriter::Open(std::string_view sKey, char bracket) {
    StartItem(sKey);
    m_text += bracket;
    ++m_nDepth;
    m_bFirst = true;
    return *this;
}

JSONWriter& JSONWriter::Close(char bracket) {
    --m_nDepth;
    m_text += '\n';
    m_text.append(m_nDepth, '\t');
    m_text += bracket;
    m_bFirst = false;
    return *this;
}

void JSONWriter::Quote(std::string_view sText) {
    m_text += '"';
    for (const char c : sText.substr(0, sText.find('\0'))) {
        if (c == '"' || c == '\\') {
            m_text += '\\';
            m_text += c;
        } else if (static_cast<unsigned char>(c) < 0x20) {
            char escape[8];
            std::snprintf(escape, sizeof escape, "\\u%04x", static_cast<unsigned>(c));
            m_text += escape;
        } else {
            m_text += c;
        }
    }
    m_text += '"';
}
