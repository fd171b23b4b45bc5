#include "server/show/jsontext.h"

#include <QJsonDocument>

#include <algorithm>
#include <array>
#include <charconv>
#include <map>
#include <set>
#include <simdjson.h>
#include <stdexcept>
#include <utility>

namespace {

constexpr int LongestQuote = 100;
/// What stands between the values of good JSON, and the mark that some editors put before UTF-8.
constexpr std::string_view Between = " \t\r\n,:\xEF\xBB\xBF";

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
    static const std::map<QJsonParseError::ParseError, const char*> Meanings{
        {QJsonParseError::UnterminatedObject, "a , or a closing } or ] is missing"},
        {QJsonParseError::UnterminatedArray, "a , or a closing } or ] is missing"},
        {QJsonParseError::MissingValueSeparator, "a , or a closing } or ] is missing"},
        {QJsonParseError::MissingNameSeparator, "a : is missing behind a key"},
        {QJsonParseError::MissingObject, "a , too many"},
        {QJsonParseError::IllegalValue, "no value begins like this"},
        {QJsonParseError::IllegalNumber, "no value begins like this"}};
    const auto meaning = Meanings.find(error.error);
    return meaning != Meanings.end() ? meaning->second : error.errorString().toStdString();
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
            return std::min(text.find_first_of(",]} \t\r\n", at), text.size());
        }
        if (nDepth == 0) {
            return at + 1;
        }
    }
}

/// Of a text in its quotes.
std::string Decoded(std::string_view sRaw) {
    const QByteArray list = '[' + QByteArray(sRaw.data(), static_cast<int>(sRaw.size())) + ']';
    return list.contains('\\') ? QJsonDocument::fromJson(list)[0].toString().toStdString()
                               : std::string(sRaw.substr(1, sRaw.size() - 2));
}

/// Whether all of a bare word is such a number.
template <typename Number>
bool ReadNumber(std::string_view sRaw, Number& number) {
    const auto [pEnd, error] = std::from_chars(sRaw.data(), sRaw.data() + sRaw.size(), number);
    return error == std::errc() && pEnd == sRaw.data() + sRaw.size();
}

}  // namespace

JsonText::JsonText(const QString& sPath, const QByteArray& text)
    : m_sPath(sPath), m_text(text.toStdString()) {
    // The toolkit's parser says where a mistake is, but loses memory where a good text has a key twice.
    simdjson::dom::parser parser;
    if (parser.parse(m_text).error() == simdjson::SUCCESS) {
        return;
    }
    bool bText = false;
    for (std::size_t at = 0; at < m_text.size(); ++at) {
        if (bText && m_text[at] == '\n') {
            Fail(at, "not JSON: a text does not end on its line");
        }
        bText = bText != (m_text[at] == '"');
        at += bText && m_text[at] == '\\' ? 1U : 0U;
    }
    QJsonParseError error;
    if (QJsonDocument::fromJson(text, &error); error.error != QJsonParseError::NoError) {
        const auto nAt = static_cast<std::size_t>(std::max(0, error.offset - 1));
        const std::size_t at = std::min(m_text.find_first_not_of(" \t\r\n", nAt), m_text.size());
        Fail(at, "not JSON: " + Mistake(m_text, at, error));
    }
}

void JsonText::Fail(std::size_t at, const std::string& sWhat) const {
    const auto nLine = 1 + std::count(m_text.data(), m_text.data() + at, '\n');
    throw std::runtime_error(m_sPath.toStdString() + ": line " + std::to_string(nLine) + ": " + sWhat);
}

JsonItem::JsonItem(const JsonText& text, std::string sName, std::size_t from)
    : m_pText(&text),
      m_sName(std::move(sName)),
      m_begin(text.Text().find_first_not_of(Between, from)),
      m_end(EndOf(text.Text(), m_begin)) {}

void JsonItem::Must(bool bDoes, const char* pWhat) const {
    if (!bDoes) {
        Fail(What() + " must " + pWhat);
    }
}

std::string JsonItem::Text(int nLeast, int nMost) const {
    Must(Raw().front() == '"', "be a text in quotes");
    std::string sText = Decoded(Raw());
    const auto nCharacters = QString::fromStdString(sText).toUcs4().size();
    if (nCharacters < nLeast || nCharacters > nMost) {
        Fail(What() + " must be of " + std::to_string(nLeast) + " to " + std::to_string(nMost) +
             " characters");
    }
    return sText;
}

bool JsonItem::Bool() const {
    Must(Raw() == "true" || Raw() == "false", "be true or false");
    return Raw() == "true";
}

int JsonItem::Int(int nLeast, int nMost) const {
    int nValue = 0;
    Must(ReadNumber(Raw(), nValue), "be a whole number");
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
    double seconds = 0;
    Must(ReadNumber(Raw(), seconds) && seconds >= 0 && seconds <= 86400,
         "be a number of seconds from 0 to 86400");
    return seconds;
}

void JsonItem::ForEachPart(const std::string& sName, const Read& read) const {
    const std::string& text = m_pText->Text();
    for (std::size_t at = m_value + 1; (at = text.find_first_not_of(Between, at)) + 1 != m_end;) {
        JsonItem part(*m_pText, sName, at);
        if (text[m_value] == '{') {
            part = JsonItem(*m_pText, Decoded(part.Raw()), part.m_end);
            part.m_begin = at;
        }
        read(part);
        at = part.m_end;
    }
}

void JsonItem::ForEachElement(const std::string& sName, const Read& read) const {
    Must(Raw().front() == '[', "be a list in [ ]");
    ForEachPart(sName, read);
}

void JsonItem::ForEachMember(const Read& read) const {
    Must(Raw().front() == '{', "stand in { }");
    std::set<std::string> names;
    ForEachPart({}, [&](const JsonItem& member) {
        if (!names.insert(member.m_sName).second) {
            member.Fail(member.What() + " stands twice in " + What());
        }
        read(member);
    });
}

std::string JsonItem::Quoted(const std::string& sText) {
    const QString sAll = QString::fromStdString(sText);
    return '"' + sAll.left(LongestQuote).toStdString() + (sAll.size() > LongestQuote ? "...\"" : "\"");
}

JsonObject::JsonObject(const JsonItem& item, const std::vector<std::string_view>& keys) : JsonItem(item) {
    ForEachMember([&](const JsonItem& member) {
        if (!keys.empty() && std::find(keys.begin(), keys.end(), member.Name()) == keys.end()) {
            member.Fail(What() + " has no key " + Quoted(member.Name()));
        }
        m_members.push_back(member);
    });
}

std::vector<JsonItem>::const_iterator JsonObject::Find(std::string_view sKey) const {
    return std::find_if(m_members.begin(), m_members.end(), [&](const auto& m) { return m.Name() == sKey; });
}

const JsonItem& JsonObject::operator[](std::string_view sKey) const {
    if (!Has(sKey)) {
        Fail(What() + " must have " + Quoted(std::string(sKey)));
    }
    return *Find(sKey);
}

void JsonObject::ForEachElementOf(std::string_view sKey, const std::string& sName, const Read& read) const {
    if (Has(sKey)) {
        (*this)[sKey].ForEachElement(sName, read);
    }
}
