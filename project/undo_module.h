#pragma once

#include "project/project_host.h"
#include "project/undo_class.h"

#include <cstdint>
#include <deque>
#include <filesystem>
#include <functional>
#include <memory>
#include <optional>
#include <string>
#include <vector>

namespace tonvex {

/// How the steps of messages that follow each other become one.
enum class Undo_Join {
    Alone,        ///< each is a step of its own
    Gesture,      ///< of a slider: with the one before, when that is not longer ago than GESTURE_MS
    Song_Gesture, ///< the same of one that stands for the whole song
    Batch,        ///< of items: with the one before, until a closing message
    Closes,       ///< a closing message: what follows is another step
    Follows       ///< belongs to the step taken last, whatever that was
};

/// What a message is about: messages that differ in it make steps of their own.
struct Undo_Source {
    Undo_Join join = Undo_Join::Alone;
    int msg = 0;
    std::int32_t about = 0; ///< the message's first parameter
    Msg_Sender sender = nullptr;
};

/// Undo and redo by snapshots. Interface thread.
///
/// The takers are told what is about to change. While a message is carried out (Begin_Message to End_Message,
/// which nest), or in a scope that a caller opened for several messages (Begin_Step to End_Step), they keep
/// the state of then; at the end those parts that really differ become one step, which empties the redo
/// stack, or join the step before. Nothing that differs: no step. Outside both, a taker takes its step at
/// once.
/// Undoing and redoing is refused while a song runs, while a message is carried out and in a scope.
class UndoModule final : public Project_Observer {
public:
    static constexpr std::size_t MOST_STEPS = 200;
    static constexpr std::int64_t GESTURE_MS = 1000;

    explicit UndoModule(Undo_Song parts);

    /// Off until Enable: every taker keeps nothing, and there is nothing to undo.
    bool UndoEnabled = false;
    /// folder takes the files.
    void Enable(const std::filesystem::path& folder);

    // ---- takers: what is about to change, and the label of the step; a message's first label counts ----
    void Undo_Channel(const std::string& label, int channelI);
    /// All events and all maps.
    void Undo_AllChannels(const std::string& label);
    void Undo_AllChannels_MC(const std::string& label);
    void Undo_MC(const std::string& label);
    void Undo_Tempo(const std::string& label);
    void Undo_Song_Tempo(const std::string& label);
    /// The row, and what is the same on all rows of its output slot: their rows and the slot's pan map; the
    /// volume map of an audio channel.
    void Undo_Row(int channelI, const std::string& label);
    void Undo_Name(int channelI);
    /// Before the channel takes that free row, for its slot (above the slots: none); and once it has.
    void Undo_FreeRow(int rowI, int slot, const std::string& label);
    void Undo_AddChannel(int rowI, const std::string& label);
    void Undo_DeleteChannel(int channelI, const std::string& label);
    void Undo_Effects(int effectRow, const std::string& label);
    /// mapKind and slot, or the row of an audio channel's maps.
    void Undo_SlotMap(Map_Kind kind, int slot, const std::string& label);
    void Undo_AudioMap(Map_Kind kind, int audioRow, const std::string& label);
    void Undo_Marks(const std::string& label);
    /// All maps, of slots and audio channels.
    void Undo_AllMaps(const std::string& label);

    // ---- one message ----
    void Begin_Message(const Undo_Source& source);
    /// Whether the message has changed the song so far; true when nothing was kept that could tell.
    bool Message_Changed() const;
    void End_Message();

    // ---- one step of several messages ----
    /// label may be empty: that of the first message counts.
    void Begin_Step(const std::string& label);
    void End_Step();

    /// False when there is nothing to undo, or it cannot be done now. A step whose files cannot be read is
    /// told to the user, and goes with all steps behind it.
    bool Do_Undo() { return Swap(UndoStack, RedoStack, redoFiles); }
    bool Do_Redo() { return Swap(RedoStack, UndoStack, undoFiles); }
    bool Can_Undo() const { return Is_Free() && !UndoStack.empty(); }
    bool Can_Redo() const { return Is_Free() && !RedoStack.empty(); }
    /// The menu entries.
    std::string Undo_Text() const { return Menu_Text("Undo", UndoStack); }
    std::string Redo_Text() const { return Menu_Text("Redo", RedoStack); }
    std::size_t Undo_Count() const noexcept { return UndoStack.size(); }
    std::size_t Redo_Count() const noexcept { return RedoStack.size(); }

    /// The labels of the steps, the newest first.
    std::vector<std::string> Undo_Labels() const { return Labels(UndoStack); }
    std::vector<std::string> Redo_Labels() const { return Labels(RedoStack); }

    /// An editor tells what was selected in it before the change, and is given it back with the step. May be
    /// empty.
    std::function<Undo_Selection()> Take_Selection;
    std::function<void(const Undo_Selection&)> Give_Selection;

    /// Both stacks empty, their files deleted: for another song.
    void Clear();
    void On_Song_Replaced() override { Clear(); }
    /// Marks the clips that only a step may still need.
    void wGen_CC_UsedWav_List(const std::function<void(std::int32_t clipId)>& mark) const;

private:
    using Stack = std::deque<std::unique_ptr<UndoClass>>; ///< the newest in front
    struct Part {
        Undo_Kind kind;
        std::int32_t rowI;
        std::int32_t subI;
    };

    void Take(const std::string& label, const std::vector<Part>& parts);
    void Keep(std::vector<UndoItem>& kept, const Part& part);
    bool Is_Held(const Part& part) const;
    void Commit(std::vector<UndoItem> items, const std::string& label);
    UndoClass& New_UndoStep(bool clearRedo, const std::string& label);
    void Push(Stack& stack, std::unique_ptr<UndoClass> step);
    bool Swap(Stack& from, Stack& to, Undo_File_Names& toFiles);
    bool Is_Free() const;
    bool Joins_Last(const Undo_Source& source) const;
    std::vector<Part> All_Events_And_Maps() const;
    std::vector<Part> All_Maps() const;
    static std::vector<std::string> Labels(const Stack& stack);
    static std::string Menu_Text(const char* verb, const Stack& stack);

    Undo_Song song;
    Undo_File_Names undoFiles{"undofile"};
    Undo_File_Names redoFiles{"redofile"};
    Stack UndoStack;
    Stack RedoStack;
    bool restoring = false;

    int messageDepth = 0;
    Undo_Source message;
    bool joinsLast = false; ///< what the message changes goes into the newest step
    std::string messageLabel;
    std::vector<UndoItem> messageItems;

    int scopeDepth = 0;
    bool scopeOpen = false;
    bool scopeHasStep = false; ///< the newest step is the scope's
    std::string scopeLabel;
    std::vector<UndoItem> scopeItems; ///< of takers outside messages

    std::optional<Undo_Source> lastSource; ///< of the newest step, when a further message may join it
    std::int64_t lastMs = 0;
    /// The channel content kept last: as long as it is held, keeping the same again costs nothing.
    std::shared_ptr<const Channel_Content> lastContent;
};

} // namespace tonvex
