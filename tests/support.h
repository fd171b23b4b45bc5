#pragma once

#include "tests/files.h"
#include "widgets/cscenelist.h"

#include <QtTest>
#include <QtWidgets>

#include <memory>

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

/// Whether something comes true within so many ms as a bare timer counts them: a busy machine, which holds up
/// what is waited for, holds up the timer as well.
template <typename Condition>
bool Within(int nMs, Condition comes) {
    for (int nTurns = nMs / 10; nTurns > 0 && !comes(); --nTurns) {
        QTest::qWait(10);
    }
    return comes();
}

/// One step of a drag, with a button held.
inline void Mouse(QWidget* pWidget, QEvent::Type type, const QPoint& at,
                  Qt::MouseButton held = Qt::LeftButton) {
    QMouseEvent event(type, at, pWidget->mapToGlobal(at), held, held, {});
    QCoreApplication::sendEvent(pWidget, &event);
}

inline void Click(QWidget* pWidget, const QPoint& at) {
    QTest::mouseClick(pWidget, Qt::LeftButton, {}, at);
}

/// From the first of two points to the last.
inline void Drag(QWidget* pWidget, const QLine& way) {
    Mouse(pWidget, QEvent::MouseButtonPress, way.p1());
    Mouse(pWidget, QEvent::MouseMove, way.p2());
    Mouse(pWidget, QEvent::MouseButtonRelease, way.p2());
}

inline void Wheel(QWidget* pWidget, const QPoint& at, int nTurn) {
    QWheelEvent event(at, pWidget->mapToGlobal(at), {}, {0, nTurn}, {}, {}, Qt::NoScrollPhase, false);
    QCoreApplication::sendEvent(pWidget, &event);
}

/// The ids of the tiles that are shown as running.
inline QString Running(const CSceneList* pList) {
    QStringList ids;
    for (const auto& item : pList->Items()) {
        ids += item.state ? QStringList(QString::number(item.id)) : QStringList();
    }
    return ids.join(' ');
}

/// Of the context menu that opens next, triggers an entry, or one of that entry's submenu, whose icon it
/// takes before.
inline void ChooseNext(int iEntry, int iSubEntry = -1, QImage* pIcon = nullptr) {
    QTimer::singleShot(20, [=] {
        auto* pMenu = qobject_cast<QMenu*>(QApplication::activePopupWidget());
        QAction* pAction = pMenu->actions()[iEntry];
        pAction = iSubEntry < 0 ? pAction : pAction->menu()->actions()[iSubEntry];
        if (pIcon) {
            *pIcon = pAction->icon().pixmap(80).toImage();
        }
        pMenu->close();
        pAction->trigger();
    });
}

/// Opens the context menu of a tile and makes that choice.
template <typename... Choice>
void UseMenu(CSceneList* pList, int iTile, Choice... choice) {
    ChooseNext(choice...);
    QTest::mouseClick(pList, Qt::RightButton, {}, pList->PartRect(iTile).center());
}

/// Whether what is on the screen is what a window would paint now: grab() paints anew, the screen does not.
inline bool IsUpToDate(QWidget* pWindow) {
    const QImage screen = pWindow->screen()->grabWindow(pWindow->winId()).toImage();
    return screen == pWindow->grab().toImage().convertToFormat(screen.format());
}

/// Whether a widget paints exactly this text somewhere.
inline bool Paints(QWidget* pWidget, const QString& sText) {
    QPicture picture;
    QPainter painter(&picture);
    pWidget->render(&painter);
    painter.end();
    QByteArray text;
    QDataStream stream(&text, QIODevice::WriteOnly);
    stream << sText;
    return QByteArray::fromRawData(picture.data(), static_cast<int>(picture.size())).contains(text);
}

/// The memory that a process has.
inline double ResidentMiB(const QString& sProcess = "self") {
    return TextOf("/proc/" + sProcess + "/statm").split(' ')[1].toDouble() / 256;
}
