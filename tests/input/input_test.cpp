#include "input/fallback_keys.h"
#include "input/input_handler.h"
#include "platform/millisecond_counter.h"
#include "support/recorder_doors.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <array>
#include <string>
#include <vector>

using namespace tonvex;

namespace {

/// A keyboard whose state a test sets: each read shows it whole.
class Set_Key_State final : public Key_State_Door {
public:
    std::vector<int> down;
    bool there = true; ///< a source of key events exists
    bool lost = false;
    int acquires = 0;
    int reads = 0;
    int releases = 0;

    bool Open() override { return there; }
    void Close() override { there = false; }
    bool Acquire() override {
        ++acquires;
        return there && !lost;
    }
    void Release() override { ++releases; }
    bool Read(Key_State& state) override {
        ++reads;
        if (lost)
            return false;
        state.down.fill(0);
        for (const int key : down)
            state.down[static_cast<std::size_t>(key)] = 1;
        return true;
    }
};

class Noted_Marks final : public Key_Mark_Observer {
public:
    std::string seen;
    void On_Key_Mark(int scanCode, bool pressed) override {
        seen += (pressed ? " +" : " -") + std::to_string(scanCode);
    }
    void On_All_Marks_Off() override { seen += " off"; }
};

std::string Text(const Key_Edge& edge) {
    return edge.Key == -1 ? "." : (edge.Action == 0 ? "+" : "-") + std::to_string(edge.Key);
}

struct Input_World {
    Set_Key_State keys;
    Recorder_Midi_Ports ports;
    Recorded_Dialogs dialogs;
    KeyboardClass keyboard{keys, dialogs};
    MidiIn_Module midiIn{ports};
    InputHandler input{keyboard, midiIn};

    Input_World() {
        ports.inputs = {{"Keys", 7}};
        input.MidiInDevice = 7;
        input.Input_Open();
    }
    void Midi(int status, int note, int velocity, std::int64_t atNs = 0) {
        ports.incoming.push_back({atNs, static_cast<std::uint8_t>(status), static_cast<std::uint8_t>(note),
                                  static_cast<std::uint8_t>(velocity)});
    }
    /// The next count calls of Input_GetNextEvent, as "+44 . -44".
    std::string Next(int count) {
        std::string text;
        for (int i = 0; i < count; ++i)
            text += (i == 0 ? "" : " ") + Text(input.Input_GetNextEvent());
        return text;
    }
};

} // namespace

TEST(Keyboard, EdgesComeOneByOneLowestFirstWithTheirMarks) {
    Input_World world;
    Noted_Marks marks;
    world.keyboard.marks = &marks;
    EXPECT_TRUE(world.input.Input_Select(0));
    EXPECT_EQ(world.Next(1), "."); // acquires
    EXPECT_EQ(world.keys.acquires, 1);
    EXPECT_EQ(world.keys.reads, 0);
    world.keys.down = {200, 44, 30};
    EXPECT_EQ(world.Next(5), ". +30 +44 +200 .");
    EXPECT_EQ(world.keys.reads, 2); // before the three edges and behind them
    world.keys.down = {30};
    EXPECT_EQ(world.Next(5), ". -44 -200 . .");
    world.keys.down = {31};
    EXPECT_EQ(world.Next(3), ". -30 +31");
    world.input.Input_Close();
    EXPECT_EQ(marks.seen, " +30 +44 +200 -44 -200 -30 +31 off");
}

TEST(Keyboard, AHeldKeyIsAFreshPressForTheNextTake) {
    Input_World world;
    world.input.Input_Select(0);
    world.keys.down = {44};
    EXPECT_EQ(world.Next(3), ". . +44");
    world.input.Input_Select(0);
    EXPECT_TRUE(world.input.Input_KeyWaiting());
    EXPECT_EQ(world.Next(2), "+44 .");
    EXPECT_FALSE(world.input.Input_KeyWaiting());
    world.input.Input_Close(); // forgets that it is down; the device must be acquired anew
    EXPECT_EQ(world.keyboard.GetKeyState(44), 0);
    EXPECT_EQ(world.Next(3), ". . +44");
}

