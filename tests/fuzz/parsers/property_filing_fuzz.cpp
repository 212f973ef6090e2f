// Devices with one property of any key, filed in a record.
#include <gtest/gtest.h>

#include <algorithm>
#include <cstring>
#include <string>
#include <vector>

#include "device_reporter/device_properties.h"
#include "fuzz/campaign.h"
#include "fuzz/texts.h"
#include "simulation/import_redirection.h"
#include "simulation/well_known.h"

namespace {

using DeviceReporter::DeviceInfo;
using fuzz::RequireSame;
using Field = std::wstring DeviceInfo::*;

struct KnownKey {
    DEVPROPKEY key;
    Field field;
};

const std::vector<KnownKey>& KnownKeys() {
    static const std::vector<KnownKey> keys = {
        {simulation::kParentKey, &DeviceInfo::parent},
        {simulation::kClassKey, &DeviceInfo::className},
        {simulation::kManufacturerKey, &DeviceInfo::manufacturer},
        {simulation::kDeviceDescKey, &DeviceInfo::description},
        {simulation::kFriendlyNameKey, &DeviceInfo::name},
        {simulation::kNameKey, &DeviceInfo::name},
        {simulation::kContainerIdKey, &DeviceInfo::containerId}};
    return keys;
}

struct FiledProperty {
    DEVPROPKEY key{};
    std::wstring before;
    std::wstring text;
};

void PrintTo(const FiledProperty& filed, std::ostream* stream) {
    *stream << testing::PrintToString(filed.text) << " under pid " << filed.key.pid << ", fmtid "
            << testing::PrintToString(filed.key.fmtid) << ", over "
            << testing::PrintToString(filed.before);
}

FiledProperty MakeFiledProperty(fuzz::Random& random) {
    FiledProperty filed;
    filed.key = random.Pick(KnownKeys()).key;
    if (random.OneIn(4)) {
        filed.key.pid = static_cast<DEVPROPID>(random.Below(20));
    }
    if (random.OneIn(8)) {
        filed.key.fmtid.Data4[random.Below(8)] ^= static_cast<BYTE>(1 << random.Below(8));
    }
    filed.before = fuzz::MakeText(random, 40);
    filed.text = fuzz::MakeText(random, 40);
    if (random.OneIn(4)) {
        filed.text = filed.before.substr(random.Below(filed.before.size() + 1));
    }
    // A text ends at its first NUL.
    filed.text.erase(std::find(filed.text.begin(), filed.text.end(), L'\0'), filed.text.end());
    return filed;
}

const FiledProperty* offered = nullptr;

/// The device has the one property that is offered.
BOOL WINAPI OfferProperty(HDEVINFO, SP_DEVINFO_DATA*, const DEVPROPKEY* key, DEVPROPTYPE* type,
                          BYTE* buffer, DWORD, DWORD*, DWORD) {
    if (key->pid != offered->key.pid || !IsEqualGUID(key->fmtid, offered->key.fmtid)) {
        return FALSE;
    }
    *type = DEVPROP_TYPE_STRING;
    std::memcpy(buffer, offered->text.data(), offered->text.size() * sizeof(wchar_t));
    return TRUE;
}

Field FieldOf(const DEVPROPKEY& key) {
    for (const KnownKey& known : KnownKeys()) {
        if (known.key.pid == key.pid && IsEqualGUID(known.key.fmtid, key.fmtid)) {
            return known.field;
        }
    }
    return nullptr;
}

std::wstring ExpectedName(const FiledProperty& filed) {
    if (filed.before.find(filed.text) != std::wstring::npos) {
        return filed.before;
    }
    return filed.before.empty() ? filed.text : filed.before + L"\n" + filed.text;
}

void CheckFiling(const FiledProperty& filed) {
    const Field target = FieldOf(filed.key);
    DeviceInfo record;
    for (const KnownKey& known : KnownKeys()) {
        record.*known.field = filed.before;
    }
    offered = &filed;
    DeviceReporter::PropertyBuffer buffer;
    SP_DEVINFO_DATA device{};
    DeviceReporter::ReadDeviceProperties(/*devices=*/nullptr, device, buffer, record);
    for (const KnownKey& known : KnownKeys()) {
        const std::wstring& now = record.*known.field;
        if (known.field != target) {
            RequireSame(now, filed.before, "no other field changes");
        } else if (target != &DeviceInfo::name) {
            RequireSame(now, filed.text, "the field is replaced");
        } else {
            RequireSame(now, ExpectedName(filed), "nothing is told twice, and one text a line");
        }
    }
}

TEST(PropertyFilingFuzz, ChangesTheFieldOfTheKeyOnly) {
    simulation::ImportRedirection imports(GetModuleHandleW(nullptr));
    imports.Redirect<decltype(::SetupDiGetDevicePropertyW)>("SetupDiGetDevicePropertyW",
                                                            &OfferProperty);
    fuzz::TryInputs("filed properties", 200000, MakeFiledProperty, CheckFiling);
}

}  // namespace
