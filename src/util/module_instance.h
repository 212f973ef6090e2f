// An object that lives until the library is unloaded.
#pragma once

#include "util/process_end.h"

/// One T with the storage of a static object: all zeros before its constructor runs. It is
/// destroyed when the library is unloaded; the library's own threads keep that from happening while
/// they touch it.
///
/// A process that ends instead leaves the object as it is: its threads have been terminated in the
/// midst of whatever they did to it.
template <typename T>
class ModuleInstance {
public:
    ModuleInstance() : object() {}
    ModuleInstance(const ModuleInstance&) = delete;
    ModuleInstance& operator=(const ModuleInstance&) = delete;
    ~ModuleInstance() {
        if (!IsProcessEnding()) {
            object.~T();
        }
    }

    T& operator*() { return object; }
    T* operator->() { return &object; }

private:
    /// In a union nothing is destroyed by itself.
    union {
        T object;
    };
};
