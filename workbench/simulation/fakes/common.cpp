#include "simulation/fakes/common.h"

namespace simulation {

bool SameName(std::wstring_view left, std::wstring_view right) {
    return CompareStringOrdinal(left.data(), static_cast<int>(left.size()), right.data(),
                                static_cast<int>(right.size()), TRUE) == CSTR_EQUAL;
}

void GuidArgument(FakeCall& call, const char* name, const GUID* guid) {
    if (guid == nullptr) {
        call.Argument(name, nullptr);
    } else {
        call.Argument(name, *guid);
    }
}

}  // namespace simulation
