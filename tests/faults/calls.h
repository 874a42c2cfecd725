// The exported functions in one form, each with arguments that a target takes.
#pragma once

#include <algorithm>
#include <array>
#include <string>
#include <type_traits>

#include "api/KvApplicationManagerAP.h"

/// What a caller sees beside status and messages; what is not used is 0.
using Out = std::array<std::uint32_t, 5>;

constexpr std::uint32_t kFlashApplication = 7;

/// Where a function is called, and with what. Nothing of it needs memory during the call.
struct Call {
    KvCErrorListPool& pool;
    void* device = nullptr;
    void* access = nullptr;
    std::string file{}; // of the host
    std::uint32_t serialNumber = 1;
    std::uint32_t applId = 1;
    Out given{};
    Out out{};

    template <class... Parameters>
    std::int32_t operator()(std::int32_t (*function)(KvCErrorListPool&, void*, void*, Parameters...) noexcept,
                            std::type_identity_t<Parameters>... arguments) {
        return function(pool, device, access, arguments...);
    }

    void give(const Out& values) { given = out = values; }
    /// Each word is untouched or cleared.
    bool gotNothing() const {
        return std::equal(out.begin(), out.end(), given.begin(), [](auto o, auto g) { return o == 0 || o == g; });
    }
};

inline void ignoreProgress(const KvTApplManProgress*, void*) {}

/// Makes a group and deletes it.
inline std::int32_t createGroup(Call& c) {
    auto* group = reinterpret_cast<KvSApplGroupHandle*>(&c);
    const std::int32_t status = KvApplMan_createApplGroupHandle_2(c.pool, &c.device, &c.access, 1, &group);
    if (status != 0) {
        c.out[0] = group == nullptr ? 0 : 1;
        return status;
    }
    c.out[0] = group->ipAddresses[0];
    return KvApplMan_deleteApplGroupHandle(c.pool, group);
}

/// Registers a process, with which the later calls work.
inline std::int32_t registerAppl(Call& c) {
    std::uint32_t address = 0x0100007f;
    KvSApplGroupHandle group{0, 0, 0, 1, 0, &c.serialNumber, &address};
    std::uint32_t applId = 0xFFFFFFFF;
    const std::int32_t status = c(KvApplMan_registerAppl_2, &group, 1, &applId);
    c.out = {group.lastApplNo, applId == 0 ? 0U : 1U};
    if (applId != 0) { c.applId = applId; }
    return status;
}

template <auto kFunction>
std::int32_t command(Call& c) {
    return c(kFunction, c.applId);
}

template <auto kFunction>
std::int32_t flashCommand(Call& c) {
    return c(kFunction, kFlashApplication);
}

inline std::int32_t setParameter(Call& c) { return c(KvApplMan_setApplParameter, c.applId, 1008, "abc", 4); }

inline std::int32_t download(Call& c) {
    const char* const path = c.file.c_str();
    return KvApplMan_downloadApplUtf8(c.pool, &c.device, &c.access, &c.applId, &path, 0, 1, ignoreProgress, nullptr,
                                      nullptr);
}

/// One word.
template <std::uint32_t kItem>
std::int32_t getInfo(Call& c) {
    std::int32_t size = 4;
    c.give({0xFFFFFFFF});
    return c(KvApplMan_getApplInfo, c.applId, kItem, c.out.data(), &size);
}

inline std::int32_t getApplications(Call& c) {
    std::int32_t count = 2;
    c.give({9, 9, 2});
    const std::int32_t status = c(KvApplMan_getApplications, 4, c.out.data(), &count);
    c.out[2] = static_cast<std::uint32_t>(count);
    return status;
}

/// Makes a list and frees it.
inline std::int32_t getInfoList(Call& c) {
    auto* list = reinterpret_cast<KvTApplicationInfo*>(&c);
    std::uint32_t count = 9;
    const std::int32_t status = c(KvApplMan_getApplInfoList, &list, &count, nullptr);
    c.out = {list == nullptr ? 0U : 1U, count == 0 ? 0U : 1U};
    KvApplMan_freeApplInfoList(&list, &count);
    return status;
}

inline std::int32_t getCores(Call& c) {
    c.give({9, 9, 9, 9, 4});
    return c(KvApplMan_getAvailableCoreIDs, 0, &c.out[4], c.out.data());
}

inline std::int32_t loadFrom(Call& c, const std::string& source, const char* name, std::uint32_t type) {
    return c(KvApplMan_loadFileUtf8, c.applId, source.c_str(), "", name, type, 0, ignoreProgress, nullptr, "info");
}

inline std::int32_t loadFile(Call& c) { return loadFrom(c, c.file, "x", 1); }

inline std::int32_t getFiles(Call& c) {
    std::array<TApplManAddFileInfo, 4> files{TApplManAddFileInfo{{'x'}, {}, {}, 9, {}}};
    c.give({4, 9});
    const std::int32_t status = c(KvApplMan_getFileInfo, c.applId, c.out.data(), files.data());
    c.out[1] = files[0].entryWord;
    return status;
}

inline std::int32_t removeFile(Call& c) { return c(KvApplMan_removeFile, c.applId, "x", 1); }

inline std::int32_t getFlash(Call& c) {
    c.give({9, 9, 2});
    return c(KvApplMan_getFlashApplications, 0, &c.out[2], c.out.data());
}

inline std::int32_t getFlashInfo(Call& c) {
    std::int32_t size = 8;
    c.give({0x78787878, 9});
    return c(KvApplMan_getFlashApplInfo, kFlashApplication, 2, c.out.data(), &size);
}

inline std::int32_t setFlash(Call& c) {
    const std::uint64_t value = 5;
    return c(KvApplMan_setFlashApplParameter, kFlashApplication, 1200, &value, 8);
}
