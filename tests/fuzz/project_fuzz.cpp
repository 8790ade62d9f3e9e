// Any bytes as a project file: what is read can stand in the model, and what is written of it is read as the
// same again.

#include "fuzz/require.h"
#include "project/project_reader.h"
#include "project/project_writer.h"
#include "song/tempo_change_class.h"
#include "support/store_host.h"

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    using namespace tonvex;
    Song_Snapshot song;
    if (Read_Project({data, size}, song) != Read_Outcome::Whole)
        return 0;
    static Store_Host host;
    static GlobalChannelsManager channels(host);
    static TempoChangeClass tempoChanges;
    static Song_Marks marks;
    static Project_State state;
    static MusicCreator_Module creator;
    static EventsEditor_Setup editorSetup;
    static Channels_List_Rows channelsList;
    static std::vector<std::string> fonts;
    const Song_Model model{channels, tempoChanges, marks, state, creator, editorSetup, channelsList, fonts};
    if (!Put_Snapshot(song, model))
        return 0;
    const auto first = Write_Project(Take_Snapshot(model));
    Require(first.has_value(), "a song that cannot be written");
    Song_Snapshot again;
    Require(Read_Project(*first, again) == Read_Outcome::Whole, "own file refused");
    Require(Put_Snapshot(again, model), "own song cannot stand");
    Require(Write_Project(Take_Snapshot(model)) == first, "the second writing differs");
    return 0;
}
