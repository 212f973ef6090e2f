// Files and folders as the host needs them. Paths are as people type them, in UTF-8.
#pragma once

#include <windows.h>

#include <string>
#include <string_view>

#include "host/host_error.h"

namespace host {

/// Folder of the running executable, without a separator at its end.
std::wstring OwnFolder();

bool IsFile(const std::wstring& path);

/// The absolute form of a path.
std::wstring FullPath(std::string_view path);

/// The file's bytes, without a byte order mark. Throws BadInput naming `purpose` ("script") and
/// path when the file cannot be read.
std::string ReadTextFile(std::string_view path, std::string_view purpose);

/// The error of an `option` ("--page") whose file cannot be written.
BadInput Unwritable(std::string_view option, std::string_view path, DWORD error);

/// Throws BadInput when the file cannot be written. Changes no file and leaves none behind.
void CheckWritable(std::string_view option, std::string_view path);

/// Creates the file, or empties it. Throws BadInput.
void EmptyFile(std::string_view option, std::string_view path);

/// Writes a file beside `path` and puts it in its place once it is whole, so that an existing file
/// is never lost to a half new one. Throws BadInput.
void ReplaceTextFile(std::string_view option, std::string_view path, std::string_view text);

}  // namespace host
