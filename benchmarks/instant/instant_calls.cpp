#include "instant/instant_calls.h"

namespace benchmarks {

void Put(simulation::ImportRedirection& redirection, const char* name, void* replacement) {
    if (redirection.Imports(name)) {
        redirection.Redirect(name, replacement);
    }
}

}  // namespace benchmarks
