#include "faults/kept_blocks.h"

#include <windows.h>

#include <mutex>
#include <unordered_set>

namespace faults_test {
namespace {

using MallocFunction = void* __cdecl(std::size_t);
using CallocFunction = void* __cdecl(std::size_t, std::size_t);
using ReallocFunction = void* __cdecl(void*, std::size_t);
using FreeFunction = void __cdecl(void*);

MallocFunction* realMalloc = nullptr;
CallocFunction* realCalloc = nullptr;
ReallocFunction* realRealloc = nullptr;
FreeFunction* realFree = nullptr;

std::mutex mutex;
std::unordered_set<void*> blocks;

void* Taken(void* block) {
    if (block != nullptr) {
        const std::lock_guard lock(mutex);
        blocks.insert(block);
    }
    return block;
}

/// Blocks of others, in strings that the suite returned, are not known here.
void GivenBack(void* block) {
    const std::lock_guard lock(mutex);
    blocks.erase(block);
}

void* __cdecl FollowedMalloc(std::size_t size) { return Taken(realMalloc(size)); }

void* __cdecl FollowedCalloc(std::size_t count, std::size_t size) {
    return Taken(realCalloc(count, size));
}

void* __cdecl FollowedRealloc(void* block, std::size_t size) {
    GivenBack(block);
    void* const moved = realRealloc(block, size);
    Taken(moved != nullptr || size == 0 ? moved : block);
    return moved;
}

void __cdecl FollowedFree(void* block) {
    // Before somebody else may get the same address.
    GivenBack(block);
    realFree(block);
}

}  // namespace

void FollowBlocks(simulation::ImportRedirection& redirection) {
    {
        const std::lock_guard lock(mutex);
        blocks.clear();
    }
    realMalloc = redirection.Redirect<MallocFunction>("malloc", FollowedMalloc);
    realCalloc = redirection.Redirect<CallocFunction>("calloc", FollowedCalloc);
    realRealloc = redirection.Redirect<ReallocFunction>("realloc", FollowedRealloc);
    realFree = redirection.Redirect<FreeFunction>("free", FollowedFree);
}

std::size_t KeptBlocks() {
    const std::lock_guard lock(mutex);
    return blocks.size();
}

}  // namespace faults_test
