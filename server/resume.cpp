#include "server/resume.h"

#include "device/messages.h"
#include "server/change.h"

#include <QFile>
#include <QFileInfo>
#include <QSaveFile>

#include <algorithm>
#include <chrono>
#include <memory>
#include <stdexcept>
#include <utility>

namespace {

constexpr int SaveMs = 1000;
/// More than twice what a state with all channels held takes.
constexpr qint64 MaxFile = qint64{4} * 1024 * 1024;

}  // namespace

Resume::Resume(State& state, QString sPath, Log log)
    : m_state(state), m_sPath(std::move(sPath)), m_log(std::move(log)), m_worker(1) {
    const QFileInfo info(m_sPath);
    if (info.exists() && !info.isFile()) {
        m_log(m_sPath + ": not a regular file; the show begins as written, and nothing is kept");
        return;
    }
    if (info.exists()) {
        try {
            TakeUp();
        } catch (const std::exception& error) {
            const QString sAside = m_sPath + ".damaged";
            QFile::remove(sAside);
            const bool bAside = QFile::rename(m_sPath, sAside);
            m_log(m_sPath + ": " + error.what() + "; the show begins as written" +
                  (bAside ? ", and the file is kept as " + sAside : QString()));
        }
    }
    connect(&state, &State::changed, this, [this] { m_bChanged = true; });
    connect(&m_timer, &QTimer::timeout, this, &Resume::Save);
    m_timer.start(SaveMs);
}

Resume::~Resume() {
    m_worker.Finish();
    if (m_bChanged) {
        Save();
    }
}

void Resume::TakeUp() {
    QFile file(m_sPath);
    if (!file.open(QIODevice::ReadOnly)) {
        throw std::runtime_error(file.errorString().toStdString());
    }
    const QByteArray text = file.read(std::min(MaxFile, file.size()));
    if (text.size() == MaxFile) {
        throw std::runtime_error("not a file below 4 MB");
    }
    const JSONDocument document(text);
    bool bWhole = false;
    int nLeftOut = 0;
    document.Root().ForEachMember("content", [&](const JSONNode& messages) {
        bWhole = messages.IsArray();
        if (bWhole) {
            m_state.StopAll();
        }
        messages.ForEachElement([&](const JSONNode& message) {
            int nType = 0;
            message.ForEachMember("typ", [&nType](const JSONNode& value) { nType = value.AsInt(); });
            message.ForEachMember("content", [&](const JSONNode& content) {
                const auto change = TakeMessage(m_state, static_cast<MessageType>(nType), content);
                nLeftOut += change && (change->universe >= 0 || !change->message.empty()) ? 0 : 1;
            });
        });
    });
    if (!bWhole) {
        throw std::runtime_error("no state that was kept");
    }
    m_log(QString("takes up %1: %2 run, %3 left out")
              .arg(m_sPath, QString::number(m_state.Runs().size()), QString::number(nLeftOut)));
}

std::string Resume::Text() const {
    std::string sText = "{\n\"content\" : [\n";
    for (const Playable& running : m_state.Runs()) {
        sText += running.program ? messages::Program(running.id, true)
                                 : messages::Scene(running.id, m_state.Find(running)->area, true);
        sText += ",\n";
    }
    for (int nUniverse = 0; nUniverse < Universes::Count; ++nUniverse) {
        if (m_state.Held().IsHeld(nUniverse)) {
            sText += messages::Universe(nUniverse, m_state.Held()) + ",\n";
        }
    }
    // The colour comes after the starts, which release it.
    return sText + messages::Color(m_state.CurrentColor()) + ",\n" +
           messages::Command(m_state.CurrentCommand()) + "\n]\n}\n";
}

void Resume::Save() {
    if (m_error.valid() && m_error.wait_for(std::chrono::seconds(0)) != std::future_status::ready) {
        return;
    }
    const QString sError = m_error.valid() ? m_error.get() : QString();
    if (sError.isEmpty() == m_bTold) {
        m_bTold = !m_bTold;
        m_log(m_sPath + (m_bTold ? ": cannot be written: " + sError : " is written again"));
    }
    if (!std::exchange(m_bChanged, false) && sError.isEmpty()) {
        return;
    }
    const auto pError = std::make_shared<std::promise<QString>>();
    m_error = pError->get_future();
    m_worker.Do([sPath = m_sPath, text = QByteArray::fromStdString(Text()), pError] {
        QSaveFile file(sPath);
        const bool bWritten =
            file.open(QIODevice::WriteOnly) && file.write(text) == text.size() && file.commit();
        pError->set_value(bWritten ? QString() : file.errorString());
    });
}
