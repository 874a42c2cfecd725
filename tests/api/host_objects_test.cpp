// Targets, groups and applications as C++ objects, in front of a simulated target.
#include <algorithm>
#include <cctype>
#include <map>
#include <optional>
#include <stdexcept>

#include "KvApplMan.hpp"
#include "api/api_test.h"

using kvapplman::Error;
using kvapplman::Item;
using kvapplman::Param;
using kvapplman::State;
using kvapplman::Value;

namespace {

simulated_target::Options options() {
    simulated_target::Options options;
    options.cnSerialNumber = 4711;
    options.flashApplications = {{7, "logger"}};
    return options;
}

class HostObjects : public OneTarget {
protected:
    HostObjects() : OneTarget(options()) {}

    std::optional<kvapplman::Target> target{t.address};
    std::optional<kvapplman::Group> group{*target};
    const TemporaryFolder host;
    const std::string binary = host.file("program.bin", "binary");
};

/// The first that can answer.
Value readFromAny(const kvapplman::Target& target, const kvapplman::Application& application, Item item) {
    for (const auto& asked : {application, target.manager()}) {
        try {
            return asked.info(item);
        } catch (const Error&) {}
    }
    return target.flashApplication(7).info(item);
}

std::string constantOf(const std::string& family, std::string name) {
    std::transform(name.begin(), name.end(), name.begin(), [](unsigned char letter) { return std::toupper(letter); });
    return "KV_APPLMAN_" + family + "_" + name;
}

} // namespace

TEST(HostNames, AreThoseOfTheConstants) {
    std::map<std::string, std::uint32_t> constants, rows;
#define CONSTANT(name, camelCase, kCamelCase) constants[#name] = name;
#include <public_constants/APPLMAN_ITEM.h>
#include <public_constants/APPLMAN_PARAM.h>
#include <public_constants/APPLMAN_STATE.h>
#undef CONSTANT
    const auto add = [&](const std::string& family, const auto& table) {
        for (const auto& row : table) {
            rows[constantOf(family, row.name)] = static_cast<std::uint32_t>(row.id);
        }
    };
    add("ITEM", kvapplman::kItems);
    add("PARAM", kvapplman::kParams);
    add("STATE", kvapplman::kStates);
    EXPECT_EQ(rows, constants);
}

TEST_F(HostObjects, EveryItemIsReadWithItsType) {
    const auto application = group->registerApplication(1);
    group->download({binary});
    std::map<Item, Value> values;
    for (const auto& row : kvapplman::kItems) {
        values[row.id] = readFromAny(*target, application, row.id);
    }
    const std::map<Item, Value> expected{
        {Item::state, State::ready},
        {Item::fileName, std::string("program.bin")},
        {Item::groupSize, std::uint32_t{1}},
        {Item::groupSerialNumbers, std::vector<std::uint32_t>{4711}},
        {Item::groupAddresses, std::vector<std::string>{"127.0.0.1"}},
        {Item::text19, std::string("Simulated target")},
        {Item::cores, std::vector<std::uint32_t>{1}},
        {Item::flashValues, std::vector<std::int64_t>{}},
        {Item::commandTimeout, std::chrono::seconds{10}},
        {Item::double3073, 0.0},
    };
    for (const auto& [item, value] : expected) {
        EXPECT_EQ(values[item], value) << rowOf(kvapplman::kItems, item).name;
    }
    const auto age = std::chrono::system_clock::now() - std::get<kvapplman::Time>(values[Item::fileTime]);
    EXPECT_LT(std::chrono::abs(age), std::chrono::minutes{5});
}

TEST_F(HostObjects, ParametersAreReadBackHoweverLongTheyAre) {
    const auto application = group->registerApplication(1);
    const std::string text(1000, 'x');
    application.set<Param::text1002>(text);
    EXPECT_EQ(application.info<Item::text1002>(), text);
    for (const std::vector<std::uint32_t>& cores : {std::vector<std::uint32_t>(100, 3), {}}) {
        application.set(Param::cores, cores);
        EXPECT_EQ(application.info(Item::cores), Value(cores));
    }
    application.set<Param::arguments>({"a", "b"});
    application.set<Param::arguments>({});
    EXPECT_THROW(application.set(Param::double3073, std::uint32_t{1}), std::invalid_argument);
}

