#pragma once

#include <map>
#include <string>
#include <utility>

namespace tonvex {

/// Per-user string values by application "Tonvex", section and key. Interface thread.
class Settings_Store {
public:
    virtual ~Settings_Store() = default;
    /// fallback when nothing is stored under the key.
    virtual std::string Get(const std::string& section, const std::string& key,
                            const std::string& fallback) const = 0;
    virtual void Set(const std::string& section, const std::string& key, const std::string& value) = 0;
    /// Writes what was set to the disk; false when that failed.
    virtual bool Flush() = 0;
};

class Memory_Settings_Store final : public Settings_Store {
public:
    std::string Get(const std::string& section, const std::string& key,
                    const std::string& fallback) const override {
        const auto found = values.find({section, key});
        return found == values.end() ? fallback : found->second;
    }
    void Set(const std::string& section, const std::string& key, const std::string& value) override {
        values[{section, key}] = value;
    }
    bool Flush() override { return true; }

private:
    std::map<std::pair<std::string, std::string>, std::string> values;
};

} // namespace tonvex
