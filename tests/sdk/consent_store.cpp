// Everybody agrees.
#include "platform/consent_store.h"

#include "record.h"

std::string AgreementSign::IsAgreeClause() {
    Record("other ConsentStore", "agreed");
    return "1";
}
