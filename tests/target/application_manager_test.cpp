// The application-manager program: groups, states, commands, parameters.
#include <array>

#include "target/target_calls.h"

namespace simulated_target {
namespace {

using namespace applman;

using Words = std::vector<std::uint32_t>;

constexpr std::uint32_t kState = 11;
constexpr std::uint32_t kFileName = 5;
constexpr std::uint32_t kRegistered = 0;
constexpr std::uint32_t kLoaded = 1;
constexpr std::uint32_t kReady = 2;
constexpr std::uint32_t kRunning = 3;
constexpr std::uint32_t kAny = 4;
constexpr std::uint32_t kStopped = 6;

class Processes : public TargetCalls {
protected:
    /// A process whose binary is there, brought into a state.
    std::uint32_t processIn(std::uint32_t state) {
        static const std::map<std::uint32_t, std::vector<std::uint32_t>> kRoads = {
            {kRegistered, {}},
            {kLoaded, {kLoadAppl}},
            {kReady, {kLoadAppl, kInitAppl, kApplyAppl}},
            {kRunning, {kLoadApplComplete, kStartAppl}},
            {kStopped, {kLoadApplComplete, kStartAppl, kStopAppl}}};
        const std::uint32_t applId = newProcess();
        putBinary(applId);
        for (const std::uint32_t procedure : kRoads.at(state)) {
            EXPECT_EQ(command(procedure, applId).result, 0);
            EXPECT_EQ(commandState(applId).result, 0);
        }
        EXPECT_EQ(valueOf<std::uint32_t>(applId, kState), state);
        return applId;
    }

    Words processesIn(std::uint32_t state) {
        const auto reply = ask<TApplManValueResult>(kGetApplications, TApplManRequest{kMode, kAccessId, state});
        EXPECT_EQ(reply.result, 0);
        return std::get<Words>(reply.value);
    }

