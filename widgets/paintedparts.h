#pragma once

#include <QAccessible>
#include <QRect>
#include <QString>

#include <map>

class QEvent;
class QWidget;

/// What screen readers are told of a painted control.
struct PaintedPart {
    QString name;
    QAccessible::Role role = QAccessible::Button;
    QRect rect = {};     ///< in widget coordinates; null while the control is not there
    QString value = {};  ///< what it shows beside its name; a slider's is its level, 0 to 255
    QAccessible::State state = {};
};

/// The state of what is on or off.
QAccessible::State CheckState(bool bOn);

/// A widget with controls that are painted and no widgets. It says what they are; screen readers and other
/// tools then find them as children of the widget, with names, states and something to press.
///
/// An interface of a control is made when it is asked for, and nothing is told before.
class PaintedParts {
public:
    virtual ~PaintedParts();
    Q_DISABLE_COPY_MOVE(PaintedParts)

    virtual int PartCount() const { return 0; }
    /// One control, by its place from 0.
    virtual PaintedPart Part(int) const { return {}; }
    /// The widget itself, which may be the only control. Without a name it has its accessible name, without
    /// an area all of the widget.
    virtual PaintedPart Whole() const { return {{}, QAccessible::Grouping}; }
    /// What the hand does with a slider: sets a level, 0 to 255, and tells it.
    virtual void ChooseLevel(int) {}

    /// The control at a place of the widget, or -1.
    int PartAt(const QPoint& position) const;
    /// Repaints the widget and tells what has changed.
    void ShowParts();
    /// Tells what has changed of the controls that were asked for: without a screen reader that is none.
    void TellParts();

    QWidget* Widget() const { return m_pWidget; }
    /// Whether the hand could reach the widget now.
    bool IsInReach() const;
    /// Clicks in the middle of an area.
    void Click(const QRect& rect) const;
    /// The interface of a control.
    QAccessibleInterface* Access(int iPart);
    /// Notes what is told of the widget itself, from which on its changes are told.
    void TellWhole() { m_told[WholePart].part = Whole(); }

protected:
    explicit PaintedParts(QWidget* pWidget);

    /// To be called before other controls take the place of these: no one may press one for another.
    void ForgetParts();
    /// Ends whatever the mouse holds of the widget.
    virtual void LetGo() {}
    /// Lets go when the event says that the widget is hidden or that a box blocks its window: the release of
    /// the mouse will not come.
    void LetGoIfCutOff(QEvent* event);
    /// Shows the name of the control under the pointer, if the event asks for a tool tip.
    bool ShowToolTip(QEvent* event) const;

private:
    struct Told {
        PaintedPart part;
        QAccessible::Id id = 0;
    };

    static constexpr int WholePart = -1;

    QWidget* m_pWidget;
    std::map<int, Told> m_told;  ///< by place
};
