#include "project/project_sections.h"

// What the outputs sound through: maps, effects, soundfonts.

namespace tonvex {

namespace {

/// Each effect's record stands at the start of a block of this size; the rest has no meaning.
constexpr std::size_t EFFECT_BLOCK_BYTES = 41;
constexpr std::size_t LEAST_TEXT_BYTES = 2;

} // namespace

void Write_PanVol_Data(Byte_Writer& writer, const Song_Snapshot& song) {
    for (std::size_t slot = 0; slot < song.SlotVolumes.size(); ++slot) {
        Write_Map_V2(writer, song.SlotVolumes[slot]);
        Write_Map_V2(writer, song.SlotPans[slot]);
    }
    for (const Audio_Maps_Content& row : song.AudioMaps) {
        writer.Write_I16(row.HasMaps ? -1 : 0);
        if (!row.HasMaps)
            continue;
        writer.Write_I32(row.ChannelID);
        Write_Map_V2(writer, row.VolMap);
        Write_Map_V2(writer, row.PanMap);
    }
}

bool Read_PanVol_Data_V2(Byte_Cursor& cursor, Project_Reading& reading) {
    Song_Snapshot& song = reading.song;
    for (std::size_t slot = 0; slot < song.SlotVolumes.size(); ++slot)
        if (!Read_Map_V2(cursor, song.SlotVolumes[slot]) || !Read_Map_V2(cursor, song.SlotPans[slot]))
            return false;
    for (Audio_Maps_Content& row : song.AudioMaps) {
        row.HasMaps = cursor.Read_I16() != 0;
        if (!row.HasMaps)
            continue;
        row.ChannelID = cursor.Read_I32();
        if (!Read_Map_V2(cursor, row.VolMap) || !Read_Map_V2(cursor, row.PanMap))
            return false;
    }
    return cursor.Ok();
}

void Write_FX_Data(Byte_Writer& writer, const Song_Snapshot& song) {
    for (int row = 0; row < Song_Effects::ROWS; ++row) {
        for (const Effect_Kind kind : ALL_EFFECTS) {
            std::vector<std::uint8_t> block = Effect_Record(kind, song.Effects.Row(row).Of(kind));
            block.resize(EFFECT_BLOCK_BYTES);
            writer.Write_Bytes(block);
        }
    }
    for (int row = 0; row < Song_Effects::ROWS; ++row)
        for (const Effect_Kind kind : ALL_EFFECTS)
            writer.Write_U16(To_Flag(song.Effects.Is_On(row, kind)));
}

bool Read_FX_Data_V2(Byte_Cursor& cursor, Project_Reading& reading) {
    return Read_Effect_Rows(cursor, reading.song.Effects, Song_Effects::ROWS);
}

bool Read_Effect_Rows(Byte_Cursor& cursor, Song_Effects& effects, int rows) {
    for (int row = 0; row < rows; ++row) {
        for (const Effect_Kind kind : ALL_EFFECTS) {
            Byte_Cursor block(cursor.Read_Bytes(EFFECT_BLOCK_BYTES));
            effects.Set_Values(row, kind, Read_Effect_Record(kind, block));
        }
    }
    for (int row = 0; row < rows; ++row)
        for (const Effect_Kind kind : ALL_EFFECTS)
            effects.Set_On(row, kind, cursor.Read_U16() != FLAG_OFF);
    return cursor.Ok();
}

void Write_SFList_Data(Byte_Writer& writer, const Song_Snapshot& song) {
    std::vector<std::string> named = song.Fonts;
    std::erase(named, std::string());
    writer.Write_I32(static_cast<std::int32_t>(named.size()));
    for (const std::string& path : named)
        Write_Counted_Text(writer, path);
}

bool Read_SFList_Data_V1(Byte_Cursor& cursor, Project_Reading& reading) {
    const std::int32_t count = cursor.Read_I32();
    std::vector<std::string>& fonts = reading.song.Fonts;
    if (count < 0 || static_cast<std::size_t>(count) > cursor.Remaining() / LEAST_TEXT_BYTES)
        return false;
    fonts.reserve(static_cast<std::size_t>(count)); // a list that doubles would take more than it holds
    for (std::int32_t i = 0; i < count && cursor.Ok(); ++i) {
        std::string path = Read_Counted_Text(cursor);
        if (!path.empty())
            fonts.push_back(std::move(path));
    }
    return cursor.Ok();
}

} // namespace tonvex
