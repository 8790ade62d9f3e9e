// Checks the MIDI ports against a real JACK server, which it starts, kills and starts again under a name of
// its own. Prints what it measured; the exit code is the number of checks that failed.
// Run it by tests/manual/midi_ports_check.sh.

#include "input/midi_in_module.h"
#include "manual/check.h"
#include "platform/millisecond_counter.h"
#include "platform/rtmidi_ports.h"
#include "support/child_process.h"

#include <RtMidi.h>

#include <algorithm>
#include <cstdlib>
#include <memory>
#include <string>
#include <vector>

using namespace tonvex;

namespace {

using test::Comes_True;

const Monotonic_Counter counter;

double Now_Ms() {
    return static_cast<double>(counter.Now_Ns()) / 1e6;
}

/// A jackd with the dummy driver; its name is in JACK_DEFAULT_SERVER.
struct Server : test::Child_Process {
    Server() {
        Start({"jackd", "-n", std::getenv("JACK_DEFAULT_SERVER"), "--no-realtime", "-d", "dummy", "-r",
               "44100", "-p", "1024"});
    }
};

std::int32_t Id_Of(const std::vector<Midi_Port>& ports, const std::string& name) {
    for (const Midi_Port& port : ports)
        if (port.name == name)
            return port.id;
    return -1;
}

/// Another program with a port to read from and one to write to.
struct Other_Program {
    RtMidiOut keys{RtMidi::UNIX_JACK, "Other"};
    RtMidiIn sink{RtMidi::UNIX_JACK, "OtherSink", 20000};
    Other_Program() {
        keys.openVirtualPort("keys");
        sink.openVirtualPort("sink");
    }
    void Send(int status, int data1, int data2) {
        const unsigned char bytes[] = {static_cast<unsigned char>(status), static_cast<unsigned char>(data1),
                                       static_cast<unsigned char>(data2)};
        keys.sendMessage(bytes, 3);
    }
};

/// Numbered messages on two data bytes; the number of those that came in order from the first on.
int Received_In_Order(RtMidiIn& sink, int expected) {
    int next = 0;
    std::vector<unsigned char> bytes;
    Comes_True(
        [&] {
            while (true) {
                sink.getMessage(&bytes);
                if (bytes.size() != 3)
                    return next >= expected;
                if (bytes[1] + 128 * bytes[2] == next)
                    ++next;
            }
        },
        3);
    return next;
}

void Check_Short_Notes(RtMidi_Ports& ports, Other_Program& other) {
    MidiIn_Module midiIn(ports);
    Check(midiIn.MidiIn_Open(Id_Of(ports.Input_Ports(), "Other:keys")).empty(), "the input port opens");
    Wait_Ms(100);
    constexpr int NOTES = 200;
    for (int i = 0; i < NOTES; ++i) { // far shorter than the block of 23 ms, many in one block
        other.Send(0x90 + i % 16, i % 128, 1 + i % 127);
        other.Send(0x80 + i % 16, i % 128, 0);
        Wait_Ms(i % 3);
    }
    int edges = 0;
    bool inOrder = true;
    midiIn.onVelocity = [&](int note, int velocity) {
        inOrder = inOrder && note == edges / 2 % 128 && velocity == 1 + edges / 2 % 127;
    };
    Comes_True([&] {
        for (Key_Edge edge = midiIn.MidiIn_GetNextEvent(); edge.Key >= 0;
             edge = midiIn.MidiIn_GetNextEvent()) {
            inOrder = inOrder && edge.Key == 256 + (edges / 2) % 128 && edge.Action == edges % 2;
            ++edges;
        }
        return edges >= 2 * NOTES;
    });
    Check(edges == 2 * NOTES && inOrder, std::to_string(edges) + " of " + std::to_string(2 * NOTES) +
                                             " edges of short notes, in order, with their velocity");
    midiIn.MidiIn_Close();
}

void Check_Bursts(RtMidi_Ports& ports, Other_Program& other) {
    Check(ports.Open_Input(Id_Of(ports.Input_Ports(), "Other:keys")) == Midi_Result::Ok, "opens for a burst");
    Wait_Ms(100);
    for (int i = 0; i < 2000; ++i)
        other.Send(0x90, i % 128, i / 128);
    int next = 0;
    Comes_True([&] {
        Midi_In_Message message;
        while (ports.Take_Input(message))
            if (message.data1 + 128 * message.data2 == next)
                ++next;
        return next >= 2000;
    });
    Check(next == 2000 && ports.Dropped_Inputs() == 0, std::to_string(next) + " of 2000 came in, in order");
    ports.Close_Input();

    Check(ports.Open_Output(Id_Of(ports.Output_Ports(), "OtherSink:sink")) == Midi_Result::Ok,
          "the output port opens");
    Wait_Ms(100);
    const double start = Now_Ms();
    double longest = 0;
    for (int i = 0; i < 10000; ++i) {
        const double before = Now_Ms();
        ports.Send(0x90, static_cast<std::uint8_t>(i % 128), static_cast<std::uint8_t>(i / 128));
        longest = std::max(longest, Now_Ms() - before);
    }
    const double sending = Now_Ms() - start;
    const int arrived = Received_In_Order(other.sink, 10000);
    ports.Close_Output();
    Check(arrived == 10000, std::to_string(arrived) + " of 10000 went out, in order; Send took " +
                                std::to_string(sending) + " ms in all, longest " + std::to_string(longest));
    int lastWords = 0;
    for (int i = 0; i < 20; ++i) { // what is sent just before closing must get out
        ports.Open_Output(Id_Of(ports.Output_Ports(), "OtherSink:sink"));
        Wait_Ms(50);
        ports.Send(0xB0, 123, 0);
        ports.Close_Output();
        Wait_Ms(100);
        std::vector<unsigned char> bytes;
        other.sink.getMessage(&bytes);
        lastWords += bytes.size() == 3 && bytes[0] == 0xB0 ? 1 : 0;
    }
    Check(lastWords == 20, std::to_string(lastWords) + " of 20 messages sent just before closing arrive");
}

void Check_Virtual_Ports(RtMidi_Ports& ports) {
    Check(ports.Open_Input(Id_Of(ports.Input_Ports(), "Tonvex virtual input")) == Midi_Result::Ok &&
              ports.Open_Output(Id_Of(ports.Output_Ports(), "Tonvex virtual output")) == Midi_Result::Ok,
          "the virtual ports open");
    RtMidiOut out(RtMidi::UNIX_JACK, "Patcher");
    bool found = false;
    for (unsigned i = 0; i < out.getPortCount() && !found; ++i)
        if (out.getPortName(i) == "Tonvex:Tonvex keys") {
            out.openPort(i);
            found = true;
        }
    Check(found, "others see Tonvex:Tonvex keys");
    Check(Id_Of(ports.Output_Ports(), "Tonvex:Tonvex keys") == -1, "our own port is not offered to us");
    Wait_Ms(100);
    const unsigned char bytes[] = {0x91, 64, 99};
    const double sent = Now_Ms();
    out.sendMessage(bytes, 3);
    Midi_In_Message message;
    const bool came = Comes_True([&] { return ports.Take_Input(message); });
    Check(came && message.data1 == 64 && message.data2 == 99 && message.status == 0x91,
          "a note comes in by the virtual port, stamped " +
              std::to_string(static_cast<double>(message.arrivedNs) / 1e6 - sent) + " ms after sending");
    ports.Close_Input();
    ports.Close_Output();
}

void Check_Loss(RtMidi_Ports& ports, std::unique_ptr<Server>& server, std::unique_ptr<Other_Program>& other) {
    ports.Open_Input(Id_Of(ports.Input_Ports(), "Other:keys"));
    ports.Open_Output(Id_Of(ports.Output_Ports(), "OtherSink:sink"));
    Check(ports.Input_Alive() && ports.Output_Alive(), "both are alive");
    ports.Ports_Changed();
    server->End(SIGKILL);
    const double killed = Now_Ms();
    Comes_True([&] { return ports.Ports_Changed(); });
    const double noticed = Now_Ms() - killed;
    Check(ports.Input_Ports().empty() && !ports.Input_Alive() && !ports.Output_Alive(),
          "the server's death shows after " + std::to_string(noticed) + " ms");
    double start = Now_Ms();
    for (int i = 0; i < 20000; ++i)
        ports.Send(0x90, 60, 1);
    Check(Now_Ms() - start < 100,
          "20000 messages to the dead take " + std::to_string(Now_Ms() - start) + " ms");
    start = Now_Ms();
    ports.Close_Output();
    Check(Now_Ms() - start < 100, "closing takes " + std::to_string(Now_Ms() - start) + " ms");
    other.reset();
    server = std::make_unique<Server>();
    Comes_True([&] { return !ports.Input_Ports().empty(); });
    Wait_Ms(200);
    other = std::make_unique<Other_Program>();
    Check(Comes_True([&] { return Id_Of(ports.Input_Ports(), "Other:keys") != -1; }),
          "the new server's ports show");
    Check(Comes_True([&] { return !ports.Ports_Changed() && ports.Input_Alive(); }),
          "the input is open again");
    Check_Short_Notes(ports, *other);
}

} // namespace

