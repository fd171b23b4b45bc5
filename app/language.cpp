#include "app/language.h"

#include "widgets/artwork.h"

#include <QCoreApplication>
#include <QFile>
#include <QLocale>
#include <QTranslator>

void ApplyLanguage() {
    // In the C locale no language is wanted, whatever LANGUAGE says.
    for (const char* pVariable : {"LC_ALL", "LC_MESSAGES", "LANG"}) {
        const QString sLocale = qEnvironmentVariable(pVariable).section('.', 0, 0);
        if (sLocale == "C" || sLocale == "POSIX") {
            return;
        }
        if (!sLocale.isEmpty()) {
            break;
        }
    }
    const QLocale desktop = QLocale::system();
    if (desktop.language() == QLocale::C) {
        return;
    }
    const QString sPath = TranslationFor(desktop.uiLanguages());
    auto* pTranslator = new QTranslator(qApp);
    if (!sPath.isEmpty() && pTranslator->load(sPath)) {
        QCoreApplication::installTranslator(pTranslator);
    }
}

QString TranslationFor(const QStringList& wanted) {
    artwork::OpenCollection();
    for (const QString& sName : wanted) {
        const QString sLanguage = sName.section('-', 0, 0);
        const QString sPath = ":/Corvane/Translations/" + sLanguage + ".qm";
        if (sLanguage == "en" || sLanguage == "C") {
            return {};
        }
        if (QFile::exists(sPath)) {
            return sPath;
        }
    }
    return {};
}
