#include "app/branding.h"
#include "app/cgetnidlg.h"
#include "app/language.h"
#include "app/look.h"
#include "tests/remote.h"
#include "widgets/artwork.h"
#include "widgets/cswitchiconctrl.h"
#include "widgets/fonts.h"
#include "widgets/iconcatalogue.h"

namespace {

QStringList told;   ///< of what has changed, and what it has become
QStringList heard;  ///< the painted controls that the keys came to

QString NameOf(QAccessibleInterface* pAccess) {
    return pAccess->text(QAccessible::Name);
}

bool IsPainted(QAccessibleInterface* pAccess) {
    const QObject* pObject = pAccess->object() != nullptr ? pAccess->object() : pAccess->parent()->object();
    return qobject_cast<const PaintedWidget*>(pObject) != nullptr;
}

}  // namespace

/// Takes the place of Qt's own, which tells no one while no screen reader runs.
void QAccessible::updateAccessibility(QAccessibleEvent* pEvent) {
    QAccessibleInterface* pAccess = pEvent->accessibleInterface();
    if (pAccess == nullptr || !IsPainted(pAccess)) {
        return;
    }
    if (pEvent->type() == Focus && (pAccess->state().focused || pAccess->object() == nullptr)) {
        heard += NameOf(pAccess);
    }
    const State state = pAccess->state();
    QString sText;
    if (pEvent->type() == StateChanged) {
        const State changed = static_cast<QAccessibleStateChangeEvent*>(pEvent)->changedStates();
        sText = changed.checked    ? (state.checked ? "on" : "off")
                : changed.selected ? (state.selected ? "selected" : "left")
                : changed.disabled ? (state.disabled ? "disabled" : "enabled")
                                   : "";
    } else if (pEvent->type() == DescriptionChanged) {
        sText = pAccess->text(Description);
    } else if (pEvent->type() == ValueChanged) {
        sText = static_cast<QAccessibleValueChangeEvent*>(pEvent)->value().toString();
    } else if (pAccess->object() == nullptr) {  // of widgets Qt tells by itself
        const QMap<int, const char*> texts{
            {ObjectShow, "shown"}, {ObjectHide, "hidden"}, {ObjectDestroyed, "gone"}, {NameChanged, "named"}};
        sText = texts[pEvent->type()];
    }
    // Of many that change alike the first will do.
    const bool bAlike = !told.isEmpty() && told.last().endsWith("abled") && told.last().endsWith(sText);
    if (!sText.isEmpty() && !bAlike) {
        told += NameOf(pAccess) + ' ' + sText;
    }
}

/// The window on the screen: its frame, its pictures at every scale of the display, its texts in every
/// language, and what screen readers find of the painted controls and can do with them.
class TestWindow : public QObject {
    Q_OBJECT

    std::unique_ptr<Corvane> m_pWindow;
    static auto Of(QObject* pObject) { return QAccessible::queryAccessibleInterface(pObject); }
    static void Act(QAccessibleInterface* pAccess) {
        pAccess->actionInterface()->doAction(pAccess->actionInterface()->actionNames().value(0));
    }

    /// The painted controls on screen, by name.
    static void Find(QAccessibleInterface* pParent, QMap<QString, QAccessibleInterface*>& found) {
        for (int i = 0; i < pParent->childCount(); ++i) {
            QAccessibleInterface* pChild = pParent->child(i);
            Find(pChild, found);
            if (!pChild->state().invisible && IsPainted(pChild) && pChild->role() != QAccessible::Grouping) {
                const QPoint middle = pChild->rect().center();
                QVERIFY(!NameOf(pChild).isEmpty() && pParent->rect().contains(pChild->rect()));
                QVERIFY(pChild->parent() == pParent && pParent->indexOfChild(pChild) == i);
                QVERIFY(pChild->state().disabled || pParent->childAt(middle.x(), middle.y()) == pChild);
                found[NameOf(pChild)] = found.value(NameOf(pChild), pChild);
            }
        }
    }

    QMap<QString, QAccessibleInterface*> Controls() const {
        QMap<QString, QAccessibleInterface*> found;
        Find(Of(m_pWindow.get()), found);
        return found;
    }

    Corvane* Open(const QByteArray& menuVisible = "1|1|1|1") {
        m_pWindow.reset();
        m_pWindow = OpenRemote("MenuVisible=" + menuVisible);
        return m_pWindow.get();
    }

    const QStringList m_languages{"de", "fr", "es", "it"};
    QStringList m_texts;

