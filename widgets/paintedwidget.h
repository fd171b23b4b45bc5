#pragma once

#include <QAccessible>
#include <QPointer>
#include <QRect>
#include <QString>
#include <QWidget>

#include <map>
#include <optional>

/// What screen readers are told of a painted control.
struct PaintedPart {
    /// Whether there is something to do with it.
    bool IsControl() const;

    QString name;
    QAccessible::Role role = QAccessible::Button;
    QString value = {};  ///< what it shows beside its name
    QAccessible::State state = {};
    int level = 0;  ///< a slider's, 0 to 255
};

/// The state of what is on or off.
QAccessible::State CheckState(bool bOn);

/// A widget with controls that are painted and no widgets. It says what they are and where; tool tips, screen
/// readers and their presses, and what the keys do follow from that.
///
/// For the keys it is one stop of the window's. A ring surrounds the control that they work, from the first
/// Tab or arrow to the next click: arrows move it to the nearest control, Space and Enter click there.
/// Without it they do nothing.
///
/// An interface of a control is made when it is asked for, and nothing is told before.
class PaintedWidget : public QWidget {
    Q_OBJECT

signals:
    /// The ring surrounds another control.
    void ringMoved();

public:
    static constexpr int Self = -1;  ///< the place of the widget itself among its controls

    explicit PaintedWidget(QWidget* parent, Qt::WindowFlags flags = {});
    ~PaintedWidget() override;
    Q_DISABLE_COPY_MOVE(PaintedWidget)

    virtual int PartCount() const { return 0; }
    /// One control, by its place from 0.
    virtual PaintedPart Part(int) const { return {}; }
    /// Where it stands, in widget coordinates; null while it is not there.
    virtual QRect PartRect(int) const { return {}; }
    /// The widget itself, which may be the only control. Without a name it has its accessible name.
    virtual PaintedPart Whole() const { return {{}, QAccessible::Grouping}; }
    /// Where the widget itself is shown and can be pressed.
    virtual QRect WholeRect() const { return rect(); }
    /// What the hand does with a slider: sets a level, 0 to 255, and tells it.
    virtual void ChooseLevel(int) {}

    /// The control at a place of the widget, or -1.
    int PartAt(const QPoint& position) const;
    /// Repaints the widget and tells what has changed.
    void ShowParts();
    /// Tells what has changed of the controls that were asked for: without a screen reader that is none. What
    /// changes while the widget is hidden is told when it comes.
    void TellParts();

    /// Whether the hand could reach the widget now.
    bool IsInReach() const;
    /// Clicks in the middle of an area.
    void Click(const QRect& rect, Qt::MouseButton button = Qt::LeftButton);

    bool HasRing() const { return m_ring != nullptr; }
    /// The control under the ring, or the last that was.
    int RingPart() const { return m_iRing; }
    void HideRing();

    /// The interface of a control.
    QAccessibleInterface* Access(int iPart);
    /// Notes what is told of the widget itself, from which on its changes are told.
    void TellWhole() { m_whole = Whole(); }

protected:
    /// Tool tips are by control, and what the mouse holds ends where its release will not come: when the
    /// widget is hidden or a box blocks its window.
    bool event(QEvent* event) override;
    /// Ends whatever the mouse holds of the widget.
    virtual void LetGo() {}
    /// What is shown of a control while the pointer rests on it: its name.
    virtual QString PartTip(int iPart) const { return Part(iPart).name; }
    /// To be called before other controls take the place of these: no one may press one for another.
    void ForgetParts();

    void keyPressEvent(QKeyEvent* event) override;
    void focusInEvent(QFocusEvent* event) override;
    void focusOutEvent(QFocusEvent* event) override;
    QVariant inputMethodQuery(Qt::InputMethodQuery query) const override;
    /// The control that Tab comes to: the last one that had the ring.
    virtual int EntryPart(bool) const { return m_iRing; }
    /// What the ring surrounds.
    virtual QRect RingRect() const { return m_iRing == Self ? WholeRect() : PartRect(m_iRing); }
    /// What a key that is no press does to the control under the ring; false if nothing.
    virtual bool Steer(int) { return false; }
    /// Moves the ring if it is shown; to no control, it goes.
    void SetRing(int iPart);
    /// Follows what it surrounds.
    void PlaceRing();

private:
    struct Told {
        PaintedPart part;
        bool bThere = false;
        QAccessible::Id id = 0;
    };

    bool IsStop(int iPart) const;
    void ShowRing();
    bool MoveRing(int nKey);
    void TellRing();

    int m_iRing = Self;
    QPointer<QWidget> m_ring;
    std::optional<PaintedPart> m_whole;  ///< as it was told
    std::map<int, Told> m_told;          ///< by place
};
