// The stand-in suite, as the host sets it up and listens to it.
#pragma once

#include <string>

#include "standins/board_info/board_info_control.h"
#include "standins/consent_store/consent_store_control.h"
#include "standins/edition_adapt/edition_adapt_control.h"
#include "standins/file_kit/file_kit_control.h"
#include "standins/log_kit/log_kit_control.h"
#include "standins/plugins_manager/plugins_manager_control.h"
#include "standins/wmi_kit/wmi_kit_control.h"
#include "standins/xeevent/xeevent_control.h"
#include "util/scoped_handle.h"

namespace host {

/// One library of the suite, or of the workbench. Its control functions are looked up by name: were
/// they imported, a missing library would end the process before it could say which one is missing.
class SuiteLibrary {
public:
    /// Loads the library from `folder` and nowhere else. Throws HostError when it is not there.
    SuiteLibrary(const std::wstring& folder, const wchar_t* fileName);

    HMODULE Module() const { return module.Get(); }

    /// Throws HostError when the library lacks the function.
    template <class Function>
    void Find(Function*& function, const char* functionName) const {
        function = reinterpret_cast<Function*>(Find(functionName));
    }

private:
    void* Find(const char* functionName) const;

    std::string name;
    ScopedModule module;
};

/// All eight libraries, loaded for as long as the object lives, and their control functions. See
/// the control headers for what they do.
class Suite {
public:
    explicit Suite(const std::wstring& folder);
    Suite(const Suite&) = delete;
    Suite& operator=(const Suite&) = delete;

private:
    const SuiteLibrary pluginsManager;
    const SuiteLibrary logKit;
    const SuiteLibrary xeevent;
    const SuiteLibrary fileKit;
    const SuiteLibrary boardInfo;
    const SuiteLibrary wmiKit;
    const SuiteLibrary consentStore;
    const SuiteLibrary editionAdapt;

public:
    decltype(&ZedPluginsManager_Count) registeredPlugins = nullptr;
    decltype(&ZedPluginsManager_At) registeredPlugin = nullptr;

    decltype(&LogKit_SetSink) setLogSink = nullptr;
    decltype(&LogKit_SetConsole) setLogConsole = nullptr;
    decltype(&LogKit_OpenFile) openLogFile = nullptr;
    decltype(&LogKit_CloseFile) closeLogFile = nullptr;

    decltype(&XeEvent_SetSink) setEventSink = nullptr;
    decltype(&XeEvent_SetWarningSink) setEventWarningSink = nullptr;
    decltype(&XeEvent_OpenRecord) openEventRecord = nullptr;
    decltype(&XeEvent_CloseRecord) closeEventRecord = nullptr;

    decltype(&FileKit_SetInterceptor) setRegistryInterceptor = nullptr;

    decltype(&BoardInfo_SetAvailable) setFirmwareAvailable = nullptr;
    decltype(&BoardInfo_SetTexts) setFirmwareTexts = nullptr;

    decltype(&WmiKit_SetAnswer) setFirmwareAnswer = nullptr;
    decltype(&WmiKit_SetStartResult) setFirmwareStartResult = nullptr;
    decltype(&WmiKit_FireFirmwareEvent) fireFirmwareEvent = nullptr;

    decltype(&ConsentStore_SetAnswer) setConsent = nullptr;

    decltype(&EditionAdapt_SetFeature) setFeature = nullptr;
    decltype(&EditionAdapt_ClearFeatures) clearFeatures = nullptr;
    decltype(&EditionAdapt_SetShelf) setShelf = nullptr;
    decltype(&EditionAdapt_SetShelfProperty) setShelfProperty = nullptr;
};

}  // namespace host
