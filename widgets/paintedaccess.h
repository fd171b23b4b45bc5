#pragma once

#include <QAccessible>

class PaintedWidget;
struct PaintedPart;

/// What screen readers and other tools find of a PaintedWidget: its controls are its children, with names,
/// states and something to press.
namespace paintedaccess {

/// To be called before the first is asked for.
void Install();

/// Makes the interface of one control, by its place.
QAccessible::Id RegisterPart(PaintedWidget& widget, int iPart);

void TellEvent(QAccessibleInterface* pAccess, QAccessible::Event event);

/// Tells the difference between what a control was and what it has become.
void TellChange(QAccessibleInterface* pAccess, const PaintedPart& before, const PaintedPart& now);

}  // namespace paintedaccess
