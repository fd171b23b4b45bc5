#pragma once

#include <QByteArray>
#include <QString>

#include <functional>
#include <limits>
#include <string>
#include <string_view>
#include <vector>

/// The text of a JSON file that was written by hand. Complaints of it are std::runtime_errors of one line
/// that names the file, the line in it, and what is wrong there.
class JsonText {
public:
    /// Complains of what is not JSON in UTF-8. `sPath` is what complaints call it.
    JsonText(const QString& sPath, const QByteArray& text);

    std::string_view View() const { return m_text; }
    [[noreturn]] void Fail(std::size_t at, const std::string& sWhat) const;

private:
    QString m_sPath;
    std::string m_text;
};

/// A value in such a text. Each reader complains of what is no such value, by the name of the item: its key,
/// or what it is an element of.
class JsonItem {
public:
    using Read = std::function<void(const JsonItem&)>;
    /// A key that an object may have.
    struct Key {
        std::string_view name;
        bool needed;
        Read read;
    };

    /// All of the text, which must outlive it.
    JsonItem(const JsonText& text, const std::string& sName);

    /// The key, decoded.
    const std::string& Name() const { return m_sName; }
    std::size_t Begin() const { return m_begin; }  ///< in the text; of the key, if it has one
    std::size_t Value() const { return m_value; }
    std::size_t End() const { return m_end; }
    [[noreturn]] void Fail(const std::string& sWhat) const { m_pText->Fail(m_value, sWhat); }

    std::string Text(int nLeast = 1, int nMost = 100) const;  ///< so many characters
    bool Bool() const;
    int Int(int nLeast = std::numeric_limits<int>::min(), int nMost = std::numeric_limits<int>::max()) const;
    double Seconds() const;  ///< a day at most

    /// Calls read for each element of a list; `sName` is what complaints call one.
    void ForEachElement(const std::string& sName, const Read& read) const;
    /// Calls read for each member of an object. A key that stands twice is complained of.
    void ForEachMember(const Read& read) const;
    /// Reads the members of an object in the order of these keys. Other keys are complained of.
    void ReadMembers(const std::vector<Key>& keys) const;
    /// The members or elements.
    std::vector<JsonItem> Parts() const;

    /// A text as it stands in complaints.
    static std::string Quoted(std::string_view sText);

private:
    explicit JsonItem(const JsonText& text) : m_pText(&text) {}
    std::string_view Raw() const { return m_pText->View().substr(m_value, m_end - m_value); }
    std::string What() const { return m_value == m_begin ? m_sName : Quoted(m_sName); }
    void ForEachPart(const Read& read) const;

    const JsonText* m_pText;
    std::string m_sName;
    std::size_t m_begin = 0;
    std::size_t m_value = 0;
    std::size_t m_end = 0;
};
