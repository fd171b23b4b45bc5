#include "server/show/jsontext.h"

#include <QJsonDocument>

#include <algorithm>
#include <array>
#include <map>
#include <set>
#include <simdjson.h>
#include <stdexcept>

namespace {

constexpr std::size_t LongestQuote = 100;
constexpr int MostSeconds = 86400;
/// Which some editors put before UTF-8.
constexpr std::string_view Mark = "\xEF\xBB\xBF";

bool BeginsCharacter(char c) {
    return (static_cast<unsigned char>(c) & 0xC0U) != 0x80U;
}

/// What is wrong at a place, by what people mostly mean by what they wrote there.
std::string Mistake(std::string_view text, std::size_t at, const QJsonParseError& error) {
    static constexpr std::array Quotes{"'",      "\u2018", "\u2019", "\u201a", "\u201c",
                                       "\u201d", "\u201e", "\u00ab", "\u00bb"};
    const auto begins = [&](std::string_view s) { return text.compare(at, s.size(), s) == 0; };
    const auto isDigit = [&](std::size_t n) { return n < text.size() && text[n] >= '0' && text[n] <= '9'; };
    if (begins("//") || begins("/*") || begins("#")) {
        return "a comment, which JSON does not know";
    }
    if (std::any_of(Quotes.begin(), Quotes.end(), begins)) {
        return "texts stand in straight double quotes: \"\"";
    }
    if (at > 1 && isDigit(at - 2) && text[at - 1] == ',' && isDigit(at)) {
        return "a number with a comma: 1.5 has a point";
    }
    switch (error.error) {
        case QJsonParseError::UnterminatedObject:
        case QJsonParseError::UnterminatedArray:
        case QJsonParseError::MissingValueSeparator:
            return "a , or a closing } or ] is missing";
        case QJsonParseError::MissingNameSeparator:
            return "a : is missing behind a key";
        case QJsonParseError::MissingObject:
            return "a , too many";
        case QJsonParseError::IllegalValue:
        case QJsonParseError::IllegalNumber:
            return "no value begins like this";
        default:
            return error.errorString().toStdString();
    }
}

std::size_t SkipSpace(std::string_view text, std::size_t at) {
    return std::min(text.find_first_not_of(" \t\r\n", at), text.size());
}

/// Behind the value that begins somewhere in good JSON: a text, something in brackets, or a bare word.
std::size_t EndOf(std::string_view text, std::size_t at) {
    for (int nDepth = 0;; ++at) {
        if (text[at] == '"') {
            for (++at; text[at] != '"'; ++at) {
                at += text[at] == '\\' ? 1U : 0U;
            }
        } else if (text[at] == '{' || text[at] == '[') {
            ++nDepth;
        } else if (text[at] == '}' || text[at] == ']') {
            --nDepth;
        } else if (nDepth == 0) {
            return text.find_first_of(",]} \t\r\n", at);
        }
        if (nDepth == 0) {
            return at + 1;
        }
    }
}

QByteArray Bytes(std::string_view sRaw) {
    return QByteArray::fromRawData(sRaw.data(), static_cast<int>(sRaw.size()));
}

/// Of a text in its quotes.
std::string Decoded(std::string_view sRaw) {
    if (sRaw.find('\\') == std::string_view::npos) {
        return std::string(sRaw.substr(1, sRaw.size() - 2));
    }
    return QJsonDocument::fromJson('[' + Bytes(sRaw) + ']')[0].toString().toStdString();
}

}  // namespace

JsonText::JsonText(const QString& sPath, const QByteArray& text)
    : m_sPath(sPath), m_text(text.toStdString()) {
    bool bText = false;
    for (std::size_t at = 0; at < m_text.size(); ++at) {
        if (bText && m_text[at] == '\n') {
            Fail(at, "not JSON: a text does not end on its line");
        }
        bText = bText != (m_text[at] == '"');
        at += bText && m_text[at] == '\\' ? 1U : 0U;
    }
    // The toolkit's parser says where a mistake is, but loses memory where a good text has a key twice.
    simdjson::dom::parser parser;
    if (parser.parse(m_text).error() == simdjson::SUCCESS) {
        return;
    }
    QJsonParseError error;
    if (QJsonDocument::fromJson(text, &error); error.error != QJsonParseError::NoError) {
        const std::size_t at = SkipSpace(m_text, static_cast<std::size_t>(std::max(0, error.offset - 1)));
        Fail(at, "not JSON: " + Mistake(m_text, at, error));
    }
}

void JsonText::Fail(std::size_t at, const std::string& sWhat) const {
    const auto nLine = 1 + std::count(m_text.data(), m_text.data() + at, '\n');
    throw std::runtime_error(m_sPath.toStdString() + ": line " + std::to_string(nLine) + ": " + sWhat);
}

