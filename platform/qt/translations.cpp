#include "platform/qt/translations.h"

#include <QCoreApplication>
#include <QLibraryInfo>

namespace tonvex {

Translations::Translations(const std::filesystem::path& folder, const QLocale& locale) {
    // Without the program's own words the standard buttons stay English too: one language a window.
    if (!program.load(locale, QStringLiteral("tonvex"), QStringLiteral("_"),
                      QString::fromStdString(folder.string())))
        return;
    QCoreApplication::installTranslator(&program);
    if (toolkit.load(locale, QStringLiteral("qtbase"), QStringLiteral("_"),
                     QLibraryInfo::path(QLibraryInfo::TranslationsPath)))
        QCoreApplication::installTranslator(&toolkit);
}

} // namespace tonvex
