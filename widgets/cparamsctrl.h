#pragma once

#include <QList>
#include <QString>
#include <QWidget>

#include <array>
#include <optional>

class CIniFile;
class CSwitchCtrl;
class CSwitchIconCtrl;
class QHBoxLayout;
class QLineEdit;
class ServerList;

/// Web addresses of the mobile applications.
struct StoreLinks {
    QString android;
    QString ios;
};

/// The parameters page: which server to talk to, the lock, which pages the menu offers, what of the user's
/// customisation is shown. It tells each change by a signal and writes no settings itself.
///
/// The lock hides the controls from careless hands. Its password is plain text, on screen and in the
/// settings.
class CParamsCtrl : public QWidget {
    Q_OBJECT

signals:
    /// Any press that reaches the page, before anything else.
    void mousePressed();
    /// Start over: the user asks for it or has chosen another server.
    void refresh();
    void showMenu(int iMenu, bool bShow);
    void enableParam(int iParam, bool bEnable);
    void pwdStateChanged(bool bState);

public:
    /// Shows the settings and an address; locked if the settings say so. Without `stores` the page has no
    /// links to them.
    CParamsCtrl(const CIniFile& settings, const QString& sIp, const std::optional<StoreLinks>& stores,
                QWidget* parent);

    /// Lists a server that answered. Until the user has chosen one, the first of the list is selected; the
    /// choice stays whoever answers later. A known address, or one too many (ServerList), changes nothing.
    void AddSerial(const QString& sSerial, const QString& sAddress);
    const ServerList& Servers() const { return *m_pServers; }

    /// Shows an address a.b.c.d. One with fewer parts leaves the last fields as they are, none leaves all.
    void SetIp(const QString& sAddress);
    /// The four fields as they stand, joined by dots: no check is made.
    QString GetIp() const;
    /// Shows the address of the server that is selected, if one is.
    void UpdateIp();

    /// What the password field holds now, in the form that the settings keep it in.
    QString GetPassWord() const;
    /// The password that unlocks.
    void SetStoredPassWord(const QString& sPassword) { m_sStoredPassword = sPassword; }
    bool IsLocked() const { return m_bLocked; }
    void Lock();
    /// Shows what Lock() hid.
    void ShowCtrls();

public slots:
    void OnSerialChanged(int iIndex);
    void OnRefresh() { emit refresh(); }
    void OnPwdStateChanged(bool bState);
    void OnShowScenes(bool bShow) { emit showMenu(0, bShow); }
    void OnShowPrograms(bool bShow) { emit showMenu(1, bShow); }
    void OnShowColor(bool bShow) { emit showMenu(2, bShow); }
    void OnShowChannels(bool bShow) { emit showMenu(3, bShow); }
    void OnTextScenes(bool bEnable) { emit enableParam(0, bEnable); }
    void OnIconScenes(bool bEnable) { emit enableParam(1, bEnable); }
    void OnColorScenes(bool bEnable) { emit enableParam(2, bEnable); }
    void OnAndroid();
    void OnIOS();

protected:
    /// The switches are one stop of Tab; arrows lead from one to the next.
    void keyPressEvent(QKeyEvent* event) override;
    void mousePressEvent(QMouseEvent*) override { emit mousePressed(); }

private:
    QHBoxLayout* ServerRow();
    QHBoxLayout* AddressRow();
    QHBoxLayout* PasswordRow();
    QHBoxLayout* StoreRow();
    CSwitchIconCtrl* Switch(const QString& sPicture, const QString& sPurpose, bool bState,
                            void (CParamsCtrl::*slot)(bool));
    void SetCtrlsVisible(bool bVisible);

    bool m_bChosen = false;  ///< the user has chosen a server of the list
    bool m_bLocked;
    QString m_sStoredPassword;
    StoreLinks m_stores;  ///< empty where the page has no links
    ServerList* m_pServers;
    std::array<QLineEdit*, 4> m_fields{};
    QLineEdit* m_pPassword;
    CSwitchCtrl* m_pLock;
    QList<CSwitchIconCtrl*> m_switches;
    QList<QWidget*> m_lockable;  ///< what the lock hides
};
