#include "support/click_font.h"

#include "base/byte_cursor.h"

#include <fstream>

namespace tonvex::test {

namespace {

using Bytes = std::vector<std::uint8_t>;

constexpr std::uint32_t CLICK_FRAMES = 256;
constexpr std::uint32_t LEAD_FRAMES = 8; ///< silent, before each click
constexpr std::uint32_t GAP_FRAMES = 46; ///< zeros that the format wants behind each sample
constexpr std::uint32_t SAMPLE_FRAMES = LEAD_FRAMES + CLICK_FRAMES + GAP_FRAMES;
constexpr int SCALE_TUNING = 56;
constexpr int INSTRUMENT = 41;
constexpr int SAMPLE_ID = 53;
constexpr int SAMPLE_MODES = 54;
constexpr int LOOPED = 1;
constexpr int GENERATORS = 3; ///< of each instrument

Bytes Chunk(const std::string& id, const Bytes& data) {
    Byte_Writer out;
    out.Write_Text(id);
    out.Write_U32(static_cast<std::uint32_t>(data.size()));
    out.Write_Bytes(data);
    if (data.size() % 2 != 0)
        out.Write_U8(0);
    return out.Take();
}

Bytes List(const std::string& type, const std::vector<Bytes>& chunks) {
    Byte_Writer out;
    out.Write_Text(type);
    for (const Bytes& chunk : chunks)
        out.Write_Bytes(chunk);
    return Chunk("LIST", out.Take());
}

void Write_Name(Byte_Writer& out, std::string name) {
    name.resize(20, '\0');
    name[19] = '\0';
    out.Write_Text(name);
}

Bytes Zero_Text(const std::string& text) {
    Byte_Writer out;
    out.Write_Text(text);
    out.Write_U8(0);
    if (out.Bytes().size() % 2 != 0)
        out.Write_U8(0);
    return out.Take();
}

void Write_Pair(Byte_Writer& out, int first, int second) {
    out.Write_U16(static_cast<std::uint16_t>(first));
    out.Write_U16(static_cast<std::uint16_t>(second));
}

Bytes Info(const std::string& title) {
    Byte_Writer version;
    Write_Pair(version, 2, 1);
    return List("INFO", {Chunk("ifil", version.Take()), Chunk("isng", Zero_Text("EMU8000")),
                         Chunk("INAM", Zero_Text(title))});
}

Bytes Samples(const std::vector<Click_Preset>& presets) {
    Byte_Writer out;
    for (const Click_Preset& preset : presets)
        for (std::uint32_t i = 0; i < SAMPLE_FRAMES; ++i) {
            const bool click = i >= LEAD_FRAMES && i < LEAD_FRAMES + CLICK_FRAMES;
            out.Write_I16(static_cast<std::int16_t>(click ? preset.level : 0));
        }
    return List("sdta", {Chunk("smpl", out.Take())});
}

Bytes Records(const std::vector<Click_Preset>& presets) {
    const int count = static_cast<int>(presets.size());
    Byte_Writer phdr, pbag, pgen, inst, ibag, igen, shdr;
    for (int i = 0; i < count; ++i) {
        const Click_Preset& preset = presets[static_cast<std::size_t>(i)];
        Write_Name(phdr, preset.name);
        Write_Pair(phdr, preset.program, preset.bank);
        phdr.Write_U16(static_cast<std::uint16_t>(i));
        phdr.Write_Bytes(Bytes(12, 0));
        Write_Pair(pbag, i, 0);
        Write_Pair(pgen, INSTRUMENT, i);
        Write_Name(inst, preset.name);
        inst.Write_U16(static_cast<std::uint16_t>(i));
        Write_Pair(ibag, GENERATORS * i, 0);
        Write_Pair(igen, SCALE_TUNING, 0);
        Write_Pair(igen, SAMPLE_MODES, preset.held ? LOOPED : 0);
        Write_Pair(igen, SAMPLE_ID, i);
        const auto start = static_cast<std::uint32_t>(i) * SAMPLE_FRAMES + LEAD_FRAMES;
        Write_Name(shdr, preset.name);
        for (const std::uint32_t value : {start, start + CLICK_FRAMES, start, start + CLICK_FRAMES, 44100U})
            shdr.Write_U32(value);
        Write_Pair(shdr, 60, 0); // original key and correction
        shdr.Write_U16(1);       // mono
    }
    Write_Name(phdr, "EOP");
    Write_Pair(phdr, 0, 0);
    phdr.Write_U16(static_cast<std::uint16_t>(count));
    phdr.Write_Bytes(Bytes(12, 0));
    Write_Pair(pbag, count, 0);
    Write_Pair(pgen, 0, 0);
    Write_Name(inst, "EOI");
    inst.Write_U16(static_cast<std::uint16_t>(count));
    Write_Pair(ibag, GENERATORS * count, 0);
    Write_Pair(igen, 0, 0);
    Write_Name(shdr, "EOS");
    shdr.Write_Bytes(Bytes(26, 0));
    const Bytes noModulators(10, 0);
    return List("pdta",
                {Chunk("phdr", phdr.Take()), Chunk("pbag", pbag.Take()), Chunk("pmod", noModulators),
                 Chunk("pgen", pgen.Take()), Chunk("inst", inst.Take()), Chunk("ibag", ibag.Take()),
                 Chunk("imod", noModulators), Chunk("igen", igen.Take()), Chunk("shdr", shdr.Take())});
}

} // namespace

std::vector<std::uint8_t> Make_Click_Font(const std::vector<Click_Preset>& presets,
                                          const std::string& title) {
    Byte_Writer out;
    out.Write_Text("sfbk");
    out.Write_Bytes(Info(title));
    out.Write_Bytes(Samples(presets));
    out.Write_Bytes(Records(presets));
    return Chunk("RIFF", out.Take());
}

void Write_Click_Font(const std::filesystem::path& path, const std::vector<Click_Preset>& presets,
                      const std::string& title) {
    const Bytes bytes = Make_Click_Font(presets, title);
    std::ofstream file(path, std::ios::binary);
    file.write(reinterpret_cast<const char*>(bytes.data()), static_cast<std::streamsize>(bytes.size()));
}

} // namespace tonvex::test
