#include "widgets/cparamsctrl.h"

#include "settings/cinifile.h"
#include "widgets/artwork.h"
#include "widgets/cswitchctrl.h"
#include "widgets/cswitchiconctrl.h"
#include "widgets/serverlist.h"

#include <QCommandLinkButton>
#include <QDesktopServices>
#include <QHBoxLayout>
#include <QKeyEvent>
#include <QLabel>
#include <QLineEdit>
#include <QMouseEvent>
#include <QPushButton>
#include <QScopedValueRollback>
#include <QUrl>
#include <QVBoxLayout>

#include <algorithm>

namespace {

QString ImagePath(const QString& sName) {
    return ":/Corvane/Images/" + sName + ".png";
}

void Describe(QWidget* pWidget, const QString& sPurpose) {
    pWidget->setToolTip(sPurpose);
    pWidget->setAccessibleName(sPurpose);
}

/// A label that shows a picture, and what it stands for.
QLabel* PictureLabel(const QString& sName, const QString& sPurpose) {
    auto* pLabel = new QLabel;
    pLabel->setPixmap(artwork::Picture(ImagePath(sName)));
    Describe(pLabel, sPurpose);
    return pLabel;
}

}  // namespace

CParamsCtrl::CParamsCtrl(const CIniFile& settings, const QString& sIp,
                         const std::optional<StoreLinks>& stores, QWidget* parent)
    : QWidget(parent), m_bLocked(settings.pwdState), m_sStoredPassword(settings.pwdValue), m_stores(stores) {
    auto* pRows = new QVBoxLayout;
    pRows->addStretch();
    pRows->addLayout(ServerRow());
    pRows->addLayout(AddressRow());
    SetIp(sIp);
    pRows->addStretch();
    pRows->addLayout(PasswordRow());
    pRows->addStretch();

    const auto& visible = settings.menuVisible;
    const auto& params = settings.sceneParams;
    m_switches = {
        Switch("MenuButScene", tr("Scenes page in the menu"), visible[0], &CParamsCtrl::OnShowScenes),
        Switch("MenuButProg", tr("Programs page in the menu"), visible[1], &CParamsCtrl::OnShowPrograms),
        Switch("MenuButColor", tr("Color page in the menu"), visible[2], &CParamsCtrl::OnShowColor),
        Switch("MenuButChan", tr("Channels page in the menu"), visible[3], &CParamsCtrl::OnShowChannels),
        Switch("Text", tr("Own names of scenes and programs"), params[0], &CParamsCtrl::OnTextScenes),
        Switch("Icon", tr("Own icons of scenes and programs"), params[1], &CParamsCtrl::OnIconScenes),
        Switch("Color", tr("Own colors of scenes and programs"), params[2], &CParamsCtrl::OnColorScenes)};
    for (std::size_t i = 0; i < m_switches.size(); ++i) {
        if (i == visible.size()) {
            pRows->addStretch();
        }
        pRows->addWidget(m_switches[i]);
        m_switches[i]->setFocusPolicy(i == 0 ? Qt::TabFocus : Qt::NoFocus);
    }
    pRows->addStretch();
    if (m_stores) {
        pRows->addLayout(StoreRow());
        pRows->addStretch();
    }

    auto* pLayout = new QHBoxLayout(this);
    pLayout->addStretch();
    pLayout->addLayout(pRows);
    pLayout->addStretch();

    if (m_bLocked) {
        Lock();
    } else {
        m_pPassword->setText(m_sStoredPassword);
    }
}

QHBoxLayout* CParamsCtrl::ServerRow() {
    m_pServers = new ServerList;
    m_pServers->setFocusPolicy(Qt::TabFocus);
    Describe(m_pServers, tr("Server"));
    connect(m_pServers, qOverload<int>(&QComboBox::currentIndexChanged), this, &CParamsCtrl::OnSerialChanged);
    // The entry that was selected already is a choice, too.
    connect(m_pServers, qOverload<int>(&QComboBox::activated), this, [this] { m_bChosen = true; });

    auto* pRow = new QHBoxLayout;
    pRow->setSpacing(18);
    pRow->addWidget(PictureLabel("Serial", tr("Server")));
    pRow->addWidget(m_pServers, 1);
    return pRow;
}

