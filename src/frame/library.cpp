// Load and unload. The order of the two things that the library owns is that of one constructor: the message table comes
// first and goes last. The error manager lies in a library that is loaded before this one and outlives it. All of this
// runs while the system loads or unloads a library, where nothing may throw.
#include "frame/library.h"

#include "frame/messages.h"
#include "platform/error_lists.h"
#include "platform/rtos.h"

#if defined(_WIN32)
#include <windows.h>
#endif

namespace applman {
namespace {

/// One object owns both, because the message table comes before the mutex and outlives it.
class Library {
public:
    Library() noexcept {
        KvCErrorManager::_registerMessages(kMessageTable);
        KvNRtosAbstraction::initMutex(&rpcClientMutex_);
    }
    ~Library() {
        KvNRtosAbstraction::deleteMutex(rpcClientMutex_);
        KvCErrorManager::_unregisterMessages(kMessageTable);
    }
    Library(const Library&) = delete;
    Library& operator=(const Library&) = delete;

    void* rpcClientMutex() const noexcept { return rpcClientMutex_; }

private:
    void* rpcClientMutex_ = nullptr;
};

const Library library; // constructed at load, destroyed at unload

} // namespace

void* rpcClientMutex() noexcept { return library.rpcClientMutex(); }

} // namespace applman

#if defined(_WIN32)
extern "C" BOOL WINAPI DllMain(HINSTANCE instance, DWORD reason, LPVOID) {
    if (reason == DLL_PROCESS_ATTACH) { DisableThreadLibraryCalls(instance); }
    return TRUE;
}
#endif
