#include "cli/render.h"

#include "cli/progress_line.h"
#include "cli/song_source.h"
#include "project/mixdown.h"

namespace tonvex {

namespace {

class Shown_Progress final : public Work_Progress {
public:
    bool Show(const std::string&, int percent) override {
        line.Show(percent);
        return true;
    }
    void Clear() { line.Clear(); }

private:
    Progress_Line line{"Mixing down", 100};
};

} // namespace

Cli_Outcome Render(const Cli_Options& options, const Render_Call& call, std::string& text) {
    const Audio_Kind_Traits* const kind = Kind_By_Ending(call.out);
    if (kind == nullptr)
        return Cli_Outcome::Wrong_Words("OUT must end in .wav, .flac, .ogg, .opus, .mp3 or .wma");
    Audio_Format format{kind->kind, call.rate, call.quality};
    std::string problem;
    if (!Fit(format, problem))
        return Cli_Outcome::Wrong_Words(problem);
    Cli_Session tool;
    Cli_Outcome outcome = tool.Open(options, Cli_Sound::None);
    if (outcome.Done())
        outcome = Open_Song(tool, call.song, New_Song::Empty);
    if (outcome.Done())
        outcome = Use_Named_Fonts(tool, options);
    if (!outcome.Done())
        return outcome;
    Session& session = *tool.session;
    Shown_Progress progress;
    const Mixdown_Result result = Mixdown(session.Parts(), session.fonts->Sounding_Fonts())
                                      .Run(call.out, format, progress, call.tailSeconds);
    progress.Clear();
    if (result.outcome != Mixdown_Result::Outcome::Done)
        return Cli_Outcome::Failed(call.out.string(), result.error);
    text = call.out.string() + ": " + Mixdown_Summary(result) + "\n";
    return {};
}

} // namespace tonvex
