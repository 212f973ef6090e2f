// Names a text so that a browser runs this one and no other.
#pragma once

#include <string>
#include <string_view>

namespace host {

/// "sha256-" and the SHA-256 in Base64, as a Content-Security-Policy has it. Throws HostError when
/// the system cannot compute it.
std::string SourceHash(std::string_view text);

}  // namespace host
