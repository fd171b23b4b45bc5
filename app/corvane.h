#pragma once

#include "app/page.h"
#include "device/color.h"
#include "device/command.h"
#include "device/dmxchan.h"
#include "device/fragments.h"
#include "device/scene.h"
#include "settings/cinifile.h"
#include "widgets/paintedwidget.h"

#include <QColor>
#include <QElapsedTimer>
#include <QList>
#include <QPixmap>
#include <QPoint>
#include <QRect>
#include <QString>

#include <optional>
#include <string>

class CColorPicker;
class ChannelsGrid;
class CParamsCtrl;
class CPopupMenu;
class CPopupTab;
class CSceneList;
class JSONNode;
class QHBoxLayout;
class QTimer;
class QUdpSocket;

/// The remote's window: one page at a time inside a frame the shape of a tablet. It owns the pages, the
/// settings, what the server told of its state and the connection, and all that passes between them.
///
/// Everything runs on the GUI thread, driven by the socket and by a 25 ms timer.
class Corvane : public PaintedWidget {
    Q_OBJECT

    // Construction, frame, closing: corvane.cpp
public:
    /// Reads the settings, builds the pages and starts looking for a server, which may first ask for the
    /// network to look on. If it is given one (IsNetwork), it asks nothing and keeps looking there.
    explicit Corvane(QWidget* parent = nullptr, Qt::WindowFlags flags = {}, const QString& sNetwork = {});
    /// Writes the settings and leaves the network.
    ~Corvane() override;

    /// Says goodbye to the server and closes the window. The goodbye leaves with the next tick, if there
    /// still is one; nothing waits for it. Returns whether the window closed.
    bool Close();

    enum FramePart { CloseButton, LostSign };

    int PartCount() const override { return 2; }
    PaintedPart Part(int iPart) const override;
    QRect PartRect(int iPart) const override;
    PaintedPart Whole() const override { return {{}, QAccessible::Window}; }

protected:
    void LetGo() override { m_bDragging = false; }
    bool eventFilter(QObject* watched, QEvent* event) override;
    bool focusNextPrevChild(bool bNext) override;
    void paintEvent(QPaintEvent* event) override;
    void keyPressEvent(QKeyEvent* event) override;
    void mousePressEvent(QMouseEvent* event) override;
    void mouseMoveEvent(QMouseEvent* event) override;
    void mouseReleaseEvent(QMouseEvent*) override { LetGo(); }
    /// The second click of a double click is no press: it must neither close the window nor start a drag.
    void mouseDoubleClickEvent(QMouseEvent*) override {}

private:
    /// The frame round the page, which is also where the window can be dragged.
    static constexpr int Border = 58;

    void CreatePages();
    void CreateConnections();
    void Escape();

    // Connection: corvane_transport.cpp
public:
    /// Binds the local port and starts the timers; the first time, asks for the network interface. False when
    /// the user declined or, after a warning, when the port cannot be bound.
    bool Connect();
    /// Starts over on a pair of ports: asks who is there while no server is known, else asks for its state.
    void InitConnection(int nLocalPort, int nRemotePort);
    void Disconnect();
    /// Sends a text now, or keeps it for the next tick (deferred), where it replaces one that still waits.
    /// The text ends at its first NUL. Nothing is retried; a server address that is none stands for this
    /// machine, and another address drops what waits.
    void SendPacket(const std::string& sText, bool bDeferred);
    /// Shows the server's state on the pages; the first time in the life of the process also chooses the
    /// page.
    void Update();

    bool IsConnected() const { return m_bConnected; }
    bool IsConnectionLost() const { return m_bConnectionLost; }
    bool IsAnswered() const { return m_bAnswered; }
    int LocalPort() const { return m_nLocalPort; }
    const QString& ServerAddress() const { return m_sServerAddress; }

private:
    void Write(const QByteArray& text);
    void SetServer(const QString& sAddress);
    bool ChooseNetwork();
    void KeepLooking();
    /// Whether the sign of the lost connection is shown.
    bool IsSignShown() const { return m_bConnectionLost || (m_bSignStands && !m_bAnswered); }
    void PollCurrentPage();

