#pragma once

/// Lets screen readers and other tools see the page menu's entries, which are painted and no widgets, as
/// buttons with names that can be pressed. Safe to call more than once.
void InstallPopupMenuAccess();
