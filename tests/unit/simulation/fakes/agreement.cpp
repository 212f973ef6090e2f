#include "agreement.h"

#include <gmock/gmock.h>

#include "sample_machine.h"
#include "simulation/simulated_machine.h"
#include "simulation/well_known.h"
#include "support/real_devices.h"

namespace simulation {
namespace {

std::vector<LONG> AskAll(const std::vector<Question>& questions, const Value& value) {
    std::vector<LONG> answers;
    for (const Question& question : questions) {
        Subject subject(value);
        SetLastError(0xDEADBEEF);
        answers.push_back(question.ask(subject));
    }
    return answers;
}

}  // namespace

Subject::Subject(const Value& existing)
    : value(existing),
      set(SetupDiGetClassDevsW(&kHidInterface, nullptr, nullptr,
                               DIGCF_PRESENT | DIGCF_DEVICEINTERFACE)),
      emptySet(SetupDiGetClassDevsW(&kUnknownClass, nullptr, nullptr,
                                    DIGCF_PRESENT | DIGCF_DEVICEINTERFACE)) {
    device.cbSize = sizeof(device);
    offered.cbSize = sizeof(offered);
    detail->cbSize = sizeof(*detail);
    EXPECT_TRUE(SetupDiEnumDeviceInfo(set, 0, &device));
    EXPECT_TRUE(SetupDiEnumDeviceInterfaces(set, &device, &kHidInterface, 0, &offered));
    EXPECT_TRUE(
        SetupDiGetDeviceInterfaceDetailW(set, &offered, detail, sizeof(block), &size, nullptr));
    file = CreateFileW(detail->DevicePath, 0, FILE_SHARE_READ | FILE_SHARE_WRITE, nullptr,
                       OPEN_EXISTING, FILE_FLAG_OVERLAPPED, nullptr);
    EXPECT_NE(file, INVALID_HANDLE_VALUE);
    EXPECT_EQ(RegOpenKeyExA(HKEY_LOCAL_MACHINE, existing.key, 0, KEY_READ, &key), ERROR_SUCCESS);
    EXPECT_EQ(GetDisplayConfigBufferSizes(QDC_ONLY_ACTIVE_PATHS, &pathCount, &modeCount),
              ERROR_SUCCESS);
    EXPECT_EQ(
        QueryDisplayConfig(QDC_ONLY_ACTIVE_PATHS, &pathCount, paths, &modeCount, modes, nullptr),
        ERROR_SUCCESS);
}

Subject::~Subject() {
    RegCloseKey(key);
    CloseHandle(file);
    SetupDiDestroyDeviceInfoList(emptySet);
    SetupDiDestroyDeviceInfoList(set);
}

LONG Subject::Query(UINT32 flags, UINT32 pathRoom, UINT32 modeRoom,
                    DISPLAYCONFIG_TOPOLOGY_ID* wanted) {
    return QueryDisplayConfig(flags, &pathRoom, paths, &modeRoom, modes, wanted);
}

LONG Subject::NameSource(UINT32 requestSize, LUID adapter, UINT32 id, int kind) {
    DISPLAYCONFIG_SOURCE_DEVICE_NAME request{};
    request.header.type = static_cast<DISPLAYCONFIG_DEVICE_INFO_TYPE>(kind);
    request.header.size = requestSize;
    request.header.adapterId = adapter;
    request.header.id = id;
    return DisplayConfigGetDeviceInfo(&request.header);
}

LONG Outcome(BOOL result) { return result ? 0 : static_cast<LONG>(GetLastError()); }

void ExpectSameAnswers(const std::vector<Question>& questions) {
    test_support::WaitForRealDevices();
    const std::vector<LONG> real =
        AskAll(questions, {"SOFTWARE\\Microsoft\\Windows NT\\CurrentVersion", "CurrentVersion"});
    Machine machine = SampleMachine();
    machine.fileVersions[kVersionedFile] = {{10, 0, 0, 0}, {10, 0, 0, 0}};
    SimulatedMachine simulated(GetModuleHandleW(nullptr), machine);
    const std::vector<LONG> answers = AskAll(questions, {kMonitorKey, "EDID"});
    for (std::size_t i = 0; i < questions.size(); ++i) {
        EXPECT_EQ(answers[i], real[i]) << questions[i].text;
    }
    EXPECT_THAT(simulated.world().ledger.Open(), ::testing::IsEmpty()) << simulated.world().ledger;
}

}  // namespace simulation
