#include "foreign_peer/child_process.h"

#include <csignal>
#include <fcntl.h>
#include <sys/prctl.h>
#include <sys/wait.h>
#include <unistd.h>

ChildProcess::ChildProcess(const std::vector<std::string>& arguments) {
    std::vector<char*> words;
    for (const std::string& argument : arguments) {
        words.push_back(const_cast<char*>(argument.c_str()));
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
    output_ = ends[0];
    char letter = '\0';
    while (read(output_, &letter, 1) == 1 && letter != '\n') {
        firstLine_ += letter;
    }
}

ChildProcess::~ChildProcess() {
    if (process_ > 0) {
        kill(process_, SIGTERM);
        waitpid(process_, nullptr, 0);
    }
    if (output_ != -1) { close(output_); }
}
