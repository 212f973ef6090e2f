// What happened, in order, across threads and libraries.
#pragma once

#include <windows.h>

#include <chrono>
#include <condition_variable>
#include <functional>
#include <mutex>
#include <string>
#include <string_view>
#include <vector>

namespace test_support {

struct Happening {
    std::string text;
    DWORD threadId;
    std::chrono::system_clock::time_point time;
};

/// A list of happenings that any thread appends to.
class Timeline {
public:
    void Note(std::string text);

    std::vector<Happening> Happenings() const;
    /// The texts only, for comparing with what is expected.
    std::vector<std::string> Texts() const;
    /// The texts that begin with `prefix`.
    std::vector<std::string> TextsWith(std::string_view prefix) const;
    std::size_t Count(std::string_view text) const;
    void Clear();

    /// Waits until `text` was noted `count` times. False when `limit` passed before.
    bool WaitFor(std::string_view text, std::size_t count, std::chrono::nanoseconds limit) const;

private:
    std::size_t CountLocked(std::string_view text) const;

    mutable std::mutex mutex;
    mutable std::condition_variable added;
    std::vector<Happening> happenings;
};

}  // namespace test_support
