#include "project/midi_export.h"

#include "support/midi_files.h"
#include "support/temp_folder.h"
#include "support/transport_rig.h"

#include <gtest/gtest.h>

#include <set>

namespace tonvex {
namespace {

using test::Hex;
using test::Track;

/// The messages of a column, "<tick> <status> <bytes>" a line.
std::string Lines(const midi_format::Bytes& column) {
    std::ostringstream text;
    std::int64_t tick = 0;
    for (std::size_t at = 0; at < column.size();) {
        std::int64_t delta = 0;
        do
            delta = delta * 128 + column[at] % 128;
        while (column[at++] >= 128);
        tick += delta;
        const std::size_t size = column[at] / 16 == 0xC ? 2 : 3;
        text << tick;
        for (std::size_t i = 0; i < size; ++i)
            text << ' ' << int{column[at + i]};
        text << '\n';
        at += size;
    }
    return text.str();
}

/// A song of 60 beats a minute with one channel of full volume on slot 0, and its exporter.
struct Export_Rig : Transport_Rig {
    Export_Rig() { channels.Channels[0].Volume = 100; }
    std::string Column(int channel) {
        Export_Buffers buffers(channels);
        Unseen_Progress unseen;
        EXPECT_TRUE(exporter.Render_To_Buffers(buffers, unseen));
        return Lines(buffers.ExportBuffer[static_cast<std::size_t>(channel)]);
    }
    std::string File(const Midi_Export_Options& wanted = {}) {
        Export_Buffers buffers(channels);
        Unseen_Progress unseen;
        EXPECT_TRUE(exporter.Render_To_Buffers(buffers, unseen));
        const midi_format::Bytes bytes = exporter.File_Bytes(buffers, wanted);
        return {bytes.begin(), bytes.end()};
    }
    Midi_Export exporter{parts, sound, midi};
    Temp_Folder folder;
};

/// Bank, patch, pan and volume with which a channel of a new song begins; status bytes of channel c.
std::string Start_Lines(int c) {
    const std::string controller = "0 " + std::to_string(176 + c) + ' ';
    return controller + "0 0\n0 " + std::to_string(192 + c) + " 0\n" + controller + "10 64\n" + controller +
           "7 64\n";
}

TEST(Midi_Export, Writes_The_File_Byte_For_Byte) {
    Export_Rig rig;
    rig.channels.Channels[0].ChannelName = "Lead";
    rig.project.ProjectTempo = 80;
    rig.project.ProjectAuthor = "Jo";
    rig.tempoChanges.AddTempoChange(2.0, 120);
    rig.tempoChanges.AddTempoChange(2.5, 1);   // slower than the format can tell
    rig.tempoChanges.AddTempoChange(12e6, 90); // later than the format can tell
    rig.Add_Note({1.0, 60, 100, 0.5});
    const std::string start = "00 B0 00 00 00 C0 00 00 B0 0A 40 00 B0 07 40";
    const auto expected = [&start](const std::string& texts) {
        return test::Midi_File(1, 192,
                               {Track("00 FF 51 03 0B 71 B0 83 00 FF 51 03 07 A1 20 60 FF 51 03 FF FF FF"),
                                texts,
                                Track("00 FF 03 04 4C 65 61 64 " + start + " 81 40 90 3C 64 60 80 3C 64")});
    };
    const auto meta = [](const char* type, const std::string& text) {
        return Hex(std::string("00 FF ") + type) + static_cast<char>(text.size()) + text;
    };
    const std::string end = Hex("00 FF 2F 00");
    EXPECT_EQ(rig.File({false, std::chrono::year_month_day{std::chrono::year(2026), std::chrono::month(3),
                                                           std::chrono::day(9)}}),
              expected(test::Chunk("MTrk", meta("01", "Untitled - Created with Tonvex") +
                                               meta("02", "Jo- 03/09/2026") + end)));
    rig.project.ProjectAuthor.clear();
    rig.project.ProjectComments = "One\r\ntwo" + std::string(100, '.') + "\xC3\xA9\xD0\x96\xD0\x96";
    rig.project.ProjectTitle = "Title";
    // As UTF-8, 121 bytes, since one character is in no Windows-1252.
    const std::string text = "Title - One two" + std::string(100, '.') + "\xC3\xA9\xD0\x96\xD0\x96";
    EXPECT_EQ(rig.File(), expected(test::Chunk("MTrk", meta("01", text) + end)));
    rig.project.ProjectTitle = "1234567Title"; // 128 bytes: the last character has no room
    EXPECT_EQ(rig.File(),
              expected(test::Chunk("MTrk", meta("01", "1234567" + text.substr(0, text.size() - 2)) + end)));
}

TEST(Midi_Export, Writes_What_A_Listener_Hears) {
    Export_Rig rig;
    rig.options.Global_UseThreadEngine = false;
    rig.withPatches = true;
    rig.channels.Channels[0].Volume = 50;
    rig.Add_Channel(4);
    rig.Add_Channel(4); // shares the slot
    rig.Add_Channel(5);
    rig.channels.Channels[3].Mute = FLAG_ON;
    rig.channels.Global_Patches[7] = {"Far", 12, 5, 0};
    rig.Add_Notes("0 60 100 1  1 60 100 0.5  1.5 62 80 2.125");
    rig.Add_Note({0.25, 64, 90, 0.5}, 1);
    rig.Add_Note({0.5, 65, 127, 0.5}, 2);
    rig.Add_Note({0.5, 66, 90, 0.5}, 3);
    rig.Add_Patch(1.0, 7, 1);
    QChordData chord;
    rig.notes.FillChordData(chord, 0, 0, 3, true);
    chord.ChordVol = 100;
    chord.Length = 1.875;
    chord.PatternNoteCount = 3;
    chord.PatternNotes = {1, 2, 3};
    chord.StepMs = -1001; // half a beat
    chord.ChordFlagB = 1;
    rig.channels.Store(1).AddNewEvent(2.0, chord);
    rig.Play();

    std::multiset<std::string> heard;
    std::istringstream trace(rig.Trace());
    for (std::string line; std::getline(trace, line);) {
        std::istringstream words(line);
        std::int64_t ms = 0;
        std::string op;
        int slot = 0;
        int a = 0;
        int b = 0;
        words >> ms >> op >> slot >> a >> b;
        const bool atEnd = ms >= 3875 && op != "Off"; // the output goes back to where it stood
        if ((op != "On" && op != "Off" && op != "Patch") || atEnd)
            continue;
        const std::string tick = std::to_string(ms * 192 / 1000) + ' ';
        if (op == "Patch") {
            heard.insert(tick + std::to_string(176 + slot) + " 0 " + std::to_string(b));
            heard.insert(tick + std::to_string(192 + slot) + ' ' + std::to_string(a));
        } else {
            heard.insert(tick + std::to_string((op == "On" ? 144 : 128) + slot) + ' ' + std::to_string(a) +
                         ' ' + std::to_string(b));
        }
    }
    const std::size_t sentInPlay = rig.sound.posted.size();
    std::multiset<std::string> written;
    for (const int channel : {0, 4, 5}) {
        std::istringstream lines(rig.Column(channel));
        for (std::string line; std::getline(lines, line);) {
            const bool isMap =
                line.find(" 7 ") != std::string::npos || line.find(" 10 ") != std::string::npos;
            if (!isMap)
                written.insert(line);
        }
    }
    EXPECT_EQ(written, heard);
    EXPECT_EQ(written.count("0 144 60 50"), 1U) << "half the velocity";
    EXPECT_EQ(written.count("480 148 64 100"), 0U);
    EXPECT_EQ(rig.sound.posted.size(), sentInPlay) << "an export sounds nothing";
}

TEST(Midi_Export, Gives_Every_Note_An_End_Of_Its_Own) {
    Export_Rig rig;
    rig.Add_Notes("0 60 100 1  0.5 60 90 1  1.75 61 80 0");
    EXPECT_EQ(rig.Column(0), Start_Lines(0) + "0 144 60 100\n96 144 60 90\n192 128 60 100\n288 128 60 100\n"
                                              "336 144 61 80\n336 128 61 100\n");
}

TEST(Midi_Export, Applies_The_Maps_As_They_Pass) {
    Export_Rig rig;
    rig.project.SongLength = 4.0;
    rig.Add_Note({3.0, 60, 100, 1.0});
    std::int32_t id = 0;
    PanVol_Class& volume = rig.channels.Maps.Slot_Map(Map_Kind::Volume, 0);
    volume.Set_Fixed_Points(
        100); // a step to 20 at beat 1, then up to 22 at beat 2: 21 from 1.25 on, 22 from 1.75 on
    for (const auto& [beat, value] : {std::pair{1.0, 100}, {1.0, 20}, {2.0, 22}, {2.0, 22}})
        volume.Add_Point(beat, value, id);
    volume.Set_Point_Val(volume.Get_LastPoint_ID(), 22);
    rig.channels.Maps.Slot_Map(Map_Kind::Volume, 1).Add_Point(1.0, 3, id); // no channel is there
    EXPECT_EQ(rig.Column(0),
              "0 176 0 0\n0 192 0\n0 176 10 64\n0 176 7 100\n192 176 7 20\n240 176 7 21\n336 176 7 22\n"
              "576 144 60 100\n768 128 60 100\n");
}

TEST(Midi_Export, Finds_A_Midi_Channel_For_Every_Slot) {
    Export_Rig rig; // slot 0
    for (const int slot : {16, 31, 3})
        rig.Add_Channel(slot);
    const auto channel_of = [&rig](int slot) {
        Export_Buffers buffers(rig.channels);
        buffers.Take(Sound_Op::NoteOn, slot, 60, 100);
        for (int channel = 0; channel < midi_format::CHANNELS; ++channel)
            if (buffers.ExportBufferLen(channel) > 0)
                return channel;
        return -1;
    };
    EXPECT_EQ(channel_of(16), 1);
    EXPECT_EQ(channel_of(31), 2);
    EXPECT_EQ(channel_of(3), 3);
    EXPECT_EQ(channel_of(5), -1) << "no channel is on it";
    for (const int slot : {1, 2, 4, 5, 6, 7, 8, 10, 11, 12, 13, 14})
        rig.Add_Channel(slot);
    EXPECT_EQ(channel_of(16), 15);
    EXPECT_EQ(channel_of(31), 15) << "31 and 15: none is free";
    Export_Rig plain;
    EXPECT_EQ(Export_Buffers(plain.channels).First_Row_Of(9), -1);
}

TEST(Midi_Export, Splits_The_Drums_When_Asked) {
    Export_Rig rig;
    rig.channels.Set_OutputChannel(rig.firstChannel, 9);
    rig.channels.Channels[0].ChannelName = "Kit";
    rig.Add_Notes("0 38 100 0.25  1 26 90 0.25  1 82 80 0.25  2 38 70 0.25");
    const std::string start = "00 B9 00 00 00 C9 00 00 B9 0A 40 00 B9 07 40";
    const std::string file = rig.File({true, {}});
    EXPECT_EQ(file[11], 5);
    const std::string tracks =
        Track("00 FF 03 06 4B 69 74 20 32 36 " + start + " 81 40 99 1A 5A 30 89 1A 64") +
        Track("00 FF 03 06 4B 69 74 20 33 38 " + start +
              " 00 99 26 64 30 89 26 64 82 50 99 26 46 30 89 26 64") +
        Track("00 FF 03 03 4B 69 74 " + start + " 81 40 99 52 50 30 89 52 64");
    EXPECT_EQ(file.substr(file.size() - tracks.size()), tracks);
    EXPECT_EQ(rig.File()[11], 3);
}

TEST(Midi_Export, Bridges_What_No_Delta_Can_Hold) {
    midi_format::Bytes bytes;
    midi_format::Append_Delta(bytes, 0x0FFFFFFFLL + 128);
    EXPECT_EQ(std::string(bytes.begin(), bytes.end()), Hex("FF FF FF 7F FF 01 00 81 00"));
}

TEST(Midi_Export, Replaces_The_File_Or_Leaves_It) {
    Export_Rig rig;
    rig.Add_Note({0.0, 60, 100, 8.0});
    rig.Add_Note({4.0, 62, 100, 1.0});
    const auto target = rig.folder.Write("song.mid", "old");
    rig.dialogs.stopWorkAt = 40;
    EXPECT_EQ(rig.exporter.Export(target, {}), Work_Outcome::Cancelled);
    EXPECT_EQ(Temp_Folder::Text_Of(target), "old");
    rig.dialogs.stopWorkAt = 101;
    rig.dialogs.statuses.clear();
    EXPECT_EQ(rig.exporter.Export(target, {}), Work_Outcome::Done);
    EXPECT_EQ(Temp_Folder::Text_Of(target), rig.File());
    EXPECT_EQ(
        rig.dialogs.statuses,
        (std::vector<std::string>{"Exporting to midi 0 %", "Exporting to midi 49 %", "Exporting to midi 61 %",
                                  "Exporting to midi 99 %", "Exporting to midi 100 %"}));
    EXPECT_TRUE(rig.dialogs.shown.empty());
    rig.channels.Add_Channel(rig.channels.New_ChannelID(), true, NOT_GIVEN, "Audio");
    EXPECT_EQ(rig.exporter.Export(rig.folder / "none" / "song.mid", {}), Work_Outcome::Failed);
    ASSERT_EQ(rig.dialogs.shown.size(), 2U);
    EXPECT_EQ(rig.dialogs.shown[0].text,
              "Audio channels are not supported by midi files and\r\nwon't be saved.");
    EXPECT_EQ(rig.dialogs.shown[1].text, "Error exporting file");
}

} // namespace
} // namespace tonvex
