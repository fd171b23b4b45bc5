#pragma once

#include <QApplication>
#include <QComboBox>
#include <QDialog>
#include <QMouseEvent>
#include <QTimer>

/// Does something with the next modal window of a kind, as soon as it is open.
template <typename Dialog, typename Act>
void OnNext(Act act) {
    auto* pTimer = new QTimer(qApp);
    QObject::connect(pTimer, &QTimer::timeout, [pTimer, act] {
        if (auto* pDialog = qobject_cast<Dialog*>(QApplication::activeModalWidget())) {
            delete pTimer;
            act(pDialog);
        }
    });
    pTimer->start(5);
}

/// Answers the next interface dialog with the entry that begins so.
inline void ChooseInterface(const QString& sEntry = "Auto") {
    OnNext<QDialog>([sEntry](QDialog* pDialog) {
        auto* pCombo = pDialog->findChild<QComboBox*>();
        pCombo->setCurrentIndex(pCombo->findText(sEntry, Qt::MatchContains));
        pDialog->accept();
    });
}

/// One step of a drag, with the left button held.
inline void Mouse(QWidget* pWidget, QEvent::Type type, const QPoint& at) {
    QMouseEvent event(type, at, pWidget->mapToGlobal(at), Qt::LeftButton, Qt::LeftButton, {});
    QCoreApplication::sendEvent(pWidget, &event);
}
