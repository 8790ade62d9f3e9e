#include "audio/riff_parser_class.h"

#include "base/byte_cursor.h"

#include <algorithm>
#include <array>

namespace tonvex {

namespace {

constexpr std::size_t CODE_BYTES = 4;
constexpr std::int64_t HEADER_BYTES = 8;

std::string Four_Characters(const std::string& name) {
    std::string code = name.substr(0, CODE_BYTES);
    code.resize(CODE_BYTES, ' ');
    return code;
}

struct Open_List {
    std::int32_t row;
    std::int64_t endPosition;
};

} // namespace

bool RiffParserClass::OpenFile(const std::filesystem::path& path) {
    CloseFile();
    // Opening a pipe would wait for its writer, a folder opens but reads nothing.
    std::error_code problem;
    if (!std::filesystem::is_regular_file(path, problem))
        return false;
    const std::uintmax_t length = std::filesystem::file_size(path, problem);
    if (problem)
        return false;
    file.open(path, std::ios::binary);
    if (!file)
        return false;
    sourceLength = static_cast<std::int64_t>(length);
    return true;
}

void RiffParserClass::Open_Bytes(std::span<const std::uint8_t> bytes) {
    CloseFile();
    memory = bytes;
    sourceLength = static_cast<std::int64_t>(bytes.size());
}

void RiffParserClass::CloseFile() {
    file.close();
    file.clear();
    memory = {};
    sourceLength = 0;
}

bool RiffParserClass::Read_At(std::int64_t position, std::span<char> out) {
    const auto count = static_cast<std::int64_t>(out.size());
    if (position < 0 || position > sourceLength || count > sourceLength - position)
        return false;
    if (!file.is_open()) {
        const auto part = memory.subspan(static_cast<std::size_t>(position), out.size());
        std::transform(part.begin(), part.end(), out.begin(),
                       [](std::uint8_t byte) { return static_cast<char>(byte); });
        return true;
    }
    file.clear();
    file.seekg(position);
    file.read(out.data(), count);
    return file.gcount() == count;
}

void RiffParserClass::ParseFile() {
    chunks.clear();
    std::vector<Open_List> openLists;
    std::int64_t position = 0;
    while (position < sourceLength && chunks.size() < MAX_CHUNKS) {
        while (!openLists.empty() && openLists.back().endPosition <= position)
            openLists.pop_back();

        std::array<char, HEADER_BYTES> header{};
        if (!Read_At(position, header))
            return;
        RiffChunk chunk;
        chunk.ChunkID.assign(header.data(), CODE_BYTES);
        std::array<std::uint8_t, CODE_BYTES> sizeBytes{};
        std::transform(header.begin() + CODE_BYTES, header.end(), sizeBytes.begin(),
                       [](char c) { return static_cast<std::uint8_t>(c); });
        chunk.DataSize = Byte_Cursor(sizeBytes).Read_U32();
        chunk.DataPos = position + HEADER_BYTES;
        chunk.Parent = openLists.empty() ? -1 : openLists.back().row;
        chunk.Level = static_cast<std::int32_t>(openLists.size());

        const std::int64_t dataEnd = chunk.DataPos + chunk.DataSize;
        position = dataEnd + chunk.DataSize % 2; // data of odd size is padded to even
        const bool isRiff = chunk.ChunkID == "RIFF";
        if (isRiff || chunk.ChunkID == "LIST") {
            std::array<char, CODE_BYTES> type{};
            if (!Read_At(chunk.DataPos, type))
                return;
            chunk.ListType.assign(type.data(), CODE_BYTES);
            if (chunk.Level < MAX_LEVEL) {
                openLists.push_back({static_cast<std::int32_t>(chunks.size()), dataEnd});
                position = chunk.DataPos + static_cast<std::int64_t>(CODE_BYTES);
            }
        }
        chunks.push_back(std::move(chunk));
        if (chunks.size() == 1 && !isRiff)
            return;
    }
}

std::int32_t RiffParserClass::FindChunk(std::int32_t startRow, const std::string& chunkName,
                                        const std::string& listType, std::int32_t maxLevel) const {
    const std::string name = Four_Characters(chunkName);
    const std::string type = Four_Characters(listType);
    for (auto row = static_cast<std::size_t>(std::max(startRow, 0)); row < chunks.size(); ++row) {
        const RiffChunk& chunk = chunks[row];
        if (chunk.ChunkID == name && (listType.empty() || chunk.ListType == type) &&
            (maxLevel < 0 || chunk.Level <= maxLevel))
            return static_cast<std::int32_t>(row);
    }
    return -1;
}

const RiffChunk* RiffParserClass::Row(std::int32_t row) const {
    const bool exists = row >= 0 && static_cast<std::size_t>(row) < chunks.size();
    return exists ? &chunks[static_cast<std::size_t>(row)] : nullptr;
}

bool RiffParserClass::GetChunkInfo(std::int32_t row, std::string& chunkId, std::string& listType,
                                   std::int64_t& size, std::int64_t& position) const {
    const RiffChunk* chunk = Row(row);
    if (chunk == nullptr)
        return false;
    chunkId = chunk->ChunkID;
    listType = chunk->ListType;
    size = chunk->DataSize;
    position = chunk->DataPos;
    return true;
}

std::int64_t RiffParserClass::GetChunkDataPos(std::int32_t row) const {
    const RiffChunk* chunk = Row(row);
    return chunk == nullptr ? -1 : chunk->DataPos;
}

template <typename Buffer>
bool RiffParserClass::Read_Chunk(std::int32_t row, Buffer& out, std::size_t maxBytes) {
    out.clear();
    const RiffChunk* chunk = Row(row);
    if (chunk == nullptr)
        return false;
    const std::size_t count = std::min(static_cast<std::size_t>(chunk->DataSize), maxBytes);
    if (static_cast<std::int64_t>(count) > sourceLength - chunk->DataPos)
        return false;
    out.resize(count);
    if (Read_At(chunk->DataPos, {reinterpret_cast<char*>(out.data()), count}))
        return true;
    out.clear();
    return false;
}

bool RiffParserClass::ReadData(std::int32_t row, std::string& out, std::size_t maxBytes) {
    return Read_Chunk(row, out, maxBytes);
}

bool RiffParserClass::ReadData_BytesArray(std::int32_t row, std::vector<std::uint8_t>& out,
                                          std::size_t maxBytes) {
    return Read_Chunk(row, out, maxBytes);
}

} // namespace tonvex
