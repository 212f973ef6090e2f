// Other programs, for what happens to a process as a whole.
#pragma once

#include <windows.h>

#include <chrono>
#include <string>
#include <vector>

#include "support/comes_true.h"

namespace test_support {

struct ChildResult {
    bool finished = false;  ///< False: it was still running at the limit and was terminated.
    DWORD exitCode = 0;
    std::string output;  ///< Of standard output, and of standard error unless that is kept apart.
    std::string errors;  ///< Of standard error when it is kept apart.
};

enum class StandardError { WithOutput, Apart };

/// Folder of the running program, without a backslash at the end.
std::wstring ProgramFolder();

/// Runs a program to its end. Throws std::runtime_error when it cannot be started.
ChildResult RunChild(const std::wstring& program, const std::vector<std::wstring>& arguments,
                     std::chrono::milliseconds limit = kPatienceWithChildren,
                     StandardError standardError = StandardError::WithOutput);

}  // namespace test_support
