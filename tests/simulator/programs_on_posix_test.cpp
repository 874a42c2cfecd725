// Programs that kvtarget runs, seen by a host and by the system that runs them.
#include <algorithm>
#include <csignal>
#include <fcntl.h>
#include <fstream>
#include <functional>
#include <optional>
#include <set>
#include <sys/prctl.h>
#include <sys/wait.h>
#include <thread>
#include <unistd.h>

#include "api/KvApplicationManagerAP.h"
#include "include/KvApplManConstants.h"
#include "simulator/programs/process_tree.h"
#include "support/one_target.h"

namespace {

namespace fs = std::filesystem;
using simulated_target::processesBelow;
using simulated_target::TreeProcess;

constexpr std::chrono::seconds kPatience{20};

bool comesTrue(const std::function<bool()>& condition) {
    const auto end = std::chrono::steady_clock::now() + kPatience;
    while (!condition()) {
        if (std::chrono::steady_clock::now() > end) { return false; }
        std::this_thread::sleep_for(std::chrono::milliseconds{1});
    }
    return true;
}

/// A kvtarget that does not outlive the test.
class TargetProcess {
public:
    explicit TargetProcess(std::vector<std::string> arguments) {
        std::vector<char*> words;
        for (std::string& argument : arguments) {
            words.push_back(argument.data());
        }
        words.push_back(nullptr);
        int ends[2] = {-1, -1};
        if (pipe2(ends, O_CLOEXEC) != 0) { return; }
        pid_ = fork();
        if (pid_ == 0) {
            prctl(PR_SET_PDEATHSIG, SIGKILL);
            dup2(ends[1], STDOUT_FILENO);
            execv(words[0], words.data());
            _exit(127);
        }
        close(ends[1]);
        for (char letter = '\0'; read(ends[0], &letter, 1) == 1 && letter != '\n';) {
            firstLine_ += letter;
        }
        close(ends[0]);
    }
    ~TargetProcess() { end(SIGTERM); }
    TargetProcess(const TargetProcess&) = delete;
    TargetProcess& operator=(const TargetProcess&) = delete;

    pid_t pid() const { return pid_; }
    std::string address() const { return firstLine_.substr(firstLine_.rfind(' ') + 1); }

    void end(int signal) {
        if (pid_ <= 0) { return; }
        kill(pid_, signal);
        waitpid(pid_, nullptr, 0);
        pid_ = -1;
    }

private:
    pid_t pid_ = -1;
    std::string firstLine_{};
};

class Programs : public testing::Test {
protected:
    Programs() {
        std::vector<std::string> words{KVTARGET, "--run", "--store", store.string(), "--delay",    "0",
                                       "--step", "30",    "--grace", "300",          "--log-size", "4"};
        if (geteuid() == 0) { words.emplace_back("--run-as-root"); }
        target.emplace(words);
        EXPECT_EQ(KvPlatform_addDevice(pool, target->address().c_str(), 0, &device), 0);
        EXPECT_EQ(KvHIM_createAccessRestrictionHandle(pool, device, &access), 0);
    }
    ~Programs() override { EXPECT_EQ(KvPlatform_removeDevice(pool, device), 0); }

    /// The status of a call and what it reported, a message that came with several replies once.
    struct Outcome {
        std::int32_t status;
        Messages reported;
        bool operator==(const Outcome&) const = default;
    };
    Outcome outcome(std::int32_t status) {
        Messages reported = messages(pool);
        reported.erase(std::unique(reported.begin(), reported.end()), reported.end());
        pool->reset();
        return {status, reported};
    }
    using Command = std::int32_t (*)(KvCErrorListPool&, void*, void*, std::uint32_t);
    Outcome run(Command command) { return outcome(command(pool, device, access, id)); }
    const Outcome kGood{0, {}};

