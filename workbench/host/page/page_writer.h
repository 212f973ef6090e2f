// The page that shows what leaves the machine.
#pragma once

#include <string>

#include "host/options.h"
#include "host/page/run_record.h"

namespace host {

/// The whole page: one HTML document that loads nothing.
std::string MakePage(const RunRecord& record);

/// Writes the page. An existing file is replaced only once the new one is whole. Throws HostError.
void WritePage(const RunRecord& record, const std::string& path);

/// Makes the page from files of an earlier run, as --from asks, and says so on standard output.
/// Throws HostError.
void WritePageFromFiles(const Options& options);

}  // namespace host
