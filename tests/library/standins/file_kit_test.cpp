#include <windows.h>
#include <gtest/gtest.h>

#include "standins/file_kit/file_kit_control.h"

namespace {

using QD::Registry;

constexpr wchar_t kTestKey[] = L"Software\\TallyportStandinsTest";
constexpr std::uint32_t kAllAccess = 0xF003F;

class FileKit : public testing::Test {
protected:
    void SetUp() override { RegDeleteTreeW(HKEY_CURRENT_USER, kTestKey); }
    void TearDown() override { RegDeleteTreeW(HKEY_CURRENT_USER, kTestKey); }

    static void Store(const wchar_t* valueName, DWORD type, const void* data, DWORD size) {
        ASSERT_EQ(RegSetKeyValueW(HKEY_CURRENT_USER, kTestKey, valueName, type, data, size),
                  ERROR_SUCCESS);
    }
};

/// Reads into an integer that must stay as it is; returns the error.
template <class Integer>
DWORD ErrorOfReading(const wchar_t* name, std::uint32_t access = kAllAccess) {
    Integer value = -1;
    SetLastError(ERROR_SUCCESS);
    EXPECT_FALSE(Registry::GetValue(HKEY_CURRENT_USER, kTestKey, name, value, access));
    EXPECT_EQ(value, -1);
    return GetLastError();
}

TEST_F(FileKit, RefusesAValueOfAnotherType) {
    const wchar_t text[] = L"seven and some more";
    const std::int64_t number = 7;
    Store(L"Text", REG_SZ, text, sizeof(text));
    Store(L"Binary", REG_BINARY, &number, 4);
    Store(L"Qword", REG_QWORD, &number, 8);
    Store(L"Dword", REG_DWORD, &number, 4);
    Store(L"ShortDword", REG_DWORD, &number, 2);
    for (const wchar_t* name : {L"Text", L"Binary", L"Qword", L"ShortDword"}) {
        EXPECT_EQ(ErrorOfReading<std::int32_t>(name), DWORD{ERROR_INVALID_DATATYPE}) << name;
    }
    for (const wchar_t* name : {L"Text", L"Binary", L"Dword"}) {
        EXPECT_EQ(ErrorOfReading<std::int64_t>(name), DWORD{ERROR_INVALID_DATATYPE}) << name;
    }
    EXPECT_EQ(ErrorOfReading<std::int64_t>(L"Missing"), DWORD{ERROR_FILE_NOT_FOUND});
}

TEST_F(FileKit, OpensTheKeyWithTheAccessMaskThatItIsGiven) {
    const std::int32_t written = 1;
    EXPECT_FALSE(Registry::SetValue(HKEY_CURRENT_USER, kTestKey, L"Count", written, KEY_READ));
    EXPECT_EQ(GetLastError(), DWORD{ERROR_ACCESS_DENIED});
    ASSERT_TRUE(Registry::SetValue(HKEY_CURRENT_USER, kTestKey, L"Count", written, kAllAccess));
    EXPECT_EQ(ErrorOfReading<std::int32_t>(L"Count", KEY_SET_VALUE), DWORD{ERROR_ACCESS_DENIED});
}

TEST_F(FileKit, LeavesNoKeyOpen) {
    const auto useEveryCall = [&] {
        const std::int32_t written = 1;
        std::int32_t read = 0;
        Registry registry;
        registry.SetRootKey(HKEY_CURRENT_USER);
        registry.KeyExists(kTestKey);
        Registry::SetValue(HKEY_CURRENT_USER, kTestKey, L"Count", written, kAllAccess);
        Registry::GetValue(HKEY_CURRENT_USER, kTestKey, L"Count", read, kAllAccess);
        Registry::GetValue(HKEY_CURRENT_USER, kTestKey, L"Missing", read, kAllAccess);
    };
    // Handles are given out lowest first, so that leaked ones drive the next one up.
    const auto nextHandle = [] {
        const HANDLE event = CreateEventW(nullptr, FALSE, FALSE, nullptr);
        CloseHandle(event);
        return reinterpret_cast<std::uintptr_t>(event);
    };
    useEveryCall();
    const std::uintptr_t before = nextHandle();
    for (int i = 0; i < 200; ++i) {
        useEveryCall();
    }
    EXPECT_LT(nextHandle(), before + 200);
}

}  // namespace
