#include "fuzz/sources/spooler.h"

#include <gtest/gtest.h>

#include "fuzz/texts.h"

namespace fuzz_sources {
namespace {

std::string Shown(const Answer& answer) {
    return "error " + std::to_string(answer.firstError) + ", needed " +
           std::to_string(answer.needed) + ", then error " + std::to_string(answer.secondError) +
           ", needed " + std::to_string(answer.told) + ", returned " +
           std::to_string(answer.returned);
}

/// Without NULs: a text in a block ends at its first.
Text MakePointedText(fuzz::Random& random, std::size_t nullOneIn) {
    if (random.OneIn(nullOneIn)) {
        return std::nullopt;
    }
    const std::wstring text = fuzz::MakeText(random, 40);
    return text.substr(0, text.find(L'\0'));
}

DWORD MakeError(fuzz::Random& random, DWORD usual) {
    constexpr DWORD kErrors[] = {ERROR_SUCCESS, ERROR_ACCESS_DENIED, ERROR_INVALID_HANDLE,
                                 ERROR_INSUFFICIENT_BUFFER, 1722};
    return random.OneIn(16) ? random.Pick(kErrors) : usual;
}

/// `size` is what the data takes. The spooler tells no size beyond that of the block it got.
Answer MakeAnswer(fuzz::Random& random, std::size_t size, std::size_t entries) {
    Answer answer;
    answer.firstError = MakeError(random, ERROR_INSUFFICIENT_BUFFER);
    answer.needed = static_cast<DWORD>(random.OneIn(32) ? 0 : size);
    answer.secondError = MakeError(random, ERROR_SUCCESS);
    answer.told =
        random.OneIn(8) ? static_cast<DWORD>(random.Below(answer.needed + 1u)) : answer.needed;
    answer.returned = static_cast<DWORD>(entries);
    if (random.OneIn(8)) {
        // Fewer than there are, or more than fit. One that fits and is not there is garbage that
        // nobody can tell from an entry.
        const std::size_t tooMany = size / kEntrySize + 1;
        const std::size_t kCounts[] = {random.Below(entries + 1), tooMany, 0x1E1E1E2, 0xFFFFFFFF};
        answer.returned = static_cast<DWORD>(random.Pick(kCounts));
    }
    return answer;
}

}  // namespace

void PrintTo(const Spooler& spooler, std::ostream* stream) {
    *stream << "list: " << Shown(spooler.list) << "; queues "
            << (spooler.opens ? "open" : "do not open");
    *stream << "; driver: " << Shown(spooler.driverInfo) << ", maker "
            << testing::PrintToString(spooler.driver.maker) << ", hardware id "
            << testing::PrintToString(spooler.driver.hardwareId);
    for (const Queue& queue : spooler.queues) {
        *stream << "\n    queue " << testing::PrintToString(queue.name) << ", driver "
                << testing::PrintToString(queue.driver) << ", data type "
                << testing::PrintToString(queue.dataType) << ", port "
                << testing::PrintToString(queue.port);
    }
}

std::size_t TextBytes(const Text& text) { return text ? (text->size() + 1) * sizeof(wchar_t) : 0; }

std::size_t ListBytes(const std::vector<Queue>& queues) {
    std::size_t bytes = queues.size() * kEntrySize;
    for (const Queue& queue : queues) {
        bytes += TextBytes(queue.name) + TextBytes(queue.driver) + TextBytes(queue.dataType) +
                 TextBytes(queue.port);
    }
    return bytes;
}

Spooler MakeSpooler(fuzz::Random& random) {
    Spooler spooler;
    spooler.queues.resize(random.Below(4));
    for (Queue& queue : spooler.queues) {
        queue = {MakePointedText(random, 8), MakePointedText(random, 8), MakePointedText(random, 4),
                 MakePointedText(random, 4)};
        if (queue.dataType && random.OneIn(8)) {
            queue.port = queue.dataType->substr(random.Below(queue.dataType->size() + 1));
        }
    }
    spooler.list = MakeAnswer(random, ListBytes(spooler.queues), spooler.queues.size());
    spooler.opens = !random.OneIn(8);
    spooler.driver = {MakePointedText(random, 4), MakePointedText(random, 4)};
    spooler.driverInfo = MakeAnswer(
        random, kEntrySize + TextBytes(spooler.driver.maker) + TextBytes(spooler.driver.hardwareId),
        1);
    return spooler;
}

}  // namespace fuzz_sources
