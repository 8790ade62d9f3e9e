#include "app/windows/autosave_timer.h"

#include "platform/qt/core_words.h"
#include "project/project_writer.h"

#include <algorithm>
#include <memory>

namespace tonvex {

namespace {

constexpr int TICK_MS = 3000; ///< a take that ends is not waited for

Autosave::Song_Writer Copy_Song(const Session& session) {
    auto song = std::make_shared<Song_Snapshot>(session.files->Snapshot());
    // As a save would: the audio beside it is this installation's.
    song->State.InstallationID = session.settings.InstallationID;
    return [song = std::shared_ptr<const Song_Snapshot>(std::move(song))] { return Write_Project(*song); };
}

} // namespace

Autosave_Timer::Autosave_Timer(Session& owner, QObject* parent)
    : QObject(parent), session(owner), link(owner.observers, *this),
      autosave(owner.project, owner.doors.counter, owner.Temp_Folder(),
               [this] { return Copy_Song(session); }) {
    session.files->observers.push_back(this);
    autosave.onFailure = [this](const std::string& error) { emit failed(Core_Words(error)); };
    connect(&timer, &QTimer::timeout, this, [this] {
        autosave.Tick();
        if (!autosave.Has_Work())
            timer.stop();
    });
    timer.setTimerType(Qt::VeryCoarseTimer);
    timer.setInterval(TICK_MS);
}

Autosave_Timer::~Autosave_Timer() {
    auto& observers = session.files->observers;
    observers.erase(std::remove(observers.begin(), observers.end(), this), observers.end());
}

void Autosave_Timer::Look() {
    if (!timer.isActive() && autosave.Has_Work())
        timer.start();
}

void Autosave_Timer::On_Run_Started(bool recording) {
    recorded = recording;
}

void Autosave_Timer::On_Run_Ended() {
    if (recorded)
        autosave.Take_Ended();
    Look();
}

void Autosave_Timer::On_Song_Replaced() {
    autosave.Song_Is_Settled();
}

void Autosave_Timer::On_Project_Saved() {
    autosave.Song_Is_Settled();
}

} // namespace tonvex
