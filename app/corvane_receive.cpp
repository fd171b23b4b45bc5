#include "app/corvane.h"
#include "device/logging.h"
#include "device/messages.h"
#include "device/readers.h"
#include "widgets/ccolorcircle.h"
#include "widgets/ccolorpicker.h"
#include "widgets/channelsgrid.h"
#include "widgets/cparamsctrl.h"
#include "widgets/cscenelist.h"

#include <QMessageBox>
#include <QSignalBlocker>

#include <map>
#include <stdexcept>
#include <utility>

namespace {

/// How long the warning of too many users stays away once it was closed: any host can ask for it.
constexpr int WarningPauseMs = 30000;

/// Whether there is one left, which is then taken.
bool Take(int& nLeft) {
    return nLeft > 0 && nLeft-- > 0;
}

/// The entries of an array, as many as are left.
QList<Scene> Entries(const JSONNode& array, int& nLeft) {
    QList<Scene> entries;
    array.ForEachElement([&](const JSONNode& element) {
        if (Take(nLeft)) {
            Scene entry;
            readInto(element, entry);
            entries.append(entry);
        }
    });
    return entries;
}

/// Calls visit(section's name, content) for each content of each section, as many as are left.
template <typename Visit>
void ForEachSection(const JSONNode& content, int& nLeft, Visit&& visit) {
    content.ForEachMember([&](std::string_view sName, const JSONNode& section) {
        section.ForEachMember("content", [&](const JSONNode& node) {
            if (Take(nLeft)) {
                visit(sName, node);
            }
        });
    });
}

}  // namespace

void Corvane::ReadData(const QByteArray& datagram, const QString& sSender) {
    const std::optional<QByteArray> message = m_fragments.Join(datagram, sSender);
    if (!message) {
        return;
    }
    m_work = {sSender};
    try {
        const JSONDocument document(*message);
        int nType = 0;
        document.Root().ForEachMember([&](std::string_view sName, const JSONNode& value) {
            if (sName == "typ") {
                nType = value.AsInt();
                readType(nType);
            } else if (sName == "content" && value.IsObject() && Take(m_work.nContents)) {
                readContent(nType, value);
            }
        });
        if (nType == 0) {
            qCInfo(logDrop) << "in: no type, from" << sSender;
        }
    } catch (const std::invalid_argument& error) {
        qCInfo(logDrop) << "in:" << error.what() << "from" << sSender;
        m_fragments.Clear(sSender);
    }
}

/// What a message says by its type alone.
void Corvane::readType(int nType) {
    if (nType == static_cast<int>(MessageType::Alive)) {
        m_answerTimer.start();
        if (m_bConnectionLost) {
            m_bConnectionLost = false;
            qCInfo(logNet) << "found: the server answers again";
            ShowParts();
        }
    } else if (nType == static_cast<int>(MessageType::TooManyClients) && !m_bWarningUsers &&
               (!m_warningClosed.isValid() || m_warningClosed.hasExpired(WarningPauseMs))) {
        qCInfo(logNet) << "refused: the server has too many clients";
        // The box must not run inside the socket's signal, which would stay deaf as long as it is open.
        m_bWarningUsers = true;
        QMetaObject::invokeMethod(this, &Corvane::WarnTooManyUsers, Qt::QueuedConnection);
    }
}

void Corvane::readContent(int nType, const JSONNode& content) {
    static const std::map<MessageType, void (Corvane::*)(const JSONNode&)> readers{
        {MessageType::State, &Corvane::readState},           {MessageType::Scene, &Corvane::readScene},
        {MessageType::Program, &Corvane::readProg},          {MessageType::Color, &Corvane::readColor},
        {MessageType::Command, &Corvane::readCommand},       {MessageType::Channel, &Corvane::readDmx},
        {MessageType::Universe, &Corvane::readUniverse},     {MessageType::Serial, &Corvane::readSerial},
        {MessageType::SceneStates, &Corvane::readSceneState}};
    const auto reader = readers.find(static_cast<MessageType>(nType));
    if (reader != readers.end()) {
        (this->*reader->second)(content);
    } else {
        qCInfo(logDrop) << "in: type" << nType << "says nothing to a remote, from" << m_work.sender;
    }
}

