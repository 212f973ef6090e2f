#include "host/device_listing.h"

#include <memory>

#include "host/files.h"
#include "host/inventory.h"
#include "host/inventory_view.h"
#include "host/run_clock.h"
#include "host/run_observer.h"
#include "host/screen.h"
#include "host/suite.h"
#include "host/surroundings_choice.h"

namespace host {

void ListDevices(const Options& options) {
    const RunClock notStarted;
    Screen screen(notStarted,
                  options.quiet ? Screen::Detail::SummaryOnly : Screen::Detail::Everything);
    const Suite suite(OwnFolder());
    const SuiteLibrary library(OwnFolder(), L"DeviceInventory.dll");
    const std::unique_ptr<Surroundings> surroundings = MakeSurroundings(options, suite, screen);
    const RunObserver observer(suite, notStarted, screen, /*foldsRepeats=*/false);

    screen.Text({"Device inventory of " + surroundings->Describe()});
    surroundings->Enter(library.Module());
    const Inventory inventory = ReadInventory(library);
    surroundings->Leave();
    screen.Text({""});
    screen.Text(DescribeInventory(inventory));
}

}  // namespace host
