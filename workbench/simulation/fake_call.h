// What every fake of an OS call has in common: journal, fault plan, last error.
#pragma once

#include <windows.h>

#include <initializer_list>
#include <optional>
#include <string>
#include <type_traits>
#include <vector>

#include "simulation/call_text.h"
#include "simulation/own_work.h"
#include "simulation/simulated_machine.h"

namespace simulation {

/// An argument of a call, by name. Pass a buffer that the call is to fill as `const void*`: its
/// text means nothing yet.
template <class Value>
struct Arg {
    const char* name;
    const Value& value;
};
template <class Value>
Arg(const char*, const Value&) -> Arg<Value>;

/// One call of a fake, from its first to its last statement:
///
///     BOOL WINAPI FakeClosePrinter(HANDLE printer) {
///         FakeCall call("ClosePrinter", Arg{"printer", printer});
///         if (call.PlannedFault()) {
///             return call.Fails(FALSE);
///         }
///         if (!call.world().ledger.Release(ResourceKind::Printer, printer)) {
///             return call.Fails(FALSE, ERROR_INVALID_HANDLE);
///         }
///         return call.Returns(TRUE);
///     }
///
/// The journal gets the call's number at construction and its arguments and result at the end. The
/// thread's last error is left as the caller had it, except by Fails and PassTo. Ends the process
/// with a message when no simulated machine is in force.
class FakeCall {
public:
    explicit FakeCall(const char* function);
    template <class... Values>
    explicit FakeCall(const char* function, Arg<Values>... known) : FakeCall(function) {
        (Argument(known.name, known.value), ...);
    }
    ~FakeCall();
    FakeCall(const FakeCall&) = delete;
    FakeCall& operator=(const FakeCall&) = delete;

    World& world() { return theWorld; }

    /// One that is known later.
    template <class Value>
    void Argument(const char* name, const Value& value) {
        if (journalled) {
            arguments.emplace_back(name, value);
        }
    }
    void Arguments(std::initializer_list<CallArgument> several) {
        if (journalled) {
            arguments.insert(arguments.end(), several);
        }
    }

    /// The failure planned for this call; its `variant` says how to fail.
    const std::optional<Fault>& PlannedFault() const { return fault; }
    bool IsPlanned(FaultVariant variant) const { return fault && fault->variant == variant; }

    /// A wrong use of the function, and the error that it earns.
    struct Refusal {
        bool applies;
        DWORD error;
    };

    /// The planned error, unless the fake has a use of its own for that variant, or else the error
    /// of the first refusal that applies.
    std::optional<DWORD> Refused(std::initializer_list<Refusal> refusals,
                                 FaultVariant ownUse = FaultVariant::Fail) const;

    /// Success; the last error stays.
    template <class Result>
    Result Returns(Result result) {
        if (journalled) {
            resultText = CallText(result);
        }
        return result;
    }

    /// Failure with `error` as the last error.
    template <class Result>
    Result Fails(Result result, DWORD error) {
        journalError = error;
        lastError = error;
        return Returns(result);
    }

    /// Failure as planned.
    template <class Result>
    Result Fails(Result result) {
        return Fails(result, fault.value().error);
    }

    /// For functions that return their error number and do not touch the last error.
    template <class Status>
    Status ReturnsStatus(Status status) {
        journalError = static_cast<DWORD>(status);
        return Returns(status);
    }

    /// The planned failure of such a function.
    template <class Status>
    Status FailsWithStatus() {
        return ReturnsStatus(static_cast<Status>(fault.value().error));
    }

    /// Lets the system itself do it. The last error becomes the one that the system leaves; the
    /// journal takes it for a failure when the result is zero.
    template <class Function, class... RealArguments>
    auto PassTo(Function* real, RealArguments... realArguments) {
        SetLastError(lastError);
        if constexpr (std::is_void_v<decltype(real(realArguments...))>) {
            real(realArguments...);
            lastError = GetLastError();
        } else {
            const auto result = real(realArguments...);
            lastError = GetLastError();
            journalError = result == decltype(real(realArguments...)){} ? lastError : 0;
            return Returns(result);
        }
    }

    /// The planned failure with this result, or else PassTo.
    template <class Result, class Function, class... RealArguments>
    Result FailsOrPassesTo(Result failure, Function* real, RealArguments... realArguments) {
        return fault ? Fails(failure) : PassTo(real, realArguments...);
    }

private:
    DWORD lastError;  ///< First, so that nothing gets to change it before it is saved.
    OwnWork ownWork;
    World& theWorld;
    const bool journalled;
    std::uint64_t sequence;
    std::optional<Fault> fault;
    std::vector<CallArgument> arguments;
    std::string resultText;
    DWORD journalError = 0;
};

}  // namespace simulation
