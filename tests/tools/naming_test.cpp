// Devices, items and values by their names.
#include <filesystem>
#include <fstream>

#include <gtest/gtest.h>

#include "tools/kvapplman/devices.h"
#include "tools/kvapplman/failure.h"
#include "tools/kvapplman/times.h"
#include "tools/kvapplman/values.h"

namespace {

using tool::CommonOptions;
using tool::Configuration;
using tool::ExitCode;

class ConfigurationFile {
public:
    explicit ConfigurationFile(const char* text)
        : path_(std::filesystem::temp_directory_path() /
                ("kvapplman-" + std::to_string(reinterpret_cast<std::uintptr_t>(this)) + ".toml")) {
        std::ofstream{path_} << text;
    }
    ConfigurationFile(const ConfigurationFile&) = delete;
    ConfigurationFile& operator=(const ConfigurationFile&) = delete;
    ~ConfigurationFile() { std::filesystem::remove(path_); }

    CommonOptions options() const {
        CommonOptions options;
        options.configuration = kvapplman::toUtf8(path_);
        return options;
    }

private:
    std::filesystem::path path_;
};

template <class Work>
ExitCode endOf(Work work) {
    try {
        work();
    } catch (const tool::Failed& failed) { return failed.failure().exitCode; }
    return ExitCode::done;
}

TEST(Naming, ADeviceIsANameOfTheConfigurationOrAHost) {
    const ConfigurationFile file{"device = [\"left\", \"lathe\"]\n[devices]\nleft = \"127.0.0.2:4711\"\n"
                                 "[devices.lathe]\naddress = \"127.0.0.3\"\nserial = 0x10\n"};
    CommonOptions options = file.options();
    const Configuration configuration = tool::readConfiguration(options);
    const auto usual = tool::devicesOf(options, configuration);
    ASSERT_EQ(usual.size(), 2U);
    EXPECT_EQ(usual[0].address, "127.0.0.2:4711");
    EXPECT_EQ(usual[1].address, "127.0.0.3:19286");
    EXPECT_EQ(usual[1].serialNumber, 16U);

    options.devices = {"127.0.0.9:1", "-", "left"};
    const auto slots = tool::slotsOf(options, configuration);
    ASSERT_EQ(slots.size(), 3U);
    EXPECT_EQ(slots[0].address, "127.0.0.9:1");
    EXPECT_EQ(slots[1].address, "");
    EXPECT_EQ(slots[2].name, "left");
}

TEST(Naming, WhatIsNoDeviceIsRefused) {
    const struct {
        std::vector<std::string> devices;
        ExitCode exitCode;
    } cases[] = {
        {{}, ExitCode::usage},
        {{"127.0.0.2:0"}, ExitCode::usage},
        {{"127.0.0.2:65536"}, ExitCode::usage},
        {{":4711"}, ExitCode::usage},
        {{"-"}, ExitCode::usage},
        {{"127.0.0.2", "-"}, ExitCode::usage},
        {{"127.0.0.2", "127.0.0.2:19286"}, ExitCode::usage},
        {{"no-such-host.invalid"}, ExitCode::unreachable},
    };
    for (const auto& each : cases) {
        CommonOptions options;
        options.devices = each.devices;
        EXPECT_EQ(endOf([&] { tool::devicesOf(options, {}); }), each.exitCode)
            << (each.devices.empty() ? "" : each.devices.back());
    }
}

TEST(Naming, AConfigurationThatMakesNoSenseIsRefused) {
    for (const char* const text :
         {"devcie = \"left\"\n", "[devices]\nleft = [\"a\", \"b\"]\n", "[devices.left]\nserial = 5\n",
          "[devices.left]\naddress = \"a\"\nserial = \"x\"\n", "[others]\na = \"b\"\n"}) {
        const ConfigurationFile file{text};
        EXPECT_EQ(endOf([&] { tool::readConfiguration(file.options()); }), ExitCode::usage) << text;
    }
    CommonOptions missing;
    missing.configuration = "/no/such/file.toml";
    EXPECT_EQ(endOf([&] { tool::readConfiguration(missing); }), ExitCode::hostFile);
}

TEST(Naming, ValuesAreReadAsTheyAreWritten) {
    const auto time = tool::timeFrom("2026-01-31T12:34:56Z");
    ASSERT_TRUE(time.has_value());
    EXPECT_EQ(tool::textOf(*time), "2026-01-31T12:34:56Z");
    EXPECT_EQ(tool::timeFrom(std::to_string(time->time_since_epoch().count())), time);
    for (const char* const wrong : {"", "2026-02-30T00:00:00Z", "2026-01-31T12:34:56", "2026-01-31T25:00:00Z", "12x"}) {
        EXPECT_FALSE(tool::timeFrom(wrong).has_value()) << wrong;
    }

    EXPECT_EQ(tool::itemFrom("file-name").id, kvapplman::Item::fileName);
    EXPECT_EQ(tool::itemFrom("0x3ed").id, kvapplman::Item::cores);
    EXPECT_EQ(tool::stateFrom("running"), kvapplman::State::running);
    EXPECT_EQ(endOf([] { tool::itemFrom("nothing"); }), ExitCode::usage);

    using kvapplman::Kind;
    EXPECT_EQ(tool::textOf(tool::valueFrom(Kind::words, {"1", "0x10"})), "1 16");
    EXPECT_EQ(tool::textOf(tool::valueFrom(Kind::quad, {"-5"})), "-5");
    EXPECT_EQ(tool::jsonOf(tool::valueFrom(Kind::real, {"2.5"})), 2.5);
    EXPECT_EQ(tool::jsonOf(tool::valueFrom(Kind::texts, {"a", "b c"})), (tool::Json{"a", "b c"}));
    EXPECT_EQ(endOf([] { tool::valueFrom(Kind::word, {"-1"}); }), ExitCode::usage);
    EXPECT_EQ(endOf([] { tool::valueFrom(Kind::word, {"1", "2"}); }), ExitCode::usage);
    EXPECT_EQ(endOf([] { tool::valueFrom(Kind::quads, {"9223372036854775808"}); }), ExitCode::usage);
}

} // namespace
