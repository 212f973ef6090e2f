#include "support/recorded_suite.h"

#include "standins/board_info/board_info_control.h"
#include "standins/edition_adapt/edition_adapt_control.h"
#include "standins/file_kit/file_kit_control.h"
#include "standins/wmi_kit/wmi_kit_control.h"

namespace test_support {

RecordedSuite::RecordedSuite() {
    FileKit_SetInterceptor(&simulation::MemoryRegistry::Answer, &registry);
    BoardInfo_SetTexts(L"Board", L"Oem", L"Bios");
    BoardInfo_SetObserver(&ObserveBoardInfo, this);
    WmiKit_SetObserver(&ObserveWmi, this);
    EditionAdapt_SetFeature("ReportDeviceList", 0);
}

RecordedSuite::~RecordedSuite() {
    EditionAdapt_Reset();
    WmiKit_Reset();
    BoardInfo_Reset();
    FileKit_SetInterceptor(nullptr, nullptr);
}

void RecordedSuite::ObserveBoardInfo(void* context, const char* operation) {
    static_cast<RecordedSuite*>(context)->timeline.Note(std::string("SmBiosHelper::") + operation);
}

void RecordedSuite::ObserveWmi(void* context, const char* operation, const void* bytes,
                               std::size_t /*length*/) {
    RecordedSuite& suite = *static_cast<RecordedSuite*>(context);
    const std::string name = operation;
    suite.timeline.Note((name == "GetBiosInfo" ? "BiosWmi::" : "BiosEventMonitor::") + name);
    if (suite.onWmiCall) {
        std::string request;
        if (bytes != nullptr) {
            request.assign(
                static_cast<const WmiKitRequest*>(bytes)->bytes,
                static_cast<const WmiKitRequest*>(bytes)->bytes + sizeof(WmiKitRequest::bytes));
        }
        suite.onWmiCall(name, request);
    }
}

}  // namespace test_support
