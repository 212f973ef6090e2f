// EditionAdapt.dll: feature switches and properties of the suite's edition.
#pragma once

#include <string>

#if defined(EDITION_ADAPT_EXPORTS)
#define EDITION_ADAPT_API __declspec(dllexport)
#else
#define EDITION_ADAPT_API __declspec(dllimport)
#endif

namespace EditionAdapt {

/// Feature switches of this machine type.
class FeatureSwitch {
public:
    EDITION_ADAPT_API static FeatureSwitch& GetInstance();

    /// Stores the feature's value in `value` when the feature is known; returns 0 then.
    EDITION_ADAPT_API int QueryFeature(const std::string& featureName, int& value);
};

}  // namespace EditionAdapt

/// Properties of the installed product.
class ZedSoftShelf {
public:
    /// Null when the suite's shelf is not installed; owned by the library.
    EDITION_ADAPT_API static ZedSoftShelf* GetInstance();

    EDITION_ADAPT_API bool IsSupportProperty(const std::string& propertyName,
                                             const std::string& propertyValue) const;
};
