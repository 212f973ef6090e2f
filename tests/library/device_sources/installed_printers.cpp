#include "library/device_sources/installed_printers.h"

#include <stdexcept>

namespace real_devices {
namespace {

constexpr wchar_t kEnvironment[] = L"Windows x64";

/// The parameters of the spooler's functions are not const, but the texts are only read.
wchar_t* Text(const std::wstring& text) { return const_cast<wchar_t*>(text.c_str()); }

[[noreturn]] void ThrowLastError(const char* call) {
    throw std::runtime_error(std::string(call) + " failed, error " +
                             std::to_string(GetLastError()));
}

void InstallDriver() {
    static const std::wstring name = kDriverName;
    static const std::wstring environment = kEnvironment;
    static const std::wstring file = L"wineps.drv";
    DRIVER_INFO_3W driver{};
    driver.cVersion = 3;
    driver.pName = Text(name);
    driver.pEnvironment = Text(environment);
    driver.pDriverPath = Text(file);
    driver.pDataFile = Text(file);
    driver.pConfigFile = Text(file);
    if (!AddPrinterDriverExW(nullptr, 3, reinterpret_cast<BYTE*>(&driver),
                             APD_COPY_NEW_FILES | APD_COPY_FROM_DIRECTORY)) {
        ThrowLastError("AddPrinterDriverExW");
    }
}

}  // namespace

InstalledPrinters::InstalledPrinters(const std::vector<QueueToInstall>& queues) {
    InstallDriver();
    for (const QueueToInstall& queue : queues) {
        static const std::wstring driver = kDriverName;
        static const std::wstring processor = L"wineps";
        PRINTER_INFO_2W info{};
        info.pPrinterName = Text(queue.name);
        info.pPortName = Text(queue.port);
        info.pDriverName = Text(driver);
        info.pPrintProcessor = Text(processor);
        info.pDatatype = Text(queue.dataType);
        const HANDLE printer = AddPrinterW(nullptr, 2, reinterpret_cast<BYTE*>(&info));
        if (printer == nullptr) {
            Remove();
            ThrowLastError("AddPrinterW");
        }
        printers.push_back(printer);
    }
}

InstalledPrinters::~InstalledPrinters() { Remove(); }

void InstalledPrinters::Remove() {
    for (HANDLE printer : printers) {
        DeletePrinter(printer);
        ClosePrinter(printer);
    }
    printers.clear();
    DeletePrinterDriverExW(nullptr, const_cast<wchar_t*>(kEnvironment),
                           const_cast<wchar_t*>(kDriverName), 0, 0);
}

}  // namespace real_devices
