// Untruths that the simulated system tells about sizes, counts and the ends of texts.
#pragma once

#include <windows.h>

#include <map>
#include <optional>
#include <string>

namespace simulation {

/// What the spooler tells in one query. An absent number is the truth. It writes what fits into the
/// block and no more, whatever it tells.
struct SpoolerLies {
    std::optional<DWORD> needed;    ///< The size that it asks for.
    std::optional<DWORD> told;      ///< The size that it tells with its data.
    std::optional<DWORD> returned;  ///< The number of entries that it tells with them.
};

struct Lies {
    /// Instance ids, HID texts and the names of displays are written as far as there is room, and
    /// without terminator.
    bool unterminatedTexts = false;
    /// By interface path: the size of the detail that is asked for. As much is written as fits.
    std::map<std::wstring, DWORD> detailSizes;
    SpoolerLies printers;
    SpoolerLies printerDrivers;
    bool spoolerTextsOutside = false;  ///< The pointers lead to texts outside of the block.
};

}  // namespace simulation
