#include <windows.h>
// Not every SDK's header declares C linkage by itself.
extern "C" {
#include <hidsdi.h>
}

#include <algorithm>
#include <cstring>

#include "simulation/fake_call.h"
#include "simulation/fakes/common.h"
#include "simulation/fakes/families.h"

namespace simulation {
namespace {

decltype(::CreateFileW)* realCreateFileW = nullptr;

struct InterfaceOfDevice {
    const Device* device = nullptr;
    const DeviceInterface* offered = nullptr;
};

InterfaceOfDevice FindInterface(const Machine& machine, const std::wstring& path) {
    for (const Device& device : machine.devices) {
        for (const DeviceInterface& offered : device.interfaces) {
            if (SameName(offered.path, path)) {
                return {&device, &offered};
            }
        }
    }
    return {};
}

/// Under the world's lock.
HANDLE OpenInterface(FakeCall& call, const InterfaceOfDevice& found) {
    if (!found.device->present || !found.offered->hid) {
        return call.Fails<HANDLE>(INVALID_HANDLE_VALUE, ERROR_FILE_NOT_FOUND);
    }
    if (found.offered->hid->openError != ERROR_SUCCESS) {
        return call.Fails<HANDLE>(INVALID_HANDLE_VALUE, found.offered->hid->openError);
    }
    return call.Returns<HANDLE>(call.world().ledger.Acquire(
        ResourceKind::File, ToUtf8(found.offered->path), found.offered->path));
}

HANDLE WINAPI FakeCreateFileW(const wchar_t* path, DWORD access, DWORD share,
                              SECURITY_ATTRIBUTES* security, DWORD disposition, DWORD flags,
                              HANDLE templateFile) {
    FakeCall call("CreateFileW", Arg{"path", path}, Arg{"access", access}, Arg{"share", share},
                  Arg{"security", security}, Arg{"disposition", disposition}, Arg{"flags", flags},
                  Arg{"templateFile", templateFile});
    if (call.PlannedFault()) {
        return call.Fails<HANDLE>(INVALID_HANDLE_VALUE);
    }
    if (path != nullptr) {
        const auto lock = call.world().Lock();
        const InterfaceOfDevice found = FindInterface(call.world().machine, path);
        if (found.device != nullptr) {
            return OpenInterface(call, found);
        }
    }
    const HANDLE file =
        realCreateFileW(path, access, share, security, disposition, flags, templateFile);
    return file == INVALID_HANDLE_VALUE ? call.Fails(file, GetLastError()) : call.Returns(file);
}

/// What is asked of an open device. `text` is the answer that the query is about.
BOOLEAN AnswerText(FakeCall& call, HANDLE file, void* buffer, ULONG size,
                   std::optional<std::wstring> HidAnswers::*text) {
    World& world = call.world();
    const auto open = world.ledger.FindOpen(ResourceKind::File, file);
    if (!open) {
        return call.Fails<BOOLEAN>(FALSE, ERROR_INVALID_HANDLE);
    }
    const auto lock = world.Lock();
    const InterfaceOfDevice found = FindInterface(world.machine, open->subject);
    if (found.device == nullptr || !found.device->present || !found.offered->hid) {
        return call.Fails<BOOLEAN>(FALSE, ERROR_DEVICE_NOT_CONNECTED);
    }
    const std::optional<std::wstring>& answer = *found.offered->hid.*text;
    if (!answer) {
        return call.Fails<BOOLEAN>(FALSE, ERROR_INVALID_PARAMETER);
    }
    if (world.machine.lies.unterminatedTexts) {
        std::memcpy(buffer, answer->data(),
                    std::min<std::size_t>(size, answer->size() * sizeof(wchar_t)));
        return call.Returns<BOOLEAN>(TRUE);
    }
    const std::size_t needed = (answer->size() + 1) * sizeof(wchar_t);
    if (buffer == nullptr || size < needed) {
        return call.Fails<BOOLEAN>(FALSE, ERROR_INSUFFICIENT_BUFFER);
    }
    std::memcpy(buffer, answer->c_str(), needed);
    return call.Returns<BOOLEAN>(TRUE);
}

/// Plans: SuccessWithNothing leaves the buffer as it is.
BOOLEAN QueryText(FakeCall& call, HANDLE file, void* buffer, ULONG size,
                  std::optional<std::wstring> HidAnswers::*text) {
    call.Arguments({{"file", file}, {"buffer", buffer}, {"size", size}});
    if (call.IsPlanned(FaultVariant::SuccessWithNothing)) {
        return call.Returns<BOOLEAN>(TRUE);
    }
    if (call.PlannedFault()) {
        return call.Fails<BOOLEAN>(FALSE);
    }
    return AnswerText(call, file, buffer, size, text);
}

BOOLEAN NTAPI FakeHidD_GetProductString(HANDLE file, void* buffer, ULONG size) {
    FakeCall call("HidD_GetProductString");
    return QueryText(call, file, buffer, size, &HidAnswers::product);
}

BOOLEAN NTAPI FakeHidD_GetManufacturerString(HANDLE file, void* buffer, ULONG size) {
    FakeCall call("HidD_GetManufacturerString");
    return QueryText(call, file, buffer, size, &HidAnswers::manufacturer);
}

}  // namespace

void InstallHidFakes(ImportRedirection& redirection) {
    redirection.RedirectImported({
        {"CreateFileW", FakeCreateFileW, &realCreateFileW},
        Replace<decltype(::HidD_GetProductString)>("HidD_GetProductString",
                                                   FakeHidD_GetProductString),
        Replace<decltype(::HidD_GetManufacturerString)>("HidD_GetManufacturerString",
                                                        FakeHidD_GetManufacturerString),
    });
}

}  // namespace simulation
