#include "app/stock_data.h"

#include "base/file_io.h"
#include "base/text_codec.h"

#include <algorithm>
#include <array>
#include <cstdio>
#include <map>
#include <optional>
#include <span>

namespace tonvex {

namespace fs = std::filesystem;

namespace {

constexpr std::size_t LARGEST_STOCK_FILE = std::size_t{64} << 20;
constexpr std::size_t LARGEST_MANIFEST = std::size_t{4} << 20;

using Bytes = std::span<const std::uint8_t>;

/// FNV-1a of 64 bits: tells one version of a file from another, no more.
std::string Content_Hash(Bytes bytes) {
    std::uint64_t hash = 0xcbf29ce484222325U;
    for (const std::uint8_t byte : bytes)
        hash = (hash ^ byte) * 0x100000001b3U;
    std::array<char, 17> text{};
    std::snprintf(text.data(), text.size(), "%016llx", static_cast<unsigned long long>(hash));
    return text.data();
}

/// Lines of hash, one blank, place of the file in the user's folders.
class Manifest {
public:
    explicit Manifest(fs::path path) : file(std::move(path)) {
        const auto bytes = Read_File(file, LARGEST_MANIFEST);
        if (!bytes)
            return;
        for (const std::string& line :
             Split_Lines({reinterpret_cast<const char*>(bytes->data()), bytes->size()})) {
            if (line.size() > 17 && line[16] == ' ')
                hashes[line.substr(17)] = line.substr(0, 16);
        }
    }
    bool Holds(const std::string& place, const std::string& hash) const {
        const auto found = hashes.find(place);
        return found != hashes.end() && found->second == hash;
    }
    void Put(const std::string& place, const std::string& hash) {
        if (Holds(place, hash))
            return;
        hashes[place] = hash;
        changed = true;
    }
    bool Save(std::string& error) const {
        if (!changed)
            return true;
        std::string text;
        for (const auto& [place, hash] : hashes)
            text.append(hash).append(" ").append(place).append("\n");
        return Replace_File(file, Bytes(reinterpret_cast<const std::uint8_t*>(text.data()), text.size()),
                            error);
    }

private:
    fs::path file;
    std::map<std::string, std::string> hashes;
    bool changed = false;
};

void Bring_File(const fs::path& shipped, const fs::path& target, Manifest& manifest, Stock_Result& result) {
    const auto stock = Read_File(shipped, LARGEST_STOCK_FILE);
    if (!stock) {
        result.errors.push_back(shipped.string() + ": cannot be read");
        return;
    }
    const std::string place = target.string();
    const std::string stockHash = Content_Hash(*stock);
    std::error_code ignored;
    const bool exists = fs::exists(fs::symlink_status(target, ignored));
    if (exists) {
        const auto present = Read_File(target, LARGEST_STOCK_FILE);
        const std::string presentHash = present ? Content_Hash(*present) : std::string();
        if (presentHash == stockHash) {
            manifest.Put(place, stockHash);
            return;
        }
        if (!manifest.Holds(place, presentHash)) {
            ++result.kept;
            return;
        }
    }
    fs::create_directories(target.parent_path(), ignored);
    std::string error;
    if (!Replace_File(target, *stock, error)) {
        result.errors.push_back(error);
        return;
    }
    manifest.Put(place, stockHash);
    ++(exists ? result.updated : result.copied);
}

std::vector<fs::path> Files_Below(const fs::path& folder, Stock_Result& result) {
    std::vector<fs::path> files;
    std::error_code error;
    if (!fs::is_directory(folder, error))
        return files;
    for (fs::recursive_directory_iterator at(folder, error), end; !error && at != end; at.increment(error)) {
        std::error_code ignored;
        if (at->is_regular_file(ignored))
            files.push_back(at->path());
    }
    if (error)
        result.errors.push_back(folder.string() + ": " + error.message());
    std::sort(files.begin(), files.end());
    return files;
}

} // namespace

Stock_Result Copy_Stock_Files(const std::vector<Stock_Folder>& folders, const fs::path& manifestFile) {
    Stock_Result result;
    Manifest manifest(manifestFile);
    for (const auto& [shippedFolder, userFolder] : folders) {
        std::error_code ignored;
        if (userFolder.empty() || fs::equivalent(shippedFolder, userFolder, ignored))
            continue;
        for (const fs::path& shipped : Files_Below(shippedFolder, result))
            Bring_File(shipped, userFolder / shipped.lexically_relative(shippedFolder), manifest, result);
    }
    std::string error;
    if (!manifest.Save(error))
        result.errors.push_back(error);
    return result;
}

} // namespace tonvex
