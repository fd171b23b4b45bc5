#pragma once

/// Gives the application its own look, the same on every desktop: a dark theme must not put grey text on the
/// light pages.
void ApplyLook();
