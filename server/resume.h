#pragma once

#include "device/worker.h"
#include "server/state.h"

#include <QObject>
#include <QString>
#include <QTimer>

#include <functional>
#include <future>
#include <string>

/// Keeps in a file what a state is, for the next start to take it up. The file is one JSON object, whose
/// "content" is the messages of the protocol that make the state out of a show in which nothing runs, in the
/// order of the starts.
class Resume : public QObject {
    Q_OBJECT

public:
    using Log = std::function<void(const QString&)>;

    /// Takes up what the file says, but for what the show has not, and says so by a line. Without a file the
    /// show begins as written, and so it does, with a line, after one that is damaged or too large, which is
    /// kept aside as FILE.damaged. What is no regular file is neither read nor written.
    Resume(State& state, QString sPath, Log log);
    /// Writes what the file does not have yet.
    ~Resume() override;

private:
    /// Complains by a std::exception.
    void TakeUp();
    std::string Text() const;
    void Save();

    State& m_state;
    QString m_sPath;
    Log m_log;
    QTimer m_timer;                ///< to the next writing, or to the next try, one second
    std::future<QString> m_error;  ///< of the last writing; empty if it went well
    bool m_bChanged = false;       ///< since the last writing
    bool m_bTold = false;          ///< the log says that the file cannot be written
    Worker m_worker;               ///< the disk may be slow
};
