#include <gtest/gtest.h>
#include <windows.h>

// After windows.h, which it needs.
#include <sddl.h>

#include <string>
#include <vector>

#include "standins/file_kit/file_kit_control.h"

namespace {

using QD::Registry;

constexpr wchar_t kTestKey[] = L"Software\\TallyportStandinsTest";
constexpr std::uint32_t kAllAccess = 0xF003F;
constexpr DWORD kPoison = 0xBAADF00D;

/// Empty when the process's token cannot be read.
std::wstring CurrentUserSid() {
    HANDLE token = nullptr;
    if (!OpenProcessToken(GetCurrentProcess(), TOKEN_QUERY, &token)) {
        return {};
    }
    std::vector<BYTE> buffer(256);
    DWORD size = 0;
    wchar_t* text = nullptr;
    std::wstring sid;
    if (GetTokenInformation(token, TokenUser, buffer.data(), static_cast<DWORD>(buffer.size()),
                            &size) &&
        ConvertSidToStringSidW(reinterpret_cast<TOKEN_USER*>(buffer.data())->User.Sid, &text)) {
        sid = text;
        LocalFree(text);
    }
    CloseHandle(token);
    return sid;
}

class FileKit : public testing::Test {
protected:
    void SetUp() override {
        FileKit_Reset();
        RegDeleteTreeW(HKEY_CURRENT_USER, kTestKey);
        SetLastError(kPoison);
    }
    void TearDown() override {
        FileKit_Reset();
        RegDeleteTreeW(HKEY_CURRENT_USER, kTestKey);
    }

