#include "project/undo_item.h"

#include "base/file_io.h"
#include "song/undo_files.h"

#include <fstream>
#include <type_traits>
#include <utility>

namespace tonvex {

namespace fs = std::filesystem;

namespace {

using Shared_Content = std::shared_ptr<const Channel_Content>;

PanVol_Class& Map_Of(const Undo_Song& song, const UndoItem& item) {
    Song_Maps& maps = song.channels.Maps;
    if (item.ItemKind == Undo_Kind::Audio_Map)
        return maps.Audio_Row(item.RowI).Map(static_cast<Map_Kind>(item.SubI));
    return maps.Slot_Map(item.ItemKind == Undo_Kind::Pan_Map ? Map_Kind::Pan : Map_Kind::Volume, item.RowI);
}

GlobalChannel& Row_Of(const Undo_Song& song, const UndoItem& item) {
    return song.channels.Channels[static_cast<std::size_t>(item.RowI)];
}

Kept_Channel Channel_In(const Undo_Song& song, const UndoItem& item) {
    GlobalChannelsManager& channels = song.channels;
    Kept_Channel kept;
    kept.Row = Row_Of(song, item);
    kept.Events = channels.Store(item.RowI).Content();
    kept.MapRow = channels.Maps.Find_AudioMapRow(kept.Row.ChannelID);
    if (kept.MapRow >= 0) {
        kept.VolMap = channels.Maps.Audio_Row(kept.MapRow).VolMap.Content();
        kept.PanMap = channels.Maps.Audio_Row(kept.MapRow).PanMap.Content();
    }
    return kept;
}

Undo_State Present_State(const Undo_Song& song, const UndoItem& item) {
    switch (item.ItemKind) {
    case Undo_Kind::Events:
        return song.channels.Store(item.RowI).Content();
    case Undo_Kind::Volume_Map:
    case Undo_Kind::Pan_Map:
    case Undo_Kind::Audio_Map:
        return Map_Of(song, item).Content();
    case Undo_Kind::Row:
    case Undo_Kind::Plain_Row:
        return Row_Of(song, item);
    case Undo_Kind::Added_Channel:
        return Row_Of(song, item).ChannelID;
    case Undo_Kind::Deleted_Channel:
        return Channel_In(song, item);
    case Undo_Kind::Effects:
        return song.channels.Effects.Row(item.RowI);
    case Undo_Kind::Tempo:
        return song.project.ProjectTempo;
    case Undo_Kind::Music_Creator:
        return song.creator;
    case Undo_Kind::Tempo_List:
        return song.tempoChanges.Content();
    case Undo_Kind::Marks:
        return song.marks;
    }
    return {};
}

std::vector<std::int32_t> Clips_Of(const Channel_Content& content) {
    std::vector<std::int32_t> clips;
    for (const ChannelEvent& event : content.Events)
        if (Is_On(event.InUse) && event.Kind == EV_AUDIO && content.Tables.Holds(EV_AUDIO, event.DataRef))
            clips.push_back(content.Tables.AudioEvents[static_cast<std::size_t>(event.DataRef)].ClipID);
    return clips;
}

struct Serializer {
    Byte_Writer& writer;
    void operator()(const Shared_Content& content) const { UNDO_SaveData_To_File(writer, *content); }
    void operator()(const Map_Content& map) const { UNDO_SaveData_To_File(writer, map); }
    void operator()(const MusicCreator_Module& creator) const { creator.MC_SaveData(writer); }
    void operator()(const Tempo_Content& tempo) const { UNDO_SaveToFile(writer, tempo); }
    template <typename Other>
    void operator()(const Other& /*lives in memory*/) const {}
};

Undo_State Parsed(Undo_Kind kind, Byte_Cursor& cursor) {
    if (kind == Undo_Kind::Events) {
        auto content = std::make_shared<Channel_Content>();
        return UNDO_LoadData_From_File(cursor, *content) ? Undo_State(Shared_Content(std::move(content)))
                                                         : Undo_State();
    }
    if (kind == Undo_Kind::Music_Creator) {
        MusicCreator_Module creator;
        return creator.MC_LoadData_V3(cursor) ? Undo_State(std::move(creator)) : Undo_State();
    }
    if (kind == Undo_Kind::Tempo_List) {
        Tempo_Content tempo;
        return UNDO_LoadFromFile(cursor, tempo) ? Undo_State(std::move(tempo)) : Undo_State();
    }
    Map_Content map;
    return UNDO_LoadData_From_File(cursor, map) ? Undo_State(std::move(map)) : Undo_State();
}

bool Write_Plainly(const fs::path& path, const std::vector<std::uint8_t>& bytes) {
    std::ofstream file(path, std::ios::binary | std::ios::trunc);
    file.write(reinterpret_cast<const char*>(bytes.data()), static_cast<std::streamsize>(bytes.size()));
    file.close();
    return file.good();
}

void Bring_Channel_Back(const Undo_Song& song, int row, const Kept_Channel& kept) {
    song.channels.Restore_Channel(row, kept.Row, *kept.Events, kept.MapRow);
    if (kept.MapRow < 0)
        return;
    song.channels.Maps.Audio_Row(kept.MapRow).VolMap.Take_Content(kept.VolMap);
    song.channels.Maps.Audio_Row(kept.MapRow).PanMap.Take_Content(kept.PanMap);
}

} // namespace

UndoItem UndoItem::Now(const Undo_Song& song, Undo_Kind kind, std::int32_t rowI, std::int32_t subI) {
    UndoItem item;
    item.ItemKind = kind;
    item.RowI = rowI;
    item.SubI = subI;
    item.ItemValue = Present_State(song, item);
    if (kind == Undo_Kind::Events)
        item.revision = song.channels.Store(rowI).Revision();
    if (const auto* events = std::get_if<Shared_Content>(&item.ItemValue))
        item.clipIds = Clips_Of(**events);
    if (const auto* kept = std::get_if<Kept_Channel>(&item.ItemValue))
        item.clipIds = Clips_Of(*kept->Events);
    return item;
}

bool UndoItem::Differs(const Undo_Song& song) const {
    if (ItemKind == Undo_Kind::Added_Channel)
        return true;
    if (ItemKind == Undo_Kind::Events)
        return song.channels.Store(RowI).Revision() != revision;
    if (const auto* kept = std::get_if<Kept_Channel>(&ItemValue))
        return song.channels.ChannelI(kept->Row.ChannelID) != RowI;
    return !(Present_State(song, *this) == ItemValue);
}

bool UndoItem::Lives_In_File(Undo_Kind kind) noexcept {
    return kind == Undo_Kind::Events || kind == Undo_Kind::Volume_Map || kind == Undo_Kind::Pan_Map ||
           kind == Undo_Kind::Music_Creator || kind == Undo_Kind::Tempo_List || kind == Undo_Kind::Audio_Map;
}

void UndoItem::Write(const fs::path& path) {
    Byte_Writer writer;
    std::visit(Serializer{writer}, ItemValue);
    if (!Write_Plainly(path, writer.Bytes())) {
        std::error_code ignored;
        fs::remove(path, ignored);
        return;
    }
    FileName = path;
    ItemValue = std::monostate();
}

Undo_State UndoItem::Read() const {
    if (FileName.empty())
        return ItemValue;
    const auto bytes = Read_File(FileName);
    if (!bytes)
        return {};
    Byte_Cursor cursor(*bytes);
    return Parsed(ItemKind, cursor);
}

void UndoItem::Restore(const Undo_Song& song, const Undo_State& state) const {
    switch (ItemKind) {
    case Undo_Kind::Events:
        song.channels.Store(RowI).Take_Content(*std::get<Shared_Content>(state));
        break;
    case Undo_Kind::Volume_Map:
    case Undo_Kind::Pan_Map:
    case Undo_Kind::Audio_Map:
        Map_Of(song, *this).Take_Content(std::get<Map_Content>(state));
        break;
    case Undo_Kind::Row:
    case Undo_Kind::Plain_Row:
        Row_Of(song, *this) = std::get<GlobalChannel>(state);
        break;
    case Undo_Kind::Added_Channel:
        song.hub.Message(nullptr, HUB_DELETE_CHANNEL, std::get<std::int32_t>(state));
        break;
    case Undo_Kind::Deleted_Channel:
        Bring_Channel_Back(song, RowI, std::get<Kept_Channel>(state));
        break;
    case Undo_Kind::Effects:
        song.channels.Effects.Set_Row(RowI, std::get<Effect_Settings>(state));
        break;
    case Undo_Kind::Tempo:
        song.project.ProjectTempo = std::get<std::int32_t>(state);
        break;
    case Undo_Kind::Music_Creator:
        song.creator = std::get<MusicCreator_Module>(state);
        break;
    case Undo_Kind::Tempo_List: {
        Tempo_Content tempo = std::get<Tempo_Content>(state);
        tempo.NextID = song.tempoChanges.Content().NextID; // a number once given stays used
        song.tempoChanges.Take_Content(tempo);
        break;
    }
    case Undo_Kind::Marks:
        song.marks = std::get<Song_Marks>(state);
        break;
    }
}

} // namespace tonvex
