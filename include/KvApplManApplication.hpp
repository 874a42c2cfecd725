/// @file
/// Applications on a target, in its memory and in its flash memory. C++17, header only; a part of KvApplMan.hpp, which
/// tells what holds for all of it.
#ifndef KV_APPL_MAN_APPLICATION_HPP
#define KV_APPL_MAN_APPLICATION_HPP

#include <chrono>
#include <cstddef>
#include <cstdint>
#include <exception>
#include <filesystem>
#include <functional>
#include <stdexcept>
#include <string>
#include <string_view>
#include <type_traits>
#include <utility>
#include <variant>
#include <vector>

#include "KvApplManConstants.h"
#include "KvApplManItems.hpp"
#include "KvApplManPlatform.hpp"
#include "KvApplicationManagerAP.h"

namespace kvapplman {

/// How far a long call is. The texts are valid only during the callback.
struct Progress {
    double fraction;            ///< share of the whole task that is done, 0.0 to 1.0
    std::uint32_t phase;        ///< number of the current phase, from 1
    std::uint32_t phaseCount;   ///< number of phases of the task
    std::string_view fileName;  ///< name of the file being handled; empty when there is none
    std::string_view phaseName; ///< name of the phase without quotation marks; empty when there is none
};

/// Receives the progress of a call, on the thread of the call, which waits for it. It cannot end the call. When it
/// throws, it is not called again; the call runs to its end and then throws that exception, whether it failed or not.
using ProgressCallback = std::function<void(const Progress& progress)>;

/// An additional file as the target has registered it. What the members mean is the target's business; the names are
/// those of the simulated target.
struct AddedFile {
    std::string source{};    ///< path on the host; at most 1022 bytes
    std::string name{};      ///< name on the target; at most 254 bytes
    std::string directory{}; ///< where it lies on the target; at most 1022 bytes
    std::uint32_t type = 0;  ///< type of the file
};

/// How an additional file is loaded.
struct FileOptions {
    std::string targetPath{};     ///< handed to the target
    std::string targetName{};     ///< handed to the target
    std::uint32_t flags = 0;      ///< handed to the target; the upper 8 bits must be 0
    std::string additionalInfo{}; ///< handed to the target
    ProgressCallback progress{};  ///< receives the progress; may be empty
};

/// Gives a path, or a part of it, as a text that a target understands.
/// @param path the path
/// @return the path in UTF-8
inline std::string toUtf8(const std::filesystem::path& path) {
    const auto text = path.u8string(); // of char in C++17, of char8_t in C++20
    return {text.begin(), text.end()};
}

/// @cond

namespace detail {

inline std::string_view withoutQuotes(std::string_view text) {
    const bool quoted = text.size() >= 2 && text.front() == '"' && text.back() == '"';
    return quoted ? text.substr(1, text.size() - 2) : text;
}

/// "a;;b" has three parts, "" none.
inline std::vector<std::string> splitAtSemicolons(const std::string& text) {
    std::vector<std::string> parts;
    if (text.empty()) return parts;
    parts.emplace_back();
    for (const char letter : text) {
        if (letter == ';') parts.emplace_back();
        else parts.back() += letter;
    }
    return parts;
}

/// Brings progress from the C callback to the C++ one and keeps what that throws.
class ProgressBridge {
public:
    explicit ProgressBridge(const ProgressCallback& callback) : callback_(callback) {}
    ProgressBridge(const ProgressBridge&) = delete;
    ProgressBridge& operator=(const ProgressBridge&) = delete;

    KvTApplManProgressCallback function() const { return callback_ ? &receive : nullptr; }

    void rethrow() const {
        if (thrown_ != nullptr) std::rethrow_exception(thrown_);
    }

private:
    static void receive(const KvTApplManProgress* progress, void* self) {
        static_cast<ProgressBridge*>(self)->hand(*progress);
    }

    void hand(const KvTApplManProgress& progress) noexcept {
        if (thrown_ != nullptr) return;
        try {
            callback_(Progress{progress.fraction, progress.phase, progress.phaseCount, progress.fileName,
                               withoutQuotes(progress.phaseName)});
        } catch (...) { thrown_ = std::current_exception(); }
    }

    const ProgressCallback& callback_;
    std::exception_ptr thrown_{};
};

/// Reads the items of one application, or of one flash application.
struct ItemReader {
    const Link& link;
    const char* name;
    decltype(&KvApplMan_getApplInfo) function;
    std::uint32_t id;

    template <class Type>
    Type read(Item item) const {
        if constexpr (std::is_same_v<Type, std::string>) {
            return array<char>(item).data();
        } else if constexpr (std::is_same_v<Type, std::vector<std::string>>) {
            return splitAtSemicolons(array<char>(item).data());
        } else if constexpr (std::is_same_v<Type, std::vector<std::uint32_t>>) {
            return array<std::uint32_t>(item);
        } else if constexpr (std::is_same_v<Type, std::vector<std::int64_t>>) {
            return array<std::int64_t>(item);
        } else if constexpr (std::is_same_v<Type, Time>) {
            return Time{std::chrono::seconds{scalar<std::int64_t>(item)}};
        } else if constexpr (std::is_same_v<Type, std::chrono::seconds>) {
            return std::chrono::seconds{scalar<std::uint32_t>(item)};
        } else {
            return scalar<Type>(item);
        }
    }

