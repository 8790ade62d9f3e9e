// Any bytes as an older version of a section: the first byte picks the version, the second is the tempo,
// the third how many channels the file has, the rest is the section. Or any bytes as a file of the first
// major version. What is read can be written as today's.

#include "fuzz/require.h"
#include "project/first_version_reader.h"
#include "project/project_reader.h"
#include "project/project_sections.h"
#include "project/project_writer.h"

#include <vector>

namespace {

using namespace tonvex;

constexpr std::size_t HEAD_BYTES = 3;

std::vector<Section_Reader> Older_Readers() {
    std::vector<Section_Reader> older;
    for (const Section_Reader& reader : Section_Readers())
        for (const Section_Writer& writer : Section_Writers())
            if (reader.name == writer.name && reader.version < writer.version)
                older.push_back(reader);
    return older;
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    static const std::vector<Section_Reader> readers = Older_Readers();
    Project_State state;
    const First_Version_Outcome head = Read_First_Version({data, size}, state);
    const bool known = head == First_Version_Outcome::Whole || head == First_Version_Outcome::Notes_Left_Out;
    Require(known || state.ProjectTempo == 80, "a refused head changed the state");
    if (size < HEAD_BYTES)
        return 0;
    Project_Reading reading;
    reading.song.State.ProjectTempo = 1 + data[1];
    reading.channelCount = data[2];
    for (GlobalChannel& channel : reading.song.Channels) { // for the sections that refer to channels
        channel.ChannelID = static_cast<std::int32_t>(&channel - reading.song.Channels.data());
        channel.InUse = FLAG_ON;
    }
    Byte_Cursor cursor({data + HEAD_BYTES, size - HEAD_BYTES});
    if (!readers[data[0] % readers.size()].read(cursor, reading) || !Has_An_ID_Each(reading.song))
        return 0;
    const auto bytes = Write_Project(reading.song);
    Require(bytes.has_value(), "a song that cannot be written");
    Song_Snapshot again;
    Require(Read_Project(*bytes, again) == Read_Outcome::Whole, "own file refused");
    Require(Write_Project(again) == bytes, "the second writing differs");
    return 0;
}
