// The order in which functions judge their arguments and handles, and what of the caller's memory is cleared by then.
#include "api/api_test.h"

namespace {

std::array<std::uint8_t, 3 * sizeof(TApplManAddFileInfo)> memory;
std::uint32_t number = 0;
std::uint32_t zeros[3] = {};
KvSApplGroupHandle group{1, 2, 0, 3, 0, zeros, zeros};
KvSApplGroupHandle withoutSerials{1, 2, 0, 3, 0, nullptr, zeros};
KvSApplGroupHandle withoutAddresses{1, 2, 0, 3, 0, zeros, nullptr};
const char* const texts[] = {"a", nullptr};
const std::uint64_t quad = 5;

/// An argument that points to something of ours, as whatever it is meant to be.
template <auto* kWhere>
struct PointerTo {
    template <class Value>
    operator Value*() const {
        return reinterpret_cast<Value*>(kWhere);
    }
};
constexpr PointerTo<&memory> room;
constexpr PointerTo<&number> count; // or size

constexpr auto enroll = [](auto... a) { return with(KvApplMan_registerAppl_2, a...); };
constexpr auto set = [](auto... a) { return with(KvApplMan_setApplParameter, 5, a...); };
constexpr auto read = [](auto... a) { return with(KvApplMan_getApplInfo, 1, a...); };
constexpr auto list = [](auto... a) { return with(KvApplMan_getApplications, 7, a...); };
constexpr auto infoList = [](auto... a) { return with(KvApplMan_getApplInfoList, a..., nullptr); };
constexpr auto cores = [](auto... a) { return with(KvApplMan_getAvailableCoreIDs, a...); };
constexpr auto files = [](auto... a) { return with(KvApplMan_getFileInfo, a...); };
constexpr auto send = [](auto... a) { return with(KvApplMan_loadFileUtf8, a..., 7, 0, nullptr, nullptr, nullptr); };
constexpr auto remove = [](auto... a) { return with(KvApplMan_removeFile, a..., 7); };
constexpr auto flash = [](auto... a) { return with(KvApplMan_getFlashApplications, 1, a...); };
constexpr auto readFlash = [](auto... a) { return with(KvApplMan_getFlashApplInfo, 7, a...); };
constexpr auto setFlash = [](auto... a) { return with(KvApplMan_setFlashApplParameter, 7, 0, a...); };

/// Of one slot.
DeviceCall create(bool devices, bool handles, std::uint32_t slots, KvSApplGroupHandle** made) {
    return [=](KvCErrorListPool& pool, void* device, void* access) {
        return KvApplMan_createApplGroupHandle_2(pool, devices ? &device : nullptr, handles ? &access : nullptr, slots,
                                                 made);
    };
}
DeviceCall load(bool devices, bool handles, const std::uint32_t* ids, const char* const* paths, std::uint32_t slots) {
    return [=](KvCErrorListPool& pool, void* device, void* access) {
        return KvApplMan_downloadApplUtf8(pool, devices ? &device : nullptr, handles ? &access : nullptr, ids, paths, 0,
                                          slots, nullptr, nullptr, nullptr);
    };
}

enum Handles { kNone, kNoAccess, kGood };

struct Row {
    Handles handles;
    std::vector<DeviceCall> calls;
    std::int32_t status;
    std::string message;      // without "KvApplMan_"
    std::uint32_t number = 0; // that is given
    std::size_t cleared = 0;  // bytes, from the first on
    bool numberCleared = false;
};

// clang-format off
const Row kRows[] = {
    {kNone, {create(false, true, 1, room), create(true, false, 1, room), create(true, true, 0, room),
             create(true, true, 1, nullptr)}, -100, "createApplGroupHandle_2 1024"},
    {kNone, {create(true, true, 1, room)}, -100, "checkDevHandleList 1024", 0, sizeof(void*)},
    {kNone, {enroll(nullptr, 1, room), enroll(&withoutSerials, 1, room), enroll(&withoutAddresses, 1, room),
             enroll(&group, 0, room), enroll(&group, 1, nullptr)}, -100, "registerAppl_2 1024"},
    {kNone, {enroll(&group, 1, room)}, -100, kBadHandles, 0, 4},
    {kNone, {set(1006, nullptr, -1), set(1001, texts, 2)}, -100, "setApplParameter 1024"},
    {kNone, {set(1006, &quad, -1), set(1008, &quad, 8), set(1004, &quad, 4), set(3073, &quad, 4)},
     -200, "setApplParameter 0x12500012"},
    {kNone, {set(1006, &quad, 4)}, -205, "setApplParameter 0x12500014"},
    {kNone, {set(1001, texts, 1)}, -100, kBadHandles},
    {kNone, {load(false, true, room, texts, 1), load(true, false, room, texts, 1), load(true, true, nullptr, texts, 1),
             load(true, true, room, nullptr, 1), load(true, true, room, texts, 0x01000000)}, // options are no slots
     -100, "downloadApplUtf8 1024"},
    {kNone, {load(true, true, room, texts, 1)}, -100, "checkDevHandleList 1024"},
    {kNone, {read(1, room, nullptr)}, -100, kBadHandles},
    {kGood, {read(1, room, nullptr), read(1, nullptr, count)}, -100, "getApplInfo 1024", 1},
    {kGood, {read(0, room, count)}, -200, "mapParamAndCheckParamSize 0x12500014", 8, 8},
    {kGood, {read(2, room, count)}, -200, "mapParamAndCheckParamSize 0x12500014", 0xffffffff},
    {kGood, {read(1, room, count)}, -205, "mapParamAndCheckParamSize 0x12500014", 4, 4},
    {kGood, {read(23, room, count)}, -205, "mapParamAndCheckParamSize 0x12500014", 0xffffffff},
    {kNone, {list(nullptr, nullptr)}, -100, kBadHandles},
    {kGood, {list(nullptr, nullptr), list(nullptr, count)}, -100, "getApplications 1024", 1},
    {kGood, {list(room, count)}, -200, "getApplications 0x12500012", 0xffffffff},
    {kGood, {list(room, count)}, -210, "getInternalApplState 0x12500015", 2, 8},
    {kNone, {infoList(nullptr, count), infoList(room, nullptr)}, -100, "getApplInfoList 0x1250005b", 2},
    {kNoAccess, {infoList(room, count)}, -100, kBadHandles, 2, sizeof(void*), true},
    {kNone, {cores(2, nullptr, room)}, -100, "getAvailableCoreIDs 1024"},
    {kNone, {cores(2, count, room)}, -205, "getAvailableCoreIDs 0x12500014", 2, 8},
    {kNone, {cores(1, count, nullptr)}, -100, kBadHandles, 2},
    {kNone, {send(0, "", "", ""), send(1, nullptr, "", ""), send(1, "", nullptr, ""), send(1, "", "", nullptr)},
     -100, "loadFileUtf8 1024"},
    {kNone, {send(1, "", "", "")}, -830, "loadFileUtf8 0x12500032(application specific file,,1,7)"},
    {kNone, {files(0, count, room), files(1, nullptr, room), files(1, count, nullptr)}, -100, "getFileInfo 1024", 2},
    {kNone, {files(1, count, room)}, -100, kBadHandles, 2, 2 * sizeof(TApplManAddFileInfo), true},
    {kNone, {remove(0, "n"), remove(1, nullptr)}, -100, "removeFile 1024"},
    {kNone, {flash(nullptr, nullptr)}, -100, kBadHandles},
    {kGood, {flash(nullptr, nullptr), flash(count, nullptr)}, -100, "getFlashApplications 1024", 1},
    {kGood, {flash(count, room)}, -850, "getFlashApplications 0x1250003a(1)", 2, 8},
    {kNone, {readFlash(1, room, nullptr)}, -100, kBadHandles},
    {kGood, {readFlash(1, room, nullptr), readFlash(1, nullptr, count)}, -100, "getFlashApplInfo 1024", 1},
    {kGood, {readFlash(1, room, count)}, -205, "mapParamAndCheckParamSize 0x12500014", 2, 2},
    {kGood, {setFlash(nullptr, 1)}, -100, "setFlashApplParameter 1024"},
    {kGood, {setFlash(&quad, 8)}, -205, "setFlashApplParameter 0x12500014"},
};
// clang-format on

class Arguments : public ApiTest {
protected:
    void judged(const Row& row, const DeviceCall& call) {
        memory.fill(0x55);
        auto expected = memory;
        std::fill_n(expected.begin(), row.cleared, std::uint8_t{0});
        number = row.number;
        Outcome got =
            outcome(call(pool, row.handles == kNone ? nullptr : t.device, row.handles == kGood ? t.access : nullptr));
        if (got.second.size() == 1 && got.second[0].starts_with("KvApplMan_")) { got.second[0].erase(0, 10); }
        EXPECT_EQ(got, (Outcome{row.status, {row.message}}));
        EXPECT_TRUE(memory == expected);
        EXPECT_EQ(number, row.numberCleared ? 0 : row.number);
    }
};

} // namespace

TEST_F(Arguments, AreJudgedInTheirOrderAndWhatTheyDeliverIsClearedBeforeAnythingIsSent) {
    for (const Row& row : kRows) {
        for (const DeviceCall& call : row.calls) {
            SCOPED_TRACE("row " + std::to_string(&row - kRows) + ", call " + std::to_string(&call - row.calls.data()));
            judged(row, call);
        }
    }
    EXPECT_EQ(procedures(), Words{});
}
