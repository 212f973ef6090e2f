// What comes upon the plug-in from several threads at once (messages, firmware events, devices),
// and a watch over the callbacks that its timer runs meanwhile.
#pragma once

#include <windows.h>

#include <atomic>
#include <chrono>
#include <cstdint>
#include <thread>
#include <vector>

#include "fuzz/random.h"
#include "reliability/visitors.h"
#include "simulation/device_happenings.h"
#include "simulation/import_redirection.h"
#include "standins/wmi_kit/wmi_kit_control.h"
#include "support/comes_true.h"

namespace reliability_test {

/// Asks the monitor for a device list.
inline constexpr UINT kReportDevices = WM_USER + 1001;

/// How far the host is in a life of the plug-in.
enum class Phase { BeforeStart, Starting, Running, Stopping, Stopped };

/// What was done to the plug-in, and how often that had another effect than it has to.
struct StressCounts {
    std::atomic<unsigned> posts{0};      ///< That reached the monitor's queue.
    std::atomic<unsigned> ecEvents{0};   ///< Of the EC log, delivered.
    std::atomic<unsigned> untimely{0};   ///< Firmware events before Start or after Stop.
    std::atomic<unsigned> arrivals{0};   ///< Dealt with.
    std::atomic<unsigned> misheard{0};   ///< Firmware events delivered or not as they must not be.
    std::atomic<unsigned> neglected{0};  ///< Arrivals without an answer while the monitor listens.
};

/// Its threads go on from its making to Join, whatever the host does meanwhile.
class StressThreads {
public:
    StressThreads(simulation::World& worldOfLife, std::uint64_t seed) : world(worldOfLife) {
        for (int i = 0; i < kPosters; ++i) {
            threads.emplace_back([this] { Repeat([this] { Post(); }); });
        }
        for (unsigned i = 0; i < kFirers; ++i) {
            threads.emplace_back([this, random = fuzz::Random(seed, i)]() mutable {
                Repeat([&] { Fire(random); });
            });
        }
        // One only: the simulated system tells about one device at a time.
        threads.emplace_back([this] { Repeat([this] { PlugIn(); }); });
    }
    ~StressThreads() { Join(); }
    StressThreads(const StressThreads&) = delete;
    StressThreads& operator=(const StressThreads&) = delete;

    /// By the host's thread: Starting and Stopping before its call, the next one after it.
    void Enter(Phase next) { phase = next; }

    /// Until firmware events were fired once more while nobody may hear them.
    void AwaitUntimely() const {
        for (const unsigned before = counts.untimely; counts.untimely < before + kFirers;) {
            Sleep(1);
        }
    }

    void Join() {
        over = true;
        for (std::thread& thread : threads) {
            thread.join();
        }
        threads.clear();
    }

    StressCounts counts;

private:
    static constexpr int kPosters = 3;
    static constexpr unsigned kFirers = 2;
    static constexpr unsigned kEcLogCode = 675;

    template <class Step>
    void Repeat(Step step) {
        while (!over) {
            step();
        }
    }

    /// Not faster than the monitor can follow: Stop's message waits behind all that came before.
    void Post() {
        if (const HWND window = simulation::FindMonitorWindow()) {
            for (int i = 0; i < 4; ++i) {
                counts.posts += PostMessageW(window, kReportDevices, 0, 0) ? 1 : 0;
            }
        }
        Sleep(1);
    }

    void Fire(fuzz::Random& random) {
        const bool isEcLog = !random.OneIn(4);
        const unsigned code = isEcLog ? kEcLogCode : kEcLogCode + unsigned(random.Between(1, 9));
        const Phase before = phase;
        const bool heard = WmiKit_FireFirmwareEvent(code) == 1;
        const Phase after = phase;
        const bool mustBeHeard = before == Phase::Running && after == Phase::Running;
        const bool mustNotBeHeard = after == Phase::BeforeStart || before == Phase::Stopped;
        counts.misheard += (mustBeHeard && !heard) || (mustNotBeHeard && heard) ? 1 : 0;
        counts.ecEvents += isEcLog && heard ? 1 : 0;
        counts.untimely += mustNotBeHeard ? 1 : 0;
        Sleep(random.OneIn(4) ? 1 : 0);
    }

    void PlugIn() {
        const unsigned visitor = nextVisitor++ % kVisitors;
        world.Unplug(VisitorId(visitor));
        const bool monitorListens = phase == Phase::Running;
        const simulation::Delivery delivery =
            simulation::PlugDevice(world, Visitor(visitor), test_support::kPatience);
        const bool delivered = delivery == simulation::Delivery::Delivered;
        counts.arrivals += delivered ? 1 : 0;
        counts.neglected += delivery == simulation::Delivery::TimedOut ||
                                    (monitorListens && phase == Phase::Running && !delivered)
                                ? 1
                                : 0;
        Sleep(1);
    }

    simulation::World& world;
    std::atomic<Phase> phase{Phase::BeforeStart};
    std::atomic<bool> over{false};
    unsigned nextVisitor = 0;
    std::vector<std::thread> threads;
};

/// The timer's callbacks as far as they can be watched: their posts and their events.
class CallbackWatch {
public:
    explicit CallbackWatch(HMODULE module) : redirection(module) {
        overlaps = 0;
        realPostMessage =
            redirection.Redirect<decltype(::PostMessageW)>("PostMessageW", &WatchedPostMessage);
    }

    /// Stays for a while where a callback is, so that another one would meet it.
    static void Visit() {
        overlaps += inside++ == 0 ? 0 : 1;
        Sleep(1);
        --inside;
    }
    static unsigned Overlaps() { return overlaps; }

private:
    static BOOL WINAPI WatchedPostMessage(HWND window, UINT message, WPARAM wParam, LPARAM lParam) {
        if (message == kReportDevices) {
            Visit();
        }
        return realPostMessage(window, message, wParam, lParam);
    }

    static inline decltype(::PostMessageW)* realPostMessage = nullptr;
    static inline std::atomic<unsigned> inside{0};
    static inline std::atomic<unsigned> overlaps{0};
    simulation::ImportRedirection redirection;
};

}  // namespace reliability_test