    Outcome load(const std::string& program, const char* name = "program") {
        const fs::path file = around.path() / name;
        std::ofstream{file} << program;
        KvSApplGroupHandle* group = nullptr;
        EXPECT_EQ(KvApplMan_createApplGroupHandle_2(pool, &device, &access, 1, &group), 0);
        EXPECT_EQ(KvApplMan_registerAppl_2(pool, device, access, group, 1, &id), 0);
        EXPECT_EQ(KvApplMan_deleteApplGroupHandle(pool, group), 0);
        const std::string path = file.string();
        const char* const source = path.c_str();
        return outcome(
            KvApplMan_downloadApplUtf8(pool, &device, &access, &id, &source, 0, 1, nullptr, nullptr, nullptr));
    }
    void start(const std::string& program) {
        ASSERT_EQ(load(program), kGood);
        ASSERT_EQ(run(KvApplMan_startAppl), kGood);
    }
    Outcome setCores(std::vector<std::uint32_t> cores) {
        return outcome(KvApplMan_setApplParameter(pool, device, access, id, KV_APPLMAN_PARAM_CORES, cores.data(),
                                                  static_cast<std::int32_t>(4 * cores.size())));
    }

    std::string text(std::uint32_t item) {
        char buffer[500] = {};
        std::int32_t size = sizeof buffer;
        EXPECT_EQ(KvApplMan_getApplInfo(pool, device, access, id, item, buffer, &size), 0);
        return buffer;
    }
    std::uint32_t state() {
        std::uint32_t state = 0;
        std::int32_t size = sizeof state;
        EXPECT_EQ(KvApplMan_getApplInfo(pool, device, access, id, KV_APPLMAN_ITEM_STATE, &state, &size), 0);
        return state;
    }
    pid_t pid() {
        const std::string information = text(KV_APPLMAN_ITEM_INFORMATION_TEXT);
        const std::size_t place = information.find("pid ");
        return place == std::string::npos ? -1 : std::stoi(information.substr(place + 4));
    }
    bool says(const std::string& wanted) {
        return text(KV_APPLMAN_ITEM_INFORMATION_TEXT).find(wanted) != std::string::npos;
    }

    fs::path folder() const { return store / "applications" / std::to_string(id); }
    std::string printed() const { return contentOf(folder() / "output.log"); }
    bool prints(const std::string& wanted) const {
        return comesTrue([&] { return printed().find(wanted) != std::string::npos; });
    }

    /// Everything below the target but the runner and the keepers, which lead no group of their own.
    std::vector<TreeProcess> programs() const {
        std::vector<TreeProcess> all = processesBelow(target->pid());
        const pid_t runner = all.empty() ? 0 : all.front().group;
        std::erase_if(all, [&](const TreeProcess& process) { return process.group == runner; });
        return all;
    }
    bool atRest() const { return simulated_target::atRest(programs()); }

