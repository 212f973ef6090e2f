#include "platform/edition_adapt.h"

#include <windows.h>

#include <map>

#include "standins/common/callback_slot.h"
#include "standins/common/state_lock.h"
#include "standins/edition_adapt/edition_adapt_control.h"

namespace {

using standins::ExclusiveLock;

constexpr int kUnknownFeature = -1;

/// What the machine's edition looks like; an edition for which device lists are wanted by default.
struct Edition {
    std::map<std::string, int> features = {{"ReportDeviceList", 3}};
    int queryResult = 0;
    bool shelfPresent = true;
    bool shelfSupports = true;
};

struct State {
    SRWLOCK lock = SRWLOCK_INIT;
    Edition edition;
    standins::CallbackSlot<EditionAdaptObserver> observer;
};

State state;

void Observe(const char* operation, const char* name, const char* value) {
    state.observer.Call(operation, name, value);
}

}  // namespace

namespace EditionAdapt {

FeatureSwitch& FeatureSwitch::GetInstance() {
    static FeatureSwitch instance;
    return instance;
}

int FeatureSwitch::QueryFeature(const std::string& featureName, int& value) {
    Observe("FeatureSwitch::QueryFeature", featureName.c_str(), nullptr);
    const ExclusiveLock exclusive(state.lock);
    const auto found = state.edition.features.find(featureName);
    if (found == state.edition.features.end()) {
        return kUnknownFeature;
    }
    value = found->second;
    return state.edition.queryResult;
}

}  // namespace EditionAdapt

ZedSoftShelf* ZedSoftShelf::GetInstance() {
    static ZedSoftShelf instance;
    Observe("ZedSoftShelf::GetInstance", nullptr, nullptr);
    const ExclusiveLock exclusive(state.lock);
    return state.edition.shelfPresent ? &instance : nullptr;
}

bool ZedSoftShelf::IsSupportProperty(const std::string& propertyName,
                                     const std::string& propertyValue) const {
    Observe("ZedSoftShelf::IsSupportProperty", propertyName.c_str(), propertyValue.c_str());
    const ExclusiveLock exclusive(state.lock);
    return state.edition.shelfSupports && propertyName == "VRLoginGuide" &&
           propertyValue == "china";
}

void EditionAdapt_SetFeature(const char* name, int value) {
    const ExclusiveLock exclusive(state.lock);
    state.edition.features[name] = value;
}

void EditionAdapt_ClearFeatures() {
    const ExclusiveLock exclusive(state.lock);
    state.edition.features.clear();
}

void EditionAdapt_SetQueryResult(int result) {
    const ExclusiveLock exclusive(state.lock);
    state.edition.queryResult = result;
}

void EditionAdapt_SetShelf(int present, int supported) {
    const ExclusiveLock exclusive(state.lock);
    state.edition.shelfPresent = present != 0;
    state.edition.shelfSupports = supported != 0;
}

void EditionAdapt_SetObserver(EditionAdaptObserver observer, void* context) {
    state.observer.Set(observer, context);
}

void EditionAdapt_Reset() {
    EditionAdapt_SetObserver(nullptr, nullptr);
    const ExclusiveLock exclusive(state.lock);
    state.edition = Edition();
}