    std::uint32_t codeOfRefusal(const TApplManResult& reply) {
        EXPECT_EQ(reply.result, -1);
        return onlyCode(reply.errorList);
    }
};

TEST_F(Processes, AcceptACommandInItsStatesOnly) {
    constexpr int kNo = -1;
    constexpr int kGone = -2;
    constexpr std::uint32_t kStates[] = {kRegistered, kLoaded, kReady, kRunning, kStopped};
    struct Row {
        std::uint32_t procedure;
        std::array<int, 5> leadsTo; // by state, as in kStates
    };
    constexpr Row kRows[] = {
        {kInitAppl, {{kNo, kLoaded, kNo, kNo, kNo}}},
        {kLoadAppl, {{kLoaded, kLoaded, kLoaded, kNo, kLoaded}}},
        {kLoadApplComplete, {{kReady, kReady, kReady, kNo, kReady}}},
        {kStartAppl, {{kNo, kNo, kRunning, kNo, kRunning}}},
        {kStopAppl, {{kNo, kNo, kNo, kStopped, kNo}}},
        {kTerminateAppl, {{kNo, kRegistered, kRegistered, kRegistered, kRegistered}}},
        {kUnloadAppl, {{kGone, kGone, kGone, kGone, kGone}}},
    };
    for (const Row& row : kRows) {
        for (std::size_t i = 0; i < std::size(kStates); ++i) {
            SCOPED_TRACE("procedure " + std::to_string(row.procedure) + " in state " + std::to_string(kStates[i]));
            const std::uint32_t applId = processIn(kStates[i]);
            const TApplManResult reply = command(row.procedure, applId);
            if (row.leadsTo[i] == kNo) {
                EXPECT_EQ(codeOfRefusal(reply), 0x14a00801U);
                EXPECT_EQ(valueOf<std::uint32_t>(applId, kState), kStates[i]);
                continue;
            }
            EXPECT_EQ(reply.result, 0);
            EXPECT_EQ(commandState(applId).result, 0);
            if (row.leadsTo[i] == kGone) {
                EXPECT_EQ(codeOfRefusal(command(kStartAppl, applId)), 0x14a00803U);
            } else {
                EXPECT_EQ(valueOf<std::uint32_t>(applId, kState), static_cast<std::uint32_t>(row.leadsTo[i]));
            }
        }
    }
}

TEST_F(Processes, AreAppliedAfterTheInitialisationCallsThatTheyWant) {
    Options options = defaults();
    options.initialisationCalls = 2;
    restart(options);
    const std::uint32_t applId = processIn(kLoaded);
    EXPECT_EQ(valueOf<std::uint32_t>(applId, 31), 2U);
    for (int call = 0; call < 2; ++call) {
        EXPECT_EQ(codeOfRefusal(command(kApplyAppl, applId)), 0x14a0080cU);
        EXPECT_EQ(command(kInitAppl, applId).result, 0);
    }
    EXPECT_EQ(command(kApplyAppl, applId).result, 0);
    EXPECT_EQ(valueOf<std::uint32_t>(applId, kState), kReady);

    EXPECT_EQ(command(kLoadAppl, applId).result, 0); // a new load wants them again
    EXPECT_EQ(codeOfRefusal(command(kApplyAppl, applId)), 0x14a0080cU);
}

TEST_F(Processes, CarryACommandOutAfterItsDelay) {
    Options slow = defaults();
    slow.commandDelay = std::chrono::hours{1};
    restart(slow);
    const std::uint32_t applId = newProcess();
    EXPECT_EQ(command(kLoadAppl, applId).result, 0);
    EXPECT_EQ(commandState(applId).result, 2);
    EXPECT_EQ(commandState(newProcess()).result, 0);
    EXPECT_EQ(valueOf<std::uint32_t>(applId, kState), kRegistered);
    EXPECT_EQ(codeOfRefusal(command(kUnloadAppl, applId)), 0x14a00802U);
    EXPECT_EQ(commandState(applId).result, 2);
}

TEST_F(Processes, TellThatALoadWithoutBinaryFailedUntilTheNextCommand) {
    const std::uint32_t applId = newProcess();
    for (const std::uint32_t load : {kLoadAppl, kLoadApplComplete}) {
        EXPECT_EQ(command(load, applId).result, 0);
        for (int poll = 0; poll < 2; ++poll) {
            const TApplManResult state = commandState(applId);
            EXPECT_EQ(state.result, 1);
            EXPECT_EQ(onlyCode(state.errorList), 0x14a0080bU);
        }
        EXPECT_EQ(valueOf<std::uint32_t>(applId, kState), kRegistered);
    }
    putBinary(applId);
    EXPECT_EQ(command(kLoadAppl, applId).result, 0);
    EXPECT_EQ(commandState(applId).result, 0);
}

TEST_F(Processes, DoNotFindTheBinaryOfAnEarlierRun) {
    const std::uint32_t earlier = processIn(kReady);
    restart();
    const std::uint32_t applId = newProcess();
    EXPECT_NE(applId, earlier);
    EXPECT_EQ(command(kLoadAppl, applId).result, 0);
    EXPECT_EQ(commandState(applId).result, 1);
}

TEST_F(Processes, ThatNobodyKnowsAreRefusedEverywhere) {
    const std::uint32_t unknown = newProcess() + 1;
    for (const std::uint32_t procedure :
         {kInitAppl, kLoadAppl, kUnloadAppl, kStartAppl, kStopAppl, kApplyAppl, kLoadApplComplete, kTerminateAppl}) {
        EXPECT_EQ(codeOfRefusal(command(procedure, unknown)), 0x14a00803U) << procedure;
        EXPECT_EQ(codeOfRefusal(command(procedure, 0)), 0x14a00803U) << procedure;
    }
    EXPECT_EQ(codeOfRefusal(set(unknown, kFileName, Text{"a"})), 0x14a00803U);
    const auto read = get(unknown, kState);
    EXPECT_EQ(read.result, -1);
    EXPECT_EQ(onlyCode(read.errorList), 0x14a00803U);
    const auto polled = commandState(unknown);
    EXPECT_EQ(polled.result, 1);
    EXPECT_EQ(onlyCode(polled.errorList), 0x14a00803U);
    EXPECT_EQ(commandState(0).result, 0);
}

TEST_F(Processes, AreListedByState) {
    const std::uint32_t registered = processIn(kRegistered);
    const std::uint32_t running = processIn(kRunning);
    const std::uint32_t alsoRunning = processIn(kRunning);
    EXPECT_EQ(processesIn(kRegistered), Words{registered});
    EXPECT_EQ(processesIn(kRunning), (Words{running, alsoRunning}));
    EXPECT_EQ(processesIn(kStopped), Words{});
    EXPECT_EQ(processesIn(kAny), (Words{registered, running, alsoRunning}));
    command(kUnloadAppl, running);
    EXPECT_EQ(processesIn(kAny), (Words{registered, alsoRunning}));
    const auto refused = ask<TApplManValueResult>(kGetApplications, TApplManRequest{kMode, kAccessId, 7});
    EXPECT_EQ(refused.result, -1);
    EXPECT_EQ(onlyCode(refused.errorList), 0x14a0080eU);
}

TEST_F(Processes, HaveANumberOfTheirOwnInTheirGroup) {
    const TApplManGroupPart group = openGroup(2);
    const TApplManGroupPart another = openGroup(2);
    EXPECT_NE(group.words, another.words);
    EXPECT_NE(group.words[1], 0U);
    EXPECT_NE(group.words[2], 0U);

    TApplManGroupPart invented = group;
    invented.words[2] += 1000;
    TApplManGroupPart larger = group;
    larger.words[3] = 3;
    struct Try {
        std::uint32_t number;
        TApplManGroupPart group;
        std::uint32_t code; // 0: accepted
    };
    const TApplManGroupPart foreign{.words = {0, group.words[1] + 1, 9, 2, 0}};
    const TApplManGroupPart none{.words = {0, 0, 0, 1, 0}};
    const Try tries[] = {
        {0, group, 0x14a00807}, {3, group, 0x14a00807},   {1, {}, 0x14a00807},
        {2, group, 0},          {2, group, 0x14a00808},   {1, group, 0},
        {2, another, 0},        {3, larger, 0x14a0080a},  {1, invented, 0x14a00809},
        {1, foreign, 0},        {1, foreign, 0x14a00808}, {1, none, 0},
        {1, none, 0},
    };
    std::set<std::int32_t> ids;
    for (const Try& t : tries) {
        const auto reply = registerProcess(t.number, t.group);
        EXPECT_EQ(reply.result, t.code == 0 ? 0 : -1);
        EXPECT_EQ(t.code == 0 ? 0U : onlyCode(reply.errorList), t.code);
        if (t.code == 0) { EXPECT_TRUE(reply.applId > 0 && ids.insert(reply.applId).second) << reply.applId; }
    }
    const auto first = static_cast<std::uint32_t>(*ids.begin());
    EXPECT_EQ(valueOf<std::uint32_t>(first, 20), 2U);
    EXPECT_EQ(command(kUnloadAppl, first).result, 0);
    EXPECT_EQ(registerProcess(2, group).result, 0); // its place is free again
}

TEST_F(Processes, TellWhereTheirBinaryGoesByTheNameThatTheHostAnnounced) {
    const std::pair<const char*, const char*> names[] = {{"model.x86", "model.x86"},
                                                         {"D:\\appl\\model.x86", "model.x86"},
                                                         {"../../etc/passwd", "passwd"},
                                                         {"..", "application.bin"},
                                                         {"", "application.bin"},
                                                         {"a/", "application.bin"},
                                                         {"nul", "application.bin"},
                                                         {"b\xC3\xA4"
                                                          "d:name",
                                                          "b__d_name"}};
    const std::uint32_t applId = newProcess();
    const std::uint32_t other = newProcess();
    EXPECT_EQ(textOf(applId, 3), "application.bin");
    EXPECT_NE(textOf(applId, 4), textOf(other, 4));
    for (const auto& [announced, name] : names) {
        EXPECT_EQ(set(applId, kFileName, Text{announced}).result, 0);
        EXPECT_EQ(textOf(applId, 3), name) << announced;
        EXPECT_EQ(put(textOf(applId, 4), textOf(applId, 3), "binary"), file_transfer::kDone) << announced;
    }
}

TEST_F(Processes, KeepWhatHostsWriteAndTellTheRest) {
    const std::uint32_t applId = newProcess();
    const std::uint32_t other = newProcess();
    const std::pair<std::uint32_t, TApplManValue> written[] = {{5, Text{"a"}},
                                                               {7, std::int64_t{-1}},
                                                               {10, std::uint32_t{3}},
                                                               {13, std::vector<Text>{"a", ""}},
                                                               {17, Words{2, 3}},
                                                               {29, Words{1}},
                                                               {134, 0.5},
                                                               {9999, std::vector<std::int64_t>{1}}};
    for (const auto& [number, value] : written) {
        EXPECT_EQ(set(applId, number, value).result, 0) << number;
        EXPECT_EQ(get(applId, number).value, value) << number;
        EXPECT_NE(get(other, number).value, value) << number;
    }
    EXPECT_EQ(codeOfRefusal(set(applId, 5, std::uint32_t{1})), 0x14a00805U);
    EXPECT_EQ(codeOfRefusal(set(applId, kState, std::uint32_t{1})), 0x14a00806U);
    EXPECT_EQ(codeOfRefusal(set(applId, 43, std::vector<Text>{"date", "zone"})), 0x14a00804U);
    EXPECT_EQ(set(0, 43, std::vector<Text>{"date", "zone"}).result, 0);
    EXPECT_EQ(textOf(applId, 41), "Simulated application a");
}

TEST_F(Processes, AnswerForEveryParameterWithTheTypeThatHostsExpect) {
    Options options = defaults();
    options.cnSerialNumber = 77;
    options.commandTimeout = 33;
    restart(options);
    const std::uint32_t applId = newProcess();
    const std::map<std::size_t, std::vector<std::uint32_t>> ofProcess = {
        {kTagWord, {10, 11, 19, 20, 23, 24, 31, 40, 1024}},
        {kTagDouble, {131, 134}},
        {kTagText, {3, 4, 5, 6, 8, 14, 15, 33, 34, 35, 41, 42}},
        {kTagWords, {17, 21, 29, 30}},
        {kTagQuad, {7, 12, 16, 18}}};
    const std::map<std::size_t, std::vector<std::uint32_t>> ofManager = {
        {kTagWord, {1, 37, 40, 1025}}, {kTagText, {25, 26, 27, 32, 36, 38, 39, 1028}}, {kTagQuad, {1026, 1027}}};
    for (const auto& [owner, table] : {std::pair{applId, ofProcess}, std::pair{0U, ofManager}}) {
        for (const auto& [tag, numbers] : table) {
            for (const std::uint32_t number : numbers) {
                EXPECT_EQ(get(owner, number).result, 0) << number;
                EXPECT_EQ(get(owner, number).value.index(), tag) << number;
            }
        }
    }
    EXPECT_EQ(valueOf<std::uint32_t>(0, 37), 77U);
    EXPECT_EQ(valueOf<std::uint32_t>(0, 40), 33U);
    std::string negated = textOf(0, 38);
    for (char& letter : negated) {
        letter = static_cast<char>((256 - static_cast<unsigned char>(letter)) % 256);
    }
    EXPECT_EQ(negated, textOf(0, 1028));
}

TEST_F(Processes, RefuseParametersThatAreLackingUnknownOrOfAnother) {
    Options options = defaults();
    options.lackedParameters = {23, 9999};
    restart(options);
    const std::uint32_t applId = newProcess();
    const std::pair<std::uint32_t, std::uint32_t> unreadable[] = {{applId, 23}, {applId, 9999}, {applId, 9998},
                                                                  {applId, 37}, {0, 11},        {0, 20}};
    for (const auto& [owner, number] : unreadable) {
        const auto reply = get(owner, number);
        EXPECT_EQ(reply.result, -1) << number;
        EXPECT_EQ(onlyCode(reply.errorList), 0x14a00804U) << number;
    }
    EXPECT_EQ(codeOfRefusal(set(applId, 23, std::uint32_t{1})), 0x14a00804U);
    EXPECT_EQ(codeOfRefusal(set(applId, 9999, std::uint32_t{1})), 0x14a00804U);
}

TEST_F(Processes, AndTheirFreeParametersAreBounded) {
    const std::uint32_t applId = newProcess();
    for (std::uint32_t number = 5000; number < 5256; ++number) {
        ASSERT_EQ(set(applId, number, std::uint32_t{1}).result, 0);
    }
    EXPECT_EQ(codeOfRefusal(set(applId, 5256, std::uint32_t{1})), 0x14a0080dU);
    EXPECT_EQ(set(applId, 5000, Text{"another"}).result, 0);
    EXPECT_EQ(set(applId, kFileName, Text{"a"}).result, 0);

    const TApplManGroupPart group = openGroup(5000);
    std::uint32_t number = 1;
    while (number <= 5000 && registerProcess(number, group).result == 0) {
        ++number;
    }
    EXPECT_EQ(number, 4096U); // one was there
    EXPECT_EQ(onlyCode(registerProcess(number, group).errorList), 0x14a0080dU);
}

} // namespace
} // namespace simulated_target
