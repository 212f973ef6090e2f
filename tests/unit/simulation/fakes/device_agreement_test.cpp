// Device sets and HID devices: the fakes and the system answer alike. Left out is what Wine does
// not implement or does otherwise than Windows: node status, the structure size of interface data.
#include <windows.h>
#include <gmock/gmock.h>
// Not every SDK's header declares C linkage by itself.
extern "C" {
#include <hidsdi.h>
}

#include "agreement.h"
#include "sample_machine.h"
#include "simulation/well_known.h"

namespace simulation {
namespace {

constexpr DEVPROPKEY kNobodysKey{kUnknownClass, 99};

TEST(DeviceFakesAndTheSystem, AnswerAlike) {
    ExpectSameAnswers({
        {"set without class",
         [](Subject&) {
             return Outcome(SetupDiGetClassDevsW(nullptr, nullptr, nullptr, DIGCF_PRESENT) !=
                                    INVALID_HANDLE_VALUE
                                ? TRUE
                                : FALSE);
         }},
        {"device of an empty set",
         [](Subject& s) { return Outcome(SetupDiEnumDeviceInfo(s.emptySet, 0, &s.device)); }},
        {"device behind the last",
         [](Subject& s) { return Outcome(SetupDiEnumDeviceInfo(s.set, 9999, &s.device)); }},
        {"device of no set",
         [](Subject& s) { return Outcome(SetupDiEnumDeviceInfo(nullptr, 0, &s.device)); }},
        {"device into nothing",
         [](Subject& s) { return Outcome(SetupDiEnumDeviceInfo(s.set, 0, nullptr)); }},
        {"device into a structure of another size",
         [](Subject& s) {
             s.device.cbSize = 28;
             return Outcome(SetupDiEnumDeviceInfo(s.set, 0, &s.device));
         }},
        {"id into a buffer that is too small",
         [](Subject& s) {
             return Outcome(SetupDiGetDeviceInstanceIdW(s.set, &s.device, s.text, 3, nullptr));
         }},
        {"size of an id",
         [](Subject& s) {
             return Outcome(SetupDiGetDeviceInstanceIdW(s.set, &s.device, nullptr, 0, &s.size));
         }},
        {"id of nothing",
         [](Subject& s) {
             return Outcome(SetupDiGetDeviceInstanceIdW(s.set, nullptr, s.text, 260, nullptr));
         }},
        {"id of a structure of another size",
         [](Subject& s) {
             s.device.cbSize = 0;
             return Outcome(SetupDiGetDeviceInstanceIdW(s.set, &s.device, s.text, 260, nullptr));
         }},
        {"id of a device that was never listed",
         [](Subject& s) {
             s.device = {sizeof(s.device), {}, 0, 0};
             return Outcome(SetupDiGetDeviceInstanceIdW(s.set, &s.device, s.text, 260, nullptr));
         }},
        {"property that the device does not have",
         [](Subject& s) {
             return Outcome(SetupDiGetDevicePropertyW(s.set, &s.device, &kNobodysKey, &s.type,
                                                      s.block, 64, &s.size, 0)) +
                    static_cast<LONG>(s.type + s.size);
         }},
        {"property without key",
         [](Subject& s) {
             return Outcome(SetupDiGetDevicePropertyW(s.set, &s.device, nullptr, &s.type, s.block,
                                                      64, nullptr, 0));
         }},
        {"property without type",
         [](Subject& s) {
             return Outcome(SetupDiGetDevicePropertyW(s.set, &s.device, &kNobodysKey, nullptr,
                                                      s.block, 64, nullptr, 0));
         }},
        {"property into nothing",
         [](Subject& s) {
             return Outcome(SetupDiGetDevicePropertyW(s.set, &s.device, &kNobodysKey, &s.type,
                                                      nullptr, 64, nullptr, 0));
         }},
        {"property with flags",
         [](Subject& s) {
             return Outcome(SetupDiGetDevicePropertyW(s.set, &s.device, &kNobodysKey, &s.type,
                                                      s.block, 64, nullptr, 1));
         }},
        {"property of nothing",
         [](Subject& s) {
             return Outcome(SetupDiGetDevicePropertyW(s.set, nullptr, &kNobodysKey, &s.type,
                                                      s.block, 64, nullptr, 0));
         }},
        {"interface of another class",
         [](Subject& s) {
             return Outcome(
                 SetupDiEnumDeviceInterfaces(s.set, &s.device, &kUnknownClass, 0, &s.offered));
         }},
        {"interface of a set that was not opened for any",
         [](Subject& s) {
             const HDEVINFO all =
                 SetupDiGetClassDevsW(nullptr, nullptr, nullptr, DIGCF_PRESENT | DIGCF_ALLCLASSES);
             LONG found = 0;
             SetLastError(0);
             for (DWORD i = 0; SetupDiEnumDeviceInfo(all, i, &s.device); ++i) {
                 found +=
                     SetupDiEnumDeviceInterfaces(all, &s.device, &kHidInterface, 0, &s.offered);
             }
             SetupDiDestroyDeviceInfoList(all);
             return found;
         }},
        {"interface of no set",
         [](Subject& s) {
             return Outcome(
                 SetupDiEnumDeviceInterfaces(nullptr, &s.device, &kHidInterface, 0, &s.offered));
         }},
        {"interface into nothing",
         [](Subject& s) {
             return Outcome(
                 SetupDiEnumDeviceInterfaces(s.set, &s.device, &kHidInterface, 0, nullptr));
         }},
        {"interface of a device of another size",
         [](Subject& s) {
             s.device.cbSize = 0;
             return Outcome(
                 SetupDiEnumDeviceInterfaces(s.set, &s.device, &kHidInterface, 0, &s.offered));
         }},
        {"size of a detail, less its text",
         [](Subject& s) {
             const LONG outcome = Outcome(
                 SetupDiGetDeviceInterfaceDetailW(s.set, &s.offered, nullptr, 0, &s.size, nullptr));
             const auto textBytes = 2 * (std::wcslen(s.detail->DevicePath) + 1);
             return outcome * 1000 + static_cast<LONG>(s.size - textBytes);
         }},
        {"detail into nothing",
         [](Subject& s) {
             return Outcome(SetupDiGetDeviceInterfaceDetailW(s.set, &s.offered, nullptr, 100,
                                                             nullptr, nullptr));
         }},
        {"detail into a structure of another size",
         [](Subject& s) {
             s.detail->cbSize = 0;
             return Outcome(SetupDiGetDeviceInterfaceDetailW(s.set, &s.offered, s.detail,
                                                             sizeof(s.block), nullptr, nullptr));
         }},
        {"detail into a block that is one byte too small",
         [](Subject& s) {
             return Outcome(SetupDiGetDeviceInterfaceDetailW(s.set, &s.offered, s.detail,
                                                             s.size - 1, nullptr, nullptr));
         }},
        {"detail into a block that just holds it",
         [](Subject& s) {
             return Outcome(SetupDiGetDeviceInterfaceDetailW(s.set, &s.offered, s.detail, s.size,
                                                             nullptr, nullptr));
         }},
        {"detail of an interface of another size",
         [](Subject& s) {
             s.offered.cbSize = 0;
             return Outcome(SetupDiGetDeviceInterfaceDetailW(s.set, &s.offered, s.detail,
                                                             sizeof(s.block), nullptr, nullptr));
         }},
        {"detail of no set",
         [](Subject& s) {
             return Outcome(SetupDiGetDeviceInterfaceDetailW(nullptr, &s.offered, s.detail,
                                                             sizeof(s.block), nullptr, nullptr));
         }},
        {"destroy a set twice",
         [](Subject&) {
             const HDEVINFO set = SetupDiGetClassDevsW(nullptr, nullptr, nullptr, DIGCF_ALLCLASSES);
             EXPECT_TRUE(SetupDiDestroyDeviceInfoList(set));
             return Outcome(SetupDiDestroyDeviceInfoList(set));
         }},
        {"destroy no set",
         [](Subject&) { return Outcome(SetupDiDestroyDeviceInfoList(INVALID_HANDLE_VALUE)); }},
        {"open a HID device that is not there",
         [](Subject&) {
             return Outcome(CreateFileW(kHidPath + 4, 0, 3, nullptr, OPEN_EXISTING, 0, nullptr) !=
                                    INVALID_HANDLE_VALUE
                                ? TRUE
                                : FALSE);
         }},
        {"HID text",
         [](Subject& s) { return Outcome(HidD_GetProductString(s.file, s.text, 260)); }},
        {"HID text into a buffer that is too small",
         [](Subject& s) { return Outcome(HidD_GetProductString(s.file, s.text, 8)); }},
        {"HID text into nothing",
         [](Subject& s) { return Outcome(HidD_GetProductString(s.file, nullptr, 0)); }},
        {"HID text of no device",
         [](Subject& s) {
             return Outcome(HidD_GetManufacturerString(INVALID_HANDLE_VALUE, s.text, 260));
         }},
    });
}

}  // namespace
}  // namespace simulation
