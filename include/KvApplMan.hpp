/// @file
/// The application manager access point for C++17: targets, groups, applications. Header only; all 24 functions of
/// KvApplicationManagerAP.h are reached through it.
///
/// - Errors: a call that fails throws an Error with status and messages. Memory that runs out gives std::bad_alloc, but
///   inside the library an Error, too.
/// - Messages of a call that succeeds, warnings of the target for instance, go to the handler of Target::onMessages.
/// - Ownership: a Target holds device and access-restriction handle. Groups and applications share them, so that they
///   may outlive the Target object; the last one closes the connections. That must be before the library is unloaded.
/// - Threads: every call has a pool of its own, so objects may be used from several threads at a time. Only what
///   changes an object (assignment, Target::onMessages, Group::registerApplication) must not overlap with others.
/// - Blocking: as the functions do; the ones behind each call are named with it.
/// - Texts are std::string in UTF-8. Host paths are std::filesystem::path.
#ifndef KV_APPL_MAN_HPP
#define KV_APPL_MAN_HPP

#include <cstddef>
#include <cstdint>
#include <filesystem>
#include <memory>
#include <stdexcept>
#include <string>
#include <utility>
#include <vector>

#include "KvApplManApplication.hpp"
#include "KvApplManConstants.h"
#include "KvApplManItems.hpp"
#include "KvApplManPlatform.hpp"
#include "KvApplicationManagerAP.h"

namespace kvapplman {

/// An application and what it says of itself.
struct ListedApplication {
    std::uint32_t id = 0;   ///< application ID
    std::string infoText{}; ///< its information text
};

/// How a group is downloaded.
struct DownloadOptions {
    std::uint32_t option = 0;               ///< handed to the targets unchanged
    std::vector<std::string> targetPaths{}; ///< per slot the name that the target is told in place of the path; may be
                                            ///< shorter than the group, and empty texts count as none
    ProgressCallback progress{};            ///< receives the progress; may be empty
};

/// A target: its device, and an access-restriction handle for all that is asked of it. Nothing is sent before the first
/// call, which connects.
class Target {
public:
    /// @param address "a.b.c.d:port"; each target needs an IPv4 address of its own
    /// @param cnSerialNumber serial number of the device's CN, 0 when unknown
    /// @throws Error the address is malformed
    explicit Target(const std::string& address, std::uint32_t cnSerialNumber = 0)
        : link_(std::make_shared<detail::Link>(address, cnSerialNumber)) {}
    /// @cond
    Target(Target&&) = default;
    Target& operator=(Target&&) = default;
    Target(const Target&) = delete;
    Target& operator=(const Target&) = delete;
    ~Target() = default;
    /// @endcond

    /// Names who receives the messages of calls that succeed, also of groups and applications of this target. Without a
    /// handler they are dropped.
    /// @param handler the handler; a group uses that of its first target
    void onMessages(MessageHandler handler) { link_->handler = std::move(handler); }

    /// @return the device handle, for plain functions; valid as long as this target, its groups and applications
    void* device() const noexcept { return link_->device.handle(); }

    /// @return the access-restriction handle, likewise
    void* access() const noexcept { return link_->access.handle(); }

    /// Names an application process; nothing is sent.
    /// @param id its application ID
    /// @return the application
    Application application(std::uint32_t id) const { return {link_, id}; }

    /// Names the target's application manager, for items and parameters that are its own; nothing is sent.
    /// @return the application manager
    Application manager() const { return application(KV_APPLMAN_MANAGER); }

    /// Names an application in flash memory; nothing is sent.
    /// @param id its ID there
    /// @return the flash application
    FlashApplication flashApplication(std::uint32_t id) const { return {link_, id}; }

