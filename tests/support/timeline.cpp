#include "support/timeline.h"

#include <algorithm>
#include <utility>

namespace test_support {

void Timeline::Note(std::string text) {
    const std::lock_guard<std::mutex> lock(mutex);
    happenings.push_back({std::move(text), GetCurrentThreadId(), std::chrono::system_clock::now()});
    added.notify_all();
}

std::vector<Happening> Timeline::Happenings() const {
    const std::lock_guard<std::mutex> lock(mutex);
    return happenings;
}

std::vector<std::string> Timeline::Texts() const { return TextsWith({}); }

std::vector<std::string> Timeline::TextsWith(std::string_view prefix) const {
    const std::lock_guard<std::mutex> lock(mutex);
    std::vector<std::string> texts;
    for (const Happening& happening : happenings) {
        if (happening.text.compare(0, prefix.size(), prefix) == 0) {
            texts.push_back(happening.text);
        }
    }
    return texts;
}

std::size_t Timeline::Count(std::string_view text) const {
    const std::lock_guard<std::mutex> lock(mutex);
    return CountLocked(text);
}

void Timeline::Clear() {
    const std::lock_guard<std::mutex> lock(mutex);
    happenings.clear();
}

bool Timeline::WaitFor(std::string_view text, std::size_t count,
                       std::chrono::nanoseconds limit) const {
    std::unique_lock<std::mutex> lock(mutex);
    return added.wait_for(lock, limit, [&] { return CountLocked(text) >= count; });
}

std::size_t Timeline::CountLocked(std::string_view text) const {
    return static_cast<std::size_t>(
        std::count_if(happenings.begin(), happenings.end(),
                      [&](const Happening& happening) { return happening.text == text; }));
}

}  // namespace test_support
