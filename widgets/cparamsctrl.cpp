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
#include <QSignalBlocker>
#include <QUrl>
#include <QVBoxLayout>

namespace {

void Describe(QWidget* pWidget, const QString& sPurpose) {
    pWidget->setToolTip(sPurpose);
    pWidget->setAccessibleName(sPurpose);
}

/// A label that shows a picture, and what it stands for.
QLabel* PictureLabel(const QString& sName, const QString& sPurpose) {
    auto* pLabel = new QLabel;
    pLabel->setPixmap(artwork::Named(sName));
    Describe(pLabel, sPurpose);
    return pLabel;
}

}  // namespace

CParamsCtrl::CParamsCtrl(const CIniFile& settings, const QString& sIp,
                         const std::optional<StoreLinks>& stores, QWidget* parent)
    : QWidget(parent),
      m_bLocked(settings.pwdState),
      m_sStoredPassword(settings.pwdValue),
      m_stores(stores.value_or(StoreLinks())) {
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
    for (CSwitchIconCtrl* pSwitch : m_switches) {
        pRows->addWidget(pSwitch);
        pSwitch->setFocusPolicy(pSwitch == m_switches.first() ? Qt::TabFocus : Qt::NoFocus);
        m_lockable += pSwitch;
    }
    pRows->insertStretch(pRows->indexOf(m_switches[4]));  // between pages and customisation
    pRows->addStretch();
    if (stores) {
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
    const auto add = [this, pRow](QWidget* pWidget) {
        pRow->addWidget(pWidget);
        m_lockable += pWidget;
    };
    pRow->setSpacing(0);
    add(PictureLabel("IP", tr("Address of the server")));
    pRow->addSpacing(10);
    for (std::size_t i = 0; i < m_fields.size(); ++i) {
        if (i > 0) {
            auto* pDot = new QLabel(".");
            pDot->setAlignment(Qt::AlignCenter);
            add(pDot);
        }
        m_fields[i] = new QLineEdit;
        m_fields[i]->setAlignment(Qt::AlignCenter);
        m_fields[i]->setInputMask("000");
        m_fields[i]->setFixedWidth(40);
        Describe(m_fields[i], tr("Address of the server, field %1 of 4").arg(i + 1));
        add(m_fields[i]);
    }
    pRow->addSpacing(10);
    constexpr QSize size(50, 29);
    auto* pRefresh = new QPushButton(artwork::Named("MenuButRefresh"), QString());
    pRefresh->setFocusPolicy(Qt::TabFocus);
    pRefresh->setIconSize(size);
    pRefresh->setFixedSize(size);
    Describe(pRefresh, tr("Connect again"));
    connect(pRefresh, &QPushButton::pressed, this, &CParamsCtrl::OnRefresh);
    add(pRefresh);
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
    auto* pSwitch = new CSwitchIconCtrl(artwork::PathOf(sPicture), nullptr);
    Describe(pSwitch, sPurpose);
    pSwitch->SetState(bState);
    connect(pSwitch, &CSwitchIconCtrl::stateChanged, this, slot);
    return pSwitch;
}

void CParamsCtrl::AddSerial(const QString& sSerial, const QString& sAddress) {
    const QSignalBlocker filling(m_pServers);  // its change is not the user's
    if (!m_pServers->Add(sSerial, sAddress) || m_bChosen) {
        return;
    }
    if (sSerial.isEmpty()) {
        SetIp(sAddress);
    }
    m_pServers->setCurrentIndex(0);
}

void CParamsCtrl::SetIp(const QString& sAddress) {
    const auto nDots = sAddress.count('.');
    for (int i = 0; i < 4 && i <= nDots && !sAddress.isEmpty(); ++i) {
        m_fields.at(static_cast<std::size_t>(i))->setText(sAddress.section('.', i, i < 3 ? i : -1));
    }
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
    for (QWidget* pWidget : std::as_const(m_lockable)) {
        pWidget->setVisible(bVisible);
    }
}

void CParamsCtrl::OnSerialChanged(int iIndex) {
    if (m_pServers->Address(iIndex).isEmpty()) {
        return;
    }
    m_bChosen = true;
    SetIp(m_pServers->Address(iIndex));
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

void CParamsCtrl::OnAndroid() {
    QDesktopServices::openUrl(QUrl(m_stores.android));
}

void CParamsCtrl::OnIOS() {
    QDesktopServices::openUrl(QUrl(m_stores.ios));
}

void CParamsCtrl::keyPressEvent(QKeyEvent* event) {
    auto* pHere = qobject_cast<CSwitchIconCtrl*>(window()->focusWidget());
    const int nWay = int{event->key() == Qt::Key_Down} - int{event->key() == Qt::Key_Up};
    auto* pThere = pHere == nullptr ? nullptr : m_switches.value(m_switches.indexOf(pHere) + nWay);
    if (nWay == 0 || pThere == nullptr) {
        event->ignore();
        return;
    }
    pHere->setFocusPolicy(Qt::NoFocus);
    pThere->setFocusPolicy(Qt::TabFocus);
    pThere->setFocus(Qt::TabFocusReason);
}
