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

struct SessionLists {
    std::map<void*, std::unique_ptr<WTS_SESSION_INFOW[]>> byAddress;
};

/// What the ledger notes of a session's token, and of a thread that borrowed its user's identity.
std::string NoteOf(const Session& session) { return "session " + std::to_string(session.id); }

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

/// As whom the calling thread acts.
std::wstring CurrentUser(World& world) {
    const auto borrowed = world.ledger.FindOpen(ResourceKind::Impersonation, ThreadValue());
    for (const Session& session : world.machine.logons.sessions) {
        if (borrowed && borrowed->note == NoteOf(session)) {
            return session.userName;
        }
    }
    return world.machine.logons.hostAccount;
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
    FakeCall call("WTSEnumerateSessionsW", Arg{"server", server}, Arg{"reserved", reserved},
                  Arg{"version", version});
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
    world.FamilyState<SessionLists>().byAddress[*list] = std::move(entries);
    return call.Returns(TRUE);
}

void WINAPI FakeWTSFreeMemory(void* memory) {
    FakeCall call("WTSFreeMemory", Arg{"memory", memory});
    World& world = call.world();
    if (world.ledger.Release(ResourceKind::WtsMemory, memory)) {
        const auto lock = world.Lock();
        world.FamilyState<SessionLists>().byAddress.erase(memory);
    }
}

/// Plans: NullResult succeeds with a null token.
BOOL WINAPI FakeWTSQueryUserToken(ULONG sessionId, HANDLE* token) {
    FakeCall call("WTSQueryUserToken", Arg{"sessionId", sessionId});
    if (call.IsPlanned(FaultVariant::NullResult)) {
        *token = nullptr;
        return call.Returns(TRUE);
    }
    World& world = call.world();
    const auto lock = world.Lock();
    const Session* const session = FindSession(world.machine, sessionId);
    if (const auto error = call.Refused({{token == nullptr, ERROR_INVALID_PARAMETER},
                                         {session == nullptr, ERROR_FILE_NOT_FOUND}})) {
        return call.Fails(FALSE, *error);
    }
    if (session->tokenError != ERROR_SUCCESS || session->userName.empty()) {
        return call.Fails(
            FALSE, session->tokenError != ERROR_SUCCESS ? session->tokenError : ERROR_NO_TOKEN);
    }
    *token = world.ledger.Acquire(ResourceKind::Token, NoteOf(*session));
    return call.Returns(TRUE);
}

BOOL WINAPI FakeImpersonateLoggedOnUser(HANDLE token) {
    FakeCall call("ImpersonateLoggedOnUser", Arg{"token", token});
    ResourceLedger& ledger = call.world().ledger;
    const auto open = ledger.FindOpen(ResourceKind::Token, token);
    if (const auto error = call.Refused({{!open, ERROR_INVALID_HANDLE}})) {
        return call.Fails(FALSE, *error);
    }
    ledger.ReleaseIfOpen(ResourceKind::Impersonation, ThreadValue());
    ledger.Adopt(ResourceKind::Impersonation, ThreadValue(), open->note);
    return call.Returns(TRUE);
}

BOOL WINAPI FakeRevertToSelf() {
    FakeCall call("RevertToSelf");
    if (call.PlannedFault()) {
        return call.Fails(FALSE);
    }
    // Reverting without having impersonated is allowed.
    call.world().ledger.ReleaseIfOpen(ResourceKind::Impersonation, ThreadValue());
    return call.Returns(TRUE);
}

/// Plans: ShortSize fails as for a buffer that is too small, SuccessWithNothing gives an empty
/// name.
BOOLEAN SEC_ENTRY FakeGetUserNameExW(EXTENDED_NAME_FORMAT format, wchar_t* name, ULONG* size) {
    FakeCall call("GetUserNameExW", Arg{"format", format}, Arg{"size", *size});
    const auto& fault = call.PlannedFault();
    if (fault && fault->variant == FaultVariant::Fail) {
        return call.Fails<BOOLEAN>(FALSE);
    }
    if (format != NameSamCompatible) {
        return call.Fails<BOOLEAN>(FALSE, ERROR_NONE_MAPPED);
    }

    World& world = call.world();
    const auto lock = world.Lock();
    std::wstring text = CurrentUser(world);
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
