// A program that runs beside a test and tells on its first line of output where it listens.
#pragma once

#include <csignal>
#include <fcntl.h>
#include <string>
#include <sys/prctl.h>
#include <sys/wait.h>
#include <unistd.h>
#include <vector>

class ChildProcess {
public:
    /// Starts the program and waits for its first line. It does not outlive the test.
    explicit ChildProcess(std::vector<std::string> arguments) {
        std::vector<char*> words;
        for (std::string& argument : arguments) {
            words.push_back(argument.data());
        }
        words.push_back(nullptr);

        int ends[2] = {-1, -1};
        if (pipe2(ends, O_CLOEXEC) != 0) { return; }
        process_ = fork();
        if (process_ == 0) {
            prctl(PR_SET_PDEATHSIG, SIGKILL);
            dup2(ends[1], STDOUT_FILENO);
            execv(words[0], words.data());
            _exit(127);
        }
        close(ends[1]);
        char letter = '\0';
        while (read(ends[0], &letter, 1) == 1 && letter != '\n') {
            firstLine_ += letter;
        }
        close(ends[0]);
    }
    ~ChildProcess() {
        if (process_ <= 0) { return; }
        kill(process_, SIGTERM);
        waitpid(process_, nullptr, 0);
    }
    ChildProcess(const ChildProcess&) = delete;
    ChildProcess& operator=(const ChildProcess&) = delete;

    /// The last word of the first line, "a.b.c.d:port"; empty when the program could not be started or ended before.
    std::string address() const { return firstLine_.substr(firstLine_.rfind(' ') + 1); }

private:
    pid_t process_ = -1;
    std::string firstLine_{};
};
