// A print spooler with random queues and answers.
#pragma once

#include <windows.h>

#include <cstddef>
#include <optional>
#include <ostream>
#include <string>
#include <vector>

#include "fuzz/random.h"

namespace fuzz_sources {

using Text = std::optional<std::wstring>;

/// Of a PRINTER_INFO_2W and of a DRIVER_INFO_6W, in bytes.
inline constexpr std::size_t kEntrySize = 136;

/// An absent text is a null pointer.
struct Queue {
    Text name;
    Text driver;
    Text dataType;
    Text port;
};

struct Driver {
    Text maker;
    Text hardwareId;
};

/// What the two calls of one query give.
struct Answer {
    DWORD firstError = ERROR_INSUFFICIENT_BUFFER;
    DWORD needed = 0;  ///< Of the first call.
    DWORD secondError = ERROR_SUCCESS;
    DWORD told = 0;      ///< The size that the second call tells.
    DWORD returned = 0;  ///< The number of entries that it tells.
};

/// What the spooler says about its queues, each of which has the same driver.
struct Spooler {
    std::vector<Queue> queues;
    Answer list;
    bool opens = true;
    Driver driver;
    Answer driverInfo;
};

void PrintTo(const Spooler& spooler, std::ostream* stream);

Spooler MakeSpooler(fuzz::Random& random);

/// Bytes of the entries and their texts.
std::size_t ListBytes(const std::vector<Queue>& queues);

/// Bytes of a text with its terminator; 0 for an absent one.
std::size_t TextBytes(const Text& text);

/// The list as the spooler writes it into a zeroed block of ListBytes.
void WriteQueues(const std::vector<Queue>& queues, BYTE* block);

/// While it lives, the program's calls see this spooler. One at a time.
class SpoolerInForce {
public:
    explicit SpoolerInForce(const Spooler& spooler);
    SpoolerInForce(const SpoolerInForce&) = delete;
    SpoolerInForce& operator=(const SpoolerInForce&) = delete;

    /// Printers that were opened and not closed.
    int OpenPrinters() const;
};

}  // namespace fuzz_sources
