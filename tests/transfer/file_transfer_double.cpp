#include "transfer/file_transfer_double.h"

#include "platform/host_system.h"

FileTransferDouble channel;

namespace {

std::int32_t resultOf(const std::string& call) {
    channel.calls.push_back(call);
    const auto chosen = channel.results.find(call);
    return chosen == channel.results.end() ? 0 : chosen->second;
}

} // namespace

std::int32_t KvHIM_createFTClientHandle(KvCErrorListPool&, void*, void** handle) noexcept {
    const std::int32_t result = resultOf("create");
    if (result != 0) { return result; }
    ++channel.clients;
    *handle = channel.device();
    return 0;
}

std::int32_t KvHIM_deleteFTClientHandle(KvCErrorListPool&, void*) noexcept {
    --channel.clients;
    return resultOf("delete");
}

std::int32_t KvHIM_makeDir(KvCErrorListPool&, void*, void*, const char* base, const char* name) noexcept {
    return resultOf("make " + std::string{base} + '|' + name);
}

/// Reports half of the file and then the whole of it.
std::int64_t KvHIM_putFileU(KvCErrorListPool&, void*, void*, const char16_t* path, const char* directory,
                            const char* name, KvHIM_BytesCallback callback, void* context) noexcept {
    const std::int32_t result = resultOf("put " + std::string{directory} + '/' + name);
    const host_system::InputFile file{path};
    if (result != 0) { return result; }
    if (!file.opened()) { return -1; }
    if (callback != nullptr) {
        callback(file.size() / 2, context);
        callback(file.size(), context);
    }
    return static_cast<std::int64_t>(file.size());
}
