// Texts that device records are made of.
#pragma once

#include <windows.h>

#include <cstddef>
#include <string>

namespace DeviceReporter {

/// Merges two texts, one per line. What `existing` already contains anywhere, be it as part of a
/// line, is not added again.
std::wstring AppendUnique(std::wstring existing, const std::wstring& added);

/// The `length` characters that begin at the first `marker`; empty when there is no marker or when
/// nothing follows the piece.
std::wstring CutPiece(const std::wstring& text, const wchar_t* marker, std::size_t length);

/// The vendor and product piece of an upper-cased device instance id; empty when it has none.
std::wstring GetVendorId(const std::wstring& instanceId);

/// The GUID with upper-case digits and braces. Empty, with a log line, when formatting fails.
std::wstring GuidToString(const GUID& guid);

}  // namespace DeviceReporter
