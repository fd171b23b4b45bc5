#pragma once

#include "app/interfaceaddress.h"

#include <QDialog>
#include <QStringList>

class QComboBox;

/// Asks once on which of the machine's networks the server is.
class CGetNiDlg : public QDialog {
    Q_OBJECT

public:
    /// Offers the machine's own addresses.
    explicit CGetNiDlg(QWidget* parent);
    /// Offers the given ones.
    CGetNiDlg(const QList<InterfaceAddress>& addresses, QWidget* parent);

    /// The chosen address, "Auto" for any; empty when nothing is chosen.
    QString GetIp() const;
    /// The broadcast address that goes with it. With no address to offer the list is one shorter than the
    /// choices: "Auto" then broadcasts to this machine and the last entry nowhere.
    QString GetBroadcast() const;

private:
    void ShortenEntries();

    QComboBox* m_pInterfaces;
    QStringList m_broadcasts;
};
