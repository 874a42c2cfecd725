// Files of the host that change while they are sent.
#include <fstream>
#include <functional>

#include "api/api_test.h"

namespace {

constexpr std::size_t kSize = 8 << 20;

class ChangingFile : public ApiTest {
protected:
    /// Loads the file, and changes it once while it is on its way.
    std::int32_t load(std::function<void()> change) {
        std::uint32_t applId = 0;
        KvSApplGroupHandle* group = nullptr;
        EXPECT_EQ(KvApplMan_createApplGroupHandle_2(pool, &t.device, &t.access, 1, &group), 0);
        EXPECT_EQ(KvApplMan_registerAppl_2(pool, t.device, t.access, group, 1, &applId), 0);
        EXPECT_EQ(KvApplMan_deleteApplGroupHandle(pool, group), 0);
        change_ = std::move(change);
        const auto changeOnce = [](const KvTApplManProgress* progress, void* test) {
            if (progress->fraction == 0 || progress->fraction == 1) { return; }
            if (const auto once = std::exchange(static_cast<ChangingFile*>(test)->change_, nullptr)) { once(); }
        };
        return KvApplMan_loadFileUtf8(pool, t.device, t.access, applId, file_.c_str(), "", "x", 1, 0, changeOnce, this,
                                      nullptr);
    }

    /// The size of what the target has; -1 when it has nothing.
    std::int64_t held() const {
        std::int64_t size = -1;
        for (const auto& entry : std::filesystem::recursive_directory_iterator{t.store()}) {
            if (!entry.is_regular_file()) { continue; }
            EXPECT_EQ(size, -1) << entry.path();
            size = static_cast<std::int64_t>(entry.file_size());
        }
        return size;
    }

    TemporaryFolder folder_{};
    const std::filesystem::path file_ = folder_.path() / "file.bin";
    const bool written_ = static_cast<bool>(std::ofstream{file_} << std::string(kSize, 'x') << std::flush);
    std::function<void()> change_{};
};

TEST_F(ChangingFile, ThatShrinksIsNotSent) {
    EXPECT_EQ(load([this] { std::filesystem::resize_file(file_, kSize / 2); }), -195);
    EXPECT_EQ(held(), -1);
}

TEST_F(ChangingFile, ThatGrowsIsSentAsItWas) {
    EXPECT_EQ(load([this] { std::ofstream{file_, std::ios::app} << std::string(kSize, 'y'); }), 0);
    EXPECT_EQ(held(), static_cast<std::int64_t>(kSize));
}

TEST_F(ChangingFile, ThatVanishesIsSentAsItWas) {
    EXPECT_EQ(load([this] { std::filesystem::remove(file_); }), 0);
    EXPECT_EQ(held(), static_cast<std::int64_t>(kSize));
}

} // namespace