    /// Notes what it has no text for. Without a translation it marks each text, so that one which never
    /// passes here is found.
    struct Recorder : QTranslator {
        mutable QStringList missed;

        bool isEmpty() const override { return false; }
        QString translate(const char* pContext, const char* pSource, const char* pComment,
                          int n) const override {
            const QString sText = filePath().isEmpty()
                                      ? QString("§") + pSource
                                      : QTranslator::translate(pContext, pSource, pComment, n);
            missed += sText.isEmpty() ? QStringList(pSource) : QStringList();
            return sText;
        }
    };

    /// Takes down what a window says, and looks whether each of its texts has its room.
    void Read(QWidget* pWindow) {
        QCoreApplication::processEvents();
        Listen(Of(pWindow));
        // These are as wide as the layout says, whatever they hold.
        const QRegularExpression fixed("LineEdit|CommandLink");
        const auto widgets = pWindow->findChildren<QWidget*>() << pWindow;
        for (const QWidget* pWidget : widgets) {
            const QString sText =
                pWidget->property("text").toString() + pWidget->property("currentText").toString();
            const bool bFixed = QString(pWidget->metaObject()->className()).contains(fixed);
            const bool bRoom = pWidget->size().expandedTo(pWidget->minimumSizeHint()) == pWidget->size();
            QVERIFY2(bRoom || bFixed || sText.isEmpty() || !pWidget->isVisible(), qPrintable(sText));
        }
    }

    void Listen(QAccessibleInterface* pAccess) {
        m_texts << NameOf(pAccess) << pAccess->text(QAccessible::Description);
        for (int i = 0; i < pAccess->childCount(); ++i) {
            Listen(pAccess->child(i));
        }
    }

    /// Whether a picture of the collection lies at a place: wherever it is opaque, the window shows it. A
    /// size stretches it.
    static bool Lies(const QImage& window, const QString& sPicture, const QRect& at) {
        const QPixmap picture = artwork::Picture(":/Corvane/Images/" + sPicture + ".png");
        QImage expected(window.size(), QImage::Format_ARGB32_Premultiplied);
        expected.fill(Qt::transparent);
        QPainter painter(&expected);
        painter.setRenderHint(QPainter::SmoothPixmapTransform);
        painter.drawPixmap(QRect(at.topLeft(), at.isEmpty() ? picture.size() : at.size()), picture);
        painter.end();
        int nOpaque = 0;
        int nAlike = 0;
        for (int i = 0; i < window.width() * window.height(); ++i) {
            const QColor wanted = expected.pixelColor(i % window.width(), i / window.width());
            nOpaque += int{wanted.alpha() == 255};
            nAlike += int{wanted == window.pixelColor(i % window.width(), i / window.width())};
        }
        return nOpaque >= 10 && nAlike == nOpaque;
    }

    /// Presses a control, or holds the mouse at a place beside its corner: "Name@x y".
    void Do(const QString& sAction) {
        const QAccessibleInterface* pControl = Controls().value(sAction.section('@', 0, 0));
        if (pControl == nullptr) {
            QVERIFY2(sAction.isEmpty(), qPrintable(sAction));
        } else if (!sAction.contains('@')) {
            Act(Controls()[sAction]);
        } else {
            const QStringList place = sAction.section('@', 1).split(' ');
            const QPoint at = pControl->rect().topLeft() + QPoint(place[0].toInt(), place[1].toInt());
            QWidget* pWidget = QApplication::widgetAt(at);
            Mouse(pWidget, QEvent::MouseButtonPress, pWidget->mapFromGlobal(at));
        }
    }

    template <typename Dialog>
    void ReadNext() {
        OnNext<Dialog>([this](Dialog* pDialog) {
            Read(pDialog);
            pDialog->reject();
        });
    }

