#include "simulator/event_log.h"

#include <fstream>

#include "faults/calls.h"
#include "support/one_target.h"

namespace simulated_target {
namespace {

Json read(const std::string& file) {
    Json lines = Json::array();
    std::ifstream stream{file};
    for (std::string line; std::getline(stream, line);) {
        lines.push_back(Json::parse(line));
        EXPECT_EQ(lines.back()["schema"], 1);
    }
    return lines;
}

TEST(EventLog, TellsAsJsonWhatWasAskedAndWhichRulesFired) {
    const TemporaryFolder folder;
    const std::string file = (folder.path() / "log").string();
    EventLog log{file, LogFormat::json};
    Options options;
    options.onRequest = [&](const RequestReport& report) { log.request(report); };
    options.faults = {parseFault("start:delay=1"), parseFault("file.write@2:cut=9")};
    {
        TargetDevice t{options};
        Pool pool;
        Call call{pool, t.device, t.access};
        EXPECT_EQ(registerAppl(call), 0);
        EXPECT_EQ(command<KvApplMan_startAppl>(call), -150);
        t.target.stop();
        log.end(t.target.ruleCounts());
    }
    const Json lines = read(file);
    ASSERT_GE(lines.size(), 5U);
    const Json& refused = lines[lines.size() - 4];
    EXPECT_EQ(refused["event"], "request");
    EXPECT_EQ(refused["procedure"], "start");
    EXPECT_EQ(refused["application"], 1);
    EXPECT_EQ(refused["faults"], Json::array({"delay=1"}));
    EXPECT_EQ(refused["result"], -1);
    EXPECT_EQ(refused["messages"][0]["code"], "0x14a00801");
    EXPECT_GE(refused["durationMs"], 1.0);
    EXPECT_EQ(lines[lines.size() - 3]["fired"], 1);
    EXPECT_EQ(lines[lines.size() - 2]["rule"], "file.write@2:cut=9");
    EXPECT_EQ(lines[lines.size() - 2]["fired"], 0);
    EXPECT_EQ(lines.back()["event"], "end");
}

} // namespace
} // namespace simulated_target