TEST_F(HostObjects, AnErrorCarriesWhatWasReportedInnermostFirst) {
    group->registerApplication(1);
    try {
        group->download({"missing.bin"});
        FAIL();
    } catch (const Error& error) {
        EXPECT_EQ(error.status(), KV_APPLMAN_STATUS_BINARY_NOT_FOUND);
        EXPECT_EQ(error.function(), "KvApplMan_downloadApplUtf8");
        ASSERT_EQ(error.messages().size(), 2U);
        const kvapplman::Message& inner = error.messages()[0];
        EXPECT_EQ(inner.code, std::uint32_t{KV_APPLMAN_MSG_BINARY_NOT_FOUND});
        EXPECT_EQ(inner.operation, "download");
        ASSERT_EQ(inner.arguments.size(), 1U);
        EXPECT_NE(inner.arguments[0].find("missing.bin"), std::string::npos);
        EXPECT_TRUE(error.has(KV_APPLMAN_MSG_LOAD_FAILED));
        EXPECT_EQ(error.what(), "KvApplMan_downloadApplUtf8 failed with status -250\n  " + inner.describe() + "\n  " +
                                    error.messages()[1].describe());
    }
}

TEST_F(HostObjects, MessagesOfASuccessGoToTheHandler) {
    std::vector<std::string> heard;
    target->onMessages([&](const char* function, const kvapplman::Messages& messages) {
        heard.push_back(function + messages.at(0).arguments.at(0));
    });
    EXPECT_TRUE(target->applications().empty());
    EXPECT_TRUE(target->applications("nobody").empty());
    EXPECT_EQ(heard, std::vector<std::string>{"KvApplMan_getApplInfoListnobody"});
}

TEST_F(HostObjects, WhatAProgressCallbackThrowsComesOutWhenTheCallHasEnded) {
    const auto application = group->registerApplication(1);
    int calls = 0;
    kvapplman::DownloadOptions options;
    options.progress = [&](const kvapplman::Progress& progress) {
        ++calls;
        EXPECT_EQ(progress.phaseName, "Load");
        throw std::domain_error("enough");
    };
    EXPECT_THROW(group->download({binary}, options), std::domain_error);
    EXPECT_EQ(calls, 1);
    EXPECT_EQ(application.state(), State::ready) << "the download went on";
}

TEST_F(HostObjects, ADeviceEndsWithTheLastObjectThatNeedsIt) {
    void* const device = target->device();
    std::optional<kvapplman::Application> application = group->registerApplication(1);
    {
        const kvapplman::Target movedTarget = std::move(*target);
        const kvapplman::Group movedGroup = std::move(*group);
        target.reset();
        group.reset();
        EXPECT_EQ(movedTarget.device(), device);
        movedGroup.download({binary});
    }
    EXPECT_EQ(application->state(), State::ready);
    application.reset();
    EXPECT_NE(KvPlatform_removeDevice(pool, device), 0) << "it is gone";
}

TEST_F(HostObjects, AnIdThatTheTargetGaveIsKeptWhenRegistrationFails) {
    t.target.addFault(simulated_target::parseFault("2@2:refuse")); // the group's data
    EXPECT_THROW(group->registerApplication(1), Error);
    const std::uint32_t id = group->applicationId(1);
    EXPECT_NE(id, 0U);
    EXPECT_THROW(group->registerApplication(1), Error) << "its turn is over";
    EXPECT_EQ(group->applicationId(1), id);
    EXPECT_THROW(group->registerApplication(0), std::out_of_range);
    EXPECT_THROW(group->download({binary, binary}), std::invalid_argument);
}