    /// Lists the applications in a state (KvApplMan_getApplications).
    /// @param state the state; State::any lists all
    /// @return their IDs in the target's order
    std::vector<std::uint32_t> applicationIds(State state = State::any) const {
        constexpr std::int32_t kFirstTry = KV_APPLMAN_MOST_LISTED;
        const auto ask = [&](const Pool& pool, std::uint32_t* ids, std::int32_t* count) {
            return KvApplMan_getApplications(pool, device(), access(), static_cast<std::uint32_t>(state), ids, count);
        };
        return link_->list<std::uint32_t>("KvApplMan_getApplications", kFirstTry, ask);
    }

    /// Lists at most 128 applications with their information texts (KvApplMan_getApplInfoList).
    /// @param name lists only those with this file name, without its last extension; empty lists all
    /// @return the applications in the target's order
    std::vector<ListedApplication> applications(const std::string& name = {}) const {
        const Pool pool;
        List list;
        const std::int32_t status =
            KvApplMan_getApplInfoList(pool, device(), access(), &list.elements, &list.count, name.c_str());
        link_->finish(status, "KvApplMan_getApplInfoList", pool);
        std::vector<ListedApplication> all;
        for (std::uint32_t i = 0; i < list.count; ++i)
            all.push_back({list.elements[i].applId, list.elements[i].infoText});
        return all;
    }

    /// Lists processor cores (KvApplMan_getAvailableCoreIDs). A call that fails may read as no cores.
    /// @param kind which ones
    /// @return their IDs
    std::vector<std::uint32_t> cores(Cores kind = Cores::all) const {
        constexpr std::uint32_t kFirstTry = 64;
        const auto ask = [&](const Pool& pool, std::uint32_t* ids, std::uint32_t* count) {
            return KvApplMan_getAvailableCoreIDs(pool, device(), access(), static_cast<std::uint32_t>(kind), count,
                                                 ids);
        };
        return link_->list<std::uint32_t>("KvApplMan_getAvailableCoreIDs", kFirstTry, ask);
    }

    /// Lists the applications in flash memory (KvApplMan_getFlashApplications). A call that fails may read as none.
    /// @return their IDs
    std::vector<std::uint32_t> flashApplicationIds() const {
        constexpr std::uint32_t kFirstTry = 64;
        const auto ask = [&](const Pool& pool, std::uint32_t* ids, std::uint32_t* count) {
            return KvApplMan_getFlashApplications(pool, device(), access(), KV_APPLMAN_FLASH_MODE_ALL, count, ids);
        };
        return link_->list<std::uint32_t>("KvApplMan_getFlashApplications", kFirstTry, ask);
    }

private:
    friend class Group;

    struct List {
        List() = default;
        List(const List&) = delete;
        List& operator=(const List&) = delete;
        ~List() { KvApplMan_freeApplInfoList(&elements, &count); }

        KvTApplicationInfo* elements = nullptr;
        std::uint32_t count = 0;
    };

    detail::SharedLink link_;
};

/// A group of application processes, one per slot. Its end sends nothing; the processes stay on their targets.
class Group {
public:
    /// Opens a group of one process (KvApplMan_createApplGroupHandle_2).
    /// @param target the target
    explicit Group(const Target& target) : Group(std::vector<const Target*>{&target}) {}

    /// Opens a group with one slot per target (KvApplMan_createApplGroupHandle_2).
    /// @param targets 1 to 128 targets; null leaves a slot empty. A target may stand in several slots
    explicit Group(const std::vector<const Target*>& targets) : ids_(targets.size()) {
        for (const Target* target : targets)
            links_.push_back(target == nullptr ? nullptr : target->link_);
        const Pool pool;
        const Handles handles = slotHandles();
        KvSApplGroupHandle* group = nullptr;
        const std::int32_t status = KvApplMan_createApplGroupHandle_2(pool, handles.devices.data(),
                                                                      handles.accesses.data(), slotCount(), &group);
        handle_.reset(group);
        finish(status, "KvApplMan_createApplGroupHandle_2", pool);
    }

    /// @return the number of slots, empty ones included
    std::uint32_t slotCount() const noexcept { return static_cast<std::uint32_t>(ids_.size()); }

    /// @return the group handle, for plain functions; valid as long as this object
    KvSApplGroupHandle* handle() const noexcept { return handle_.get(); }