    Value readAny(Item item) const {
        return readKind(item, rowOf(kItems, item).kind, std::make_index_sequence<std::variant_size_v<Value>>());
    }

private:
    template <class Scalar>
    Scalar scalar(Item item) const {
        static_assert(std::is_trivially_copyable_v<Scalar>);
        Scalar value{};
        std::int32_t size = sizeof value;
        link.call(name, function, id, static_cast<std::uint32_t>(item), static_cast<void*>(&value), &size);
        return value;
    }

    template <class Element>
    std::vector<Element> array(Item item) const {
        constexpr std::int32_t kElementSize = sizeof(Element);
        constexpr std::int32_t kFirstTry = 256; // bytes; one request does for most items
        const auto ask = [&](const Pool& pool, Element* elements, std::int32_t* count) {
            std::int32_t size = *count * kElementSize;
            const std::int32_t status = function(pool, link.device.handle(), link.access.handle(), id,
                                                 static_cast<std::uint32_t>(item), elements, &size);
            *count = size / kElementSize;
            return status;
        };
        return link.list<Element>(name, kFirstTry / kElementSize, ask);
    }

    template <std::size_t... kKinds>
    Value readKind(Item item, Kind kind, std::index_sequence<kKinds...>) const {
        using Read = Value (*)(const ItemReader&, Item);
        constexpr Read reads[] = {[](const ItemReader& reader, Item wanted) {
            return Value{std::in_place_index<kKinds>, reader.read<std::variant_alternative_t<kKinds, Value>>(wanted)};
        }...};
        return reads[static_cast<std::size_t>(kind)](*this, item);
    }
};

} // namespace detail

/// @endcond

/// An application process on a target, or its application manager. Made by Target and Group; copies name the same one.
/// Its end sends nothing: the process stays on the target until it is unloaded.
class Application {
public:
    /// @return the application ID; KV_APPLMAN_MANAGER for the application manager
    std::uint32_t id() const noexcept { return id_; }

    /// Starts the loaded process, or goes on with a paused one (KvApplMan_startAppl).
    void start() const { link_->call("KvApplMan_startAppl", KvApplMan_startAppl, id_); }

    /// Stops the process (KvApplMan_stopAppl).
    void stop() const { link_->call("KvApplMan_stopAppl", KvApplMan_stopAppl, id_); }

    /// Terminates the process (KvApplMan_terminateAppl).
    void terminate() const { link_->call("KvApplMan_terminateAppl", KvApplMan_terminateAppl, id_); }

    /// Unloads the process; the target then no longer knows its ID (KvApplMan_unloadAppl).
    void unload() const { link_->call("KvApplMan_unloadAppl", KvApplMan_unloadAppl, id_); }

    /// Pauses the running process (KvApplMan_pauseAppl).
    void pause() const { link_->call("KvApplMan_pauseAppl", KvApplMan_pauseAppl, id_); }

    /// Lets the paused process run one step (KvApplMan_stepAppl).
    void step() const { link_->call("KvApplMan_stepAppl", KvApplMan_stepAppl, id_); }

    /// Reads an information item (KvApplMan_getApplInfo), with the default that it may have.
    /// @tparam item the item, for instance Item::groupSize
    /// @return its value; empty texts in a list of addresses stand for empty slots
    template <Item item>
    ItemType<item> info() const {
        return reader().read<ItemType<item>>(item);
    }

    /// Reads an item that is known only when the program runs.
    /// @param item the item
    /// @return its value, of the type of its kind
    /// @throws std::out_of_range no such item
    Value info(Item item) const { return reader().readAny(item); }

    /// Reads the state of the process: item 0.
    /// @return the state
    State state() const { return info<Item::state>(); }

    /// Writes a parameter (KvApplMan_setApplParameter). Nothing is kept of the value.
    /// @tparam param the parameter, for instance Param::cores
    /// @param value its value
    template <Param param>
    void set(const ParamType<param>& value) const {
        write(param, value);
    }

    /// Writes a parameter that is known only when the program runs.
    /// @param param the parameter
    /// @param value its value, of the type of its kind
    /// @throws std::out_of_range no such parameter
    /// @throws std::invalid_argument the value is of another kind
    void set(Param param, const Value& value) const {
        if (value.index() != static_cast<std::size_t>(rowOf(kParams, param).kind))
            throw std::invalid_argument("kvapplman: a parameter's value is of another kind");
        std::visit([&](const auto& given) { write(param, given); }, value);
    }

