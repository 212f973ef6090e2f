// The monitor's thread inside somebody else's process: its class, its window and its messages.
#include <gtest/gtest.h>

#include <algorithm>
#include <string>
#include <utility>
#include <vector>

#include "library/device_monitor/monitored_plugin.h"
#include "simulation/call_text.h"
#include "simulation/import_redirection.h"
#include "support/monitor_window.h"

namespace {

using namespace device_monitor_test;
using simulation::CallText;
using simulation::JournalEntry;
using Texts = std::vector<std::string>;
using Arguments = std::vector<std::pair<std::string, std::string>>;

class MonitorThread : public MonitoredPlugin {
protected:
    /// The arguments of the only call of a function.
    Arguments ArgumentsOf(const std::string& function) {
        const auto calls = Journal().Calls(function);
        EXPECT_EQ(calls.size(), 1u) << function;
        Arguments arguments;
        for (const JournalEntry& call : calls) {
            for (const simulation::CallArgument& argument : call.arguments) {
                arguments.emplace_back(argument.name, argument.value);
            }
        }
        return arguments;
    }
    std::string WindowText() {
        return CallText(static_cast<const void*>(test_support::FindMonitorWindow()));
    }
    /// What the plug-in hands over from the thread to its window.
    std::string Parameter() { return Journal().Calls("CreateWindowExW").at(0)["parameter"]; }

