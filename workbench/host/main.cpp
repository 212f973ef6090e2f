// The console host: loads the plug-in and shows what it does, or what it would find.
#include <windows.h>

#include <fcntl.h>
#include <io.h>

#include <cstdio>
#include <exception>
#include <iostream>
#include <string>
#include <vector>

#include "host/device_listing.h"
#include "host/host_error.h"
#include "host/host_run.h"
#include "host/options.h"
#include "host/page/page_writer.h"
#include "standins/common/text.h"

int wmain(int argumentCount, wchar_t** arguments) {
    // Lines end as they are written, also where the output goes to a file on another system.
    _setmode(_fileno(stdout), _O_BINARY);
    _setmode(_fileno(stderr), _O_BINARY);
    std::vector<std::string> utf8Arguments;
    for (int i = 1; i < argumentCount; ++i) {
        utf8Arguments.push_back(standins::ToUtf8(arguments[i]));
    }
    try {
        if (const auto options = host::ParseOptions(utf8Arguments, std::cout)) {
            const auto act = options->listDevices     ? &host::ListDevices
                             : !options->from.empty() ? &host::WritePageFromFiles
                                                      : &host::RunHost;
            act(*options);
        }
        return static_cast<int>(host::ExitCode::Done);
    } catch (const host::HostError& error) {
        std::fprintf(stderr, "tallyport_host: %s\n", error.what());
        return static_cast<int>(error.Code());
    } catch (const std::exception& error) {
        std::fprintf(stderr, "tallyport_host: unexpected failure: %s\n", error.what());
        return static_cast<int>(host::ExitCode::RunFailed);
    }
}
