// The stand-in suite, as the host sets it up and listens to it.
#pragma once

#include <string>
#include <utility>

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
    /// Loads the library from `folder` and nowhere else. Throws BadInput when it is not there.
    SuiteLibrary(const std::wstring& folder, const wchar_t* fileName);

    HMODULE Module() const { return module.Get(); }

    /// Throws BadInput when the library lacks the function.
    void* Find(const char* functionName) const;

private:
    std::string name;
    ScopedModule module;
};

/// A function of a library, found when this is constructed.
template <class Function>
class SuiteFunction {
public:
    /// Throws BadInput when the library lacks the function.
    SuiteFunction(const SuiteLibrary& library, const char* name)
        : function(reinterpret_cast<Function*>(library.Find(name))) {}

    operator Function*() const { return function; }

private:
    Function* const function;
};

/// All eight libraries, loaded for as long as the object lives, and their control functions. See
/// the control headers for what they do.
class Suite {
public:
    explicit Suite(std::wstring libraryFolder) : folder(std::move(libraryFolder)) {}
    Suite(const Suite&) = delete;
    Suite& operator=(const Suite&) = delete;

private:
    const std::wstring folder;
    const SuiteLibrary pluginsManager{folder, L"ZedPluginsManager.dll"};
    const SuiteLibrary logKit{folder, L"LogKit.dll"};
    const SuiteLibrary xeevent{folder, L"xeevent.dll"};
    const SuiteLibrary fileKit{folder, L"FileKit.dll"};
    const SuiteLibrary boardInfo{folder, L"BoardInfo.dll"};
    const SuiteLibrary wmiKit{folder, L"WmiKit.dll"};
    const SuiteLibrary consentStore{folder, L"ConsentStore.dll"};
    const SuiteLibrary editionAdapt{folder, L"EditionAdapt.dll"};

public:
    SuiteFunction<decltype(ZedPluginsManager_Count)> registeredPlugins{pluginsManager,
                                                                       "ZedPluginsManager_Count"};
    SuiteFunction<decltype(ZedPluginsManager_At)> registeredPlugin{pluginsManager,
                                                                   "ZedPluginsManager_At"};
    SuiteFunction<decltype(LogKit_SetSink)> setLogSink{logKit, "LogKit_SetSink"};
    SuiteFunction<decltype(LogKit_SetConsole)> setLogConsole{logKit, "LogKit_SetConsole"};
    SuiteFunction<decltype(LogKit_OpenFile)> openLogFile{logKit, "LogKit_OpenFile"};
    SuiteFunction<decltype(LogKit_CloseFile)> closeLogFile{logKit, "LogKit_CloseFile"};
    SuiteFunction<decltype(XeEvent_SetSink)> setEventSink{xeevent, "XeEvent_SetSink"};
    SuiteFunction<decltype(XeEvent_SetWarningSink)> setEventWarningSink{xeevent,
                                                                        "XeEvent_SetWarningSink"};
    SuiteFunction<decltype(XeEvent_OpenRecord)> openEventRecord{xeevent, "XeEvent_OpenRecord"};
    SuiteFunction<decltype(XeEvent_CloseRecord)> closeEventRecord{xeevent, "XeEvent_CloseRecord"};
    SuiteFunction<decltype(FileKit_SetInterceptor)> setRegistryInterceptor{
        fileKit, "FileKit_SetInterceptor"};
    SuiteFunction<decltype(BoardInfo_SetAvailable)> setFirmwareAvailable{boardInfo,
                                                                         "BoardInfo_SetAvailable"};
    SuiteFunction<decltype(BoardInfo_SetTexts)> setFirmwareTexts{boardInfo, "BoardInfo_SetTexts"};
    SuiteFunction<decltype(WmiKit_SetAnswer)> setFirmwareAnswer{wmiKit, "WmiKit_SetAnswer"};
    SuiteFunction<decltype(WmiKit_SetStartResult)> setFirmwareStartResult{wmiKit,
                                                                          "WmiKit_SetStartResult"};
    SuiteFunction<decltype(WmiKit_FireFirmwareEvent)> fireFirmwareEvent{wmiKit,
                                                                        "WmiKit_FireFirmwareEvent"};
    SuiteFunction<decltype(ConsentStore_SetAnswer)> setConsent{consentStore,
                                                               "ConsentStore_SetAnswer"};
    SuiteFunction<decltype(EditionAdapt_SetFeature)> setFeature{editionAdapt,
                                                                "EditionAdapt_SetFeature"};
    SuiteFunction<decltype(EditionAdapt_ClearFeatures)> clearFeatures{editionAdapt,
                                                                      "EditionAdapt_ClearFeatures"};
    SuiteFunction<decltype(EditionAdapt_SetShelf)> setShelf{editionAdapt, "EditionAdapt_SetShelf"};
};

}  // namespace host
