#include "server/show/showtext.h"

#include "server/show/jsontext.h"

#include <QJsonArray>
#include <QJsonDocument>

#include <algorithm>
#include <string_view>

namespace {

constexpr std::string_view Space = " \t\r\n";

const JsonItem* Find(const std::vector<JsonItem>& parts, const char* pKey) {
    const auto part =
        std::find_if(parts.begin(), parts.end(), [&](const JsonItem& p) { return p.Name() == pKey; });
    return part == parts.end() ? nullptr : &*part;
}

/// The white space that ends somewhere.
std::string GapBefore(std::string_view text, std::size_t at) {
    const std::size_t begin = text.find_last_not_of(Space, at - 1) + 1;
    return std::string(text.substr(begin, at - begin));
}

std::string Quoted(const std::string& sText) {
    const QByteArray list =
        QJsonDocument(QJsonArray{QString::fromStdString(sText)}).toJson(QJsonDocument::Compact);
    return list.mid(1, list.size() - 2).toStdString();
}

/// As the member of a scene that `sGap` stands before: on the lines after the first, names stand one below
/// the other.
std::string TextOf(const showtext::NamedLevels& levels, const std::string& sGap) {
    const std::string sBegin = "\"levels\": { ";
    const bool bLines = sGap.find('\n') != std::string::npos;
    const std::string sNext = ',' + (bLines ? sGap + std::string(sBegin.size(), ' ') : " ");
    std::string sText;
    for (const auto& [sName, list] : levels) {
        sText += (sText.empty() ? sBegin : sNext) + Quoted(sName) + ": [";
        for (std::size_t i = 0; i < list.size(); ++i) {
            sText += (i > 0 ? ", " : "") + std::to_string(list[i]);
        }
        sText += ']';
    }
    return sText + " }";
}

/// How the author sets out a scene: what stands before it, and between its parts.
struct Style {
    std::string before = " ", open = " ", next = " ", levels = " ", close = " ";
};

Style StyleOf(std::string_view text, const JsonItem& scene) {
    const std::vector<JsonItem> parts = scene.Parts();
    const JsonItem* const pLevels = Find(parts, "levels");
    Style style{GapBefore(text, scene.Begin()),
                GapBefore(text, parts[0].Begin()),
                GapBefore(text, parts[1].Begin()),
                {},
                GapBefore(text, scene.End() - 1)};
    const auto breaks = [](const std::string& sGap) { return sGap.find('\n') != std::string::npos; };
    style.levels = pLevels != nullptr ? GapBefore(text, pLevels->Begin()) : style.next;
    if (!breaks(style.levels) && breaks(style.before)) {
        style.levels = style.before + (style.before.back() == '\t' ? "\t" : "  ");
    }
    return style;
}

QByteArray Replaced(QByteArray text, std::size_t begin, std::size_t end, const std::string& sNew) {
    return text.replace(static_cast<int>(begin), static_cast<int>(end - begin),
                        QByteArray::fromStdString(sNew));
}

}  // namespace

namespace showtext {

void AddNamed(NamedLevels& named, const Fixture& fixture, const std::vector<std::vector<int>>& units) {
    const auto alike = [&units](const auto& unit) { return std::count(units.begin(), units.end(), unit); };
    const auto most = std::max_element(units.begin(), units.end(),
                                       [&](const auto& a, const auto& b) { return alike(a) < alike(b); });
    const bool bOneName = alike(std::vector<int>()) == 0 && (alike(*most) > 1 || units.size() == 1);
    if (bOneName) {
        named.emplace_back(fixture.name, *most);
    }
    for (std::size_t i = 0; i < units.size(); ++i) {
        if (!units[i].empty() && !(bOneName && units[i] == *most)) {
            named.emplace_back(fixture.name + ' ' + std::to_string(i + 1), units[i]);
        }
    }
}

QByteArray WithScene(const QByteArray& text, const Scene& scene, double fade, const NamedLevels& levels) {
    const JsonText json({}, text);
    const std::vector<JsonItem> root = JsonItem(json, {}).Parts();
    const JsonItem* const pScenes = Find(root, "scenes");
    const std::vector<JsonItem> scenes = pScenes != nullptr ? pScenes->Parts() : std::vector<JsonItem>();
    const Style style = scenes.empty() ? Style() : StyleOf(json.View(), scenes.back());
    std::string sScene = '{' + style.open + "\"id\": " + std::to_string(scene.id);
    sScene += ',' + style.next + "\"name\": " + Quoted(scene.name);
    sScene += scene.area < 0 ? "" : ',' + style.next + "\"area\": " + std::to_string(scene.area);
    sScene +=
        fade <= 0 ? "" : ',' + style.next + "\"fade\": " + QByteArray::number(fade, 'g', 8).toStdString();
    sScene += ',' + style.levels + TextOf(levels, style.levels) + style.close + '}';
    if (!scenes.empty()) {
        return Replaced(text, scenes.back().End(), scenes.back().End(), ',' + style.before + sScene);
    }
    const std::string sList = "[ " + sScene + " ]";
    if (pScenes != nullptr) {
        return Replaced(text, pScenes->Value(), pScenes->End(), sList);
    }
    return Replaced(text, root.back().End(), root.back().End(),
                    ',' + GapBefore(json.View(), root.back().Begin()) + "\"scenes\": " + sList);
}

QByteArray WithLevels(const QByteArray& text, std::size_t iScene, const NamedLevels& levels) {
    const JsonText json({}, text);
    const std::vector<JsonItem> root = JsonItem(json, {}).Parts();
    const JsonItem scene = Find(root, "scenes")->Parts()[iScene];
    const Style style = StyleOf(json.View(), scene);
    const std::vector<JsonItem> parts = scene.Parts();
    const JsonItem* const pLevels = Find(parts, "levels");
    const std::string sLevels = TextOf(levels, style.levels);
    return pLevels != nullptr
               ? Replaced(text, pLevels->Begin(), pLevels->End(), sLevels)
               : Replaced(text, parts.back().End(), parts.back().End(), ',' + style.levels + sLevels);
}

}  // namespace showtext
