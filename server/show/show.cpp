#include "server/show/show.h"

#include <QMap>
#include <QResource>

QByteArray Show::BuiltInText() {
    Q_INIT_RESOURCE(shows);
    return QResource(":/shows/house.json").uncompressedData();
}

Show Show::BuiltIn() {
    return ReadShow("the built-in show", BuiltInText());
}

QStringList PatchSheet(const Show& show) {
    QMap<std::size_t, QString> lines;
    for (const Fixture& fixture : show.fixtures) {
        const auto nWidth = static_cast<int>(fixture.layout.size());
        for (int i = 0; i < fixture.count; ++i) {
            const int nFirst = fixture.channel + i * nWidth + 1;
            lines[fixture.At(i)] = QString("%1 %2 %3  %4  %5")
                                       .arg(fixture.universe + 1, 8)
                                       .arg(nFirst, 8)
                                       .arg(nFirst + nWidth - 1, 5)
                                       .arg(QString::fromStdString(fixture.layout), -8)
                                       .arg(QString::fromStdString(fixture.UnitName(i)));
        }
    }
    const QString sHead = "universe  channel    to  layout    fixture";
    return lines.isEmpty() ? QStringList() : QStringList(sHead) + lines.values();
}
