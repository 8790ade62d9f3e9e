#include "platform/library_versions.h"

#include <RtMidi.h>
#include <boost/version.hpp>
#include <fluidsynth.h>
#include <jack/jack.h>
#include <rtaudio/RtAudio.h>
#include <sndfile.h>

extern "C" {
#include <libavcodec/avcodec.h>
#include <libavutil/avutil.h>
}

namespace tonvex {

std::vector<Library_Row> Core_Libraries() {
    return {{"Boost",
             std::to_string(BOOST_VERSION / 100000) + "." + std::to_string(BOOST_VERSION / 100 % 1000) + "." +
                 std::to_string(BOOST_VERSION % 100),
             "BSL-1.0"},
            // What the whole is under depends on how it was built, so the library is asked.
            {"FFmpeg", av_version_info(), avcodec_license()},
            {"FluidSynth", fluid_version_str(), "LGPL-2.1-or-later"},
            {"JACK", jack_get_version_string(), "LGPL-2.1-or-later"},
            {"libsndfile", sf_version_string(), "LGPL-2.1-or-later"},
            {"RtAudio", RtAudio::getVersion(), "MIT"},
            {"RtMidi", RtMidi::getVersion(), "MIT"}};
}

} // namespace tonvex