QHBoxLayout* CParamsCtrl::AddressRow() {
    auto* pRow = new QHBoxLayout;
    pRow->setSpacing(0);
    m_pIpLabel = PictureLabel("IP", tr("Address of the server"));
    pRow->addWidget(m_pIpLabel);
    pRow->addSpacing(10);
    for (std::size_t i = 0; i < m_fields.size(); ++i) {
        if (i > 0) {
            m_dots[i - 1] = new QLabel(".");
            m_dots[i - 1]->setAlignment(Qt::AlignCenter);
            pRow->addWidget(m_dots[i - 1]);
        }
        m_fields[i] = new QLineEdit;
        m_fields[i]->setAlignment(Qt::AlignCenter);
        m_fields[i]->setInputMask("000");
        m_fields[i]->setFixedWidth(40);
        Describe(m_fields[i], tr("Address of the server, field %1 of 4").arg(i + 1));
        pRow->addWidget(m_fields[i]);
    }
    pRow->addSpacing(10);
    constexpr QSize size(50, 29);
    m_pRefresh = new QPushButton;
    m_pRefresh->setFocusPolicy(Qt::TabFocus);
    m_pRefresh->setIcon(artwork::Icon(ImagePath("MenuButRefresh")));
    m_pRefresh->setIconSize(size);
    m_pRefresh->setFixedSize(size);
    Describe(m_pRefresh, tr("Connect again"));
    connect(m_pRefresh, &QPushButton::pressed, this, &CParamsCtrl::OnRefresh);
    pRow->addWidget(m_pRefresh);
    return pRow;
}

QHBoxLayout* CParamsCtrl::PasswordRow() {
    m_pPassword = new QLineEdit;
    m_pPassword->setAlignment(Qt::AlignCenter);
    m_pPassword->setFixedWidth(200);
    Describe(m_pPassword, tr("Password of this page"));
    m_pLock = new CSwitchCtrl(nullptr);
    Describe(m_pLock, tr("Lock this page with the password"));
    connect(m_pLock, &CSwitchCtrl::stateChanged, this, &CParamsCtrl::OnPwdStateChanged);

    auto* pRow = new QHBoxLayout;
    pRow->setSpacing(10);
    pRow->addWidget(PictureLabel("Lock", tr("Lock")));
    pRow->addWidget(m_pPassword);
    pRow->addWidget(m_pLock);
    return pRow;
}

QHBoxLayout* CParamsCtrl::StoreRow() {
    auto* pRow = new QHBoxLayout;
    pRow->setSpacing(0);
    const auto add = [&](const QString& sPicture, const QString& sText, int nWidth,
                         void (CParamsCtrl::*slot)()) {
        auto* pButton = new QCommandLinkButton(sText);
        pButton->setFlat(true);
        pButton->setCursor(Qt::PointingHandCursor);
        pButton->setFocusPolicy(Qt::TabFocus);
        pButton->setFixedWidth(nWidth);
        connect(pButton, &QCommandLinkButton::pressed, this, slot);
        pRow->addWidget(PictureLabel(sPicture, tr("Application for your phone or tablet")));
        pRow->addWidget(pButton);
    };
    add("Android", tr("Google play"), 130, &CParamsCtrl::OnAndroid);
    add("iOS", tr("iTunes"), 90, &CParamsCtrl::OnIOS);
    return pRow;
}

CSwitchIconCtrl* CParamsCtrl::Switch(const QString& sPicture, const QString& sPurpose, bool bState,
                                     void (CParamsCtrl::*slot)(bool)) {
    auto* pSwitch = new CSwitchIconCtrl(ImagePath(sPicture), nullptr);
    Describe(pSwitch, sPurpose);
    pSwitch->SetState(bState);
    connect(pSwitch, &CSwitchIconCtrl::stateChanged, this, slot);
    return pSwitch;
}

void CParamsCtrl::AddSerial(const QString& sSerial, const QString& sAddress) {
    const QScopedValueRollback<bool> filling(m_bFilling, true);
    if (!m_pServers->Add(sSerial, sAddress) || m_bChosen) {
        return;
    }
    if (sSerial.isEmpty()) {
        SetIp(sAddress);
    }
    m_pServers->setCurrentIndex(0);
}

