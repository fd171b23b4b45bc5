#pragma once

#include <string>
#include <string_view>
#include <tuple>
#include <utility>

/// Writes JSON in the one shape that goes over the wire: each member on a line of its own, a tab for each
/// level, `"key" : value`, no line break at the end. No kept library prints it, and servers match it byte for
/// byte.
///
/// The writer trusts its caller to begin and end in pairs, with a key inside objects and none inside arrays.
class JSONWriter {
public:
    explicit JSONWriter(std::size_t nReserve = 2048);

    JSONWriter& BeginObject(std::string_view sKey = {}) { return Open(sKey, '{'); }
    JSONWriter& EndObject() { return Close('}'); }
    JSONWriter& BeginArray(std::string_view sKey = {}) { return Open(sKey, '['); }
    JSONWriter& EndArray() { return Close(']'); }

    JSONWriter& Member(std::string_view sKey, int nValue) { return Bare(sKey, std::to_string(nValue)); }
    JSONWriter& Member(std::string_view sKey, bool bValue) { return Bare(sKey, bValue ? "true" : "false"); }
    /// The text is UTF-8 and ends at its first NUL.
    JSONWriter& Member(std::string_view sKey, std::string_view sValue);
    /// Without this a literal would rather become a bool than a view.
    JSONWriter& Member(std::string_view sKey, const char* pValue) {
        return Member(sKey, std::string_view(pValue));
    }

    /// Fields of a record, by a table of `device/members.h`.
    template <typename Record, typename... Fields>
    JSONWriter& Members(const Record& record, const std::tuple<Fields...>& members) {
        std::apply([&](const auto&... member) { (Member(member.name, record.*member.field), ...); }, members);
        return *this;
    }

    /// The text written so far; the writer is empty afterwards.
    std::string Take() { return std::exchange(m_text, {}); }

private:
    JSONWriter& Bare(std::string_view sKey, std::string_view sValue);
    void StartItem(std::string_view sKey);
    JSONWriter& Open(std::string_view sKey, char bracket);
    JSONWriter& Close(char bracket);
    void Quote(std::string_view sText);

    std::string m_text;
    std::size_t m_nDepth = 0;
    bool m_bFirst = true;
};
