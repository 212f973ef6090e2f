#include "platform/board_info.h"

#include <windows.h>

#include <vector>

#include "common/text.h"
#include "standins/board_info/board_info_control.h"
#include "standins/board_info/smbios_table.h"
#include "standins/common/callback_slot.h"
#include "standins/common/state_lock.h"

namespace {

using standins::ExclusiveLock;

constexpr DWORD kSmBiosProvider = 0x52534D42;  // 'RSMB'

struct Texts {
    std::wstring boardProduct;
    std::wstring oemProduct;
    std::wstring biosVersion;
};

struct State {
    SRWLOCK lock = SRWLOCK_INIT;
    bool available = true;
    bool useFirmware = true;
    Texts texts;
    standins::CallbackSlot<BoardInfoObserver> observer;
};

State state;

/// Empty when the firmware has no table.
std::vector<std::uint8_t> FirmwareTable() {
    std::vector<std::uint8_t> table(GetSystemFirmwareTable(kSmBiosProvider, 0, nullptr, 0));
    const UINT size =
        GetSystemFirmwareTable(kSmBiosProvider, 0, table.data(), static_cast<DWORD>(table.size()));
    if (size > table.size()) {
        return {};
    }
    table.resize(size);
    return table;
}

Texts FirmwareTexts() {
    const std::vector<std::uint8_t> table = FirmwareTable();
    const standins::SmBiosTexts texts = standins::ParseSmBios(table.data(), table.size());
    return {workbench::ToWide(texts.boardProduct), workbench::ToWide(texts.oemProduct),
            workbench::ToWide(texts.biosVersion)};
}

Texts CurrentTexts() {
    const ExclusiveLock exclusive(state.lock);
    return state.useFirmware ? FirmwareTexts() : state.texts;
}

bool IsAvailable() {
    const ExclusiveLock exclusive(state.lock);
    return state.available && (!state.useFirmware || !FirmwareTable().empty());
}

}  // namespace

SmBiosHelper* SmBiosHelper::GetInstance() {
    static SmBiosHelper instance;
    state.observer.Call("GetInstance");
    return IsAvailable() ? &instance : nullptr;
}

std::wstring SmBiosHelper::GetBoardProductName() {
    state.observer.Call("GetBoardProductName");
    return CurrentTexts().boardProduct;
}

std::wstring SmBiosHelper::GetOemProductName() {
    state.observer.Call("GetOemProductName");
    return CurrentTexts().oemProduct;
}

std::wstring SmBiosHelper::GetBIOSSysVersion() {
    state.observer.Call("GetBIOSSysVersion");
    return CurrentTexts().biosVersion;
}

void BoardInfo_SetAvailable(int available) {
    const ExclusiveLock exclusive(state.lock);
    state.available = available != 0;
}

void BoardInfo_SetTexts(const wchar_t* boardProduct, const wchar_t* oemProduct,
                        const wchar_t* biosVersion) {
    const ExclusiveLock exclusive(state.lock);
    state.useFirmware = false;
    state.texts = {boardProduct, oemProduct, biosVersion};
}

void BoardInfo_SetObserver(BoardInfoObserver observer, void* context) {
    state.observer.Set(observer, context);
}

void BoardInfo_Reset() {
    BoardInfo_SetObserver(nullptr, nullptr);
    const ExclusiveLock exclusive(state.lock);
    state.available = true;
    state.useFirmware = true;
}
