// A machine out of a file.
#pragma once

#include <optional>
#include <string>

#include "host/run/surroundings.h"
#include "simulation/machine.h"
#include "simulation/memory_registry.h"
#include "simulation/simulated_machine.h"

namespace host {

/// While it lives, FileKit reads and writes these values instead of the real registry.
class SimulatedRegistry : public simulation::MemoryRegistry {
public:
    explicit SimulatedRegistry(const Suite& theSuite) : suite(theSuite) {
        suite.setRegistryInterceptor(&Answer, static_cast<simulation::MemoryRegistry*>(this));
    }
    ~SimulatedRegistry() { suite.setRegistryInterceptor(nullptr, nullptr); }

private:
    const Suite& suite;
};

/// The plug-in sees the described machine: its calls of the operating system are redirected, the
/// suite's libraries answer as the file says, and the registry is one of its own that ends with the
/// run. What changes during the run survives a restart of the plug-in.
class SimulatedSurroundings final : public Surroundings {
public:
    /// `file` is for messages. `theSuite` must outlive the object.
    SimulatedSurroundings(simulation::Machine described, std::string file, const Suite& theSuite);

    std::string Describe() const override;
    void Check(const Happening& happening) const override;
    void Prepare() override;
    void Enter(HMODULE plugin) override;
    void Leave() override;
    int DeviceListsSent() const override;
    void Perform(const SetSwitch& action) override;
    void Perform(const PlugDevice& action) override;

private:
    simulation::Machine machine;  ///< Moves into the simulation while that lasts.
    const std::string path;
    const Suite& suite;
    SimulatedRegistry registry;
    const std::wstring consoleUserSid;  ///< Empty when nobody is logged on.
    std::optional<simulation::SimulatedMachine> simulated;
};

}  // namespace host