JsonItem::JsonItem(const JsonText& text, const std::string& sName) : m_pText(&text), m_sName(sName) {
    m_begin = m_value = SkipSpace(text.View(), text.View().substr(0, Mark.size()) == Mark ? Mark.size() : 0);
    m_end = EndOf(text.View(), m_value);
}

std::string JsonItem::Text(int nLeast, int nMost) const {
    if (Raw().front() != '"') {
        Fail(What() + " must be a text in quotes");
    }
    std::string sText = Decoded(Raw());
    const auto nCharacters = std::count_if(sText.begin(), sText.end(), BeginsCharacter);
    if (nCharacters < nLeast || nCharacters > nMost) {
        Fail(What() + " must be of " + std::to_string(nLeast) + " to " + std::to_string(nMost) +
             " characters");
    }
    return sText;
}

bool JsonItem::Bool() const {
    if (Raw() != "true" && Raw() != "false") {
        Fail(What() + " must be true or false");
    }
    return Raw() == "true";
}

int JsonItem::Int(int nLeast, int nMost) const {
    bool bWhole = false;
    const int nValue = Bytes(Raw()).toInt(&bWhole);
    if (!bWhole) {
        Fail(What() + " must be a whole number");
    }
    if (nValue < nLeast || nValue > nMost) {
        Fail(What() + " must be " +
             (nMost == std::numeric_limits<int>::max()
                  ? std::to_string(nLeast) + " or more"
                  : "from " + std::to_string(nLeast) + " to " + std::to_string(nMost)) +
             ", not " + std::to_string(nValue));
    }
    return nValue;
}

double JsonItem::Seconds() const {
    bool bNumber = false;
    const double seconds = Bytes(Raw()).toDouble(&bNumber);
    if (!bNumber || !(seconds >= 0 && seconds <= MostSeconds)) {
        Fail(What() + " must be a number of seconds from 0 to " + std::to_string(MostSeconds));
    }
    return seconds;
}

void JsonItem::ForEachPart(const Read& read) const {
    const std::string_view text = m_pText->View();
    const bool bObject = text[m_value] == '{';
    for (std::size_t at = SkipSpace(text, m_value + 1); at != m_end - 1;) {
        JsonItem part(*m_pText);
        part.m_begin = part.m_value = at;
        part.m_end = EndOf(text, at);
        if (bObject) {
            part.m_sName = Decoded(text.substr(at, part.m_end - at));
            part.m_value = SkipSpace(text, SkipSpace(text, part.m_end) + 1);
            part.m_end = EndOf(text, part.m_value);
        }
        read(part);
        at = SkipSpace(text, part.m_end);
        at = SkipSpace(text, at + (text[at] == ',' ? 1 : 0));
    }
}

void JsonItem::ForEachElement(const std::string& sName, const Read& read) const {
    if (Raw().front() != '[') {
        Fail(What() + " must be a list in [ ]");
    }
    ForEachPart([&](JsonItem element) {
        element.m_sName = sName;
        read(element);
    });
}

void JsonItem::ForEachMember(const Read& read) const {
    if (Raw().front() != '{') {
        Fail(What() + " must stand in { }");
    }
    std::set<std::string> names;
    ForEachPart([&](const JsonItem& member) {
        if (!names.insert(member.m_sName).second) {
            member.Fail(member.What() + " stands twice in " + What());
        }
        read(member);
    });
}

void JsonItem::ReadMembers(const std::vector<Key>& keys) const {
    std::map<std::string, JsonItem, std::less<>> members;
    ForEachMember([&](const JsonItem& member) {
        if (std::none_of(keys.begin(), keys.end(),
                         [&](const Key& key) { return key.name == member.m_sName; })) {
            member.Fail(What() + " has no key " + member.What());
        }
        members.emplace(member.m_sName, member);
    });
    for (const Key& key : keys) {
        if (const auto member = members.find(key.name); member != members.end()) {
            key.read(member->second);
        } else if (key.needed) {
            Fail(What() + " must have " + Quoted(key.name));
        }
    }
}

std::vector<JsonItem> JsonItem::Parts() const {
    std::vector<JsonItem> parts;
    ForEachPart([&parts](const JsonItem& part) { parts.push_back(part); });
    return parts;
}

std::string JsonItem::Quoted(std::string_view sText) {
    if (sText.size() <= LongestQuote) {
        return '"' + std::string(sText) + '"';
    }
    std::size_t nEnd = LongestQuote;
    while (!BeginsCharacter(sText[nEnd])) {
        --nEnd;
    }
    return '"' + std::string(sText.substr(0, nEnd)) + "...\"";
}
