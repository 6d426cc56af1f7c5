// Ends of the wait while the dialog's system menu is open. The menu runs in a loop of the
// platform's own, inside the dialog's; the run ends all the same, and takes the menu along.
#include "app/ResultCode.h"
#include "tests/support/WaitingRun.h"

#include <gtest/gtest.h>

#include <functional>
#include <string>
#include <tuple>

namespace
{

struct WayToOpen
{
    const char* name;
    WPARAM command;
    LPARAM parameter;
};

struct WayToEnd
{
    const char* name;
    std::function<void(HWND dialog)> end;
    int exitCode;
};

WayToEnd Posted(const char* name, UINT message, WPARAM wParam, int exitCode)
{
    return {name, [=](HWND dialog) { ::PostMessageW(dialog, message, wParam, 0); }, exitCode};
}

WayToEnd Sent(const char* name, UINT message, WPARAM wParam, int exitCode)
{
    return {name, [=](HWND dialog) { ::SendNotifyMessageW(dialog, message, wParam, 0); }, exitCode};
}

const WayToOpen kWaysToOpen[] = {
    {"Key", SC_KEYMENU, VK_SPACE},
    {"Mouse", SC_MOUSEMENU | HTSYSMENU, 0},
};

const WayToEnd kWaysToEnd[] = {
    Posted("PostedAnswer", WM_USER + 9, 0, 9),
    Sent("SentAnswer", WM_USER + 9, 0, 9),
    Posted("PostedCancel", WM_COMMAND, IDCANCEL, kResultCancelled),
    Sent("SentCancel", WM_COMMAND, IDCANCEL, kResultCancelled),
    Posted("PostedClose", WM_CLOSE, 0, kResultCancelled),
    Sent("SentClose", WM_CLOSE, 0, kResultCancelled),
    Posted("CaptionsClose", WM_SYSCOMMAND, SC_CLOSE, kResultCancelled),
    Posted("PostedOk", WM_COMMAND, IDOK, IDOK),
};

class OpenMenu : public WaitingRun,
                 public testing::WithParamInterface<std::tuple<WayToOpen, WayToEnd>>
{
};

TEST_P(OpenMenu, EndsWithTheRun)
{
    const auto& [way, end] = GetParam();
    Post(WM_SYSCOMMAND, way.command, way.parameter);
    ASSERT_TRUE(WaitUntil([this] { return IsInMenuMode(dialog); }));
    end.end(dialog);
    EXPECT_EQ(run.WaitForExit(), end.exitCode);
}

INSTANTIATE_TEST_SUITE_P(
    , OpenMenu, testing::Combine(testing::ValuesIn(kWaysToOpen), testing::ValuesIn(kWaysToEnd)),
    [](const auto& row) {
        return std::string(std::get<0>(row.param).name) + std::get<1>(row.param).name;
    });

} // namespace
