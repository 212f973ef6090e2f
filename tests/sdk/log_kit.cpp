// Keeps no file and no sink: every line goes to the record.
#include "platform/log_kit.h"

#include "record.h"

VrLogger* VrLogger::GetInstance() {
    static VrLogger logger;
    return &logger;
}

void VrLogger::Log(LOG_MESSAGE_LEVEL level, std::wstringstream& stream) {
    Record("other LogKit", "level " + std::to_string(level) + ", " + Plain(stream.str()));
}
