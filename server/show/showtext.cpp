#include "server/show/showtext.h"

#include "device/jsonwriter.h"
#include "server/show/jsontext.h"

#include <algorithm>

namespace {

/// The white space that ends somewhere.
std::string GapBefore(const std::string& text, std::size_t at) {
    const std::size_t begin = text.find_last_not_of(" \t\r\n", at - 1) + 1;
    return text.substr(begin, at - begin);
}

bool Breaks(const std::string& sGap) {
    return sGap.find('\n') != std::string::npos;
}

std::string Quoted(const std::string& sText) {
    return JSONWriter().Member({}, std::string_view(sText)).Take();
}

/// How the author sets out a scene: what stands before it, and between its parts.
struct Style {
    std::string before = " ", open = " ", next = " ", levels = " ", close = " ";
};

Style StyleOf(const std::string& text, const JsonObject& scene) {
    Style style{GapBefore(text, scene.Begin()),
                GapBefore(text, scene.Members()[0].Begin()),
                GapBefore(text, scene.Members()[1].Begin()),
                {},
                GapBefore(text, scene.End() - 1)};
    style.levels = scene.Has("levels") ? GapBefore(text, scene["levels"].Begin()) : style.next;
    if (!Breaks(style.levels) && Breaks(style.before)) {
        style.levels = style.before + (style.before.back() == '\t' ? "\t" : "  ");
    }
    return style;
}

}  // namespace

QString LevelsText(const std::string& sName, const QString& sLevels) {
    return QString::fromStdString(Quoted(sName)) + ": [" + sLevels + ']';
}

QByteArray WithScene(const QByteArray& text, std::size_t iScene, const Scene& scene, double fade,
                     const QStringList& levels) {
    const JsonText json({}, text);
    const JsonObject root(JsonItem(json, {}));
    std::vector<JsonItem> scenes;
    root.ForEachElementOf("scenes", {}, [&](const JsonItem& read) { scenes.push_back(read); });
    const Style style = scenes.empty()
                            ? Style()
                            : StyleOf(json.Text(), JsonObject(scenes[std::min(iScene, scenes.size() - 1)]));
    // On the lines after the first, names stand one below the other.
    const std::string sBegin = "\"levels\": { ";
    const std::string sNext = Breaks(style.levels) ? style.levels + std::string(sBegin.size(), ' ') : " ";
    const std::string sLevels =
        sBegin + levels.join(QString::fromStdString(',' + sNext)).toStdString() + " }";
    const auto replaced = [&text](std::size_t begin, std::size_t end, const std::string& sNew) {
        return QByteArray(text).replace(static_cast<int>(begin), static_cast<int>(end - begin),
                                        QByteArray::fromStdString(sNew));
    };
    const auto behind = [&](const JsonItem& last, const std::string& sGap, const std::string& sNew) {
        return replaced(last.End(), last.End(), ',' + sGap + sNew);
    };
    if (iScene < scenes.size()) {
        const JsonObject old(scenes[iScene]);
        return old.Has("levels") ? replaced(old["levels"].Begin(), old["levels"].End(), sLevels)
                                 : behind(old.Members().back(), style.levels, sLevels);
    }
    std::string sScene = '{' + style.open + "\"id\": " + std::to_string(scene.id);
    sScene += ',' + style.next + "\"name\": " + Quoted(scene.name);
    sScene += scene.area < 0 ? "" : ',' + style.next + "\"area\": " + std::to_string(scene.area);
    sScene += fade <= 0 ? "" : ',' + style.next + "\"fade\": " + QString::number(fade, 'g', 8).toStdString();
    sScene += ',' + style.levels + sLevels + style.close + '}';
    if (!scenes.empty()) {
        return behind(scenes.back(), style.before, sScene);
    }
    const std::string sList = "[ " + sScene + " ]";
    if (root.Has("scenes")) {
        return replaced(root["scenes"].Value(), root["scenes"].End(), sList);
    }
    const JsonItem& last = root.Members().back();
    return behind(last, GapBefore(json.Text(), last.Begin()), "\"scenes\": " + sList);
}
