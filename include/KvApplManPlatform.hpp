/// @file
/// Message pools, devices and access-restriction handles as objects that give themselves back, and the exception that
/// carries messages. C++17, header only.
///
/// A part of KvApplMan.hpp, and all of it that calls the platform library: whoever uses another one replaces this file.
///
/// Objects can be moved, not copied; a moved-from object can only be destroyed or assigned to. Memory that runs out
/// gives std::bad_alloc.
#ifndef KV_APPL_MAN_PLATFORM_HPP
#define KV_APPL_MAN_PLATFORM_HPP

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <cstdio>
#include <exception>
#include <functional>
#include <memory>
#include <new>
#include <string>
#include <utility>
#include <vector>

#include "KvApplManConstants.h"
#include "KvApplicationManagerAP.h"
#include "KvPlatformHost.h"

/// The application manager access point for C++17.
namespace kvapplman {

/// One entry of a pool. All texts are UTF-8.
struct Message {
    std::uint32_t code = 0;               ///< a KV_APPLMAN_MSG_..., a KV_PLATFORM_MSG_... or a code of the target
    std::uint32_t line = 0;               ///< source line that reported it
    std::string operation{};              ///< function or internal operation that reported it
    std::string signature{};              ///< one of %s, %u, %d, %x per argument; empty without arguments
    std::vector<std::string> arguments{}; ///< the arguments as text
    std::string text{};                   ///< the whole message, arguments in place; empty when there is none

    /// The message on one line: code, operation and text.
    /// @return "0x12500004 KvApplMan_startAppl: Cannot start real-time application."
    std::string describe() const {
        char number[16];
        std::snprintf(number, sizeof number, "0x%08lx", static_cast<unsigned long>(code));
        return number + (" " + operation) + ": " + (text.empty() ? "(no text)" : text);
    }
};

/// Messages and what they say.
using Messages = std::vector<Message>;

/// A pool, for plain functions of KvApplicationManagerAP.h: it converts to the pool that they take. Calls that use the
/// same pool must not overlap.
class Pool {
public:
    /// Makes an empty pool.
    Pool() : pool_(KvPlatform_createPool()) {
        if (pool_ == nullptr) throw std::bad_alloc();
    }

    /// The pool as the functions take it.
    operator KvCErrorListPool&() const noexcept { return *pool_; }

    /// Copies the messages.
    /// @return the messages in the order in which they were added: the innermost first
    Messages messages() const {
        Messages all(KvPlatform_entryCount(*pool_));
        for (std::uint32_t i = 0; i < all.size(); ++i)
            all[i] = message(i);
        return all;
    }

private:
    struct Delete {
        void operator()(KvCErrorListPool* pool) const noexcept { KvPlatform_deletePool(pool); }
    };

    static std::string copy(const char* text) { return text == nullptr ? std::string() : text; }

    Message message(std::uint32_t index) const {
        Message entry;
        entry.code = KvPlatform_entryCode(*pool_, index);
        entry.line = KvPlatform_entryLine(*pool_, index);
        entry.operation = copy(KvPlatform_entryOperation(*pool_, index));
        entry.signature = copy(KvPlatform_entrySignature(*pool_, index));
        const std::uint32_t count = KvPlatform_entryArgumentCount(*pool_, index);
        for (std::uint32_t argument = 0; argument < count; ++argument)
            entry.arguments.push_back(copy(KvPlatform_entryArgument(*pool_, index, argument)));
        entry.text = copy(KvPlatform_entryText(*pool_, index));
        return entry;
    }

    std::unique_ptr<KvCErrorListPool, Delete> pool_;
};

/// A call has failed.
class Error : public std::exception {
public:
    /// @param function the function that failed
    /// @param status what it returned
    /// @param messages what it reported, innermost first
    Error(const char* function, std::int32_t status, Messages messages)
        : details_(std::make_shared<Details>(Details{function, status, std::move(messages), {}})) {
        std::string& what = details_->what;
        what = details_->function + " failed with status " + std::to_string(status);
        for (const Message& message : details_->messages)
            what += "\n  " + message.describe();
    }

    /// @return the failure on one line, and below it one line per message, innermost first
    const char* what() const noexcept override { return details_->what.c_str(); }

    /// @return the name of the function that failed
    const std::string& function() const noexcept { return details_->function; }

    /// @return what it returned: mostly a KvApplManStatus, never 0
    std::int32_t status() const noexcept { return details_->status; }

    /// @return what it reported, innermost first
    const Messages& messages() const noexcept { return details_->messages; }