    /// All that the program shows.
    void ReadProgram() {
        // Of what is too long for the closed list both ends are seen.
        std::array<QImage, 4> shown;
        for (std::size_t i = 0; i < shown.size(); ++i) {
            const QString sName = i < 2 ? "enxaabbccddeeff" : "wlxaabbccddeeff";
            CGetNiDlg choice({{sName, i % 2 == 0 ? "192.168.100.200" : "192.168.100.201", {}}}, nullptr);
            choice.findChild<QComboBox*>()->setCurrentIndex(1);
            shown.at(i) = choice.findChild<QComboBox*>()->grab().toImage();
        }
        QVERIFY(shown[0] != shown[1] && shown[0] != shown[2]);
        CGetNiDlg dialog({{"0", "10.0.0.5", {}}}, nullptr);
        dialog.show();
        Read(&dialog);
        Corvane* pWindow = Open();
        pWindow->SceneList()->Update({{"W", 1, 0, 0, false}, {"", 2, -1, 0, true}}, {});
        pWindow->Params()->AddSerial("0000", "10.0.0.5");
        for (const int iPage : {0, 1, 2, 3, 4, 2, 3}) {
            pWindow->OnMenuChanged(iPage);
            Read(pWindow);
            if (iPage == 4) {
                pWindow->Picker()->SwitchCmdMode();
                pWindow->ShowPopupMenu();
            }
        }
        Click(pWindow->Grid(), pWindow->Grid()->CellRect(0).center());
        Read(pWindow);
        const int nOff =
            QFontMetrics(fonts::Bold("Arial", 16)).horizontalAdvance(pWindow->Grid()->Part(5).value);
        QVERIFY(nOff <= pWindow->Grid()->CellRect(0).width() - 12);

        pWindow->OnMenuChanged(0);
        QTimer::singleShot(50, this, [this] {
            auto* pMenu = qobject_cast<QMenu*>(QApplication::activePopupWidget());
            Read(pMenu);
            QStringList names;
            const auto menus = pMenu->findChildren<QMenu*>() << pMenu;
            for (const QMenu* pFamily : menus) {
                for (const QAction* pAction : pFamily->actions()) {
                    names += pAction->icon().isNull() ? QStringList() : QStringList(pAction->toolTip());
                }
            }
            // Each picture has one of its own, but for "music".
            QVERIFY(!names.contains("") && names.size() > 50 && names.removeDuplicates() <= 1);
            pMenu->close();
            QVERIFY(pMenu->actionGeometry(pMenu->actions()[0]).height() >= 36);  // an icon is 32 high
        });
        QTest::mouseClick(pWindow->SceneList(), Qt::RightButton, {}, QPoint(20, 20));
        ReadNext<QInputDialog>();
        pWindow->SceneList()->OnRename();
        ReadNext<QColorDialog>();
        pWindow->SceneList()->OnColor();
        ReadNext<QMessageBox>();
        const auto nTexts = m_texts.size();
        pWindow->ReadData(R"({"typ":2})", "10.0.0.5");
        QTRY_VERIFY(m_texts.size() > nTexts);
        Read(QLineEdit(pWindow).createStandardContextMenu());
    }

private slots:
    void initTestCase() {
        ApplyLook();
        QApplication::setFont(QFont("Sans", 9));
        QApplication::setApplicationDisplayName("C");
    }

    void init() {
        Open();
        m_pWindow->SceneList()->Update({{"Warm", 1, 0, 0, false}, {"Cool", 2, 0, 0, true}}, {});
        m_pWindow->ProgramList()->Update({{"", 7, -1, 0, false}}, {});
    }

    void controls() {
        // One of the controls of each page, and how many there are.
        const std::tuple<int, const char*, QAccessible::Role, int> rows[] = {
            {0, "Cool", QAccessible::CheckBox, 4},
            {1, "#7", QAccessible::CheckBox, 3},
            {2, "Color on or off", QAccessible::CheckBox, 14},
            {3, "Channel 17", QAccessible::Button, 39},
            {4, "Pages", QAccessible::Button, 10},
            {-1, "Scenes", QAccessible::PageTab, 16}};
        for (const auto& [iPage, pName, role, nCount] : rows) {
            iPage < 0 ? m_pWindow->ShowPopupMenu() : m_pWindow->OnMenuChanged(iPage);
            QCoreApplication::processEvents();
            const auto found = Controls();
            QVERIFY2(found.size() == nCount && found.contains(pName) && found[pName]->role() == role, pName);
        }
        const CSliderCtrl* pLevel = m_pWindow->Grid()->Editor()->Control();
        QSignalSpy levels(pLevel, &CSliderCtrl::valueChanged);
        QAccessibleValueInterface* pValue = Of(pLevel->Slider())->valueInterface();
        m_pWindow->OnMenuChanged(3);
        Act(Controls()["Channel 17"]);
        pValue->setCurrentValue(300);
        QVERIFY(levels == QList<QVariantList>{{255}} && pValue->currentValue() == 255);
        QVERIFY(pValue->minimumValue() == 0 && pValue->maximumValue() == 255);
        Act(Of(m_pWindow->SceneList())->child(0));  // on another page, out of reach
        QCOMPARE(Running(m_pWindow->SceneList()), QString("2"));
        CCommandWnd* pCommands = m_pWindow->Picker()->Commands();
        QHelpEvent help(QEvent::ToolTip, {50, 120}, pCommands->mapToGlobal(QPoint(50, 120)));
        QCoreApplication::sendEvent(pCommands, &help);
        QCOMPARE(QToolTip::text(), QString("Black"));
        bool bTold = false;
        OnNext<QDialog>([&](QDialog* pDialog) {
            Act(Of(m_pWindow.get())->childAt(780, 35));  // behind a box, out of reach
            bTold = m_pWindow->isVisible();
            pDialog->reject();
        });
        m_pWindow->ReadData(R"({"typ":2})", "10.0.0.5");
        QTRY_VERIFY(bTold);
        Act(Of(m_pWindow.get())->childAt(780, 35));
        QVERIFY(m_pWindow->isHidden());
    }