TEST(Keyboard, ALostDeviceIsTriedOnEveryIdlePoll) {
    Input_World world;
    world.input.Input_Select(0);
    world.keys.down = {44};
    EXPECT_EQ(world.Next(3), ". . +44");
    world.keys.lost = true;
    world.keys.down = {};
    EXPECT_EQ(world.Next(4), ". . . .");
    EXPECT_EQ(world.keys.acquires, 1 + 4); // the round of the loss and each one after
    EXPECT_EQ(world.keys.releases, 1);
    world.keys.lost = false;
    EXPECT_EQ(world.Next(3), ". . -44"); // acquired, read, told
}

TEST(Keyboard, WithoutADeviceKeysAreSetByHand) {
    Input_World world;
    world.keys.there = false;
    world.input.Input_Open();
    ASSERT_EQ(world.dialogs.shown.size(), 1U);
    EXPECT_EQ(world.dialogs.shown[0].text, "Error initializing Keyboard Input\nSome keys will be disabled");
    EXPECT_FALSE(world.keyboard.DirectInputOK());
    world.input.Input_Select(0);
    world.keyboard.SetKeyState(44, 1, 500);
    world.keyboard.SetKeyState(44, 1, 900); // a repeat
    const Key_Edge edge = world.input.Input_GetNextEvent();
    EXPECT_EQ(Text(edge), "+44");
    EXPECT_EQ(edge.atNs, 500);
    EXPECT_EQ(world.Next(2), ". .");
    EXPECT_EQ(world.keys.acquires + world.keys.reads, 0);
    for (const int key : {-1, 256, 100000, 255})
        world.keyboard.SetKeyState(key, 1);
    EXPECT_EQ(world.Next(2), "+255 .");
}

TEST(Keyboard, AShortPressOutlivesPollingAndKeepsItsMoments) {
    Simulated_Counter counter;
    Scripted_Key_State keys;
    keys.counter = &counter;
    Recorded_Dialogs dialogs;
    Recorder_Midi_Ports ports;
    KeyboardClass keyboard(keys, dialogs);
    MidiIn_Module midiIn(ports);
    InputHandler input(keyboard, midiIn);
    input.Input_Open();
    input.Input_Select(0);
    input.Input_Poll(); // acquires
    keys.edges = {{100, 44, true}, {200, 44, false}, {300, 44, true}};
    counter.Advance_Ms(1);
    for (int i = 0; i < 5; ++i)
        input.Input_Poll(); // reads no further than the first edge
    EXPECT_TRUE(input.Input_KeyWaiting());
    const std::pair<const char*, std::int64_t> rows[] = {
        {"+44", 100}, {".", 0}, {"-44", 200}, {".", 0}, {"+44", 300}};
    for (const auto& [text, atNs] : rows) {
        const Key_Edge edge = input.Input_GetNextEvent();
        EXPECT_EQ(Text(edge), text);
        EXPECT_EQ(edge.atNs, atNs);
    }
}

TEST(Keyboard, FallbackKeysHaveTheirScanCodes) {
    const std::pair<int, int> rows[] = {{27, 1},  {112, 59}, {121, 68}, {122, 69}, {123, 70},
                                        {49, 2},  {57, 10},  {48, 11},  {81, 16},  {80, 25},
                                        {65, 30}, {76, 38},  {90, 44},  {77, 50},  {0, -1},
                                        {26, -1}, {58, -1},  {111, -1}, {124, -1}, {122 - 200, -1}};
    for (const auto& [virtualKey, scanCode] : rows)
        EXPECT_EQ(Fallback_Scan_Code(virtualKey), scanCode) << virtualKey;
    int keys = 0;
    for (int virtualKey = -10; virtualKey < 1000; ++virtualKey)
        keys += Fallback_Scan_Code(virtualKey) >= 0 ? 1 : 0;
    EXPECT_EQ(keys, 49);
}

