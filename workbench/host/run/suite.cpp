#include "host/run/suite.h"

#include "common/text.h"
#include "host/host_error.h"

namespace host {

using workbench::ToUtf8;

SuiteLibrary::SuiteLibrary(const std::wstring& folder, const wchar_t* fileName)
    : name(ToUtf8(fileName)) {
    const std::wstring path = folder + L"\\" + fileName;
    if (GetFileAttributesW(path.c_str()) == INVALID_FILE_ATTRIBUTES) {
        throw BadInput(name + " is missing; it belongs in '" + ToUtf8(folder) +
                       "', where ./dev build puts it");
    }
    module.Reset(LoadLibraryW(path.c_str()));
    if (!module) {
        const std::string reason = Win32ErrorText(GetLastError());
        throw BadInput("cannot load '" + ToUtf8(path) + "': " + reason +
                       "; rebuild it: ./dev build");
    }
}

void* SuiteLibrary::Find(const char* functionName) const {
    const FARPROC function = GetProcAddress(module.Get(), functionName);
    if (function == nullptr) {
        throw BadInput(name + " has no function " + functionName +
                       ", so it is not the workbench's; rebuild it: ./dev build");
    }
    return reinterpret_cast<void*>(function);
}

}  // namespace host
