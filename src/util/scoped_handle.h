// Owners for operating-system handles.
#pragma once

#include <windows.h>

/// Owns one handle and closes it when it goes out of scope. A call that fails may leave rubbish in
/// the handle that it was to return, so ownership is taken only after the call has succeeded.
///
/// `Traits` describes a kind of handle: `Type`, `Invalid()` (the value that means "none") and
/// `Close(handle)`. Not thread-safe; a handle has one owner.
template <typename Traits>
class ScopedHandle {
public:
    using Type = typename Traits::Type;

    ScopedHandle() noexcept = default;
    explicit ScopedHandle(Type handle) noexcept : owned(handle) {}
    ScopedHandle(ScopedHandle&& other) noexcept : owned(other.Release()) {}
    ScopedHandle& operator=(ScopedHandle&& other) noexcept {
        Reset(other.Release());
        return *this;
    }
    ScopedHandle(const ScopedHandle&) = delete;
    ScopedHandle& operator=(const ScopedHandle&) = delete;
    ~ScopedHandle() { Reset(); }

    Type Get() const noexcept { return owned; }
    explicit operator bool() const noexcept { return owned != Traits::Invalid(); }

    /// Closes what is owned, if anything, and owns `handle` from now on.
    void Reset(Type handle = Traits::Invalid()) noexcept {
        const Type previous = owned;
        owned = handle;
        if (previous != Traits::Invalid()) {
            Traits::Close(previous);
        }
    }

    /// Gives the handle away without closing it.
    Type Release() noexcept {
        const Type handle = owned;
        owned = Traits::Invalid();
        return handle;
    }

private:
    Type owned = Traits::Invalid();
};

/// Kernel objects whose "none" is null: tokens, threads.
struct KernelHandleTraits {
    using Type = HANDLE;
    static Type Invalid() noexcept { return nullptr; }
    static void Close(Type handle) noexcept { CloseHandle(handle); }
};
using ScopedKernelHandle = ScopedHandle<KernelHandleTraits>;

/// A counted reference to a loaded module.
struct ModuleTraits {
    using Type = HMODULE;
    static Type Invalid() noexcept { return nullptr; }
    static void Close(Type module) noexcept { FreeLibrary(module); }
};
using ScopedModule = ScopedHandle<ModuleTraits>;
