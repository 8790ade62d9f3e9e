#include "support/midi_files.h"
#include "support/sound_files.h"
#include "support/temp_folder.h"

#include <cstdlib>
#include <filesystem>
#include <gtest/gtest.h>
#include <nlohmann/json.hpp>
#include <sstream>
#include <sys/wait.h>

namespace tonvex {
namespace {

namespace fs = std::filesystem;
using nlohmann::json;

struct Run_Result {
    int status = -1;
    std::string out;
    std::string err;
};

/// The tool itself, in a folder of its own.
class Cli_Test : public testing::Test {
protected:
    Cli_Test() { fs::create_directory(folder / "home"); }

    void Write(const std::string& name, const std::string& text) const { folder.Write(name, text); }
    std::string Read(const std::string& name) const { return Temp_Folder::Text_Of(folder / name); }
    bool Exists(const std::string& name) const { return fs::exists(folder / name); }

    Run_Result Call(const std::string& words) const {
        const std::string command = "cd '" + folder.Path().string() +
                                    "' && env HOME=home XDG_CONFIG_HOME= TMPDIR='" + folder.Path().string() +
                                    "/home' '" TONVEX_CLI "' " + words + " >out.txt 2>err.txt";
        const int status = std::system(command.c_str());
        return {WIFEXITED(status) ? WEXITSTATUS(status) : -1, Read("out.txt"), Read("err.txt")};
    }
    /// Everything below the folder that was the user's during the calls.
    std::size_t Left_At_Home() const {
        return static_cast<std::size_t>(std::distance(fs::recursive_directory_iterator(folder / "home"),
                                                      fs::recursive_directory_iterator()));
    }

    /// The messages of a trace that begin or end a note, or all others.
    std::vector<json> Traced(const std::string& name, bool notes = true) const {
        std::istringstream lines(Read(name));
        std::vector<json> found;
        for (std::string line; std::getline(lines, line);)
            if (json message = json::parse(line);
                notes == (message["op"] == "NoteOn" || message["op"] == "NoteOff"))
                found.push_back(std::move(message));
        return found;
    }

    Temp_Folder folder;
};

/// Z of the stock layout for 250 ms, then MIDI note 60. At 80 a beat is 750 ms.
const char* const SCRIPT = R"({"channel": -2147483648, "end_ms": 1500, "edges": [
    {"ms": 600, "key": 316, "down": true, "velocity": 90}, {"ms": 1350, "key": 316, "down": false},
    {"ms": 150, "key": 44, "down": true}, {"ms": 450, "key": 44, "down": false}]})";

TEST_F(Cli_Test, Perform_Writes_Song_Trace_And_Sound) {
    Write("keys.json", SCRIPT);
    const Run_Result run = Call("perform - keys.json song.json --trace trace.jsonl --wav take.wav");
    ASSERT_EQ(run.status, 0) << run.err;
    EXPECT_EQ(run.out, "");

    const json song = json::parse(Read("song.json"));
    EXPECT_EQ(song["globals"]["ProjectTempo"], 80);
    ASSERT_EQ(song["channels"].size(), 1U);
    const json& channel = song["channels"][0];
    EXPECT_EQ(channel["row"], 0);
    EXPECT_EQ(channel["ChannelID"], -2147483648LL);
    EXPECT_EQ(channel["OutputChannel"], 0);
    EXPECT_EQ(channel["Mute"], false);
    ASSERT_EQ(channel["events"].size(), 2U);
    EXPECT_EQ(channel["events"][0], (json{{"EventID", channel["events"][0]["EventID"]},
                                          {"StartTime", 150.0 / 750.0},
                                          {"Kind", 0},
                                          {"Note", 48},
                                          {"Vol", 127},
                                          {"Length", 450.0 / 750.0 - 150.0 / 750.0}}));
    EXPECT_EQ(channel["events"][1]["Note"], 60);
    EXPECT_EQ(channel["events"][1]["Vol"], 90);
    EXPECT_EQ(
        song["marks"],
        json::parse(
            R"([{"row": 0, "MarkStart": 0.0, "MarkEnd": 0.0, "MarkName": "Start", "MarkColor": 16777215}])"));
    ASSERT_EQ(song["maps"]["slots"].size(), 32U);
    EXPECT_EQ(
        song["maps"]["slots"][31],
        json::parse(R"({"slot": 31, "volume": [[0.0, 64], [-1.0, 64]], "pan": [[0.0, 64], [-1.0, 64]]})"));
    EXPECT_EQ(song["maps"]["audio"], json::array());

    for (const json& message : Traced("trace.jsonl", false))
        EXPECT_TRUE(message["ms"] == 0 || message["ms"] == 1500) << message; // set-up and end
    const std::vector<json> notes = Traced("trace.jsonl");
    ASSERT_EQ(notes.size(), 4U);
    EXPECT_EQ(notes[0],
              (json{{"ms", 150}, {"beat", 0.2}, {"op", "NoteOn"}, {"slot", 0}, {"a", 48}, {"b", 102}}));
    EXPECT_EQ(notes[1],
              (json{{"ms", 450}, {"beat", 0.6}, {"op", "NoteOff"}, {"slot", 0}, {"a", 48}, {"b", 100}}));
    EXPECT_EQ(notes[2]["b"], 72); // 90 x 0.8
    EXPECT_EQ(notes[3]["ms"], 1350);

    const test::Sound_File wave = test::Read_Sound(folder / "take.wav");
    EXPECT_EQ(wave.channels, 2);
    EXPECT_EQ(wave.rate, 44100);
    EXPECT_GE(wave.Frames(), 1500U * 441 / 10);
    const auto loudest = [&](int fromMs, int toMs) {
        float peak = 0.0F;
        for (std::size_t i = static_cast<std::size_t>(fromMs) * 882 / 10;
             i < static_cast<std::size_t>(toMs) * 882 / 10; ++i)
            peak = std::max(peak, std::abs(wave.stereo[i]));
        return peak;
    };
    EXPECT_EQ(loudest(0, 148), 0.0F);     // nothing before the first key
    EXPECT_GT(loudest(150, 250), 0.005F); // and then it is there at once
    EXPECT_EQ(Left_At_Home(), 0U);
}

