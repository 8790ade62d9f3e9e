#pragma once

#include "project/project_host.h"

namespace tonvex {

class Session;

/// What the project files need to know of the session: its folders, its settings. Interface thread.
class Session_Project_Host final : public Project_Host {
public:
    /// session owns the host.
    explicit Session_Project_Host(Session& owner) : session(owner) {}

    std::filesystem::path Temp_Folder() const override;
    std::filesystem::path Audio_Folder() const override;
    std::int32_t Installation_ID() const override;
    bool Shows_Beats() const override;
    void Add_Recent(const std::filesystem::path& path) override;

private:
    Session& session;
};

} // namespace tonvex
