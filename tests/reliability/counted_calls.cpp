#include "reliability/counted_calls.h"

#include <array>
#include <atomic>
#include <cstring>
#include <stdexcept>
#include <vector>

#include "simulation/import_redirection.h"

namespace reliability_test {
namespace {

constexpr std::size_t kStride = 32;
std::atomic<std::uint64_t> calls{0};

/// Counts and goes on to `original`, with a register and flags that no call hands over:
///     mov r11, &calls; lock inc qword [r11]; mov r11, original; jmp r11
std::array<BYTE, 27> Gate(const void* original) {
    std::array<BYTE, 27> code = {0x49, 0xBB, 0, 0, 0, 0, 0, 0, 0, 0, 0xF0, 0x49, 0xFF, 0x03,
                                 0x49, 0xBB, 0, 0, 0, 0, 0, 0, 0, 0, 0x41, 0xFF, 0xE3};
    const void* const counter = &calls;
    std::memcpy(&code[2], &counter, sizeof(counter));
    std::memcpy(&code[16], &original, sizeof(original));
    return code;
}

}  // namespace

void CountCalls(HMODULE module) {
    // Lives as long as the process, like the module.
    static auto* const gates = new simulation::ImportRedirection(module);
    const std::vector<simulation::Import> imports = simulation::ImportsOf(module);
    auto* gate = static_cast<BYTE*>(VirtualAlloc(nullptr, imports.size() * kStride,
                                                 MEM_COMMIT | MEM_RESERVE, PAGE_EXECUTE_READWRITE));
    if (gate == nullptr) {
        throw std::runtime_error("no memory for the gates");
    }
    for (const simulation::Import& import : imports) {
        // The module does nothing yet.
        const auto code = Gate(gates->Redirect(import.name, gate));
        std::memcpy(gate, code.data(), code.size());
        gate += kStride;
    }
}

std::uint64_t CallsSoFar() { return calls; }

}  // namespace reliability_test
