#include "app/corvane.h"

#include "app/branding.h"
#include "app/cpopupmenu.h"
#include "app/cpopuptab.h"
#include "device/messages.h"
#include "widgets/artwork.h"
#include "widgets/cchannelslider.h"
#include "widgets/ccolorcircle.h"
#include "widgets/ccolorpicker.h"
#include "widgets/ccommandwnd.h"
#include "widgets/channelsgrid.h"
#include "widgets/cparamsctrl.h"
#include "widgets/cscenelist.h"
#include "widgets/cscenelistwnd.h"
#include "widgets/csliderctrl.h"
#include "widgets/qtversions.h"

#include <QApplication>
#include <QHBoxLayout>
#include <QKeyEvent>
#include <QMouseEvent>
#include <QPaintEvent>
#include <QPainter>
#include <QPushButton>
#include <QTimer>
#include <QWindow>

namespace {

const QString BackgroundPath = ":/Corvane/Images/Tablet.png";
constexpr QRgb RimColor = 0xff59616d;

/// The links of the branding profile, unless it withholds them.
std::optional<StoreLinks> Stores() {
    Branding branding;
    if (!branding.Load(Branding::ApplicationType) || branding.type == Branding::TypeWithoutStores) {
        return std::nullopt;
    }
    return StoreLinks{branding.androidStore, branding.iosStore};
}

/// There a window's mask only says where it takes the mouse, and only the compositor moves windows; nor is an
/// X11 program, which finds the compositor's name in its environment, an exception.
bool OnWayland() {
    return QApplication::platformName().startsWith("wayland") || qEnvironmentVariableIsSet("WAYLAND_DISPLAY");
}

}  // namespace

Corvane::Corvane(QWidget* parent, Qt::WindowFlags flags, const QString& sNetwork)
    : PaintedWidget(parent, flags),
      m_sNetwork(sNetwork),
      m_pLayout(new QHBoxLayout(this)),
      m_background(artwork::Picture(BackgroundPath)) {
    setAccessibleName(QApplication::applicationDisplayName());
    QApplication::setLayoutDirection(Qt::LeftToRight);  // of addresses, levels and numbers in every language
    m_settings.Read();

    const QSize size = artwork::LogicalSize(m_background);
    setFixedSize(size);
    setMask(artwork::Shape(BackgroundPath));
    if (OnWayland()) {
        setWindowFlag(Qt::FramelessWindowHint);
        setAttribute(Qt::WA_TranslucentBackground);
    } else {
        setAttribute(Qt::WA_OpaquePaintEvent);
    }

    CreatePages();
    CreateConnections();

    m_pLayout->setContentsMargins(Border, Border, Border, Border);
    GoToPage(IsOffered(ColorPage) ? ColorPage : FirstOffered());
    ShowPopupTab();
    // As long as no key has asked for a control, none has the keys.
    setFocus();
    qApp->installEventFilter(this);
    Refresh();
    if (!m_sNetwork.isEmpty()) {
        auto* pTimer = new QTimer(this);
        connect(pTimer, &QTimer::timeout, this, &Corvane::KeepLooking);
        pTimer->start(10000);
    }
}

void Corvane::CreatePages() {
    auto* pSceneWnd = new CSceneListWnd(true, this);
    auto* pProgramWnd = new CSceneListWnd(false, this);
    m_pSceneList = pSceneWnd->List();
    m_pProgramList = pProgramWnd->List();
    m_pPicker = new CColorPicker(this);
    m_pGrid = new ChannelsGrid(this);
    m_pParams = new CParamsCtrl(m_settings, m_sServerAddress, Stores(), this);
    m_pages = {pSceneWnd, pProgramWnd, m_pPicker, m_pGrid, m_pParams};
    for (QWidget* pPage : std::as_const(m_pages)) {
        pPage->hide();
    }

    m_pTab = new CPopupTab(this);
    m_pTab->hide();
    m_pMenu = new CPopupMenu(this);
    for (int iPage = 0; iPage < ParamsPage; ++iPage) {
        m_pMenu->ShowMenu(iPage, IsOffered(iPage));
    }
    m_pMenu->hide();
}

