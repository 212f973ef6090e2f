// Objects that are destroyed when the library is unloaded, but not when the process ends.
//
// These are the statics that other threads use: the timer manager, the device reporter and the
// firmware's event monitor. The registration record is a plain static, because only the entry point
// and the host's manager use it; no other static has a destructor.
#pragma once

/// Set by the entry point, on the last thread of a process that ends. All other threads have been
/// terminated wherever they were, perhaps holding locks of the compiler's runtime: joining one or
/// destroying what it used may never return.
inline bool processIsEnding = false;

/// One T with the storage of a static object: all zeros before its constructor runs.
///
/// At an unload the library's own threads have ended: each of them keeps the library mapped.
template <typename T>
class KeptAtProcessEnd {
public:
    KeptAtProcessEnd() : object() {}
    KeptAtProcessEnd(const KeptAtProcessEnd&) = delete;
    KeptAtProcessEnd& operator=(const KeptAtProcessEnd&) = delete;
    ~KeptAtProcessEnd() {
        if (!processIsEnding) {
            object.~T();
        }
    }

    T& operator*() { return object; }
    T* operator->() { return &object; }

private:
    /// A union does not destroy its member.
    union {
        T object;
    };
};
