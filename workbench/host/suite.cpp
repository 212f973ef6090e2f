#include "host/suite.h"

#include "host/files.h"
#include "host/host_error.h"
#include "host/win32_error.h"
#include "standins/common/text.h"

namespace host {

SuiteLibrary::SuiteLibrary(const std::wstring& folder, const wchar_t* fileName)
    : name(standins::ToUtf8(fileName)) {
    const std::wstring path = folder + L"\\" + fileName;
    if (!IsFile(path)) {
        throw HostError(ExitCode::BadInput, name + " is missing; it belongs into '" +
                                                standins::ToUtf8(folder) +
                                                "', where ./dev build puts it");
    }
    module.Reset(LoadLibraryW(path.c_str()));
    if (!module) {
        const std::string reason = Win32ErrorText(GetLastError());
        throw HostError(ExitCode::BadInput, "cannot load '" + standins::ToUtf8(path) +
                                                "': " + reason + "; build it anew: ./dev build");
    }
}

void* SuiteLibrary::Find(const char* functionName) const {
    const FARPROC function = GetProcAddress(module.Get(), functionName);
    if (function == nullptr) {
        throw HostError(ExitCode::BadInput, name + " has no function " + functionName +
                                                ", so it is not the workbench's; build it anew: "
                                                "./dev build");
    }
    return reinterpret_cast<void*>(function);
}

Suite::Suite(const std::wstring& folder)
    : pluginsManager(folder, L"ZedPluginsManager.dll"),
      logKit(folder, L"LogKit.dll"),
      xeevent(folder, L"xeevent.dll"),
      fileKit(folder, L"FileKit.dll"),
      boardInfo(folder, L"BoardInfo.dll"),
      wmiKit(folder, L"WmiKit.dll"),
      consentStore(folder, L"ConsentStore.dll"),
      editionAdapt(folder, L"EditionAdapt.dll") {
    pluginsManager.Find(registeredPlugins, "ZedPluginsManager_Count");
    pluginsManager.Find(registeredPlugin, "ZedPluginsManager_At");
    logKit.Find(setLogSink, "LogKit_SetSink");
    logKit.Find(setLogConsole, "LogKit_SetConsole");
    logKit.Find(openLogFile, "LogKit_OpenFile");
    logKit.Find(closeLogFile, "LogKit_CloseFile");
    xeevent.Find(setEventSink, "XeEvent_SetSink");
    xeevent.Find(setEventWarningSink, "XeEvent_SetWarningSink");
    xeevent.Find(openEventRecord, "XeEvent_OpenRecord");
    xeevent.Find(closeEventRecord, "XeEvent_CloseRecord");
    fileKit.Find(setRegistryInterceptor, "FileKit_SetInterceptor");
    boardInfo.Find(setFirmwareAvailable, "BoardInfo_SetAvailable");
    boardInfo.Find(setFirmwareTexts, "BoardInfo_SetTexts");
    wmiKit.Find(setFirmwareAnswer, "WmiKit_SetAnswer");
    wmiKit.Find(setFirmwareStartResult, "WmiKit_SetStartResult");
    wmiKit.Find(fireFirmwareEvent, "WmiKit_FireFirmwareEvent");
    consentStore.Find(setConsent, "ConsentStore_SetAnswer");
    editionAdapt.Find(setFeature, "EditionAdapt_SetFeature");
    editionAdapt.Find(clearFeatures, "EditionAdapt_ClearFeatures");
    editionAdapt.Find(setShelf, "EditionAdapt_SetShelf");
    editionAdapt.Find(setShelfProperty, "EditionAdapt_SetShelfProperty");
}

}  // namespace host
