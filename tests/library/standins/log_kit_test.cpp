#include <gtest/gtest.h>
#include <windows.h>

#include <filesystem>
#include <regex>
#include <thread>
#include <utility>
#include <vector>

#include "library/standins/temporary_file.h"
#include "standins/log_kit/log_kit_control.h"

namespace {

using standins_test::StreamCapture;
using standins_test::TemporaryFile;
using Lines = std::vector<std::pair<int, std::wstring>>;

void Log(LOG_MESSAGE_LEVEL level, const std::wstring& text) {
    std::wstringstream stream;
    stream << text;
    VrLogger::GetInstance()->Log(level, stream);
}

void AppendLine(void* context, int level, const wchar_t* text) {
    static_cast<Lines*>(context)->emplace_back(level, text);
}

class LogKit : public testing::Test {
protected:
    void SetUp() override {
        LogKit_Reset();
        LogKit_SetConsole(0);
    }
    void TearDown() override { LogKit_Reset(); }
};

TEST_F(LogKit, HandsLevelAndTextToTheSinkUntilItIsRemoved) {
    Lines lines;
    LogKit_SetSink(&AppendLine, &lines);
    Log(LOG_LEVEL_NORMAL, L"Register timer: 12(TimerReportMgr::RegisterReportCallback)");
    Log(LOG_LEVEL_ERROR, L"SmBiosHelper is nullptr(ReportBiosInfo::OnRecvReportInfo)");
    LogKit_SetSink(nullptr, nullptr);
    Log(LOG_LEVEL_NORMAL, L"unseen");

    const Lines expected = {
        {3, L"Register timer: 12(TimerReportMgr::RegisterReportCallback)"},
        {4, L"SmBiosHelper is nullptr(ReportBiosInfo::OnRecvReportInfo)"},
    };
    EXPECT_EQ(lines, expected);
}

TEST_F(LogKit, WritesTheWholeStreamAlthoughItWasReadFromBefore) {
    Lines lines;
    LogKit_SetSink(&AppendLine, &lines);
    std::wstringstream stream;
    stream << L"first second";
    std::wstring word;
    stream >> word;
    VrLogger::GetInstance()->Log(LOG_LEVEL_NORMAL, stream);

    ASSERT_EQ(lines.size(), 1u);
    EXPECT_EQ(lines[0].second, L"first second");
}

TEST_F(LogKit, AppendsTimeLevelAndTextToTheFile) {
    const TemporaryFile file;
    ASSERT_EQ(LogKit_OpenFile(file.Path()), 0);
    Log(LOG_LEVEL_NORMAL, L"Peripheral list(DoReportDevices)");
    ASSERT_EQ(LogKit_OpenFile(file.Path()), 0);
    Log(LOG_LEVEL_ERROR, L"second");
    LogKit_CloseFile();
    Log(LOG_LEVEL_ERROR, L"unseen");

    const std::string time = R"(\d{4}-\d\d-\d\d \d\d:\d\d:\d\d\.\d{3} )";
    const std::vector<std::string> lines = file.Lines();
    ASSERT_EQ(lines.size(), 2u);
    EXPECT_TRUE(std::regex_match(lines[0],
                                 std::regex(time + R"(\[3\] Peripheral list\(DoReportDevices\))")))
        << lines[0];
    EXPECT_TRUE(std::regex_match(lines[1], std::regex(time + R"(\[4\] second)"))) << lines[1];
}

TEST_F(LogKit, WritesTheFileInUtf8) {
    const TemporaryFile file;
    LogKit_OpenFile(file.Path());
    Log(LOG_LEVEL_NORMAL, L"\u00fc\u5c4f\U0001F5A8");
    const std::string bytes = file.Bytes();
    EXPECT_NE(bytes.find("[3] \xC3\xBC\xE5\xB1\x8F\xF0\x9F\x96\xA8\n"), std::string::npos) << bytes;
}

TEST_F(LogKit, KeepsATextWithLineBreaksOnOneLineOfTheFile) {
    const TemporaryFile file;
    LogKit_OpenFile(file.Path());
    Log(LOG_LEVEL_NORMAL, L"one\r\ntwo");
    const std::vector<std::string> lines = file.Lines();
    ASSERT_EQ(lines.size(), 1u);
    EXPECT_NE(lines[0].find("one  two"), std::string::npos) << lines[0];
}

TEST_F(LogKit, ClosesTheFileWhenTheNextOneIsOpened) {
    const TemporaryFile first;
    const TemporaryFile second;
    LogKit_OpenFile(first.Path());
    LogKit_OpenFile(second.Path());
    const HANDLE alone = CreateFileW(first.Path(), GENERIC_READ, /*dwShareMode=*/0, nullptr,
                                     OPEN_EXISTING, FILE_ATTRIBUTE_NORMAL, nullptr);
    EXPECT_NE(alone, INVALID_HANDLE_VALUE) << "error " << GetLastError();
    CloseHandle(alone);
}

TEST_F(LogKit, KeepsItsFileWhenTheNextOneCannotBeOpened) {
    const TemporaryFile file;
    LogKit_OpenFile(file.Path());
    EXPECT_EQ(LogKit_OpenFile(L"no-such-folder\\log.txt"), ERROR_PATH_NOT_FOUND);
    Log(LOG_LEVEL_NORMAL, L"still here");
    EXPECT_EQ(file.Lines().size(), 1u);
}

TEST_F(LogKit, WritesToStandardOutputByDefault) {
    LogKit_Reset();
    const StreamCapture output(STD_OUTPUT_HANDLE);
    Log(LOG_LEVEL_ERROR, L"\u00fcber");
    EXPECT_TRUE(std::regex_match(
        output.Bytes(),
        std::regex("\\d{4}-\\d\\d-\\d\\d \\d\\d:\\d\\d:\\d\\d\\.\\d{3} \\[4\\] \xC3\xBC"
                   "ber\n")))
        << output.Bytes();
}

TEST_F(LogKit, LeavesStandardOutputAloneWhenTheConsoleIsOff) {
    const StreamCapture output(STD_OUTPUT_HANDLE);
    Log(LOG_LEVEL_ERROR, L"unseen");
    EXPECT_EQ(output.Bytes(), "");
}

TEST_F(LogKit, KeepsLinesOfSeveralThreadsWholeAndInOneOrderEverywhere) {
    constexpr int kThreads = 4;
    constexpr int kLinesEach = 100;
    const TemporaryFile file;
    LogKit_OpenFile(file.Path());
    Lines lines;
    LogKit_SetSink(&AppendLine, &lines);
    std::vector<std::thread> threads;
    threads.reserve(kThreads);
    for (int thread = 0; thread < kThreads; ++thread) {
        threads.emplace_back([thread] {
            for (int i = 0; i < kLinesEach; ++i) {
                Log(LOG_LEVEL_NORMAL, std::to_wstring(thread) + L" says " + std::to_wstring(i));
            }
        });
    }
    for (std::thread& thread : threads) {
        thread.join();
    }

    const std::vector<std::string> written = file.Lines();
    ASSERT_EQ(written.size(), static_cast<size_t>(kThreads * kLinesEach));
    ASSERT_EQ(lines.size(), written.size());
    for (size_t i = 0; i < lines.size(); ++i) {
        const std::string text = std::filesystem::path(lines[i].second).string();
        EXPECT_EQ(written[i].substr(written[i].find("] ") + 2), text);
    }
}

}  // namespace
