// What a link can do to windows, as the pages on security say it.
#include "app/ResultCode.h"
#include "tests/support/HostProcess.h"
#include "tests/support/InFront.h"
#include "tests/support/QuilletRun.h"
#include "tests/support/RealInput.h"
#include "tests/support/ScriptedHost.h"
#include "tests/support/UniqueName.h"

#include <gtest/gtest.h>

#include <future>

namespace
{

/// Runs the program as the registration of a scheme does, with the link in the place of %1.
int Open(const std::wstring& link)
{
    return RunQuillet(L" -url=\"" + link + L'"');
}

// WM_COMMAND to a message box, by its title.
TEST(LinkPower, AnswersAQuestionWithYesWhoseDefaultIsNo)
{
    const std::wstring title = UniqueName(L"Frage");
    auto answer = std::async(std::launch::async, [&title] {
        return ::MessageBoxW(nullptr, L"?", title.c_str(), MB_YESNO | MB_DEFBUTTON2);
    });
    ASSERT_TRUE(WaitUntil([&title] {
        const HWND box = ::FindWindowW(nullptr, title.c_str());
        return box != nullptr && ::GetDlgItem(box, IDYES) != nullptr && ::IsWindowVisible(box);
    }));
    EXPECT_EQ(Open(L"x?msg=-751&wparam=6&nodlg&nam=" + title), kResultCancelled);
    ASSERT_EQ(answer.wait_for(kWaitLimit), std::future_status::ready);
    EXPECT_EQ(answer.get(), IDYES);
}

TEST(LinkPower, ChoosesMenuCommandsAndSetsTimersOff)
{
    ScriptedHostOptions options = UniqueHost();
    options.alsoRecord = {WM_COMMAND, WM_TIMER};
    const ScriptedHost host(options);
    EXPECT_EQ(Open(L"x?msg=-751;wparam=4711;nodlg;kla=" + host.ClassName()), kResultCancelled);
    EXPECT_EQ(Open(L"x?msg=-749;wparam=1;nodlg;kla=" + host.ClassName()), kResultCancelled);
    const auto received = host.ReceivedSoFar();
    ASSERT_EQ(received.size(), 2u);
    EXPECT_EQ(received[0].message, static_cast<UINT>(WM_COMMAND));
    EXPECT_EQ(received[0].wParam, 4711u);
    EXPECT_EQ(received[1].message, static_cast<UINT>(WM_TIMER));
}

// A quote in the link ends it, and switches follow: the one text that they carry and links do not.
TEST(LinkPower, QuoteInALinkBringsATextThatNoLinkCarries)
{
    const ScriptedHost host(UniqueHost());
    EXPECT_EQ(Open(L"x?nodlg&kla=" + host.ClassName() + L"\" -copydata=\"100% %20 %"),
              kResultAccepted);
    const auto received = host.ReceivedSoFar();
    ASSERT_EQ(received.size(), 1u);
    EXPECT_EQ(received[0].Text(), L"100% %20 %");
}

using LinkPowerInFront = InFront<>;

// What a page could notice: who has come to the front when the link has been opened. Whether it
// stays there is not the program's doing.
TEST_F(LinkPowerInFront, ForegroundTellsWhetherAWindowWasFound)
{
    const std::wstring title = UniqueName(L"Geheim");
    const HostProcess secret(UniqueName(L"LinkHost"), title);
    const HostProcess page(UniqueName(L"LinkHost"), L"Seite");
    ASSERT_TRUE(WaitForForeground(page.Window()));
    const std::size_t before = secret.Activations();
    const std::wstring guess = L"x?seaglob&activatewindow&nam=" + title;
    EXPECT_EQ(Open(guess + L"?*"), kResultWindowNotFound);
    EXPECT_EQ(secret.Activations(), before);

    const QuilletRun run(L" -url=\"" + guess + L"*\"");
    EXPECT_TRUE(WaitUntil([&] { return secret.Activations() > before; }));
}

} // namespace
