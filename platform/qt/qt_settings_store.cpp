#include "platform/qt/qt_settings_store.h"

#include <QSettings>
#include <QStringList>
#include <QVariant>

namespace tonvex {

namespace {

QString Path_Of(const std::string& section, const std::string& key) {
    return QString::fromStdString(section) + u'/' + QString::fromStdString(key);
}

} // namespace

Qt_Settings_Store::Qt_Settings_Store()
    : settings(std::make_unique<QSettings>(QSettings::IniFormat, QSettings::UserScope, "Tonvex", "Tonvex")) {}

Qt_Settings_Store::Qt_Settings_Store(const QString& iniFile)
    : settings(std::make_unique<QSettings>(iniFile, QSettings::IniFormat)) {}

Qt_Settings_Store::~Qt_Settings_Store() = default;

std::string Qt_Settings_Store::Get(const std::string& section, const std::string& key,
                                   const std::string& fallback) const {
    const QVariant value = settings->value(Path_Of(section, key));
    if (!value.isValid())
        return fallback;
    // A text with commas that the user wrote into the file without quotes is read as a list.
    if (value.typeId() == QMetaType::QStringList)
        return value.toStringList().join(QStringLiteral(", ")).toStdString();
    return value.toString().toStdString();
}

void Qt_Settings_Store::Set(const std::string& section, const std::string& key, const std::string& value) {
    settings->setValue(Path_Of(section, key), QString::fromStdString(value));
}

bool Qt_Settings_Store::Flush() {
    // An error sticks to the object, also that of a file full of nonsense, which writing replaces. A new
    // object on the same file shares the values not yet written.
    for (int attempt = 0; attempt < 2; ++attempt) {
        if (settings->status() != QSettings::NoError) {
            auto fresh = std::make_unique<QSettings>(settings->fileName(), QSettings::IniFormat);
            settings = std::move(fresh);
        }
        settings->sync();
        if (settings->status() == QSettings::NoError)
            return true;
    }
    return false;
}

QString Qt_Settings_Store::File_Name() const {
    return settings->fileName();
}

} // namespace tonvex
