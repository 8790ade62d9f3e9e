#pragma once

#include <cstddef>
#include <cstdint>
#include <filesystem>
#include <fstream>
#include <limits>
#include <span>
#include <string>
#include <vector>

namespace tonvex {

struct RiffChunk {
    std::string ChunkID;       ///< 4 characters
    std::string ListType;      ///< "RIFF" and "LIST": the form type, 4 characters; else empty
    std::int64_t DataSize = 0; ///< from the header, not trusted: the data may end behind the file
    std::int64_t DataPos = 0;  ///< bytes from the start of the file, behind the 8 bytes of the header
    std::int32_t Parent = -1;  ///< row of the enclosing list
    std::int32_t Level = 0;    ///< number of enclosing lists
};

/// Reads any RIFF file into a flat list of chunks with their nesting. Reports nothing itself: a truncated
/// file gives fewer rows, one that is not RIFF at most one. Sizes are checked against the file before
/// anything is allocated by them. Any one thread.
class RiffParserClass {
public:
    /// More rows end the parse; no file in use comes near.
    static constexpr std::size_t MAX_CHUNKS = 65536;
    /// A list nested deeper gets a row, but what is in it does not.
    static constexpr std::int32_t MAX_LEVEL = 32;
    static constexpr std::size_t WHOLE = std::numeric_limits<std::size_t>::max();

    /// False when there is no regular file of this name or it cannot be read.
    bool OpenFile(const std::filesystem::path& path);
    /// The same for a file in memory, which stays with the caller until CloseFile.
    void Open_Bytes(std::span<const std::uint8_t> bytes);
    /// The rows stay; their data can no longer be read.
    void CloseFile();
    void ParseFile();
    /// First row from startRow on with this ID (and list type, when given) no deeper than maxLevel (-1: any).
    /// Names are cut to 4 characters, shorter ones filled with blanks as the format does. -1 when none.
    std::int32_t FindChunk(std::int32_t startRow, const std::string& chunkName,
                           const std::string& listType = {}, std::int32_t maxLevel = -1) const;
    /// False, with nothing changed, when there is no such row.
    bool GetChunkInfo(std::int32_t row, std::string& chunkId, std::string& listType, std::int64_t& size,
                      std::int64_t& position) const;
    /// -1 when there is no such row.
    std::int64_t GetChunkDataPos(std::int32_t row) const;
    /// The chunk's data, at most the first maxBytes of it. False, with out empty, when there is no such row
    /// or the file ends before these bytes do.
    bool ReadData(std::int32_t row, std::string& out, std::size_t maxBytes = WHOLE);
    bool ReadData_BytesArray(std::int32_t row, std::vector<std::uint8_t>& out, std::size_t maxBytes = WHOLE);
    const std::vector<RiffChunk>& Chunks() const noexcept { return chunks; }

private:
    const RiffChunk* Row(std::int32_t row) const;
    /// False when the source does not hold that many bytes from there on.
    bool Read_At(std::int64_t position, std::span<char> out);
    template <typename Buffer>
    bool Read_Chunk(std::int32_t row, Buffer& out, std::size_t maxBytes);

    std::vector<RiffChunk> chunks;
    std::ifstream file;
    std::span<const std::uint8_t> memory;
    std::int64_t sourceLength = 0; ///< of the file or the memory; 0 when nothing is open
};

} // namespace tonvex