/// All that the widgets have to tell, one line each.
void Corvane::CreateConnections() {
    const CColorCircle* pWheel = m_pPicker->Wheel();
    const CCommandWnd* pCommands = m_pPicker->Commands();
    const CChannelSlider* pEditor = m_pGrid->Editor();
    connect(m_pTab, &CPopupTab::tabPressed, this, &Corvane::OnTabPressed);
    connect(m_pMenu, &CPopupMenu::menuChanged, this, &Corvane::OnMenuChanged);
    connect(m_pSceneList, &CSceneList::stateChanged, this, &Corvane::OnSceneStateChanged);
    connect(m_pSceneList, &CSceneList::nameChanged, this, &Corvane::OnSceneNameChanged);
    connect(m_pSceneList, &CSceneList::iconChanged, this, &Corvane::OnSceneIconChanged);
    connect(m_pSceneList, &CSceneList::colorChanged, this, &Corvane::OnSceneColorChanged);
    connect(m_pProgramList, &CSceneList::stateChanged, this, &Corvane::OnProgramStateChanged);
    connect(m_pProgramList, &CSceneList::nameChanged, this, &Corvane::OnProgramNameChanged);
    connect(m_pProgramList, &CSceneList::iconChanged, this, &Corvane::OnProgramIconChanged);
    connect(m_pProgramList, &CSceneList::colorChanged, this, &Corvane::OnProgramColorChanged);
    connect(m_pPicker, &CColorPicker::colorChanged, this, &Corvane::OnColorChanged);
    connect(pWheel, &CColorCircle::colorStateChanged, this, &Corvane::OnColorStateChanged);
    connect(m_pPicker->Dimmer(), &CSliderCtrl::valueChanged, this, &Corvane::OnDimmerValueChanged);
    connect(m_pPicker->Speed(), &CSliderCtrl::valueChanged, this, &Corvane::OnSpeedValueChanged);
    connect(pCommands, &CCommandWnd::whiteChanged, this, &Corvane::OnWhiteChanged);
    connect(pCommands, &CCommandWnd::blackChanged, this, &Corvane::OnBlackChanged);
    connect(pCommands, &CCommandWnd::nextChanged, this, &Corvane::OnNextChanged);
    connect(pCommands, &CCommandWnd::pauseChanged, this, &Corvane::OnPauseChanged);
    connect(pEditor, &CChannelSlider::off, this, &Corvane::OnChannelOff);
    connect(pEditor, &CChannelSlider::ok, this, &Corvane::OnChannelValueChanged);
    connect(pEditor->Control(), &CSliderCtrl::valueChanged, this, &Corvane::OnChannelValueChanged);
    connect(m_pParams, &CParamsCtrl::refresh, this, &Corvane::Refresh);
    connect(m_pParams, &CParamsCtrl::showMenu, this, &Corvane::OnShowMenu);
    connect(m_pParams, &CParamsCtrl::enableParam, this, &Corvane::OnEnableParam);
    connect(m_pParams, &CParamsCtrl::pwdStateChanged, this, &Corvane::OnPwdStateChanged);
    connect(m_pSceneList, &CSceneList::mousePressed, this, &Corvane::OnHideMenu);
    connect(m_pProgramList, &CSceneList::mousePressed, this, &Corvane::OnHideMenu);
    connect(pWheel, &CColorCircle::mousePressed, this, &Corvane::OnHideMenu);
    connect(pCommands, &CCommandWnd::mousePressed, this, &Corvane::OnHideMenu);
    connect(m_pGrid, &ChannelsGrid::mousePressed, this, &Corvane::OnHideMenu);
    connect(m_pParams, &CParamsCtrl::mousePressed, this, &Corvane::OnHideMenu);
}

Corvane::~Corvane() {
    // Of a locked page, too: then the field is what was typed to open it, and empty in most cases.
    m_settings.pwdValue = m_pParams->GetPassWord();
    m_settings.Write();
    Disconnect();
}

/// The tick that would send the goodbye may never come: a window that waited for it would stay on a screen
/// whose server has gone.
bool Corvane::Close() {
    if (m_bConnected) {
        SendPacket(messages::Bare(MessageType::Goodbye), true);
    }
    return close();
}

PaintedPart Corvane::Part(int iPart) const {
    if (iPart == CloseButton) {
        return {tr("Close")};
    }
    return {tr("The server does not answer"), QAccessible::AlertMessage};
}

QRect Corvane::PartRect(int iPart) const {
    if (iPart == CloseButton) {
        return {QPoint(width() - 55, 20), QPoint(width() - 24, 51)};
    }
    return IsSignShown() ? QRect(QPoint(width() / 2 - 25, 4), QPoint(width() / 2 + 24, 53)) : QRect();
}

