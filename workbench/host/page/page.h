// The page that shows what leaves the machine.
#pragma once

#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "records/record.h"

namespace host {

/// What stands before and behind the record; the build makes both from the files beside this one.
/// The page's policy lets the browser run its own style and script, which it knows by their hashes,
/// and load nothing.
extern const std::string_view kPageFront;
extern const std::string_view kPageBack;

/// For each event the number of the device list that it is a part of, counted from 0; nothing for
/// other events. The parts of a list follow one another, and a later part has no key that the one
/// before it lacks; the plug-in begins the next list a day later at the earliest.
std::vector<std::optional<int>> NumberDeviceLists(
    const std::vector<records::RecordedEvent>& events);

/// The whole page: one HTML document that loads nothing. The record stands in it as JSON in ASCII
/// that holds none of the characters that mean something to HTML, so that no text of a device can
/// end the element that it stands in.
std::string MakePage(const records::RunRecord& record);

/// Writes the page. An existing file is replaced only once the new one is whole. Throws BadInput.
void WritePage(const records::RunRecord& record, const std::string& path);

/// Makes the page from the files of an earlier run and says so on standard output. `logPath` may be
/// empty. Throws BadInput.
void WritePageFromFiles(const std::string& eventsPath, const std::string& logPath,
                        const std::string& path);

}  // namespace host
