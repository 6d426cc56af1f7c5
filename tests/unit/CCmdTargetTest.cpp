#include "app/QuilletApp.h"
#include "tests/unit/WindowFixture.h"

namespace
{

constexpr UINT kBaseOnly = 0x7101;
constexpr UINT kBoth = 0x7102;

class BaseTarget : public CCmdTarget
{
public:
    std::vector<int> handled;

protected:
    DECLARE_MESSAGE_MAP()

    void OnBaseOnly() { handled.push_back(1); }
    void OnBoth() { handled.push_back(2); }
};

BEGIN_MESSAGE_MAP(BaseTarget, CCmdTarget)
    ON_COMMAND(kBaseOnly, &BaseTarget::OnBaseOnly)
    ON_COMMAND(kBoth, &BaseTarget::OnBoth)
END_MESSAGE_MAP()

class DerivedTarget : public BaseTarget
{
protected:
    DECLARE_MESSAGE_MAP()

    void OnBothDerived() { handled.push_back(3); }
};

BEGIN_MESSAGE_MAP(DerivedTarget, BaseTarget)
    ON_COMMAND(kBoth, &DerivedTarget::OnBothDerived)
END_MESSAGE_MAP()

/// Its map is made by hand, so that it sees what a handler of a command is called with.
class ParameterTarget : public CCmdTarget
{
public:
    WPARAM first = 7;
    LPARAM second = 7;

protected:
    const AFX_MSGMAP* GetMessageMap() const override
    {
        static constexpr AFX_MSGMAP_ENTRY kEntries[] = {
            {WM_COMMAND, kBoth,
             [](CCmdTarget& target, WPARAM wParam, LPARAM lParam) -> LRESULT {
                 static_cast<ParameterTarget&>(target).first = wParam;
                 static_cast<ParameterTarget&>(target).second = lParam;
                 return 0;
             }},
            {0, 0, nullptr}};
        static constexpr AFX_MSGMAP kMap{nullptr, kEntries};
        return &kMap;
    }
};

TEST(CCmdTarget, CommandHasNoParameters)
{
    ParameterTarget target;
    EXPECT_TRUE(target.OnCmdMsg(kBoth));
    EXPECT_EQ(target.first, 0u);
    EXPECT_EQ(target.second, 0);
}

TEST(CCmdTarget, GivesACommandToTheMostDerivedHandler)
{
    DerivedTarget target;
    EXPECT_TRUE(target.OnCmdMsg(kBoth));
    EXPECT_TRUE(target.OnCmdMsg(kBaseOnly));
    EXPECT_EQ(target.handled, (std::vector{3, 1}));
}

TEST(CCmdTarget, RefusesACommandWithoutHandler)
{
    DerivedTarget target;
    EXPECT_FALSE(target.OnCmdMsg(0x7103));
    EXPECT_FALSE(target.OnCmdMsg(0));
    EXPECT_TRUE(target.handled.empty());
}

TEST(CCmdTarget, HelpCommandReachesTheApplication)
{
    CQuilletApp app;
    EXPECT_EQ(ID_HELP, 0xE146u); // as other programs know it
    EXPECT_TRUE(app.OnCmdMsg(ID_HELP));
    EXPECT_FALSE(app.OnCmdMsg(ID_HELP + 1)); // and its map has no other entry nearby
    EXPECT_FALSE(CWinApp().OnCmdMsg(ID_HELP));
}

} // namespace
