#include "server/show/showtext.h"

#include <QJsonArray>
#include <QJsonDocument>

#include <algorithm>
#include <stdexcept>
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
                at += text[at] == '\\' ? 1U : 0U;
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

/// How the author sets out a scene: what stands before it, and between its parts.
struct Style {
    std::string before = " ", open = " ", next = " ", levels = " ", close = " ";
};

Style StyleOf(std::string_view text, const Part& scene) {
    const std::vector<Part> parts = PartsOf(text, scene.value);
    const Part* const pLevels = Find(parts, "\"levels\"");
    Style style{GapBefore(text, scene.begin),
                GapBefore(text, parts[0].begin),
                GapBefore(text, parts[1].begin),
                {},
                GapBefore(text, scene.end - 1)};
    const auto breaks = [](const std::string& sGap) { return sGap.find('\n') != std::string::npos; };
    style.levels = pLevels != nullptr ? GapBefore(text, pLevels->begin) : style.next;
    if (!breaks(style.levels) && breaks(style.before)) {
        style.levels = style.before + (style.before.back() == '\t' ? "\t" : "  ");
    }
    return style;
}

QByteArray Replaced(QByteArray text, std::size_t begin, std::size_t end, const std::string& sNew) {
    return text.replace(static_cast<int>(begin), static_cast<int>(end - begin),
                        QByteArray::fromStdString(sNew));
}

std::string_view View(const QByteArray& text) {
    return {text.constData(), static_cast<std::size_t>(text.size())};
}

std::vector<Part> RootOf(std::string_view text) {
    return PartsOf(text, text.find('{'));
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
    const std::string_view view = View(text);
    const std::vector<Part> root = RootOf(view);
    const Part* const pScenes = Find(root, "\"scenes\"");
    const std::vector<Part> scenes = pScenes != nullptr ? PartsOf(view, pScenes->value) : std::vector<Part>();
    const Style style = scenes.empty() ? Style() : StyleOf(view, scenes.back());
    std::string sScene = '{' + style.open + "\"id\": " + std::to_string(scene.id);
    sScene += ',' + style.next + "\"name\": " + Quoted(scene.name);
    sScene += scene.area < 0 ? "" : ',' + style.next + "\"area\": " + std::to_string(scene.area);
    sScene +=
        fade <= 0 ? "" : ',' + style.next + "\"fade\": " + QByteArray::number(fade, 'g', 8).toStdString();
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
    const std::string_view view = View(text);
    const std::vector<Part> root = RootOf(view);
    const Part* const pScenes = Find(root, "\"scenes\"");
    if (pScenes == nullptr) {
        throw std::runtime_error("the key \"scenes\" is written with escapes");
    }
    const Part scene = PartsOf(view, pScenes->value)[iScene];
    const Style style = StyleOf(view, scene);
    const std::vector<Part> parts = PartsOf(view, scene.value);
    const Part* const pLevels = Find(parts, "\"levels\"");
    const std::string sLevels = TextOf(levels, style.levels);
    return pLevels != nullptr
               ? Replaced(text, pLevels->begin, pLevels->end, sLevels)
               : Replaced(text, parts.back().end, parts.back().end, ',' + style.levels + sLevels);
}

}  // namespace showtext
