// The program as scripts see it: what it prints, and its exit code.
#include <cstdio>
#include <sys/wait.h>

#include "support/one_target.h"

namespace {

struct Ended {
    int code;
    std::string output;
};

/// Runs the program with a shell, and gives it a line of commands.
Ended run(const std::string& arguments) {
    const TemporaryFolder folder;
    const std::string store = " --store " + folder.path().string();
    std::FILE* const output =
        popen(("echo quit | " KVTARGET + store + " --control " + arguments + " 2>&1").c_str(), "r");
    std::string text;
    for (int letter = std::fgetc(output); letter != EOF; letter = std::fgetc(output)) {
        text += static_cast<char>(letter);
    }
    return {WEXITSTATUS(pclose(output)), text};
}

TEST(Kvtarget, EndsWithACodeThatSaysWhy) {
    const std::pair<const char*, int> cases[] = {{"", 0},
                                                 {"--fault start:hang", 0},
                                                 {"--fault start:hang --require-faults", 3},
                                                 {"--fault stat:hang", 2},
                                                 {"--listen 192.0.2.1", 1},
                                                 {"--log=/missing/log", 1},
                                                 {"--version", 0}};
    for (const auto& [arguments, code] : cases) {
        const Ended ended = run(arguments);
        EXPECT_EQ(ended.code, code) << arguments << "\n" << ended.output;
    }
    const std::string listening = "kvtarget listening on 127.0.0.1:";
    const Ended ended = run("");
    EXPECT_TRUE(ended.output.starts_with(listening)) << ended.output;
    EXPECT_TRUE(ended.output.ends_with("\n{\"schema\":1,\"ok\":true}\n")) << ended.output;
}

} // namespace
