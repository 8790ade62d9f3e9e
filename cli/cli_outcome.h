#pragma once

#include <string>
#include <utility>

namespace tonvex {

/// Exit status of the tool.
enum Cli_Status : int { CLI_DONE = 0, CLI_FAILED = 1, CLI_WRONG_WORDS = 2 };

/// How a verb ended: done, or the one line that tells what was wrong with which file.
struct Cli_Outcome {
    int status = CLI_DONE;
    std::string file;    ///< empty when no file is to blame
    std::string problem; ///< without a line break

    bool Done() const noexcept { return status == CLI_DONE; }
    static Cli_Outcome Failed(std::string file, std::string problem) {
        return {CLI_FAILED, std::move(file), std::move(problem)};
    }
    static Cli_Outcome Wrong_Words(std::string problem) { return {CLI_WRONG_WORDS, {}, std::move(problem)}; }
};

} // namespace tonvex
