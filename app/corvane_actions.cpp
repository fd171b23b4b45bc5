#include "app/corvane.h"
#include "device/messages.h"

// Customisations stay on this side and are stored whether a server is there or not.

void Corvane::OnSceneStateChanged(int iArea, int nId, bool bState) {
    if (!m_bConnected) {
        return;
    }
    m_requestTimer.start();
    m_bStateChangeInFlight = true;
    SendPacket(messages::Scene(nId, iArea, bState), true);
}

void Corvane::OnSceneNameChanged(int nId, QString sName) {
    m_settings.SaveSceneParams(nId, sName, {}, {});
}

void Corvane::OnSceneIconChanged(int nId, QString sIcon) {
    m_settings.SaveSceneParams(nId, {}, sIcon, {});
}

void Corvane::OnSceneColorChanged(int nId, QColor color) {
    m_settings.SaveSceneParams(nId, {}, {}, color);
}

void Corvane::OnProgramStateChanged(int, int nId, bool bState) {
    if (!m_bConnected) {
        return;
    }
    m_requestTimer.start();
    m_bStateChangeInFlight = true;
    SendPacket(messages::Program(nId, bState), true);
}

void Corvane::OnProgramNameChanged(int nId, QString sName) {
    m_settings.SaveProgramParams(nId, sName, {}, {});
}

void Corvane::OnProgramIconChanged(int nId, QString sIcon) {
    m_settings.SaveProgramParams(nId, {}, sIcon, {});
}

void Corvane::OnProgramColorChanged(int nId, QColor color) {
    m_settings.SaveProgramParams(nId, {}, {}, color);
}