    /// Whatever changes is soon on the screen, where nothing outdated stays, and is told.
    void changes() {
        int iBefore = 0;
        // The page, what happens there (a control is pressed, or a place beside its corner; the server says
        // something; the connection is lost), and what is told of it.
        for (const QStringList& row : Table(R"(
0 Warm => Warm on, Cool off
0 8,"content":{"id":2,"s":true} => Warm off, Cool on
0 18,"content":{"scn":{"content":[{"id":1}]}} => => older than the click
0 18,"content":{"scn":{"content":[{"id":1}]}} => Warm on, Cool off
0 18,"content":{"scn":{"content":[]}} => Warm off
1 #7 => #7 on
1 18,"content":{"prg":{"content":[]}} =>
1 18,"content":{"prg":{"content":[]}} => #7 off
2 10,"content":{"color":{"r":255,"g":51},"s":true} => Color on or off on, Green 51, Green 20%, Blue 0, Blue 0%,
    Color wheel red 255, green 51, blue 0
2 11,"content":{"dim":100,"white":true} => => what is hidden is told when it comes
2 Color wheel@210 300 => Red 195, Red 76%, Green 135, Green 52%, Blue 255, Blue 100%, Color wheel red 195, green
    135, blue 255
2 Color on or off => Color on or off off
2 Green max => Green 255, Green 100%, Color wheel red 195, green 255, blue 255, Color on or off on
2 Blue@5 300 => Blue 41, Blue 16%, Color wheel red 195, green 255, blue 41
2 White@5 200 => White 116, White 45%, Red 90, Red 35%, Green 116, Green 45%, Blue 18, Blue 7%, Color wheel red
    90, green 116, blue 18
2 Commands, dimmer and speed => Levels of the color off, Commands, dimmer and speed on, White on, Dimmer 255,
    Dimmer 100%, Speed 0, Speed 0%
2 11,"content":{"dim":50,"speed":1,"hold":true} => Dimmer 128, Dimmer 50%, Speed 3, Speed 1%, Pause on
2 Black => White off, Black on
2 Next => Next on, Next off
2 Next@30 30 => Next on
2 9,"content":{"id":7,"s":true} => Color on or off off, Black off, Pause off
3 12,"content":{"chan":16,"level":128,"s":true} => Channel 17 128, Channel 17 on
3 12,"content":{"chan":31,"level":7,"s":true} => Channel 32 7, Channel 32 on
3 12,"content":{"chan":32,"level":9,"s":true} =>
3 13,"content":{"universe":0,"channels":[{"c":0,"l":9,"s":true}]} => Channel 1 9, Channel 1 on, Channel 17 Off,
    Channel 17 off, Channel 32 Off, Channel 32 off
3 Channel 3 => Channel 3 max named, Previous channels disabled
3 Channel 3@5 20 => Channel 3 251, Channel 3 251
3 Channel 3@9 280 => Previous channels enabled, Channel 3 251, Channel 3 on, Channel 4 enabled
3 7,"content":{} => Warm gone, Cool gone, #7 gone, Channel 1 Off, Channel 1 off, Channel 3 Off, Channel 3 off
3 Next universe => Universe 2 named
4 Scenes page in the menu => Scenes page in the menu off
4 Lock this page with the password => Lock this page with the password on
4 Programs page in the menu => Programs page in the menu off
4 Pages => Scenes hidden, Programs hidden
2 => The server does not answer shown
2 Pages =>
-1 Connect again@20 20 => Color left, Connect again selected, The server does not answer hidden
-1 Connect again => Color selected, Connect again left
)")) {
            const int iPage = row[0].section(' ', 0, 0).toInt();
            const QString sAction = row[0].section(' ', 1);
            iPage >= 0 && std::exchange(iBefore, iPage) != iPage ? init() : void();  // each page begins anew
            iPage >= 0 ? m_pWindow->OnMenuChanged(iPage) : void();
            m_pWindow->IsConnectionLost() ? void() : m_pWindow->Refresh();  // not lost before its row
            QCoreApplication::processEvents();
            Controls();  // who was never asked for tells nothing
            QTRY_VERIFY(IsUpToDate(m_pWindow.get()));
            told.clear();
            if (sAction.contains('{')) {
                m_pWindow->ReadData("{\"typ\":" + sAction.toUtf8() + '}', "10.0.0.1");
            } else if (sAction.isEmpty()) {
                QTRY_VERIFY_WITH_TIMEOUT(m_pWindow->IsConnectionLost(), 20000);
                QVERIFY(Lies(m_pWindow->grab().toImage(), "ConnectionLost", {385, 4, 0, 0}));
            } else {
                Do(sAction);
            }
            // Soon: a second later the search for a server would paint all anew.
            QVERIFY2(Within(100, [this] { return IsUpToDate(m_pWindow.get()); }), qPrintable(sAction));
            QCOMPARE(told.join(", "), row[1]);
        }
    }

