#include "editors/event_texts.h"

#include "base/rounding.h"
#include "creator/style_names.h"
#include "song/time_text.h"

#include <algorithm>
#include <charconv>
#include <cmath>

namespace tonvex {

namespace {

constexpr double BEATS_PER_BAR = 4.0;
constexpr double DECIMALS = 1000.0;

std::string Chord_Notes(const QChordData& chord, const Event_Names& names) {
    std::string text;
    const auto used = std::min<std::size_t>(chord.Active, chord.ChordNotes.size());
    for (std::size_t i = 0; i < used; ++i)
        text += (i > 0 ? " " : "") + names.notes.NoteName(chord.ChordNotes[i]);
    return text;
}

std::string Patch_Name(int row, const Event_Names& names) {
    const GlobalChannelsManager& channels = names.channels;
    const int count = names.drums ? channels.DrumPatchCount : channels.PatchCount;
    if (row < 0 || row >= count)
        return std::to_string(row);
    return names.drums ? channels.Global_DrumPatches[static_cast<std::size_t>(row)].Name
                       : channels.Global_Patches[static_cast<std::size_t>(row)].Name;
}

std::string Fragment_Name(const MCEventData& fragment, const Event_Names& names) {
    return std::string(Style_ShownName(fragment.Style)) + " " + names.notes.RootName(fragment.Root) +
           (fragment.Minor != 0 ? "m" : "");
}

std::string Trimmed(const std::string& text) {
    const std::size_t first = text.find_first_not_of(" \t");
    return first == std::string::npos ? std::string()
                                      : text.substr(first, text.find_last_not_of(" \t") - first + 1);
}

std::optional<double> Parse_Number(const std::string& text) {
    double value = 0.0;
    const auto read = std::from_chars(text.data(), text.data() + text.size(), value);
    if (text.empty() || read.ec != std::errc() || read.ptr != text.data() + text.size() ||
        !std::isfinite(value))
        return std::nullopt;
    return value;
}

} // namespace

std::string Note_Text(int note, const Event_Names& names) {
    const int drum = note - NotesStuff::FIRST_DRUM_NOTE;
    std::string text = names.drums && drum >= 0 && drum < NotesStuff::DRUM_NAMES
                           ? names.notes.DrumSoundNames[static_cast<std::size_t>(drum)]
                           : names.notes.NoteName(note);
    if (names.noteNumbers)
        text += " (" + std::to_string(note) + ")";
    return text;
}

std::string Short_Text(const ChannelClass::Event_View& event, const Event_Names& names) {
    if (event.Note != nullptr)
        return Note_Text(event.Note->Note, names);
    if (event.QChord != nullptr)
        return Trimmed(event.QChord->ChordName);
    if (event.MC != nullptr)
        return Fragment_Name(*event.MC, names);
    if (event.Named != nullptr)
        return Trimmed(event.Named->EventName);
    return event.Kind == EV_PATCH ? Patch_Name(event.DataRef, names) : std::string();
}

std::string Event_Text(const ChannelClass::Event_View& event, const Event_Names& names) {
    const std::string name = Short_Text(event, names);
    if (event.Note != nullptr)
        return "N: " + name + " Vol: " + std::to_string(event.Note->Vol);
    if (event.QChord != nullptr)
        return name + " (" + Chord_Notes(*event.QChord, names) +
               ") Vol: " + std::to_string(event.QChord->ChordVol);
    if (event.Kind == EV_PATCH)
        return "Set Patch : " + name;
    return event.Named != nullptr ? "Set FX: " + name : name;
}

std::string Spoken_Text(const ChannelClass::Event_View& event, double length, const Event_Names& names) {
    std::string text = Short_Text(event, names);
    if (event.QChord != nullptr)
        text = "Chord " + text + " (" + Chord_Notes(*event.QChord, names) + ")";
    else if (event.Note == nullptr)
        text = Event_Text(event, names);
    text += ", position " + Format_Beats(event.StartTime);
    if (event.Note != nullptr || event.QChord != nullptr || event.MC != nullptr)
        text += ", length " + Beats_Text(length) + (length == 1.0 ? " beat" : " beats");
    if (event.Note != nullptr)
        text += ", volume " + std::to_string(event.Note->Vol);
    if (event.QChord != nullptr)
        text += ", volume " + std::to_string(event.QChord->ChordVol);
    return text;
}

std::string Beats_Text(double beats) {
    const std::int64_t thousandths = RoundHalfUp(std::abs(beats) * DECIMALS);
    std::string text = std::to_string(thousandths / 1000);
    if (thousandths % 1000 != 0) {
        std::string decimals = std::to_string(1000 + thousandths % 1000).substr(1);
        decimals.erase(decimals.find_last_not_of('0') + 1);
        text += "." + decimals;
    }
    return beats < 0.0 && thousandths != 0 ? "-" + text : text;
}

std::string Distance_Text(double beats, bool barBeat) {
    if (!barBeat)
        return Beats_Text(beats);
    // To thousandths first, so that no remainder of a bar rounds up to a whole one.
    const double whole = static_cast<double>(RoundHalfUp(std::abs(beats) * DECIMALS)) / DECIMALS;
    const double bars = std::floor(whole / BEATS_PER_BAR);
    return (beats < 0.0 && whole > 0.0 ? "-" : "") + std::to_string(static_cast<std::int64_t>(bars)) + ":" +
           Beats_Text(whole - bars * BEATS_PER_BAR);
}

std::optional<double> Parse_Position(const std::string& text, bool barBeat) {
    const std::string trimmed = Trimmed(text);
    return barBeat ? Parse_Beats(trimmed) : Parse_Number(trimmed);
}

std::optional<double> Parse_Distance(const std::string& text, bool barBeat) {
    std::string trimmed = Trimmed(text);
    const std::size_t colon = trimmed.find(':');
    if (!barBeat || colon == std::string::npos)
        return Parse_Number(trimmed);
    const bool negative = trimmed.front() == '-';
    const auto bars = Parse_Number(trimmed.substr(negative ? 1 : 0, colon - (negative ? 1 : 0)));
    const auto beats = Parse_Number(trimmed.substr(colon + 1));
    if (!bars || !beats || *bars < 0.0 || *bars != std::floor(*bars) || *beats < 0.0 ||
        *beats >= BEATS_PER_BAR)
        return std::nullopt;
    const double value = *bars * BEATS_PER_BAR + *beats;
    return negative ? -value : value;
}

} // namespace tonvex