TEST(MidiIn, MessagesBecomeEdges) {
    struct Row {
        const char* name;
        std::vector<std::array<int, 3>> messages;
        const char* edges; ///< of four calls
    };
    const Row rows[] = {
        {"a note", {{0x90, 60, 100}, {0x80, 60, 64}}, "+316 -316 . ."},
        {"velocity 0 is a release", {{0x90, 60, 1}, {0x90, 60, 0}}, "+316 -316 . ."},
        {"every channel", {{0x9F, 0, 1}, {0x83, 0, 0}, {0x95, 127, 1}}, "+256 -256 +383 ."},
        {"an off without an on", {{0x80, 60, 0}, {0x90, 61, 0}}, ". . . ."},
        {"a second on is no edge", {{0x90, 60, 1}, {0x91, 60, 9}, {0x80, 60, 0}}, "+316 -316 . ."},
        {"other messages", {{0xB0, 60, 1}, {0xA0, 60, 1}, {0xE0, 60, 1}, {0xF8, 60, 1}}, ". . . ."},
        {"notes beyond the table", {{0x90, 129, 1}, {0x90, 255, 1}}, ". . . ."},
        {"order of arrival, not of notes", {{0x90, 64, 1}, {0x90, 60, 1}, {0x80, 64, 0}}, "+320 +316 -320 ."},
        {"twice the same", {{0x90, 9, 1}, {0x80, 9, 1}, {0x90, 9, 1}, {0x80, 9, 0}}, "+265 -265 +265 -265"}};
    for (const Row& row : rows) {
        SCOPED_TRACE(row.name);
        Input_World world;
        EXPECT_TRUE(world.input.Input_Select(1));
        for (const auto& message : row.messages)
            world.Midi(message[0], message[1], message[2]);
        EXPECT_EQ(world.Next(4), row.edges);
    }
}

TEST(MidiIn, TheTouchComesBeforeItsEdgeAndNotEarlier) {
    Input_World world;
    std::string touched;
    world.midiIn.onVelocity = [&](int note, int velocity) {
        touched += " " + std::to_string(note) + ":" + std::to_string(velocity);
    };
    world.input.Input_Select(1);
    world.Midi(0x90, 60, 5, 1000);
    world.Midi(0x80, 60, 99, 2000);
    world.Midi(0x90, 60, 127, 3000);
    world.input.Input_Poll();
    world.input.Input_Poll();
    EXPECT_TRUE(world.input.Input_KeyWaiting());
    EXPECT_EQ(touched, " 60:5"); // the later touch must not reach the waiting press
    EXPECT_EQ(world.midiIn.MidiIn_GetNextEvent().atNs, 1000);
    EXPECT_EQ(world.midiIn.MidiIn_GetNextEvent().atNs, 2000);
    EXPECT_EQ(touched, " 60:5");
    EXPECT_EQ(world.midiIn.MidiIn_GetNextEvent().atNs, 3000);
    EXPECT_EQ(touched, " 60:5 60:127");
}

TEST(MidiIn, OpeningFailsByName) {
    const std::pair<Midi_Result, const char*> rows[] = {
        {Midi_Result::Ok, ""},
        {Midi_Result::BadDevice, "MMSYSERR_BADDEVICEID"},
        {Midi_Result::Allocated, "MMSYSERR_ALLOCATED"},
        {Midi_Result::NoMemory, "MMSYSERR_NOMEM"},
        {Midi_Result::InvalidFlag, "MMSYSERR_INVALFLAG"},
        {Midi_Result::InvalidParameter, "MMSYSERR_INVALPARAM"},
        {Midi_Result::Other, "Unknown error"}};
    for (const auto& [result, text] : rows) {
        Input_World world;
        world.ports.openResult = result;
        EXPECT_EQ(world.midiIn.MidiIn_Open(7), text);
        EXPECT_EQ(world.input.Input_Select(1), result == Midi_Result::Ok);
        EXPECT_EQ(world.midiIn.Is_Open(), result == Midi_Result::Ok);
    }
}