    TemporaryFolder around{};
    const fs::path store = around.path() / "store";
    std::optional<TargetProcess> target{};
    Pool pool{};
    void* device = nullptr;
    void* access = nullptr;
    std::uint32_t id = 0;
};

TEST_F(Programs, DoWhatTheirProcessesAreTold) {
    ASSERT_EQ(
        load("#!/bin/sh\n"
             "echo \"$KVTARGET_APPL_ID $KVTARGET_APPL_NO of $KVTARGET_GROUP_SIZE: $* $HOME in $PWD, $(ulimit -c)\"\n"
             "while :; do :; done\n"),
        kGood);
    const char* const arguments[] = {"one", "2 3"};
    ASSERT_EQ(outcome(KvApplMan_setApplParameter(pool, device, access, id, KV_APPLMAN_PARAM_ARGUMENTS, arguments, 2)),
              kGood);
    ASSERT_EQ(setCores({1}), kGood);
    ASSERT_EQ(run(KvApplMan_startAppl), kGood);
    EXPECT_TRUE(prints("1 1 of 1: one 2 3  in " + fs::canonical(folder()).string() + ", 0\n")) << printed();
    EXPECT_TRUE(says(", cores 1, CPU time ")) << text(KV_APPLMAN_ITEM_INFORMATION_TEXT);
    EXPECT_EQ(text(KV_APPLMAN_ITEM_TEXT_128).find("pid " + std::to_string(pid())), 0U);
    EXPECT_EQ(setCores({100000}).status, KV_APPLMAN_STATUS_PARAMETER);
    EXPECT_EQ(getpgid(pid()), pid());

    EXPECT_EQ(run(KvApplMan_pauseAppl), kGood);
    EXPECT_TRUE(atRest());
    const std::string before = text(KV_APPLMAN_ITEM_TEXT_128);
    EXPECT_TRUE(comesTrue([&] { // a busy machine may give it little of its time
        EXPECT_EQ(run(KvApplMan_stepAppl), kGood);
        EXPECT_TRUE(atRest());
        return text(KV_APPLMAN_ITEM_TEXT_128) != before;
    })) << before;
    EXPECT_EQ(run(KvApplMan_startAppl), kGood);
    EXPECT_FALSE(atRest());
    EXPECT_EQ(run(KvApplMan_stopAppl), kGood);
    EXPECT_TRUE(says("ended as ordered, signal 15 (TERM), CPU time "));
    EXPECT_EQ(run(KvApplMan_startAppl), kGood) << "a stopped one may be started again";
    EXPECT_EQ(run(KvApplMan_unloadAppl), kGood);
    EXPECT_FALSE(fs::exists(folder()));
    EXPECT_TRUE(programs().empty());
}

TEST_F(Programs, EndWhenTheyAreAskedToOrAreKilledAfterTheGrace) {
    start("#!/bin/sh\ntrap '' TERM\necho ready\nwhile :; do sleep 0.01; done\n");
    ASSERT_TRUE(prints("ready"));
    const auto begin = std::chrono::steady_clock::now();
    EXPECT_EQ(run(KvApplMan_stopAppl), kGood);
    EXPECT_GE(std::chrono::steady_clock::now() - begin, std::chrono::milliseconds{300});
    EXPECT_TRUE(says("ended as ordered, signal 9 (KILL)"));

    start("#!/bin/sh\ntrap 'exit 7' TERM\necho ready\nwhile :; do sleep 0.01; done\n");
    ASSERT_TRUE(prints("ready"));
    EXPECT_EQ(run(KvApplMan_pauseAppl), kGood);
    EXPECT_EQ(run(KvApplMan_stopAppl), kGood) << "a paused one hears the request, too";
    EXPECT_TRUE(says("ended as ordered, exit code 7"));
}

TEST_F(Programs, ArePausedAndKilledWithWhateverTheyHaveStarted) {
    start("#!/bin/sh\nsleep 1000 &\nsetsid sleep 1000 &\n(setsid sh -c 'sleep 1000; :' &)\necho ready\nwait\n");
    ASSERT_TRUE(prints("ready"));
    ASSERT_TRUE(comesTrue([&] { return programs().size() == 5; }));
    EXPECT_FALSE(atRest());
    EXPECT_EQ(run(KvApplMan_pauseAppl), kGood);
    EXPECT_TRUE(atRest());
    EXPECT_EQ(programs().size(), 5U);
    EXPECT_EQ(run(KvApplMan_terminateAppl), kGood);
    EXPECT_TRUE(programs().empty());
}

TEST_F(Programs, ThatEndByThemselvesAreReportedWithEveryAnswer) {
    start("#!/bin/sh\nexec sleep 1000\n");
    kill(pid(), SIGKILL);
    EXPECT_TRUE(comesTrue([&] { return state() == KV_APPLMAN_STATE_STOPPED; }));
    pool->reset();
    const std::string killed = "applicationManager 0x14a00814(1,signal 9 (KILL))";
    const std::uint32_t word = 1;
    EXPECT_EQ(outcome(KvApplMan_setApplParameter(pool, device, access, id, KV_APPLMAN_PARAM_WORD_1008, &word, 4)),
              (Outcome{0, {killed}}));
    EXPECT_TRUE(says("ended by itself, signal 9 (KILL)"));
    pool->reset();
    EXPECT_EQ(
        run(KvApplMan_pauseAppl),
        (Outcome{-165, {killed, "applicationManager 0x14a00801(pause,1,6)", "KvApplMan_pauseAppl 0x12500038(1)"}}));
    EXPECT_EQ(run(KvApplMan_startAppl).status, 0);
    EXPECT_EQ(run(KvApplMan_pauseAppl), kGood) << "it is another run now";
    EXPECT_EQ(run(KvApplMan_terminateAppl), kGood);

    ASSERT_EQ(load("#!/bin/sh\nread line\nexit 3\n"), kGood); // there is nothing to read
    EXPECT_EQ(run(KvApplMan_startAppl).status, 0);
    EXPECT_TRUE(comesTrue([&] { return state() == KV_APPLMAN_STATE_STOPPED; }));
    EXPECT_TRUE(says("ended by itself, exit code 3"));
}

TEST_F(Programs, DoNotOutliveATargetThatIsKilled) {
    start("#!/bin/sh\ntrap '' TERM HUP\nsetsid sleep 1000 &\necho ready\nwhile :; do sleep 0.1; done\n");
    ASSERT_TRUE(prints("ready"));
    std::set<pid_t> all;
    for (const TreeProcess& process : processesBelow(target->pid())) {
        all.insert(process.pid);
    }
    ASSERT_GE(all.size(), 4U) << "runner, keeper, shell and sleep";
    target->end(SIGKILL);
    const auto lives = [&](const TreeProcess& process) { return !process.ended() && all.contains(process.pid); };
    EXPECT_TRUE(comesTrue([&] { return std::ranges::none_of(processesBelow(1), lives); }));
}

TEST_F(Programs, LeaveNothingBehind) {
    const auto held = [&] {
        const fs::path descriptors = "/proc/" + std::to_string(target->pid()) + "/fd";
        return std::pair{processesBelow(target->pid()).size(),
                         std::distance(fs::directory_iterator{descriptors}, fs::directory_iterator{})};
    };
    ASSERT_EQ(load("#!/bin/sh\nsleep 1000 &\nexec sleep 1000\n"), kGood);
    const auto before = held();
    for (int i = 0; i < 200; ++i) {
        ASSERT_EQ(run(KvApplMan_startAppl), kGood) << i;
        ASSERT_EQ(run(KvApplMan_stopAppl), kGood) << i;
    }
    EXPECT_TRUE(comesTrue([&] { // the connection of the download may still have been there before
        const auto now = held();
        return now.first == before.first && now.second <= before.second;
    }));
}

TEST_F(Programs, ThatCannotBeExecutedAreNotLoadedOrNotStarted) {
    const std::string elf{"\177ELF\2\1\1\0\0\0\0\0\0\0\0\0\2\0\1\0", 20}; // for the first machine that had a number
    const std::pair<std::string, const char*> bad[] = {{"text", "it is neither an ELF file nor begins with #!"},
                                                       {elf, "it is an ELF file for another machine"}};
    for (const auto& [content, reason] : bad) {
        const Outcome loaded = load(content);
        EXPECT_EQ(loaded.status, KV_APPLMAN_STATUS_LOAD);
        EXPECT_EQ(loaded.reported.at(0),
                  "applicationManager 0x14a00816(applications/" + std::to_string(id) + ",program," + reason + ")");
    }
    ASSERT_EQ(load("#!/no/such/interpreter\n"), kGood);
    EXPECT_EQ(run(KvApplMan_startAppl),
              (Outcome{-150,
                       {"applicationManager 0x14a00815(3,it, its interpreter or its loader is not there)",
                        "waitWhileBusy 0x12500004"}}));
    EXPECT_EQ(state(), KV_APPLMAN_STATE_READY);
}

TEST_F(Programs, KeepOnlyTheLatestOfWhatTheyPrint) {
    start("#!/bin/sh\ni=0; while [ $i -lt 2000 ]; do i=$((i + 1)); echo line $i; done\necho last; exec sleep 1000\n");
    ASSERT_TRUE(prints("last"));
    EXPECT_LE(fs::file_size(folder() / "output.log"), 2048U);
    EXPECT_EQ(fs::file_size(folder() / "output.old.log"), 2048U);
}

} // namespace
