#include "server/show/jsontext.h"

#include <array>
#include <cstring>
#include <stdexcept>

namespace {

constexpr std::size_t LongestQuote = 100;
constexpr int MostSeconds = 86400;
constexpr int Deepest = 64;

bool BeginsCharacter(char c) {
    return (static_cast<unsigned char>(c) & 0xC0U) != 0x80U;
}

/// Finds the first place where a text is no JSON, and what people mostly mean by what they wrote there.
class Syntax {
public:
    explicit Syntax(const JsonText& text)
        : m_text(text), m_pAt(text.Begin()), m_pEnd(text.Begin() + text.Padded().size()) {}

    void Check() {
        Value(0);
        Space();
        if (m_pAt != m_pEnd) {
            Fail("something stands behind the end");
        }
    }

private:
    [[noreturn]] void Fail(const std::string& sWhat) const {
        static constexpr std::array Quotes{"'",      "\u2018", "\u2019", "\u201a", "\u201c",
                                           "\u201d", "\u201e", "\u00ab", "\u00bb"};
        const bool bQuote = std::any_of(Quotes.begin(), Quotes.end(), [this](auto s) { return Begins(s); });
        m_text.Fail(m_pAt, "not JSON: " + (bQuote ? "texts stand in straight double quotes: \"\"" : sWhat));
    }

    bool Begins(std::string_view sText) const {
        return static_cast<std::size_t>(m_pEnd - m_pAt) >= sText.size() &&
               std::equal(sText.begin(), sText.end(), m_pAt);
    }

    bool Take(std::string_view sText) {
        const bool bBegins = Begins(sText);
        m_pAt += bBegins ? sText.size() : 0;
        return bBegins;
    }

    bool TakeAnyOf(const char* pCharacters) {
        const bool bIs = m_pAt != m_pEnd && *m_pAt != '\0' && std::strchr(pCharacters, *m_pAt) != nullptr;
        m_pAt += bIs ? 1 : 0;
        return bIs;
    }

    bool Digits() {
        const char* const pFirst = m_pAt;
        while (TakeAnyOf("0123456789")) {
        }
        return m_pAt != pFirst;
    }

    void Space() {
        while (TakeAnyOf(" \t\r\n")) {
        }
        if (Begins("//") || Begins("/*") || Begins("#")) {
            Fail("a comment, which JSON does not know");
        }
    }

    void Value(int nDepth) {
        Space();
        if (nDepth > Deepest) {
            Fail("too many { and [ within each other");
        }
        if (Take("{")) {
            List('}', [this, nDepth] {
                Key();
                Value(nDepth + 1);
            });
        } else if (Take("[")) {
            List(']', [this, nDepth] { Value(nDepth + 1); });
        } else if (Take("\"")) {
            Text();
        } else if (!Number() && !Take("true") && !Take("false") && !Take("null")) {
            Fail(m_pAt == m_pEnd ? "it ends too early" : "no value begins like this");
        }
    }

    template <typename ReadElement>
    void List(char cEnd, ReadElement readElement) {
        const std::string sEnd(1, cEnd);
        Space();
        for (bool bFirst = true; !Take(sEnd); bFirst = false) {
            if (!bFirst && !Take(",")) {
                Fail(m_pAt == m_pEnd ? "a " + sEnd + " is missing" : "a , or a " + sEnd + " is missing");
            }
            Space();
            if (!bFirst && Begins(sEnd)) {
                Fail("a , too many before " + sEnd);
            }
            readElement();
            Space();
        }
    }

    void Key() {
        if (!Take("\"")) {
            Fail(Digits() ? "a number with a comma: 1.5 has a point" : "a key in quotes is missing");
        }
        Text();
        Space();
        if (!Take(":")) {
            Fail("a : is missing behind this key");
        }
    }

    void Text() {
        while (!Take("\"")) {
            if (m_pAt == m_pEnd || static_cast<unsigned char>(*m_pAt) < ' ') {
                Fail("a text does not end on its line");
            }
            const bool bEscaped = Take("\\");
            if (bEscaped && !TakeAnyOf("\"\\/bfnrtu")) {
                Fail("no character is written so");
            }
            m_pAt += bEscaped ? 0 : 1;
        }
    }

    bool Number() {
        const bool bMinus = Take("-");
        if (!Begins("0") && !Digits() && !bMinus) {
            return false;
        }
        Take("0");
        if ((Take(".") && !Digits()) || (TakeAnyOf("eE") && (TakeAnyOf("+-"), !Digits())) || Digits()) {
            Fail("no number is written so");
        }
        return true;
    }

    const JsonText& m_text;
    const char* m_pAt;
    const char* m_pEnd;
};

QByteArray WithoutMark(const QByteArray& text) {
    return text.startsWith("\xEF\xBB\xBF") ? text.mid(3) : text;
}

}  // namespace

JsonText::JsonText(const QString& sPath, const QByteArray& text)
    : m_sPath(sPath), m_text(WithoutMark(text).toStdString()) {
    for (const char *pLine = Begin(), *const pEnd = pLine + m_text.size(); pLine < pEnd;) {
        const char* const pNext = std::find(pLine, pEnd, '\n');
        if (!simdjson::validate_utf8(pLine, static_cast<std::size_t>(pNext - pLine))) {
            Fail(pLine, "not UTF-8, as which such a file must be saved");
        }
        pLine = pNext + (pNext < pEnd ? 1 : 0);
    }
    Syntax(*this).Check();
}

void JsonText::Fail(const char* pAt, const std::string& sWhat) const {
    const auto nLine = 1 + std::count(Begin(), pAt, '\n');
    throw std::runtime_error(m_sPath.toStdString() + ": line " + std::to_string(nLine) + ": " + sWhat);
}

std::string JsonItem::Text(const std::string& sWhat, int nMostCharacters) {
    std::string_view sText;
    if (m_value.get_string().get(sText) != simdjson::SUCCESS) {
        Fail(sWhat + " must be a text in quotes");
    }
    if (std::count_if(sText.begin(), sText.end(), BeginsCharacter) > nMostCharacters) {
        Fail(sWhat + " must be of " + std::to_string(nMostCharacters) + " characters at most");
    }
    return std::string(sText);
}

bool JsonItem::Bool(const std::string& sWhat) {
    bool bValue = false;
    if (m_value.get_bool().get(bValue) != simdjson::SUCCESS) {
        Fail(sWhat + " must be true or false");
    }
    return bValue;
}

int JsonItem::Int(const std::string& sWhat, int nLeast, int nMost) {
    int64_t nValue = 0;
    if (m_value.get_int64().get(nValue) != simdjson::SUCCESS || nValue < std::numeric_limits<int>::min() ||
        nValue > std::numeric_limits<int>::max()) {
        Fail(sWhat + " must be a whole number");
    }
    if (nValue < nLeast || nValue > nMost) {
        Fail(sWhat + " must be " +
             (nMost == std::numeric_limits<int>::max()
                  ? std::to_string(nLeast) + " or more"
                  : "from " + std::to_string(nLeast) + " to " + std::to_string(nMost)) +
             ", not " + std::to_string(nValue));
    }
    return static_cast<int>(nValue);
}

double JsonItem::Seconds(const std::string& sWhat) {
    double seconds = -1;
    if (m_value.get_double().get(seconds) != simdjson::SUCCESS || !(seconds >= 0 && seconds <= MostSeconds)) {
        Fail(sWhat + " must be a number of seconds from 0 to " + std::to_string(MostSeconds));
    }
    return seconds;
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
