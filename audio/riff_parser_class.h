#pragma once

#include <cstdint>
#include <filesystem>
#include <fstream>
#include <string>
#include <vector>

namespace tonvex {

struct RiffChunk {
    std::string ChunkID;       ///< 4 characters
    std::string ListType;      ///< "RIFF" and "LIST": the form type, else blank
    std::int64_t DataSize = 0; ///< from the header, not trusted
    std::int64_t DataPos = 0;  ///< bytes from the start of the file
    std::int32_t Parent = -1;  ///< row of the enclosing list
    std::int32_t Level = 0;
};

/// Reads any RIFF file into a flat list of chunks with their nesting. Reports nothing itself: a truncated
/// file gives fewer rows. Never allocates more than the file holds. Any one thread.
class RiffParserClass {
public:
    bool OpenFile(const std::filesystem::path& path);
    void CloseFile();
    void ParseFile();
    /// First row from startRow on with this ID (and list type, when given) no deeper than maxLevel (-1: any).
    std::int32_t FindChunk(std::int32_t startRow, const std::string& chunkName,
                           const std::string& listType = {}, std::int32_t maxLevel = -1) const;
    bool GetChunkInfo(std::int32_t row, std::string& chunkId, std::string& listType, std::int64_t& size,
                      std::int64_t& position) const;
    std::int64_t GetChunkDataPos(std::int32_t row) const;
    bool ReadData(std::int32_t row, std::string& out);
    bool ReadData_BytesArray(std::int32_t row, std::vector<std::uint8_t>& out);
    const std::vector<RiffChunk>& Chunks() const noexcept { return chunks; }

private:
    std::vector<RiffChunk> chunks;
    std::ifstream file;
    std::int64_t fileLength = 0;
};

} // namespace tonvex
