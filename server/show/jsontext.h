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

    const std::string& Text() const { return m_text; }
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

    /// The first value behind a place in the text, which must outlive it; of the whole text its only one.
    JsonItem(const JsonText& text, std::string sName, std::size_t from = 0);

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

    /// A text as it stands in complaints.
    static std::string Quoted(const std::string& sText);

protected:
    std::string What() const { return m_value == m_begin ? m_sName : Quoted(m_sName); }

private:
    std::string_view Raw() const {
        return std::string_view(m_pText->Text()).substr(m_value, m_end - m_value);
    }
    void Must(bool bDoes, const char* pWhat) const;
    void ForEachPart(const std::string& sName, const Read& read) const;

    const JsonText* m_pText;
    std::string m_sName;
    std::size_t m_begin;
    std::size_t m_value = m_begin;
    std::size_t m_end;
};

/// An object; keys that are not among these are complained of, if there are any.
class JsonObject : public JsonItem {
public:
    explicit JsonObject(const JsonItem& item, const std::vector<std::string_view>& keys = {});

    /// In the order of the text.
    const std::vector<JsonItem>& Members() const { return m_members; }
    bool Has(std::string_view sKey) const { return Find(sKey) != m_members.end(); }
    /// Complains if it has not.
    const JsonItem& operator[](std::string_view sKey) const;
    /// Calls read for each element of the list of a key, if there is one.
    void ForEachElementOf(std::string_view sKey, const std::string& sName, const Read& read) const;

private:
    std::vector<JsonItem>::const_iterator Find(std::string_view sKey) const;

    std::vector<JsonItem> m_members;
};
