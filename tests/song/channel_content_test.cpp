#include "song/channel_class.h"
#include "song/channel_content.h"
#include "support/store_host.h"

#include <gtest/gtest.h>

#include <limits>
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
