// Which calls are to fail, and how.
#pragma once

#include <windows.h>

#include <iosfwd>
#include <map>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "simulation/slim_mutex.h"

namespace simulation {

/// Ways in which calls of the operating system go wrong. A fake that has no use for a variant
/// treats it as Fail.
enum class FaultVariant {
    Fail,                ///< The call's own failure result with the planned error number.
    NullResult,          ///< Success, but the pointer or handle handed back is null.
    ShortSize,           ///< Success, but fewer bytes or entries than are needed.
    SuccessWithNothing,  ///< Success, but nothing was done or found.
};

const char* VariantName(FaultVariant variant);

/// A planned failure. `error` is whatever the function reports: a Win32 error for the thread's last
/// error, an LSTATUS, a CONFIGRET or an HRESULT; for ShortSize the size, where the fake says so.
struct Fault {
    std::string function;
    unsigned call = 0;  ///< Counted from 1; 0 stands for every call.
    DWORD error = 0;
    FaultVariant variant = FaultVariant::Fail;
};

std::ostream& operator<<(std::ostream& stream, const Fault& fault);

/// The failures planned for a simulated machine. Safe to use from any thread.
class FaultPlan {
public:
    /// The `call`th call of `function` from now on fails, counted from 1.
    void FailCall(std::string_view function, unsigned call, DWORD error,
                  FaultVariant variant = FaultVariant::Fail);
    void FailEveryCall(std::string_view function, DWORD error,
                       FaultVariant variant = FaultVariant::Fail);
    /// Withdraws all faults and starts counting anew.
    void Clear();

    /// Counts a call of `function` and returns what is planned for it. A fault for this very call
    /// goes before one for every call.
    std::optional<Fault> Next(std::string_view function);

    /// The faults that no call has met so far; a test that plans faults expects none at its end.
    std::vector<Fault> Missed() const;

private:
    struct Planned {
        Fault fault;
        unsigned countAtCall;  ///< Value of the function's count at the call; 0 for every call.
        bool hit;
    };

    mutable SlimMutex mutex;
    std::vector<Planned> planned;
    std::map<std::string, unsigned, std::less<>> counts;
};

}  // namespace simulation
