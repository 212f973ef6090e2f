#include "host/stop_signal.h"

#include <gtest/gtest.h>
#include <windows.h>

namespace host {
namespace {

using std::chrono::milliseconds;

/// What the system runs in a process when Ctrl-C is pressed at its console.
bool PressCtrlC() {
    const auto routine = reinterpret_cast<LPTHREAD_START_ROUTINE>(reinterpret_cast<void*>(
        GetProcAddress(GetModuleHandleW(L"kernelbase.dll"), "CtrlRoutine")));
    if (routine == nullptr) {
        return false;
    }
    DWORD event = CTRL_C_EVENT;
    const HANDLE thread = CreateThread(
        nullptr, 0, routine, reinterpret_cast<void*>(static_cast<ULONG_PTR>(event)), 0, nullptr);
    return thread != nullptr && CloseHandle(thread) != FALSE;
}

TEST(StopSignal, EndsAWaitOnCtrlCInsteadOfTheProcess) {
    const StopSignal signal;
    EXPECT_FALSE(signal.WaitFor(milliseconds(1)));
    ASSERT_TRUE(PressCtrlC());
    EXPECT_TRUE(signal.WaitFor(milliseconds(30000)));
    EXPECT_TRUE(signal.WaitFor(milliseconds(0)));  // And stays.
}

TEST(StopSignal, IsFreshEachTime) {
    { const StopSignal signal; }
    const StopSignal signal;
    EXPECT_FALSE(signal.WaitFor(milliseconds(1)));
}

}  // namespace
}  // namespace host