void Corvane::readState(const JSONNode& content) {
    m_scenes.clear();
    m_programs.clear();
    ForEachSection(content, m_work.nSectionContents, [this](std::string_view sName, const JSONNode& node) {
        if (sName == "scn") {
            m_scenes += Entries(node, m_work.nScenes);
        } else if (sName == "prg") {
            m_programs += Entries(node, m_work.nPrograms);
        } else if (sName == "clr") {
            readColor(node);
        } else if (sName == "cmd") {
            readCommand(node);
        }
    });
    for (Scene& program : m_programs) {
        program.area = -1;  // programs have none, whatever a server says: it would stand on the tile
    }
    Update();
    if (!m_bAnswered) {
        qCInfo(logNet) << "online: the server sent its state," << m_scenes.size() << "scenes and"
                       << m_programs.size() << "programs";
    }
    m_bAnswered = true;
    if (std::exchange(m_bSignStands, false)) {
        ShowParts();
    }
}

/// An answer that was under way when the user switched something would undo that on screen: it is passed
/// over.
void Corvane::readSceneState(const JSONNode& content) {
    if (std::exchange(m_bStateChangeInFlight, false)) {
        qCInfo(logDrop) << "in: scene states that may be older than the user's last switch";
        return;
    }
    ForEachSection(content, m_work.nSectionContents, [this](std::string_view sName, const JSONNode& node) {
        if (sName == "scn" && node.IsArray()) {
            SceneList()->ShowRunning(Entries(node, m_work.nScenes));
        } else if (sName == "prg" && node.IsArray()) {
            ProgramList()->ShowRunning(Entries(node, m_work.nPrograms));
        }
    });
}

void Corvane::readScene(const JSONNode& content) {
    readSwitch(content, *SceneList());
}

void Corvane::readProg(const JSONNode& content) {
    readSwitch(content, *ProgramList());
}

/// What starts takes the lights over from the colour page. That the colour is released is the one thing
/// received that is answered.
void Corvane::readSwitch(const JSONNode& content, CSceneList& list) {
    Scene scene;
    readInto(content, scene);
    if (scene.state) {
        const bool bHeld = m_pPicker->Wheel()->IsOn();
        const QSignalBlocker quiet(m_pPicker->Wheel());
        ReleaseCommands();
        if (bHeld && m_bConnected) {
            m_color.state = false;
            m_release = QByteArray::fromStdString(messages::Color(m_color));
        }
    }
    list.Update(scene, true);
}

void Corvane::readColor(const JSONNode& content) {
    readInto(content, m_color);
    m_pPicker->Update(m_color, m_command);
}

void Corvane::readCommand(const JSONNode& content) {
    readInto(content, m_command);
    m_pPicker->Update(m_color, m_command);
}

void Corvane::readDmx(const JSONNode& content) {
    readInto(content, m_channel);
    m_pGrid->Update(m_channel);
}

void Corvane::readUniverse(const JSONNode& content) {
    m_pGrid->Update(readInto(content, m_pGrid->Tables()));
}

void Corvane::readSerial(const JSONNode& content) {
    bool bFirst = true;
    content.ForEachMember("serial", [&](const JSONNode& serial) {
        if (!std::exchange(bFirst, false)) {
            return;
        }
        const QString sSerial = QString::fromStdString(serial.AsText());
        qCInfo(logNet) << "server" << sSerial << "at" << m_work.sender;
        m_pParams->AddSerial(sSerial, m_work.sender);
        if (Take(m_work.nStateRequests)) {
            SendState();
        }
    });
}

void Corvane::WarnTooManyUsers() {
    QMessageBox::warning(this, tr("Error"), tr("Number of users max exceeded"), QMessageBox::Ok);
    m_bWarningUsers = false;
    m_warningClosed.start();
}
