// Trees through the real file-transfer channel into the store of a simulated target.
#include "transfer/file_transfer.h"

#include <fstream>
#include <iterator>

#include <gtest/gtest.h>

#include "support/one_target.h"
#include "transfer/temporary_tree.h"
#include "transfer/text.h"

namespace applman {
namespace {

std::string contentOf(const std::filesystem::path& file) {
    std::ifstream stream{file, std::ios::binary};
    return {std::istreambuf_iterator<char>{stream}, {}};
}

TEST(TreeToTarget, ArrivesWithEveryFileAndEmptyDirectory) {
    TargetDevice target;
    TemporaryTree tree;
    Pool pool;
    tree.file("small", 3);
    tree.file("sub/large", 3'000'000);
    tree.file("sub/deeper/none", 0);
    tree.file("sub/\xC3\xA4", 40);
    std::filesystem::create_directory(tree.root / "empty");
    const std::u16string path = tree.path();
    ASSERT_EQ(copyDirToTarget(pool, target.device, nullptr, path.c_str(), "tree", 0, nullptr), Status::ok)
        << ::testing::PrintToString(messages(pool));
    const std::filesystem::path arrived = target.store() / "tree";
    for (const char* const name : {"small", "sub/large", "sub/deeper/none", "sub/\xC3\xA4"}) {
        ASSERT_TRUE(std::filesystem::is_regular_file(arrived / name)) << name;
        EXPECT_TRUE(contentOf(arrived / name) == contentOf(tree.root / name)) << name;
    }
    EXPECT_TRUE(std::filesystem::is_directory(arrived / "empty"));
}

TEST(TreeToTarget, AFileThatTheTargetRefusesIsNamed) {
    TargetDevice target;
    TemporaryTree tree;
    Pool pool;
    tree.file("f", 3);
    const std::u16string file = tree.path("f");
    EXPECT_EQ(copyBinaryToTarget(pool, target.device, nullptr, file, "..", "f", 0, nullptr), Status::transfer);
    EXPECT_EQ(messages(pool).back(),
              "copyBinaryToTarget 0x1250000d(transfer," + wideToMessageText(file.c_str()) + ",..,f)");
}

} // namespace
} // namespace applman
