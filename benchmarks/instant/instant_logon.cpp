// windows.h has to come first.
#include "instant/instant_calls.h"
// Behind it.
#include <sddl.h>
#define SECURITY_WIN32
#include <security.h>

#include <cstring>
#include <cwchar>

namespace benchmarks {
namespace {

constexpr wchar_t kSid[] = L"S-1-5-21-1004336348-1177238915-682003330-1001";

DWORD WINAPI ConsoleSession() { return 1; }
BOOL WINAPI UserToken(ULONG, HANDLE*) { return FALSE; }
BOOLEAN WINAPI UserName(EXTENDED_NAME_FORMAT, wchar_t* name, ULONG*) {
    std::wcscpy(name, L"PC\\ann");
    return TRUE;
}
BOOL WINAPI LookUpAccount(const wchar_t*, const wchar_t*, void*, DWORD*, wchar_t*, DWORD*,
                          SID_NAME_USE*) {
    return TRUE;
}
BOOL WINAPI SidText(void*, wchar_t** text) {
    *text = static_cast<wchar_t*>(LocalAlloc(LMEM_FIXED, sizeof(kSid)));
    std::memcpy(*text, kSid, sizeof(kSid));
    return TRUE;
}

/// What a version resource begins with is all that is asked for.
VS_FIXEDFILEINFO version{};

DWORD WINAPI VersionSize(const wchar_t*, DWORD*) { return sizeof(version); }
BOOL WINAPI VersionInfo(const wchar_t*, DWORD, DWORD, void* block) {
    std::memcpy(block, &version, sizeof(version));
    return TRUE;
}
BOOL WINAPI VersionValue(void* block, const wchar_t*, void** value, UINT* size) {
    *value = block;
    *size = sizeof(version);
    return TRUE;
}

}  // namespace

void PutInstantLogon(simulation::ImportRedirection& redirection) {
    version.dwSignature = VS_FFI_SIGNATURE;
    version.dwProductVersionMS = MAKELONG(0, 12);
    version.dwProductVersionLS = MAKELONG(105, 3);
    Put(redirection, "WTSGetActiveConsoleSessionId", reinterpret_cast<void*>(&ConsoleSession));
    Put(redirection, "WTSQueryUserToken", reinterpret_cast<void*>(&UserToken));
    Put(redirection, "GetUserNameExW", reinterpret_cast<void*>(&UserName));
    Put(redirection, "LookupAccountNameW", reinterpret_cast<void*>(&LookUpAccount));
    Put(redirection, "ConvertSidToStringSidW", reinterpret_cast<void*>(&SidText));
    Put(redirection, "GetFileVersionInfoSizeW", reinterpret_cast<void*>(&VersionSize));
    Put(redirection, "GetFileVersionInfoW", reinterpret_cast<void*>(&VersionInfo));
    Put(redirection, "VerQueryValueW", reinterpret_cast<void*>(&VersionValue));
}

}  // namespace benchmarks
