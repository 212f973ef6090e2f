// What a host or a test sets on EditionAdapt.dll. The plug-in never sees it. Every function may be
// called from any thread.
#pragma once

#include "platform/edition_adapt.h"

extern "C" {

/// Learns of each call into the library before it is answered, on the calling thread:
/// "FeatureSwitch::QueryFeature" (feature name, null), "ZedSoftShelf::GetInstance" (null, null) or
/// "ZedSoftShelf::IsSupportProperty" (property name, value). It must not call EditionAdapt.
typedef void (*EditionAdaptObserver)(void* context, const char* operation, const char* name,
                                     const char* value);

/// Makes the feature known, with this value. By default "ReportDeviceList" is known and is 3.
EDITION_ADAPT_API void EditionAdapt_SetFeature(const char* name, int value);
/// Makes every feature unknown: QueryFeature leaves the value alone and returns -1.
EDITION_ADAPT_API void EditionAdapt_ClearFeatures(void);

/// What QueryFeature returns for a known feature, whose value it stores all the same; 0 by default.
EDITION_ADAPT_API void EditionAdapt_SetQueryResult(int result);

/// Whether the suite's shelf is installed (0 makes ZedSoftShelf::GetInstance return null), and
/// whether it supports its one property, "VRLoginGuide" with value "china" (0 makes it support
/// none). Both are 1 by default.
EDITION_ADAPT_API void EditionAdapt_SetShelf(int present, int supported);

/// Null removes it. After the return the previous one is not called any more.
EDITION_ADAPT_API void EditionAdapt_SetObserver(EditionAdaptObserver observer, void* context);

/// Back to the defaults named above, and no observer.
EDITION_ADAPT_API void EditionAdapt_Reset(void);

}  // extern "C"
