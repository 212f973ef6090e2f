// A run of the built host, with files for what goes in and what comes out.
#pragma once

#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "records/record_reader.h"
#include "support/host_program.h"
#include "support/temp_folder.h"

namespace host_test {

class HostRun : public testing::Test {
protected:
    std::wstring File(const wchar_t* name) const { return folder.Path() + L"\\" + name; }

    /// A run on this computer that plays a script and records.
    test_support::ChildResult Run(std::vector<std::wstring> arguments,
                                  const std::string& script = "") const {
        test_support::WriteFile(File(L"script.jsonl"), script);
        arguments.insert(arguments.end(), {L"--script", File(L"script.jsonl"), L"--events",
                                           File(L"events.ndjson"), L"--log", File(L"log.txt")});
        test_support::ChildResult result = test_support::RunHost(arguments);
        EXPECT_EQ(result.exitCode, 0U);
        EXPECT_EQ(result.errors, "");
        return result;
    }

    /// What the last run recorded, as "id: value, value".
    std::vector<std::string> Events() const {
        std::vector<std::string> texts;
        for (const auto& [time, event] :
             records::ParseEventRecord(test_support::ReadFile(File(L"events.ndjson")), "events")) {
            std::string& text = texts.emplace_back(std::to_string(event.id));
            std::string separator = ": ";
            for (const records::SentField& field : event.fields) {
                text += separator + field.value;
                separator = ", ";
            }
        }
        return texts;
    }

    std::vector<std::string> LoggedLines() const {
        return test_support::LinesOf(test_support::ReadFile(File(L"log.txt")));
    }

    const test_support::TempFolder folder;
};

}  // namespace host_test
