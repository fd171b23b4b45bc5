#pragma once

#include <QByteArray>

#include <memory>
#include <simdjson.h>
#include <string>
#include <string_view>

/// A value inside a parsed JSON text. Members keep the order of the text, and a name that stands twice is met
/// twice. A node is a view: it lives as long as its JSONDocument.
///
/// Conversions never fail. A fraction truncates, a number out of int's range clamps, a boolean counts as 0 or
/// 1, a string that is a number counts as that number, a number as a text is its digits, and whatever is left
/// gives 0, false or no text.
class JSONNode {
public:
    explicit JSONNode(simdjson::dom::element element) : m_element(element) {}

    bool IsObject() const { return m_element.is_object(); }
    bool IsArray() const { return m_element.is_array(); }

    int AsInt() const {
        int64_t nValue = 0;
        const bool bPlain = m_element.get(nValue) == simdjson::SUCCESS && nValue == static_cast<int>(nValue);
        return bPlain ? static_cast<int>(nValue) : IntOfNumber();
    }
    bool AsBool() const {
        bool bValue = false;
        return m_element.get(bValue) == simdjson::SUCCESS ? bValue : AsNumber() != 0.0;
    }
    /// The text of a string up to its first NUL, in UTF-8, or the digits of a number.
    std::string AsText() const;

    /// Stores the value in a field, as what the field is.
    void Store(int& nField) const { nField = AsInt(); }
    void Store(bool& bField) const { bField = AsBool(); }
    void Store(std::string& sField) const { sField = AsText(); }

    /// Calls visit(std::string_view name, const JSONNode& value) for each member of an object, in order;
    /// never for anything else.
    template <typename Visit>
    void ForEachMember(Visit&& visit) const {
        simdjson::dom::object object;
        if (m_element.get(object) != simdjson::SUCCESS) {
            return;
        }
        for (const simdjson::dom::key_value_pair member : object) {
            visit(member.key, JSONNode(member.value));
        }
    }

    /// The same for the members of one name.
    template <typename Visit>
    void ForEachMember(std::string_view sName, Visit&& visit) const {
        ForEachMember([&](std::string_view sMember, const JSONNode& value) {
            if (sMember == sName) {
                visit(value);
            }
        });
    }

    /// Calls visit(const JSONNode& element) for each element of an array, in order; never for anything else.
    template <typename Visit>
    void ForEachElement(Visit&& visit) const {
        simdjson::dom::array array;
        if (m_element.get(array) != simdjson::SUCCESS) {
            return;
        }
        for (const simdjson::dom::element element : array) {
            visit(JSONNode(element));
        }
    }

private:
    std::string_view StringText() const;
    double AsNumber() const;
    int IntOfNumber() const;

    simdjson::dom::element m_element;
};

/// A parsed JSON text. Each has a parser of its own, so that one may be walked while another is read; a
/// parser and its memory go from one that is done to the next.
class JSONDocument {
public:
    /// How deep a text may nest. Messages need six; a text of nothing but brackets must not cost more.
    static constexpr std::size_t MaxDepth = 64;

    /// Parses a text, which ends at its first NUL. Bytes that are not UTF-8 become replacement characters, so
    /// that a bad byte in one name does not cost the whole message. Throws std::invalid_argument, and nothing
    /// else, for a text that is not JSON or nests deeper than MaxDepth.
    explicit JSONDocument(const QByteArray& text);

    ~JSONDocument();
    Q_DISABLE_COPY_MOVE(JSONDocument)

    JSONNode Root() const { return JSONNode(m_root); }

private:
    simdjson::error_code Parse(const QByteArray& text);

    std::unique_ptr<simdjson::dom::parser> m_pParser;
    simdjson::dom::element m_root;
};
