#include <memory>

#include "device_inventory/device_inventory.h"
#include "host/files.h"
#include "host/run/host_run.h"
#include "host/run/run_observer.h"
#include "host/run/surroundings.h"
#include "host/views/inventory_view.h"

namespace host {
namespace {

void Add(void* context, device_inventory::List list, unsigned obstacles,
         const DeviceReporter::DeviceInfo& record) {
    (*static_cast<Inventory*>(context))[list].push_back({record, obstacles});
}

/// Lets the plug-in's code read devices, printers and displays.
Inventory ReadInventory(const SuiteLibrary& library) {
    const SuiteFunction<decltype(DeviceInventory_Read)> read(library, "DeviceInventory_Read");
    Inventory inventory;
    if (const char* const failure = read(&Add, &inventory)) {
        throw RunFailed(
            "the plug-in's code ended with an exception, which would end the suite's "
            "process: " +
            std::string(failure) + "; a monitor's EDID of less than ten bytes does that");
    }
    return inventory;
}

}  // namespace

void ListDevices(const Options& options) {
    const RunClock notStarted;
    Screen screen(notStarted, options.quiet);
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
