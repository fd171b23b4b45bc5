#pragma once

#include "device/color.h"
#include "device/command.h"
#include "device/dmxchan.h"
#include "device/jsonnode.h"
#include "device/universes.h"
#include "server/show/show.h"

#include <QObject>

#include <vector>

/// What a show does at this moment: what runs, the operator's colour and commands, the channels that are
/// held; and the rules by which one changes another. Remotes change it, lamps follow it. It knows neither.
///
/// What makes no sense (an id that the show has not, a universe that is none) changes nothing; a level,
/// dimmer or speed out of range is clamped.
class State : public QObject {
    Q_OBJECT

public:
    /// Begins as the show says: its scenes run, then its programs, in their order. Its colour has white where
    /// a fixture has.
    explicit State(Show show);

    /// The show; `state` of its scenes and programs says which run.
    const Show& CurrentShow() const { return m_show; }
    /// What runs, in the order in which it was started.
    const std::vector<Playable>& Runs() const { return m_runs; }
    const Color& CurrentColor() const { return m_color; }
    /// Next and previous are never set in it.
    const Command& CurrentCommand() const { return m_command; }
    const Universes& Held() const { return m_held; }
    /// A scene or program of the show; null for an id that it has not.
    const Scene* Find(const Playable& running) const;

    /// Plays another show from now on. Of what is to run, what it has not is left out, and of scenes of one
    /// area all but the last; nothing else begins. Commands and the serial stay.
    void Replace(Show show, std::vector<Playable> runs, const Color& color, const Universes& held);

    /// Starts (true) or stops. A scene that starts stops the others of its area; whatever starts, also what
    /// runs already, releases the colour, but no command. False if the show has none such.
    bool Switch(const Playable& running, bool bOn);
    /// Stops all that runs, for what ran before the program's end to be taken up: it is to stand at once, and
    /// not to fade up once more.
    void StopAll();
    bool IsTakenUp() const { return m_bTakenUp; }
    /// Whether the colour has white is the show's to say; only one without fixtures takes what it is told.
    void Take(const Color& color);
    void Take(const Command& command);
    /// Holds or releases a channel, or with channel -1 all of its universe.
    void Hold(const DmxChan& channel);
    /// The same with a whole universe, as the content of a message says. Returns which one, -1 for none.
    int HoldUniverse(const JSONNode& content);
    /// Holds fixtures side by side, as Universes::SetRun does.
    void HoldRun(int nUniverse, int nStart, int nCount, const Color& color);

signals:
    /// Replace() is about to begin, and is done.
    void showLeaves();
    void showReplaced();
    /// `bReleasesColor`: by this start the colour, which was on, went off.
    void switched(const Playable& running, bool bOn, bool bReleasesColor);
    /// The hand set the colour, or let it go.
    void colorTaken();
    /// The flags are those that are done once.
    void commandTaken(bool bNext, bool bPrevious);
    /// After each of these, and whenever channels are held or released.
    void changed();

private:
    /// False if the show has none such.
    bool Run(const Playable& running, bool bOn);

    Show m_show;
    std::vector<Playable> m_runs;
    Color m_color;
    Command m_command;
    Universes m_held;
    bool m_bTakenUp = false;
};