TEST_F(Cli_Test, The_Same_Files_On_Every_Run) {
    const std::string demo = std::string("'") + TONVEX_SOURCE_DATA + "/demo/morning_walk.keys.json'";
    for (const char* words :
         {" s1.json --trace t1.jsonl --wav w1.wav", " s2.json --trace t2.jsonl --wav w2.wav"})
        ASSERT_EQ(Call("perform - " + demo + words).status, 0);
    EXPECT_EQ(Read("s1.json"), Read("s2.json"));
    EXPECT_EQ(Read("t1.jsonl"), Read("t2.jsonl"));
    EXPECT_TRUE(Read("w1.wav") == Read("w2.wav"));
    EXPECT_GT(json::parse(Read("s1.json"))["channels"][0]["events"].size(), 100U);
}

TEST_F(Cli_Test, What_A_Script_May_Ask_For) {
    struct Case {
        const char* fields;
        const char* edges; ///< "<ms> <down> " each, of the Z key
        const char* notes; ///< start, note, length in ms of 80 beats a minute
    };
    const Case cases[] = {{R"("end_ms": 300, "notes_octave": 5)", "75 1", "75 72 225\n"},
                          {R"("end_ms": 300, "tuning": 2)", "75 1", "75 50 225\n"},
                          {R"("end_ms": 300, "position": 2)", "75 1", "1575 48 225\n"},
                          {R"("end_ms": 300, "speed": 50)", "100 1", "50 48 100\n"},
                          {R"("end_ms": 900, "wait_for_key": true)", "600 1", "0 48 300\n"},
                          // out of order, two at one moment
                          {R"("end_ms": 900)", "450 0 150 1 450 1", "150 48 300\n450 48 450\n"}};
    for (const Case& item : cases) {
        SCOPED_TRACE(item.fields);
        json script = json::parse("{" + std::string(item.fields) + "}");
        std::istringstream edges(item.edges);
        int down = 0;
        for (int ms = 0; edges >> ms >> down;)
            script["edges"].push_back({{"ms", ms}, {"key", 44}, {"down", down != 0}});
        Write("keys.json", script.dump());
        const Run_Result run = Call("perform - keys.json song.json");
        ASSERT_EQ(run.status, 0) << run.err;
        const json song = json::parse(Read("song.json"));
        std::ostringstream notes;
        for (const json& event : song["channels"][0]["events"])
            notes << std::lround(event["StartTime"].get<double>() * 750.0) << ' ' << event["Note"] << ' '
                  << std::lround(event["Length"].get<double>() * 750.0) << '\n';
        EXPECT_EQ(notes.str(), item.notes);
    }
}

