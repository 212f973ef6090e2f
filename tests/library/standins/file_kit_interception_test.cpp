#include <gtest/gtest.h>
#include <windows.h>

#include <string>

#include "standins/file_kit/file_kit_control.h"

namespace {

using QD::Registry;

constexpr wchar_t kTestKey[] = L"Software\\TallyportStandinsInterceptorTest";
constexpr std::uint32_t kAllAccess = 0xF003F;
constexpr DWORD kPoison = 0xBAADF00D;

class FileKitInterception : public testing::Test {
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
};

/// An interceptor that notes what it sees and answers as told.
struct Script {
    int answer = FILE_KIT_GO_ON;
    long long value = 0;
    unsigned long error = ERROR_SUCCESS;

    int operation = -1;
    HKEY root = nullptr;
    std::wstring subKey;
    std::wstring valueName;
    unsigned int accessMask = 0;
    long long seenValue = -1;
};

int Intercept(void* context, int operation, HKEY root, const wchar_t* subKey,
              const wchar_t* valueName, unsigned int accessMask, long long* value,
              unsigned long* error) {
    Script& script = *static_cast<Script*>(context);
    script.operation = operation;
    script.root = root;
    script.subKey = subKey;
    script.valueName = valueName == nullptr ? L"(null)" : valueName;
    script.accessMask = accessMask;
    script.seenValue = *value;
    if (script.answer != FILE_KIT_GO_ON) {
        *value = script.value;
    }
    if (script.error != ERROR_SUCCESS) {
        *error = script.error;
    }
    return script.answer;
}

TEST_F(FileKitInterception, SeesEveryAccessAndMayLetItThrough) {
    Script script;
    FileKit_SetInterceptor(&Intercept, &script);
    const std::int64_t written = 1LL << 40;
    EXPECT_TRUE(Registry::SetValue(HKEY_CURRENT_USER, kTestKey, L"Time", written, kAllAccess));
    EXPECT_EQ(script.operation, FILE_KIT_SET_INT64);
    EXPECT_EQ(script.root, HKEY_CURRENT_USER);
    EXPECT_EQ(script.subKey, kTestKey);
    EXPECT_EQ(script.valueName, L"Time");
    EXPECT_EQ(script.accessMask, kAllAccess);
    EXPECT_EQ(script.seenValue, 1LL << 40);

    std::int64_t wide = 0;
    EXPECT_TRUE(Registry::GetValue(HKEY_CURRENT_USER, kTestKey, L"Time", wide, kAllAccess));
    EXPECT_EQ(script.operation, FILE_KIT_GET_INT64);
    EXPECT_EQ(script.seenValue, 0);
    EXPECT_EQ(wide, 1LL << 40);

    const std::int32_t narrowWritten = -3;
    Registry::SetValue(HKEY_CURRENT_USER, kTestKey, L"Count", narrowWritten, kAllAccess);
    EXPECT_EQ(script.operation, FILE_KIT_SET_INT32);
    EXPECT_EQ(script.seenValue, -3);
    std::int32_t narrow = 0;
    Registry::GetValue(HKEY_CURRENT_USER, kTestKey, L"Count", narrow, kAllAccess);
    EXPECT_EQ(script.operation, FILE_KIT_GET_INT32);
    EXPECT_EQ(narrow, -3);

    Registry registry;
    registry.SetRootKey(HKEY_USERS);
    registry.KeyExists(L"missing");
    EXPECT_EQ(script.operation, FILE_KIT_KEY_EXISTS);
    EXPECT_EQ(script.root, HKEY_USERS);
    EXPECT_EQ(script.subKey, L"missing");
    EXPECT_EQ(script.valueName, L"(null)");
}

TEST_F(FileKitInterception, MayAnswerInsteadOfTheRegistry) {
    Script script;
    script.answer = FILE_KIT_SUCCEED;
    script.value = -2;
    FileKit_SetInterceptor(&Intercept, &script);
    std::int32_t narrow = 0;
    EXPECT_TRUE(Registry::GetValue(HKEY_CURRENT_USER, kTestKey, L"Count", narrow, kAllAccess));
    EXPECT_EQ(narrow, -2);
    std::int64_t wide = 0;
    EXPECT_TRUE(Registry::GetValue(HKEY_CURRENT_USER, kTestKey, L"Time", wide, kAllAccess));
    EXPECT_EQ(wide, -2);
    EXPECT_TRUE(Registry::SetValue(HKEY_CURRENT_USER, kTestKey, L"Count", narrow, kAllAccess));
    Registry registry;
    registry.SetRootKey(HKEY_CURRENT_USER);
    EXPECT_TRUE(registry.KeyExists(kTestKey));

    FileKit_SetInterceptor(nullptr, nullptr);
    EXPECT_FALSE(registry.KeyExists(kTestKey)) << "the real registry was written";
}

TEST_F(FileKitInterception, MayFailAnAccess) {
    Script script;
    script.answer = FILE_KIT_FAIL;
    script.value = 9;
    script.error = ERROR_REGISTRY_CORRUPT;
    FileKit_SetInterceptor(&Intercept, &script);
    std::int32_t value = -1;
    EXPECT_FALSE(Registry::GetValue(HKEY_CURRENT_USER, kTestKey, L"Count", value, kAllAccess));
    EXPECT_EQ(GetLastError(), static_cast<DWORD>(ERROR_REGISTRY_CORRUPT));
    EXPECT_EQ(value, -1);

    SetLastError(kPoison);
    EXPECT_FALSE(Registry::SetValue(HKEY_CURRENT_USER, kTestKey, L"Count", value, kAllAccess));
    EXPECT_EQ(GetLastError(), static_cast<DWORD>(ERROR_REGISTRY_CORRUPT));

    script.error = ERROR_SUCCESS;
    EXPECT_FALSE(Registry::GetValue(HKEY_CURRENT_USER, kTestKey, L"Count", value, kAllAccess));
    EXPECT_EQ(GetLastError(), static_cast<DWORD>(ERROR_FILE_NOT_FOUND));
}

}  // namespace
