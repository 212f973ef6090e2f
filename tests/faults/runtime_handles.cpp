#include "faults/runtime_handles.h"

#include <windows.h>

#include <mutex>
#include <unordered_set>
#include <vector>

namespace faults_test {
namespace {

decltype(::CreateEventA)* realCreateEventA = nullptr;
decltype(::DuplicateHandle)* realDuplicateHandle = nullptr;
decltype(::CloseHandle)* realCloseHandle = nullptr;
decltype(::TlsAlloc)* realTlsAlloc = nullptr;

std::mutex mutex;
std::unordered_set<HANDLE> handles;
std::vector<DWORD> tlsIndexes;

void Opened(HANDLE handle) {
    const std::lock_guard lock(mutex);
    handles.insert(handle);
}

HANDLE WINAPI FollowedCreateEventA(SECURITY_ATTRIBUTES* attributes, BOOL manualReset,
                                   BOOL initialState, const char* name) {
    const HANDLE event = realCreateEventA(attributes, manualReset, initialState, name);
    if (event != nullptr) {
        Opened(event);
    }
    return event;
}

BOOL WINAPI FollowedDuplicateHandle(HANDLE sourceProcess, HANDLE source, HANDLE targetProcess,
                                    HANDLE* target, DWORD access, BOOL inherit, DWORD options) {
    const BOOL done =
        realDuplicateHandle(sourceProcess, source, targetProcess, target, access, inherit, options);
    if (done) {
        Opened(*target);
    }
    return done;
}

BOOL WINAPI FollowedCloseHandle(HANDLE handle) {
    {
        // Before somebody else may get the same handle.
        const std::lock_guard lock(mutex);
        handles.erase(handle);
    }
    return realCloseHandle(handle);
}

DWORD WINAPI FollowedTlsAlloc() {
    const DWORD index = realTlsAlloc();
    if (index != TLS_OUT_OF_INDEXES) {
        const std::lock_guard lock(mutex);
        tlsIndexes.push_back(index);
    }
    return index;
}

}  // namespace

void FollowRuntimeHandles(simulation::ImportRedirection& redirection) {
    realCreateEventA = redirection.RedirectIfImported<decltype(::CreateEventA)>(
        "CreateEventA", FollowedCreateEventA);
    realDuplicateHandle = redirection.RedirectIfImported<decltype(::DuplicateHandle)>(
        "DuplicateHandle", FollowedDuplicateHandle);
    realCloseHandle =
        redirection.RedirectIfImported<decltype(::CloseHandle)>("CloseHandle", FollowedCloseHandle);
    realTlsAlloc =
        redirection.RedirectIfImported<decltype(::TlsAlloc)>("TlsAlloc", FollowedTlsAlloc);
}

void FreeRuntimeTlsIndexes() {
    const std::lock_guard lock(mutex);
    for (const DWORD index : tlsIndexes) {
        TlsFree(index);
    }
    tlsIndexes.clear();
}

std::size_t KeptRuntimeHandles() {
    const std::lock_guard lock(mutex);
    return handles.size();
}

}  // namespace faults_test