TEST_F(Cli_Test, Failures_Tell_What_Is_Wrong_And_Leave_Nothing) {
    Write("keys.json", SCRIPT);
    Write("broken.json", "{\"edges\": [");
    Write("range.json", R"({"end_ms": 100, "edges": [{"ms": 1, "key": 384, "down": true}]})");
    Write("channel.json", R"({"channel": 7, "end_ms": 100, "edges": []})");
    Write("layout.json", R"({"layout": "keys.json", "end_ms": 100, "edges": []})");
    Write("no.sf2", "RIFF....sfbk");
    struct Case {
        const char* words;
        int status;
        const char* line; ///< all of standard error; null: any
    };
    const Case cases[] = {
        {"perform - none.json o.json --trace o.jsonl --wav o.wav", 1,
         "tonvex-cli: none.json: cannot be read\n"},
        {"perform - broken.json o.json --wav o.wav", 1, "tonvex-cli: broken.json: is not JSON\n"},
        {"perform - range.json o.json", 1,
         "tonvex-cli: range.json: edge 1: \"key\" must be a number from 0 to 383\n"},
        {"perform - channel.json o.json", 1,
         "tonvex-cli: channel.json: the song has no channel with the ID 7\n"},
        {"perform - layout.json o.json", 1, "tonvex-cli: keys.json: Invalid file format (keyboard)\n"},
        {"perform - keys.json nowhere/o.json --wav o.wav", 1,
         "tonvex-cli: nowhere/o.json: its folder does not exist\n"},
        {"--soundfont no.sf2 perform - keys.json o.json", 1, "tonvex-cli: no.sf2: is not a soundfont\n"},
        {"--data nowhere perform - keys.json o.json", 1, "tonvex-cli: nowhere: is not a folder\n"},
        {"perform song.tvx keys.json o.json", 1, "tonvex-cli: song.tvx: there is no such file\n"},
        {"perform keys.json keys.json o.json", 1, "tonvex-cli: keys.json: Invalid file format (tvx)\n"},
        {"perform - keys.json o.txt", 2, "tonvex-cli: OUT must end in .tvx or .json\n"},
        {"dump keys.json", 1, "tonvex-cli: keys.json: Invalid file format (tvx)\n"},
        {"render none.mid o.wav", 1, "tonvex-cli: none.mid: there is no such file\n"},
        {"render - o.wav", 1, "tonvex-cli: o.wav: There is nothing in the song to be heard\n"},
        {"render - o.txt", 2, "tonvex-cli: OUT must end in .wav, .flac, .ogg, .opus, .mp3 or .wma\n"},
        {"render - o.wav --quality 17", 2, nullptr},
        {"import-midi keys.json o.tvx", 1, "tonvex-cli: keys.json: Error loading Midi file\n"},
        {"export-midi none.tvx o.mid", 1, "tonvex-cli: none.tvx: there is no such file\n"},
        {"play - --virtual --trace nowhere/o.jsonl", 1,
         "tonvex-cli: nowhere/o.jsonl: its folder does not exist\n"},
        {"play - --virtual --from -1", 2, nullptr},
        {"apply - none.json o.tvx", 1, "tonvex-cli: none.json: cannot be read\n"},
        {"apply - broken.json o.tvx", 1, "tonvex-cli: broken.json: is not JSON\n"},
        {"apply - keys.json o.tvx", 1, "tonvex-cli: keys.json: must be a list of edits\n"},
        {"perform - keys.json o.json --trace o.json", 2, nullptr},
        {"perform - keys.json", 2, nullptr},
        {"perform - keys.json o.json --engine steam", 2, nullptr},
        {"dance", 2, nullptr},
        {"", 2, nullptr},
        {"fonts no.sf2", 1, "tonvex-cli: no.sf2: is not a soundfont\n"},
        {"fonts none.sf2", 1, "tonvex-cli: none.sf2: there is no such file\n"}};
    for (const Case& item : cases) {
        SCOPED_TRACE(item.words);
        const Run_Result run = Call(item.words);
        EXPECT_EQ(run.status, item.status);
        EXPECT_EQ(run.out, "");
        if (item.line != nullptr) {
            EXPECT_EQ(run.err, item.line);
        }
        EXPECT_NE(run.err, "");
        for (const char* name : {"o.json", "o.jsonl", "o.wav", "o.txt", "o.tvx", "o.mid"})
            EXPECT_FALSE(Exists(name)) << name;
    }
    EXPECT_EQ(Left_At_Home(), 0U);
    EXPECT_EQ(Call("perform - keys.json o.json").status, 0); // the good call still works
    for (const auto& entry : fs::directory_iterator(folder.Path()))
        EXPECT_NE(entry.path().filename().string().front(), '.') << entry.path();
}

