#include "song/channel_class.h"
#include "song/channel_content.h"
#include "support/store_host.h"

#include <gtest/gtest.h>

#include <limits>
#include <span>
#include <vector>

namespace tonvex {
namespace {

Channel_Content Through_File(const Channel_Content& content, bool& whole) {
    Byte_Writer writer;
    Write_Channel_V2(writer, content);
    Byte_Cursor cursor(writer.Bytes());
    Channel_Content back;
    whole = Read_Channel_V2(cursor, back) && cursor.Remaining() == 0;
    return back;
}

TEST(Channel_Content_Rows, An_Empty_Channel_Is_Eight_Bytes) {
    Channel_Content content;
    content.ChannelNumber = 7;
    Byte_Writer writer;
    Write_Channel_V2(writer, content);
    EXPECT_EQ(writer.Bytes(), (std::vector<std::uint8_t>{255, 255, 255, 255, 7, 0, 0, 0}));
}

TEST(Channel_Content_Rows, One_Note_By_Hand) {
    Store_Host host;
    ChannelClass store(host);
    store.ChannelNumber = 2;
    store.DeleteEvent(store.AddNewEvent(1.0, NoteData{1, 1, 1.0})); // its ID is used up
    store.AddNewEvent(0.5, NoteData{60, 100, 2.0});
    store.ReSort_StartTime();
    store.Defrag_Data();
    Byte_Writer writer;
    Write_Channel_V2(writer, *store.Content());
    const std::vector<std::uint8_t> expected = {
        0,    0,    0,    0,    2,    0,    0, 0, // LastEventN, ChannelNumber
        0,    0,    0,    0x80, 0,    0,    0, 0, 0, 0, 0xE0, 0x3F, 0, 0,
        0,    0,    0,                                                       // ID, StartTime, Kind, DataRef
        0xFF, 0xFF, 0xFF, 0xFF, 0xFF, 0xFF,                                  // InUse, NextI
        1,    0,    0,    0x80, 0,    0,    0, 0,                            // NextID, QChordCount
        1,    0,    0,    0,    60,   100,  0, 0, 0, 0, 0,    0,    0, 0x40, // NoteCount, the note
        0,    0,    0,    0,    0,    0,    0, 0, 0, 0, 0,    0};            // named, style, audio events
    EXPECT_EQ(writer.Bytes(), expected);
    EXPECT_EQ(store.GetEvent_ID(0), FIRST_ID + 1) << "the numbers in memory stay";
}

TEST(Channel_Content_Rows, Every_Kind_Comes_Back_As_It_Was) {
    Store_Host host;
    ChannelClass store(host);
    store.ChannelNumber = FIRST_ID;
    QChordData chord{.Active = 3, .ChordName = "Cm", .Length = 2.5, .StepMs = 30};
    chord.PatternNotes[9] = 77;
    NamedEventData named{.EventName = "r\u00E9p\u00E9t\u00E9"};
    named.Block[100] = 9;
    MCEventData fragment{
        .Root = 4, .Minor = 1, .Length = 8.0, .StartOffset = 0.25, .Style = 3, .Reserved = 5};
    fragment.StyleBlock[199] = 1;
    store.AddNewEvent(4.0, chord);
    store.AddNewEvent(4.0, PatchData{12});
    store.AddNewEvent(1.0, named);
    const std::int32_t gone = store.AddNewEvent(2.0, NoteData{60, 90, 1.0});
    store.AddNewEvent(0.0, fragment);
    store.AddNewEvent(4.0, AudioEventData{FLAG_ON, 44100, 10, 20, 2, 5});
    store.AddNewEvent(2.0, NoteData{61, 91, 1.5});
    store.DeleteEvent(gone);
    store.ReSort_StartTime();
    store.Defrag_Data();
    Channel_Content saved = *store.Content();
    ASSERT_TRUE(saved.Is_Settled());
    bool whole = false;
    const Channel_Content back = Through_File(saved, whole);
    ASSERT_TRUE(whole);
    saved.Renumber();
    EXPECT_EQ(back, saved);
    ChannelClass other(host);
    other.Take_Content(back);
    EXPECT_EQ(*other.Content(), saved);
    std::vector<std::int32_t> order;
    for (std::int32_t i = other.FirstEvent(); i != -1; i = other.Get_NextEventI(i))
        order.push_back(i);
    EXPECT_EQ(order, (std::vector<std::int32_t>{3, 2, 5, 0, 1, 4}));
    EXPECT_EQ(other.GetEvent_I(FIRST_ID + 5), 5);
}

TEST(Channel_Content_Rows, What_A_Save_Settles_The_Copy_Settles_Too) {
    Store_Host host;
    ChannelClass store(host);
    for (int i = 0; i < 40; ++i)
        store.AddNewEvent((i * 7) % 11, NoteData{static_cast<std::uint8_t>(i), 90, 1.0}, i % 3 == 0);
    for (int i = 0; i < 40; i += 4)
        store.DeleteEvent(FIRST_ID + i);
    store.AddNewEvent_RecMode(3.0, NoteData{99, 9, 1.0});
    Channel_Content copy = *store.Content();
    EXPECT_FALSE(copy.Is_Settled());
    copy.Settle();
    EXPECT_TRUE(copy.Is_Settled());
    ChannelClass saved(host);
    saved.Take_Content(*store.Content());
    saved.ReSort_StartTime();
    saved.Defrag_Data();
    EXPECT_EQ(*saved.Content(), copy);
    EXPECT_EQ(copy.Events.size(), 30U);
    EXPECT_EQ(copy.Tables.Notes.size(), 30U);
}

TEST(Channel_Content_Rows, An_Unchanged_Channel_Gives_The_Same_Copy) {
    Store_Host host;
    ChannelClass store(host);
    const std::int32_t id = store.AddNewEvent(1.0, NoteData{60, 90, 1.0});
    const auto first = store.Content();
    store.ReSort_StartTime();
    store.Defrag_Data();
    EXPECT_EQ(store.Content(), first);
    const auto changes = {+[](ChannelClass& s, std::int32_t i) { s.Set_Event_Volume(i, 3); },
                          +[](ChannelClass& s, std::int32_t i) { s.Set_Event_StartTime(i, 2.0); },
                          +[](ChannelClass& s, std::int32_t i) { s.Set_Event_Length(i, 2.0); },
                          +[](ChannelClass& s, std::int32_t i) { s.Set_Event_Note(i, 61); },
                          +[](ChannelClass& s, std::int32_t i) {
                              s.Set_Event_Properties(i, NoteData{5, 6, 7});
                          },
                          +[](ChannelClass& s, std::int32_t) { s.Project_ChangeSpeed(2.0F); },
                          +[](ChannelClass& s, std::int32_t) { s.ChannelNumber = 8; },
                          +[](ChannelClass& s, std::int32_t i) { s.DeleteEvent(i); }};
    int n = 0;
    for (const auto& change : changes) {
        const auto before = store.Content();
        change(store, id);
        EXPECT_NE(*store.Content(), *before) << "change " << n;
        ++n;
    }
}

struct Broken_Case {
    const char* name;
    std::size_t position;
    std::int32_t value;
};

TEST(Channel_Content_Rows, A_Count_Without_Its_Rows_Is_Refused) {
    Store_Host host;
    ChannelClass store(host);
    store.AddNewEvent(0.0, NoteData{60, 90, 1.0});
    Byte_Writer writer;
    Write_Channel_V2(writer, *store.Content());
    const std::vector<std::uint8_t> good = writer.Bytes();
    constexpr std::int32_t MOST = std::numeric_limits<std::int32_t>::max();
    for (const Broken_Case& row :
         {Broken_Case{"events", 0, MOST}, Broken_Case{"events", 0, -2}, Broken_Case{"chords", 35, MOST},
          Broken_Case{"notes", 39, MOST}, Broken_Case{"notes", 39, -1}, Broken_Case{"named", 53, 1},
          Broken_Case{"fragments", 57, MOST}, Broken_Case{"clips", 61, 1}}) {
        std::vector<std::uint8_t> bytes = good;
        for (std::size_t i = 0; i < 4; ++i)
            bytes[row.position + i] =
                static_cast<std::uint8_t>(static_cast<std::uint32_t>(row.value) >> (8 * i));
        Byte_Cursor cursor(bytes);
        Channel_Content content;
        EXPECT_FALSE(Read_Channel_V2(cursor, content)) << row.name << ' ' << row.value;
    }
    for (std::size_t size = 0; size < good.size(); ++size) {
        Byte_Cursor cursor{std::span<const std::uint8_t>(good).first(size)};
        Channel_Content content;
        EXPECT_FALSE(Read_Channel_V2(cursor, content)) << size;
    }
    Byte_Cursor cursor(good);
    Channel_Content content;
    EXPECT_TRUE(Read_Channel_V2(cursor, content));
}

TEST(Channel_Content_Rows, Rows_That_Cannot_Be_Are_Left_Out) {
    Channel_Content content;
    content.Tables.Notes = {NoteData{60, 90, 1.0}};
    const double nan = std::numeric_limits<double>::quiet_NaN();
    content.Events = {{.StartTime = 1.0, .Kind = EV_NOTE, .DataRef = 5, .InUse = FLAG_ON},
                      {.StartTime = 1.0, .Kind = static_cast<Event_Kind>(2), .DataRef = 0, .InUse = FLAG_ON},
                      {.StartTime = 1.0, .Kind = EV_NOTE, .DataRef = 0, .InUse = 65534},
                      {.StartTime = nan, .Kind = EV_NOTE, .DataRef = 0, .InUse = FLAG_ON}};
    bool whole = false;
    const Channel_Content back = Through_File(content, whole);
    ASSERT_TRUE(whole);
    ASSERT_EQ(back.Events.size(), 1U);
    EXPECT_EQ(back.Events[0].StartTime, 0.0);
}

TEST(Channel_Content_Rows, Links_That_Run_In_A_Circle_Are_Made_Anew) {
    Store_Host host;
    ChannelClass store(host);
    Channel_Content content;
    content.Tables.Notes.resize(2);
    content.FirstEventI = 1;
    content.Events = {{.ID = 1, .StartTime = 2.0, .DataRef = 0, .InUse = FLAG_ON, .NextI = 0},
                      {.ID = 2, .StartTime = 3.0, .DataRef = 1, .InUse = FLAG_ON, .NextI = 1}};
    store.Take_Content(content);
    EXPECT_EQ(store.FirstEvent(), 0);
    EXPECT_EQ(store.Get_NextEventI(0), 1);
    EXPECT_EQ(store.Get_NextEventI(1), -1);
}

} // namespace
} // namespace tonvex
