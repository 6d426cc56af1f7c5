#include "tests/unit/TestResource.h"
#include "tests/unit/WindowFixture.h"

#include <functional>

namespace
{

// Records what the framework asks of it.
class TestDialog : public CDialog
{
public:
    explicit TestDialog(UINT idTemplate = IDD_TEST, CWnd* parent = nullptr)
        : CDialog(idTemplate, parent)
    {
    }

    std::vector<std::string> events;
    /// What happens when the controls are there.
    std::function<void()> onInit = [] {};
    std::function<void()> onDestroy = [] {};
    /// What happens at the step that is posted.
    std::function<void()> onStep = [] {};
    static constexpr UINT kStep = WM_APP;

    HWND Control(int id) const { return ::GetDlgItem(m_hWnd, id); }

protected:
    BOOL OnInitDialog() override
    {
        const BOOL result = CDialog::OnInitDialog();
        EXPECT_TRUE(result) << "the platform sets the first focus";
        events.emplace_back(Control(IDCANCEL) != nullptr ? "init" : "init without controls");
        onInit();
        return result;
    }
    void DoDataExchange(CDataExchange* exchange) override
    {
        CDialog::DoDataExchange(exchange);
        events.emplace_back(exchange->m_bSaveAndValidate ? "save" : "load");
    }
    LRESULT WindowProc(UINT message, WPARAM wParam, LPARAM lParam) override
    {
        if (message == WM_DESTROY)
        {
            onDestroy();
        }
        if (message == kStep)
        {
            onStep();
        }
        // The platform's own requests for the default command, of which none may come.
        if (message == WM_USER)
        {
            events.emplace_back("WM_USER");
        }
        return CDialog::WindowProc(message, wParam, lParam);
    }
};

using Events = std::vector<std::string>;

class CDialogTest : public WindowFixture
{
};

TEST_F(CDialogTest, CreatesItsWindowFromTheTemplate)
{
    TestDialog dialog;
    ASSERT_TRUE(dialog.Create(IDD_TEST));
    EXPECT_EQ(CWnd::FromHandlePermanent(dialog.m_hWnd), &dialog);
    EXPECT_EQ(dialog.events, (Events{"load", "init"}));
    wchar_t text[64];
    ::GetWindowTextW(dialog.m_hWnd, text, 64);
    EXPECT_STREQ(text, L"Quillet: framework test");
}

TEST_F(CDialogTest, MissingTemplateMakesNoWindow)
{
    TestDialog dialog;
    EXPECT_FALSE(dialog.Create(999));
    EXPECT_EQ(dialog.m_hWnd, nullptr);
    EXPECT_EQ(TestDialog(999).DoModal(), -1);
}

// A failed creation must not leave the next window that speaks to be taken for the dialog.
TEST_F(CDialogTest, OtherDialogsAfterAFailedCreationAreTheirOwn)
{
    TestDialog earlier;
    ASSERT_TRUE(earlier.Create(IDD_TEST));
    TestDialog failed;
    failed.Create(999);
    earlier.SendMessage(WM_NULL);
    TestDialog later;
    ASSERT_TRUE(later.Create(IDD_TEST));
    EXPECT_EQ(failed.m_hWnd, nullptr);
    EXPECT_EQ(CWnd::FromHandlePermanent(earlier.m_hWnd), &earlier);
    EXPECT_EQ(CWnd::FromHandlePermanent(later.m_hWnd), &later);
}

TEST_F(CDialogTest, IsOwnedByTheMainWindow)
{
    PlainWindow main;
    PlainWindow other;
    TestDialog dialog;
    dialog.Create(IDD_TEST);
    EXPECT_EQ(::GetWindow(dialog.m_hWnd, GW_OWNER), nullptr);

    m_app.m_pMainWnd = &main;
    TestDialog owned;
    owned.Create(IDD_TEST);
    EXPECT_EQ(::GetWindow(owned.m_hWnd, GW_OWNER), main.m_hWnd);

    TestDialog ownedByOther;
    ownedByOther.Create(IDD_TEST, &other);
    EXPECT_EQ(::GetWindow(ownedByOther.m_hWnd, GW_OWNER), other.m_hWnd);
}

TEST_F(CDialogTest, FocusIsOnTheFirstControl)
{
    TestDialog dialog;
    dialog.Create(IDD_TEST);
    dialog.ShowWindow(SW_SHOW);
    EXPECT_EQ(::GetFocus(), dialog.Control(IDCANCEL));
}

struct EndRow
{
    const char* reason;
    UINT message;
    int result;
    WPARAM wParam;
    Events events;
};

TEST_F(CDialogTest, ButtonsKeysAndCaptionEndTheLoop)
{
    const EndRow rows[] = {
        {"OK", WM_COMMAND, IDOK, IDOK, {"load", "init", "save"}},
        {"Cancel", WM_COMMAND, IDCANCEL, IDCANCEL, {"load", "init"}},
        {"Escape", WM_KEYDOWN, IDCANCEL, VK_ESCAPE, {"load", "init"}},
        {"close", WM_CLOSE, IDCANCEL, 0, {"load", "init"}},
        {"caption", WM_SYSCOMMAND, IDCANCEL, SC_CLOSE, {"load", "init"}},
        {"Enter on Cancel", WM_KEYDOWN, IDCANCEL, VK_RETURN, {"load", "init"}},
    };
    for (const EndRow& row : rows)
    {
        SCOPED_TRACE(row.reason);
        TestDialog dialog;
        dialog.Create(IDD_TEST);
        dialog.ShowWindow(SW_SHOW);
        dialog.PostMessage(row.message, row.wParam);
        EXPECT_EQ(dialog.RunModalLoop(), row.result);
        EXPECT_EQ(dialog.events, row.events);
        EXPECT_FALSE(::IsWindowVisible(dialog.m_hWnd));
        EXPECT_TRUE(::IsWindow(dialog.m_hWnd));
    }
}

TEST_F(CDialogTest, EndDialogBeforeTheLoopHidesAndIsNotSeen)
{
    TestDialog dialog;
    dialog.Create(IDD_TEST);
    dialog.ShowWindow(SW_SHOW);
    dialog.EndDialog(1027);
    EXPECT_FALSE(::IsWindowVisible(dialog.m_hWnd));
    dialog.PostMessage(WM_COMMAND, IDCANCEL);
    EXPECT_EQ(dialog.RunModalLoop(), IDCANCEL);
}

TEST_F(CDialogTest, FirstEndOfTheLoopWins)
{
    TestDialog dialog;
    dialog.Create(IDD_TEST);
    dialog.PostMessage(WM_COMMAND, IDOK);
    dialog.PostMessage(WM_COMMAND, IDCANCEL);
    EXPECT_EQ(dialog.RunModalLoop(), IDOK);
}

/// Execute is another Enter.
constexpr WPARAM kEnterKeys[] = {VK_RETURN, VK_EXECUTE};

// Without a default push button at the focus the platform would ask for the default command by a
// message of the dialog's own range.
TEST_F(CDialogTest, EnterMeansTheButtonWithTheFocus)
{
    for (const WPARAM key : kEnterKeys)
    {
        SCOPED_TRACE(key);
        TestDialog dialog;
        dialog.Create(IDD_TEST);
        dialog.ShowWindow(SW_SHOW);
        ::SetFocus(dialog.Control(IDOK));
        ::SendMessageW(dialog.Control(IDOK), BM_SETSTYLE, BS_PUSHBUTTON, FALSE);
        ::PostMessageW(dialog.Control(IDOK), WM_KEYDOWN, key, 0);
        EXPECT_EQ(dialog.RunModalLoop(), IDOK);
        EXPECT_EQ(dialog.events, (Events{"load", "init", "save"}));
    }
}

/// A control that notes for which keys it is asked what it takes.
class AskedControl : public CWnd
{
public:
    std::vector<WPARAM> keys;

protected:
    LRESULT WindowProc(UINT message, WPARAM wParam, LPARAM lParam) override
    {
        if (message == WM_GETDLGCODE)
        {
            keys.push_back(wParam);
        }
        return CWnd::WindowProc(message, wParam, lParam);
    }
};

TEST_F(CDialogTest, ControlWithTheFocusIsAskedWhatItTakesOfAnyKey)
{
    TestDialog dialog;
    dialog.Create(IDD_TEST);
    AskedControl button;
    button.SubclassWindow(dialog.Control(IDOK));
    ::SetFocus(button.m_hWnd);
    button.keys.clear();
    MSG enter{button.m_hWnd, WM_KEYDOWN, VK_RETURN, 0, 0, {}};
    EXPECT_TRUE(dialog.PreTranslateMessage(&enter));
    ASSERT_FALSE(button.keys.empty());
    EXPECT_EQ(button.keys.front(), 0u);
}

TEST_F(CDialogTest, EnterBesideTheButtonsMeansTheFirstOne)
{
    for (const WPARAM key : kEnterKeys)
    {
        SCOPED_TRACE(key);
        TestDialog dialog;
        dialog.Create(IDD_TEST);
        dialog.ShowWindow(SW_SHOW);
        const HWND edit = dialog.Control(IDC_TEXT);
        ::SetFocus(edit);
        ::PostMessageW(edit, WM_KEYDOWN, key, 0);
        EXPECT_EQ(dialog.RunModalLoop(), IDCANCEL);
        EXPECT_EQ(dialog.events, (Events{"load", "init"}));
    }
}

TEST_F(CDialogTest, EnterWithoutAnyFocusMeansTheFirstButton)
{
    for (const WPARAM key : kEnterKeys)
    {
        SCOPED_TRACE(key);
        TestDialog dialog;
        dialog.Create(IDD_TEST);
        dialog.ShowWindow(SW_SHOW);
        ::SetFocus(dialog.m_hWnd);
        dialog.PostMessage(WM_KEYDOWN, key);
        EXPECT_EQ(dialog.RunModalLoop(), IDCANCEL);
        EXPECT_EQ(dialog.events, (Events{"load", "init"}));
    }
}

TEST_F(CDialogTest, TabMovesTheFocusAndEnterPressesAndNeitherGoesFurther)
{
    TestDialog dialog;
    dialog.Create(IDD_TEST);
    dialog.ShowWindow(SW_SHOW);
    MSG key{dialog.Control(IDCANCEL), WM_KEYDOWN, VK_TAB, 0, 0, {}};
    EXPECT_TRUE(dialog.PreTranslateMessage(&key));
    EXPECT_EQ(::GetFocus(), dialog.Control(IDOK));
    key.wParam = VK_RETURN;
    EXPECT_TRUE(dialog.PreTranslateMessage(&key));
    EXPECT_EQ(dialog.events, (Events{"load", "init", "save"}));
}

TEST_F(CDialogTest, NothingButKeysIsTranslated)
{
    TestDialog dialog;
    dialog.Create(IDD_TEST);
    const auto takes = [&dialog](UINT message) {
        MSG posted{dialog.Control(IDCANCEL), message, 0, 0, 0, {}};
        return dialog.PreTranslateMessage(&posted);
    };
    EXPECT_FALSE(takes(WM_KEYFIRST - 1));
    EXPECT_TRUE(takes(WM_KEYFIRST));
    EXPECT_TRUE(takes(WM_KEYLAST));
    EXPECT_FALSE(takes(WM_KEYLAST + 1));
    EXPECT_FALSE(takes(WM_MOUSEMOVE));
}

class CDialogDoModal : public WindowFixture
{
protected:
    PlainWindow m_owner;
};

TEST_F(CDialogDoModal, ShowsTheBoxAndGivesItsResult)
{
    m_app.m_pMainWnd = &m_owner;
    for (const int button : {IDOK, IDCANCEL})
    {
        TestDialog box;
        box.onInit = [&] {
            EXPECT_EQ(::GetWindow(box.m_hWnd, GW_OWNER), m_owner.m_hWnd);
            box.PostMessage(WM_COMMAND, static_cast<WPARAM>(button));
        };
        EXPECT_EQ(box.DoModal(), button);
        EXPECT_EQ(box.m_hWnd, nullptr);
    }
}

TEST_F(CDialogDoModal, DisablesTheOwnerUntilJustBeforeTheBoxGoes)
{
    m_app.m_pMainWnd = &m_owner;
    BOOL enabledAtCommand = TRUE;
    BOOL visibleAtCommand = FALSE;
    BOOL enabledAtDestruction = FALSE;

    class CommandWatcher : public TestDialog
    {
    public:
        std::function<void()> onOk;

    protected:
        void OnOK() override
        {
            onOk();
            CDialog::OnOK();
        }
    } box;
    box.onInit = [&] { box.PostMessage(WM_COMMAND, IDOK); };
    box.onOk = [&] {
        enabledAtCommand = ::IsWindowEnabled(m_owner.m_hWnd);
        visibleAtCommand = ::IsWindowVisible(box.m_hWnd);
    };
    box.onDestroy = [&] { enabledAtDestruction = ::IsWindowEnabled(m_owner.m_hWnd); };
    EXPECT_EQ(box.DoModal(), IDOK);
    EXPECT_FALSE(enabledAtCommand);
    EXPECT_TRUE(visibleAtCommand);
    EXPECT_TRUE(enabledAtDestruction);
    EXPECT_TRUE(::IsWindowEnabled(m_owner.m_hWnd));
}

TEST_F(CDialogDoModal, NamedParentOwnsTheBoxInsteadOfTheMainWindow)
{
    PlainWindow parent;
    m_app.m_pMainWnd = &m_owner;
    TestDialog box(IDD_TEST, &parent);
    box.onInit = [&] {
        EXPECT_EQ(::GetWindow(box.m_hWnd, GW_OWNER), parent.m_hWnd);
        box.PostMessage(WM_COMMAND, IDOK);
    };
    EXPECT_EQ(box.DoModal(), IDOK);
}

TEST_F(CDialogDoModal, MissingTemplateLeavesTheOwnerEnabled)
{
    m_app.m_pMainWnd = &m_owner;
    EXPECT_EQ(TestDialog(999).DoModal(), -1);
    EXPECT_TRUE(::IsWindowEnabled(m_owner.m_hWnd));
}

// Two boxes at once, as two commands in a row open them: the inner one runs in the outer one's
// loop.
TEST_F(CDialogDoModal, OwnerStaysDisabledUntilTheBoxThatDisabledItEnds)
{
    m_app.m_pMainWnd = &m_owner;
    TestDialog outer;
    TestDialog inner;
    outer.onInit = [&] { outer.PostMessage(TestDialog::kStep); };
    outer.onStep = [&] {
        inner.onInit = [&] { inner.PostMessage(WM_COMMAND, IDCANCEL); };
        EXPECT_EQ(inner.DoModal(), IDCANCEL);
        EXPECT_FALSE(::IsWindowEnabled(m_owner.m_hWnd));
        outer.PostMessage(WM_COMMAND, IDOK);
    };
    EXPECT_EQ(outer.DoModal(), IDOK);
    EXPECT_TRUE(::IsWindowEnabled(m_owner.m_hWnd));
}

TEST_F(CDialogDoModal, OwnerStaysDisabledWhenTheOuterBoxIsClosedFirst)
{
    m_app.m_pMainWnd = &m_owner;
    TestDialog outer;
    TestDialog inner;
    outer.onInit = [&] { outer.PostMessage(TestDialog::kStep); };
    outer.onStep = [&] {
        inner.onInit = [&] {
            outer.PostMessage(WM_COMMAND, IDOK);
            inner.PostMessage(TestDialog::kStep);
        };
        inner.onStep = [&] {
            EXPECT_FALSE(::IsWindowVisible(outer.m_hWnd));
            EXPECT_FALSE(::IsWindowEnabled(m_owner.m_hWnd));
            inner.PostMessage(WM_COMMAND, IDCANCEL);
        };
        EXPECT_EQ(inner.DoModal(), IDCANCEL);
        EXPECT_FALSE(::IsWindowEnabled(m_owner.m_hWnd));
    };
    EXPECT_EQ(outer.DoModal(), IDOK);
    EXPECT_TRUE(::IsWindowEnabled(m_owner.m_hWnd));
}

TEST_F(CDialogDoModal, RunsWithoutAnyOwner)
{
    TestDialog box;
    box.onInit = [&] { box.PostMessage(WM_COMMAND, IDCANCEL); };
    EXPECT_EQ(box.DoModal(), IDCANCEL);
}

} // namespace