    /// What is seen of each control in each of its states: the picture of the collection that lies there.
    void pictures() {
        // The page, or its menu; what is pressed there, to be held where a place on it is given; and what
        // lies on which control then, or away from its corner by x, y, stretched to a width and height.
        for (const QStringList& row : Table(R"(
0 => Close=Close; Pages=MenuTab; Warm@320 6=CheckBox; Cool@320 6=CheckBoxSel; Cool@10 6 40 40=SceneIcon
0 Warm => Warm@320 6=CheckBoxSel; Cool@320 6=CheckBox
0 Pages => Scenes=MenuButSceneSel; Programs=MenuButProg; Color=MenuButColor; Channels=MenuButChan;
    Parameters=MenuButParams; Connect again=MenuButRefresh
0 Connect again@9 9 => Connect again=MenuButRefreshSel; Scenes=MenuButScene
1 #7 => #7@320 6=CheckBoxSel; #7@10 6 40 40=ProgramIcon
1 Pages => Scenes=MenuButScene; Programs=MenuButProgSel
2 => Color on or off=SwitchOff; Levels of the color=RGBSlidersSel; Commands, dimmer and speed=Commands; Red
    max=MaxRed; Green max=MaxGreen; Blue max=MaxBlue; White max=MaxGrey; Red=sliderCursor; Red@0 50 34
    300=sliderRedCenter; Green@0 50 34 300=sliderGreenCenter; Blue@0 50 34 300=sliderBlueCenter; White@0 50 34
    300=sliderGreyCenter
2 Color on or off => Color on or off=SwitchOn
2 Red@9 371 => Red=sliderTop; Red@0 338=sliderCursor
2 Pages => Scenes=MenuButScene; Color=MenuButColorSel
2 Commands, dimmer and speed => Commands, dimmer and speed=CommandsSel; Levels of the color=RGBSliders;
    White=White; Black=Black; Next=Next; Pause=Pause; Dimmer max=MaxGrey; Dimmer 50%=MaxGrey; Dimmer max@-7
    -25=Dimmer; Speed max@-7 -25=Speed
2 White => White=WhiteSel; Black=Black
2 Black => White=White; Black=BlackSel
2 Pause => Pause=PauseSel
2 Next@9 9 => Next=NextSel
3 => Previous channels=Left; Previous universe=Less; Next universe=Plus; Next channels=Right
3 Pages => Scenes=MenuButScene; Channels=MenuButChanSel
4 => Scenes page in the menu=SwitchOn; Lock this page with the password=SwitchOff; Scenes page in the menu@-250
    0=MenuButScene; Programs page in the menu@-250 0=MenuButProg; Color page in the menu@-250 0=MenuButColor;
    Channels page in the menu@-250 0=MenuButChan; Own names of scenes and programs@-250 0=Text; Own icons of
    scenes and programs@-250 0=Icon; Own colors of scenes and programs@-250 0=Color
4 Channels page in the menu => Channels page in the menu=SwitchOff
4 Pages => Scenes=MenuButScene; Parameters=MenuButParamsSel
)")) {
            const int iPage = row[0].section(' ', 0, 0).toInt();
            if (iPage != m_pWindow->CurrentPage()) {
                m_pWindow->ShowPopupMenu();
                Click(m_pWindow->Menu(), m_pWindow->Menu()->PartRect(iPage).center());
            }
            QCoreApplication::processEvents();
            Do(row[0].section(' ', 1));
            QCoreApplication::processEvents();
            const QImage window = m_pWindow->grab().toImage();
            const auto controls = Controls();
            for (const QString& sSeen : row[1].split("; ")) {
                const QStringList words = sSeen.split(QRegularExpression("[=@]"));
                QVERIFY2(controls.contains(words[0]), qPrintable(words[0]));
                const QStringList place = words.mid(1, words.size() - 2).value(0).split(' ');
                const auto number = [&place](int i) { return place.value(i).toInt(); };
                const QPoint corner = m_pWindow->mapFromGlobal(controls[words[0]]->rect().topLeft());
                const QRect at(corner + QPoint(number(0), number(1)), QSize(number(2), number(3)));
                QVERIFY2(Lies(window, words.last(), at), qPrintable(row[0] + ": no " + sSeen));
            }
        }
    }

