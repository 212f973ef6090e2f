#include <cstring>
#include <sstream>
#include <string>
#include <utility>

#include "instant/instant_calls.h"
#include "platform/log_kit.h"
#include "platform/wmi_kit.h"

namespace benchmarks {
namespace {

using Wide = const std::wstring&;

std::size_t eventBytes = 0;
std::string* collected = nullptr;
/// What the suite's singletons are: nobody looks inside.
int object = 0;

void* GetObject() { return &object; }
void Nothing(void*) {}
void Log(void*, LOG_MESSAGE_LEVEL, std::wstringstream&) {}

void ConstructEvent(void*, int) {}
void* AssignEvent(void* event, const void*) { return event; }
void* PutString(void* event, const std::string&, const std::string& value) {
    eventBytes += value.size();
    if (collected != nullptr) {
        *collected += value;
    }
    return event;
}

void SetRootKey(void*, HKEY) {}
bool KeyExists(const void*, Wide) { return true; }
bool GetInt(HKEY, Wide, Wide, std::int32_t& value, std::uint32_t) {
    value = 1;
    return true;
}
bool GetLong(HKEY, Wide, Wide, std::int64_t& value, std::uint32_t) {
    value = 0;
    return true;
}
bool Set(HKEY, Wide, Wide, const void*, std::uint32_t) { return true; }

std::wstring FirmwareText(void*) { return L"Corvane Notebook 14 G5"; }
int GetBiosInfo(const VrSDK::WmiInputParams&, VrSDK::WmiOutputParams& output) {
    output.dataSize = sizeof(output.data);
    std::memset(output.data, 0xA5, sizeof(output.data));
    return 0;
}
int SubscribeOrEnd(void*) { return 0; }

int QueryFeature(void*, const std::string&, int& value) {
    value = 3;
    return 0;
}
bool SupportsProperty(const void*, const std::string&, const std::string&) { return true; }
std::string Agreement() { return "1"; }

template <class Function>
std::pair<std::string, void*> Call(std::string name, Function* replacement) {
    return {std::move(name), reinterpret_cast<void*>(replacement)};
}

// Pieces of the names that the compiler gives the functions.
const std::string kText = "NSt7__cxx1112basic_stringIcSt11char_traitsIcESaIcEEE";
const std::string kWideText = "NSt7__cxx1112basic_stringIwSt11char_traitsIwESaIwEEE";
const std::string kKeyAndNames = "EP6HKEY__RK" + kWideText + "SA_";

}  // namespace

void PutInstantSuite(simulation::ImportRedirection& redirection) {
    const std::pair<std::string, void*> calls[] = {
        Call("_ZN8VrLogger11GetInstanceEv", &GetObject),
        Call("_ZN8VrLogger3LogE17LOG_MESSAGE_LEVELRNSt7__cxx1118basic_stringstreamIwSt11char_"
             "traitsIwESaIwEEE",
             &Log),
        Call("_ZN7XeEventC1Ei", &ConstructEvent),
        Call("_ZN7XeEventD1Ev", &Nothing),
        Call("_ZN7XeEventaSERKS_", &AssignEvent),
        Call("_ZN7XeEvent9PutStringERK" + kText + "S7_", &PutString),
        Call("_ZN6XeView6ReportER7XeEvent", &Nothing),
        Call("_ZN2QD8RegistryC1Ev", &Nothing),
        Call("_ZN2QD8RegistryD1Ev", &Nothing),
        Call("_ZN2QD8Registry10SetRootKeyEP6HKEY__", &SetRootKey),
        Call("_ZNK2QD8Registry9KeyExistsERK" + kWideText, &KeyExists),
        Call("_ZN2QD8Registry8GetValue" + kKeyAndNames + "Rij", &GetInt),
        Call("_ZN2QD8Registry8GetValue" + kKeyAndNames + "Rxj", &GetLong),
        Call("_ZN2QD8Registry8SetValue" + kKeyAndNames + "RKij", &Set),
        Call("_ZN2QD8Registry8SetValue" + kKeyAndNames + "RKxj", &Set),
        Call("_ZN12SmBiosHelper11GetInstanceEv", &GetObject),
        Call("_ZN12SmBiosHelper17GetBIOSSysVersionB5cxx11Ev", &FirmwareText),
        Call("_ZN12SmBiosHelper17GetOemProductNameB5cxx11Ev", &FirmwareText),
        Call("_ZN12SmBiosHelper19GetBoardProductNameB5cxx11Ev", &FirmwareText),
        Call("_ZN5VrSDK7BiosWmi11GetBiosInfoERNS_14WmiInputParamsERNS_15WmiOutputParamsE",
             &GetBiosInfo),
        Call("_ZN5VrSDK16BiosEventMonitor17StartEventMonitorEPFvjE", &SubscribeOrEnd),
        Call("_ZN5VrSDK16BiosEventMonitor16StopEventMonitorEv", &SubscribeOrEnd),
        Call("_ZN12EditionAdapt13FeatureSwitch11GetInstanceEv", &GetObject),
        Call("_ZN12EditionAdapt13FeatureSwitch12QueryFeatureERK" + kText + "Ri", &QueryFeature),
        Call("_ZN12ZedSoftShelf11GetInstanceEv", &GetObject),
        Call("_ZNK12ZedSoftShelf17IsSupportPropertyERK" + kText + "S7_", &SupportsProperty),
        Call("_ZN13AgreementSign13IsAgreeClauseB5cxx11Ev", &Agreement),
    };
    for (const auto& [name, replacement] : calls) {
        Put(redirection, name.c_str(), replacement);
    }
}

std::size_t EventBytes() { return eventBytes; }

void CollectEventValues(std::string* text) { collected = text; }

}  // namespace benchmarks
