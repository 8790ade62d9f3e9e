#pragma once

#include "app/session.h"
#include "project/midi_format.h"

#include <sstream>
#include <string>
#include <vector>

namespace tonvex::test {

/// Bytes written as hex digits, blanks aside.
inline std::string Hex(const std::string& digits) {
    std::istringstream words(digits);
    std::string bytes;
    for (std::string word; words >> word;)
        bytes.push_back(static_cast<char>(std::stoi(word, nullptr, 16)));
    return bytes;
}

inline std::string Number(std::uint32_t value, int byteCount) {
    midi_format::Bytes bytes;
    midi_format::Append_Number(bytes, value, byteCount);
    return {bytes.begin(), bytes.end()};
}

inline std::string Chunk(const std::string& name, const std::string& bytes) {
    return name + Number(static_cast<std::uint32_t>(bytes.size()), 4) + bytes;
}

/// A whole track; its events as hex digits, without the end.
inline std::string Track(const std::string& events) {
    return Chunk("MTrk", Hex(events + " 00 FF 2F 00"));
}

inline std::string Midi_File(int format, int division, const std::vector<std::string>& tracks) {
    std::string file = Chunk("MThd", Number(static_cast<std::uint32_t>(format), 2) +
                                         Number(static_cast<std::uint32_t>(tracks.size()), 2) +
                                         Number(static_cast<std::uint32_t>(division), 2));
    for (const std::string& track : tracks)
        file += track;
    return file;
}

/// What an import made of a file: "<name>: slot <n> patch <n> pan <n>", then its events in time order,
/// "<start> <note> <velocity> <length>" or "<start> patch <row>", joined by "; ".
inline std::string Channels_Text(const Session& session) {
    std::ostringstream text;
    for (int row = 0; row < GlobalChannelsManager::CHANNEL_ROWS; ++row) {
        if (!session.channels->Is_Live_Row(row))
            continue;
        const GlobalChannel& channel = session.channels->Channels[static_cast<std::size_t>(row)];
        text << channel.ChannelName << ": slot " << int{channel.OutputChannel} << " patch " << channel.PatchI
             << " pan " << int{channel.Pan};
        const ChannelClass& store = session.channels->Store(row);
        for (auto i = store.FirstEvent(); i >= 0; i = store.Get_NextEventI(i)) {
            const auto event = store.ReadEvent(i);
            text << "; " << event->StartTime;
            if (event->Note != nullptr)
                text << ' ' << int{event->Note->Note} << ' ' << int{event->Note->Vol} << ' '
                     << event->Note->Length;
            else
                text << " patch " << event->DataRef;
        }
        text << '\n';
    }
    return text.str();
}

/// "<beat>=<value>" for each point of a slot's map, the last "end".
inline std::string Map_Text(const Session& session, Map_Kind kind, int slot) {
    std::ostringstream text;
    for (const MapPoint& point : session.channels->Maps.Slot_Map(kind, slot).In_Time_Order()) {
        if (point.TimePos == PanVol_Class::SONG_END)
            text << "end=" << point.Value;
        else
            text << point.TimePos << '=' << point.Value << ' ';
    }
    return text.str();
}

} // namespace tonvex::test
