#include "server/show/patchsheet.h"

#include <algorithm>
#include <tuple>

QStringList PatchSheet(const Show& show) {
    std::vector<Fixture> fixtures = show.fixtures;
    std::sort(fixtures.begin(), fixtures.end(), [](const Fixture& a, const Fixture& b) {
        return std::tie(a.universe, a.channel) < std::tie(b.universe, b.channel);
    });
    QStringList lines;
    for (const Fixture& fixture : fixtures) {
        const auto nWidth = static_cast<int>(fixture.layout.size());
        for (int i = 0; i < fixture.count; ++i) {
            const int nFirst = fixture.channel + i * nWidth + 1;
            const QString sUnit = fixture.count > 1 ? " " + QString::number(i + 1) : QString();
            lines.append(QString("%1 %2 %3  %4  %5")
                             .arg(fixture.universe + 1, 8)
                             .arg(nFirst, 8)
                             .arg(nFirst + nWidth - 1, 5)
                             .arg(QString::fromStdString(fixture.layout), -8)
                             .arg(QString::fromStdString(fixture.name) + sUnit));
        }
    }
    if (!lines.isEmpty()) {
        lines.prepend("universe  channel    to  layout    fixture");
    }
    return lines;
}
