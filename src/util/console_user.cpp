#include "util/console_user.h"

#include <windows.h>
#include <sddl.h>
#define SECURITY_WIN32
#include <security.h>
#include <wtsapi32.h>

#include <cstdlib>
#include <cstring>
#include <memory>
#include <optional>

#include "util/fixed_text.h"
#include "util/scoped_handle.h"

namespace {

constexpr DWORD kNameCapacity = 260;
constexpr DWORD kSidCapacity = 260;

struct MallocDeleter {
    void operator()(void* block) const noexcept { std::free(block); }
};

struct LocalMemoryDeleter {
    void operator()(wchar_t* text) const noexcept { LocalFree(text); }
};

struct WtsMemoryDeleter {
    void operator()(WTS_SESSION_INFOW* sessions) const noexcept { WTSFreeMemory(sessions); }
};

/// Runs the calling thread under the token's user until it goes out of scope.
class ScopedImpersonation {
public:
    explicit ScopedImpersonation(HANDLE token) : impersonated(ImpersonateLoggedOnUser(token)) {}
    ~ScopedImpersonation() {
        if (impersonated == TRUE) {
            RevertToSelf();
        }
    }
    ScopedImpersonation(const ScopedImpersonation&) = delete;
    ScopedImpersonation& operator=(const ScopedImpersonation&) = delete;

private:
    const BOOL impersonated;
};

std::optional<DWORD> FindFirstActiveSession() {
    WTS_SESSION_INFOW* list = nullptr;
    DWORD count = 0;
    const BOOL listed = WTSEnumerateSessionsW(WTS_CURRENT_SERVER_HANDLE, /*Reserved=*/0,
                                              /*Version=*/1, &list, &count);
    const std::unique_ptr<WTS_SESSION_INFOW, WtsMemoryDeleter> owner(list);
    if (!listed || list == nullptr) {
        return std::nullopt;
    }
    for (DWORD i = 0; i < count; ++i) {
        if (list[i].State == WTSActive) {
            return list[i].SessionId;
        }
    }
    return std::nullopt;
}

}  // namespace

std::wstring GetUserSid(const std::wstring& accountName) {
    const std::unique_ptr<void, MallocDeleter> sid(std::malloc(kSidCapacity));
    if (!sid) {
        return {};
    }
    std::memset(sid.get(), 0, kSidCapacity);
    wchar_t domain[kNameCapacity] = {};
    DWORD sidSize = kSidCapacity;
    DWORD domainSize = kNameCapacity;
    SID_NAME_USE use{};
    if (!LookupAccountNameW(/*lpSystemName=*/nullptr, accountName.c_str(), sid.get(), &sidSize,
                            domain, &domainSize, &use)) {
        return {};
    }
    wchar_t* text = nullptr;
    if (ConvertSidToStringSidW(sid.get(), &text) != TRUE) {
        return {};
    }
    const std::unique_ptr<wchar_t, LocalMemoryDeleter> owner(text);
    return text;
}

std::wstring GetSessionUserName(unsigned long sessionId) {
    HANDLE received = nullptr;
    const BOOL queried = WTSQueryUserToken(sessionId, &received);
    // Kept: a result other than TRUE counts as a failure, but a token that came with it is closed.
    ScopedKernelHandle token(received);
    std::optional<ScopedImpersonation> impersonation;
    if (queried == TRUE) {
        impersonation.emplace(token.Get());
    }
    wchar_t name[kNameCapacity] = {};
    ULONG size = kNameCapacity;
    // Asked for whether or not the impersonation took place: without it, the thread's own account
    // answers. The result is dropped: after a failure the name is empty.
    GetUserNameExW(NameSamCompatible, name, &size);
    impersonation.reset();
    token.Reset();
    return TextOf(name);
}

std::wstring GetActiveUserSid() {
    const DWORD consoleSession = WTSGetActiveConsoleSessionId();
    std::wstring sid = GetUserSid(GetSessionUserName(consoleSession));
    if (!sid.empty()) {
        return sid;
    }
    const std::optional<DWORD> activeSession = FindFirstActiveSession();
    if (!activeSession) {
        return {};
    }
    return GetUserSid(GetSessionUserName(*activeSession));
}
