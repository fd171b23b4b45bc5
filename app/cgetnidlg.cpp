#include "app/cgetnidlg.h"

#include <QComboBox>
#include <QDialogButtonBox>
#include <QLabel>
#include <QVBoxLayout>

CGetNiDlg::CGetNiDlg(QWidget* parent) : CGetNiDlg(LightingAddresses(), parent) {}

CGetNiDlg::CGetNiDlg(const QList<InterfaceAddress>& addresses, QWidget* parent)
    : QDialog(parent, Qt::Tool), m_pInterfaces(new QComboBox) {
    setWindowTitle(tr("Network Interface"));
    setAutoFillBackground(true);

    m_addresses.append("Auto");
    m_pInterfaces->addItem(tr("Auto"));
    for (const InterfaceAddress& address : addresses) {
        m_addresses.append(address.address);
        if (m_broadcasts.isEmpty()) {
            m_broadcasts.append(address.broadcast);
        }
        m_broadcasts.append(address.broadcast);
        m_pInterfaces->addItem(address.name + " : " + address.address);
    }
    m_addresses.append("127.0.0.1");
    m_broadcasts.append("127.0.0.1");
    m_pInterfaces->addItem(tr("Localhost : 127.0.0.1"));
    m_pInterfaces->setCurrentIndex(0);

    auto* pLabel = new QLabel(tr("Select Network Interface :"));
    pLabel->setBuddy(m_pInterfaces);
    auto* pButtons = new QDialogButtonBox(QDialogButtonBox::Ok | QDialogButtonBox::Cancel);
    connect(pButtons, &QDialogButtonBox::accepted, this, &QDialog::accept);
    connect(pButtons, &QDialogButtonBox::rejected, this, &QDialog::reject);

    auto* pLayout = new QVBoxLayout(this);
    pLayout->setContentsMargins(10, 10, 10, 10);
    pLayout->addWidget(pLabel);
    pLayout->addWidget(m_pInterfaces);
    pLayout->addStretch();
    pLayout->addWidget(pButtons);
    // Larger fonts, longer languages and long names of interfaces take more.
    setFixedSize(QSize(200, 100).expandedTo(sizeHint()));
}

QString CGetNiDlg::GetIp() const {
    return m_addresses.value(m_pInterfaces->currentIndex());
}

QString CGetNiDlg::GetBroadcast() const {
    return m_broadcasts.value(m_pInterfaces->currentIndex());
}
