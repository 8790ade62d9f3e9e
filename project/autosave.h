#pragma once

#include "platform/millisecond_counter.h"
#include "project/recovery_copy.h"
#include "song/project_state.h"

#include <cstdint>
#include <filesystem>
#include <functional>
#include <future>
#include <memory>
#include <optional>
#include <string>
#include <vector>

namespace tonvex {

/// Keeps a recovery copy of a song with unsaved changes: soon after the first change, then at most once in
/// INTERVAL_MS, and when a take has ended at once; none when nothing changed since the last one. The song is
/// copied on the interface thread and written by a thread of its own, one write at a time; the model is only
/// read. All calls on the interface thread.
class Autosave {
public:
    static constexpr std::int64_t INTERVAL_MS = 30'000;

    /// Makes the bytes of a song file from the copy of the song that it holds; called once, on the writing
    /// thread. It is kept until the next one is made, so that the two may share what has not changed.
    /// Nothing when the song does not fit into a file.
    using Song_Writer = std::function<std::optional<std::vector<std::uint8_t>>()>;
    /// Copies the song as it stands.
    using Song_Copier = std::function<Song_Writer()>;

    /// All outlive it. folder: where the copy goes; empty when there is no place for one, and none is made.
    Autosave(const Project_State& project, const Millisecond_Counter& counter, std::filesystem::path folder,
             Song_Copier copySong);
    /// Waits for a write that is under way. The copy stays where it is.
    ~Autosave();
    Autosave(const Autosave&) = delete;
    Autosave& operator=(const Autosave&) = delete;

    /// To be called about once a second, in a run too: begins a copy that is due, removes one that a save has
    /// made obsolete, tells failures.
    void Tick();
    /// There is something for Tick to do, now or later, while the song stays as it is.
    bool Has_Work() const noexcept { return project.Modified || mayStand || writing.valid(); }
    /// A recording is over: what it brought is copied without waiting for the interval.
    void Take_Ended();
    /// The song in hand is another one, or it was saved: the copy goes.
    void Song_Is_Settled();
    /// Copies what is unsaved and waits until it is written. True when all of it stands in a copy, or when
    /// nothing is unsaved.
    bool Copy_Now();
    /// Waits for a write that is under way.
    void Finish();

    /// A copy could not be written; told once until one succeeds. The next one is tried after the interval.
    std::function<void(const std::string& error)> onFailure;

private:
    void Begin();
    void Remove();
    void Collect();
    void Fail(const std::string& error);

    const Project_State& project;
    const Millisecond_Counter& counter;
    std::filesystem::path folder;
    Song_Copier copySong;
    std::future<std::string> writing; ///< its error; empty when all went well
    std::shared_ptr<const Song_Writer> lastCopy;
    std::optional<std::uint64_t> copiedChange; ///< Times_Set of the flag when the last copy was taken
    std::int64_t lastBeginMs;
    bool takeEnded = false;
    bool mayStand = false; ///< a copy, or a part of one
    bool obsolete = false; ///< what is being written
    bool failureTold = false;
};

} // namespace tonvex
