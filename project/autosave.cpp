#include "project/autosave.h"

#include <exception>
#include <utility>

namespace tonvex {

namespace fs = std::filesystem;

namespace {

/// On the writing thread. No exception leaves it.
std::string Write_Copy(const Autosave::Song_Writer& write, const fs::path& folder,
                       const Recovery_Note& note) noexcept {
    std::string error;
    try {
        const auto song = write();
        if (!song)
            return "the song is too large for a file";
        if (!Write_Recovery_Copy(folder, *song, note, error) && error.empty())
            error = folder.string();
    } catch (const std::exception& reason) {
        error = reason.what();
    }
    return error;
}

} // namespace

Autosave::Autosave(const Project_State& theProject, const Millisecond_Counter& theCounter, fs::path place,
                   Song_Copier copier)
    : project(theProject), counter(theCounter), folder(std::move(place)), copySong(std::move(copier)),
      lastBeginMs(theCounter.Now_Ms() - INTERVAL_MS) {}

Autosave::~Autosave() {
    if (writing.valid())
        writing.wait();
}

void Autosave::Tick() {
    if (writing.valid() && writing.wait_for(std::chrono::seconds(0)) == std::future_status::ready)
        Collect();
    if (writing.valid() || folder.empty())
        return;
    if (!project.Modified) {
        takeEnded = false;
        copiedChange.reset();
        lastCopy = nullptr;
        Remove();
        return;
    }
    const bool intervalOver = counter.Now_Ms() - lastBeginMs >= INTERVAL_MS;
    if (takeEnded || (intervalOver && copiedChange != project.Modified.Times_Set()))
        Begin();
}

void Autosave::Take_Ended() {
    takeEnded = true;
    Tick();
}

void Autosave::Song_Is_Settled() {
    takeEnded = false;
    copiedChange.reset();
    if (writing.valid())
        obsolete = true;
    else
        Remove();
}

bool Autosave::Copy_Now() {
    Finish();
    if (!project.Modified)
        return true;
    if (folder.empty())
        return false;
    // What stands may lack a take that joined the song after the last change was counted.
    Begin();
    Finish();
    return copiedChange == project.Modified.Times_Set();
}

void Autosave::Begin() {
    lastBeginMs = counter.Now_Ms();
    takeEnded = false;
    try {
        lastCopy = std::make_shared<const Song_Writer>(copySong());
        copiedChange = project.Modified.Times_Set();
        const Recovery_Note note{project.Path, project.ProjectTitle};
        mayStand = true;
        writing = std::async(std::launch::async, [write = lastCopy, place = folder, note] {
            return Write_Copy(*write, place, note);
        });
    } catch (const std::exception& reason) {
        Fail(reason.what()); // no memory, or no thread
    }
}

void Autosave::Finish() {
    if (writing.valid())
        Collect();
}

void Autosave::Collect() {
    const std::string error = writing.get();
    if (error.empty())
        failureTold = false;
    else
        Fail(error);
    if (std::exchange(obsolete, false)) {
        copiedChange.reset();
        Remove();
    }
}

void Autosave::Remove() {
    if (std::exchange(mayStand, false))
        Remove_Recovery_Copy(folder);
}

void Autosave::Fail(const std::string& error) {
    copiedChange.reset();
    if (!std::exchange(failureTold, true) && onFailure)
        onFailure(error);
}

} // namespace tonvex