    /// Registers and transfers an additional file, or a directory with all that is in it (KvApplMan_loadFileUtf8).
    /// @param source file or directory on the host
    /// @param type KV_APPLMAN_FILE_TYPE_DIRECTORY for a directory; any other stands for a file
    /// @param options what else the target is told, and who receives the progress
    void loadFile(const std::filesystem::path& source, std::uint32_t type, const FileOptions& options = {}) const {
        const Pool pool;
        detail::ProgressBridge progress(options.progress);
        const std::int32_t status =
            KvApplMan_loadFileUtf8(pool, link_->device.handle(), link_->access.handle(), id_, toUtf8(source).c_str(),
                                   options.targetPath.c_str(), options.targetName.c_str(), type, options.flags,
                                   progress.function(), &progress, options.additionalInfo.c_str());
        progress.rethrow();
        link_->finish(status, "KvApplMan_loadFileUtf8", pool);
    }

    /// Lists the additional files that the target has registered (KvApplMan_getFileInfo).
    /// @return the files in the target's order
    std::vector<AddedFile> files() const {
        constexpr std::uint32_t kFirstTry = 16;
        const auto ask = [&](const Pool& pool, TApplManAddFileInfo* files, std::uint32_t* count) {
            return KvApplMan_getFileInfo(pool, link_->device.handle(), link_->access.handle(), id_, count, files);
        };
        std::vector<AddedFile> all;
        for (const auto& file : link_->list<TApplManAddFileInfo>("KvApplMan_getFileInfo", kFirstTry, ask))
            all.push_back({file.entryText1, file.entryText2, file.entryText3, file.entryWord});
        return all;
    }

    /// Has the target remove an additional file (KvApplMan_removeFile).
    /// @param name its name on the target
    /// @param type the type under which it was loaded
    void removeFile(const std::string& name, std::uint32_t type) const {
        link_->call("KvApplMan_removeFile", KvApplMan_removeFile, id_, name.c_str(), type);
    }

private:
    friend class Target;
    friend class Group;

    Application(detail::SharedLink link, std::uint32_t id) : link_(std::move(link)), id_(id) {}

    detail::ItemReader reader() const { return {*link_, "KvApplMan_getApplInfo", KvApplMan_getApplInfo, id_}; }

    template <class Type>
    void write(Param param, const Type& value) const {
        if constexpr (std::is_same_v<Type, std::string>) {
            send(param, value.c_str(), 0);
        } else if constexpr (std::is_same_v<Type, std::vector<std::string>>) {
            std::vector<const char*> texts;
            texts.reserve(value.size() + 1);
            for (const std::string& text : value)
                texts.push_back(text.c_str());
            texts.push_back(nullptr); // not counted; an empty list needs an address, too
            send(param, texts.data(), value.size());
        } else if constexpr (std::is_same_v<Type, std::vector<std::uint32_t>>) {
            constexpr std::uint32_t kNone = 0;
            send(param, value.empty() ? &kNone : value.data(), value.size() * sizeof(std::uint32_t));
        } else {
            send(param, &value, sizeof value);
        }
    }

    void send(Param param, const void* value, std::size_t size) const {
        link_->call("KvApplMan_setApplParameter", KvApplMan_setApplParameter, id_, static_cast<std::uint32_t>(param),
                    value, static_cast<std::int32_t>(size));
    }

    detail::SharedLink link_;
    std::uint32_t id_;
};

/// An application in a target's flash memory. Made by Target; copies name the same one.
class FlashApplication {
public:
    /// @return its ID among the flash applications
    std::uint32_t id() const noexcept { return id_; }

    /// Reads an information item (KvApplMan_getFlashApplInfo). There are no defaults.
    /// @tparam item the item, for instance Item::fileName
    /// @return its value
    template <Item item>
    ItemType<item> info() const {
        return reader().read<ItemType<item>>(item);
    }

    /// Reads an item that is known only when the program runs.
    /// @param item the item
    /// @return its value, of the type of its kind
    /// @throws std::out_of_range no such item
    Value info(Item item) const { return reader().readAny(item); }

    /// Writes the values, the one item that can be written (KvApplMan_setFlashApplParameter).
    /// @param values the values
    void setValues(const std::vector<std::int64_t>& values) const {
        link_->call("KvApplMan_setFlashApplParameter", KvApplMan_setFlashApplParameter, id_,
                    static_cast<std::uint32_t>(KV_APPLMAN_ITEM_FLASH_VALUES), static_cast<const void*>(values.data()),
                    static_cast<std::uint32_t>(values.size() * sizeof(std::int64_t)));
    }

    /// Loads it and waits until the target has done it (KvApplMan_loadFlashAppl).
    void load() const { link_->call("KvApplMan_loadFlashAppl", KvApplMan_loadFlashAppl, std::uint64_t{id_}); }

    /// Removes it from the flash memory (KvApplMan_clearFlashAppl).
    void clear() const { link_->call("KvApplMan_clearFlashAppl", KvApplMan_clearFlashAppl, std::uint64_t{id_}); }

private:
    friend class Target;

    FlashApplication(detail::SharedLink link, std::uint32_t id) : link_(std::move(link)), id_(id) {}

    detail::ItemReader reader() const {
        return {*link_, "KvApplMan_getFlashApplInfo", KvApplMan_getFlashApplInfo, id_};
    }

    detail::SharedLink link_;
    std::uint32_t id_;
};

} // namespace kvapplman

#endif
