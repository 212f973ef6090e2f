#include "host/host_error.h"

#include "common/text.h"

namespace host {

std::string Win32ErrorText(DWORD error) {
    wchar_t buffer[512];
    // Without line breaks: the text becomes part of one line.
    const DWORD length = FormatMessageW(
        FORMAT_MESSAGE_FROM_SYSTEM | FORMAT_MESSAGE_IGNORE_INSERTS | FORMAT_MESSAGE_MAX_WIDTH_MASK,
        /*lpSource=*/nullptr, error, /*dwLanguageId=*/0, buffer, 512, nullptr);
    std::string text = workbench::ToUtf8({buffer, length});
    text.erase(text.find_last_not_of(" .") + 1);
    const std::string number = "error " + std::to_string(error);
    return text.empty() ? number : text + " (" + number + ")";
}

}  // namespace host
