// What a test program contributes to the table of `./dev test reliability`.
//
// A program joins that command in two steps:
//  1. Its CTest entry, which is called like the program, has the label `reliability` besides its
//     own: `tallyport_add_test_program(NAME x_test LABEL library reliability ...)`.
//  2. It makes a ReliabilityRecord before it tries anything and writes it at its end.
//
// The record of BUILD/bin/x_test.exe is BUILD/reliability/x_test.json:
//
//     {"rows": [{"what": "rounds of load, Start, Stop, unload", "tried": 1000, "wrong": 0}]}
//
// A program without a record at the end of the command, because it crashed or hung, counts as one
// bad end. A fuzz program is run by the command in the checked build when it has both labels.
#pragma once

#include <cstdint>
#include <filesystem>
#include <string>
#include <vector>

namespace test_support {

/// Whether this run tries the full numbers, as `./dev test reliability` does by setting
/// TALLYPORT_FULL_COUNTS; without it a part of them shows that the programs work.
bool FullCounts();

/// Used from one thread.
class ReliabilityRecord {
public:
    /// Removes what an earlier run of this program left, so that it is not taken for this run's.
    ReliabilityRecord();

    /// One row of the table. `what` names in the plural what was tried, `tried` says how many,
    /// `wrong` how many of them ended badly. Rows that are called the same, in other programs too,
    /// are added up in the table.
    void Add(const std::string& what, std::uint64_t tried, std::uint64_t wrong);

    /// Writes the file with all rows so far. Throws std::runtime_error when it cannot be written.
    void Write() const;

private:
    struct Row {
        std::string what;
        std::uint64_t tried;
        std::uint64_t wrong;
    };

    std::filesystem::path file;
    std::vector<Row> rows;
};

}  // namespace test_support
