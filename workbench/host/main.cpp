// The console host: loads the plug-in and shows what it does, or what it would find.
#include <windows.h>
#include <fcntl.h>
#include <io.h>

#include <cstdio>
#include <exception>
#include <iostream>
#include <string>
#include <vector>

#include "common/text.h"
#include "host/host_error.h"
#include "host/options/options.h"
#include "host/page/page.h"
#include "host/run/host_run.h"

namespace {

int Complain(host::ExitCode code, const std::string& line) {
    std::fprintf(stderr, "tallyport_host: %s\n", line.c_str());
    return static_cast<int>(code);
}

}  // namespace

int wmain(int argumentCount, wchar_t** arguments) {
    // Lines end as they are written, also where the output goes to a file on another system.
    _setmode(_fileno(stdout), _O_BINARY);
    _setmode(_fileno(stderr), _O_BINARY);
    std::vector<std::string> utf8Arguments;
    for (int i = 1; i < argumentCount; ++i) {
        utf8Arguments.push_back(workbench::ToUtf8(arguments[i]));
    }
    try {
        if (const auto options = host::ParseOptions(utf8Arguments, std::cout)) {
            if (options->listDevices) {
                host::ListDevices(*options);
            } else if (!options->from.empty()) {
                host::WritePageFromFiles(options->from, options->fromLog, options->page);
            } else {
                host::RunHost(*options);
            }
        }
        return static_cast<int>(host::ExitCode::Done);
    } catch (const host::BadInput& error) {
        return Complain(host::ExitCode::BadInput, error.what());
    } catch (const host::RunFailed& error) {
        return Complain(host::ExitCode::RunFailed, error.what());
    } catch (const std::exception& error) {
        return Complain(host::ExitCode::RunFailed,
                        std::string("unexpected failure: ") + error.what());
    }
}