/// Edits of every kind, with undo and redo among them.
const char* const EDITS = R"([
    {"msg": 1013, "args": ["Lead", false, 5]}, {"msg": 1003, "args": [-2147483648, "Solo"]},
    {"add": -2147483648, "event": {"StartTime": 1.0, "Note": 60, "Vol": 100, "Length": 1.0}},
    {"add": -2147483648, "event": {"StartTime": 0.0, "Kind": 1, "Length": 2.0, "QChord":
        {"Active": 2, "ChordName": "C5", "ChordTypeIndex": 255, "ChordNotes": [48, 55], "ChordVol": 90}}},
    {"add": -2147483648, "event": {"StartTime": 3.5, "Kind": 4, "EventName": "Cue", "Block": "0a0B"}},
    {"msg": 1302, "args": [132]}, {"undo": 1}, {"redo": 1},
    {"msg": 1600, "args": [8.0, 90]}, {"undo": 1},
    {"msg": 1202, "args": [4.0, null, "Turn"]}, {"msg": 1013, "args": ["Take", true, 0]},
    {"msg": 1018, "args": [-2147483648, -2147483648, 2.5]}, {"msg": 1019, "args": [-2147483648]}])";

TEST_F(Cli_Test, Edits_Make_A_Song_That_Is_Dumped_Listed_And_Checked) {
    Write("edits.json", EDITS);
    ASSERT_EQ(Call("apply - edits.json song.tvx").status, 0) << Read("err.txt");
    const Run_Result dumped = Call("dump song.tvx");
    ASSERT_EQ(dumped.status, 0) << dumped.err;
    const json song = json::parse(dumped.out);
    EXPECT_EQ(song["magic"], "TVX2");
    EXPECT_EQ(song["fileVersion"], "01");
    ASSERT_EQ(song["sections"].size(), 11U);
    EXPECT_EQ(song["sections"][0],
              (json{{"SectionName", "Global_Channels_Array"}, {"SectionPos", 311}, {"SectionVersion", 3}}));
    EXPECT_EQ(song["globals"]["ProjectTempo"], 132);
    EXPECT_EQ(song["tempo"], json::array());
    EXPECT_EQ(song["editor"], (json{{"AlignDiv", 4}, {"AlignStep", 0.5}}));
    EXPECT_EQ(song["creator"]["LastBar"], 30);
    EXPECT_EQ(song["globals"]["ProjectID"], 0) << "the audio of another song may have any other ID";
    ASSERT_EQ(song["channels"].size(), 2U);
    EXPECT_EQ(song["channels"][0]["ChannelName"], "Solo");
    EXPECT_EQ(song["channels"][0]["OutputChannel"], 5);
    const json& events = song["channels"][0]["events"];
    ASSERT_EQ(events.size(), 3U);
    EXPECT_EQ(events[0]["QChord"]["ChordNotes"], (json{48, 55, 0, 0, 0, 0}));
    EXPECT_EQ(events[1]["StartTime"], 2.5);
    EXPECT_EQ(events[2]["Block"].get<std::string>().substr(0, 6), "0a0b00");
    EXPECT_EQ(song["marks"][1]["MarkName"], "Turn");

    const Run_Result notes = Call("notes song.tvx");
    ASSERT_EQ(notes.status, 0) << notes.err;
    EXPECT_EQ(json::parse(notes.out), json::parse(R"({"lists": [{"marker": 0, "source": "channel", "rows": [
        [0.0, 0, 3000, 0], [0.0, 5, 48, 90], [0.0, 5, 55, 90], [2.0, 5, 48, 0], [2.0, 5, 55, 0],
        [2.5, 5, 60, 100], [3.5, 5, 60, 0]]}]})"));

    // what was saved is edited on, and the tool's own JSON is the same of either
    Write("more.json", R"([{"msg": 1002, "args": [-2147483648, 33]}])");
    ASSERT_EQ(Call("apply song.tvx more.json song2.tvx").status, 0) << Read("err.txt");
    Write("keys.json", R"({"end_ms": 10, "edges": []})");
    ASSERT_EQ(Call("perform song2.tvx keys.json again.tvx").status, 0) << Read("err.txt");
    EXPECT_EQ(Read("again.tvx"), Read("song2.tvx"));
    EXPECT_EQ(json::parse(Call("dump again.tvx").out)["channels"][0]["Volume"], 33);
    EXPECT_EQ(Left_At_Home(), 0U);
}

