// Which surroundings the options ask for.
#pragma once

#include <memory>

#include "host/options.h"
#include "host/screen.h"
#include "host/suite.h"
#include "host/surroundings.h"

namespace host {

/// The machine of the file that --machine names, else this computer. `suite` and `screen` must
/// outlive the result. Throws HostError.
std::unique_ptr<Surroundings> MakeSurroundings(const Options& options, const Suite& suite,
                                               Screen& screen);

}  // namespace host
