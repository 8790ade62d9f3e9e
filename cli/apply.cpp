#include "cli/apply.h"

#include "base/file_io.h"
#include "cli/event_json.h"
#include "cli/song_source.h"

#include <limits>
#include <nlohmann/json.hpp>
#include <optional>

namespace tonvex {

namespace {

using nlohmann::json;

constexpr std::size_t LONGEST_SCRIPT = std::size_t{1} << 30U;
constexpr std::size_t HUB_ARGUMENTS = std::tuple_size_v<Change_Hub::Args>;

std::optional<std::int32_t> Whole(const json& value) {
    if (!value.is_number_integer())
        return std::nullopt;
    const auto number = value.get<std::int64_t>();
    if (number < std::numeric_limits<std::int32_t>::min() ||
        number > std::numeric_limits<std::int32_t>::max())
        return std::nullopt;
    return static_cast<std::int32_t>(number);
}

/// Carries out the items of one script on one session. What is wrong with an item ends the script.
class Edit_Script {
public:
    explicit Edit_Script(Cli_Session& theTool) : tool(theTool), session(*theTool.session) {}

    /// Empty when all went well.
    std::string Run(const json& items) {
        if (!items.is_array())
            return "must be a list of edits";
        for (std::size_t i = 0; i < items.size(); ++i) {
            tool.dialogs.shown.clear();
            std::string problem = items[i].is_object() ? Run_Item(items[i]) : "must be an object";
            if (problem.empty())
                problem = Refusal(items[i]);
            if (!problem.empty())
                return "edit " + std::to_string(i + 1) + ": " + problem;
        }
        End_Adds();
        return {};
    }

private:
    std::string Run_Item(const json& item) {
        if (item.contains("add"))
            return Add(item);
        End_Adds();
        if (item.contains("msg"))
            return Send(item);
        if (item.contains("undo"))
            return Step(item["undo"], &UndoModule::Do_Undo);
        if (item.contains("redo"))
            return Step(item["redo"], &UndoModule::Do_Redo);
        return "is not an edit that is known";
    }

    /// The program's box after an item, unless the item expects it.
    std::string Refusal(const json& item) const {
        std::string told = tool.dialogs.shown.empty() ? "" : tool.dialogs.shown.back().text;
        if (!item.contains("expect"))
            return told;
        if (!item["expect"].is_string())
            return "\"expect\" must be a text";
        if (told == item["expect"].get<std::string>())
            return {};
        return told.empty() ? "was not refused" : "was refused otherwise: " + told;
    }

    std::string Send(const json& item) {
        const auto number = Whole(item["msg"]);
        if (!number)
            return "\"msg\" must be the number of a message";
        Change_Hub::Args args;
        const json list = item.value("args", json::array());
        if (!list.is_array() || list.size() > HUB_ARGUMENTS)
            return "\"args\" must be a list of at most " + std::to_string(HUB_ARGUMENTS) + " arguments";
        for (std::size_t i = 0; i < list.size(); ++i) {
            const std::string problem = Take_Argument(list[i], args[i]);
            if (!problem.empty())
                return "argument " + std::to_string(i + 1) + ": " + problem;
        }
        session.hub->Send(nullptr, *number, args);
        return {};
    }

    static std::string Take_Argument(const json& value, Msg_Arg& arg) {
        if (value.is_null())
            return {};
        if (value.is_boolean())
            arg = value.get<bool>();
        else if (const auto whole = Whole(value))
            arg = *whole;
        else if (value.is_number())
            arg = value.get<double>();
        else if (value.is_string())
            arg = value.get<std::string>();
        else {
            Timed_Event event;
            std::string problem;
            if (!Read_Event(value, event, problem))
                return problem;
            arg = event.data;
        }
        return {};
    }

    std::string Add(const json& item) {
        const auto channelId = Whole(item["add"]);
        const int row = channelId ? session.channels->ChannelI(*channelId) : -1;
        if (row < 0)
            return "\"add\" must be the ID of a channel of the song";
        Timed_Event event;
        std::string problem;
        if (!Read_Event(item.value("event", json()), event, problem))
            return problem;
        if (addsTo != channelId)
            Begin_Adds(*channelId, row);
        const std::int32_t eventId = session.channels->Store(row).AddNewEvent(event.StartTime, event.data);
        session.hub->Message(this, MSG_EVENT_ADDED, *channelId, eventId);
        return {};
    }

    /// One undo step holds a run of adds.
    void Begin_Adds(std::int32_t channelId, int row) {
        End_Adds();
        session.undo->Begin_Step("Add events");
        session.undo->Undo_Channel("Add events", row);
        addsTo = channelId;
    }

    void End_Adds() {
        if (!addsTo)
            return;
        session.hub->Message(this, MSG_EVENTS_ADDED_END, *addsTo);
        session.undo->End_Step();
        addsTo.reset();
    }

    std::string Step(const json& count, bool (UndoModule::*step)()) {
        const auto times = Whole(count);
        if (!times || *times < 0)
            return "must be told how often";
        for (std::int32_t i = 0; i < *times; ++i)
            ((*session.undo).*step)();
        return {};
    }

    Cli_Session& tool;
    Session& session;
    std::optional<std::int32_t> addsTo; ///< the channel of the run of adds that goes on
};

} // namespace

Cli_Outcome Apply(const Cli_Options& options, const Apply_Call& call) {
    const auto script = Read_File(call.edits, LONGEST_SCRIPT);
    if (!script)
        return Cli_Outcome::Failed(call.edits.string(), "cannot be read");
    const json items = json::parse(script->begin(), script->end(), nullptr, false);
    if (items.is_discarded())
        return Cli_Outcome::Failed(call.edits.string(), "is not JSON");
    Cli_Session tool;
    Cli_Outcome outcome = tool.Open(options, Cli_Sound::None);
    if (outcome.Done())
        outcome = Open_Song(tool, call.song, New_Song::Empty);
    if (!outcome.Done())
        return outcome;
    const std::string problem = Edit_Script(tool).Run(items);
    if (!problem.empty())
        return Cli_Outcome::Failed(call.edits.string(), problem);
    return Save_Song(tool, call.out);
}

} // namespace tonvex
