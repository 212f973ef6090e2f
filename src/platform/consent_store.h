// ConsentStore.dll: what the user agreed to.
#pragma once

#include <string>

#if defined(CONSENT_STORE_EXPORTS)
#define CONSENT_STORE_API __declspec(dllexport)
#else
#define CONSENT_STORE_API __declspec(dllimport)
#endif

/// The user's agreements.
class AgreementSign {
public:
    /// The stored answer to the data clause: "1" means that the user agreed.
    CONSENT_STORE_API static std::string IsAgreeClause();
};
