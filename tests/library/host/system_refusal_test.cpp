// What the host says when the system refuses it something. The program's own import table is
// redirected, so that the host's code in it meets the refusal.
#include <gtest/gtest.h>
#include <windows.h>

#include <bcrypt.h>
#include <sddl.h>
#include <wincrypt.h>

#include "host/host_error.h"
#include "host/kept_state.h"
#include "host/own_account.h"
#include "host/page/source_hash.h"
#include "host/run_clock.h"
#include "host/screen.h"
#include "host/stop_signal.h"
#include "host/this_computer.h"
#include "host/win32_error.h"
#include "simulation/import_redirection.h"

namespace host {
namespace {

constexpr char kMoreRights[] = "; run with more rights, or on a described machine: --machine FILE";

BOOL WINAPI RefuseSidText(PSID /*sid*/, wchar_t** /*text*/) {
    SetLastError(ERROR_INVALID_SID);
    return FALSE;
}

BOOL WINAPI RefuseControlHandler(PHANDLER_ROUTINE /*handler*/, BOOL /*add*/) {
    SetLastError(ERROR_NOT_ENOUGH_MEMORY);
    return FALSE;
}

LSTATUS WINAPI RefuseRemoval(HKEY /*root*/, const wchar_t* /*key*/, const wchar_t* /*name*/) {
    return ERROR_ACCESS_DENIED;
}

LSTATUS WINAPI RefuseValue(HKEY /*root*/, const wchar_t* /*key*/, const wchar_t* /*name*/,
                           DWORD /*type*/, const void* /*data*/, DWORD /*size*/) {
    return ERROR_ACCESS_DENIED;
}

BOOL WINAPI RefuseCopy(const wchar_t* /*from*/, const wchar_t* /*to*/, BOOL /*mayNotExist*/) {
    SetLastError(ERROR_DISK_FULL);
    return FALSE;
}

BOOL WINAPI RefuseAttributes(const wchar_t* /*path*/, GET_FILEEX_INFO_LEVELS /*level*/,
                             void* /*data*/) {
    return FALSE;
}

NTSTATUS WINAPI RefuseHash(BCRYPT_ALG_HANDLE /*algorithm*/, UCHAR* /*secret*/, ULONG /*secretSize*/,
                           UCHAR* /*input*/, ULONG /*inputSize*/, UCHAR* /*output*/,
                           ULONG /*outputSize*/) {
    return static_cast<NTSTATUS>(0xC0000001);
}

NTSTATUS WINAPI RefuseAlgorithm(BCRYPT_ALG_HANDLE* /*opened*/, const wchar_t* /*name*/,
                                const wchar_t* /*implementation*/, ULONG /*flags*/) {
    return static_cast<NTSTATUS>(0xC0000001);
}

BOOL WINAPI RefuseText(const BYTE* /*bytes*/, DWORD /*count*/, DWORD /*form*/, char* /*text*/,
                       DWORD* /*size*/) {
    return FALSE;
}

std::string Unsealed(const std::string& function) {
    return "the page cannot be sealed: " + function +
           " failed; record the run with --events and make the page on another computer: --from "
           "FILE";
}

class SystemRefusal : public testing::Test {
protected:
    template <typename Act>
    static std::string ErrorOf(Act act) {
        try {
            act();
        } catch (const HostError& error) {
            EXPECT_EQ(error.Code(), ExitCode::RunFailed);
            return error.what();
        }
        return "no error";
    }

    void Prepare(KeptState wanted) { ThisComputer(wanted, screen).Prepare(); }

    simulation::ImportRedirection imports{GetModuleHandleW(nullptr)};
    RunClock clock;
    Screen screen{clock, Screen::Detail::SummaryOnly};
};

TEST_F(SystemRefusal, OfTheAccountsSidIsTold) {
    imports.Redirect<decltype(::ConvertSidToStringSidW)>("ConvertSidToStringSidW", RefuseSidText);
    EXPECT_EQ(ErrorOf([] { OwnSid(); }),
              "cannot find out the account's SID: " + Win32ErrorText(ERROR_INVALID_SID) +
                  "; run on a described machine: --machine FILE");
}

TEST_F(SystemRefusal, OfAHandlerForCtrlCIsTold) {
    imports.Redirect<decltype(::SetConsoleCtrlHandler)>("SetConsoleCtrlHandler",
                                                        RefuseControlHandler);
    EXPECT_EQ(ErrorOf([] { const StopSignal signal; }),
              "cannot watch for Ctrl-C: " + Win32ErrorText(ERROR_NOT_ENOUGH_MEMORY) +
                  "; start the host from a console");
}

TEST_F(SystemRefusal, OfRemovingWhatThePluginKeptIsTold) {
    imports.Redirect<decltype(::RegDeleteKeyValueW)>("RegDeleteKeyValueW", RefuseRemoval);
    EXPECT_EQ(ErrorOf([&] { Prepare(KeptState::Remove); }),
              "cannot remove the registry value BiosReportTime: " +
                  Win32ErrorText(ERROR_ACCESS_DENIED) + kMoreRights);
}

TEST_F(SystemRefusal, OfASwitchIsTold) {
    imports.Redirect<decltype(::RegSetKeyValueW)>("RegSetKeyValueW", RefuseValue);
    EXPECT_EQ(
        ErrorOf([&] {
            ThisComputer(KeptState::Keep, screen).Perform(SetSwitch{L"PowerfulModeStatus", 1});
        }),
        "cannot set the registry value PowerfulModeStatus: " + Win32ErrorText(ERROR_ACCESS_DENIED) +
            kMoreRights);
}

TEST_F(SystemRefusal, OfInstallingTheComponentIsTold) {
    imports.Redirect<decltype(::GetFileAttributesExW)>("GetFileAttributesExW", RefuseAttributes);
    imports.Redirect<decltype(::CopyFileW)>("CopyFileW", RefuseCopy);
    EXPECT_EQ(ErrorOf([&] { Prepare(KeptState::Keep); }),
              "cannot copy the optimisation component to 'C:\\Program "
              "Files\\Zentro\\Orbisuite\\components\\TuneBoost\\TuneBoostCenter.exe': " +
                  Win32ErrorText(ERROR_DISK_FULL) + kMoreRights);
}

TEST_F(SystemRefusal, OfTheKindOfHashForThePageIsTold) {
    imports.Redirect<decltype(::BCryptOpenAlgorithmProvider)>("BCryptOpenAlgorithmProvider",
                                                              RefuseAlgorithm);
    EXPECT_EQ(ErrorOf([] { SourceHash("text"); }), Unsealed("BCryptOpenAlgorithmProvider"));
}

TEST_F(SystemRefusal, OfAHashForThePageIsTold) {
    imports.Redirect<decltype(::BCryptHash)>("BCryptHash", RefuseHash);
    EXPECT_EQ(ErrorOf([] { SourceHash("text"); }), Unsealed("BCryptHash"));
}

TEST_F(SystemRefusal, OfTheHashAsATextIsTold) {
    imports.Redirect<decltype(::CryptBinaryToStringA)>("CryptBinaryToStringA", RefuseText);
    EXPECT_EQ(ErrorOf([] { SourceHash("text"); }), Unsealed("CryptBinaryToString"));
}

}  // namespace
}  // namespace host
