// The library's share in an object that lives until the library is unloaded.
#pragma once

#include <memory>

#include "util/process_end.h"

/// Creates one T with itself and lets go of it when the library is unloaded. A thread that works on
/// the object may hold a share of its own and outlive this one.
///
/// A process that ends instead leaves the object as it is: its threads have been terminated in the
/// midst of whatever they did to it.
template <typename T>
class ModuleInstance {
public:
    ModuleInstance() : share(new std::shared_ptr<T>(std::make_shared<T>())) {}
    ModuleInstance(const ModuleInstance&) = delete;
    ModuleInstance& operator=(const ModuleInstance&) = delete;
    ~ModuleInstance() {
        if (!IsProcessEnding()) {
            delete share;
        }
    }

    T& operator*() const { return **share; }
    T* operator->() const { return share->get(); }

private:
    std::shared_ptr<T>* const share;
};
