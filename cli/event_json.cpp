#include "cli/event_json.h"

#include "cli/json_texts.h"

#include <algorithm>
#include <cmath>
#include <limits>
#include <nlohmann/json.hpp>
#include <span>

namespace tonvex {

namespace {

using nlohmann::json;

/// Takes fields out of one object; the first thing that is wrong is kept.
class Fields {
public:
    Fields(const json& source, std::string& firstProblem) : object(source), problem(firstProblem) {}

    void Read(const char* name, double& value) {
        if (const json* field = Find(name)) {
            if (field->is_number())
                value = field->get<double>();
            else
                Complain(name, "must be a number");
        }
    }
    template <typename Integer>
    void Read(const char* name, Integer& value) {
        double number = value;
        const json* field = Find(name);
        // 16-bit flags are written as truth values.
        if (field != nullptr && field->is_boolean())
            number = field->get<bool>() ? static_cast<double>(FLAG_ON) : 0.0;
        else
            Read(name, number);
        if (number != std::floor(number) || number < std::numeric_limits<Integer>::min() ||
            number > std::numeric_limits<Integer>::max())
            Complain(name, "is out of range");
        else
            value = static_cast<Integer>(number);
    }
    void Read(const char* name, std::string& value) {
        if (const json* field = Find(name)) {
            if (field->is_string())
                value = field->get<std::string>();
            else
                Complain(name, "must be a text");
        }
    }
    void Read_Notes(const char* name, std::span<std::uint8_t> values) {
        const json* field = Find(name);
        if (field == nullptr)
            return;
        if (!field->is_array() || field->size() > values.size())
            return Complain(name, "must be a list of at most " + std::to_string(values.size()) + " numbers");
        for (std::size_t i = 0; i < field->size(); ++i) {
            const json& item = (*field)[i];
            if (!item.is_number_integer() || item.get<std::int64_t>() < 0 || item.get<std::int64_t>() > 255)
                return Complain(name, "must hold numbers from 0 to 255");
            values[i] = item.get<std::uint8_t>();
        }
    }
    void Read_Block(const char* name, std::span<std::uint8_t> block) {
        std::string text;
        Read(name, text);
        const auto bytes = From_Hex(text);
        if (!bytes || bytes->size() > block.size())
            return Complain(name, "must be at most " + std::to_string(block.size()) + " bytes in hex digits");
        std::copy(bytes->begin(), bytes->end(), block.begin());
    }
    /// The object of that name; an empty one when it is not there.
    json Object(const char* name) {
        const json* field = Find(name);
        if (field == nullptr)
            return json::object();
        if (!field->is_object())
            Complain(name, "must be an object");
        return *field;
    }

private:
    const json* Find(const char* name) const {
        if (!object.is_object())
            return nullptr;
        const auto found = object.find(name);
        return found == object.end() || found->is_null() ? nullptr : &*found;
    }
    void Complain(const char* name, const std::string& what) {
        if (problem.empty())
            problem = std::string("\"") + name + "\" " + what;
    }

    const json& object;
    std::string& problem;
};

QChordData Chord_Of(Fields& event, std::string& problem) {
    QChordData chord;
    chord.ChordTypeIndex = 0;
    chord.StepMs = 0;
    const json object = event.Object("QChord");
    Fields fields(object, problem);
    fields.Read("Active", chord.Active);
    fields.Read("ChordName", chord.ChordName);
    fields.Read("Octave", chord.Octave);
    fields.Read("VariableOctave", chord.VariableOctave);
    fields.Read("Length", chord.Length);
    fields.Read("ChordFlagA", chord.ChordFlagA);
    fields.Read("ChordTypeIndex", chord.ChordTypeIndex);
    fields.Read_Notes("ChordNotes", chord.ChordNotes);
    fields.Read("ChordFlagB", chord.ChordFlagB);
    fields.Read("ChordVol", chord.ChordVol);
    fields.Read("ArpeggioOn", chord.ArpeggioOn);
    fields.Read("ArpeggioPattern", chord.ArpeggioPattern);
    fields.Read("PatternNoteCount", chord.PatternNoteCount);
    fields.Read_Notes("PatternNotes", chord.PatternNotes);
    fields.Read("StepMs", chord.StepMs);
    event.Read("Length", chord.Length);
    return chord;
}

MCEventData Style_Of(Fields& event, std::string& problem) {
    MCEventData style;
    const json object = event.Object("MC");
    Fields fields(object, problem);
    fields.Read("Root", style.Root);
    fields.Read("Minor", style.Minor);
    fields.Read("StartOffset", style.StartOffset);
    fields.Read("Style", style.Style);
    fields.Read_Block("StyleBlock", style.StyleBlock);
    event.Read("Length", style.Length);
    return style;
}

AudioEventData Audio_Of(Fields& event, std::string& problem) {
    AudioEventData audio;
    const json object = event.Object("Audio");
    Fields fields(object, problem);
    fields.Read("ClipID", audio.ClipID);
    fields.Read("SampleCount", audio.SampleCount);
    fields.Read("FadeIn", audio.FadeIn);
    fields.Read("FadeOut", audio.FadeOut);
    fields.Read("Take", audio.Take);
    return audio;
}

EventData Payload_Of(int kind, Fields& event, std::string& problem) {
    switch (kind) {
    case EV_NOTE: {
        NoteData note;
        event.Read("Note", note.Note);
        event.Read("Vol", note.Vol);
        event.Read("Length", note.Length);
        return note;
    }
    case EV_QCHORD:
        return Chord_Of(event, problem);
    case EV_PATCH: {
        PatchData patch;
        event.Read("DataRef", patch.DataRef);
        return patch;
    }
    case EV_NAMED: {
        NamedEventData named;
        event.Read("EventName", named.EventName);
        event.Read_Block("Block", named.Block);
        return named;
    }
    case EV_MC:
        return Style_Of(event, problem);
    case EV_AUDIO:
        return Audio_Of(event, problem);
    default:
        problem = "\"Kind\" must be 0, 1, 3, 4, 5 or 6";
        return NoteData{};
    }
}

} // namespace

bool Read_Event(const json& object, Timed_Event& event, std::string& problem) {
    problem = object.is_object() ? "" : "an event must be an object";
    Fields fields(object, problem);
    std::int32_t kind = EV_NOTE;
    fields.Read("StartTime", event.StartTime);
    fields.Read("Kind", kind);
    if (problem.empty())
        event.data = Payload_Of(kind, fields, problem);
    return problem.empty();
}

} // namespace tonvex
