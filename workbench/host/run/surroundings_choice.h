// Which surroundings the options ask for.
#pragma once

#include <memory>

#include "host/options/options.h"
#include "host/run/suite.h"
#include "host/run/surroundings.h"
#include "host/views/screen.h"

namespace host {

/// The machine of the file that --machine names, else this computer. `suite` and `screen` must
/// outlive the result. Throws BadInput.
std::unique_ptr<Surroundings> MakeSurroundings(const Options& options, const Suite& suite,
                                               Screen& screen);

}  // namespace host
