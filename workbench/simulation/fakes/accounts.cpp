#include <windows.h>
#include <sddl.h>

#include <cwchar>

#include "simulation/fake_call.h"
#include "simulation/fakes/families.h"
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

struct Account {
    std::wstring sid;
    std::wstring domain;
    SID_NAME_USE use;
};

std::optional<Account> FindAccount(const Machine& machine, const std::wstring& asked) {
    if (asked.empty()) {
        return Account{L"S-1-5-32", L"BUILTIN", SidTypeDomain};
    }
    for (const auto& [name, sid] : machine.logons.accounts) {
        if (SameAccount(name, asked)) {
            const std::size_t backslash = name.find(L'\\');
            return Account{sid, backslash == std::wstring::npos ? L"" : name.substr(0, backslash),
                           SidTypeUser};
        }
    }
    return std::nullopt;
}

/// Plans: ShortSize fails as for buffers that are too small.
BOOL WINAPI FakeLookupAccountNameW(const wchar_t* system, const wchar_t* account, void* sid,
                                   DWORD* sidSize, wchar_t* domain, DWORD* domainSize,
                                   SID_NAME_USE* use) {
    FakeCall call("LookupAccountNameW", Arg{"system", system}, Arg{"account", account},
                  Arg{"sidSize", *sidSize}, Arg{"domainSize", *domainSize});
    const auto& fault = call.PlannedFault();
    const bool tooSmall = fault && fault->variant == FaultVariant::ShortSize;
    if (fault && !tooSmall) {
        return call.Fails(FALSE);
    }

    World& world = call.world();
    const auto lock = world.Lock();
    const std::optional<Account> found = FindAccount(world.machine, account);
    const std::optional<std::vector<BYTE>> bytes = SidFromText(found ? found->sid : L"");
    if (!bytes) {
        return call.Fails(FALSE, ERROR_NONE_MAPPED);
    }
    if (tooSmall || *sidSize < bytes->size() || *domainSize <= found->domain.size()) {
        *sidSize = static_cast<DWORD>(bytes->size());
        *domainSize = static_cast<DWORD>(found->domain.size() + 1);
        return call.Fails(FALSE, ERROR_INSUFFICIENT_BUFFER);
    }
    CopyMemory(sid, bytes->data(), bytes->size());
    *sidSize = static_cast<DWORD>(bytes->size());
    std::wmemcpy(domain, found->domain.c_str(), found->domain.size() + 1);
    *domainSize = static_cast<DWORD>(found->domain.size());
    *use = found->use;
    return call.Returns(TRUE);
}

BOOL WINAPI FakeConvertSidToStringSidW(void* sid, wchar_t** text) {
    FakeCall call("ConvertSidToStringSidW");
    const BOOL converted = call.FailsOrPassesTo(FALSE, realConvertSidToStringSidW, sid, text);
    if (converted != FALSE) {
        call.Argument("text", *text);
        call.world().ledger.Adopt(ResourceKind::LocalMemory, *text, "SID text");
    }
    return converted;
}

HLOCAL WINAPI FakeLocalFree(HLOCAL memory) {
    FakeCall call("LocalFree", Arg{"memory", memory});
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
    redirection.RedirectImported({
        Replace<decltype(::LookupAccountNameW)>("LookupAccountNameW", FakeLookupAccountNameW),
        {"ConvertSidToStringSidW", FakeConvertSidToStringSidW, &realConvertSidToStringSidW},
        {"LocalFree", FakeLocalFree, &realLocalFree},
    });
}

}  // namespace simulation
