// A target on which every function succeeds, in every state of its process.
#pragma once

#include "api/api_test.h"
#include "faults/calls.h"

class EveryFunction : public ApiTest {
protected:
    EveryFunction() : ApiTest(options()) {
        for (const std::uint32_t command : {3U, 4U, 5U, 6U, 7U, 8U, 9U, 13U, 20U, 22U, 23U, 26U, 27U, 28U, 29U}) {
            t.target.scriptAlways(command, wire::result(0));
        }
        prepare();
    }

    /// A process with a file.
    void prepare() {
        EXPECT_EQ(registerAppl(call), 0);
        EXPECT_EQ(loadFile(call), 0);
        EXPECT_EQ(messages(pool), Messages{});
    }

    TemporaryFolder folder{};
    Call call{*pool, t.device, t.access, folder.file("file.bin", "binary")};

private:
    static simulated_target::Options options() {
        simulated_target::Options options;
        options.flashApplications[kFlashApplication] = "flash";
        return options;
    }
};
