// Files and folders as the host needs them. Paths are as people type them, in UTF-8.
#pragma once

#include <string>
#include <string_view>

namespace host {

/// Folder of the running executable, without a separator at its end.
std::wstring OwnFolder();

bool IsFile(const std::wstring& path);

/// The absolute form of a path.
std::wstring FullPath(std::string_view path);

/// The absolute form in lower case, to tell whether two texts name the same file.
std::wstring ComparablePath(std::string_view path);

/// The file's bytes, without a byte order mark. Throws HostError naming `purpose` ("script") and
/// path when the file cannot be read.
std::string ReadTextFile(std::string_view path, std::string_view purpose);

/// Writes a file beside `path` and puts it in its place once it is whole, so that an existing file
/// is never lost to a half new one. Throws HostError naming `option` ("--page") and path.
void ReplaceTextFile(const std::string& path, std::string_view text, std::string_view option);

}  // namespace host
