// The pieces of the runtime that the plug-in stands on, each used once and for nothing: threads and
// what they wait on, narrow and wide streams, JSON. What a library of this toolchain weighs before
// it has code of its own.
#include <atomic>
#include <chrono>
#include <condition_variable>
#include <functional>
#include <iomanip>
#include <locale>
#include <map>
#include <memory>
#include <mutex>
#include <nlohmann/json.hpp>
#include <sstream>
#include <string>
#include <thread>

namespace {

std::mutex mutex;
std::condition_variable condition;
std::atomic<bool> done{false};

void WaitOnce() {
    std::unique_lock<std::mutex> lock(mutex);
    condition.wait_until(lock, std::chrono::system_clock::now() + std::chrono::hours(1),
                         [] { return done.load(); });
}

}  // namespace

extern "C" __declspec(dllexport) int UseEachPieceOnce(int number) {
    std::thread thread(WaitOnce);
    done = true;
    condition.notify_all();
    thread.join();

    std::wstringstream wide;
    wide.imbue(std::locale::classic());
    wide << L"number " << number << " (text)";
    std::ostringstream narrow;
    narrow.imbue(std::locale::classic());
    narrow << std::hex << std::setfill('0') << std::setw(2) << number;

    const std::map<std::wstring, int> map = {{wide.str(), number}};
    const std::function<int()> size = [&map] { return static_cast<int>(map.size()); };
    nlohmann::json object;
    object["number"] = narrow.str();
    return static_cast<int>(object.dump().size()) + size();
}
