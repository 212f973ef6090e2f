// An edition that reports devices.
#include "platform/edition_adapt.h"

#include "record.h"

EditionAdapt::FeatureSwitch& EditionAdapt::FeatureSwitch::GetInstance() {
    static FeatureSwitch featureSwitch;
    return featureSwitch;
}

int EditionAdapt::FeatureSwitch::QueryFeature(const std::string& featureName, int& value) {
    Record("other EditionAdapt", "feature " + featureName);
    value = 3;
    return 0;
}

ZedSoftShelf* ZedSoftShelf::GetInstance() {
    static ZedSoftShelf shelf;
    return &shelf;
}

bool ZedSoftShelf::IsSupportProperty(const std::string& propertyName,
                                     const std::string& propertyValue) const {
    Record("other EditionAdapt", "property " + propertyName + "=" + propertyValue);
    return true;
}
