#pragma once

#include <cstdint>
#include <filesystem>
#include <string>
#include <vector>

namespace tonvex::test {

struct Click_Preset {
    std::string name = "Click"; ///< at most 19 characters count
    int bank = 0;               ///< 128 for a drum kit
    int program = 0;
    int level = 30000; ///< height of the click, 1 to 32767: tells presets apart by their peak
    bool held = false; ///< the height is kept until the note off
};

/// A whole, valid SF2 file with one instrument and one short sample a preset: a rectangle of 256 frames at
/// 44100 Hz, without filter or envelope, the same at every key. A note on begins at full height with the
/// first frame, so that onsets can be measured to the frame.
std::vector<std::uint8_t> Make_Click_Font(const std::vector<Click_Preset>& presets,
                                          const std::string& title = "Clicks");

/// The same, written to path.
void Write_Click_Font(const std::filesystem::path& path, const std::vector<Click_Preset>& presets,
                      const std::string& title = "Clicks");

} // namespace tonvex::test
