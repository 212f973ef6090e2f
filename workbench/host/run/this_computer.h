// The computer that the host runs on, real or a Wine prefix.
#pragma once

#include "host/run/surroundings.h"

namespace host {

/// The operating system answers for itself. Under Wine the prefix is prepared as a machine on which
/// the suite's optimisation component is installed; Windows is left as it is, except for what a
/// script changes.
class ThisComputer final : public Surroundings {
public:
    /// `theScreen` must outlive the object. Throws BadInput when the installation lacks the
    /// component.
    ThisComputer(KeptState wanted, Screen& theScreen);

    std::string Describe() const override;
    void Check(const Happening& happening) const override;
    void Prepare() override;
    void Enter(HMODULE /*plugin*/) override {}
    void Leave() override {}
    int DeviceListsSent() const override;
    void Perform(const SetSwitch& action) override;
    void Perform(const PlugDevice& /*action*/) override {}

private:
    void InstallComponent();

    const KeptState keptState;
    Screen& screen;
};

}  // namespace host
