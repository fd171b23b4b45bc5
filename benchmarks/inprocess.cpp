#include "app/corvane.h"
#include "device/fragments.h"
#include "device/messages.h"
#include "server/lamps/playback.h"
#include "server/remotes/replies.h"
#include "tests/support.h"
#include "widgets/artwork.h"
#include "widgets/ccolorcircle.h"
#include "widgets/ccolorpicker.h"
#include "widgets/channelsgrid.h"
#include "widgets/cscenelist.h"

#include <QMouseEvent>
#include <QPaintEvent>
#include <QPainter>
#include <QScrollArea>
#include <QScrollBar>

#include <benchmark/benchmark.h>
#include <simdjson.h>

namespace {

constexpr int ScenesPage = 0;
constexpr int ColorPage = 2;
constexpr int ChannelsPage = 3;
/// The size of the server's pieces.
constexpr std::size_t PieceSize = 1400;

Corvane* pWindow = nullptr;

Scene Entry(int nId, int nArea) {
    Scene scene;
    scene.name = "Scene number " + std::to_string(nId);
    scene.id = nId;
    scene.area = nArea;
    scene.level = 255;
    scene.state = nId % 10 == 0;
    return scene;
}

/// The state message of a server with so many scenes and as many programs, as datagrams.
std::vector<QByteArray> StateOf(int nEntries) {
    Show show;
    for (int i = 0; i < nEntries; ++i) {
        show.scenes.push_back(Entry(i, i / 10));
        show.programs.push_back(Entry(i, -1));
    }
    std::vector<QByteArray> datagrams;
    for (const std::string& sPiece : replies::Split(replies::State(show, Color(), Command()), PieceSize)) {
        datagrams.push_back(QByteArray::fromStdString(sPiece));
    }
    return datagrams;
}

void Apply(const std::vector<QByteArray>& datagrams) {
    for (const QByteArray& datagram : datagrams) {
        pWindow->ReadData(datagram, "127.0.0.1");
    }
    QCoreApplication::sendPostedEvents(nullptr, QEvent::LayoutRequest);
}

/// Shows a page of a window that has applied a state, and lets it come to rest.
void ShowPage(int iPage, int nEntries = 20) {
    Apply(StateOf(nEntries));
    pWindow->OnMenuChanged(iPage);
    // What is laid out is painted a turn later.
    for (int i = 0; i < 3; ++i) {
        QCoreApplication::processEvents();
    }
}

void StateApplied(benchmark::State& state) {
    constexpr int nEntries = 1000;
    const std::vector<QByteArray> datagrams = StateOf(nEntries);
    ShowPage(ScenesPage, nEntries);
    for ([[maybe_unused]] auto _ : state) {
        Apply(datagrams);
    }
    QCoreApplication::processEvents();
}
BENCHMARK(StateApplied);

QByteArray UniverseText() {
    Universes universes;
    universes.SetAll(0, 127, true);
    return QByteArray::fromStdString(messages::Universe(0, universes));
}

void UniverseParsed(benchmark::State& state) {
    const QByteArray text = UniverseText();
    simdjson::dom::parser parser;
    for ([[maybe_unused]] auto _ : state) {
        simdjson::dom::element root;
        if (parser.parse(text.constData(), static_cast<std::size_t>(text.size())).get(root) !=
            simdjson::SUCCESS) {
            state.SkipWithError("no JSON");
        }
        benchmark::DoNotOptimize(root);
    }
}
BENCHMARK(UniverseParsed);

void UniverseApplied(benchmark::State& state) {
    const QByteArray text = UniverseText();
    ShowPage(ChannelsPage);
    for ([[maybe_unused]] auto _ : state) {
        pWindow->ReadData(text, "127.0.0.1");
    }
    QCoreApplication::processEvents();
}
BENCHMARK(UniverseApplied);

void FragmentsJoined(benchmark::State& state) {
    const auto nPieces = static_cast<int>(state.range(0));
    const QByteArray filling = QByteArray(PieceSize - 1, ' ');
    const QByteArray first = '{' + filling + Fragments::Marker;
    const QByteArray middle = ' ' + filling + Fragments::Marker;
    const QByteArray last = filling + '}' + Fragments::Marker;
    Fragments fragments;
    for ([[maybe_unused]] auto _ : state) {
        benchmark::DoNotOptimize(fragments.Join(first, {}));
        for (int i = 2; i < nPieces; ++i) {
            benchmark::DoNotOptimize(fragments.Join(middle, {}));
        }
        if (!fragments.Join(last, {})) {
            state.SkipWithError("not joined");
        }
    }
}
BENCHMARK(FragmentsJoined)->Arg(1000)->Arg(2000);

void BackgroundBlit(benchmark::State& state) {
    const QPixmap background = artwork::Picture(":/Corvane/Images/Tablet.png");
    QPixmap target(background.size());
    target.fill(Qt::black);
    for ([[maybe_unused]] auto _ : state) {
        QPainter(&target).drawPixmap(0, 0, background);
    }
}
BENCHMARK(BackgroundBlit);

void WheelMove(benchmark::State& state) {
    ShowPage(ColorPage);
    CColorCircle* const pWheel = pWindow->Picker()->Wheel();
    const auto send = [pWheel](QEvent::Type type, const QPoint& place) {
        QMouseEvent event(type, place, pWheel->mapToGlobal(place), Qt::LeftButton, Qt::LeftButton,
                          Qt::NoModifier);
        QCoreApplication::sendEvent(pWheel, &event);
    };
    send(QEvent::MouseButtonPress, {210, 210});
    int i = 0;
    for ([[maybe_unused]] auto _ : state) {
        i = (i + 1) % 100;
        send(QEvent::MouseMove, {160 + i, 180 + i / 2});
        QCoreApplication::processEvents();
    }
    send(QEvent::MouseButtonRelease, {210, 210});
}
BENCHMARK(WheelMove);

void CellsPainted(benchmark::State& state) {
    ShowPage(ChannelsPage);
    pWindow->ReadData(UniverseText(), "127.0.0.1");
    for ([[maybe_unused]] auto _ : state) {
        pWindow->Grid()->repaint();
    }
}
BENCHMARK(CellsPainted);

void ScrollStep(benchmark::State& state) {
    ShowPage(ScenesPage, static_cast<int>(state.range(0)));
    auto* const pArea = qobject_cast<QScrollArea*>(pWindow->SceneList()->parentWidget()->parentWidget());
    QScrollBar* const pBar = pArea->verticalScrollBar();
    const int nTop = pBar->maximum() / 2 / 53 * 53;
    bool bDown = false;
    for ([[maybe_unused]] auto _ : state) {
        bDown = !bDown;
        pBar->setValue(nTop + (bDown ? 20 : 0));
        QCoreApplication::processEvents();
    }
}
BENCHMARK(ScrollStep)->Arg(20)->Arg(1000);

/// Counts what a widget is asked to repaint.
class PaintMeter : public QObject {
public:
    explicit PaintMeter(QWidget* pWidget) { pWidget->installEventFilter(this); }

