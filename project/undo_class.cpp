#include "project/undo_class.h"

#include <algorithm>
#include <utility>

namespace tonvex {

namespace {

/// A channel that comes or goes.
bool Is_Structural(Undo_Kind kind) noexcept {
    return kind == Undo_Kind::Added_Channel || kind == Undo_Kind::Deleted_Channel;
}

/// What the opposite step keeps of the same part.
Undo_Kind Opposite(Undo_Kind kind) noexcept {
    if (kind == Undo_Kind::Added_Channel)
        return Undo_Kind::Deleted_Channel;
    return kind == Undo_Kind::Deleted_Channel ? Undo_Kind::Added_Channel : kind;
}

} // namespace

UndoClass::UndoClass(const Undo_Song& parts, std::string actionName, Undo_File_Names& files)
    : ActionName(std::move(actionName)), song(parts), names(files) {}

UndoClass::~UndoClass() {
    Unload_Data();
}

void UndoClass::AddData(Undo_Kind kind, std::int32_t rowI, std::int32_t subI) {
    Add(UndoItem::Now(song, kind, rowI, subI));
}

void UndoClass::Add(UndoItem item) {
    if (Holds(item.ItemKind, item.RowI, item.SubI))
        return;
    if (UndoItem::Lives_In_File(item.ItemKind))
        item.Write(names.Next());
    Items.push_back(std::move(item));
}

bool UndoClass::Holds(Undo_Kind kind, std::int32_t rowI, std::int32_t subI) const {
    return std::any_of(Items.begin(), Items.end(),
                       [=](const UndoItem& item) { return item.Is_About(kind, rowI, subI); });
}

bool UndoClass::LoadData(UndoClass& opposite) {
    std::vector<Undo_State> states;
    for (const UndoItem& item : Items) {
        states.push_back(item.Read());
        if (std::holds_alternative<std::monostate>(states.back()))
            return false;
    }
    // All present states first, since one part's return may change another.
    for (std::size_t i = 0; i < Items.size(); ++i) {
        const UndoItem& item = Items[i];
        if (const auto* kept = std::get_if<Kept_Channel>(&states[i])) {
            UndoItem added;
            added.ItemKind = Opposite(item.ItemKind);
            added.RowI = item.RowI;
            added.ItemValue = kept->Row.ChannelID;
            opposite.Add(std::move(added));
        } else {
            opposite.AddData(Opposite(item.ItemKind), item.RowI, item.SubI);
        }
    }
    song.hub.Hold_Update();
    for (const bool structural : {true, false})
        for (std::size_t i = Items.size(); i-- > 0;)
            if (Is_Structural(Items[i].ItemKind) == structural)
                Items[i].Restore(song, states[i]);
    song.hub.Release_Update();
    song.project.SongLength = 0.0;
    Let_Others_Follow();
    return true;
}

/// The general update that follows refreshes what these notices leave.
void UndoClass::Let_Others_Follow() const {
    bool slotsDiffer = false;
    bool effectsDiffer = false;
    for (const UndoItem& item : Items) {
        switch (item.ItemKind) {
        case Undo_Kind::Row: {
            const GlobalChannel& row = song.channels.Channels[static_cast<std::size_t>(item.RowI)];
            song.tell(HUB_SET_NAME, row.ChannelID, row.ChannelName);
            song.tell(HUB_SET_OUTPUT, row.ChannelID, {});
            slotsDiffer = true;
            break;
        }
        case Undo_Kind::Deleted_Channel: {
            const GlobalChannel& row = song.channels.Channels[static_cast<std::size_t>(item.RowI)];
            song.tell(HUB_ADD_CHANNEL, row.ChannelID, row.ChannelName);
            slotsDiffer = true;
            break;
        }
        case Undo_Kind::Effects:
            effectsDiffer = true;
            break;
        case Undo_Kind::Added_Channel:
        case Undo_Kind::Volume_Map:
        case Undo_Kind::Pan_Map:
            slotsDiffer = true;
            break;
        default:
            break;
        }
    }
    if (slotsDiffer) {
        song.gcm.GCM_SendAllPatches();
        song.gcm.GCM_ResetMaps();
    }
    if (effectsDiffer)
        song.gcm.GCM_SendAllEffects();
}

void UndoClass::Unload_Data() {
    std::error_code ignored;
    for (const UndoItem& item : Items)
        if (!item.FileName.empty())
            std::filesystem::remove(item.FileName, ignored);
    Items.clear();
}

void UndoClass::wGen_CC_UsedWav_List(const std::function<void(std::int32_t)>& mark) const {
    for (const UndoItem& item : Items)
        std::for_each(item.clipIds.begin(), item.clipIds.end(), mark);
}

} // namespace tonvex