TEST_F(Cli_Test, A_Midi_File_Is_Imported_Played_Mixed_Down_And_Exported) {
    // A patch, then middle C for one beat and E for half of one, at 120 beats a minute.
    const std::string file =
        test::Midi_File(0, 4, {test::Track("00 C0 05 00 90 3C 64 04 80 3C 00 00 90 40 50 02 80 40 00")});
    Write("in.mid", file);
    ASSERT_EQ(Call("import-midi in.mid song.tvx").status, 0) << Read("err.txt");
    const json channel = json::parse(Call("dump song.tvx").out)["channels"][0];
    ASSERT_EQ(channel["events"].size(), 2U);
    EXPECT_EQ(channel["events"][1]["Length"], 0.5);

    for (const char* engine : {"thread", "polling"}) {
        SCOPED_TRACE(engine);
        ASSERT_EQ(Call(std::string("play song.tvx --virtual --from 1 --speed 200 --trace t.jsonl --wav p.wav "
                                   "--engine ") +
                       engine)
                      .status,
                  0)
            << Read("err.txt");
        std::string notes;
        for (const json& message : Traced("t.jsonl"))
            notes += message["op"].get<std::string>() + ' ' + message["ms"].dump() + ' ' +
                     message["a"].dump() + '\n';
        EXPECT_EQ(notes, "NoteOn 1 64\nNoteOff 125 64\n")
            << "heard from the first round on; at twice the speed half a beat takes 125 ms";
    }

    for (const char* out : {"mix.wav", "mix.flac", "mix.ogg"}) {
        const Run_Result mixed = Call(std::string("render in.mid ") + out + " --tail 0.5");
        ASSERT_EQ(mixed.status, 0) << mixed.err;
        EXPECT_EQ(mixed.out.substr(0, mixed.out.find(", ")), std::string(out) + ": Length 0:01");
        const auto frames = static_cast<int>(test::Read_Sound(folder / out).Frames());
        EXPECT_GE(frames, 44100 * 3 / 4) << out << ": a beat and a half";
        EXPECT_LE(frames, 44100 * 5 / 4 + 64) << out << ": and the tail";
    }

    ASSERT_EQ(Call("export-midi song.tvx out.mid").status, 0) << Read("err.txt");
    ASSERT_EQ(Call("import-midi out.mid again.tvx").status, 0) << Read("err.txt");
    const json again = json::parse(Call("dump again.tvx").out)["channels"][0];
    EXPECT_EQ(again["PatchI"], channel["PatchI"]);
    ASSERT_EQ(again["events"].size(), 2U);
    for (const char* field : {"StartTime", "Note", "Vol", "Length"})
        EXPECT_EQ(again["events"][1][field], channel["events"][1][field]) << field;
    EXPECT_EQ(Left_At_Home(), 0U);
}

TEST_F(Cli_Test, A_Refused_Edit_Ends_The_Run_Unless_It_Is_Expected) {
    json edits = json::array();
    for (int i = 0; i < 100; ++i)
        edits.push_back({{"msg", 1013}, {"args", {"", false, nullptr}}});
    const std::string full = "Can't create new channel (Max Channels reached)";
    edits.push_back({{"msg", 1013}});
    Write("full.json", edits.dump());
    const Run_Result refused = Call("apply - full.json o.tvx");
    EXPECT_EQ(refused.status, 1);
    EXPECT_EQ(refused.err, "tonvex-cli: full.json: edit 101: " + full + "\n");
    EXPECT_FALSE(Exists("o.tvx"));
    edits.back()["expect"] = full;
    Write("full.json", edits.dump());
    EXPECT_EQ(Call("apply - full.json o.tvx").status, 0);
    EXPECT_TRUE(Exists("o.tvx"));

    const struct {
        const char* item;
        const char* problem;
    } CASES[] = {
        {R"({"dance": 1})", "is not an edit that is known"},
        {R"({"msg": "x"})", "\"msg\" must be the number of a message"},
        {R"({"msg": 1013, "expect": "no"})", "was not refused"},
        {R"({"add": 7, "event": {}})", "\"add\" must be the ID of a channel of the song"},
        {R"({"undo": -1})", "must be told how often"},
    };
    for (const auto& item : CASES) {
        Write("bad.json", "[" + std::string(item.item) + "]");
        EXPECT_EQ(Call("apply - bad.json p.tvx").err,
                  "tonvex-cli: bad.json: edit 1: " + std::string(item.problem) + "\n");
        EXPECT_FALSE(Exists("p.tvx"));
    }
}

