// Small things that several families of fakes need.
#pragma once

#include <string>
#include <string_view>

#include "simulation/fake_call.h"

namespace simulation {

/// Whether the system takes two names (ids, paths, queues) for the same: letter case does not
/// count.
bool SameName(std::wstring_view left, std::wstring_view right);

/// Whether the call is to go wrong in this very way.
bool IsPlanned(const FakeCall& call, FaultVariant variant);

/// A GUID argument that is passed by address.
void GuidArgument(FakeCall& call, const char* name, const GUID* guid);

}  // namespace simulation