    static void Store(const wchar_t* valueName, DWORD type, const void* data, DWORD size) {
        ASSERT_EQ(RegSetKeyValueW(HKEY_CURRENT_USER, kTestKey, valueName, type, data, size),
                  ERROR_SUCCESS);
        SetLastError(kPoison);
    }
};

TEST_F(FileKit, StoresA32BitIntegerAsDwordAndCreatesTheKey) {
    const std::int32_t written = -7;
    ASSERT_TRUE(Registry::SetValue(HKEY_CURRENT_USER, kTestKey, L"Count", written, kAllAccess));

    DWORD type = 0;
    std::int32_t stored = 0;
    DWORD size = sizeof(stored);
    ASSERT_EQ(
        RegGetValueW(HKEY_CURRENT_USER, kTestKey, L"Count", RRF_RT_ANY, &type, &stored, &size),
        ERROR_SUCCESS);
    EXPECT_EQ(type, static_cast<DWORD>(REG_DWORD));
    EXPECT_EQ(size, sizeof(stored));
    EXPECT_EQ(stored, -7);

    std::int32_t read = 0;
    EXPECT_TRUE(Registry::GetValue(HKEY_CURRENT_USER, kTestKey, L"Count", read, kAllAccess));
    EXPECT_EQ(read, -7);
}

TEST_F(FileKit, StoresA64BitIntegerAsQword) {
    const std::int64_t written = 0x1122334455667788;
    ASSERT_TRUE(Registry::SetValue(HKEY_CURRENT_USER, kTestKey, L"Time", written, kAllAccess));

    DWORD type = 0;
    std::int64_t stored = 0;
    DWORD size = sizeof(stored);
    ASSERT_EQ(RegGetValueW(HKEY_CURRENT_USER, kTestKey, L"Time", RRF_RT_ANY, &type, &stored, &size),
              ERROR_SUCCESS);
    EXPECT_EQ(type, static_cast<DWORD>(REG_QWORD));
    EXPECT_EQ(stored, 0x1122334455667788);

    std::int64_t read = 0;
    EXPECT_TRUE(Registry::GetValue(HKEY_CURRENT_USER, kTestKey, L"Time", read, kAllAccess));
    EXPECT_EQ(read, 0x1122334455667788);
}

TEST_F(FileKit, OverwritesAValueAndLeavesItsNeighboursAlone) {
    const std::int32_t first = 1;
    const std::int32_t second = 2;
    Registry::SetValue(HKEY_CURRENT_USER, kTestKey, L"Count", first, kAllAccess);
    Registry::SetValue(HKEY_CURRENT_USER, kTestKey, L"Neighbour", first, kAllAccess);
    Registry::SetValue(HKEY_CURRENT_USER, kTestKey, L"Count", second, kAllAccess);

    std::int32_t read = 0;
    EXPECT_TRUE(Registry::GetValue(HKEY_CURRENT_USER, kTestKey, L"Count", read, kAllAccess));
    EXPECT_EQ(read, 2);
    EXPECT_TRUE(Registry::GetValue(HKEY_CURRENT_USER, kTestKey, L"Neighbour", read, kAllAccess));
    EXPECT_EQ(read, 1);
}

TEST_F(FileKit, ReportsAMissingKeyAndLeavesTheOutputAlone) {
    std::int32_t value = -1;
    EXPECT_FALSE(Registry::GetValue(HKEY_CURRENT_USER, kTestKey, L"Count", value, kAllAccess));
    EXPECT_EQ(GetLastError(), static_cast<DWORD>(ERROR_FILE_NOT_FOUND));
    EXPECT_EQ(value, -1);
}

TEST_F(FileKit, ReportsAMissingValueAndLeavesTheOutputAlone) {
    Store(L"Other", REG_NONE, nullptr, 0);
    std::int64_t value = -1;
    EXPECT_FALSE(Registry::GetValue(HKEY_CURRENT_USER, kTestKey, L"Time", value, kAllAccess));
    EXPECT_EQ(GetLastError(), static_cast<DWORD>(ERROR_FILE_NOT_FOUND));
    EXPECT_EQ(value, -1);
}

TEST_F(FileKit, RefusesAValueOfAnotherType) {
    const wchar_t text[] = L"seven and some more";
    const std::int64_t qword = 7;
    const std::int32_t dword = 7;
    Store(L"Text", REG_SZ, text, sizeof(text));
    Store(L"Binary", REG_BINARY, &dword, sizeof(dword));
    Store(L"Qword", REG_QWORD, &qword, sizeof(qword));
    Store(L"Dword", REG_DWORD, &dword, sizeof(dword));
    Store(L"ShortDword", REG_DWORD, &dword, 2);

    for (const wchar_t* name : {L"Text", L"Binary", L"Qword", L"ShortDword"}) {
        std::int32_t value = -1;
        SetLastError(kPoison);
        EXPECT_FALSE(Registry::GetValue(HKEY_CURRENT_USER, kTestKey, name, value, kAllAccess));
        EXPECT_EQ(GetLastError(), static_cast<DWORD>(ERROR_INVALID_DATATYPE));
        EXPECT_EQ(value, -1);
    }
    for (const wchar_t* name : {L"Text", L"Binary", L"Dword"}) {
        std::int64_t value = -1;
        SetLastError(kPoison);
        EXPECT_FALSE(Registry::GetValue(HKEY_CURRENT_USER, kTestKey, name, value, kAllAccess));
        EXPECT_EQ(GetLastError(), static_cast<DWORD>(ERROR_INVALID_DATATYPE));
        EXPECT_EQ(value, -1);
    }
}

TEST_F(FileKit, OpensTheKeyWithTheAccessMaskThatItIsGiven) {
    const std::int32_t written = 1;
    EXPECT_FALSE(Registry::SetValue(HKEY_CURRENT_USER, kTestKey, L"Count", written, KEY_READ));
    EXPECT_EQ(GetLastError(), static_cast<DWORD>(ERROR_ACCESS_DENIED));

    ASSERT_TRUE(Registry::SetValue(HKEY_CURRENT_USER, kTestKey, L"Count", written, kAllAccess));
    std::int32_t read = -1;
    SetLastError(kPoison);
    EXPECT_FALSE(Registry::GetValue(HKEY_CURRENT_USER, kTestKey, L"Count", read, KEY_SET_VALUE));
    EXPECT_EQ(GetLastError(), static_cast<DWORD>(ERROR_ACCESS_DENIED));
}

TEST_F(FileKit, ReportsAnInvalidRootKey) {
    const std::int32_t value = 1;
    EXPECT_FALSE(Registry::SetValue(nullptr, kTestKey, L"Count", value, kAllAccess));
    EXPECT_EQ(GetLastError(), static_cast<DWORD>(ERROR_INVALID_HANDLE));
}

TEST_F(FileKit, FindsKeysUnderTheUsersHive) {
    const std::wstring path = CurrentUserSid() + L"\\" + kTestKey;
    Registry registry;
    registry.SetRootKey(HKEY_USERS);
    EXPECT_FALSE(registry.KeyExists(path));
    EXPECT_EQ(GetLastError(), static_cast<DWORD>(ERROR_FILE_NOT_FOUND));

    const std::int32_t written = 1;
    ASSERT_TRUE(Registry::SetValue(HKEY_CURRENT_USER, kTestKey, L"Status", written, kAllAccess));
    EXPECT_TRUE(registry.KeyExists(path));
    std::int32_t read = 0;
    EXPECT_TRUE(Registry::GetValue(HKEY_USERS, path, L"Status", read, kAllAccess));
    EXPECT_EQ(read, 1);
}

TEST_F(FileKit, LeavesNoKeyOpen) {
    const std::int32_t written = 1;
    Registry::SetValue(HKEY_CURRENT_USER, kTestKey, L"Count", written, kAllAccess);
    const auto useEveryCall = [&] {
        std::int32_t narrow = 0;
        std::int64_t wide = 0;
        Registry registry;
        registry.SetRootKey(HKEY_CURRENT_USER);
        registry.KeyExists(kTestKey);
        registry.KeyExists(L"Software\\TallyportStandinsTest\\Missing");
        Registry::SetValue(HKEY_CURRENT_USER, kTestKey, L"Count", written, kAllAccess);
        Registry::GetValue(HKEY_CURRENT_USER, kTestKey, L"Count", narrow, kAllAccess);
        Registry::GetValue(HKEY_CURRENT_USER, kTestKey, L"Count", wide, kAllAccess);
        Registry::GetValue(HKEY_CURRENT_USER, kTestKey, L"Missing", narrow, kAllAccess);
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
