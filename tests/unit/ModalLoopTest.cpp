#include "tests/unit/WindowFixture.h"

#include <functional>
#include <map>
#include <thread>

namespace
{

constexpr UINT kStep = WM_APP + 1;

/// Runs a step for each kStep message, named by its wParam.
class SteppingWindow : public PlainWindow
{
public:
    std::map<WPARAM, std::function<void()>> steps;

    using CWnd::ContinueModal;

    void PostStep(WPARAM name, std::function<void()> step)
    {
        steps[name] = std::move(step);
        PostMessage(kStep, name);
    }

protected:
    LRESULT WindowProc(UINT message, WPARAM wParam, LPARAM lParam) override
    {
        if (message == kStep)
        {
            steps.at(wParam)();
        }
        return PlainWindow::WindowProc(message, wParam, lParam);
    }
};

class ModalLoop : public WindowFixture
{
protected:
    SteppingWindow m_window;
};

TEST_F(ModalLoop, ReturnsTheResultThatEndedIt)
{
    m_window.PostStep(1, [this] {
        EXPECT_TRUE(m_window.ContinueModal());
        m_window.EndModalLoop(1027);
        EXPECT_FALSE(m_window.ContinueModal());
    });
    EXPECT_EQ(m_window.RunModalLoop(0), 1027);
}

TEST_F(ModalLoop, ResultGivenBeforeItIsNotSeen)
{
    EXPECT_FALSE(m_window.ContinueModal());
    m_window.EndModalLoop(1);
    m_window.PostStep(1, [this] { m_window.EndModalLoop(2); });
    EXPECT_EQ(m_window.RunModalLoop(), 2);
}

TEST_F(ModalLoop, FirstResultWins)
{
    m_window.PostStep(1, [this] {
        m_window.EndModalLoop(1);
        m_window.EndModalLoop(2);
    });
    EXPECT_EQ(m_window.RunModalLoop(), 1);
}

TEST_F(ModalLoop, MessagesAfterTheEndStayInTheQueue)
{
    bool handled = false;
    DrainQueue();
    m_window.PostStep(1, [this] { m_window.EndModalLoop(1); });
    m_window.PostStep(2, [&handled] { handled = true; });
    EXPECT_EQ(m_window.RunModalLoop(), 1);
    EXPECT_FALSE(handled);
}

TEST_F(ModalLoop, RunsAgain)
{
    m_window.PostStep(1, [this] { m_window.EndModalLoop(1); });
    EXPECT_EQ(m_window.RunModalLoop(), 1);
    m_window.PostStep(2, [this] { m_window.EndModalLoop(2); });
    EXPECT_EQ(m_window.RunModalLoop(), 2);
}

// The wait for a posted message does not return for a sent one by itself.
TEST_F(ModalLoop, EndsByASentMessage)
{
    DrainQueue();
    m_window.steps[1] = [this] { m_window.EndModalLoop(1); };
    std::thread sender([this] { ::SendMessageW(m_window.m_hWnd, kStep, 1, 0); });
    EXPECT_EQ(m_window.RunModalLoop(), 1);
    sender.join();
}

TEST_F(ModalLoop, QuitMessageEndsItAndIsPostedAgain)
{
    ::PostQuitMessage(9);
    EXPECT_EQ(m_window.RunModalLoop(), -1);
    EXPECT_FALSE(m_window.ContinueModal());
    EXPECT_EQ(DrainQueue(), 0U); // without the code, which nobody asks for
}

TEST_F(ModalLoop, OuterOneEndedMeanwhileReturnsAfterTheInnerOne)
{
    SteppingWindow inner;
    std::vector<std::string> order;
    m_window.PostStep(1, [&] {
        order.emplace_back("inner loop returns " + std::to_string(inner.RunModalLoop()));
    });
    m_window.PostStep(2, [&] {
        m_window.EndModalLoop(2);
        order.emplace_back("outer loop ended");
    });
    inner.PostStep(3, [&] {
        order.emplace_back("inner loop ended");
        inner.EndModalLoop(3);
    });
    order.emplace_back("outer loop returns " + std::to_string(m_window.RunModalLoop()));
    EXPECT_EQ(order, (std::vector<std::string>{"outer loop ended", "inner loop ended",
                                               "inner loop returns 3", "outer loop returns 2"}));
}

TEST_F(ModalLoop, InnerOneEndsWithoutTheOuter)
{
    SteppingWindow inner;
    m_window.PostStep(1, [&] { EXPECT_EQ(inner.RunModalLoop(), 3); });
    inner.PostStep(2, [&] { inner.EndModalLoop(3); });
    m_window.PostStep(3, [&] { m_window.EndModalLoop(4); });
    EXPECT_EQ(m_window.RunModalLoop(), 4);
}

TEST_F(ModalLoop, QuitMessageEndsNestedOnesTogether)
{
    SteppingWindow inner;
    m_window.PostStep(1, [&] {
        ::PostQuitMessage(0);
        EXPECT_EQ(inner.RunModalLoop(), -1);
    });
    EXPECT_EQ(m_window.RunModalLoop(), -1);
}

} // namespace
