#pragma once

#include <QString>
#include <QWidget>

#include <array>
#include <optional>

class CIniFile;
class CSwitchCtrl;
class CSwitchIconCtrl;
class QHBoxLayout;
class QLabel;
class QLineEdit;
class QPushButton;
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
    void SetIp(QString sAddress);
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
    void OnRefresh();
    void OnPwdStateChanged(bool bState);
    void OnShowScenes(bool bShow);
    void OnShowPrograms(bool bShow);
    void OnShowColor(bool bShow);
    void OnShowChannels(bool bShow);
    void OnTextScenes(bool bEnable);
    void OnIconScenes(bool bEnable);
    void OnColorScenes(bool bEnable);
    void OnAndroid();
    void OnIOS();

protected:
    /// The switches are one stop of Tab; arrows lead from one to the next.
    void keyPressEvent(QKeyEvent* event) override;
    void mousePressEvent(QMouseEvent* event) override;

private:
    QHBoxLayout* ServerRow();
    QHBoxLayout* AddressRow();
    QHBoxLayout* PasswordRow();
    QHBoxLayout* StoreRow();
    CSwitchIconCtrl* Switch(const QString& sPicture, const QString& sPurpose, bool bState,
                            void (CParamsCtrl::*slot)(bool));
    void SetCtrlsVisible(bool bVisible);

    bool m_bFilling = false;  ///< AddSerial() is at work: the list's change is not the user's
    bool m_bChosen = false;   ///< the user has chosen a server of the list
    bool m_bLocked;
    QString m_sStoredPassword;
    std::optional<StoreLinks> m_stores;
    ServerList* m_pServers;
    QLabel* m_pIpLabel;
    std::array<QLineEdit*, 4> m_fields{};
    std::array<QLabel*, 3> m_dots{};
    QPushButton* m_pRefresh;
    QLineEdit* m_pPassword;
    CSwitchCtrl* m_pLock;
    std::array<CSwitchIconCtrl*, 7> m_switches{};
};
