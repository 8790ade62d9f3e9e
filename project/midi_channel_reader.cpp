#include "project/midi_channel_reader.h"

#include "base/rounding.h"
#include "engine/short_messages.h"

#include <algorithm>

namespace tonvex {

namespace {

constexpr std::uint8_t KIND_MASK = 0xF0;
constexpr int CONTROLLER_EXPRESSION = 11;
constexpr int CONTROLLER_RESET = 121;
constexpr int HIGHEST = 127;

/// A value that comes at beat, into the steps behind the starting value.
void Add_Step(std::vector<Midi_Step>& steps, int startValue, double beat, int value) {
    if (value != (steps.empty() ? startValue : steps.back().value))
        steps.push_back({beat, value});
}

} // namespace

Midi_Channel_Reader::Midi_Channel_Reader(Midi_File_Data& file, int midiChannel)
    : data(file), channel(midiChannel) {}

Midi_Channel Midi_Channel_Reader::Read() {
    for (auto row = data.Take_Earliest(channel); row >= 0; row = data.Take_Earliest(channel)) {
        const ImportEvent event = data.Row(channel, row);
        data.Remove_Row(channel, row);
        Take(event);
    }
    for (const Open_Notes& number : open) {
        for (std::size_t i = number.first; i < number.notes.size(); ++i)
            Close(number.notes[i], data.End_Tick_Of(number.notes[i].begin));
    }
    return std::move(read);
}

void Midi_Channel_Reader::Take(const ImportEvent& event) {
    switch (event.Status() & KIND_MASK) {
    case STATUS_NOTE_ON:
        if (event.Data2() > 0)
            Begin_Note(event);
        else
            End_Note(event.Data1(), event.Tick);
        break;
    case STATUS_NOTE_OFF:
        End_Note(event.Data1(), event.Tick);
        break;
    case STATUS_PROGRAM:
        patch = {event.Data1(), bank};
        patchBeat = Beat_Of(event.Tick);
        break;
    case STATUS_CONTROLLER:
        Take_Controller(event);
        break;
    default: // pressure and bend have no place in a song
        break;
    }
}

void Midi_Channel_Reader::Begin_Note(const ImportEvent& event) {
    if (read.voices.empty()) {
        firstNoteTick = event.Tick;
        read.firstNoteOrder = event.Order;
    }
    const std::size_t voice = Voice_Of(patch);
    if (voice != sounding)
        read.patchChanges.push_back({patchBeat, voice});
    sounding = voice;
    auto& notes = read.voices[voice].notes;
    open[event.Data1()].notes.push_back({voice, notes.size(), event});
    notes.push_back({Beat_Of(event.Tick), {event.Data1(), event.Data2(), 0.0}});
}

std::size_t Midi_Channel_Reader::Voice_Of(const Midi_Patch& wanted) {
    if (sounding != NO_VOICE && read.voices[sounding].patch == wanted)
        return sounding;
    const auto found = std::find_if(read.voices.begin(), read.voices.end(),
                                    [&wanted](const Midi_Voice& voice) { return voice.patch == wanted; });
    if (found != read.voices.end())
        return static_cast<std::size_t>(found - read.voices.begin());
    read.voices.push_back({wanted, {}});
    return read.voices.size() - 1;
}

void Midi_Channel_Reader::End_Note(int number, std::int32_t tick) {
    Open_Notes& notes = open[static_cast<std::size_t>(number)];
    if (notes.first == notes.notes.size())
        return;
    Close(notes.notes[notes.first], tick);
    if (++notes.first < notes.notes.size())
        return;
    notes.notes.clear();
    notes.first = 0;
}

void Midi_Channel_Reader::Close(const Open_Note& note, std::int32_t tick) {
    read.voices[note.voice].notes[note.note].data.Length = (tick - note.begin.Tick) * data.BeatsPerTick;
}

void Midi_Channel_Reader::Take_Controller(const ImportEvent& event) {
    const double beat = Beat_Of(event.Tick);
    const bool isStart = event.Tick <= firstNoteTick;
    switch (event.Data1()) {
    case CONTROLLER_BANK:
        bank = event.Data2();
        return;
    case CONTROLLER_PAN:
        if (isStart)
            read.pan = event.Data2();
        else
            Add_Step(read.panSteps, read.pan, beat, event.Data2());
        return;
    case CONTROLLER_VOLUME:
        mainVolume = event.Data2();
        break;
    case CONTROLLER_EXPRESSION:
        expression = event.Data2();
        break;
    case CONTROLLER_RESET:
        expression = HIGHEST;
        break;
    default:
        return;
    }
    const int volume = static_cast<int>(RoundHalfEven(mainVolume * expression / double{HIGHEST}));
    if (isStart)
        read.volume = volume;
    else
        Add_Step(read.volumeSteps, read.volume, beat, volume);
}

} // namespace tonvex