    /// All that the mouse does on the pages keys do, too: the server is told the same, and so is a screen
    /// reader. A click ends what is seen of it.
    void keys() {
        // What is pressed with the mouse, and by keys from where the row before has left them.
        const auto rows = Table(R"(
Pages;Scenes => Ctrl+1
Warm => Tab Space
Cool => Right Return
Pages;Programs => Tab Space Down Space
#7 => Space
Pages;Color => Ctrl+3
Red max => Space
Green@5 370 => Tab Tab Tab Home Space
Blue@5 370 => Tab Tab Home
Color wheel@210 210 => Tab Tab Tab Home Return
Color on or off => Tab Space
Commands, dimmer and speed => Tab Tab Space
Black => Tab Down Space
Next => Down Space
Pause => Down Space
Dimmer 50% => Tab Down Space
Dimmer@5 305 => Tab Home
Dimmer 50% => Shift+Tab Space
Pages;Channels => Ctrl+4
Next channels => Right Right Right Space
Next universe => Left Space
Channel 37 => Down Space
Channel 37@5 2 => End
Channel 37@9 280 => Tab Return
Channel 37 => Space
Channel 37@9 280 => Escape Space Tab Return
Pages;Parameters => Ctrl+5
Programs page in the menu => Tab Tab Tab Tab Tab Tab Tab Tab Down Space
)");
        std::array<QList<QByteArray>, 2> sent;
        std::array<QImage, 2> shown;
        for (const bool bKeys : {false, true}) {
            Peer peer;
            peer.state =
                R"({"typ":7,"content":{"scn":{"content":[{"id":1,"n":"Warm","a":0},{"id":2,"n":"Cool",)"
                R"("a":0}]},"prg":{"content":[{"id":7}]},"cmd":{"content":{"dim":90}}}})";
            Open();
            QTRY_VERIFY(m_pWindow->IsAnswered());
            m_pWindow->OnMenuChanged(4);
            m_pWindow->Menu()->SetSelected(4);
            QVERIFY(QTest::qWaitForWindowActive(m_pWindow.get()));
            Controls();
            heard.clear();
            const auto press = [this](const QString& sKeys) {
                for (const QString& sKey : sKeys.split(' ')) {
                    QTest::keySequence(m_pWindow->windowHandle(), QKeySequence(sKey));
                    QCoreApplication::processEvents();
                }
            };
            press("Space Return Ctrl+7");  // nothing has the keys yet
            for (const QStringList& row : rows) {
                bKeys ? press(row[1]) : void();
                for (const QString& sPress : bKeys ? QStringList() : row[0].split(';')) {
                    Do(sPress);
                    QCoreApplication::processEvents();
                }
                QTest::qWait(70);
                QVERIFY2(IsUpToDate(m_pWindow.get()), qPrintable(row[1]));
            }
            for (const QByteArray& text : peer.All()) {
                const bool bAction = text.contains("content");
                sent.at(bKeys) += bAction ? QList<QByteArray>{text} : QList<QByteArray>();
            }
            QTest::mouseClick(m_pWindow->windowHandle(), Qt::LeftButton, {}, QPoint(750, 300));
            press("Space");  // the keys have left again
            shown.at(bKeys) = m_pWindow->grab().toImage();
            for (int i = 0; i < 12; ++i) {  // wherever the keys go, it can be seen
                const QImage before = m_pWindow->grab().toImage();
                press("Tab");
                QVERIFY2(m_pWindow->grab().toImage() != before, qPrintable(QString::number(i)));
            }
            // The third key of the row of digits, where it is a quote without Shift.
            QKeyEvent quote(QEvent::KeyPress, Qt::Key_QuoteDbl, Qt::ControlModifier, 12, 0, 0);
            QCoreApplication::sendEvent(m_pWindow.get(), &quote);
            QCOMPARE(m_pWindow->CurrentPage(), 2);
        }
        QVERIFY(sent[0].size() > 15);
        QCOMPARE(sent[1], sent[0]);
        QCOMPARE(shown[1], shown[0]);
        const QString sHeard = Table(R"(
Warm, Cool, Pages, C, Scenes, Programs, C, Pages, #7, C, Red max, Red, Green max, Green, Blue max, Blue, White max,
    White, Color wheel, Color on or off, Levels of the color, Commands, dimmer and speed, White, Black, Next,
    Pause, Dimmer max, Dimmer 50%, Dimmer, Dimmer 50%, C, Previous channels, Previous universe, Next universe, Next channels,
    Next universe, Channel 37, Channel 37
)")[0][0];
        QCOMPARE(heard.join(", ").left(sHeard.size()), sHeard);
    }

