#pragma once

#include <filesystem>
#include <string>

namespace tonvex {

/// A file that grows beside its target and comes to its name, in one step, only when it is whole. A link is
/// followed, an existing file's permissions are kept. What was not kept goes with the object. Error texts are
/// the system's words. One thread.
class Unfinished_File {
public:
    Unfinished_File() = default;
    ~Unfinished_File() { Drop(); }
    Unfinished_File(const Unfinished_File&) = delete;
    Unfinished_File& operator=(const Unfinished_File&) = delete;

    /// False, with a text in error, when nothing can be written beside the target, or a file there is one
    /// that the process may not write.
    bool Begin(const std::filesystem::path& target, std::string& error);
    /// Open for reading and writing while the file is unfinished; -1 else.
    int Handle() const noexcept { return handle; }
    /// Flushes to the disk and puts the file under its name. False with a text in error: the old file then
    /// stands, and nothing is left behind.
    bool Keep(std::string& error);
    void Drop() noexcept;

private:
    std::filesystem::path target;     ///< links followed
    std::filesystem::path unfinished; ///< its name until then; empty: there is none
    int handle = -1;
};

} // namespace tonvex