TEST(MidiIn, OpeningAnewForgetsWhatWasDown) {
    Input_World world;
    world.input.Input_Select(1);
    world.Midi(0x90, 60, 1);
    EXPECT_EQ(world.Next(1), "+316");
    EXPECT_TRUE(world.midiIn.Is_Down(60));
    world.input.Input_Close();
    EXPECT_EQ(world.ports.openInput, -1);
    world.input.Input_Select(1);
    EXPECT_FALSE(world.midiIn.Is_Down(60));
    EXPECT_EQ(world.Next(2), ". .");
    world.Midi(0x90, 60, 1);
    EXPECT_EQ(world.Next(1), "+316");
    world.midiIn.MidiIn_Close();
    world.input.Input_Select(0); // in the midst of a take
    EXPECT_EQ(world.Next(2), "-316 .");
}

TEST(MidiIn, APortThatGoesLetsItsNotesGoAndMayComeBack) {
    Input_World world;
    world.input.Input_Select(1);
    world.Midi(0x90, 60, 1, 1000);
    world.Midi(0x90, 64, 1, 1000);
    EXPECT_EQ(world.Next(2), "+316 +320");
    world.Midi(0x90, 67, 1, 1000); // came in before the port went
    const auto ports = std::exchange(world.ports.inputs, {});
    EXPECT_EQ(world.Next(1), "+323");
    const Key_Edge release = world.midiIn.MidiIn_GetNextEvent();
    EXPECT_EQ(release.Key, 316);
    EXPECT_EQ(release.atNs, 0) << "it happens now";
    EXPECT_EQ(world.Next(4), "-320 -323 . .");

    world.ports.inputs = {ports.front(), {"Other", 9}};
    world.ports.openInput = 9;
    EXPECT_EQ(world.Next(1), ".");
    EXPECT_EQ(world.ports.openInput, 7) << "the dead connection is of no use: it is opened anew";
    world.Midi(0x90, 60, 1, 5000);
    EXPECT_EQ(world.Next(2), "+316 .");
}

TEST(InputHandler, DeviceOneNeedsAMidiPort) {
    Input_World world;
    world.input.MidiInDevice = -1;
    EXPECT_FALSE(world.input.Input_Select(1));
    EXPECT_EQ(world.input.InputDevices[1], "Midi Input");
    EXPECT_TRUE(world.input.Input_Select(0));
    EXPECT_TRUE(world.input.Input_Select(5)); // an absurd setting means the keyboard
    EXPECT_EQ(world.input.InputDevice, 0);
    world.Midi(0x90, 60, 1);
    EXPECT_EQ(world.Next(3), ". . .");
}

TEST(InputHandler, HeldKeysFoldMidiIntoElementZero) {
    Input_World world;
    world.input.Input_Select(1);
    world.keys.down = {44, 255};
    world.Next(2); // acquired and read
    world.Midi(0x90, 60, 1);
    world.Midi(0x90, 61, 1);
    EXPECT_EQ(world.Next(5), "+44 +255 +316 +317 ."); // the computer keys first
    std::array<std::int16_t, 1001> held{};
    world.input.Input_GetHeldKeys(held);
    std::string marked;
    for (std::size_t key = 0; key < held.size(); ++key)
        if (held[key] != 0)
            marked += " " + std::to_string(key) + ":" + std::to_string(held[key]);
    EXPECT_EQ(marked, " 0:-1 44:-1 255:-1");
    const auto notes = world.input.Held_Midi_Notes();
    EXPECT_TRUE(notes[60] && notes[61]);
    EXPECT_EQ(std::count(notes.begin(), notes.end(), true), 2);
    world.input.InputDevice = 0;
    held.fill(0);
    world.input.Input_GetHeldKeys(held);
    EXPECT_EQ(held[0], 0);
}
