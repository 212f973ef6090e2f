#include "simulation/fakes/accounts.h"

#include <windows.h>
// windows.h has to come first.
#include <sddl.h>

#include <cwchar>

#include "simulation/fake_call.h"
#include "simulation/sid_text.h"

namespace simulation {
namespace {

decltype(::ConvertSidToStringSidW)* realConvertSidToStringSidW = nullptr;
decltype(::LocalFree)* realLocalFree = nullptr;

/// Account names do not tell letter cases apart; one without a domain fits any domain.
bool SameAccount(const std::wstring& known, const std::wstring& asked) {
    if (_wcsicmp(known.c_str(), asked.c_str()) == 0) {
        return true;
    }
    const std::size_t backslash = known.find(L'\\');
    return backslash != std::wstring::npos &&
           _wcsicmp(known.c_str() + backslash + 1, asked.c_str()) == 0;
}

/// Plans: ShortSize fails as for buffers that are too small.
BOOL WINAPI FakeLookupAccountNameW(const wchar_t* system, const wchar_t* account, void* sid,
                                   DWORD* sidSize, wchar_t* domain, DWORD* domainSize,
                                   SID_NAME_USE* use) {
    FakeCall call("LookupAccountNameW");
    call.Argument("system", system);
    call.Argument("account", account);
    call.Argument("sidSize", *sidSize);
    call.Argument("domainSize", *domainSize);
    const auto& fault = call.PlannedFault();
    const bool tooSmall = fault && fault->variant == FaultVariant::ShortSize;
    if (fault && !tooSmall) {
        return call.Fails(FALSE);
    }

    World& world = call.world();
    const auto lock = world.Lock();
    for (const auto& [name, text] : world.machine.logons.accounts) {
        if (!SameAccount(name, account)) {
            continue;
        }
        const std::optional<std::vector<BYTE>> bytes = SidFromText(text);
        if (!bytes) {
            break;
        }
        const std::size_t backslash = name.find(L'\\');
        const std::wstring domainText =
            backslash == std::wstring::npos ? std::wstring() : name.substr(0, backslash);
        if (tooSmall || *sidSize < bytes->size() || *domainSize <= domainText.size()) {
            *sidSize = static_cast<DWORD>(bytes->size());
            *domainSize = static_cast<DWORD>(domainText.size() + 1);
            return call.Fails(FALSE, ERROR_INSUFFICIENT_BUFFER);
        }
        CopyMemory(sid, bytes->data(), bytes->size());
        domainText.copy(domain, domainText.size());
        domain[domainText.size()] = L'\0';
        *domainSize = static_cast<DWORD>(domainText.size());
        *use = SidTypeUser;
        return call.Returns(TRUE);
    }
    return call.Fails(FALSE, ERROR_NONE_MAPPED);
}

BOOL WINAPI FakeConvertSidToStringSidW(void* sid, wchar_t** text) {
    FakeCall call("ConvertSidToStringSidW");
    if (call.PlannedFault()) {
        return call.Fails(FALSE);
    }
    const BOOL converted = call.PassTo(realConvertSidToStringSidW, sid, text);
    if (converted != FALSE) {
        call.Argument("text", *text);
        call.world().ledger.Adopt(ResourceKind::LocalMemory, *text, "SID text");
    }
    return converted;
}

HLOCAL WINAPI FakeLocalFree(HLOCAL memory) {
    FakeCall call("LocalFree");
    call.Argument("memory", memory);
    if (call.PlannedFault()) {
        return call.Fails(memory);
    }
    if (memory != nullptr && !call.world().ledger.Release(ResourceKind::LocalMemory, memory)) {
        return call.Fails(memory, ERROR_INVALID_HANDLE);
    }
    realLocalFree(memory);
    return call.Returns<HLOCAL>(nullptr);
}

}  // namespace

void InstallAccountFakes(ImportRedirection& redirection) {
    redirection.RedirectIfImported<decltype(::LookupAccountNameW)>("LookupAccountNameW",
                                                                   FakeLookupAccountNameW);
    realConvertSidToStringSidW = redirection.RedirectIfImported<decltype(::ConvertSidToStringSidW)>(
        "ConvertSidToStringSidW", FakeConvertSidToStringSidW);
    realLocalFree =
        redirection.RedirectIfImported<decltype(::LocalFree)>("LocalFree", FakeLocalFree);
}

}  // namespace simulation