TEST_F(Cli_Test, Check_Tells_Of_Files_Of_Every_Kind) {
    const std::string data = TONVEX_SOURCE_DATA;
    Write("edits.json", "[]");
    ASSERT_EQ(Call("apply - edits.json song.tvx").status, 0);
    Write("cut.tvx", Read("song.tvx").substr(0, 4000));
    Write("other.tvx", "no song");
    Write("cut.dat", "Keyb02");
    Write("bad.sf2", "RIFF....sfbk");
    Write("letter.doc", "Dear reader");
    // Three texts of no length, then volume, tempo and note of the metronome.
    Write("first.tvx", "Tonvex File v:02" + std::string(12, '\0') + std::string(12, '\1'));
    Write("cut.mid", std::string("MThd\0\0\0\6\0\1\0\1\0\x60MTrk", 18));
    const std::string good = "'" + data + "/keyboard/Tonvex default.dat' '" + data +
                             "/patterns/fingerpick/1.txt' '" + data + "/templates/channels/Flute.txt' '" +
                             data + "/chords.txt' '" + data + "/drums.txt' '" + data +
                             "/demo/Paper lanterns.tvx'";
    const Run_Result whole = Call("check song.tvx first.tvx " + good);
    EXPECT_EQ(whole.status, 0) << whole.out;
    EXPECT_EQ(whole.out.substr(0, 27), "song.tvx: ok\nfirst.tvx: ok\n");
    const Run_Result bad =
        Call("check cut.tvx other.tvx song.tvx cut.dat bad.sf2 letter.doc none.tvx cut.mid");
    EXPECT_EQ(bad.status, 1);
    EXPECT_EQ(bad.out, "cut.tvx: Error loading file\nother.tvx: Invalid file format (tvx)\nsong.tvx: ok\n"
                       "cut.dat: the keyboard layout is cut off\nbad.sf2: Invalid SF2 file\n"
                       "letter.doc: is of no kind that Tonvex reads\nnone.tvx: there is no such file\n"
                       "cut.mid: Error loading Midi file\n");
    EXPECT_EQ(bad.err, "");
}

TEST_F(Cli_Test, Help_Version_Fonts_And_Devices) {
    EXPECT_EQ(Call("--version").out, "tonvex-cli " TONVEX_VERSION "\n");
    for (const char* words :
         {"--help", "perform --help", "fonts --help", "dump --help", "apply --help", "check --help"}) {
        const Run_Result run = Call(words);
        EXPECT_EQ(run.status, 0) << words;
        EXPECT_NE(run.out.find("Usage"), std::string::npos) << words;
    }
    const Run_Result devices = Call("devices");
    ASSERT_EQ(devices.status, 0) << devices.err;
    const json last = json::parse(devices.out)["outputs"].back();
    EXPECT_EQ(last, (json{{"Name", "SoundFont synthesizer"}, {"DeviceID", -1000}, {"IsSynth", 1}}));
    const Run_Result fonts = Call("fonts /usr/share/sounds/sf2/TimGM6mb.sf2");
    if (!fs::exists("/usr/share/sounds/sf2/TimGM6mb.sf2"))
        GTEST_SKIP() << "the stock soundfont is not installed";
    ASSERT_EQ(fonts.status, 0) << fonts.err;
    const json font = json::parse(fonts.out);
    EXPECT_NE(font["title"], "");
    int pianos = 0;
    int drumKits = 0;
    for (const json& preset : font["presets"]) {
        pianos +=
            preset["PresetNumber"] == 0 && preset["PresetBank"] == 0 && preset["IsDrums"] == false ? 1 : 0;
        drumKits += preset["IsDrums"] == true ? 1 : 0;
    }
    EXPECT_EQ(pianos, 1);
    EXPECT_GE(drumKits, 1);
}

} // namespace
} // namespace tonvex
