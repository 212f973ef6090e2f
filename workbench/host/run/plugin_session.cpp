#include "host/run/plugin_session.h"

#include <exception>
#include <utility>

#include "common/text.h"
#include "host/files.h"
#include "host/host_error.h"
#include "host/run/patience.h"

namespace host {
namespace {

std::string FileNameOf(const std::wstring& path) {
    return workbench::ToUtf8(path.substr(path.find_last_of(L"\\/") + 1));
}

/// The line about a step of the plug-in that failed; empty when it did not. An exception ends here:
/// its code would be unloaded together with the plug-in before anybody could read it.
template <typename Step>
std::string FailureOf(const char* name, Step step) {
    constexpr char kAdvice[] = "; what it logged before tells more, and --log FILE keeps it";
    const std::string subject = std::string("the plug-in's ") + name;
    const std::string thrown =
        subject + " ended with an exception, which would end the suite's process";
    try {
        return step() ? std::string() : subject + " failed" + kAdvice;
    } catch (const std::exception& error) {
        return thrown + ": " + error.what() + kAdvice;
    } catch (...) {
        return thrown + kAdvice;
    }
}

void Demand(const std::string& failure) {
    if (!failure.empty()) {
        throw RunFailed(failure);
    }
}

}  // namespace

PluginSession::PluginSession(const Suite& theSuite, std::wstring thePath,
                             Surroundings& theSurroundings, Screen& theScreen)
    : suite(theSuite), path(std::move(thePath)), surroundings(theSurroundings), screen(theScreen) {
    screen.Line(LineKind::Step, "Load " + FileNameOf(path));
    const std::size_t registeredBefore = suite.registeredPlugins();
    module.Reset(LoadLibraryW(path.c_str()));
    if (!module) {
        const DWORD error = GetLastError();
        const std::string advice =
            error == ERROR_MOD_NOT_FOUND ? "; a library that it needs is missing: put it beside it"
            : error == ERROR_DLL_INIT_FAILED
                ? "; its entry point refused, as it does without a plug-in manager: put "
                  "ZedPluginsManager.dll beside the host"
                : "; is it a 64-bit Windows library?";
        throw RunFailed("cannot load the plug-in '" + workbench::ToUtf8(path) +
                        "': " + Win32ErrorText(error) + advice);
    }
    FindRegistration(registeredBefore);
    screen.Line(LineKind::Step, "It registered itself as " + registration->id);
    surroundings.Enter(module.Get());
}

PluginSession::~PluginSession() {
    // The failure that brought us here is the one to be told; those of the clean-up are lost.
    for (const auto step : {&PluginSession::Stop, &PluginSession::Unload}) {
        try {
            (this->*step)();
        } catch (const RunFailed&) {
            continue;
        }
    }
}

void PluginSession::FindRegistration(std::size_t registeredBefore) {
    const std::size_t registered = suite.registeredPlugins();
    if (registered > registeredBefore) {
        registration = suite.registeredPlugin(registered - 1);
    }
    if (registration == nullptr) {
        throw RunFailed("'" + workbench::ToUtf8(path) +
                        "' registered no plug-in with the manager when it "
                        "was loaded; is it a plug-in?");
    }
    if (!registration->factory) {
        throw RunFailed("'" + workbench::ToUtf8(path) +
                        "' registered no factory, so it cannot be created; set one "
                        "in its registration");
    }
}

void PluginSession::Start(RunClock& clock) {
    screen.Line(LineKind::Step, "Create it through its factory");
    Demand(FailureOf("factory", [&] {
        plugin = registration->factory();
        return plugin != nullptr;
    }));
    screen.Line(LineKind::Step, "Initialize");
    Demand(FailureOf("Initialize", [&] { return plugin->Initialize(); }));
    initialized = true;
    clock.Start();
    screen.Line(LineKind::Step, "Start");
    Demand(FailureOf("Start", [&] { return plugin->Start(); }));
    started = true;
    screen.Line(LineKind::Step, "Started");
}

void PluginSession::Stop() {
    std::string failure;
    if (started) {
        screen.Line(LineKind::Step, "Stop");
        failure = FailureOf("Stop", [&] { return plugin->Stop(); });
        started = false;
        screen.Line(LineKind::Step, "Stopped");
    }
    if (initialized) {
        screen.Line(LineKind::Step, "Uninitialize");
        const std::string last = FailureOf("Uninitialize", [&] { return plugin->Uninitialize(); });
        if (failure.empty()) {
            failure = last;
        }
        initialized = false;
    }
    // The last reference goes here, while the code of its deleter is still loaded.
    plugin.reset();
    Demand(failure);
}

void PluginSession::Unload() {
    if (!module) {
        return;
    }
    screen.Line(LineKind::Step, "Unload " + FileNameOf(path));
    surroundings.Leave();
    module.Reset();
    // Threads of the plug-in that are about to end keep it in memory.
    if (!WaitPatiently([&] { return GetModuleHandleW(path.c_str()) == nullptr; })) {
        throw RunFailed(
            "the plug-in stays loaded after Stop: a thread of it is still running, or "
            "somebody kept a reference to it; Stop has to see to both");
    }
}

}  // namespace host
