#pragma once

#include <QLocale>
#include <QTranslator>

#include <filesystem>

namespace tonvex {

/// The texts of the windows in the user's language, for as long as the object lives: tonvex_<language>.qm of
/// the folder, and Qt's own catalogue for its standard buttons and dialogs. English is the source, so without
/// a catalogue nothing is missing. Made after the application and before the first window. Interface thread.
class Translations {
public:
    Translations(const std::filesystem::path& folder, const QLocale& locale);

private:
    QTranslator program;
    QTranslator toolkit;
};

} // namespace tonvex