void Corvane::paintEvent(QPaintEvent* event) {
    static const QPixmap closePicture = artwork::Named("Close");
    static const QPixmap lostPicture = artwork::Named("ConnectionLost");

    QPainter painter(this);
    if (testAttribute(Qt::WA_OpaquePaintEvent)) {
        // The mask is coarser than the picture: what shines through its smooth edge is the rim.
        painter.fillRect(event->rect(), QColor(RimColor));
    }
    painter.drawPixmap(0, 0, m_background);
    for (const auto& [iPart, picture] : {std::pair(CloseButton, closePicture), {LostSign, lostPicture}}) {
        if (event->rect().intersects(PartRect(iPart))) {
            painter.drawPixmap(PartRect(iPart).topLeft(), picture);
        }
    }
}

void Corvane::keyPressEvent(QKeyEvent* event) {
    const int nKey = event->key();
    const bool bDigit = nKey >= Qt::Key_1 && nKey <= Qt::Key_9;
    // Where the digits take Shift, as in France, it is the key that counts: the first of its row has the
    // code 10.
    const int iPage = bDigit ? nKey - Qt::Key_1 : static_cast<int>(event->nativeScanCode()) - 10;
    auto* pButton = qobject_cast<QPushButton*>(focusWidget());
    event->accept();
    if (nKey == Qt::Key_Escape) {
        event->isAutoRepeat() ? event->ignore() : Escape();
    } else if ((event->modifiers() & Qt::ControlModifier) != 0 && iPage >= 0 && iPage < Pages) {
        (iPage != m_iCurrentPage && IsOffered(iPage)) ? GoToPage(iPage) : event->ignore();
    } else if (pButton != nullptr && (nKey == Qt::Key_Return || nKey == Qt::Key_Enter)) {
        pButton->click();
    } else if (hasFocus() && !HasRing() && nKey >= Qt::Key_Left && nKey <= Qt::Key_Down) {
        setAttribute(Qt::WA_KeyboardFocusChange);
        focusNextPrevChild(nKey == Qt::Key_Right || nKey == Qt::Key_Down);
    } else {
        PaintedWidget::keyPressEvent(event);
    }
}

/// What is open goes first.
void Corvane::Escape() {
    if (m_pMenu->isVisible()) {
        ShowPopupTab();
    } else if (!m_pGrid->LeaveEditor()) {
        Close();
    }
}

/// A click ends what the keys have shown, wherever it falls.
bool Corvane::eventFilter(QObject* watched, QEvent* event) {
    if (event->type() == QEvent::MouseButtonPress && event->spontaneous() &&
        testAttribute(Qt::WA_KeyboardFocusChange)) {
        setAttribute(Qt::WA_KeyboardFocusChange, false);
        if (auto* pPainted = qobject_cast<PaintedWidget*>(focusWidget())) {
            pPainted->HideRing();
        } else if (focusWidget() != nullptr) {
            focusWidget()->update();
        }
    }
    return PaintedWidget::eventFilter(watched, event);
}

/// The open menu keeps Tab. What is hidden passes the keys on by this, too: it leaves them to no control.
bool Corvane::focusNextPrevChild(bool bNext) {
    const QWidget* pFocus = focusWidget();
    if (pFocus != nullptr && !pFocus->isVisible()) {
        setFocus();
        return true;
    }
    if (m_pMenu->isVisible()) {
        m_pMenu->setFocus(bNext ? Qt::TabFocusReason : Qt::BacktabFocusReason);
        return true;
    }
    return PaintedWidget::focusNextPrevChild(bNext);
}

void Corvane::mousePressEvent(QMouseEvent* event) {
    const QPoint position = event->pos();
    if (PartAt(position) == CloseButton) {
        Close();
        return;
    }
    ShowPopupTab();
    if (rect().adjusted(Border, Border, -Border, -Border).contains(position)) {
        return;
    }
    m_windowAtPress = pos();
    m_mouseAtPress = mapToGlobal(position);
    m_bDragging = true;
}

void Corvane::mouseMoveEvent(QMouseEvent* event) {
    if (!m_bDragging) {
        return;
    }
    const QPoint way = qtversions::GlobalPosition(*event) - m_mouseAtPress;
    if (OnWayland()) {
        // The compositor takes the release: a mere click must not be lost to it.
        if (way.manhattanLength() < QApplication::startDragDistance()) {
            return;
        }
        if (windowHandle()->startSystemMove()) {
            m_bDragging = false;
            return;
        }
    }
    move(m_windowAtPress + way);
}
