#include "widgets/ccolorpicker.h"

#include "device/color.h"
#include "device/command.h"
#include "widgets/artwork.h"
#include "widgets/ccolorcircle.h"
#include "widgets/ccommandwnd.h"
#include "widgets/csliderctrl.h"

#include <QHBoxLayout>
#include <QVBoxLayout>

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
      m_pRow(new QHBoxLayout),
      m_pWheel(new CColorCircle(Red(), Green(), Blue(), this)),
      m_pCommands(new CCommandWnd(this)),
      m_pDimmer(PercentControl("Dimmer", tr("Dimmer"))),
      m_pSpeed(PercentControl("Speed", tr("Speed"))) {
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

    m_pRow->setContentsMargins(0, 20, 20, 20);
    m_pRow->setSpacing(2);
    for (CSliderCtrl* pLevel : m_levels) {
        m_pRow->addWidget(pLevel);
    }
    auto* pColumn = new QVBoxLayout;
    pColumn->setContentsMargins(0, 0, 0, 0);
    pColumn->setSpacing(0);
    pColumn->addStretch();
    pColumn->addWidget(m_pWheel);
    pColumn->addStretch();
    auto* pLayout = new QHBoxLayout(this);
    pLayout->setSpacing(0);
    pLayout->addLayout(m_pRow);
    pLayout->addLayout(pColumn);

    m_pWheel->SetColor(Qt::white, true);
    White()->SetValue(255);
}

CSliderCtrl* CColorPicker::PercentControl(const QString& sPicture, const QString& sPurpose) {
    auto* pControl = new CSliderCtrl(slcGrey, true, this);
    pControl->SetValue(128);
    // The server is told percents: a step of one would often say the same again.
    pControl->Slider()->SetStep(3);
    pControl->SetIcon(artwork::Picture(":/Corvane/Images/" + sPicture + ".png"));
    pControl->setToolTip(sPurpose);
    pControl->setAccessibleName(sPurpose);
    pControl->hide();
    return pControl;
}

void CColorPicker::SwitchCmdMode() {
    m_bCmdMode = !m_bCmdMode;
    const std::array<QWidget*, 4> levels{Red(), Green(), Blue(), White()};
    const std::array<QWidget*, 3> commands{m_pCommands, m_pDimmer, m_pSpeed};
    const auto leave = [this](QWidget* pWidget) {
        m_pRow->removeWidget(pWidget);
        pWidget->hide();
    };
    const auto enter = [this](QWidget* pWidget) {
        m_pRow->addWidget(pWidget);
        pWidget->show();
    };
    if (m_bCmdMode) {
        std::for_each(levels.begin(), levels.end(), leave);
        std::for_each(commands.begin(), commands.end(), enter);
    } else {
        std::for_each(commands.begin(), commands.end(), leave);
        std::for_each(levels.begin(), levels.end(), enter);
    }
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
        White()->SetValue(m_ucWhite);
    } else {
        White()->SetValue(m_pWheel->Value());
    }
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

void CColorPicker::OnRValueChanged(int value) {
    const QColor color = m_pWheel->GetColor();
    SetPart(value, color.green(), color.blue());
}

void CColorPicker::OnGValueChanged(int value) {
    const QColor color = m_pWheel->GetColor();
    SetPart(color.red(), value, color.blue());
}

void CColorPicker::OnBValueChanged(int value) {
    const QColor color = m_pWheel->GetColor();
    SetPart(color.red(), color.green(), value);
}

/// While the wheel is dragged, the wheel decides.
void CColorPicker::SetPart(int nRed, int nGreen, int nBlue) {
    if (!m_pWheel->IsPressed()) {
        m_pWheel->SetColor(QColor(nRed, nGreen, nBlue), false);
    }
}

void CColorPicker::OnWValueChanged(int value) {
    if (!m_bWhiteMode) {
        m_pWheel->SetBright(value);
        return;
    }
    m_ucWhite = static_cast<unsigned char>(value);
    const QColor color = m_pWheel->GetColor();
    emit colorChanged(static_cast<unsigned char>(color.red()), static_cast<unsigned char>(color.green()),
                      static_cast<unsigned char>(color.blue()), m_ucWhite);
}
