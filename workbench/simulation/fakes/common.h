// Small things that several families of fakes need.
#pragma once

#include <iterator>
#include <map>
#include <string>
#include <string_view>
#include <utility>

#include "simulation/fake_call.h"

namespace simulation {

/// Whether the system takes two names (ids, paths, queues) for the same: letter case does not
/// count.
bool SameName(std::wstring_view left, std::wstring_view right);

/// What a family of fakes remembers of each handle that it gave out, while that is open: forgets
/// the closed ones and remembers `what` of a new one. A run of months must not grow by its handles.
template <typename Handle, typename What>
void Remember(std::map<Handle, What>& known, const ResourceLedger& ledger, ResourceKind kind,
              Handle opened, What what) {
    for (auto entry = known.begin(); entry != known.end();) {
        entry = ledger.IsOpen(kind, entry->first) ? std::next(entry) : known.erase(entry);
    }
    known.emplace(opened, std::move(what));
}

/// A GUID argument that is passed by address.
void GuidArgument(FakeCall& call, const char* name, const GUID* guid);

}  // namespace simulation