    void firstPage() {
        for (const auto& [pVisible, nPage] :
             {std::pair{"1|1|1|1", 2}, {"0|0|1|0", 2}, {"1|1|0|1", 0}, {"0|1|0|1", 1}, {"0|0|0|0", 4}}) {
            Corvane* pWindow = Open(pVisible);
            QVERIFY(pWindow->CurrentPage() == nPage && pWindow->Menu()->Selected() == nPage);
            QVERIFY(pWindow->SceneList()->isVisible() == (nPage == 0) &&
                    pWindow->ProgramList()->isVisible() == (nPage == 1));
            pWindow->OnMenuChanged(6);  // no page: none is left on screen
            QVERIFY(pWindow->childAt(410, 300) == nullptr && pWindow->CurrentPage() == 6);
        }
    }

    void drag() {
        Corvane* pWindow = m_pWindow.get();
        pWindow->move(100, 100);
        const auto mouse = [pWindow](QEvent::Type type, const QPoint& onScreen) {
            Mouse(pWindow, type, pWindow->mapFromGlobal(onScreen));
            return pWindow->pos();
        };
        mouse(QEvent::MouseButtonPress, {400, 120});
        QCOMPARE(mouse(QEvent::MouseMove, {430, 160}), QPoint(130, 140));
        QCOMPARE(mouse(QEvent::MouseMove, {429, 160}), QPoint(129, 140));
        mouse(QEvent::MouseButtonRelease, {429, 160});
        mouse(QEvent::MouseMove, {529, 230});
        // Neither the second of two clicks, even on the close button, nor a press on the page takes hold.
        for (const auto& [type, at] : {std::pair{QEvent::MouseButtonDblClick, QPoint(780, 30)},
                                       std::pair{QEvent::MouseButtonPress, QPoint(58, 58)}}) {
            Mouse(pWindow, type, at);
            mouse(QEvent::MouseMove, {600, 400});
        }
        QVERIFY(pWindow->isVisible() && pWindow->pos() == QPoint(129, 140));
    }

    void closing() {
        const QRect button(QPoint(765, 20), QPoint(796, 51));
        for (const QPoint at : {QPoint(765, 20), {796, 51}, {764, 20}, {797, 51}, {796, 52}}) {
            Click(Open(), at);
            QCOMPARE(m_pWindow->isVisible(), !button.contains(at));
        }
        Peer peer;
        Open();
        QTRY_VERIFY(m_pWindow->IsAnswered());
        QKeyEvent repeated(QEvent::KeyPress, Qt::Key_Escape, {}, QString(), true);
        QCoreApplication::sendEvent(m_pWindow.get(), &repeated);
        QTest::keyClick(m_pWindow.get(), Qt::Key_A);
        m_pWindow->ShowPopupMenu();
        QTest::keyClick(m_pWindow.get(), Qt::Key_Escape);
        QVERIFY(m_pWindow->isVisible() && !m_pWindow->Menu()->isVisible());
        QTest::keyClick(m_pWindow.get(), Qt::Key_Escape);
        QVERIFY(!m_pWindow->isVisible());
        QTRY_COMPARE(peer.Count(3), 1);
    }

    /// Each icon that can be chosen has its picture, and one of its own.
    void catalogueOfIcons() {
        QList<QImage> seen;
        for (const QStringList& icons : catalogue::IconLists()) {
            for (const QString& sIcon : icons) {
                const QImage icon = artwork::Picture(sIcon).toImage();
                QVERIFY2(!icon.isNull() && !seen.contains(icon), qPrintable(sIcon));
                seen += icon;
            }
        }
        QVERIFY(seen.size() > 40);
    }