int main() {
    if (std::getenv("JACK_DEFAULT_SERVER") == nullptr)
        return 99;
    RtMidi_Ports ports(counter);
    const double start = Now_Ms();
    const bool none = Id_Of(ports.Input_Ports(), "Tonvex virtual input") == -1;
    Check(none, "no server, no port; the look took " + std::to_string(Now_Ms() - start) + " ms");
    Check(ports.Open_Input(5) == Midi_Result::BadDevice, "a port that is not there does not open");
    auto server = std::make_unique<Server>();
    Check(Comes_True([&] { return !ports.Input_Ports().empty() && ports.Ports_Changed(); }),
          "a server that comes up is noticed");
    auto other = std::make_unique<Other_Program>();
    Check(Comes_True([&] { return ports.Ports_Changed(); }), "a program that brings ports is noticed");
    const double looks = Now_Ms();
    for (int i = 0; i < 100; ++i)
        ports.Ports_Changed();
    std::printf("        a look takes %.3f ms\n", (Now_Ms() - looks) / 100);
    Check_Short_Notes(ports, *other);
    Check_Bursts(ports, *other);
    Check_Virtual_Ports(ports);
    Check_Loss(ports, server, other);
    // Closing at the very end of a server, and with one that has gone, are both survived.
    ports.Open_Input(Id_Of(ports.Input_Ports(), "Other:keys"));
    ports.Open_Output(Id_Of(ports.Output_Ports(), "OtherSink:sink"));
    server->End(SIGTERM);
    std::printf("%d failed\n", failed);
    return failed;
}