    /// The host executable's module, as the journal writes it.
    const std::string hostModule = CallText(static_cast<const void*>(GetModuleHandleW(nullptr)));
};

TEST_F(MonitorThread, IsCreatedWithDefaultSettingsAndBeforeTheHourlyReportIsRegistered) {
    std::size_t threadsBefore = 0;
    suite.log.onLine = [&](const test_support::LogLine& line) {
        if (line.text.find(L"Register timer:1(") == 0) {
            threadsBefore = Journal().Count("CreateThread");
        }
    };
    Start();
    EXPECT_EQ(threadsBefore, 1u);
    const JournalEntry call = Journal().Calls("CreateThread").at(0);
    EXPECT_EQ(call.threadId, GetCurrentThreadId());
    EXPECT_EQ(call["security"], "null");
    EXPECT_EQ(call["stackSize"], "0");
    EXPECT_EQ(call["parameter"], Parameter());
    EXPECT_EQ(call["flags"], "0");
    EXPECT_EQ(call["threadId"], "null");
    // Its handle is closed at once.
    EXPECT_EQ(World().ledger.CountOpen(simulation::ResourceKind::Thread), 0u);
}

TEST_F(MonitorThread, GoesThroughItsStepsInOrderFromItsClassToTheReferenceThatItGivesBack) {
    const Texts steps{
        "RegisterClassW",       "CreateWindowExW",      "RegisterDeviceNotificationW",
        "SetupDiGetClassDevsW", "SetupDiGetClassDevsW", "UnregisterDeviceNotification",
        "PostQuitMessage",      "UnregisterClassW",     "FreeLibraryAndExitThread"};
    Start();
    const auto fills = Journal().Calls("SetupDiGetClassDevsW");
    ASSERT_EQ(fills.size(), 2u);
    EXPECT_EQ(fills[0]["classGuid"], "{4D1E55B2-F16F-11CF-88CB-001111000030}");
    EXPECT_EQ(fills[0]["flags"], "18");
    EXPECT_EQ(fills[1]["classGuid"], "null");
    EXPECT_EQ(fills[1]["flags"], "6");
    EXPECT_LT(fills[1].sequence, Journal().Calls("GetMessageW").at(0).sequence);
    Stop();
    Texts done;
    for (const JournalEntry& call : Journal().Entries()) {
        if (call.function == "DestroyWindow" ||
            std::find(steps.begin(), steps.end(), call.function) != steps.end()) {
            done.push_back(call.function);
            EXPECT_EQ(call.threadId, MonitorThreadId()) << call.function;
        }
    }
    EXPECT_EQ(done, steps);
    EXPECT_EQ(ArgumentsOf("FreeLibraryAndExitThread").at(1).second, "0");
    // Of the timer's start and of the monitor's; the thread has its creator's handle.
    EXPECT_EQ(Journal().Count("GetModuleHandleExW"), 2u);
}

TEST_F(MonitorThread, HasAClassOfProcedureAndNameThatBelongsToTheHostsExecutable) {
    Start();
    ASSERT_NE(GetModuleHandleW(nullptr), module.Handle());
    WNDCLASSW windowClass{};
    ASSERT_TRUE(GetClassInfoW(GetModuleHandleW(nullptr), L"DeviceMonitorWnd", &windowClass));
    EXPECT_EQ(ArgumentsOf("RegisterClassW"),
              (Arguments{{"style", "0"},
                         {"procedure", CallText(windowClass.lpfnWndProc)},
                         {"classBytes", "0"},
                         {"windowBytes", "0"},
                         {"instance", hostModule},
                         {"icon", "null"},
                         {"cursor", "null"},
                         {"background", "null"},
                         {"menuName", "null"},
                         {"className", "DeviceMonitorWnd"}}));
    Stop();
    EXPECT_EQ(ArgumentsOf("UnregisterClassW"),
              (Arguments{{"className", "DeviceMonitorWnd"}, {"instance", hostModule}}));
    EXPECT_FALSE(GetClassInfoW(GetModuleHandleW(nullptr), L"DeviceMonitorWnd", &windowClass));
}

TEST_F(MonitorThread, OwnsAMessageOnlyWindow) {
    Start();
    EXPECT_EQ(GetWindowThreadProcessId(test_support::FindMonitorWindow(), nullptr),
              MonitorThreadId());
    EXPECT_EQ(ArgumentsOf("CreateWindowExW"),
              (Arguments{{"extendedStyle", "0"},
                         {"className", "DeviceMonitorWnd"},
                         {"title", ""},
                         {"style", std::to_string(0x00CF0000)},  // WS_OVERLAPPEDWINDOW
                         {"x", "-2147483648"},                   // CW_USEDEFAULT
                         {"y", "-2147483648"},
                         {"width", "-2147483648"},
                         {"height", "-2147483648"},
                         {"parent", "HWND_MESSAGE"},
                         {"menu", "null"},
                         {"instance", hostModule},
                         {"parameter", Parameter()}}));
    Stop();
    EXPECT_EQ(test_support::FindMonitorWindow(), nullptr);
}

// --- Its messages ---

TEST_F(MonitorThread, GetsOneRequestPerHourFromTheTimerLoopAndIsClosedByStop) {
    Start();
    const std::string window = WindowText();
    PassHours(3);
    Stop();
    const auto posts = Journal().Calls("PostMessageW");
    ASSERT_EQ(posts.size(), 4u);
    for (const JournalEntry& post : posts) {
        const bool isRequest = &post != &posts.back();
        EXPECT_EQ(post["window"], window);
        EXPECT_EQ(post["message"], std::to_string(isRequest ? 2025 : WM_CLOSE));
        EXPECT_EQ(post["wParam"], "0");
        EXPECT_EQ(post["lParam"], "0");
        EXPECT_NE(post.threadId, MonitorThreadId());
        EXPECT_EQ(post.threadId == GetCurrentThreadId(), !isRequest);
    }
    EXPECT_EQ(Timeline().Count(kStopWithoutWindow), 0u);
}

std::vector<MSG> translated;
std::vector<MSG> dispatched;
decltype(::TranslateMessage)* nextTranslateMessage = nullptr;
decltype(::DispatchMessageW)* nextDispatchMessage = nullptr;

BOOL WINAPI NotedTranslateMessage(const MSG* message) {
    translated.push_back(*message);
    return nextTranslateMessage(message);
}

LRESULT WINAPI NotedDispatchMessage(const MSG* message) {
    dispatched.push_back(*message);
    return nextDispatchMessage(message);
}

TEST_F(MonitorThread, TranslatesAndDispatchesEachMessageAlsoTheEmptyOneOfAnError) {
    simulation::ImportRedirection redirection(module.Handle());
    nextTranslateMessage = redirection.Redirect<decltype(::TranslateMessage)>(
        "TranslateMessage", NotedTranslateMessage);
    nextDispatchMessage = redirection.Redirect<decltype(::DispatchMessageW)>("DispatchMessageW",
                                                                             NotedDispatchMessage);
    World().faults.FailCall("GetMessageW", 1, ERROR_INVALID_WINDOW_HANDLE);
    Start();
    const HWND window = test_support::FindMonitorWindow();
    ASSERT_TRUE(PostMessageW(window, WM_APP + 5, 6, 7));
    Stop();
    for (const std::vector<MSG>& messages : {translated, dispatched}) {
        ASSERT_GE(messages.size(), 2u);
        EXPECT_EQ(messages[0].hwnd, nullptr);
        EXPECT_EQ(messages[0].message, 0u);
        EXPECT_EQ(messages[0].wParam, 0u);
        EXPECT_EQ(messages[0].lParam, 0);
        const auto isPosted = [window](const MSG& message) {
            return message.hwnd == window && message.message == WM_APP + 5 && message.wParam == 6 &&
                   message.lParam == 7;
        };
        EXPECT_EQ(std::count_if(messages.begin(), messages.end(), isPosted), 1);
    }
    // Of any window and any kind.
    for (const JournalEntry& call : Journal().Calls("GetMessageW")) {
        EXPECT_EQ(call["window"], "null");
        EXPECT_EQ(call["first"], "0");
        EXPECT_EQ(call["last"], "0");
    }
}

ScopedKernelHandle mayRegister;
decltype(::RegisterClassW)* nextRegisterClassW = nullptr;

ATOM WINAPI LateRegisterClassW(const WNDCLASSW* windowClass) {
    const ATOM atom = nextRegisterClassW(windowClass);
    WaitForSingleObject(mayRegister.Get(), INFINITE);
    return atom;
}

TEST_F(MonitorThread, WhoseWindowComesLateIsAskedFromTheNextHourOn) {
    mayRegister.Reset(CreateEventW(nullptr, /*bManualReset=*/TRUE, FALSE, nullptr));
    simulation::ImportRedirection redirection(module.Handle());
    nextRegisterClassW =
        redirection.Redirect<decltype(::RegisterClassW)>("RegisterClassW", LateRegisterClassW);
    Start(/*expectMonitor=*/false);
    PassHours(1);
    EXPECT_EQ(Timeline().Count(kTickWithoutWindow), 1u);
    SetEvent(mayRegister.Get());
    ASSERT_TRUE(ComesTrue([this] { return Journal().Count("GetMessageW") > 0; }));
    PassHours(23);
    EXPECT_EQ(Timeline().Count(kTickWithoutWindow), 1u);
    EXPECT_EQ(Timeline().Count(kListEvent), 1u);
    Stop();
}

}  // namespace
