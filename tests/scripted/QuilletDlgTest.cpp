#include "delivery/QuilletDlg.h"

#include "res/resource.h"
#include "tests/scripted/ScriptedPlatform.h"

namespace
{

const Calls kMade = {"LoadIconW(128)", "CreateDialogParamW(102, NULL)"};
const Calls kIconsSet = {"SendMessageW(dialog, WM_SETICON, ICON_BIG, icon)",
                         "SendMessageW(dialog, WM_SETICON, ICON_SMALL, icon)"};

class QuilletDlg : public testing::Test
{
protected:
    void Create() { m_dialog.emplace().Create(IDD_QUILLET_DIALOG); }

    /// A dialog whose making is not looked at.
    void CreateUnrecorded()
    {
        Create();
        m_platform.ForgetCalls();
        m_platform.defaulted.clear();
    }

    LRESULT Send(UINT message, WPARAM wParam = 0, LPARAM lParam = 0)
    {
        return m_platform.Send(m_dialog->m_hWnd, message, wParam, lParam);
    }

    ScriptedPlatform m_platform;
    CWinApp m_app;
    std::optional<CQuilletDlg> m_dialog;
};

TEST_F(QuilletDlg, GetsItsAboutEntryAndBothIcons)
{
    m_platform.aboutText = L"Inf&o";
    Create();
    EXPECT_TRUE(m_platform.Made(kMade +
                                Calls{"GetSystemMenu(dialog, FALSE)", "LoadStringW(101, 0)",
                                      "AppendMenuW(system menu, 0x800, 0, NULL)",
                                      "AppendMenuW(system menu, 0x0, 16, \"Inf&o\")"} +
                                kIconsSet));
}

TEST_F(QuilletDlg, LeavesTheFirstFocusToThePlatform)
{
    Create();
    EXPECT_EQ(m_platform.answerToInitDialog, TRUE);
}

TEST_F(QuilletDlg, WithoutSystemMenuGetsIconsOnly)
{
    m_platform.hasSystemMenu = false;
    Create();
    EXPECT_TRUE(m_platform.Made(kMade + Calls{"GetSystemMenu(dialog, FALSE)"} + kIconsSet));
}

TEST_F(QuilletDlg, WithoutTheStringGetsNeitherSeparatorNorEntry)
{
    m_platform.aboutText.clear();
    Create();
    EXPECT_TRUE(m_platform.Made(
        kMade + Calls{"GetSystemMenu(dialog, FALSE)", "LoadStringW(101, 0)"} + kIconsSet));
}

TEST_F(QuilletDlg, AnswersEndIt)
{
    for (const UINT message : {1024u, 1025u, 1026u, 5119u, 5120u})
    {
        SCOPED_TRACE(message);
        CreateUnrecorded();
        Send(message, 11, 12);
        EXPECT_TRUE(m_platform.Made({"EndDialog(dialog, " + std::to_string(message) + ")"}));
        // An answer gets its default processing, too.
        EXPECT_EQ(m_platform.defaulted, std::vector{message});
    }
}

TEST_F(QuilletDlg, OtherMessagesDoNotEndIt)
{
    for (const UINT message : {0u, 1023u, 5121u, 0x8000u, 0xFFFFu, 0x80000000u, 0xFFFFFFFFu})
    {
        SCOPED_TRACE(message);
        CreateUnrecorded();
        Send(message);
        EXPECT_TRUE(m_platform.Made({}));
        EXPECT_EQ(m_platform.defaulted, std::vector{message});
    }
}

TEST_F(QuilletDlg, ButtonsEndItWithTheirCommand)
{
    CreateUnrecorded();
    Send(WM_COMMAND, IDCANCEL);
    Send(WM_COMMAND, IDOK);
    EXPECT_TRUE(m_platform.Made({"EndDialog(dialog, 2)", "EndDialog(dialog, 1)"}));
}

// What wakes the dialog's loop is lost in a menu's.
TEST_F(QuilletDlg, EveryEndClosesItsOpenMenu)
{
    struct Row
    {
        UINT message;
        WPARAM wParam;
        const char* ended;
    };
    for (const Row& row : {Row{WM_USER + 9, 0, "EndDialog(dialog, 1033)"},
                           Row{WM_COMMAND, IDCANCEL, "EndDialog(dialog, 2)"},
                           Row{WM_COMMAND, IDOK, "EndDialog(dialog, 1)"}})
    {
        SCOPED_TRACE(row.ended);
        CreateUnrecorded();
        m_platform.menuOwner = m_dialog->m_hWnd;
        Send(row.message, row.wParam);
        EXPECT_TRUE(m_platform.Made({row.ended, "SendMessageW(dialog, 0x1f)"}));
    }
}

TEST_F(QuilletDlg, AnAnswerEndsItsMoving)
{
    CreateUnrecorded();
    m_platform.moving = m_dialog->m_hWnd;
    Send(WM_USER + 9);
    EXPECT_TRUE(m_platform.Made({"EndDialog(dialog, 1033)"}));
    const auto posted = m_platform.NextMessage();
    ASSERT_TRUE(posted.has_value());
    EXPECT_EQ(posted->message, static_cast<UINT>(WM_LBUTTONUP));
    EXPECT_FALSE(m_platform.NextMessage().has_value());
}

// Not its own: there is nothing that it could close.
TEST_F(QuilletDlg, LeavesTheMenuAndTheMovingOfAnotherWindow)
{
    CreateUnrecorded();
    m_platform.menuOwner = m_platform.moving = m_platform.AddWindow({});
    Send(WM_USER + 9);
    Send(WM_COMMAND, IDCANCEL);
    EXPECT_TRUE(m_platform.Made({"EndDialog(dialog, 1033)", "EndDialog(dialog, 2)"}));
    EXPECT_FALSE(m_platform.NextMessage().has_value());
}

TEST_F(QuilletDlg, AboutCommandIsMasked)
{
    for (const WPARAM command : {16u, 17u, 31u, 0x10010u, 0xFFFF001Fu})
    {
        SCOPED_TRACE(command);
        CreateUnrecorded();
        m_platform.dialogsCanBeMade = false;
        Send(WM_SYSCOMMAND, command);
        EXPECT_TRUE(m_platform.Made({"CreateDialogParamW(100, NULL)"}));
        EXPECT_TRUE(m_platform.defaulted.empty());
        m_platform.dialogsCanBeMade = true;
    }
}

TEST_F(QuilletDlg, OtherSystemCommandsAreThePlatforms)
{
    for (const WPARAM command : {0u, 15u, 32u, 0x110u, 0x1010u, 0xF010u, 0xF060u})
    {
        SCOPED_TRACE(command);
        CreateUnrecorded();
        Send(WM_SYSCOMMAND, command);
        EXPECT_TRUE(m_platform.Made({}));
        EXPECT_EQ(m_platform.defaulted, std::vector<UINT>{WM_SYSCOMMAND});
    }
}

// Owned by the dialog, which is disabled until the box is about to go.
TEST_F(QuilletDlg, AboutBoxIsModal)
{
    CreateUnrecorded();
    m_app.m_pMainWnd = &*m_dialog;
    m_platform.Post(ScriptedPlatform::DialogHandle(IDD_ABOUTBOX), WM_COMMAND, IDOK);
    Send(WM_SYSCOMMAND, IDM_ABOUTBOX);
    EXPECT_TRUE(
        m_platform.Made({"CreateDialogParamW(100, dialog)", "EnableWindow(dialog, FALSE)",
                         "ShowWindow(box, SW_SHOWNORMAL)", "GetMessageW()", "EndDialog(box, 1)",
                         "EnableWindow(dialog, TRUE)", "DestroyWindow(box)"}));
    EXPECT_EQ(m_platform.onScreenOf, nullptr); // centred only where a template leaves it open
}

// The real desktops of the tests have one screen only.
TEST_F(QuilletDlg, WouldBeCentredOnTheScreenOfItsOwner)
{
    CreateUnrecorded();
    m_dialog->CenterWindow();
    EXPECT_EQ(m_platform.onScreenOf, m_dialog->m_hWnd);
    const HWND owner = m_platform.AddWindow({});
    m_platform.Window(m_dialog->m_hWnd).owner = owner;
    m_dialog->CenterWindow();
    EXPECT_EQ(m_platform.onScreenOf, owner);
}

TEST_F(QuilletDlg, PaintsAsThePlatformDoesUnlessMinimised)
{
    CreateUnrecorded();
    Send(WM_PAINT);
    EXPECT_TRUE(m_platform.Made({"IsIconic(dialog)"}));
    EXPECT_EQ(m_platform.defaulted, std::vector<UINT>{WM_PAINT});
}

struct PaintRow
{
    SIZE client;
    SIZE icon;
    const char* drawn;
};

TEST_F(QuilletDlg, CentresItsIconWhenMinimised)
{
    const PaintRow rows[] = {
        {{0, 0}, {32, 32}, "DrawIcon(dc, -15, -15, icon)"}, // truncated toward zero, not down
        {{0, 1}, {32, 32}, "DrawIcon(dc, -15, -15, icon)"},
        {{30, 31}, {32, 32}, "DrawIcon(dc, 0, 0, icon)"},
        {{32, 33}, {32, 32}, "DrawIcon(dc, 0, 1, icon)"},
        {{36, 36}, {32, 32}, "DrawIcon(dc, 2, 2, icon)"},
        {{100, 50}, {48, 16}, "DrawIcon(dc, 26, 17, icon)"},
        {{50, 100}, {16, 48}, "DrawIcon(dc, 17, 26, icon)"},
    };
    for (const PaintRow& row : rows)
    {
        SCOPED_TRACE(row.drawn);
        CreateUnrecorded();
        m_platform.Window(m_dialog->m_hWnd).minimised = true;
        m_platform.clientSize = row.client;
        m_platform.iconSize = row.icon;
        Send(WM_PAINT);
        EXPECT_TRUE(m_platform.Made({"IsIconic(dialog)", "BeginPaint(dialog)",
                                     "SendMessageW(dialog, WM_ICONERASEBKGND, dc, 0)", row.drawn,
                                     "EndPaint(dialog)"}));
    }
}

TEST_F(QuilletDlg, IsDraggedAsItsIcon)
{
    CreateUnrecorded();
    EXPECT_EQ(Send(WM_QUERYDRAGICON), reinterpret_cast<LRESULT>(ScriptedPlatform::Icon()));
}

} // namespace
