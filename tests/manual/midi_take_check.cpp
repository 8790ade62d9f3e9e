// The road of a MIDI keyboard through a whole session: another program's port on a real JACK server plays
// into the program's own virtual input, most notes far shorter than a block, and the recording has every one
// with its velocity. Prints what it measured; the exit code is the number of checks that failed. Run it by
// tests/manual/midi_take_check.sh, which starts the server.

#include "app/session.h"
#include "app/stock_data.h"
#include "manual/check.h"
#include "platform/make_sound_door.h"
#include "platform/rtmidi_ports.h"
#include "platform/settings_store.h"
#include "platform/user_dialogs.h"

#include <RtMidi.h>

#include <chrono>
#include <cstdio>
#include <filesystem>
#include <string>
#include <thread>
#include <unistd.h>

using namespace tonvex;

namespace {

constexpr int NOTES = 200;

/// Rounds in real time, without windows.
class Sleeping_Run_Loop final : public Run_Loop {
public:
    void Run(const std::function<bool()>& round) override {
        do {
            Wait_Ms(1);
        } while (round());
    }
    void Let_Messages_Run() override {}
};

/// No computer keyboard: only MIDI plays.
class No_Keys final : public Key_State_Door {
public:
    bool Open() override { return true; }
    void Close() override {}
    bool Acquire() override { return true; }
    void Release() override {}
    bool Read(Key_State&) override { return true; }
};

int Note_Of(int i) {
    return 36 + i % 60;
}
int Velocity_Of(int i) {
    return 1 + (i * 37) % 127;
}

/// Plays into the program, then stops the take.
void Play(RtMidiOut& keys, Transport_State& transport) {
    for (int i = 0; i < NOTES; ++i) {
        const unsigned char on[] = {static_cast<unsigned char>(0x90 + i % 16),
                                    static_cast<unsigned char>(Note_Of(i)),
                                    static_cast<unsigned char>(Velocity_Of(i))};
        const unsigned char off[] = {static_cast<unsigned char>(0x80 + i % 16),
                                     static_cast<unsigned char>(Note_Of(i)), 0};
        keys.sendMessage(on, 3);
        keys.sendMessage(off, 3);
        Wait_Ms(i % 10);
    }
    Wait_Ms(1000);
    transport.StopTransportRequest = true;
}

} // namespace

int main() {
    const std::filesystem::path home =
        std::filesystem::temp_directory_path() / ("tonvex-midi-take-" + std::to_string(getpid()));
    Copy_Stock_Files({{std::filesystem::path(TONVEX_SOURCE_DATA) / "keyboard", home / "config/keyboard"}},
                     home / "manifest");
    Monotonic_Counter counter;
    Memory_Settings_Store store;
    Recorded_Dialogs dialogs;
    const auto sound = Make_Sound_Door(counter, Sound_Driver_Choice::Automatic);
    RtMidi_Ports midi(counter);
    No_Keys noKeys;
    Sleeping_Run_Loop loop;
    AppPaths_Class paths;
    for (const char* name : {"config", "patterns", "templates", "temp", "projectsaudio"})
        paths.Set_Path(name, (home / name).string());
    {
        Session session({*sound, midi, noKeys, counter, loop, store, dialogs}, paths, TONVEX_SOURCE_DATA);
        Check(session.Load(), "the session loads");
        std::printf("        sound by %s\n", sound->Status().driver.c_str());
        for (const Device_Row& row : session.output->Input_Devices())
            if (row.Name == "Tonvex virtual input")
                session.settings.Global_MidiSetup_InDevice = row.DeviceID;
        session.input->MidiInDevice = session.settings.Global_MidiSetup_InDevice;
        Check(session.Select_Input(1), "the virtual input opens");

        RtMidiOut keys(RtMidi::UNIX_JACK, "Other");
        std::thread player([&] {
            Wait_Ms(500); // the take has opened the port by then
            for (unsigned port = 0; port < keys.getPortCount(); ++port)
                if (keys.getPortName(port).find("Tonvex keys") != std::string::npos) {
                    keys.openPort(port, "keys");
                    break;
                }
            Check(keys.isPortOpen(), "another program sees the port");
            Wait_Ms(100);
            Play(keys, session.transport);
        });
        Check(session.recorder->StartRecording(0.0, 1.0F, FIRST_ID, false, false, false), "the take runs");
        player.join();

        const ChannelClass& events = session.channels->Store(0);
        Check(events.GetTotalEvents() + 1 == NOTES,
              std::to_string(events.GetTotalEvents() + 1) + " events of " + std::to_string(NOTES));
        int right = 0;
        int index = 0;
        for (auto row = events.FirstEvent(); row >= 0; row = events.Get_NextEventI(row), ++index) {
            const auto event = events.ReadEvent(row);
            if (event->Note != nullptr && event->Note->Note == Note_Of(index) &&
                event->Note->Vol == Velocity_Of(index))
                ++right;
        }
        Check(right == NOTES, std::to_string(right) + " in order with their note and velocity");
        session.Shutdown();
    }
    std::filesystem::remove_all(home);
    return failed;
}
