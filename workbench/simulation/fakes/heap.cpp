#include "simulation/fakes/heap.h"

#include <windows.h>

#include <atomic>
#include <cstdlib>
#include <limits>

#include "simulation/fake_call.h"
#include "simulation/fakes/families.h"
#include "simulation/own_work.h"

namespace simulation {
namespace {

constexpr std::size_t kNoSize = std::numeric_limits<std::size_t>::max();

decltype(::GlobalAlloc)* realGlobalAlloc = nullptr;
decltype(::GlobalFree)* realGlobalFree = nullptr;
std::atomic<void*(__cdecl*)(std::size_t)> realMalloc{nullptr};
std::atomic<void*(__cdecl*)(std::size_t, std::size_t)> realCalloc{nullptr};

// Plain atomics instead of a place in the world: malloc is called from everywhere, also under the
// locks of journal and world.
std::atomic<std::size_t> refusedSize{kNoSize};
std::atomic<unsigned> refusals{0};

bool IsRefused(std::size_t size) {
    if (size != refusedSize || OwnWork::UnderWay()) {
        return false;
    }
    ++refusals;
    return true;
}

/// Other threads get here as soon as an import is redirected, before its original is noted.
template <typename Function>
Function* Noted(const std::atomic<Function*>& original) {
    while (original == nullptr) {
        SwitchToThread();
    }
    return original;
}

void* __cdecl FakeMalloc(std::size_t size) {
    return IsRefused(size) ? nullptr : Noted(realMalloc)(size);
}

/// The optimiser makes one call of an allocation and its clearing.
void* __cdecl FakeCalloc(std::size_t count, std::size_t size) {
    return IsRefused(count * size) ? nullptr : Noted(realCalloc)(count, size);
}

HGLOBAL WINAPI FakeGlobalAlloc(UINT flags, SIZE_T size) {
    FakeCall call("GlobalAlloc", Arg{"flags", flags}, Arg{"size", size});
    const HGLOBAL block = call.FailsOrPassesTo(HGLOBAL{}, realGlobalAlloc, flags, size);
    if (block != nullptr) {
        call.world().ledger.Adopt(ResourceKind::HeapBlock, block, std::to_string(size) + " bytes");
    }
    return block;
}

HGLOBAL WINAPI FakeGlobalFree(HGLOBAL block) {
    FakeCall call("GlobalFree", Arg{"block", block});
    if (call.PlannedFault()) {
        return call.Fails(block);
    }
    if (block != nullptr) {
        call.world().ledger.Release(ResourceKind::HeapBlock, block);
    }
    // Null is this function's success.
    const HGLOBAL left = realGlobalFree(block);
    return left == nullptr ? call.Returns(left) : call.Fails(left, GetLastError());
}

}  // namespace

MallocFailure::MallocFailure(std::size_t size) {
    refusals = 0;
    refusedSize = size;
}

MallocFailure::~MallocFailure() { refusedSize = kNoSize; }

unsigned MallocFailure::Count() const { return refusals; }

void InstallHeapFakes(ImportRedirection& redirection) {
    realMalloc = redirection.RedirectIfImported<decltype(FakeMalloc)>("malloc", FakeMalloc);
    realCalloc = redirection.RedirectIfImported<decltype(FakeCalloc)>("calloc", FakeCalloc);
    redirection.RedirectImported({
        {"GlobalAlloc", FakeGlobalAlloc, &realGlobalAlloc},
        {"GlobalFree", FakeGlobalFree, &realGlobalFree},
    });
}

}  // namespace simulation
