// Whether the library is detached because the process ends.
#pragma once

/// Told by the entry point, on the last thread of the process. All others have been terminated
/// wherever they were, perhaps holding locks of the compiler's runtime: joining a thread or
/// destroying what one of them used may wait for ever.
void NoteProcessEnd() noexcept;

/// Asked while statics are destroyed, at an unload and at the end of the process.
bool IsProcessEnding() noexcept;
