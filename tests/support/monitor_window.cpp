#include "support/monitor_window.h"

#include "support/comes_true.h"

namespace test_support {

bool MonitorHandlesMessages() {
    DWORD_PTR result = 0;
    return ComesTrue([] { return FindMonitorWindow() != nullptr; }) &&
           SendMessageTimeoutW(FindMonitorWindow(), WM_NULL, 0, 0, SMTO_NORMAL,
                               static_cast<UINT>(kPatience.count()), &result) != 0;
}

}  // namespace test_support
