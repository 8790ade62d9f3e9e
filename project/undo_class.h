#pragma once

#include "project/undo_item.h"

#include <cstddef>
#include <cstdint>
#include <filesystem>
#include <functional>
#include <string>
#include <vector>

namespace tonvex {

/// Names of undo files, one number each; the numbers rise for the whole run.
class Undo_File_Names {
public:
    /// prefix "undofile" or "redofile".
    explicit Undo_File_Names(std::string prefix) : start(std::move(prefix)) {}
    void Set_Folder(const std::filesystem::path& path) { folder = path; }
    std::filesystem::path Next() { return folder / (start + std::to_string(++number) + ".dat"); }

private:
    std::filesystem::path folder;
    std::string start;
    std::uint64_t number = 0;
};

/// What was selected in an editor when a step was taken.
struct Undo_Selection {
    std::int32_t ChannelID = NOT_GIVEN;
    std::vector<std::int32_t> EventIDs;
};

/// One step: a label, and the parts of the song that an action changed, as they were. Its files go with it.
/// Interface thread.
class UndoClass {
public:
    UndoClass(const Undo_Song& song, std::string actionName, Undo_File_Names& files);
    ~UndoClass();
    UndoClass(const UndoClass&) = delete;
    UndoClass& operator=(const UndoClass&) = delete;

    std::string ActionName;
    Undo_Selection Selection;

    /// The part as it is now; what lives in a file is written.
    void AddData(Undo_Kind kind, std::int32_t rowI, std::int32_t subI = 0);
    /// A part as it was. Nothing when the step holds that part already.
    void Add(UndoItem item);
    bool Holds(Undo_Kind kind, std::int32_t rowI, std::int32_t subI) const;
    /// Brings every part back, tells the views, lets the sound follow. opposite, which is empty, takes the
    /// states that are replaced. False when a file cannot be read: nothing has changed. The song's length is
    /// afterwards 0, for the general update that the caller sends.
    bool LoadData(UndoClass& opposite);
    /// The step holds nothing any more; its files are deleted.
    void Unload_Data();
    /// Marks the clips that the channels kept here play.
    void wGen_CC_UsedWav_List(const std::function<void(std::int32_t clipId)>& mark) const;

private:
    void Let_Others_Follow() const;

    const Undo_Song& song;
    Undo_File_Names& names;
    std::vector<UndoItem> Items;
};

} // namespace tonvex
