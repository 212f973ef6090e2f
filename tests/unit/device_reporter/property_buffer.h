// The 4096 bytes that hold one device property.
#pragma once

#include <windows.h>

#include <cstring>
#include <new>
#include <string_view>

#include "device_reporter/device_properties.h"

namespace device_tests {

/// A property buffer that ends where the memory ends: whoever reads on is stopped by the processor.
class BoundedPropertyBuffer {
public:
    BoundedPropertyBuffer()
        : pages(static_cast<BYTE*>(VirtualAlloc(/*lpAddress=*/nullptr, 2 * kSize,
                                                MEM_RESERVE | MEM_COMMIT, PAGE_READWRITE))) {
        DWORD previous = 0;
        if (pages == nullptr || !VirtualProtect(pages + kSize, kSize, PAGE_NOACCESS, &previous)) {
            throw std::bad_alloc();
        }
    }
    ~BoundedPropertyBuffer() { VirtualFree(pages, /*dwSize=*/0, MEM_RELEASE); }
    BoundedPropertyBuffer(const BoundedPropertyBuffer&) = delete;
    BoundedPropertyBuffer& operator=(const BoundedPropertyBuffer&) = delete;

    DeviceReporter::PropertyBuffer& Get() {
        return *reinterpret_cast<DeviceReporter::PropertyBuffer*>(pages);
    }

    /// Puts the units at the beginning, NULs included; zeros follow.
    DeviceReporter::PropertyBuffer& With(std::wstring_view units) {
        std::memset(pages, 0, kSize);
        std::memcpy(pages, units.data(), units.size() * sizeof(wchar_t));
        return Get();
    }

    template <class Value>
    DeviceReporter::PropertyBuffer& WithBytesOf(const Value& value) {
        std::memset(pages, 0, kSize);
        std::memcpy(pages, &value, sizeof(value));
        return Get();
    }

private:
    static constexpr std::size_t kSize = 4096;
    static_assert(sizeof(DeviceReporter::PropertyBuffer) == kSize);

    BYTE* pages;
};

}  // namespace device_tests