    /// Registers the process of a slot with its target (KvApplMan_registerAppl_2). Numbers are registered in ascending
    /// order; empty slots are left out.
    /// @param number number of the slot, from 1
    /// @return the new application
    /// @throws std::out_of_range no such slot
    /// @throws std::invalid_argument the slot is empty
    /// @throws Error the function failed; when applicationId is not 0 then, the target knows the process all the same
    Application registerApplication(std::uint32_t number) {
        const detail::SharedLink& link = linkOf(number);
        const Pool pool;
        std::uint32_t id = 0;
        const std::int32_t status =
            KvApplMan_registerAppl_2(pool, link->device.handle(), link->access.handle(), handle_.get(), number, &id);
        if (id != 0) ids_[number - 1] = id; // an attempt to register again must not lose the first ID
        link->finish(status, "KvApplMan_registerAppl_2", pool);
        return {link, id};
    }

    /// The ID of a slot's process.
    /// @param number number of the slot, from 1
    /// @return its application ID; 0 before it is registered
    /// @throws std::out_of_range no such slot
    std::uint32_t applicationId(std::uint32_t number) const { return ids_.at(std::size_t{number} - 1); }

    /// Brings all processes onto their targets, once each is registered (KvApplMan_downloadApplUtf8).
    /// @param files one binary on the host per slot; that of an empty slot is not looked at
    /// @param options what else the targets are told, and who receives the progress
    /// @throws std::invalid_argument not as many files as slots, or more target paths
    void download(const std::vector<std::filesystem::path>& files, const DownloadOptions& options = {}) const {
        if (files.size() != links_.size() || options.targetPaths.size() > links_.size())
            throw std::invalid_argument("kvapplman: a group is downloaded with one file per slot");
        std::vector<std::string> paths;
        std::vector<const char*> pathTexts;
        std::vector<const char*> targetPathTexts(files.size());
        paths.reserve(files.size());
        pathTexts.reserve(files.size());
        for (const std::filesystem::path& file : files)
            paths.push_back(toUtf8(file));
        for (const std::string& path : paths)
            pathTexts.push_back(path.c_str());
        for (std::size_t i = 0; i < options.targetPaths.size(); ++i)
            targetPathTexts[i] = options.targetPaths[i].c_str();

        const Pool pool;
        const Handles handles = slotHandles();
        detail::ProgressBridge progress(options.progress);
        const std::int32_t status = KvApplMan_downloadApplUtf8(
            pool, handles.devices.data(), handles.accesses.data(), ids_.data(), pathTexts.data(), options.option,
            slotCount(), progress.function(), &progress, targetPathTexts.data());
        progress.rethrow();
        finish(status, "KvApplMan_downloadApplUtf8", pool);
    }

private:
    struct Handles {
        std::vector<void*> devices{};
        std::vector<void*> accesses{};
    };

    Handles slotHandles() const {
        Handles handles;
        for (const detail::SharedLink& link : links_) {
            handles.devices.push_back(link == nullptr ? nullptr : link->device.handle());
            handles.accesses.push_back(link == nullptr ? nullptr : link->access.handle());
        }
        return handles;
    }

    const detail::SharedLink& linkOf(std::uint32_t number) const {
        const detail::SharedLink& link = links_.at(std::size_t{number} - 1);
        if (link == nullptr) throw std::invalid_argument("kvapplman: the slot is empty");
        return link;
    }

    void finish(std::int32_t status, const char* function, const Pool& pool) const {
        check(status, function, pool);
        for (const detail::SharedLink& link : links_) {
            if (link != nullptr) return link->finish(status, function, pool);
        }
    }

    std::vector<detail::SharedLink> links_{}; // per slot; null = empty
    std::vector<std::uint32_t> ids_;          // per slot; 0 = not registered
    detail::Owned<KvSApplGroupHandle, KvApplMan_deleteApplGroupHandle> handle_{nullptr, {}};
};

} // namespace kvapplman

#endif
