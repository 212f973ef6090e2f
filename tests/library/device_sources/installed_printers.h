// Print queues that a test adds to the machine it runs on.
#pragma once

#include <windows.h>
#include <winspool.h>

#include <string>
#include <vector>

namespace real_devices {

struct QueueToInstall {
    std::wstring name;
    std::wstring port;
    std::wstring dataType;
};

/// The one driver of all installed queues.
inline constexpr wchar_t kDriverName[] = L"Tallytest Driver";

/// While it lives, the operating system has these print queues. Throws std::runtime_error naming
/// the call that failed.
class InstalledPrinters {
public:
    explicit InstalledPrinters(const std::vector<QueueToInstall>& queues);
    ~InstalledPrinters();
    InstalledPrinters(const InstalledPrinters&) = delete;
    InstalledPrinters& operator=(const InstalledPrinters&) = delete;

private:
    void Remove();

    std::vector<HANDLE> printers;
};

}  // namespace real_devices