    // Messages to the server: corvane_send.cpp. None looks at the connected flag, their callers do.
public:
    void SendAlive();
    void SendSerial();  ///< asks every server for its serial
    void SendState();   ///< asks the chosen server for everything
    void SendSceneState();
    void SendCmdState();
    void SendDmxState();
    void SendColor();
    void SendCommand();
    /// Patterns to try a server with. Each call of the first two holds the channels or, the next time,
    /// releases them.
    void SendUniverse();
    void SendUniverseSingleLevel();
    void SendUniverseColor();

    // Messages from the server: corvane_receive.cpp
public:
    /// Takes one datagram, whatever its bytes, from the address `sSender`.
    void ReadData(const QByteArray& datagram, const QString& sSender);

    const Color& ColorState() const { return m_color; }
    const Command& CommandState() const { return m_command; }
    const DmxChan& ChannelState() const { return m_channel; }
    const QList<Scene>& Scenes() const { return m_scenes; }
    const QList<Scene>& Programs() const { return m_programs; }

private:
    void readType(int nType);
    void readContent(int nType, const JSONNode& content);
    void readState(const JSONNode& content);
    void readSceneState(const JSONNode& content);
    void readScene(const JSONNode& content);
    void readProg(const JSONNode& content);
    void readSwitch(const JSONNode& content, CSceneList& list);
    void readColor(const JSONNode& content);
    void readCommand(const JSONNode& content);
    void readDmx(const JSONNode& content);
    void readUniverse(const JSONNode& content);
    void readSerial(const JSONNode& content);
    void WarnTooManyUsers();

    // The user's hand: corvane_actions.cpp
private:
    /// A scene or program that starts takes the lights over from the colour page.
    void ReleaseCommands();
    void SendSwitch(const std::string& sText, bool bState);

    /// Changes the commands and tells the server, if it is there.
    template <typename Change>
    void ChangeCommand(Change change) {
        if (m_bConnected) {
            change();
            SendCommand();
        }
    }

    // Pages: corvane_pages.cpp
public:
    int CurrentPage() const { return m_iCurrentPage; }
    CSceneList* SceneList() const { return m_pSceneList; }
    CSceneList* ProgramList() const { return m_pProgramList; }
    CColorPicker* Picker() const { return m_pPicker; }
    ChannelsGrid* Grid() const { return m_pGrid; }
    CParamsCtrl* Params() const { return m_pParams; }
    CPopupTab* Tab() const { return m_pTab; }
    CPopupMenu* Menu() const { return m_pMenu; }

    /// Closes the menu and leaves its handle.
    void ShowPopupTab();
    void ShowPopupMenu();

private:
    void GoToPage(int iPage);
    int FirstOffered() const;
    void LeaveParams();
    void TakePlace(QWidget* pHost, const QRect& place, QWidget* pOther);
    bool HasKeys(const QWidget* pHost) const;
    void GiveKeys(QWidget* pHost);
    bool IsOffered(int iPage) const;

    // Slots
public slots:
    // of the timer and the socket: corvane_transport.cpp
    void OnTimer();
    void ReadPacket();

    // of the menu, and "connect again": corvane_pages.cpp, corvane_transport.cpp
    void OnTabPressed() { ShowPopupMenu(); }
    /// Shows a page, or connects again (CPopupMenu::Refresh). Leaving the parameters locks them if the user
    /// wants them locked. Any other index leaves no page on screen.
    void OnMenuChanged(int iMenu);
    void OnHideMenu() { ShowPopupTab(); }
    /// Starts over on the first pair of ports.
    void Refresh();

