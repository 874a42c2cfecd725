// A program that runs beside a test and tells on its first line of output where it listens.
#pragma once

#include <string>
#include <sys/types.h>
#include <vector>

class ChildProcess {
public:
    /// Starts the program and waits for its first line. It does not outlive the test.
    explicit ChildProcess(const std::vector<std::string>& arguments);
    ~ChildProcess();
    ChildProcess(const ChildProcess&) = delete;
    ChildProcess& operator=(const ChildProcess&) = delete;

    /// The first line of output; empty when the program could not be started or ended before.
    const std::string& firstLine() const { return firstLine_; }

    /// The last word of the first line: "a.b.c.d:port".
    std::string address() const { return firstLine_.substr(firstLine_.rfind(' ') + 1); }

private:
    pid_t process_ = -1;
    int output_ = -1;
    std::string firstLine_{};
};
