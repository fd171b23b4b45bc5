#include "widgets/ccolorpicker.h"

#include "device/color.h"
#include "device/command.h"
#include "widgets/artwork.h"
#include "widgets/ccolorcircle.h"
#include "widgets/ccommandwnd.h"
#include "widgets/csliderctrl.h"

#include <QHBoxLayout>

#include <algorithm>

namespace {

int ClampLevel(int nLevel) {
    return std::clamp(nLevel, 0, 255);
}

/// The slider position of a percentage. One more than its share, so that positions that were sent as a
/// percentage come back as themselves: those 100 of the 256 that stand for one.
int LevelOfPercent(int nPercent) {
    const int nShown = std::clamp(nPercent, 0, 100);
    return nShown == 0 ? 0 : nShown * 255 / 100 + 1;
}

}  // namespace

CColorPicker::CColorPicker(QWidget* parent)
    : QWidget(parent),
      m_levels{new CSliderCtrl(slcRed, false, this), new CSliderCtrl(slcGreen, false, this),
               new CSliderCtrl(slcBlue, false, this), new CSliderCtrl(slcGrey, false, this)},
      m_pWheel(new CColorCircle(Red(), Green(), Blue(), this)),
      m_pCommands(new CCommandWnd(this)),
      m_pDimmer(PercentControl("Dimmer", tr("Dimmer"))),
      m_pSpeed(PercentControl("Speed", tr("Speed"))),
      m_beside{Red(), Green(), Blue(), White()},
      m_aside{m_pCommands, m_pDimmer, m_pSpeed} {
    const std::array<QString, 4> names{tr("Red"), tr("Green"), tr("Blue"), tr("White")};
    for (std::size_t i = 0; i < m_levels.size(); ++i) {
        m_levels.at(i)->setAccessibleName(names.at(i));
    }
    m_pCommands->hide();
    connect(Red(), &CSliderCtrl::valueChanged, this, &CColorPicker::OnRValueChanged);
    connect(Green(), &CSliderCtrl::valueChanged, this, &CColorPicker::OnGValueChanged);
    connect(Blue(), &CSliderCtrl::valueChanged, this, &CColorPicker::OnBValueChanged);
    connect(White(), &CSliderCtrl::valueChanged, this, &CColorPicker::OnWValueChanged);
    connect(m_pWheel, &CColorCircle::colorPicked, this, &CColorPicker::SetColorValue);
    connect(m_pWheel, &CColorCircle::modePressed, this, &CColorPicker::SwitchCmdMode);

    auto* pRow = new QHBoxLayout;
    pRow->setContentsMargins(0, 20, 20, 20);
    pRow->setSpacing(2);
    for (QWidget* pWidget : m_beside + m_aside) {
        pRow->addWidget(pWidget);
    }
    auto* pLayout = new QHBoxLayout(this);
    pLayout->setSpacing(0);
    pLayout->addLayout(pRow);
    pLayout->addWidget(m_pWheel);

    m_pWheel->SetColor(Qt::white, true);
    White()->SetValue(255);
}

CSliderCtrl* CColorPicker::PercentControl(const QString& sPicture, const QString& sPurpose) {
    auto* pControl = new CSliderCtrl(slcGrey, true, this);
    pControl->SetValue(128);
    // The server is told percents: a step of one would often say the same again.
    pControl->Slider()->SetStep(3);
    pControl->SetIcon(artwork::Named(sPicture));
    pControl->setToolTip(sPurpose);
    pControl->setAccessibleName(sPurpose);
    pControl->hide();
    return pControl;
}

void CColorPicker::SwitchCmdMode() {
    m_beside.swap(m_aside);
    std::for_each(m_aside.cbegin(), m_aside.cend(), [](QWidget* pWidget) { pWidget->hide(); });
    std::for_each(m_beside.cbegin(), m_beside.cend(), [](QWidget* pWidget) { pWidget->show(); });
}

void CColorPicker::SetColorValue(unsigned char ucR, unsigned char ucG, unsigned char ucB) {
    if (!m_bWhiteMode) {
        White()->SetValue(m_pWheel->Value());
    }
    emit colorChanged(ucR, ucG, ucB, m_ucWhite);
}

void CColorPicker::Update(const Color& color, const Command& command) {
    m_bWhiteMode = color.rgbw;
    if (color.state != m_pWheel->IsOn()) {
        m_pWheel->SwitchState(false);
    }
    m_pWheel->SetColor(QColor(ClampLevel(color.r), ClampLevel(color.g), ClampLevel(color.b)), true);
    if (m_bWhiteMode) {
        m_ucWhite = static_cast<unsigned char>(ClampLevel(color.w));
    }
    White()->SetValue(m_bWhiteMode ? m_ucWhite : m_pWheel->Value());
    m_pDimmer->SetValue(LevelOfPercent(command.dim));
    m_pSpeed->SetValue(LevelOfPercent(command.speed));
    m_pCommands->Update(command);
}

void CColorPicker::ReleaseCommands() {
    if (m_pWheel->IsOn()) {
        m_pWheel->SwitchState(true);
    }
    m_pCommands->ReleaseCommands();
}

/// While the wheel is dragged, the wheel decides.
void CColorPicker::SetPart(void (QColor::*set)(int), int nLevel) {
    if (!m_pWheel->IsPressed()) {
        QColor color = m_pWheel->GetColor();
        (color.*set)(nLevel);
        m_pWheel->SetColor(color, false);
    }
}

void CColorPicker::OnWValueChanged(int value) {
    if (!m_bWhiteMode) {
        m_pWheel->SetBright(value);
        return;
    }
    m_ucWhite = static_cast<unsigned char>(value);
    m_pWheel->Send();
}
