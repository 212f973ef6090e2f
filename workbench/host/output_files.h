// The files that a run writes.
#pragma once

#include <string>

#include "host/options.h"
#include "host/suite.h"

namespace host {

/// Throws HostError when two options name the same file.
void RefuseSameFiles(const Options& options);

/// Record of events, log file and page. An existing file keeps its content until Open, that is,
/// until everything else was found to be in order.
class OutputFiles {
public:
    /// Throws HostError when a file cannot be written, or is one of the run's inputs. Changes no
    /// file.
    explicit OutputFiles(const Options& options);
    ~OutputFiles();
    OutputFiles(const OutputFiles&) = delete;
    OutputFiles& operator=(const OutputFiles&) = delete;

    /// Empties the files and lets the suite write to them. `suite` must outlive this object.
    void Open(const Suite& suite);

private:
    const std::string events;
    const std::string log;
    const Suite* openedFor = nullptr;
};

}  // namespace host
