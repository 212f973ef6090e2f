// Accounts, sessions and tokens: the fakes and the system answer alike. Left out is what Wine does
// not implement or does otherwise than Windows: it lists no sessions, has a token for each, and
// tells the letter cases of accounts apart.
#include <windows.h>
#include <gmock/gmock.h>
#include <sddl.h>
#include <wtsapi32.h>
#define SECURITY_WIN32
#include <security.h>

#include <cwchar>

#include "agreement.h"

namespace simulation {
namespace {

/// What a look-up of an account came to.
struct Account {
    explicit Account(const wchar_t* name, DWORD sidRoom = 260, DWORD domainRoom = 260)
        : sidSize(sidRoom), domainSize(domainRoom) {
        outcome =
            Outcome(LookupAccountNameW(nullptr, name, sid, &sidSize, domain, &domainSize, &use));
    }

    alignas(8) BYTE sid[260] = {};
    wchar_t domain[260] = {};
    DWORD sidSize;
    DWORD domainSize;
    SID_NAME_USE use = SidTypeUnknown;
    LONG outcome;
};

const wchar_t* OwnName(Subject& s) {
    s.size = 1024;
    EXPECT_TRUE(GetUserNameExW(NameSamCompatible, s.text, &s.size));
    return s.text;
}

TEST(LogonFakesAndTheSystem, AnswerAlike) {
    ExpectSameAnswers({
        {"account without a name",
         [](Subject&) {
             const Account account(L"");
             return account.outcome * 1000 + account.use * 100 + LONG(account.sidSize);
         }},
        {"domain of an account without a name",
         [](Subject&) {
             const Account account(L"");
             return static_cast<LONG>(account.domainSize) * 1000 +
                    std::wcscmp(account.domain, L"BUILTIN");
         }},
        {"SID of an account without a name",
         [](Subject&) {
             Account account(L"");
             wchar_t* text = nullptr;
             EXPECT_TRUE(ConvertSidToStringSidW(account.sid, &text));
             const LONG answer = std::wcscmp(text, L"S-1-5-32");
             LocalFree(text);
             return answer;
         }},
        {"account without a name into a SID that is too small",
         [](Subject&) {
             const Account account(L"", 4);
             return account.outcome * 1000 + LONG(account.sidSize * 100 + account.domainSize);
         }},
        {"account without a name into a domain that is too small",
         [](Subject&) {
             const Account account(L"", 260, 3);
             return account.outcome * 1000 + LONG(account.domainSize);
         }},
        {"account that is not there", [](Subject&) { return Account(L"no such account").outcome; }},
        {"account of a domain that is not there",
         [](Subject&) { return Account(L"NoSuchDomain\\nobody").outcome; }},
        {"own account",
         [](Subject& s) {
             const Account account(OwnName(s));
             return account.outcome * 1000 + account.use * 100 + LONG(account.sidSize) +
                    LONG(account.domainSize - std::wcslen(account.domain));
         }},
        {"own account into a SID that is too small",
         [](Subject& s) {
             const Account account(OwnName(s), 4);
             return account.outcome * 1000 + LONG(account.sidSize);
         }},
        {"own account into a domain that is too small",
         [](Subject& s) {
             const std::wstring name = OwnName(s);
             const Account account(name.c_str(), 260, 1);
             return account.outcome * 1000 + LONG(account.domainSize - name.find(L'\\'));
         }},
        {"text of no SID",
         [](Subject&) {
             wchar_t* text = nullptr;
             return Outcome(ConvertSidToStringSidW(nullptr, &text));
         }},
        {"free nothing", [](Subject&) { return LONG(LocalFree(nullptr) == nullptr); }},
        {"console session", [](Subject&) { return LONG(WTSGetActiveConsoleSessionId()); }},
        {"token into nothing", [](Subject&) { return Outcome(WTSQueryUserToken(1, nullptr)); }},
        {"impersonate nobody", [](Subject&) { return Outcome(ImpersonateLoggedOnUser(nullptr)); }},
        {"revert without impersonating", [](Subject&) { return Outcome(RevertToSelf()); }},
        {"impersonate by a token and revert",
         [](Subject&) {
             HANDLE token = nullptr;
             EXPECT_TRUE(WTSQueryUserToken(1, &token));
             const LONG outcome = Outcome(ImpersonateLoggedOnUser(token));
             EXPECT_TRUE(RevertToSelf());
             CloseHandle(token);
             return outcome;
         }},
        {"close no token", [](Subject&) { return Outcome(CloseHandle(nullptr)); }},
        {"own name, less its text",
         [](Subject& s) {
             OwnName(s);
             return static_cast<LONG>(s.size - std::wcslen(s.text));
         }},
        {"own name into a buffer that is too small",
         [](Subject& s) {
             OwnName(s);
             DWORD size = 3;
             wchar_t text[3] = {};
             const LONG outcome = Outcome(GetUserNameExW(NameSamCompatible, text, &size));
             return outcome * 10 + static_cast<LONG>(size - s.size);
         }},
        {"own name into a buffer that just holds it",
         [](Subject& s) {
             OwnName(s);
             ++s.size;
             return Outcome(GetUserNameExW(NameSamCompatible, s.text, &s.size));
         }},
        {"own name into a buffer without room for its end",
         [](Subject& s) {
             OwnName(s);
             return Outcome(GetUserNameExW(NameSamCompatible, s.text, &s.size));
         }},
        {"size of the own name",
         [](Subject& s) {
             s.size = 0;
             return Outcome(GetUserNameExW(NameSamCompatible, nullptr, &s.size));
         }},
        {"own name in no form",
         [](Subject& s) {
             s.size = 1024;
             return Outcome(GetUserNameExW(NameUnknown, s.text, &s.size));
         }},
    });
}

}  // namespace
}  // namespace simulation
