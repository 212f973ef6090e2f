// The event library's limits, which its header asks every module that uses it to export. A
// definition is needed: an initialiser inside the class alone leaves nothing to export.
#include <cstdint>

#include "platform/xeevent.h"

const std::uint64_t XeEvent::MAX_KEY_LEN;
const std::uint64_t XeEvent::MAX_PAIR_NUM;
const std::uint64_t XeEvent::MAX_PATH_LEN;
const std::uint64_t XeEvent::MAX_VALUE_LEN;
const std::uint64_t XeEvent::MAX_FILE_NUM;
const std::uint64_t XeEvent::MAX_ARR_SIZE;
const std::int32_t XeEvent::INVALID_NUM;
