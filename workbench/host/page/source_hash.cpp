#include "host/page/source_hash.h"

#include <windows.h>

#include <bcrypt.h>
#include <wincrypt.h>

#include "host/host_error.h"
#include "util/scoped_handle.h"

namespace host {
namespace {

struct AlgorithmTraits {
    using Type = BCRYPT_ALG_HANDLE;
    static Type Invalid() noexcept { return nullptr; }
    static void Close(Type handle) noexcept { BCryptCloseAlgorithmProvider(handle, 0); }
};

HostError NotComputed(const char* function) {
    return HostError(ExitCode::RunFailed,
                     std::string("the page cannot be sealed: ") + function +
                         " failed; record the run with --events and make the page on another "
                         "computer: --from FILE");
}

}  // namespace

std::string SourceHash(std::string_view text) {
    BCRYPT_ALG_HANDLE opened = nullptr;
    if (BCryptOpenAlgorithmProvider(&opened, BCRYPT_SHA256_ALGORITHM, nullptr, 0) < 0) {
        throw NotComputed("BCryptOpenAlgorithmProvider");
    }
    const ScopedHandle<AlgorithmTraits> algorithm(opened);
    UCHAR digest[32] = {};
    // The function does not write to its input.
    auto* const input = reinterpret_cast<UCHAR*>(const_cast<char*>(text.data()));
    if (BCryptHash(algorithm.Get(), nullptr, 0, input, static_cast<ULONG>(text.size()), digest,
                   sizeof(digest)) < 0) {
        throw NotComputed("BCryptHash");
    }
    char base64[64] = "";
    DWORD size = sizeof(base64);
    if (!CryptBinaryToStringA(digest, sizeof(digest), CRYPT_STRING_BASE64 | CRYPT_STRING_NOCRLF,
                              base64, &size)) {
        throw NotComputed("CryptBinaryToString");
    }
    return std::string("sha256-") + base64;
}

}  // namespace host
