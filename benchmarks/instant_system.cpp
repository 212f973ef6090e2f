#include "instant_system.h"

#include <array>

#include "simulation/fakes/families.h"
#include "standins/board_info/board_info_control.h"
#include "standins/consent_store/consent_store_control.h"
#include "standins/edition_adapt/edition_adapt_control.h"
#include "standins/file_kit/file_kit_control.h"
#include "standins/log_kit/log_kit_control.h"
#include "standins/wmi_kit/wmi_kit_control.h"
#include "standins/xeevent/xeevent_control.h"

namespace benchmarks {
namespace {

std::size_t eventBytes = 0;
std::string* collected = nullptr;

void TakeEvent(void*, int, const XeEventField* fields, std::size_t count) {
    for (std::size_t i = 0; i < count; ++i) {
        eventBytes += fields[i].valueLength;
        if (collected != nullptr) {
            collected->append(fields[i].value, fields[i].valueLength);
        }
    }
}

/// Every number is 0.
int AnswerRegistry(void*, int, HKEY, const wchar_t*, const wchar_t*, unsigned, long long*,
                   unsigned long*) {
    return FILE_KIT_SUCCEED;
}

}  // namespace

simulation::SimulatedMachine& InstantMachine() {
    using namespace simulation;
    static SimulatedMachine machine(
        GetModuleHandleW(nullptr), Machine(),
        {InstallDisplayFakes, InstallPrintSpoolerFakes, InstallRegistryFakes, InstallSetupApiFakes,
         InstallSetupApiInterfaceFakes});
    machine.world().journal.Stop();
    return machine;
}

void UseInstantSuite() {
    LogKit_SetConsole(0);
    XeEvent_SetSink(&TakeEvent, nullptr);
    FileKit_SetInterceptor(&AnswerRegistry, nullptr);
    BoardInfo_SetTexts(L"CB-L165", L"Corvane Notebook 14 G5", L"L165C.0242");
    std::array<unsigned char, 253> log{};
    log.fill(0xA5);
    WmiKit_SetAnswer(0, 0, log.size(), log.data(), log.size());
    EditionAdapt_SetFeature("ReportDeviceList", 3);
    ConsentStore_SetAnswer("1");
}

std::size_t EventBytes() { return eventBytes; }

void CollectEventValues(std::string* text) { collected = text; }

}  // namespace benchmarks
