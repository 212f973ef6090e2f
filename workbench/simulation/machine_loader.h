// Machine files: JSON documents that describe a machine. machines/machine.schema.json defines them.
#pragma once

#include <filesystem>
#include <stdexcept>
#include <string>

#include "simulation/machine.h"

namespace simulation {

/// A machine file that cannot be used. The text is one line with the file, the place inside the
/// document (a JSON pointer), what was expected there and what was found.
class MachineFileError : public std::runtime_error {
public:
    /// What the file brings into the text, be it a line break or no UTF-8 at all, is made readable.
    explicit MachineFileError(const std::string& text);
};

/// Throws MachineFileError.
Machine LoadMachine(const std::filesystem::path& file);

/// `fileName` is for messages only.
Machine ParseMachine(const std::string& text, const std::string& fileName);

}  // namespace simulation
