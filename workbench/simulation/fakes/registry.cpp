#include <windows.h>

#include <algorithm>

#include "simulation/fake_call.h"
#include "simulation/fakes/common.h"
#include "simulation/fakes/families.h"

namespace simulation {
namespace {

constexpr std::wstring_view kMonitorKeys = L"SYSTEM\\CurrentControlSet\\Enum\\DISPLAY\\";

decltype(::RegOpenKeyExA)* realRegOpenKeyExA = nullptr;
decltype(::RegQueryValueExA)* realRegQueryValueExA = nullptr;
decltype(::RegCloseKey)* realRegCloseKey = nullptr;

/// Key names come in the ANSI code page.
std::wstring Widen(const char* text) {
    const int units = MultiByteToWideChar(CP_ACP, 0, text, -1, nullptr, 0);
    std::wstring wide(static_cast<std::size_t>(std::max(units, 1)), L'\0');
    MultiByteToWideChar(CP_ACP, 0, text, -1, wide.data(), units);
    wide.resize(wide.size() - 1);
    return wide;
}

/// Where the system keeps the parameters of the monitor "\\?\DISPLAY#ABC1234#instance#{class}".
/// Empty for a path of another form.
std::wstring ParametersKey(const std::wstring& devicePath) {
    const std::size_t model = devicePath.find(L'#');
    const std::size_t instance = devicePath.find(L'#', model + 1);
    const std::size_t end = devicePath.find(L'#', instance + 1);
    if (model == std::wstring::npos || instance == std::wstring::npos ||
        end == std::wstring::npos) {
        return {};
    }
    return std::wstring(kMonitorKeys) + devicePath.substr(model + 1, instance - model - 1) + L'\\' +
           devicePath.substr(instance + 1, end - instance - 1) + L"\\Device Parameters";
}

/// Monitors that the machine does not have are not looked for in the real registry.
LSTATUS WINAPI FakeRegOpenKeyExA(HKEY root, const char* subKey, DWORD options, REGSAM access,
                                 HKEY* key) {
    FakeCall call("RegOpenKeyExA");
    if (root == HKEY_LOCAL_MACHINE) {
        call.Argument("root", "HKEY_LOCAL_MACHINE");
    } else {
        call.Argument("root", root);
    }
    call.Arguments({{"subKey", subKey}, {"options", options}, {"access", access}});
    if (call.PlannedFault()) {
        return call.FailsWithStatus<LSTATUS>();
    }
    World& world = call.world();
    const std::wstring path = subKey == nullptr ? std::wstring() : Widen(subKey);
    if (root != HKEY_LOCAL_MACHINE ||
        !SameName(path.substr(0, kMonitorKeys.size()), kMonitorKeys)) {
        const LSTATUS status = realRegOpenKeyExA(root, subKey, options, access, key);
        if (status == ERROR_SUCCESS) {
            world.ledger.Adopt(ResourceKind::RegistryKey, *key, CallText(subKey));
        }
        return call.ReturnsStatus(status);
    }
    const auto lock = world.Lock();
    for (const DisplayPath& monitor : world.machine.display.paths) {
        if (SameName(ParametersKey(monitor.devicePath), path)) {
            *key = static_cast<HKEY>(
                world.ledger.Acquire(ResourceKind::RegistryKey, subKey, monitor.devicePath));
            return call.ReturnsStatus<LSTATUS>(ERROR_SUCCESS);
        }
    }
    return call.ReturnsStatus<LSTATUS>(ERROR_FILE_NOT_FOUND);
}

/// Copies a value as RegQueryValueExA does; the sizes of data and value are in bytes.
LSTATUS CopyValue(const std::vector<BYTE>& value, BYTE* data, DWORD* size) {
    if (size == nullptr) {
        return ERROR_SUCCESS;
    }
    const DWORD capacity = *size;
    *size = static_cast<DWORD>(value.size());
    if (data == nullptr) {
        return ERROR_SUCCESS;
    }
    if (capacity < value.size()) {
        return ERROR_MORE_DATA;
    }
    std::copy(value.begin(), value.end(), data);
    return ERROR_SUCCESS;
}

const std::vector<BYTE>* FindEdid(const Machine& machine, const std::wstring& devicePath) {
    for (const DisplayPath& monitor : machine.display.paths) {
        if (monitor.devicePath == devicePath) {
            return monitor.edid ? &*monitor.edid : nullptr;
        }
    }
    return nullptr;
}

/// Plans: ShortSize succeeds and reports the planned number as the value's size.
LSTATUS WINAPI FakeRegQueryValueExA(HKEY key, const char* name, DWORD* reserved, DWORD* type,
                                    BYTE* data, DWORD* size) {
    FakeCall call("RegQueryValueExA", Arg{"key", key}, Arg{"name", name}, Arg{"reserved", reserved},
                  Arg{"type", type == nullptr ? 0 : *type}, Arg{"data", data},
                  Arg{"size", size == nullptr ? 0 : *size});
    if (call.IsPlanned(FaultVariant::ShortSize) && size != nullptr) {
        *size = call.PlannedFault()->error;
        return call.ReturnsStatus<LSTATUS>(ERROR_SUCCESS);
    }
    if (call.PlannedFault()) {
        return call.FailsWithStatus<LSTATUS>();
    }
    World& world = call.world();
    if (!ResourceLedger::IsSimulatedHandle(key)) {
        return call.ReturnsStatus(realRegQueryValueExA(key, name, reserved, type, data, size));
    }
    const auto open = world.ledger.FindOpen(ResourceKind::RegistryKey, key);
    if (!open) {
        return call.ReturnsStatus<LSTATUS>(ERROR_INVALID_HANDLE);
    }
    if (reserved != nullptr || (data != nullptr && size == nullptr)) {
        return call.ReturnsStatus<LSTATUS>(ERROR_INVALID_PARAMETER);
    }
    const auto lock = world.Lock();
    const std::vector<BYTE>* const edid = FindEdid(world.machine, open->subject);
    if (edid == nullptr || name == nullptr || !SameName(Widen(name), L"EDID")) {
        return call.ReturnsStatus<LSTATUS>(ERROR_FILE_NOT_FOUND);
    }
    if (type != nullptr) {
        *type = REG_BINARY;
    }
    return call.ReturnsStatus(CopyValue(*edid, data, size));
}

LSTATUS WINAPI FakeRegCloseKey(HKEY key) {
    FakeCall call("RegCloseKey", Arg{"key", key});
    if (call.PlannedFault()) {
        return call.FailsWithStatus<LSTATUS>();
    }
    ResourceLedger& ledger = call.world().ledger;
    if (ResourceLedger::IsSimulatedHandle(key)) {
        return call.ReturnsStatus<LSTATUS>(
            ledger.Release(ResourceKind::RegistryKey, key) ? ERROR_SUCCESS : ERROR_INVALID_HANDLE);
    }
    ledger.ReleaseIfOpen(ResourceKind::RegistryKey, key);
    return call.ReturnsStatus(realRegCloseKey(key));
}

}  // namespace

void InstallRegistryFakes(ImportRedirection& redirection) {
    redirection.RedirectImported({
        {"RegOpenKeyExA", FakeRegOpenKeyExA, &realRegOpenKeyExA},
        {"RegQueryValueExA", FakeRegQueryValueExA, &realRegQueryValueExA},
        {"RegCloseKey", FakeRegCloseKey, &realRegCloseKey},
    });
}

}  // namespace simulation
