#include <windows.h>
#include <wtsapi32.h>
#define SECURITY_WIN32
#include <security.h>

#include <map>
#include <memory>

#include "simulation/fake_call.h"
#include "simulation/fakes/common.h"
#include "simulation/fakes/families.h"

namespace simulation {
namespace {

struct SessionState {
    std::map<HANDLE, DWORD> tokens;         ///< Token to session id.
    std::map<DWORD, DWORD> impersonations;  ///< Thread id to session id.
    std::map<void*, std::unique_ptr<WTS_SESSION_INFOW[]>> lists;
};

/// The ledger knows borrowed identities by their thread.
void* ThreadValue() {
    return reinterpret_cast<void*>(static_cast<std::uintptr_t>(GetCurrentThreadId()));
}

const Session* FindSession(const Machine& machine, DWORD id) {
    for (const Session& session : machine.logons.sessions) {
        if (session.id == id) {
            return &session;
        }
    }
    return nullptr;
}

/// Plans: any gives "no console session".
DWORD WINAPI FakeWTSGetActiveConsoleSessionId() {
    FakeCall call("WTSGetActiveConsoleSessionId");
    if (call.PlannedFault()) {
        return call.Returns(kNoConsoleSession);
    }
    const auto lock = call.world().Lock();
    return call.Returns(call.world().machine.logons.consoleSession);
}

/// Plans: NullResult gives no list at all, SuccessWithNothing a list without entries.
BOOL WINAPI FakeWTSEnumerateSessionsW(HANDLE server, DWORD reserved, DWORD version,
                                      WTS_SESSION_INFOW** list, DWORD* count) {
    FakeCall call("WTSEnumerateSessionsW");
    call.Arguments({{"server", server}, {"reserved", reserved}, {"version", version}});
    const auto variant =
        call.PlannedFault() ? std::optional(call.PlannedFault()->variant) : std::nullopt;
    if (variant == FaultVariant::NullResult) {
        *list = nullptr;
        *count = 0;
        return call.Returns(TRUE);
    }
    if (variant && variant != FaultVariant::SuccessWithNothing) {
        return call.Fails(FALSE);
    }
    if (reserved != 0 || version != 1) {
        return call.Fails(FALSE, ERROR_INVALID_PARAMETER);
    }

    World& world = call.world();
    const auto lock = world.Lock();
    const std::vector<Session>& sessions = world.machine.logons.sessions;
    // One entry more than there are sessions: an empty list has an address, too.
    auto entries = std::make_unique<WTS_SESSION_INFOW[]>(sessions.size() + 1);
    static wchar_t stationName[] = L"Station";
    for (std::size_t i = 0; i < sessions.size(); ++i) {
        entries[i] = {sessions[i].id, stationName, sessions[i].state};
    }
    *list = entries.get();
    *count = variant ? 0 : static_cast<DWORD>(sessions.size());
    world.ledger.Adopt(ResourceKind::WtsMemory, *list, "session list");
    world.FamilyState<SessionState>().lists[*list] = std::move(entries);
    return call.Returns(TRUE);
}

void WINAPI FakeWTSFreeMemory(void* memory) {
    FakeCall call("WTSFreeMemory");
    call.Argument("memory", memory);
    World& world = call.world();
    if (world.ledger.Release(ResourceKind::WtsMemory, memory)) {
        const auto lock = world.Lock();
        world.FamilyState<SessionState>().lists.erase(memory);
    }
}

/// Plans: NullResult succeeds with a null token.
BOOL WINAPI FakeWTSQueryUserToken(ULONG sessionId, HANDLE* token) {
    FakeCall call("WTSQueryUserToken");
    call.Argument("sessionId", sessionId);
    if (call.PlannedFault()) {
        if (call.PlannedFault()->variant != FaultVariant::NullResult) {
            return call.Fails(FALSE);
        }
        *token = nullptr;
        return call.Returns(TRUE);
    }
    if (token == nullptr) {
        return call.Fails(FALSE, ERROR_INVALID_PARAMETER);
    }
    World& world = call.world();
    const auto lock = world.Lock();
    const Session* const session = FindSession(world.machine, sessionId);
    if (session == nullptr) {
        return call.Fails(FALSE, ERROR_FILE_NOT_FOUND);
    }
    if (session->tokenError != ERROR_SUCCESS) {
        return call.Fails(FALSE, session->tokenError);
    }
    if (session->userName.empty()) {
        return call.Fails(FALSE, ERROR_NO_TOKEN);
    }
    *token = world.ledger.Acquire(ResourceKind::Token, "session " + std::to_string(sessionId));
    Remember(world.FamilyState<SessionState>().tokens, world.ledger, ResourceKind::Token, *token,
             DWORD{sessionId});
    return call.Returns(TRUE);
}

BOOL WINAPI FakeImpersonateLoggedOnUser(HANDLE token) {
    FakeCall call("ImpersonateLoggedOnUser");
    call.Argument("token", token);
    if (call.PlannedFault()) {
        return call.Fails(FALSE);
    }
    World& world = call.world();
    if (!world.ledger.IsOpen(ResourceKind::Token, token)) {
        return call.Fails(FALSE, ERROR_INVALID_HANDLE);
    }
    const auto lock = world.Lock();
    auto& state = world.FamilyState<SessionState>();
    const DWORD sessionId = state.tokens.at(token);
    state.impersonations[GetCurrentThreadId()] = sessionId;
    if (!world.ledger.IsOpen(ResourceKind::Impersonation, ThreadValue())) {
        world.ledger.Adopt(ResourceKind::Impersonation, ThreadValue(),
                           "session " + std::to_string(sessionId));
    }
    return call.Returns(TRUE);
}

BOOL WINAPI FakeRevertToSelf() {
    FakeCall call("RevertToSelf");
    if (call.PlannedFault()) {
        return call.Fails(FALSE);
    }
    World& world = call.world();
    const auto lock = world.Lock();
    // Reverting without having impersonated is allowed.
    if (world.FamilyState<SessionState>().impersonations.erase(GetCurrentThreadId()) != 0) {
        world.ledger.Release(ResourceKind::Impersonation, ThreadValue());
    }
    return call.Returns(TRUE);
}

/// Plans: ShortSize fails as for a buffer that is too small, SuccessWithNothing gives an empty
/// name.
BOOLEAN SEC_ENTRY FakeGetUserNameExW(EXTENDED_NAME_FORMAT format, wchar_t* name, ULONG* size) {
    FakeCall call("GetUserNameExW");
    call.Arguments({{"format", format}, {"size", *size}});
    const auto& fault = call.PlannedFault();
    if (fault && fault->variant == FaultVariant::Fail) {
        return call.Fails<BOOLEAN>(FALSE);
    }
    if (format != NameSamCompatible) {
        return call.Fails<BOOLEAN>(FALSE, ERROR_NONE_MAPPED);
    }

    World& world = call.world();
    const auto lock = world.Lock();
    const auto& impersonations = world.FamilyState<SessionState>().impersonations;
    const auto impersonated = impersonations.find(GetCurrentThreadId());
    const Session* const session = impersonated == impersonations.end()
                                       ? nullptr
                                       : FindSession(world.machine, impersonated->second);
    std::wstring text = session == nullptr ? world.machine.logons.hostAccount : session->userName;
    if (fault && fault->variant == FaultVariant::SuccessWithNothing) {
        text.clear();
    } else if (text.empty()) {
        return call.Fails<BOOLEAN>(FALSE, ERROR_NONE_MAPPED);
    }
    if (text.size() >= *size || (fault && fault->variant == FaultVariant::ShortSize)) {
        *size = static_cast<ULONG>(text.size() + 1);
        return call.Fails<BOOLEAN>(FALSE, ERROR_MORE_DATA);
    }
    text.copy(name, text.size());
    name[text.size()] = L'\0';
    *size = static_cast<ULONG>(text.size());
    return call.Returns<BOOLEAN>(TRUE);
}

}  // namespace

void InstallSessionFakes(ImportRedirection& redirection) {
    redirection.RedirectImported({
        Replace<decltype(::WTSGetActiveConsoleSessionId)>("WTSGetActiveConsoleSessionId",
                                                          FakeWTSGetActiveConsoleSessionId),
        Replace<decltype(::WTSEnumerateSessionsW)>("WTSEnumerateSessionsW",
                                                   FakeWTSEnumerateSessionsW),
        Replace<decltype(::WTSFreeMemory)>("WTSFreeMemory", FakeWTSFreeMemory),
        Replace<decltype(::WTSQueryUserToken)>("WTSQueryUserToken", FakeWTSQueryUserToken),
        Replace<decltype(::ImpersonateLoggedOnUser)>("ImpersonateLoggedOnUser",
                                                     FakeImpersonateLoggedOnUser),
        Replace<decltype(::RevertToSelf)>("RevertToSelf", FakeRevertToSelf),
        Replace<decltype(::GetUserNameExW)>("GetUserNameExW", FakeGetUserNameExW),
    });
}

}  // namespace simulation
