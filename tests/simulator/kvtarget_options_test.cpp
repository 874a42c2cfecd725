#include "simulator/kvtarget_options.h"

#include <fstream>

#include "support/one_target.h"

namespace simulated_target {
namespace {

TEST(CommandLine, IsRefusedWhenItMakesNoSense) {
    const char* const bad[] = {
        "--serial=x",          "--serial=-1",         "--serial=4294967296", "--serial=1 ",
        "--cores=999999999",   "--listen=",           "--listen=localhost",  "--listen=1.2.3.256",
        "--listen=1.2.3.04",   "--listen=:80",        "--listen=1.2.3.4:",   "--listen=1.2.3.4:65536",
        "--fault=6",           "--fault=6:",          "--fault=x:hang",      "--fault=6@0:hang",
        "--fault=6@3-2:hang",  "--fault=6@%0:hang",   "--fault=6:hang=1",    "--fault=6:cut",
        "--fault=6:cut=1x",    "--fault=12:hang",     "--fault=file.7:hang", "--fault=stop-it:hang",
        "--lack-procedure=21", "--lack-file-type=17", "--config=missing"};
    for (const char* const argument : bad) {
        EXPECT_THROW(parseCommandLine({argument}), BadCommandLine) << argument;
    }
    EXPECT_THROW(parseCommandLine({"--serial=1", "--serial=1"}), BadCommandLine);
    EXPECT_THROW(parseCommandLine({"--flash=7:a", "--flash=7:b"}), BadCommandLine);
}

TEST(CommandLine, ReplacesWhatAFileSays) {
    const TemporaryFolder folder;
    const std::string file = (folder.path() / "options").string();
    std::ofstream{file} << "flash = 7:a\nserial = 010\nlisten = 127.0.0.9:80\nflash = 8\n";
    const Options options = parseCommandLine({"--config", file, "--listen=127.0.0.8"}).target;
    EXPECT_EQ(options.flashApplications, (std::map<std::uint32_t, std::string>{{7, "a"}, {8, "flash8"}}));
    EXPECT_EQ(options.cnSerialNumber, 10U);
    EXPECT_EQ(options.store, "kvtarget-store-127.0.0.8");
    std::ofstream{file} << "serail = 1\n";
    EXPECT_THROW(parseCommandLine({"--config", file}), BadCommandLine);
}

} // namespace
} // namespace simulated_target
