#pragma once

#include "platform/settings_store.h"

#include <QString>

#include <memory>

class QSettings;

namespace tonvex {

/// One INI file per user; sections are its groups, values are texts. Interface thread.
class Qt_Settings_Store final : public Settings_Store {
public:
    /// The user's file of application "Tonvex".
    Qt_Settings_Store();
    explicit Qt_Settings_Store(const QString& iniFile);
    ~Qt_Settings_Store() override;

    std::string Get(const std::string& section, const std::string& key,
                    const std::string& fallback) const override;
    void Set(const std::string& section, const std::string& key, const std::string& value) override;
    /// After a failure the values are still there, and a later call tries again.
    bool Flush() override;
    QString File_Name() const;

private:
    std::unique_ptr<QSettings> settings;
};

} // namespace tonvex
