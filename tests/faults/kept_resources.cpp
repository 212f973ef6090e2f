#include "faults/kept_resources.h"

#include <windows.h>

#include <mutex>
#include <unordered_set>
#include <vector>

namespace faults_test {
namespace {

/// Of blocks or of handles.
class Kept {
public:
    void* Take(void* thing) {
        if (thing != nullptr) {
            const std::lock_guard lock(mutex);
            things.insert(thing);
        }
        return thing;
    }
    /// To be called before somebody else may get the same one. What others took, like strings that
    /// the suite returned, is not known here.
    void GiveBack(void* thing) {
        const std::lock_guard lock(mutex);
        things.erase(thing);
    }
    void Forget() {
        const std::lock_guard lock(mutex);
        things.clear();
    }
    std::size_t Count() {
        const std::lock_guard lock(mutex);
        return things.size();
    }

private:
    std::mutex mutex;
    std::unordered_set<void*> things;
};

Kept blocks;
Kept handles;
std::mutex indexMutex;
std::vector<DWORD> tlsIndexes;

void*(__cdecl* realMalloc)(std::size_t) = nullptr;
void*(__cdecl* realCalloc)(std::size_t, std::size_t) = nullptr;
void*(__cdecl* realRealloc)(void*, std::size_t) = nullptr;
void(__cdecl* realFree)(void*) = nullptr;
decltype(::CreateEventA)* realCreateEventA = nullptr;
decltype(::DuplicateHandle)* realDuplicateHandle = nullptr;
decltype(::CloseHandle)* realCloseHandle = nullptr;
decltype(::TlsAlloc)* realTlsAlloc = nullptr;

void* __cdecl FollowedMalloc(std::size_t size) { return blocks.Take(realMalloc(size)); }

void* __cdecl FollowedCalloc(std::size_t count, std::size_t size) {
    return blocks.Take(realCalloc(count, size));
}

void* __cdecl FollowedRealloc(void* block, std::size_t size) {
    blocks.GiveBack(block);
    void* const moved = realRealloc(block, size);
    blocks.Take(moved != nullptr || size == 0 ? moved : block);
    return moved;
}

void __cdecl FollowedFree(void* block) {
    blocks.GiveBack(block);
    realFree(block);
}

HANDLE WINAPI FollowedCreateEventA(SECURITY_ATTRIBUTES* attributes, BOOL manualReset,
                                   BOOL initialState, const char* name) {
    return handles.Take(realCreateEventA(attributes, manualReset, initialState, name));
}

BOOL WINAPI FollowedDuplicateHandle(HANDLE sourceProcess, HANDLE source, HANDLE targetProcess,
                                    HANDLE* target, DWORD access, BOOL inherit, DWORD options) {
    const BOOL done =
        realDuplicateHandle(sourceProcess, source, targetProcess, target, access, inherit, options);
    if (done) {
        handles.Take(*target);
    }
    return done;
}

BOOL WINAPI FollowedCloseHandle(HANDLE handle) {
    handles.GiveBack(handle);
    return realCloseHandle(handle);
}

DWORD WINAPI FollowedTlsAlloc() {
    const DWORD index = realTlsAlloc();
    if (index != TLS_OUT_OF_INDEXES) {
        const std::lock_guard lock(indexMutex);
        tlsIndexes.push_back(index);
    }
    return index;
}

}  // namespace

void FollowKeptResources(simulation::ImportRedirection& redirection) {
    blocks.Forget();
    redirection.RedirectImported(
        {{"malloc", FollowedMalloc, &realMalloc},
         {"calloc", FollowedCalloc, &realCalloc},
         {"realloc", FollowedRealloc, &realRealloc},
         {"free", FollowedFree, &realFree},
         {"CreateEventA", FollowedCreateEventA, &realCreateEventA},
         {"DuplicateHandle", FollowedDuplicateHandle, &realDuplicateHandle},
         {"CloseHandle", FollowedCloseHandle, &realCloseHandle},
         {"TlsAlloc", FollowedTlsAlloc, &realTlsAlloc}});
}

std::size_t KeptBlocks() { return blocks.Count(); }

std::size_t KeptRuntimeHandles() { return handles.Count(); }

void FreeRuntimeTlsIndexes() {
    const std::lock_guard lock(indexMutex);
    for (const DWORD index : tlsIndexes) {
        TlsFree(index);
    }
    tlsIndexes.clear();
}

}  // namespace faults_test
