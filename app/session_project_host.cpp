#include "app/session_project_host.h"

#include "app/session.h"

namespace tonvex {

std::filesystem::path Session_Project_Host::Temp_Folder() const {
    return session.Temp_Folder();
}

std::filesystem::path Session_Project_Host::Audio_Folder() const {
    return session.settings.Projects_AudioPath;
}

std::int32_t Session_Project_Host::Installation_ID() const {
    return session.settings.InstallationID;
}

bool Session_Project_Host::Shows_Beats() const {
    return session.settings.Global_EVEd_ViewBeats;
}

void Session_Project_Host::Add_Recent(const std::filesystem::path& path) {
    session.settings.Add_Recent(path.string());
    session.Keep_Recent_Files();
}

} // namespace tonvex