    /// @param code a message code
    /// @return whether a message of this code was reported
    bool has(std::uint32_t code) const noexcept {
        return std::any_of(messages().begin(), messages().end(),
                           [&](const Message& message) { return message.code == code; });
    }

private:
    struct Details {
        std::string function;
        std::int32_t status;
        Messages messages;
        std::string what;
    };

    std::shared_ptr<Details> details_; // shared, so that copying an exception cannot fail
};

/// Throws an Error with the messages of the pool when a function has failed.
/// @param status what the function returned
/// @param function its name
/// @param pool the pool that it was given
inline void check(std::int32_t status, const char* function, const Pool& pool) {
    if (status != KV_APPLMAN_OK) throw Error(function, status, pool.messages());
}

/// @cond

namespace detail {

/// Gives a handle back. The pool for that is made with the handle, so that giving back needs no memory.
template <class Thing, std::int32_t (*giveBack)(KvCErrorListPool&, Thing*)>
struct GiveBack {
    Pool pool{};
    void operator()(Thing* thing) const noexcept { giveBack(pool, thing); }
};

template <class Thing, std::int32_t (*giveBack)(KvCErrorListPool&, Thing*)>
using Owned = std::unique_ptr<Thing, GiveBack<Thing, giveBack>>;

} // namespace detail

/// @endcond

/// A device: a target as this process knows it. Its end closes the connections to the target.
class Device {
public:
    /// Adds a device; nothing is sent.
    /// @param address "a.b.c.d:port"; each device needs an IPv4 address of its own
    /// @param cnSerialNumber serial number of the device's CN, 0 when unknown
    /// @throws Error the address is malformed
    explicit Device(const std::string& address, std::uint32_t cnSerialNumber = 0) {
        const Pool pool;
        void* device = nullptr;
        check(KvPlatform_addDevice(pool, address.c_str(), cnSerialNumber, &device), "KvPlatform_addDevice", pool);
        handle_.reset(device);
    }

    /// @return the device handle, for plain functions; valid as long as this object.
    void* handle() const noexcept { return handle_.get(); }

private:
    detail::Owned<void, KvPlatform_removeDevice> handle_{nullptr, {}};
};

/// An access-restriction handle, which carries an access ID of its own. It ends before its device.
class AccessHandle {
public:
    /// @param device the device; outlives this object
    /// @throws Error the device is of no use
    explicit AccessHandle(const Device& device) {
        const Pool pool;
        void* handle = nullptr;
        check(KvHIM_createAccessRestrictionHandle(pool, device.handle(), &handle),
              "KvHIM_createAccessRestrictionHandle", pool);
        handle_.reset(handle);
    }

    /// @return the access-restriction handle, for plain functions; valid as long as this object.
    void* handle() const noexcept { return handle_.get(); }

private:
    detail::Owned<void, KvHIM_deleteAccessRestrictionHandle> handle_{nullptr, {}};
};

/// Receives the messages of a call that succeeded, innermost first, and the name of its function, on the thread of the
/// call. What it throws leaves the call, which has done its work.
using MessageHandler = std::function<void(const char* function, const Messages& messages)>;

/// @cond

namespace detail {

/// A target's handles, which all its objects share.
struct Link {
    Link(const std::string& address, std::uint32_t cnSerialNumber) : device(address, cnSerialNumber), access(device) {}

    /// Throws when the call has failed; else hands its messages on.
    void finish(std::int32_t status, const char* function, const Pool& pool) const {
        check(status, function, pool);
        if (!handler) return;
        const Messages messages = pool.messages();
        if (!messages.empty()) handler(function, messages);
    }

    template <class Function, class... Arguments>
    void call(const char* name, Function function, Arguments... arguments) const {
        const Pool pool;
        finish(function(pool, device.handle(), access.handle(), arguments...), name, pool);
    }

    /// Asks for a list until it fits. `ask` takes a pool, the elements and, in and out, their number.
    template <class Element, class Count, class Ask>
    std::vector<Element> list(const char* name, Count capacity, Ask ask) const {
        for (;;) {
            const Pool pool;
            std::vector<Element> elements(static_cast<std::size_t>(capacity));
            Count count = capacity;
            const std::int32_t status = ask(pool, elements.data(), &count);
            if (status != KV_APPLMAN_OK && count > capacity) {
                capacity = count;
                continue;
            }
            finish(status, name, pool);
            elements.resize(static_cast<std::size_t>(count));
            return elements;
        }
    }

    Device device;
    AccessHandle access; // ends before the device
    MessageHandler handler{};
};

using SharedLink = std::shared_ptr<Link>;

} // namespace detail

/// @endcond

} // namespace kvapplman

#endif
