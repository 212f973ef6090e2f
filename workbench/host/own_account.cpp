#include "host/own_account.h"

#include <windows.h>
// windows.h has to come first.
#include <sddl.h>

#include <memory>

#include "host/host_error.h"
#include "host/win32_error.h"
#include "util/scoped_handle.h"

namespace host {

std::wstring OwnSid() {
    // A SID has at most 15 sub-authorities.
    alignas(TOKEN_USER) BYTE user[sizeof(TOKEN_USER) + SECURITY_MAX_SID_SIZE];
    DWORD size = 0;
    ScopedKernelHandle token;
    wchar_t* text = nullptr;
    if (!OpenProcessToken(GetCurrentProcess(), TOKEN_QUERY, token.Receive()) ||
        !GetTokenInformation(token.Get(), TokenUser, user, sizeof(user), &size) ||
        !ConvertSidToStringSidW(reinterpret_cast<TOKEN_USER*>(user)->User.Sid, &text)) {
        throw HostError(ExitCode::RunFailed,
                        "cannot find out the account's SID: " + Win32ErrorText(GetLastError()) +
                            "; run on a described machine: --machine FILE");
    }
    const std::unique_ptr<wchar_t, decltype(&LocalFree)> owner(text, LocalFree);
    return text;
}

}  // namespace host