void CParamsCtrl::SetIp(QString sAddress) {
    if (sAddress.isEmpty()) {
        return;
    }
    for (std::size_t i = 0; i < 3; ++i) {
        const auto nDot = sAddress.indexOf('.');
        if (nDot < 0) {
            // What is left over is the field of its own place; those after it stay.
            m_fields[i]->setText(sAddress);
            return;
        }
        m_fields[i]->setText(sAddress.left(nDot));
        sAddress.remove(0, nDot + 1);
    }
    m_fields[3]->setText(sAddress);
}

QString CParamsCtrl::GetIp() const {
    return QString("%1.%2.%3.%4")
        .arg(m_fields[0]->text(), m_fields[1]->text(), m_fields[2]->text(), m_fields[3]->text());
}

void CParamsCtrl::UpdateIp() {
    SetIp(m_pServers->Address(m_pServers->currentIndex()));
}

QString CParamsCtrl::GetPassWord() const {
    return CIniFile::OneLine(m_pPassword->text());
}

void CParamsCtrl::Lock() {
    SetCtrlsVisible(false);
    m_pPassword->clear();
    m_pLock->SetState(false);
    m_bLocked = true;
}

void CParamsCtrl::ShowCtrls() {
    SetCtrlsVisible(true);
}

void CParamsCtrl::SetCtrlsVisible(bool bVisible) {
    m_pIpLabel->setVisible(bVisible);
    m_pRefresh->setVisible(bVisible);
    for (QLabel* pDot : m_dots) {
        pDot->setVisible(bVisible);
    }
    for (QLineEdit* pField : m_fields) {
        pField->setVisible(bVisible);
    }
    for (CSwitchIconCtrl* pSwitch : m_switches) {
        pSwitch->setVisible(bVisible);
    }
}

void CParamsCtrl::OnSerialChanged(int iIndex) {
    if (m_bFilling || m_pServers->Address(iIndex).isEmpty()) {
        return;
    }
    m_bChosen = true;
    SetIp(m_pServers->Address(iIndex));
    emit refresh();
}

void CParamsCtrl::OnRefresh() {
    emit refresh();
}

/// While the page is locked the switch only asks for it to open, and what is saved stays as it is.
void CParamsCtrl::OnPwdStateChanged(bool bState) {
    if (!m_bLocked) {
        emit pwdStateChanged(bState);
    } else if (GetPassWord() == m_sStoredPassword) {
        ShowCtrls();
        m_pLock->SetState(true);
        m_bLocked = false;
    } else {
        m_pLock->SetState(false);
    }
}

void CParamsCtrl::OnShowScenes(bool bShow) {
    emit showMenu(0, bShow);
}
void CParamsCtrl::OnShowPrograms(bool bShow) {
    emit showMenu(1, bShow);
}
void CParamsCtrl::OnShowColor(bool bShow) {
    emit showMenu(2, bShow);
}
void CParamsCtrl::OnShowChannels(bool bShow) {
    emit showMenu(3, bShow);
}
void CParamsCtrl::OnTextScenes(bool bEnable) {
    emit enableParam(0, bEnable);
}
void CParamsCtrl::OnIconScenes(bool bEnable) {
    emit enableParam(1, bEnable);
}
void CParamsCtrl::OnColorScenes(bool bEnable) {
    emit enableParam(2, bEnable);
}

void CParamsCtrl::OnAndroid() {
    if (m_stores) {
        QDesktopServices::openUrl(QUrl(m_stores->android));
    }
}

void CParamsCtrl::OnIOS() {
    if (m_stores) {
        QDesktopServices::openUrl(QUrl(m_stores->ios));
    }
}

void CParamsCtrl::keyPressEvent(QKeyEvent* event) {
    const auto here = std::find(m_switches.begin(), m_switches.end(), window()->focusWidget());
    const auto last = std::prev(m_switches.end());
    auto there = here;
    if (event->key() == Qt::Key_Up && here != m_switches.begin() && here <= last) {
        --there;
    } else if (event->key() == Qt::Key_Down && here < last) {
        ++there;
    }
    if (there == here) {
        event->ignore();
        return;
    }
    (*here)->setFocusPolicy(Qt::NoFocus);
    (*there)->setFocusPolicy(Qt::TabFocus);
    (*there)->setFocus(Qt::TabFocusReason);
}

void CParamsCtrl::mousePressEvent(QMouseEvent*) {
    emit mousePressed();
}
