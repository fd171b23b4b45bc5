#include "server/show/showtext.h"

#include <QJsonArray>
#include <QJsonDocument>

#include <algorithm>
#include <map>
#include <string_view>

namespace {

constexpr std::string_view Space = " \t\r\n";

/// A member of an object, or an element of a list, which has no key.
struct Part {
    std::string_view key;  ///< in its quotes
    std::size_t begin;     ///< of the key, if there is one
    std::size_t value;
    std::size_t end;
};

std::size_t SkipSpace(std::string_view text, std::size_t at) {
    return std::min(text.find_first_not_of(Space, at), text.size());
}

/// Behind the value that begins somewhere in good JSON: a text, something in brackets, or a bare word.
std::size_t EndOf(std::string_view text, std::size_t at) {
    for (int nDepth = 0;; ++at) {
        if (text[at] == '"') {
            for (++at; text[at] != '"'; ++at) {
                at += text[at] == '\\' ? 1 : 0;
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

/// What the object or list that begins somewhere is made of.
std::vector<Part> PartsOf(std::string_view text, std::size_t at) {
    std::vector<Part> parts;
    at = SkipSpace(text, at + 1);
    while (text[at] != '}' && text[at] != ']') {
        Part part{{}, at, at, EndOf(text, at)};
        if (const std::size_t colon = SkipSpace(text, part.end); text[colon] == ':') {
            part.key = text.substr(at, part.end - at);
            part.value = SkipSpace(text, colon + 1);
            part.end = EndOf(text, part.value);
        }
        parts.push_back(part);
        at = SkipSpace(text, part.end);
        at = text[at] == ',' ? SkipSpace(text, at + 1) : at;
    }
    return parts;
}

const Part* Find(const std::vector<Part>& parts, std::string_view sKey) {
    const auto part = std::find_if(parts.begin(), parts.end(), [&](const Part& p) { return p.key == sKey; });
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

/// How the author sets out a scene: what stands between its parts.
struct Style {
    std::string before = " ", open = " ", next = " ", levels = " ", close = " ";
};

Style StyleOf(std::string_view text, const Part& scene) {
    const std::vector<Part> parts = PartsOf(text, scene.value);
    const Part* const pLevels = Find(parts, "\"levels\"");
    Style style;
    style.before = GapBefore(text, scene.begin);
    style.open = GapBefore(text, parts.front().begin);
    style.close = GapBefore(text, scene.end - 1);
    style.next = parts.size() > 1 ? GapBefore(text, parts[1].begin) : style.open;
    const bool bOneLine = style.next.find('\n') == std::string::npos;
    const bool bLines = style.before.find('\n') != std::string::npos;
    style.levels = pLevels != nullptr   ? GapBefore(text, pLevels->begin)
                   : bOneLine && bLines ? style.before + (style.before.back() == '\t' ? "\t" : "  ")
                                        : style.next;
    return style;
}

QByteArray Replaced(const QByteArray& text, std::size_t begin, std::size_t end, const std::string& sNew) {
    return QByteArray(text).replace(static_cast<int>(begin), static_cast<int>(end - begin),
                                    QByteArray::fromStdString(sNew));
}

}  // namespace

namespace showtext {

void AddNamed(NamedLevels& named, const Units& units) {
    const auto nUnits = static_cast<std::size_t>(units.pFixture->count);
    std::map<std::vector<int>, int> alike;
    for (const std::vector<int>& levels : units.levels) {
        ++alike[levels];
    }
    const auto most = std::max_element(alike.begin(), alike.end(),
                                       [](const auto& a, const auto& b) { return a.second < b.second; });
    const bool bAll = units.units.size() == nUnits;
    const bool bName = bAll && (most->second > 1 || nUnits == 1);
    if (bName) {
        named.emplace_back(units.pFixture->name, most->first);
    } else if (bAll) {
        std::vector<int>& list = named.emplace_back(units.pFixture->name, std::vector<int>{}).second;
        for (const std::vector<int>& levels : units.levels) {
            list.insert(list.end(), levels.begin(), levels.end());
        }
        return;
    }
    for (std::size_t i = 0; i < units.units.size(); ++i) {
        if (!bName || units.levels[i] != most->first) {
            named.emplace_back(units.pFixture->name + ' ' + std::to_string(units.units[i] + 1),
                               units.levels[i]);
        }
    }
}

QByteArray WithScene(const QByteArray& text, const Scene& scene, double fade, const NamedLevels& levels) {
    const std::string_view view(text.constData(), static_cast<std::size_t>(text.size()));
    const std::vector<Part> root = PartsOf(view, view.find('{'));
    const Part* const pScenes = Find(root, "\"scenes\"");
    const std::vector<Part> scenes = pScenes != nullptr ? PartsOf(view, pScenes->value) : std::vector<Part>();
    const Style style = scenes.empty() ? Style() : StyleOf(view, scenes.back());
    std::string sScene = '{' + style.open + "\"id\": " + std::to_string(scene.id) + ',' + style.next +
                         "\"name\": " + Quoted(scene.name);
    if (scene.area >= 0) {
        sScene += ',' + style.next + "\"area\": " + std::to_string(scene.area);
    }
    if (fade > 0) {
        sScene += ',' + style.next + "\"fade\": " + QByteArray::number(fade, 'g', 8).toStdString();
    }
    sScene += ',' + style.levels + TextOf(levels, style.levels) + style.close + '}';
    if (!scenes.empty()) {
        return Replaced(text, scenes.back().end, scenes.back().end, ',' + style.before + sScene);
    }
    const std::string sList = "[ " + sScene + " ]";
    if (pScenes != nullptr) {
        return Replaced(text, pScenes->value, pScenes->end, sList);
    }
    return Replaced(text, root.back().end, root.back().end,
                    ',' + GapBefore(view, root.back().begin) + "\"scenes\": " + sList);
}

QByteArray WithLevels(const QByteArray& text, std::size_t iScene, const NamedLevels& levels) {
    const std::string_view view(text.constData(), static_cast<std::size_t>(text.size()));
    const std::vector<Part> root = PartsOf(view, view.find('{'));
    const Part scene = PartsOf(view, Find(root, "\"scenes\"")->value)[iScene];
    const Style style = StyleOf(view, scene);
    const std::vector<Part> parts = PartsOf(view, scene.value);
    const std::string sLevels = TextOf(levels, style.levels);
    if (const Part* const pLevels = Find(parts, "\"levels\"")) {
        return Replaced(text, pLevels->begin, pLevels->end, sLevels);
    }
    return Replaced(text, parts.back().end, parts.back().end, ',' + style.levels + sLevels);
}

}  // namespace showtext
