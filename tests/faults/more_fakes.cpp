#include "faults/more_fakes.h"

#include <process.h>

#include <atomic>
#include <cerrno>
#include <cstdarg>
#include <cwchar>

#include "simulation/compiler_runtime.h"
#include "simulation/fake_call.h"
#include "simulation/fakes/common.h"

namespace faults_test {
namespace {

using simulation::FakeCall;
using ThreadFunction = unsigned __stdcall(void*);
using BeginThreadFunction = std::uintptr_t __cdecl(void*, unsigned, ThreadFunction*, void*,
                                                   unsigned, unsigned*);
using StopMonitorFunction = int(void*);

// How g++ and Microsoft's compiler spell VrSDK::BiosEventMonitor::StopEventMonitor.
constexpr char kStopEventMonitor[] = "_ZN5VrSDK16BiosEventMonitor16StopEventMonitorEv";
constexpr char kMicrosoftStopEventMonitor[] = "?StopEventMonitor@BiosEventMonitor@VrSDK@@QEAAHXZ";

decltype(::WideCharToMultiByte)* realWideCharToMultiByte = nullptr;
decltype(::MultiByteToWideChar)* realMultiByteToWideChar = nullptr;
decltype(::CreateThread)* realCreateThread = nullptr;
BeginThreadFunction* realBeginThread = nullptr;
StopMonitorFunction* realStopMonitor = nullptr;

int WINAPI FakeWideCharToMultiByte(UINT codePage, DWORD flags, const wchar_t* text, int length,
                                   char* result, int size, const char* defaultChar,
                                   BOOL* usedDefault) {
    // The C++ library fills its tables of characters in this way.
    if (usedDefault != nullptr) {
        return realWideCharToMultiByte(codePage, flags, text, length, result, size, defaultChar,
                                       usedDefault);
    }
    FakeCall call("WideCharToMultiByte");
    call.Argument("codePage", codePage == CP_UTF8 ? "UTF-8" : "ANSI");
    call.Argument("text", length < 0 ? simulation::ToUtf8(text).c_str()
                                     : simulation::ToUtf8({text, std::size_t(length)}).c_str());
    call.Argument("step", size == 0 ? "size" : "text");
    if (call.PlannedFault()) {
        return call.Fails(0);
    }
    return call.PassTo(realWideCharToMultiByte, codePage, flags, text, length, result, size,
                       defaultChar, usedDefault);
}

int WINAPI FakeMultiByteToWideChar(UINT codePage, DWORD flags, const char* text, int length,
                                   wchar_t* result, int size) {
    if (flags != 0) {
        return realMultiByteToWideChar(codePage, flags, text, length, result, size);
    }
    FakeCall call("MultiByteToWideChar");
    call.Argument("length", length);
    call.Argument("step", size == 0 ? "size" : "text");
    if (call.PlannedFault()) {
        return call.Fails(0);
    }
    return call.PassTo(realMultiByteToWideChar, codePage, flags, text, length, result, size);
}

int Format(wchar_t* buffer, std::size_t size, const wchar_t* form, va_list arguments) {
    FakeCall call("swprintf_s");
    if (call.PlannedFault()) {
        *buffer = L'\0';
        return call.Fails(-1);
    }
    return call.Returns(_vsnwprintf(buffer, size, form, arguments));
}

int __cdecl FakeSwprintf(wchar_t* buffer, std::size_t size, const wchar_t* form, ...) {
    va_list arguments;
    va_start(arguments, form);
    const int length = Format(buffer, size, form, arguments);
    va_end(arguments);
    return length;
}

int __cdecl FakeCommonFormat(std::uint64_t /*options*/, wchar_t* buffer, std::size_t size,
                             const wchar_t* form, void* /*locale*/, va_list arguments) {
    return Format(buffer, size, form, arguments);
}

std::uintptr_t __cdecl FakeBeginThread(void* security, unsigned stackSize, ThreadFunction* start,
                                       void* parameter, unsigned flags, unsigned* id) {
    FakeCall call("_beginthreadex");
    if (call.PlannedFault()) {
        errno = EAGAIN;
        return call.Fails<std::uintptr_t>(0);
    }
    return call.PassTo(realBeginThread, security, stackSize, start, parameter, flags, id);
}

int FakeStopMonitor(void* monitor) {
    FakeCall call("BiosEventMonitor::StopEventMonitor");
    const int result = realStopMonitor(monitor);
    // It did stop: nobody knows what a monitor does that refuses to.
    return call.PlannedFault() ? call.Fails(-1) : call.Returns(result);
}

// The thread under way to its start.
HANDLE gate = nullptr;
std::atomic<LPTHREAD_START_ROUTINE> heldStart{nullptr};
std::atomic<DWORD> heldThreadId{0};

DWORD WINAPI WaitAndStart(void* parameter) {
    heldThreadId = GetCurrentThreadId();
    WaitForSingleObject(gate, INFINITE);
    return heldStart.load()(parameter);
}

HANDLE WINAPI HoldingCreateThread(SECURITY_ATTRIBUTES* security, SIZE_T stackSize,
                                  LPTHREAD_START_ROUTINE start, void* parameter, DWORD flags,
                                  DWORD* threadId) {
    heldStart = start;
    return realCreateThread(security, stackSize, &WaitAndStart, parameter, flags, threadId);
}

}  // namespace

void InstallMoreFakes(simulation::ImportRedirection& redirection) {
    realWideCharToMultiByte = redirection.Redirect<decltype(::WideCharToMultiByte)>(
        "WideCharToMultiByte", FakeWideCharToMultiByte);
    realMultiByteToWideChar = redirection.Redirect<decltype(::MultiByteToWideChar)>(
        "MultiByteToWideChar", FakeMultiByteToWideChar);
    redirection.RedirectImported(
        {simulation::Replace<decltype(FakeSwprintf)>("swprintf_s", FakeSwprintf),
         simulation::Replace<decltype(FakeCommonFormat)>(simulation::runtime::kBoundedFormat,
                                                         FakeCommonFormat)});
    realBeginThread = redirection.Redirect<BeginThreadFunction>("_beginthreadex", FakeBeginThread);
    realStopMonitor = redirection.Redirect<StopMonitorFunction>(
        redirection.Imports(kStopEventMonitor) ? kStopEventMonitor : kMicrosoftStopEventMonitor,
        FakeStopMonitor);
    // Around the fake that journals it.
    realCreateThread =
        redirection.Redirect<decltype(::CreateThread)>("CreateThread", HoldingCreateThread);
}

HeldMonitorThread::HeldMonitorThread() {
    heldThreadId = 0;
    gate = CreateEventW(nullptr, /*bManualReset=*/TRUE, /*bInitialState=*/FALSE, nullptr);
}

HeldMonitorThread::~HeldMonitorThread() {
    LetGo();
    CloseHandle(gate);
}

void HeldMonitorThread::LetGo() { SetEvent(gate); }

DWORD HeldMonitorThread::ThreadId() { return heldThreadId; }

}  // namespace faults_test
