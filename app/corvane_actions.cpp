#include "app/corvane.h"
#include "app/cpopupmenu.h"
#include "device/messages.h"
#include "widgets/ccolorpicker.h"
#include "widgets/channelsgrid.h"

// For a server that is not there nothing is changed, not even on this side. Customisations stay on this side
// and are stored all the same.

void Corvane::ReleaseCommands() {
    m_pPicker->ReleaseCommands();
}

void Corvane::OnSceneStateChanged(int iArea, int nId, bool bState) {
    SendSwitch(messages::Scene(nId, iArea, bState), bState);
}

/// What starts releases the colour whether a server is there or not: the release comes before the question.
void Corvane::SendSwitch(const std::string& sText, bool bState) {
    if (bState) {
        ReleaseCommands();
    }
    if (m_bConnected) {
        m_requestTimer.start();
        m_bStateChangeInFlight = true;
        SendPacket(sText, true);
    }
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
    SendSwitch(messages::Program(nId, bState), bState);
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

void Corvane::OnColorChanged(unsigned char ucR, unsigned char ucG, unsigned char ucB, unsigned char ucW) {
    if (m_bConnected) {
        m_color = {ucR, ucG, ucB, ucW, m_color.rgbw, true};
        SendColor();
    }
}

void Corvane::OnColorStateChanged(bool) {
    if (m_bConnected) {
        m_color.state = false;
        SendColor();
    }
}

void Corvane::OnDimmerValueChanged(int value) {
    ChangeCommand([&] { m_command.dim = value * 100 / 255; });
}

void Corvane::OnSpeedValueChanged(int value) {
    ChangeCommand([&] { m_command.speed = value * 100 / 255; });
}

void Corvane::OnWhiteChanged(bool bWhite) {
    ChangeCommand([&] {
        m_command.white = bWhite;
        m_command.bo = m_command.bo && !bWhite;
    });
}

void Corvane::OnBlackChanged(bool bBlack) {
    ChangeCommand([&] {
        m_command.bo = bBlack;
        m_command.white = m_command.white && !bBlack;
    });
}

/// A pulse: it is in this message and in no other.
void Corvane::OnNextChanged(bool bNext) {
    if (m_bConnected) {
        m_command.next = bNext;
        SendCommand();
        m_command.next = false;
    }
}

void Corvane::OnPauseChanged(bool bPause) {
    ChangeCommand([&] { m_command.hold = bPause; });
}

void Corvane::OnChannelOff() {
    if (m_bConnected) {
        SendPacket(messages::Channel({m_pGrid->SelectedChannel(), m_pGrid->CurrentUniverse(), 0, false}),
                   true);
    }
}

void Corvane::OnChannelValueChanged(int value) {
    if (m_bConnected) {
        SendPacket(messages::Channel({m_pGrid->SelectedChannel(), m_pGrid->CurrentUniverse(), value, true}),
                   true);
    }
}

void Corvane::OnPwdStateChanged(bool bState) {
    m_settings.pwdState = bState;
}

void Corvane::OnShowMenu(int iMenu, bool bShow) {
    if (iMenu < 0 || iMenu >= ParamsPage) {
        return;
    }
    m_settings.menuVisible.at(static_cast<std::size_t>(iMenu)) = bShow;
    m_pMenu->ShowMenu(iMenu, bShow);
}

void Corvane::OnEnableParam(int iParam, bool bEnable) {
    if (iParam < 0 || iParam > 2) {
        return;
    }
    m_settings.sceneParams.at(static_cast<std::size_t>(iParam)) = bEnable;
    m_warningClosed.invalidate();  // what the user asks for is answered
    if (m_bConnected) {
        SendState();
    }
}
