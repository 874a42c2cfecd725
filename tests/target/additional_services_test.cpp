// What the simulated target refuses of additional files, cores and flash memory; what it does is shown by host programs.
#include "target/target_calls.h"

namespace simulated_target {
namespace {

using namespace applman;

using Words = std::vector<std::uint32_t>;

class AdditionalServices : public TargetCalls {
protected:
    std::uint32_t codeOfAdding(std::uint32_t applId, std::uint32_t type, const std::string& path,
                               const std::string& name) {
        const auto reply = ask<TApplManAddFileResult>(
            kAddFile, TApplManAddFileRequest{kMode, kAccessId, applId, type, "C:\\source.txt", path, name, 0});
        EXPECT_EQ(reply.result == 0, reply.errorList.empty());
        return reply.result == 0 ? 0 : onlyCode(reply.errorList);
    }
    std::uint32_t codeOfRemoving(std::uint32_t applId, std::uint32_t type, const std::string& name) {
        const auto reply =
            ask<TApplManResult>(kRemoveFile, TApplManRemoveFileRequest{kMode, kAccessId, applId, type, name});
        return reply.result == 0 ? 0 : onlyCode(reply.errorList);
    }
};

TEST_F(AdditionalServices, FilesThatCannotBeAreNeitherRegisteredNorRemoved) {
    Options options = defaults();
    options.lackedFileTypes = {6};
    restart(options);
    const std::uint32_t applId = newProcess();
    EXPECT_EQ(codeOfAdding(applId, 6, "", "f"), 0x14a01077U);
    EXPECT_EQ(codeOfAdding(applId, 4711, "", "f"), 0x14a01077U);
    EXPECT_EQ(codeOfAdding(applId, 3, "..", "f"), 0x14a0080fU);
    EXPECT_EQ(codeOfAdding(applId, 512, "", ".."), 0x14a0080fU);
    EXPECT_EQ(codeOfAdding(applId + 1, 3, "", "f"), 0x14a00803U);
    EXPECT_EQ(codeOfAdding(applId, 512, "", "tree"), 0U);
    EXPECT_EQ(put("applications/1/files/tree/deep", "f", "content"), file_transfer::kDone);
    EXPECT_EQ(codeOfRemoving(applId, 3, "tree"), 0x14a00810U) << "another type";
    EXPECT_EQ(codeOfRemoving(applId, 512, "tree"), 0U);
    EXPECT_FALSE(treeOf(root()).contains("applications/1/files/tree"));
    EXPECT_EQ(codeOfRemoving(applId, 512, "tree"), 0x14a00810U);
}

TEST_F(AdditionalServices, UnknownFlashApplicationsAndCoresAreRefused) {
    Options options = defaults();
    options.flashApplications = {{9, "nine"}};
    restart(options);
    const auto load = [&](std::int64_t id) {
        return ask<TApplManResult>(kLoadFlashAppl, TApplManFlashRequest{kAccessId, {1, id, {}, {}}});
    };
    EXPECT_EQ(onlyCode(load(8).errorList), 0x14a00812U);
    EXPECT_EQ(onlyCode(load((std::int64_t{1} << 32) + 9).errorList), 0x14a00812U) << "all 64 bits count";
    EXPECT_EQ(load(9).result, 0);
    EXPECT_EQ(ask<TApplManCoreIdResult>(kGetCoreIds, TApplManPairRequest{kAccessId, 3}).result, -1);
}

} // namespace
} // namespace simulated_target