    qint64 pixels = 0;

protected:
    bool eventFilter(QObject*, QEvent* event) override {
        if (event->type() == QEvent::Paint) {
            for (const QRect& rect : dynamic_cast<QPaintEvent*>(event)->region()) {
                pixels += qint64{rect.width()} * rect.height();
            }
        }
        return false;
    }
};

/// One scene that excludes no other goes on and off, by the server's word; how much of the list is painted
/// for that, in tiles.
void TileChange(benchmark::State& state) {
    ShowPage(ScenesPage);
    CSceneList* const pList = pWindow->SceneList();
    const PaintMeter meter(pList);
    Scene scene = Entry(3, 50);
    for ([[maybe_unused]] auto _ : state) {
        scene.state = !scene.state;
        pList->Update(scene, true);
        QCoreApplication::processEvents();
    }
    const QRect tile = pList->PartRect(0).adjusted(0, 0, 1, 1);
    state.counters["tiles"] = static_cast<double>(meter.pixels) / static_cast<double>(state.iterations()) /
                              (tile.width() * tile.height());
}
BENCHMARK(TileChange);

/// 32 universes full of moving heads, each channel in 32 scenes that fade and in 16 programs that run.
Show FullShow() {
    Show show;
    for (int nUniverse = 0; nUniverse < Universes::Count; ++nUniverse) {
        show.fixtures.push_back({"Head", nUniverse, 0, "irgbwxxx", Universes::Channels / 8});
    }
    const auto levels = [](int nSeed) {
        Slots all;
        for (std::size_t at = 0; at < std::tuple_size_v<Levels>; ++at) {
            all.push_back({static_cast<quint16>(at), static_cast<quint8>(nSeed + static_cast<int>(at))});
        }
        return all;
    };
    for (int i = 0; i < 32; ++i) {
        show.scenes.push_back(Entry(i, i));
        show.looks[{false, i}] = {{{levels(i), 3600}}, 200};
    }
    for (int i = 0; i < 16; ++i) {
        show.programs.push_back(Entry(i, -1));
        show.looks[{true, i}].steps = {{levels(i), 1, 1}, {levels(2 * i), 2, 0}, {levels(3 * i), 3, 1}};
    }
    return show;
}

void ShowRendered(benchmark::State& state) {
    const Show show = FullShow();
    State played(show);
    Playback playback(played, [] { return 0; });
    for (int i = 0; i < 32; ++i) {
        played.Switch({false, i}, true);
        played.Switch({true, i}, true);
    }
    Levels levels;
    qint64 nNowMs = 0;
    for ([[maybe_unused]] auto _ : state) {
        playback.Render(nNowMs += 25, levels);
        benchmark::DoNotOptimize(levels);
    }
}
BENCHMARK(ShowRendered);

}  // namespace

int main(int argc, char* argv[]) {
    benchmark::Initialize(&argc, argv);
    if (benchmark::ReportUnrecognizedArguments(argc, argv)) {
        return 2;
    }
    QApplication application(argc, argv);
    ChooseInterface();
    Corvane window;
    window.show();
    pWindow = &window;
    benchmark::RunSpecifiedBenchmarks();
    return 0;
}