    // of the pages: corvane_actions.cpp
    void OnPwdStateChanged(bool bState);
    /// Offers page 0 to 3 in the menu or not; the page on screen stays.
    void OnShowMenu(int iMenu, bool bShow);
    /// Applies own names (0), icons (1) or colours (2) or not, and asks for the state so that the lists
    /// follow.
    void OnEnableParam(int iParam, bool bEnable);
    void OnSceneStateChanged(int iArea, int nId, bool bState);
    void OnSceneNameChanged(int nId, QString sName);
    void OnSceneIconChanged(int nId, QString sIcon);
    void OnSceneColorChanged(int nId, QColor color);
    void OnProgramStateChanged(int iArea, int nId, bool bState);
    void OnProgramNameChanged(int nId, QString sName);
    void OnProgramIconChanged(int nId, QString sIcon);
    void OnProgramColorChanged(int nId, QColor color);
    /// Puts a colour on the lights; each level 0 to 255.
    void OnColorChanged(unsigned char ucR, unsigned char ucG, unsigned char ucB, unsigned char ucW);
    /// Releases the colour, whatever the argument.
    void OnColorStateChanged(bool bState);
    /// Dimmer and speed come as levels, 0 to 255, and are kept in percent.
    void OnDimmerValueChanged(int value);
    void OnSpeedValueChanged(int value);
    void OnWhiteChanged(bool bWhite);
    void OnBlackChanged(bool bBlack);
    void OnNextChanged(bool bNext);
    void OnPauseChanged(bool bPause);
    /// Release the channel in the grid's editor, or hold it at a level, 0 to 255.
    void OnChannelOff();
    void OnChannelValueChanged(int value);

    // State
private:
    /// What one message may still do: more than any server asks for, less than would hold up the user. What
    /// goes beyond is passed over.
    struct Work {
        QString sender;  ///< whose it is
        int nContents = 64;
        int nSectionContents = 64;
        int nScenes = 10000;
        int nPrograms = 10000;
        int nStateRequests = 1;
    };

    QUdpSocket* m_pSocket = nullptr;  ///< created once an interface is chosen, bound anew by each Connect()
    QTimer* m_pTimer = nullptr;       ///< ticks from the first Connect() on
    QElapsedTimer m_aliveTimer;       ///< since the last alive message
    QElapsedTimer m_answerTimer;      ///< since the server last answered one
    QElapsedTimer m_requestTimer;     ///< since the last request
    CIniFile m_settings;
    Color m_color;
    Command m_command;
    DmxChan m_channel;      ///< the last channel the server reported
    QList<Scene> m_scenes;  ///< as the last state listed them: what runs since then is in the lists on screen
    QList<Scene> m_programs;
    int m_iCurrentPage = ColorPage;
    int m_nLocalPort = 8094;
    int m_nRemotePort = 8093;
    bool m_bConnected = false;
    bool m_bConnectionLost = false;
    bool m_bAnswered = false;             ///< the server sent its state since the last Connect()
    bool m_bStateChangeInFlight = false;  ///< the next scene states may be older than the user's last switch
    bool m_bWarningUsers = false;         ///< the warning of too many users is up or about to be
    bool m_bSignStands = false;           ///< no server has answered: the sign outlives a new beginning
    QString m_sNetwork;                   ///< given at the start, with no one there to be asked
    QString m_sInterface;                 ///< address to bind, or "Auto"
    QString m_sBroadcast = "192.168.0.255";
    QString m_sServerAddress = "192.168.0.255";
    std::optional<QByteArray> m_pending;  ///< waits for the next tick
    /// The colour's, by someone else's start. It and a click of the user do not replace each other: the click
    /// goes first, the release follows.
    std::optional<QByteArray> m_release;
    Fragments m_fragments;
    Work m_work;
    QElapsedTimer
        m_warningClosed;  ///< since the warning of too many users; invalid while it may open at once
    QHBoxLayout* m_pLayout;
    CSceneList* m_pSceneList;
    CSceneList* m_pProgramList;
    CColorPicker* m_pPicker;
    ChannelsGrid* m_pGrid;
    CParamsCtrl* m_pParams;
    QList<QWidget*> m_pages;  ///< by Page
    CPopupTab* m_pTab;
    CPopupMenu* m_pMenu;
    QPixmap m_background;
    bool m_bDragging = false;
    QPoint m_windowAtPress;
    QPoint m_mouseAtPress;
};
