#include "support/older_project.h"

#include "base/text_codec.h"
#include "creator/style_names.h"
#include "song/event_rows.h"

namespace tonvex::older {

namespace {

constexpr std::size_t CHANNEL_ROWS = 110;
constexpr std::size_t MARK_ROWS = 100;
constexpr int SLOTS = 32;

void Counted(Byte_Writer& writer, const std::string& text) {
    writer.Write_U16(static_cast<std::uint16_t>(text.size()));
    writer.Write_Text(text);
}

void Put_Map(Byte_Writer& writer, const Old_Map& map) {
    const auto last = static_cast<std::int32_t>(map.points.size()) + 1;
    writer.Write_I32(last);
    auto point = [&writer, id = FIRST_ID](int value, std::int32_t before, std::int32_t behind,
                                          std::int32_t ms) mutable {
        writer.Write_U16(FLAG_ON);
        writer.Write_I32(id++);
        writer.Write_I16(static_cast<std::int16_t>(value));
        writer.Write_I32(before);
        writer.Write_I32(behind);
        writer.Write_I32(ms);
    };
    point(map.first, -1, last > 1 ? 2 : 1, 0);
    point(map.last, last > 1 ? last : 0, -1, -1);
    for (std::int32_t i = 2; i <= last; ++i) {
        const auto& [ms, value] = map.points[static_cast<std::size_t>(i - 2)];
        point(value, i == 2 ? 0 : i - 1, i == last ? 1 : i + 1, ms);
    }
    writer.Write_I32(FIRST_ID + last + 1);
}

void Put_Channel(Byte_Writer& writer, const Old_Channel& channel) {
    const auto count = static_cast<std::int32_t>(channel.events.size());
    writer.Write_I32(count - 1);
    writer.Write_I32(channel.channelNumber);
    if (count == 0)
        return;
    for (std::int32_t i = 0; i < count; ++i) {
        const Old_Event& event = channel.events[static_cast<std::size_t>(i)];
        writer.Write_I32(FIRST_ID + i);
        writer.Write_I32(event.startMs);
        writer.Write_U8(static_cast<std::uint8_t>(event.kind));
        writer.Write_I32(event.dataRef);
        writer.Write_U16(FLAG_ON);
        writer.Write_I32(i + 1 < count ? i + 1 : -1);
    }
    writer.Write_I32(FIRST_ID + count);
    writer.Write_I32(static_cast<std::int32_t>(channel.chords.size()));
    for (const Bytes& chord : channel.chords)
        writer.Write_Bytes(chord);
    writer.Write_I32(static_cast<std::int32_t>(channel.notes.size()));
    for (const Old_Note& note : channel.notes) {
        writer.Write_U8(static_cast<std::uint8_t>(note.note));
        writer.Write_U8(static_cast<std::uint8_t>(note.vol));
        writer.Write_I32(note.lengthMs);
    }
    writer.Write_I32(0); // named events
    writer.Write_I32(static_cast<std::int32_t>(channel.fragments.size()));
    for (const MCEventData& fragment : channel.fragments)
        Write_MC_Row(writer, fragment);
    writer.Write_I32(0); // audio events
}

} // namespace

Bytes Old_Chord(std::int32_t lengthMs) {
    Byte_Writer writer;
    writer.Write_U8(3);
    writer.Write_Text("C         ");
    writer.Write_U8(4);
    writer.Write_U16(0);
    writer.Write_I32(lengthMs);
    for (const int byte : {0, 0, 48, 52, 55, 0, 0, 0, 1, 100, 3, 1, 2, 3, 0, 0, 0, 0, 0, 0, 0})
        writer.Write_U8(static_cast<std::uint8_t>(byte));
    writer.Write_I16(120);
    return writer.Take();
}

Section_Bytes Globals(std::int32_t version, std::int32_t tempo) {
    Byte_Writer writer;
    for (const std::int32_t value : {7, 5, 9, 0, tempo, 65, 42})
        writer.Write_I32(value);
    writer.Write_I16(11);
    writer.Write_I16(12);
    writer.Write_I32(13);
    writer.Write_I32(14);
    writer.Write_U16(0);
    writer.Write_I32(15);
    for (const char* text : {"Old song", "Somebody", "A comment\r\nof two lines"})
        Counted(writer, text);
    if (version >= 2)
        writer.Write_I32(16);
    return {"GlobalVariables", version, writer.Take()};
}

Section_Bytes Channels(std::int32_t version, const std::vector<GlobalChannel>& rows, std::int32_t count) {
    Byte_Writer writer;
    for (std::size_t row = 0; row < CHANNEL_ROWS; ++row) {
        const GlobalChannel channel = row < rows.size() ? rows[row] : GlobalChannel{};
        writer.Write_I32(channel.ChannelID);
        writer.Write_Text(Fixed_Field(channel.ChannelName, 50));
        writer.Write_U8(channel.Volume);
        writer.Write_I16(channel.PatchI);
        writer.Write_U8(channel.Pan);
        writer.Write_U8(channel.OutputChannel);
        writer.Write_U16(channel.Mute);
        writer.Write_U16(channel.Solo);
        if (version >= 2) {
            writer.Write_U16(channel.IsAudio);
            writer.Write_U16(channel.AudioOutput);
        }
        writer.Write_U16(channel.InUse);
    }
    writer.Write_I32(count);
    return {"Global_Channels_Array", version, writer.Take()};
}

Section_Bytes Events(const std::vector<Old_Channel>& channels) {
    Byte_Writer writer;
    for (const Old_Channel& channel : channels)
        Put_Channel(writer, channel);
    return {"Channel_Class_Data", 1, writer.Take()};
}

Section_Bytes Marks(std::int32_t version, const std::vector<Old_Mark>& marks) {
    Byte_Writer writer;
    for (std::size_t row = 0; row < MARK_ROWS; ++row) {
        const Old_Mark mark = row < marks.size() ? marks[row] : Old_Mark{};
        writer.Write_U16(To_Flag(mark.live));
        writer.Write_I32(mark.startMs);
        writer.Write_I32(mark.endMs);
        Counted(writer, mark.name);
        if (version >= 2)
            writer.Write_I32(mark.color);
    }
    writer.Write_I32(static_cast<std::int32_t>(marks.size()));
    return {"Marks_Array", version, writer.Take()};
}

Section_Bytes Maps(const Old_Map& volume, const Old_Map& pan) {
    Byte_Writer writer;
    for (int slot = 0; slot < SLOTS; ++slot) {
        Put_Map(writer, slot == 0 ? volume : Old_Map{});
        Put_Map(writer, slot == 0 ? pan : Old_Map{});
    }
    return {"PanVol_Data", 1, writer.Take()};
}

Section_Bytes Effects(const Effect_Settings& settings) {
    Byte_Writer writer;
    for (int slot = 0; slot < SLOTS; ++slot)
        for (const Effect_Kind kind : ALL_EFFECTS) {
            Bytes block = Effect_Record(kind, slot == 31 ? settings.Of(kind) : Neutral_Values(kind));
            block.resize(41, 0xEE);
            writer.Write_Bytes(block);
        }
    for (int slot = 0; slot < SLOTS; ++slot)
        for (const Effect_Kind kind : ALL_EFFECTS)
            writer.Write_U16(To_Flag(slot == 31 && settings.Is_On(kind)));
    return {"FX_Data", 1, writer.Take()};
}

Section_Bytes Editor(std::int32_t alignDiv, double alignStep) {
    Byte_Writer writer;
    writer.Write_I32(alignDiv);
    writer.Write_Double(alignStep);
    return {"EventsEditor_Setup", 1, writer.Take()};
}

Section_Bytes Creator(std::int32_t version, MusicCreator_Module creator) {
    creator.MC_Tracks.resize(16);
    Byte_Writer writer;
    creator.MC_SaveData(writer);
    Bytes bytes = writer.Take();
    // Then the tracks' highest row was not told.
    const std::int32_t live = bytes[8] + 256 * bytes[9];
    const auto highest = bytes.begin() + 12 + (live + 1) * 236 + 4;
    bytes.erase(highest, highest + 4);
    return {"MusicCreator_Data", version, bytes};
}

std::vector<Section_Bytes> Every_Section() {
    GlobalChannel row;
    row.ChannelID = 7;
    row.ChannelName = "Old channel";
    row.PatchI = 33;
    row.InUse = FLAG_ON;
    MusicCreator_Module creator;
    for (std::uint8_t i = 0; i < STYLES; ++i) {
        creator.MC_Tracks[i] = {90, i, i, "Track", 0, i, FLAG_ON, 0, FLAG_ON, 31, 26, {}};
        creator.MC_Events[i].InUse = FLAG_ON;
        creator.MC_Events[i].TrackID = i;
    }
    const Old_Channel channel{
        .channelNumber = 7,
        .events = {{1500, EV_NOTE, 0}, {750, EV_QCHORD, 0}, {0, EV_MC, 0}, {0, EV_PATCH, 5}},
        .notes = {{60, 100, 375}},
        .chords = {Old_Chord(6000)},
        .fragments = {MCEventData{}}};
    const std::vector<Old_Mark> marks = {{true, 0, 0, "Start", 0}, {true, 3000, 4500, "Chorus", 255}};
    return {Globals(1, 80),
            Globals(2, 80),
            Channels(1, {row}, 2),
            Channels(2, {row}, 2),
            Maps({10, 20, {{0, 5}, {250, 127}}}, {}),
            Events({channel, {}}),
            Marks(1, marks),
            Marks(2, marks),
            Effects({}),
            Editor(4, 0.5),
            Creator(1, creator),
            Creator(2, creator)};
}

Bytes First_Version(const std::string& digits, const std::vector<std::string>& texts, std::int32_t metronomeA,
                    std::int32_t tempo, std::int32_t metronomeB, const Bytes& behind) {
    Byte_Writer writer;
    writer.Write_Text("Tonvex File v:" + digits);
    for (const std::string& text : texts) {
        writer.Write_I32(static_cast<std::int32_t>(text.size()));
        writer.Write_Text(text);
    }
    for (const std::int32_t value : {metronomeA, tempo, metronomeB})
        writer.Write_I32(value);
    writer.Write_Bytes(behind);
    return writer.Take();
}

} // namespace tonvex::older
