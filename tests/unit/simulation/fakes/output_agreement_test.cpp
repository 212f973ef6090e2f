// Printers, displays and the registry: the fakes and the system answer alike. The machine at hand
// is taken to have a display and no printer.
#include <windows.h>
#include <gmock/gmock.h>
#include <winspool.h>

#include "agreement.h"

namespace simulation {
namespace {

TEST(OutputFakesAndTheSystem, AnswerAlike) {
    ExpectSameAnswers({
        {"printers where there are none",
         [](Subject& s) {
             s.size = s.count = 77;
             return Outcome(EnumPrintersW(PRINTER_ENUM_LOCAL, nullptr, 2, nullptr, 0, &s.size,
                                          &s.count)) +
                    static_cast<LONG>(s.size + s.count);
         }},
        {"printers of an unknown level",
         [](Subject& s) {
             return Outcome(
                 EnumPrintersW(PRINTER_ENUM_LOCAL, nullptr, 9, nullptr, 0, &s.size, &s.count));
         }},
        {"printers of no kind",
         [](Subject& s) {
             return Outcome(EnumPrintersW(0, nullptr, 2, nullptr, 0, &s.size, &s.count));
         }},
        {"open a printer without a name",
         [](Subject& s) {
             wchar_t name[] = L"";
             return Outcome(OpenPrinterW(name, &s.printer, nullptr));
         }},
        {"open a printer that is not there",
         [](Subject& s) {
             wchar_t name[] = L"No such queue";
             return Outcome(OpenPrinterW(name, &s.printer, nullptr));
         }},
        {"open a printer into nothing",
         [](Subject&) {
             wchar_t name[] = L"No such queue";
             return Outcome(OpenPrinterW(name, nullptr, nullptr));
         }},
        {"driver of no printer",
         [](Subject& s) {
             return Outcome(GetPrinterDriverW(nullptr, nullptr, 6, nullptr, 0, &s.size));
         }},
        {"driver of the print server",
         [](Subject& s) {
             EXPECT_TRUE(OpenPrinterW(nullptr, &s.printer, nullptr));
             const LONG outcome =
                 Outcome(GetPrinterDriverW(s.printer, nullptr, 6, nullptr, 0, &s.size));
             EXPECT_TRUE(ClosePrinter(s.printer));
             return outcome;
         }},
        {"close a printer twice",
         [](Subject& s) {
             EXPECT_TRUE(OpenPrinterW(nullptr, &s.printer, nullptr));
             EXPECT_TRUE(ClosePrinter(s.printer));
             return Outcome(ClosePrinter(s.printer));
         }},
        {"close no printer", [](Subject&) { return Outcome(ClosePrinter(nullptr)); }},
        {"display counts of nothing",
         [](Subject& s) { return GetDisplayConfigBufferSizes(0, &s.pathCount, &s.modeCount); }},
        {"display counts of two kinds",
         [](Subject& s) { return GetDisplayConfigBufferSizes(3, &s.pathCount, &s.modeCount); }},
        {"display counts into nothing",
         [](Subject& s) {
             return GetDisplayConfigBufferSizes(QDC_ONLY_ACTIVE_PATHS, nullptr, &s.modeCount);
         }},
        {"modes for each path",
         [](Subject& s) {
             GetDisplayConfigBufferSizes(QDC_ONLY_ACTIVE_PATHS, &s.pathCount, &s.modeCount);
             return static_cast<LONG>(s.modeCount / s.pathCount);
         }},
        {"display database",
         [](Subject& s) { return s.Query(QDC_DATABASE_CURRENT, 8, 16, &s.topology); }},
        {"display database without topology",
         [](Subject& s) { return s.Query(QDC_DATABASE_CURRENT, 8, 16, nullptr); }},
        {"active displays with topology",
         [](Subject& s) { return s.Query(QDC_ONLY_ACTIVE_PATHS, 8, 16, &s.topology); }},
        {"displays of no kind", [](Subject& s) { return s.Query(0, 8, 16, nullptr); }},
        {"displays into no path",
         [](Subject& s) { return s.Query(QDC_ONLY_ACTIVE_PATHS, 0, 16, nullptr); }},
        {"displays into too few modes",
         [](Subject& s) { return s.Query(QDC_ONLY_ACTIVE_PATHS, 8, 1, nullptr); }},
        {"source name",
         [](Subject& s) {
             return s.NameSource(84, s.paths[0].sourceInfo.adapterId, s.paths[0].sourceInfo.id);
         }},
        {"source name of another adapter",
         [](Subject& s) {
             return s.NameSource(84, {0xFFFF, 0xFFFF}, s.paths[0].sourceInfo.id);
         }},
        {"source name into a request that is too small",
         [](Subject& s) {
             return s.NameSource(83, s.paths[0].sourceInfo.adapterId, s.paths[0].sourceInfo.id);
         }},
        {"source name into less than a header",
         [](Subject& s) {
             return s.NameSource(19, s.paths[0].sourceInfo.adapterId, s.paths[0].sourceInfo.id);
         }},
        {"unknown display request",
         [](Subject& s) {
             return s.NameSource(84, s.paths[0].sourceInfo.adapterId, s.paths[0].sourceInfo.id,
                                 0xFFFF);
         }},
        {"no display request", [](Subject&) { return DisplayConfigGetDeviceInfo(nullptr); }},
        {"mode of a display that is not there",
         [](Subject&) {
             DEVMODEW mode{};
             mode.dmSize = sizeof(mode);
             return static_cast<LONG>(
                 EnumDisplaySettingsW(L"\\\\.\\DISPLAY99", ENUM_CURRENT_SETTINGS, &mode));
         }},
        {"monitor key that is not there",
         [](Subject&) {
             HKEY key = nullptr;
             return RegOpenKeyExA(
                 HKEY_LOCAL_MACHINE,
                 "SYSTEM\\CurrentControlSet\\Enum\\DISPLAY\\NONE\\1\\Device Parameters", 0,
                 KEY_READ, &key);
         }},
        {"value of no key",
         [](Subject& s) {
             return RegQueryValueExA(nullptr, s.value.name, nullptr, nullptr, nullptr, &s.size);
         }},
        {"size of a value",
         [](Subject& s) {
             return RegQueryValueExA(s.key, s.value.name, nullptr, nullptr, nullptr, &s.size);
         }},
        {"value into a buffer that is too small",
         [](Subject& s) {
             s.size = 1;
             return RegQueryValueExA(s.key, s.value.name, nullptr, nullptr, s.block, &s.size);
         }},
        {"value without a size",
         [](Subject& s) {
             return RegQueryValueExA(s.key, s.value.name, nullptr, nullptr, s.block, nullptr);
         }},
        {"value with something reserved",
         [](Subject& s) {
             return RegQueryValueExA(s.key, s.value.name, &s.count, nullptr, s.block, &s.size);
         }},
        {"value that is not there",
         [](Subject& s) {
             return RegQueryValueExA(s.key, "no such value", nullptr, nullptr, s.block, &s.size);
         }},
        {"close no key", [](Subject&) { return RegCloseKey(nullptr); }},
    });
}

}  // namespace
}  // namespace simulation
