#include "cli/cli_session.h"

#include "base/file_io.h"
#include "cli/silent_sound_door.h"
#include "platform/make_sound_door.h"

#include <cstdlib>
#include <system_error>

namespace tonvex {

namespace fs = std::filesystem;

namespace {

constexpr const char* STOCK_LAYOUT = "keyboard/Tonvex default.dat";

std::span<const std::uint8_t> Bytes_Of(const std::string& text) {
    return {reinterpret_cast<const std::uint8_t*>(text.data()), text.size()};
}

} // namespace

Temporary_Folder::Temporary_Folder() {
    std::error_code error;
    const fs::path base = fs::temp_directory_path(error);
    if (error)
        return;
    std::string name = (base / "tonvex-cli-XXXXXX").string();
    if (mkdtemp(name.data()) != nullptr)
        path = name;
}

Temporary_Folder::~Temporary_Folder() {
    std::error_code ignored;
    if (!path.empty())
        fs::remove_all(path, ignored);
}

fs::path Usual_Data_Folder() {
    std::error_code error;
    const fs::path executable = fs::read_symlink("/proc/self/exe", error);
    if (!error) {
        const fs::path installed = executable.parent_path() / ".." / TONVEX_DATADIR;
        const fs::path beside = executable.parent_path() / ".." / "share" / "tonvex";
        for (const fs::path& folder : {beside, installed}) {
            if (fs::exists(folder / "chords.txt", error))
                return fs::weakly_canonical(folder, error);
        }
    }
    return TONVEX_SOURCE_DATA;
}

Cli_Outcome Cli_Session::Make_Folders(const Cli_Options& options, AppPaths_Class& paths) {
    if (folder.Path().empty())
        return Cli_Outcome::Failed("", "no temporary folder can be made");
    std::error_code error;
    if (!fs::is_directory(options.data, error))
        return Cli_Outcome::Failed(options.data.string(), "is not a folder");
    if (!fs::is_regular_file(options.data / STOCK_LAYOUT, error))
        return Cli_Outcome::Failed((options.data / STOCK_LAYOUT).string(), "is missing");
    const fs::path config = folder.Path() / "config";
    fs::create_directories(config, error);
    if (!error)
        fs::copy(options.data / "keyboard", config / "keyboard", fs::copy_options::recursive, error);
    if (error)
        return Cli_Outcome::Failed(config.string(), error.message());
    for (const char* name : {"config", "patterns", "templates", "temp", "projectsaudio"})
        paths.Set_Path(name, (folder.Path() / name).string());

    std::string fontList;
    for (const fs::path& font : options.soundfonts) {
        std::string title;
        std::vector<Font_Preset> presets;
        if (!DLSListClass::Parse_SF2_File(font, title, presets))
            return Cli_Outcome::Failed(font.string(), "is not a soundfont");
        fontList += fs::absolute(font, error).string() + "\n";
    }
    std::string problem;
    if (!fontList.empty() && !Replace_File(config / "defaultsf2.cfg", Bytes_Of(fontList), problem))
        return Cli_Outcome::Failed((config / "defaultsf2.cfg").string(), problem);
    return {};
}

Cli_Outcome Cli_Session::Open(const Cli_Options& options, Cli_Sound wanted) {
    AppPaths_Class paths;
    Cli_Outcome outcome = Make_Folders(options, paths);
    if (!outcome.Done())
        return outcome;
    keys.counter = &counter;
    const auto make = [&](Sound_Door& sound, Millisecond_Counter& clock, Run_Loop& rounds) {
        session = std::make_unique<Session>(Session_Doors{sound, midi, keys, clock, rounds, store, dialogs},
                                            paths, options.data);
    };
    switch (wanted) {
    case Cli_Sound::None:
        silence = std::make_unique<Silent_Sound_Door>();
        make(*silence, counter, loop);
        break;
    case Cli_Sound::Pulled:
        synthesizer = std::make_unique<Offline_Sound_Door>(counter);
        make(*synthesizer, counter, loop);
        break;
    case Cli_Sound::Device:
        device = Make_Sound_Door(realCounter, Sound_Driver_Choice::Automatic);
        make(*device, realCounter, realLoop);
        break;
    }
    session->files->givesIds = false;
    if (!session->Load())
        return Cli_Outcome::Failed("", dialogs.shown.empty() ? "the program cannot start"
                                                             : dialogs.shown.back().text);
    if (wanted != Cli_Sound::None && !session->fontsLoaded)
        return Cli_Outcome::Failed("", "there is no soundfont to play with; name one with --soundfont");
    return {};
}

} // namespace tonvex
