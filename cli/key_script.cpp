#include "cli/key_script.h"

#include "base/file_io.h"

#include <algorithm>
#include <cmath>
#include <limits>
#include <nlohmann/json.hpp>

namespace tonvex {

namespace {

using nlohmann::json;

constexpr std::size_t LONGEST_SCRIPT = 64U << 20U;
constexpr double LAST_BEAT = 268435455.0; ///< a song is shorter
constexpr double LOWEST_SPEED = 1.0;
constexpr double HIGHEST_SPEED = 400.0;

/// Takes values out of one object and remembers the first thing that was wrong.
class Field_Reader {
public:
    Field_Reader(const json& objectToRead, std::string place)
        : object(objectToRead), where(std::move(place)) {}

    void Read(const char* name, bool& value) {
        const json* field = Find(name);
        if (field == nullptr)
            return;
        if (field->is_boolean())
            value = field->get<bool>();
        else
            Complain(name, "must be true or false");
    }
    void Read(const char* name, std::string& value) {
        const json* field = Find(name);
        if (field == nullptr)
            return;
        if (field->is_string())
            value = field->get<std::string>();
        else
            Complain(name, "must be a text");
    }
    void Read(const char* name, double& value, double lowest, double highest) {
        const json* field = Find(name);
        if (field == nullptr)
            return;
        const double number =
            field->is_number() ? field->get<double>() : std::numeric_limits<double>::quiet_NaN();
        if (number >= lowest && number <= highest)
            value = number;
        else
            Complain(name, "must be a number from " + Text(lowest) + " to " + Text(highest));
    }
    template <typename Integer>
    void Read_Whole(const char* name, Integer& value, Integer lowest, Integer highest) {
        double number = static_cast<double>(value);
        Read(name, number, static_cast<double>(lowest), static_cast<double>(highest));
        if (problem.empty() && number != std::floor(number))
            Complain(name, "must be a whole number");
        if (problem.empty())
            value = static_cast<Integer>(number);
    }
    void Require(const char* name) {
        if (problem.empty() && Find(name) == nullptr)
            Complain(name, "is missing");
    }
    const std::string& Problem() const noexcept { return problem; }

private:
    const json* Find(const char* name) const {
        const auto found = object.find(name);
        return found == object.end() || found->is_null() ? nullptr : &*found;
    }
    void Complain(const char* name, const std::string& what) {
        if (problem.empty())
            problem = where + "\"" + name + "\" " + what;
    }
    static std::string Text(double number) { return std::to_string(static_cast<std::int64_t>(number)); }

    const json& object;
    std::string where;
    std::string problem;
};

std::string Read_Edges(const json& document, std::vector<Key_Script::Edge>& edges) {
    const auto list = document.find("edges");
    if (list == document.end())
        return "\"edges\" is missing";
    if (!list->is_array())
        return "\"edges\" must be a list";
    for (std::size_t i = 0; i < list->size(); ++i) {
        const json& item = (*list)[i];
        const std::string place = "edge " + std::to_string(i + 1) + ": ";
        if (!item.is_object())
            return place + "must be an object";
        Key_Script::Edge edge;
        Field_Reader reader(item, place);
        for (const char* name : {"ms", "key", "down"})
            reader.Require(name);
        reader.Read_Whole("ms", edge.ms, std::int64_t{0}, Key_Script::LAST_MS);
        reader.Read_Whole("key", edge.key, 0, Key_Script::LAST_KEY);
        reader.Read("down", edge.down);
        reader.Read_Whole("velocity", edge.velocity, 0, 127);
        if (!reader.Problem().empty())
            return reader.Problem();
        edges.push_back(edge);
    }
    std::stable_sort(edges.begin(), edges.end(),
                     [](const auto& left, const auto& right) { return left.ms < right.ms; });
    return {};
}

} // namespace

bool Key_Script::Has_Midi_Keys() const {
    return std::any_of(edges.begin(), edges.end(),
                       [](const Edge& edge) { return edge.key >= FIRST_MIDI_KEY; });
}

Cli_Outcome Parse_Key_Script(const std::string& text, const std::string& name, Key_Script& script) {
    const json document = json::parse(text, nullptr, false);
    if (document.is_discarded())
        return Cli_Outcome::Failed(name, "is not JSON");
    if (!document.is_object())
        return Cli_Outcome::Failed(name, "must hold one JSON object");
    Key_Script result;
    Field_Reader reader(document, "");
    if (document.contains("channel") && !document["channel"].is_null()) {
        std::int32_t channel = 0;
        reader.Read_Whole("channel", channel, std::numeric_limits<std::int32_t>::min(),
                          std::numeric_limits<std::int32_t>::max());
        result.channel = channel;
    }
    reader.Read("position", result.position, 0.0, LAST_BEAT);
    reader.Read("speed", result.speed, LOWEST_SPEED, HIGHEST_SPEED);
    reader.Read("overwrite", result.overwrite);
    reader.Read("metronome", result.metronome);
    reader.Read("wait_for_key", result.wait_for_key);
    reader.Read("layout", result.layout);
    reader.Read_Whole("notes_octave", result.notes_octave, 0, 5);
    reader.Read_Whole("qchords_octave", result.qchords_octave, 0, 5);
    reader.Read_Whole("tuning", result.tuning, 0, 11);
    reader.Require("end_ms");
    reader.Read_Whole("end_ms", result.end_ms, std::int64_t{0}, Key_Script::LAST_MS);
    std::string problem = reader.Problem();
    if (problem.empty())
        problem = Read_Edges(document, result.edges);
    if (!problem.empty())
        return Cli_Outcome::Failed(name, problem);
    script = std::move(result);
    return {};
}

Cli_Outcome Read_Key_Script(const std::filesystem::path& file, Key_Script& script) {
    const auto bytes = Read_File(file, LONGEST_SCRIPT);
    if (!bytes)
        return Cli_Outcome::Failed(file.string(), "cannot be read");
    return Parse_Key_Script(std::string(bytes->begin(), bytes->end()), file.string(), script);
}

} // namespace tonvex
