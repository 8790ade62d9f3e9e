#pragma once

#include "support/real_time.h"

#include <csignal>
#include <fcntl.h>
#include <spawn.h>
#include <string>
#include <sys/wait.h>
#include <unistd.h>
#include <vector>

namespace tonvex::test {

/// A child process, ended with this object.
class Child_Process {
public:
    Child_Process() = default;
    Child_Process(const Child_Process&) = delete;
    Child_Process& operator=(const Child_Process&) = delete;
    bool Start(std::vector<std::string> words) {
        std::vector<char*> arguments;
        arguments.reserve(words.size() + 1);
        for (std::string& word : words)
            arguments.push_back(word.data());
        arguments.push_back(nullptr);
        posix_spawn_file_actions_t actions;
        posix_spawn_file_actions_init(&actions);
        for (const int file : {STDOUT_FILENO, STDERR_FILENO})
            posix_spawn_file_actions_addopen(&actions, file, "/dev/null", O_WRONLY, 0);
        const int failed = posix_spawnp(&child, arguments[0], &actions, nullptr, arguments.data(), environ);
        posix_spawn_file_actions_destroy(&actions);
        if (failed != 0)
            child = -1;
        return failed == 0;
    }
    /// A JACK server must take its name out of a registry that has room for eight, so it is asked to end.
    void End(int signal = SIGTERM) {
        if (child <= 0)
            return;
        kill(child, signal);
        for (int tries = 0; tries < 200; ++tries) {
            if (waitpid(child, nullptr, WNOHANG) == child) {
                child = -1;
                return;
            }
            Wait_Ms(10);
        }
        kill(child, SIGKILL);
        waitpid(child, nullptr, 0);
        child = -1;
    }
    ~Child_Process() { End(); }

private:
    pid_t child = -1;
};

} // namespace tonvex::test
