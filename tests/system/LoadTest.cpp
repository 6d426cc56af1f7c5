// Many requests at once against one host: each arrives exactly once with its own content, and each
// caller gets its own answer.
#include "app/ResultCode.h"
#include "tests/support/QuilletRun.h"
#include "tests/support/ScriptedHost.h"
#include "tests/support/UniqueName.h"

#include <gtest/gtest.h>

#include <atomic>
#include <map>
#include <string>
#include <thread>
#include <vector>

namespace
{

constexpr int kAtATime = 32;
constexpr int kHighestAnswer = kLastAnswer - kFirstAnswer;

enum class Kind
{
    Notification,
    CopyDataWithoutDialog,
    AnsweredCopyData,
};
constexpr int kKinds = 3;

Kind KindOf(int request)
{
    return static_cast<Kind>(request % kKinds);
}

int AnswerTo(int request)
{
    return (request * 7) % (kHighestAnswer + 1);
}

// Short ones and long ones, so that both stores of the conversion are at work.
std::string TextOf(int request)
{
    return "request-" + std::to_string(request) +
           std::string(static_cast<std::size_t>(request % 500), 'x');
}

int RequestIn(const ReceivedMessage& message)
{
    return static_cast<int>(message.message == WM_COPYDATA ? message.data : message.wParam);
}

std::optional<LRESULT> AnswerEachItsOwn(HWND, const ReceivedMessage& message)
{
    if (message.message != WM_COPYDATA)
    {
        return std::nullopt;
    }
    const auto answer = static_cast<UINT>(AnswerTo(RequestIn(message)));
    ::PostMessageW(reinterpret_cast<HWND>(message.wParam), WM_USER + answer, 0, 0);
    return TRUE;
}

std::wstring ArgumentsOf(int request, const std::wstring& target)
{
    const std::wstring number = std::to_wstring(request);
    const std::string text = TextOf(request);
    const std::wstring copyData =
        L" -copydataencoding=UTF-8 -copydata=" + std::wstring(text.begin(), text.end());
    switch (KindOf(request))
    {
    case Kind::Notification:
        return L" -nodlg -msg=100 -wparam=" + number + target;
    case Kind::CopyDataWithoutDialog:
        return L" -nodlg -wparam=" + number + copyData + target;
    default:
        return L" -wparam=" + number + copyData + target;
    }
}

int ExitCodeOf(int request)
{
    switch (KindOf(request))
    {
    case Kind::Notification:
        return kResultCancelled;
    case Kind::CopyDataWithoutDialog:
        return kResultAccepted;
    default:
        return AnswerTo(request);
    }
}

bool HasOwnContent(const ReceivedMessage& message)
{
    const int request = RequestIn(message);
    if (KindOf(request) == Kind::Notification)
    {
        return message.message == WM_USER + 100u;
    }
    const std::string text(reinterpret_cast<const char*>(message.bytes.data()),
                           message.bytes.size());
    return message.message == WM_COPYDATA && text == TextOf(request);
}

/// Runs so many requests, kAtATime of them at once, and gives the exit code of each.
std::vector<int> RunAll(int requests, const std::wstring& target)
{
    std::vector<int> codes(static_cast<std::size_t>(requests));
    std::atomic<int> next{0};
    std::vector<std::jthread> callers;
    for (int caller = 0; caller < kAtATime; ++caller)
    {
        callers.emplace_back([&] {
            for (int request = next++; request < requests; request = next++)
            {
                constexpr int kNone = 999999;
                const QuilletRun run(ArgumentsOf(request, target));
                codes[static_cast<std::size_t>(request)] =
                    run.WaitForExit(3 * kWaitLimit).value_or(kNone);
            }
        });
    }
    callers.clear();
    return codes;
}

void ExpectEachOnceWithItsOwnAnswer(int requests, const ScriptedHost& host,
                                    const std::wstring& target)
{
    const std::vector<int> codes = RunAll(requests, target);
    for (int request = 0; request < requests; ++request)
    {
        EXPECT_EQ(codes[static_cast<std::size_t>(request)], ExitCodeOf(request))
            << "request " << request;
    }
    std::map<int, int> arrivals;
    for (const ReceivedMessage& message : host.WaitForMessages(static_cast<std::size_t>(requests)))
    {
        ++arrivals[RequestIn(message)];
        EXPECT_TRUE(HasOwnContent(message)) << "request " << RequestIn(message);
    }
    for (int request = 0; request < requests; ++request)
    {
        EXPECT_EQ(arrivals[request], 1) << "request " << request;
    }
}

TEST(Load, RequestsArriveOnceAndGetTheirOwnAnswers)
{
    const ScriptedHost host({UniqueName(L"LoadHost"), L"Last"}, &AnswerEachItsOwn);
    ExpectEachOnceWithItsOwnAnswer(150, host, L" -kla=" + host.ClassName());
}

TEST(Load, SoTheyDoByPatternSearchWhileWindowsComeAndGo)
{
    const ScriptedHost host({UniqueName(L"LoadHost"), L"Last"}, &AnswerEachItsOwn);
    const std::jthread churn([](const std::stop_token& stop) {
        while (!stop.stop_requested())
        {
            ::DestroyWindow(::CreateWindowExW(0, L"STATIC", L"Kommt und geht", WS_POPUP, 0, 0, 1, 1,
                                              nullptr, nullptr, nullptr, nullptr));
        }
    });
    // Fewer: what is tried is the coming and going, at each of them.
    ExpectEachOnceWithItsOwnAnswer(60, host, L" -seaglob -kla=[L]" + host.ClassName().substr(1));
}

} // namespace
