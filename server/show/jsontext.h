#pragma once

#include <QByteArray>
#include <QString>

#include <algorithm>
#include <limits>
#include <set>
#include <simdjson.h>
#include <string>
#include <string_view>

/// The text of a JSON file that was written by hand. Complaints of it are std::runtime_errors of one line
/// that names the file, the line in it, and what is wrong there.
class JsonText {
public:
    /// Complains of what is not JSON. `sPath` is what complaints call it.
    JsonText(const QString& sPath, const QByteArray& text);

    [[noreturn]] void Fail(const char* pAt, const std::string& sWhat) const;
    const char* Begin() const { return m_text.data(); }
    const simdjson::padded_string& Padded() const { return m_text; }

private:
    void Check() const;

    QString m_sPath;
    simdjson::padded_string m_text;
};

/// A value in such a text, to be read once, in the order of the text. Each reader complains of what is no
/// such value; `sWhat` is what complaints call it.
class JsonItem {
public:
    using Value = simdjson::ondemand::value;

    JsonItem(const JsonText& text, const Value& value)
        : m_text(text), m_value(value), m_pAt(m_value.raw_json_token().data()) {}

    /// Where it stands, for JsonText::Fail.
    const char* Place() const { return m_pAt; }
    [[noreturn]] void Fail(const std::string& sWhat) const { m_text.Fail(m_pAt, sWhat); }

    std::string Text(const std::string& sWhat, int nMostCharacters = 100);
    bool Bool(const std::string& sWhat);
    int Int(const std::string& sWhat, int nLeast = std::numeric_limits<int>::min(),
            int nMost = std::numeric_limits<int>::max());
    double Seconds(const std::string& sWhat);

    /// Calls read(item) for each element of a list.
    template <typename Read>
    void ForEachElement(const std::string& sWhat, Read read) {
        simdjson::ondemand::array array;
        if (m_value.get_array().get(array) != simdjson::SUCCESS) {
            Fail(sWhat + " must be a list in [ ]");
        }
        for (auto element : array) {
            JsonItem item(m_text, element.value());
            read(item);
        }
    }

    /// Calls read(key, item) for each member of an object; false from it is no such key. A key that stands
    /// twice is complained of.
    template <typename Read>
    void ForEachMember(const std::string& sWhat, Read read) {
        simdjson::ondemand::object object;
        if (m_value.get_object().get(object) != simdjson::SUCCESS) {
            Fail(sWhat + " must stand in { }");
        }
        std::set<std::string, std::less<>> keys;
        for (auto field : object) {
            std::string_view sKey;
            const bool bText = field.unescaped_key().get(sKey) == simdjson::SUCCESS;
            const auto [key, bNew] = keys.emplace(sKey);
            JsonItem item(m_text, field.value());
            if (!bText || !bNew) {
                item.Fail((bText ? Quoted(*key) + " stands twice in " : "a key is no text in ") + sWhat);
            }
            if (!read(*key, item)) {
                item.Fail(sWhat + " has no key " + Quoted(*key));
            }
        }
    }

    /// A text as it stands in complaints.
    static std::string Quoted(std::string_view sText);

private:
    const JsonText& m_text;
    Value m_value;
    const char* m_pAt;
};
