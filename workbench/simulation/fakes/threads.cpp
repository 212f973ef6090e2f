#include "simulation/fakes/threads.h"

#include <windows.h>

#include <algorithm>
#include <vector>

#include "simulation/fake_call.h"
#include "simulation/fakes/families.h"

namespace simulation {
namespace {

/// Handles of our own, because the module may close its own at once.
struct CreatedThreads {
    CreatedThreads() = default;
    ~CreatedThreads() {
        for (const HANDLE thread : handles) {
            CloseHandle(thread);
        }
    }
    CreatedThreads(const CreatedThreads&) = delete;
    CreatedThreads& operator=(const CreatedThreads&) = delete;

    std::vector<HANDLE> handles;
};

decltype(::CreateThread)* realCreateThread = nullptr;

void Remember(World& world, HANDLE thread) {
    HANDLE duplicate = nullptr;
    if (DuplicateHandle(GetCurrentProcess(), thread, GetCurrentProcess(), &duplicate, SYNCHRONIZE,
                        FALSE, 0)) {
        const auto lock = world.Lock();
        world.FamilyState<CreatedThreads>().handles.push_back(duplicate);
    }
}

HANDLE WINAPI FakeCreateThread(SECURITY_ATTRIBUTES* security, SIZE_T stackSize,
                               LPTHREAD_START_ROUTINE start, void* parameter, DWORD flags,
                               DWORD* threadId) {
    FakeCall call("CreateThread", Arg{"security", security}, Arg{"stackSize", stackSize},
                  Arg{"start", start}, Arg{"parameter", parameter}, Arg{"flags", flags},
                  Arg{"threadId", threadId});
    const HANDLE thread = call.FailsOrPassesTo(HANDLE{}, realCreateThread, security, stackSize,
                                               start, parameter, flags, threadId);
    if (thread != nullptr) {
        call.world().ledger.Adopt(ResourceKind::Thread, thread);
        Remember(call.world(), thread);
    }
    return thread;
}

}  // namespace

bool WaitForThreads(World& world, std::chrono::milliseconds patience) {
    std::vector<HANDLE> threads;
    {
        const auto lock = world.Lock();
        threads = world.FamilyState<CreatedThreads>().handles;
    }
    const ULONGLONG deadline = GetTickCount64() + static_cast<ULONGLONG>(patience.count());
    return std::all_of(threads.begin(), threads.end(), [deadline](HANDLE thread) {
        const ULONGLONG now = GetTickCount64();
        const DWORD rest = now < deadline ? static_cast<DWORD>(deadline - now) : 0;
        return WaitForSingleObject(thread, rest) == WAIT_OBJECT_0;
    });
}

void InstallThreadFakes(ImportRedirection& redirection) {
    redirection.RedirectImported({
        {"CreateThread", FakeCreateThread, &realCreateThread},
    });
}

}  // namespace simulation
