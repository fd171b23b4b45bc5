#pragma once

#include <QStringList>

/// Shows every text from now on, Qt's own included, in the language of the desktop's locale, where the
/// program has it.
void ApplyLanguage();

/// The compiled translation for the first of the languages, named as in "de" or "de-AT", that the program
/// has; empty where English or "C" comes first, or none is there.
QString TranslationFor(const QStringList& wanted);
