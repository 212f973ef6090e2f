#include "floors/plain_calls.h"
#include "platform/log_kit.h"
#include "platform/wmi_kit.h"
#include "platform/xeevent.h"

namespace benchmarks {

std::size_t AskEcLog() {
    static std::wstringstream line;
    VrSDK::WmiInputParams input{};
    VrSDK::WmiOutputParams output{};
    VrSDK::BiosWmi::GetBiosInfo(input, output);
    VrLogger::GetInstance()->Log(LOG_LEVEL_NORMAL, line);
    XeEvent event(0);
    event.PutString({}, {});
    XeView::Report(event);
    return output.dataSize;
}

}  // namespace benchmarks
