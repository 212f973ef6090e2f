#include "util/process_end.h"

namespace {

bool processIsEnding = false;

}  // namespace

void NoteProcessEnd() noexcept { processIsEnding = true; }

bool IsProcessEnding() noexcept { return processIsEnding; }