    /// Texts stand out by a brightness of 125 of 255, which accessibility guidelines ask for.
    void readableTexts() {
        QCOMPARE(QToolTip::palette(), QApplication::palette());
        using P = QPalette;
        for (const auto group : {P::Active, P::Inactive, P::Disabled}) {
            const auto brightness = [group](P::ColorRole role) {
                return qGray(QApplication::palette().color(group, role).rgb());
            };
            for (const auto& [text, ground] : {std::pair{P::WindowText, P::Window},
                                               {P::Text, P::Base},
                                               {P::ButtonText, P::Button},
                                               {P::ToolTipText, P::ToolTipBase},
                                               {P::HighlightedText, P::Highlight},
                                               {P::Link, P::Window}}) {
                QVERIFY(std::abs(brightness(text) - brightness(ground)) >= 125);
            }
        }
    }

    /// Run at several scales of the display.
    void scale() {
        const double ratio = m_pWindow->devicePixelRatioF();
        QCOMPARE(ratio, qEnvironmentVariable("QT_SCALE_FACTOR", "1").toDouble());
        QCOMPARE(m_pWindow->mask().boundingRect(), QRect(0, 0, 820, 600));
        QCOMPARE(m_pWindow->grab().size(), QSize(820, 600) * ratio);
        QCOMPARE(artwork::Picture(":/Corvane/Images/Close.png").devicePixelRatio(), ratio);
        m_pWindow->OnMenuChanged(2);
        QTest::qWait(20);
        CSliderCtrl* pRed = m_pWindow->Picker()->Red();
        QCOMPARE(m_pWindow->Picker()->geometry(), QRect(58, 58, 704, 484));
        QCOMPARE(m_pWindow->Picker()->Wheel()->y(), 32);
        QCOMPARE(pRed->Slider()->size(), QSize(34, 372));
        // The slider's parts meet without a seam: below the cap the groove has one colour, and so has the
        // fill.
        for (const auto& [nLevel, nTop] : {std::pair{0, 11}, {255, 40}}) {
            pRed->SetValue(nLevel);
            const QImage image = pRed->Slider()->grab().toImage();
            const QImage strip = image.copy(image.width() / 2, static_cast<int>(nTop * ratio), 1,
                                            static_cast<int>(318 * ratio));
            QCOMPARE(strip, strip.copy(0, 0, 1, 1).scaled(strip.size()));
        }
    }

    /// In each language nothing is left in English and nothing cut off.
    void languages() {
        for (const QString& sLanguage : QStringList("") + m_languages) {
            Recorder recorder;
            QVERIFY(sLanguage.isEmpty() || recorder.load(TranslationFor({sLanguage})));
            QCoreApplication::installTranslator(&recorder);
            m_texts.clear();
            ReadProgram();
            QCoreApplication::removeTranslator(&recorder);
            const QRegularExpression unmarked("^[^§]*[a-z]{2}[^§]*$");
            const QStringList wrong = (sLanguage.isEmpty() ? m_texts : recorder.missed).filter(unmarked);
            QVERIFY2(wrong.isEmpty(), qPrintable(sLanguage + ": " + wrong.join("; ")));
        }
    }

    /// Whatever the desktop wants, numbers keep their sides.
    void direction() {
        for (const int iPage : {2, 3, 4}) {
            std::array<QImage, 2> shown;
            for (const bool bReverse : {false, true}) {
                QApplication::setLayoutDirection(bReverse ? Qt::RightToLeft : Qt::LeftToRight);
                Open()->OnMenuChanged(iPage);
                shown.at(bReverse) = m_pWindow->grab().toImage();
            }
            QCOMPARE(shown[1], shown[0]);
        }
    }

    void choiceOfLanguage() {
        for (const QString sCase : {"de-AT>de", "pt-BR es>es", "fr>fr", "en-GB de>", "C>", "ja>", ">"}) {
            const QString sPath = TranslationFor(sCase.section('>', 0, 0).split(' '));
            QCOMPARE(sPath.section('/', -1).section('.', 0, 0), sCase.section('>', 1));
        }
    }

    /// Of the desktop, as the environment has it: LANGUAGE is "de", which counts in a German locale, not in
    /// C.
    void languageOfTheDesktop() {
        ApplyLanguage();
        const bool bGerman = qEnvironmentVariable("LC_ALL").startsWith("de");
        QCOMPARE(QCoreApplication::translate("CChannelSlider", "Off"), QString(bGerman ? "Aus" : "Off"));
    }
};

QTEST_MAIN(TestWindow)
#include "tst_window.moc"
