#include "app/cgetnidlg.h"

#include <QAbstractItemView>
#include <QComboBox>
#include <QDialogButtonBox>
#include <QLabel>
#include <QVBoxLayout>

namespace {

constexpr qreal MinPoints = 5.0;

}  // namespace

CGetNiDlg::CGetNiDlg(QWidget* parent) : CGetNiDlg(LightingAddresses(), parent) {}

CGetNiDlg::CGetNiDlg(const QList<InterfaceAddress>& addresses, QWidget* parent)
    : QDialog(parent, Qt::Tool), m_pInterfaces(new QComboBox) {
    setWindowTitle(tr("Network Interface"));
    setAutoFillBackground(true);

    m_pInterfaces->addItem(tr("Auto"), "Auto");
    for (const InterfaceAddress& address : addresses) {
        if (m_broadcasts.isEmpty()) {
            m_broadcasts.append(address.broadcast);
        }
        m_broadcasts.append(address.broadcast);
        m_pInterfaces->addItem(address.name + " : " + address.address, address.address);
    }
    m_broadcasts.append("127.0.0.1");
    m_pInterfaces->addItem(tr("Localhost : 127.0.0.1"), "127.0.0.1");

    auto* pLabel = new QLabel(tr("Select Network Interface :"));
    pLabel->setBuddy(m_pInterfaces);
    auto* pButtons = new QDialogButtonBox(QDialogButtonBox::Ok | QDialogButtonBox::Cancel);
    connect(pButtons, &QDialogButtonBox::accepted, this, &QDialog::accept);
    connect(pButtons, &QDialogButtonBox::rejected, this, &QDialog::reject);

    auto* pLayout = new QVBoxLayout(this);
    pLayout->setContentsMargins(10, 10, 10, 10);
    pLayout->setSpacing(3);
    pLayout->addWidget(pLabel);
    pLayout->addWidget(m_pInterfaces);
    pLayout->addStretch();
    pLayout->addWidget(pButtons);
    ShortenEntries();
    constexpr QSize size(200, 100);
    setFixedSize(size);
    // The desktop's font, or the largest that fits.
    QFont smaller = font();
    for (qreal points = QFontInfo(smaller).pointSizeF();
         pLayout->totalMinimumSize().expandedTo(size) != size && points > MinPoints; points -= 0.5) {
        smaller.setPointSizeF(points);
        setFont(smaller);
        pLayout->invalidate();
    }
}

/// A name that does not fit is whole in the open list and in the tool tip.
void CGetNiDlg::ShortenEntries() {
    m_pInterfaces->setSizeAdjustPolicy(QComboBox::AdjustToMinimumContentsLengthWithIcon);
    m_pInterfaces->setMinimumContentsLength(8);
    m_pInterfaces->view()->setMinimumWidth(m_pInterfaces->view()->sizeHintForColumn(0) +
                                           2 * m_pInterfaces->view()->frameWidth());
    m_pInterfaces->setToolTip(m_pInterfaces->currentText());
    connect(m_pInterfaces, &QComboBox::currentTextChanged, m_pInterfaces, &QComboBox::setToolTip);
}

QString CGetNiDlg::GetIp() const {
    return m_pInterfaces->currentData().toString();
}

QString CGetNiDlg::GetBroadcast() const {
    return m_broadcasts.value(m_pInterfaces->currentIndex());
}
