#include "project/undo_module.h"

#include "base/text_codec.h"

#include <algorithm>
#include <utility>

namespace tonvex {

namespace {

constexpr const char* NAME_LABEL = "change name";

bool Same_Source(const Undo_Source& a, const Undo_Source& b) noexcept {
    return a.join == b.join && a.msg == b.msg && a.about == b.about && a.sender == b.sender;
}

} // namespace

UndoModule::UndoModule(Undo_Song parts) : song(std::move(parts)) {}

void UndoModule::Enable(const std::filesystem::path& folder) {
    UndoEnabled = true;
    undoFiles.Set_Folder(folder);
    redoFiles.Set_Folder(folder);
}

// ---- takers ----

std::vector<UndoModule::Part> UndoModule::All_Events_And_Maps() const {
    std::vector<Part> parts = All_Maps();
    for (int row = 0; row < GlobalChannelsManager::CHANNEL_ROWS; ++row)
        if (song.channels.Is_Live_Row(row))
            parts.push_back({Undo_Kind::Events, row, 0});
    return parts;
}

std::vector<UndoModule::Part> UndoModule::All_Maps() const {
    std::vector<Part> parts;
    for (int slot = 0; slot < Song_Maps::SLOTS; ++slot) {
        parts.push_back({Undo_Kind::Pan_Map, slot, 0});
        parts.push_back({Undo_Kind::Volume_Map, slot, 0});
    }
    for (int row = 0; row < Song_Maps::AUDIO_ROWS; ++row) {
        if (!Is_On(song.channels.Maps.Audio_Row(row).InUse))
            continue;
        parts.push_back({Undo_Kind::Audio_Map, row, static_cast<std::int32_t>(Map_Kind::Volume)});
        parts.push_back({Undo_Kind::Audio_Map, row, static_cast<std::int32_t>(Map_Kind::Pan)});
    }
    return parts;
}

void UndoModule::Undo_Channel(const std::string& label, int channelI) {
    Take(label, {{Undo_Kind::Events, channelI, 0}});
}

void UndoModule::Undo_AllMaps(const std::string& label) {
    Take(label, All_Maps());
}

void UndoModule::Undo_AllChannels(const std::string& label) {
    Take(label, All_Events_And_Maps());
}

void UndoModule::Undo_AllChannels_MC(const std::string& label) {
    std::vector<Part> parts = All_Events_And_Maps();
    parts.push_back({Undo_Kind::Music_Creator, 0, 0});
    Take(label, parts);
}

void UndoModule::Undo_MC(const std::string& label) {
    Undo_AllChannels_MC(label);
}

void UndoModule::Undo_Tempo(const std::string& label) {
    Take(label, {{Undo_Kind::Tempo_List, 0, 0}});
}

void UndoModule::Undo_Song_Tempo(const std::string& label) {
    Take(label, {{Undo_Kind::Tempo, 0, 0}});
}

void UndoModule::Undo_Row(int channelI, const std::string& label) {
    const GlobalChannel& channel = song.channels.Channels[static_cast<std::size_t>(channelI)];
    std::vector<Part> parts = {{Undo_Kind::Row, channelI, 0}};
    if (Is_On(channel.IsAudio)) {
        const int mapRow = song.channels.Maps.Find_AudioMapRow(channel.ChannelID);
        if (mapRow >= 0)
            parts.push_back({Undo_Kind::Audio_Map, mapRow, static_cast<std::int32_t>(Map_Kind::Volume)});
        Take(label, parts);
        return;
    }
    for (int row = 0; row < GlobalChannelsManager::CHANNEL_ROWS; ++row)
        if (row != channelI && song.channels.Is_Live_Row(row) &&
            song.channels.Channels[static_cast<std::size_t>(row)].OutputChannel == channel.OutputChannel)
            parts.push_back({Undo_Kind::Row, row, 0});
    if (channel.OutputChannel < Song_Maps::SLOTS)
        parts.push_back({Undo_Kind::Pan_Map, channel.OutputChannel, 0});
    Take(label, parts);
}

void UndoModule::Undo_Name(int channelI) {
    Take(NAME_LABEL, {{Undo_Kind::Row, channelI, 0}});
}

void UndoModule::Undo_FreeRow(int rowI, int slot, const std::string& label) {
    std::vector<Part> parts = {{Undo_Kind::Plain_Row, rowI, 0}};
    if (slot < Song_Maps::SLOTS)
        parts.push_back({Undo_Kind::Pan_Map, slot, 0});
    Take(label, parts);
}

void UndoModule::Undo_AddChannel(int rowI, const std::string& label) {
    Take(label, {{Undo_Kind::Added_Channel, rowI, 0}});
}

void UndoModule::Undo_DeleteChannel(int channelI, const std::string& label) {
    Take(label, {{Undo_Kind::Deleted_Channel, channelI, 0}});
}

void UndoModule::Undo_Effects(int effectRow, const std::string& label) {
    Take(label, {{Undo_Kind::Effects, effectRow, 0}});
}

void UndoModule::Undo_SlotMap(Map_Kind kind, int slot, const std::string& label) {
    Take(label, {{kind == Map_Kind::Pan ? Undo_Kind::Pan_Map : Undo_Kind::Volume_Map, slot, 0}});
}

void UndoModule::Undo_AudioMap(Map_Kind kind, int audioRow, const std::string& label) {
    Take(label, {{Undo_Kind::Audio_Map, audioRow, static_cast<std::int32_t>(kind)}});
}

void UndoModule::Undo_Marks(const std::string& label) {
    Take(label, {{Undo_Kind::Marks, 0, 0}});
}

// ---- keeping ----

void UndoModule::Take(const std::string& label, const std::vector<Part>& parts) {
    if (restoring)
        return;
    if (messageDepth > 0) {
        if (messageLabel.empty())
            messageLabel = label;
        for (const Part& part : parts)
            Keep(messageItems, part);
    } else if (scopeOpen) {
        if (scopeLabel.empty())
            scopeLabel = label;
        for (const Part& part : parts)
            if (!Is_Held(part))
                Keep(scopeItems, part);
    } else {
        song.project.Modified = true;
        lastSource.reset();
        if (!UndoEnabled)
            return;
        UndoClass& step = New_UndoStep(true, label);
        for (const Part& part : parts)
            step.AddData(part.kind, part.rowI, part.subI);
    }
}

/// The step that the present changes go into has it, or will.
bool UndoModule::Is_Held(const Part& part) const {
    const auto isPart = [&part](const UndoItem& item) {
        return item.Is_About(part.kind, part.rowI, part.subI);
    };
    return ((scopeOpen ? scopeHasStep : joinsLast) &&
            UndoStack.front()->Holds(part.kind, part.rowI, part.subI)) ||
           std::any_of(scopeItems.begin(), scopeItems.end(), isPart);
}

void UndoModule::Keep(std::vector<UndoItem>& kept, const Part& part) {
    for (const UndoItem& item : kept)
        if (item.Is_About(part.kind, part.rowI, part.subI))
            return;
    if (part.kind == Undo_Kind::Events && Is_Held(part)) {
        // No copy of a big channel for each message of a batch: enough to tell whether this one changes it.
        UndoItem item;
        item.ItemKind = part.kind;
        item.RowI = part.rowI;
        item.revision = song.channels.Store(part.rowI).Revision();
        kept.push_back(std::move(item));
        return;
    }
    kept.push_back(UndoItem::Now(song, part.kind, part.rowI, part.subI));
    if (const auto* content = std::get_if<std::shared_ptr<const Channel_Content>>(&kept.back().ItemValue))
        lastContent = *content;
}

void UndoModule::Commit(std::vector<UndoItem> items, const std::string& label) {
    std::erase_if(items, [this](const UndoItem& item) { return !item.Differs(song); });
    if (items.empty())
        return;
    song.project.Modified = true;
    lastContent.reset();
    std::erase_if(items, [this](const UndoItem& item) {
        return Is_Held({item.ItemKind, item.RowI, item.SubI});
    });
    if (items.empty() || !UndoEnabled)
        return;
    const bool joins = scopeOpen ? scopeHasStep : joinsLast;
    UndoClass& step = joins ? *UndoStack.front() : New_UndoStep(true, label);
    for (UndoItem& item : items)
        step.Add(std::move(item));
    scopeHasStep = scopeOpen;
}

// ---- messages and scopes ----

bool UndoModule::Joins_Last(const Undo_Source& source) const {
    if (UndoStack.empty() || source.join == Undo_Join::Alone || source.join == Undo_Join::Closes)
        return false;
    if (source.join == Undo_Join::Follows)
        return true;
    const bool inTime = source.join == Undo_Join::Batch || song.counter.Now_Ms() - lastMs <= GESTURE_MS;
    return lastSource && Same_Source(*lastSource, source) && inTime;
}

void UndoModule::Begin_Message(const Undo_Source& source) {
    if (restoring || ++messageDepth > 1)
        return;
    message = source;
    messageLabel.clear();
    messageItems.clear();
    joinsLast = !scopeOpen && Joins_Last(source);
}

bool UndoModule::Message_Changed() const {
    return restoring || messageDepth > 1 || messageItems.empty() ||
           std::any_of(messageItems.begin(), messageItems.end(),
                       [this](const UndoItem& item) { return item.Differs(song); });
}

void UndoModule::End_Message() {
    if (restoring || --messageDepth > 0)
        return;
    const bool changed = !messageItems.empty() && Message_Changed();
    if (changed) {
        Commit(std::exchange(messageItems, {}), scopeOpen && !scopeLabel.empty() ? scopeLabel : messageLabel);
        if (message.join == Undo_Join::Alone)
            lastSource.reset();
        else if (message.join != Undo_Join::Follows)
            lastSource = message;
        lastMs = song.counter.Now_Ms();
    }
    if (message.join == Undo_Join::Closes)
        lastSource.reset();
    messageItems.clear();
    joinsLast = false;
}

void UndoModule::Begin_Step(const std::string& label) {
    if (scopeDepth++ > 0 || messageDepth > 0 || restoring)
        return;
    scopeOpen = true;
    scopeHasStep = false;
    scopeLabel = label;
    lastSource.reset();
}

void UndoModule::End_Step() {
    if (--scopeDepth > 0 || !scopeOpen)
        return;
    std::vector<UndoItem> items = std::exchange(scopeItems, {});
    Commit(std::move(items), scopeLabel);
    scopeOpen = false;
    scopeHasStep = false;
    lastSource.reset();
}

// ---- the stacks ----

void UndoModule::Push(Stack& stack, std::unique_ptr<UndoClass> step) {
    if (stack.size() == MOST_STEPS)
        stack.pop_back();
    stack.push_front(std::move(step));
}

UndoClass& UndoModule::New_UndoStep(bool clearRedo, const std::string& label) {
    if (clearRedo)
        RedoStack.clear();
    Push(UndoStack, std::make_unique<UndoClass>(song, label, undoFiles));
    if (Take_Selection)
        UndoStack.front()->Selection = Take_Selection();
    return *UndoStack.front();
}

bool UndoModule::Is_Free() const {
    return UndoEnabled && !restoring && messageDepth == 0 && scopeDepth == 0 && !song.transport.Song_Runs();
}

bool UndoModule::Swap(Stack& from, Stack& to, Undo_File_Names& toFiles) {
    if (!Is_Free() || from.empty())
        return false;
    lastSource.reset();
    lastContent.reset();
    auto opposite = std::make_unique<UndoClass>(song, from.front()->ActionName, toFiles);
    if (Take_Selection)
        opposite->Selection = Take_Selection();
    restoring = true;
    const bool restored = from.front()->LoadData(*opposite);
    restoring = false;
    if (!restored) {
        from.clear();
        song.dialogs.Show_Message(Box_Kind::Warning, "The files of this step can't be read any more.\r\n"
                                                     "It can't be brought back, nor can those before it.");
        return false;
    }
    const Undo_Selection selection = std::move(from.front()->Selection);
    from.pop_front();
    Push(to, std::move(opposite));
    song.project.Modified = true;
    song.hub.Message(nullptr, HUB_GENERAL_UPDATE);
    if (Give_Selection)
        Give_Selection(selection);
    return true;
}

void UndoModule::Clear() {
    UndoStack.clear();
    RedoStack.clear();
    lastSource.reset();
    lastContent.reset();
}

std::vector<std::string> UndoModule::Labels(const Stack& stack) {
    std::vector<std::string> labels;
    for (const auto& step : stack)
        labels.push_back(step->ActionName);
    return labels;
}

std::string UndoModule::Menu_Text(const char* verb, const Stack& stack) {
    return stack.empty() ? verb : std::string(verb) + " " + Lower_Latin(stack.front()->ActionName);
}

void UndoModule::wGen_CC_UsedWav_List(const std::function<void(std::int32_t)>& mark) const {
    for (const Stack* stack : {&UndoStack, &RedoStack})
        for (const auto& step : *stack)
            step->wGen_CC_UsedWav_List(mark);
}

} // namespace tonvex
