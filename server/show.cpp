#include "server/show.h"

#include <QFile>
#include <QFileInfo>
#include <QJsonDocument>

#include <algorithm>
#include <limits>
#include <simdjson.h>
#include <stdexcept>
#include <string_view>
#include <unordered_set>

namespace {

namespace ondemand = simdjson::ondemand;

constexpr qint64 MaxFile = 16 * 1024 * 1024;

/// Walks the text of a show and knows, whatever it meets, on which line that stands.
class ShowReader {
public:
    ShowReader(const QString& sPath, const QByteArray& text)
        : m_sPath(sPath), m_text(text.constData(), static_cast<std::size_t>(text.size())) {}

    Show Read() {
        CheckSyntax();
        ondemand::parser parser;
        ondemand::document document = parser.iterate(m_text);
        Show show;
        m_pAt = m_text.data();
        for (auto field : ObjectOf(document, "a show")) {
            const std::string_view sKey = KeyOf(field);
            ondemand::value value = field.value();
            if (sKey == "serial") {
                show.serial = TextOf(value, "\"serial\"");
            } else if (sKey == "scenes") {
                ReadEntries(value, "scene", show.scenes);
            } else if (sKey == "programs") {
                ReadEntries(value, "program", show.programs);
            } else {
                Fail("a show has no key \"" + std::string(sKey) + "\"");
            }
        }
        return show;
    }

private:
    /// What simdjson meets on its walk it does not place in all cases; Qt's parser names the spot.
    void CheckSyntax() {
        QJsonParseError error{};
        const QByteArray text = QByteArray::fromRawData(m_text.data(), static_cast<int>(m_text.size()));
        QJsonDocument::fromJson(text, &error);
        if (error.error != QJsonParseError::NoError) {
            m_pAt =
                m_text.data() + std::min<std::size_t>(static_cast<std::size_t>(error.offset), m_text.size());
            Fail("not JSON: " + error.errorString().toStdString());
        }
    }

    void ReadEntries(ondemand::value& list, const std::string& sWhat, std::vector<Scene>& entries) {
        ondemand::array array;
        m_pAt = list.raw_json_token().data();
        if (list.get_array().get(array) != simdjson::SUCCESS) {
            Fail("the " + sWhat + "s must be a list in [ ]");
        }
        std::unordered_set<int> ids;
        for (auto element : array) {
            ondemand::value value = element.value();
            const Scene entry = EntryOf(value, sWhat);
            if (!ids.insert(entry.id).second) {
                Fail("the id " + std::to_string(entry.id) + " stands for a " + sWhat + " already");
            }
            entries.push_back(entry);
        }
    }

    Scene EntryOf(ondemand::value& value, const std::string& sWhat) {
        m_pAt = value.raw_json_token().data();
        const char* const pEntry = m_pAt;
        Scene entry;
        bool bId = false;
        for (auto field : ObjectOf(value, "a " + sWhat)) {
            const std::string_view sKey = KeyOf(field);
            ondemand::value member = field.value();
            if (sKey == "id") {
                entry.id = IntOf(member, "\"id\"");
                bId = true;
            } else if (sKey == "name") {
                entry.name = TextOf(member, "\"name\"");
            } else if (sKey == "area" && sWhat == "scene") {
                entry.area = IntOf(member, "\"area\"");
            } else if (sKey == "level") {
                entry.level = IntOf(member, "\"level\"");
            } else if (sKey == "state") {
                if (member.get_bool().get(entry.state) != simdjson::SUCCESS) {
                    Fail("\"state\" must be true or false");
                }
            } else {
                Fail("a " + sWhat + " has no key \"" + std::string(sKey) + "\"");
            }
        }
        m_pAt = pEntry;
        if (!bId) {
            Fail("this " + sWhat + " has no \"id\"");
        }
        return entry;
    }

    template <typename Source>
    ondemand::object ObjectOf(Source& source, const std::string& sWhat) {
        ondemand::object object;
        if (source.get_object().get(object) != simdjson::SUCCESS) {
            Fail(sWhat + " must stand in { }");
        }
        return object;
    }

    template <typename Field>
    std::string_view KeyOf(Field& field) {
        const std::string_view sKey = field.unescaped_key();
        m_pAt = field.value().raw_json_token().value().data();
        return sKey;
    }

    std::string TextOf(ondemand::value& value, const std::string& sWhat) {
        std::string_view sText;
        if (value.get_string().get(sText) != simdjson::SUCCESS) {
            Fail(sWhat + " must be a text in quotes");
        }
        return std::string(sText);
    }

    int IntOf(ondemand::value& value, const std::string& sWhat) {
        int64_t nValue = 0;
        if (value.get_int64().get(nValue) != simdjson::SUCCESS || nValue < std::numeric_limits<int>::min() ||
            nValue > std::numeric_limits<int>::max()) {
            Fail(sWhat + " must be a whole number");
        }
        return static_cast<int>(nValue);
    }

    [[noreturn]] void Fail(const std::string& sWhat) const {
        const auto nLine = 1 + std::count(m_text.data(), m_pAt, '\n');
        throw std::runtime_error(m_sPath.toStdString() + ": line " + std::to_string(nLine) + ": " + sWhat);
    }

    QString m_sPath;
    simdjson::padded_string m_text;
    const char* m_pAt = nullptr;  ///< the value being read
};

}  // namespace

Show Show::BuiltIn() {
    const auto scene = [](int nId, int nArea, const char* pName, bool bState = false) {
        return Scene{pName, nId, nArea, 255, bState};
    };
    const auto program = [](int nId, const char* pName) { return Scene{pName, nId, -1, 255, false}; };
    Show show;
    show.serial = "0042";
    show.scenes = {scene(1, 0, "House lights", true),
                   scene(2, 0, "Half house"),
                   scene(3, 0, "House out"),
                   scene(4, 1, "Stage warm"),
                   scene(5, 1, "Stage cool"),
                   scene(6, 1, "Moonlight"),
                   scene(7, 1, "Sunset"),
                   scene(8, 1, "Blackbox"),
                   scene(9, 2, "Foyer day", true),
                   scene(10, 2, "Foyer evening"),
                   scene(11, 2, "Foyer clean"),
                   scene(12, -1, "Garden"),
                   scene(13, -1, "Façade")};
    show.programs = {program(1, "Slow chase"), program(2, "Rainbow"), program(3, "Candle flicker"),
                     program(4, "Storm"),      program(5, "Walk-in"), program(6, "Curtain call"),
                     program(7, "Night watch")};
    return show;
}

Show Show::Load(const QString& sPath) {
    const QFileInfo info(sPath);
    if (info.exists() && (!info.isFile() || info.size() >= MaxFile)) {
        throw std::runtime_error(sPath.toStdString() + ": not a regular file below 16 MB");
    }
    QFile file(sPath);
    if (!file.open(QIODevice::ReadOnly)) {
        throw std::runtime_error(sPath.toStdString() + ": " + file.errorString().toStdString());
    }
    try {
        return ShowReader(sPath, file.read(MaxFile)).Read();
    } catch (const simdjson::simdjson_error& error) {
        throw std::runtime_error(sPath.toStdString() + ": " + error.what());
    }
}
