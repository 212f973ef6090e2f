// What a host or a test sets on ConsentStore.dll. The plug-in never sees it. Every function may be
// called from any thread.
#pragma once

#include <cstddef>

#include "platform/consent_store.h"

extern "C" {

/// The stored answer to the data clause from now on. The default is empty: the user was never
/// asked, so nobody agreed.
CONSENT_STORE_API void ConsentStore_SetAnswer(const char* text);

/// Answers to the next `count` questions, at least one, one each; the last one stays.
CONSENT_STORE_API void ConsentStore_SetAnswers(const char* const* texts, size_t count);

/// How often the plug-in asked since the library was loaded or reset.
CONSENT_STORE_API unsigned ConsentStore_AskCount(void);

/// Back to the defaults: empty answer, never asked.
CONSENT_STORE_API void ConsentStore_Reset(void);

}  // extern "C"
