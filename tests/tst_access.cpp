#include "app/corvane.h"
#include "tests/support.h"
#include "widgets/cchannelslider.h"
#include "widgets/channelsgrid.h"
#include "widgets/cscenelist.h"
#include "widgets/csliderctrl.h"

#include <QtTest>

#include <memory>

/// What screen readers find of the painted controls and what they can do with them.
class TestAccess : public QObject {
    Q_OBJECT

    std::unique_ptr<Corvane> m_pWindow;

    static auto Of(QObject* pObject) { return QAccessible::queryAccessibleInterface(pObject); }
    static QString Name(QAccessibleInterface* pAccess) { return pAccess->text(QAccessible::Name); }
    static bool IsPainted(QAccessibleInterface* pAccess) {
        return pAccess->object() == nullptr || dynamic_cast<PaintedParts*>(pAccess->object()) != nullptr;
    }
    static void Act(QAccessibleInterface* pAccess) {
        pAccess->actionInterface()->doAction(pAccess->actionInterface()->actionNames().value(0));
    }

    /// The painted controls on screen, by name.
    static void Find(QAccessibleInterface* pParent, QMap<QString, QAccessibleInterface*>& found) {
        for (int i = 0; i < pParent->childCount(); ++i) {
            QAccessibleInterface* pChild = pParent->child(i);
            if (pChild->state().invisible) {
                continue;
            }
            Find(pChild, found);
            if (IsPainted(pChild) && pChild->role() != QAccessible::Grouping) {
                const QPoint middle = pChild->rect().center();
                QVERIFY(!Name(pChild).isEmpty() && pParent->rect().contains(pChild->rect()));
                QVERIFY(pChild->parent() == pParent && pParent->indexOfChild(pChild) == i);
                QVERIFY(pParent->childAt(middle.x(), middle.y()) == pChild);
                found.insert(Name(pChild), pChild);
            }
        }
    }

private slots:
    void init() {
        QFile::remove(QCoreApplication::applicationDirPath() + "/Corvane.ini");
        ChooseInterface();
        m_pWindow = std::make_unique<Corvane>();
        m_pWindow->SceneList()->Update({{"Warm", 1, 0, 0, false}, {"Cool", 2, 0, 0, true}}, {});
        m_pWindow->ProgramList()->Update({{"", 7, -1, 0, false}}, {});
        m_pWindow->show();
    }

    void controls() {
        constexpr auto box = QAccessible::CheckBox;
        constexpr auto button = QAccessible::Button;
        constexpr auto tab = QAccessible::PageTab;
        // Where, what, what the widget tells of a press, whether it is on afterwards, how many are on screen.
        const std::tuple<int, const char*, QAccessible::Role, const char*, QVariantList, bool, int> rows[] = {
            {0, "Warm", box, SIGNAL(stateChanged(int, int, bool)), {0, 1, true}, true, 4},
            {1, "#7", box, SIGNAL(stateChanged(int, int, bool)), {-1, 7, true}, true, 3},
            {2, "Red max", button, SIGNAL(valueChanged(int)), {255}, false, 14},
            {2, "Color on or off", box, SIGNAL(colorStateChanged(bool)), {false}, false, 14},
            {2, "Commands, dimmer and speed", button, SIGNAL(modePressed()), {}, true, 14},
            {2, "Pause", box, SIGNAL(pauseChanged(bool)), {true}, true, 16},
            {2, "Next", button, SIGNAL(nextChanged(bool)), {true}, false, 16},
            {2, "Dimmer 50%", button, SIGNAL(valueChanged(int)), {128}, false, 16},
            {4, "Color page in the menu", box, SIGNAL(stateChanged(bool)), {false}, false, 10},
            {4, "Pages", button, SIGNAL(tabPressed()), {}, false, 10},
            {6, "Scenes", tab, SIGNAL(menuChanged(int)), {0}, false, 15},
            {3, "Channel 17", button, SIGNAL(mousePressed()), {}, false, 39}};
        for (const auto& [iPage, pName, role, pSignal, arguments, bOn, nCount] : rows) {
            m_pWindow->OnMenuChanged(std::min(iPage, 4));
            iPage == 6 ? m_pWindow->ShowPopupMenu() : void();
            QCoreApplication::processEvents();
            QMap<QString, QAccessibleInterface*> found;
            Find(Of(m_pWindow.get()), found);
            QCOMPARE(found.size(), nCount);
            QAccessibleInterface* pControl = found.value(pName);
            QVERIFY2(pControl != nullptr && pControl->role() == role, pName);
            QObject* pWidget =
                pControl->object() != nullptr ? pControl->object() : pControl->parent()->object();
            QSignalSpy spy(pWidget, pSignal);
            Act(pControl);
            QVERIFY2(spy == QList<QVariantList>{arguments} && pControl->state().checked == bOn, pName);
        }
        const CSliderCtrl* pLevel = m_pWindow->Grid()->Editor()->Control();
        QSignalSpy levels(pLevel, &CSliderCtrl::valueChanged);
        QAccessibleValueInterface* pValue = Of(pLevel->Slider())->valueInterface();
        pValue->setCurrentValue(300);
        QVERIFY(levels == QList<QVariantList>{{255}} && pValue->currentValue() == 255);
        QVERIFY(Of(m_pWindow->Grid())->child(22)->state().disabled);  // the editor is open
        Act(Of(m_pWindow->SceneList())->child(1));                    // on another page, out of reach
        QVERIFY(!m_pWindow->SceneList()->Items()[1].state);
        Act(Of(m_pWindow.get())->childAt(780, 35));
        QVERIFY(m_pWindow->isHidden());
    }

    void changes() {
        QAccessibleInterface* pScenes = Of(m_pWindow->SceneList());
        QAccessibleInterface* pCell = Of(m_pWindow->Grid())->child(22);
        QVERIFY(!pScenes->child(0)->state().checked && pScenes->child(1)->state().checked);
        m_pWindow->SceneList()->Update({"", 1, 0, 0, true}, true);
        m_pWindow->Grid()->Update(DmxChan{16, 0, 128, true});
        QVERIFY(pScenes->child(0)->state().checked && !pScenes->child(1)->state().checked);
        QVERIFY(pCell->text(QAccessible::Value) == "128" && pCell->state().checked);
        m_pWindow->Grid()->Update(DmxChan{16, 0, 128, false});
        QVERIFY(pCell->text(QAccessible::Value) == "Off" && !pCell->state().checked);
    }

    /// Interfaces are made when asked for and do not outlive their tile.
    void rebuild() {
        QList<Scene> scenes;
        for (int i = 0; i < 1000; ++i) {
            scenes.append({"Scene", i, -1, 0, false});
        }
        m_pWindow->SceneList()->Update(scenes, {});
        QAccessibleInterface* pList = Of(m_pWindow->SceneList());
        const QAccessible::Id last = QAccessible::uniqueId(pList->child(999));
        QCOMPARE(QAccessible::uniqueId(pList->child(0)), last + 1);
        m_pWindow->SceneList()->Update(QList<Scene>{scenes[5]}, {});
        QVERIFY(QAccessible::accessibleInterface(last) == nullptr && pList->childCount() == 1);
        QCOMPARE(pList->child(0)->text(QAccessible::Description), QString("#5"));
    }
};

QTEST_MAIN(TestAccess)
#include "tst_access.moc"
