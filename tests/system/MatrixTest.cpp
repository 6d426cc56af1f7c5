// Every combination of dialog, delivery and outcome with every way to name the target, as real runs
// whose settings come from each source in turn. What each must end with stands in one table.
#include "app/ResultCode.h"
#include "tests/support/ExpectedDifference.h"
#include "tests/support/QuilletRun.h"
#include "tests/support/ScriptedHost.h"
#include "tests/support/UniqueName.h"

#include <gtest/gtest.h>

#include <array>
#include <atomic>
#include <string>
#include <thread>
#include <utility>
#include <vector>

namespace
{

enum class Dialog
{
    /// Neither flag or only -activatewindow: the dialog is shown and waits.
    Shown,
    /// -nodlg -activatewindow: the dialog is minimised and takes one message.
    Minimised,
    /// -nodlg: no dialog.
    None,
};
enum class Delivery
{
    Notification,
    CopyData,
};
enum class Host
{
    /// Takes the message and never answers; the user does nothing either.
    Silent,
    /// Gives 0 as the message's result.
    Refuses,
    /// Posts WM_USER + 3 to the dialog, if there is one.
    Answers,
    /// Takes the message; then the user cancels.
    SilentUserCancels,
    /// There is no such window.
    Gone,
};
/// What the run does after the delivery.
enum class After
{
    EndsAtOnce,
    /// Ends when the minimised dialog has got one message, whichever.
    EndsAfterOneMessage,
    /// Waits until the user cancels; for a silent host the test cancels in the end.
    WaitsForCancel,
    /// Waits until the host's answer is there.
    WaitsForAnswer,
};

constexpr int kAnswer = 3;

struct Row
{
    Dialog dialog;
    Delivery delivery;
    Host host;
    int exitCode;
    After after;
};

// clang-format off
constexpr Row kTable[] = {
    // Without a dialog only the delivery counts; an accepted notification stores nothing, so it stays at -1.
    {Dialog::None, Delivery::Notification, Host::Silent, -1, After::EndsAtOnce},
    {Dialog::None, Delivery::Notification, Host::Refuses, -1, After::EndsAtOnce}, // nobody reads its result
    {Dialog::None, Delivery::Notification, Host::Answers, -1, After::EndsAtOnce}, // goes nowhere
    {Dialog::None, Delivery::Notification, Host::Gone, -2, After::EndsAtOnce},
    {Dialog::None, Delivery::CopyData, Host::Silent, 0, After::EndsAtOnce},
    {Dialog::None, Delivery::CopyData, Host::Refuses, -3, After::EndsAtOnce},
    {Dialog::None, Delivery::CopyData, Host::Answers, 0, After::EndsAtOnce},
    {Dialog::None, Delivery::CopyData, Host::Gone, -2, After::EndsAtOnce},

    // The minimised dialog takes one message; even an answer does not change what the delivery stored.
    {Dialog::Minimised, Delivery::Notification, Host::Silent, -1, After::EndsAfterOneMessage},
    {Dialog::Minimised, Delivery::Notification, Host::Refuses, -1, After::EndsAfterOneMessage},
    {Dialog::Minimised, Delivery::Notification, Host::Answers, -1, After::EndsAfterOneMessage},
    {Dialog::Minimised, Delivery::Notification, Host::SilentUserCancels, -1, After::EndsAfterOneMessage},
    {Dialog::Minimised, Delivery::Notification, Host::Gone, -2, After::EndsAtOnce},
    {Dialog::Minimised, Delivery::CopyData, Host::Silent, 0, After::EndsAfterOneMessage},
    {Dialog::Minimised, Delivery::CopyData, Host::Refuses, -3, After::EndsAtOnce},
    {Dialog::Minimised, Delivery::CopyData, Host::Answers, 0, After::EndsAfterOneMessage},
    {Dialog::Minimised, Delivery::CopyData, Host::SilentUserCancels, 0, After::EndsAfterOneMessage},
    {Dialog::Minimised, Delivery::CopyData, Host::Gone, -2, After::EndsAtOnce},

    // With the dialog the wait decides, whatever was stored before.
    {Dialog::Shown, Delivery::Notification, Host::Silent, -1, After::WaitsForCancel},
    {Dialog::Shown, Delivery::Notification, Host::Refuses, -1, After::WaitsForCancel},
    {Dialog::Shown, Delivery::Notification, Host::Answers, kAnswer, After::WaitsForAnswer},
    {Dialog::Shown, Delivery::Notification, Host::SilentUserCancels, -1, After::WaitsForCancel},
    {Dialog::Shown, Delivery::Notification, Host::Gone, -2, After::EndsAtOnce},
    {Dialog::Shown, Delivery::CopyData, Host::Silent, -1, After::WaitsForCancel},
    {Dialog::Shown, Delivery::CopyData, Host::Refuses, -3, After::EndsAtOnce},
    {Dialog::Shown, Delivery::CopyData, Host::Answers, kAnswer, After::WaitsForAnswer},
    {Dialog::Shown, Delivery::CopyData, Host::SilentUserCancels, -1, After::WaitsForCancel},
    {Dialog::Shown, Delivery::CopyData, Host::Gone, -2, After::EndsAtOnce},
};
// clang-format on

/// How the request names its target, and where its settings come from.
struct Wording
{
    bool byClass;
    bool byText;
    bool glob;
    bool fromSwitches;
    bool fromUrl;
    bool activate;
};

constexpr const wchar_t* kCopyData = L"Akte-4711";

/// One real run with its host.
class Case
{
public:
    Case(const Row& row, const Wording& wording) : m_row(row), m_wording(wording) {}

    /// What went wrong, or nothing.
    std::string Run()
    {
        const ScriptedHost host(
            {UniqueName(L"MatrixHost"), UniqueName(L"MatrixText")},
            [this](HWND window, const ReceivedMessage& message) { return React(window, message); });
        const std::wstring arguments = Arguments(host);
        const QuilletRun run(arguments);
        m_process = run.Id();
        const std::string failure = Follow(run, host);
        return failure.empty() ? failure : failure + ": " + Narrow(arguments);
    }

private:
    static std::string Narrow(const std::wstring& text)
    {
        std::string narrow;
        for (const wchar_t unit : text)
        {
            narrow += static_cast<char>(unit);
        }
        return narrow;
    }

    bool HasTarget() const { return m_wording.byClass || m_wording.byText; }
    std::size_t ExpectedMessages() const
    {
        return m_row.host == Host::Gone || !HasTarget() ? 0 : 1;
    }

    // Exactly the given name, as a pattern that needs the pattern search.
    std::wstring Name(const std::wstring& name) const
    {
        const std::wstring wanted = m_row.host == Host::Gone ? L"Gone" + name : name;
        return m_wording.glob ? L"[" + wanted.substr(0, 1) + L"]" + wanted.substr(1) : wanted;
    }

    std::wstring Arguments(const ScriptedHost& host) const
    {
        std::vector<std::wstring> flags;
        std::vector<std::pair<std::wstring, std::wstring>> values{
            {L"msg", L"7"}, {L"wparam", L"-5"}, {L"lparam", L"0x6"}};
        const auto flag = [&](bool set, const wchar_t* name) {
            if (set)
            {
                flags.emplace_back(name);
            }
        };
        const auto value = [&](bool set, const wchar_t* name, const std::wstring& text) {
            if (set)
            {
                values.emplace_back(name, text);
            }
        };
        flag(m_row.dialog != Dialog::Shown, L"nodlg");
        flag(m_row.dialog == Dialog::Minimised || m_wording.activate, L"activatewindow");
        flag(m_wording.glob, L"seaglob");
        value(m_wording.byClass, L"kla", Name(host.ClassName()));
        value(m_wording.byText, L"nam", Name(host.Title()));
        value(m_row.delivery == Delivery::CopyData, L"copydata", kCopyData);
        return Switches(flags, values) + Url(flags, values);
    }

    // When a URL is there as well, the switches set everything wrong that it has to override.
    std::wstring Switches(const std::vector<std::wstring>& flags,
                          const std::vector<std::pair<std::wstring, std::wstring>>& values) const
    {
        std::wstring text;
        if (m_wording.fromSwitches)
        {
            for (const auto& flag : flags)
            {
                text += L" -" + flag;
            }
            for (const auto& [name, value] : values)
            {
                text += L" -" + name + L"=" + (m_wording.fromUrl ? L"999" : value);
            }
        }
        return text;
    }

    std::wstring Url(const std::vector<std::wstring>& flags,
                     const std::vector<std::pair<std::wstring, std::wstring>>& values) const
    {
        if (!m_wording.fromUrl)
        {
            return {};
        }
        std::wstring query;
        // The flags that the switches have set already need not be set again, and cannot be
        // cleared.
        for (const auto& flag : flags)
        {
            query += m_wording.fromSwitches ? L"" : flag + L"&";
        }
        for (const auto& [name, value] : values)
        {
            query += name + L"=" + value + L"&";
        }
        return L" -url=\"demo://open?" + query + L"\"";
    }

    std::optional<LRESULT> React(HWND, const ReceivedMessage& message) const
    {
        if (m_row.host == Host::Answers)
        {
            // The message can be here before the one who started the process knows its id.
            WaitUntil([this] { return m_process != 0; });
            Answer(message.message == WM_COPYDATA
                       ? reinterpret_cast<HWND>(message.wParam)
                       : FindProcessWindow(m_process, nullptr, kWaitDialogCaption));
        }
        return m_row.host == Host::Refuses ? 0 : 1;
    }

    static void Answer(HWND dialog)
    {
        if (dialog != nullptr)
        {
            ::PostMessageW(dialog, WM_USER + kAnswer, 0, 0);
        }
    }

    std::string Follow(const QuilletRun& run, const ScriptedHost& host) const
    {
        if (host.WaitForMessages(ExpectedMessages()).size() != ExpectedMessages())
        {
            return "the message did not arrive";
        }
        std::string failure = PlayUser(run);
        if (!failure.empty())
        {
            return failure;
        }
        const auto exitCode = run.WaitForExit();
        if (exitCode != ExpectedExitCode())
        {
            return "ended with " + (exitCode ? std::to_string(*exitCode) : "nothing") +
                   " instead of " + std::to_string(ExpectedExitCode());
        }
        return CheckMessages(host);
    }

    int ExpectedExitCode() const
    {
        // A request that names nobody sends nothing, so nothing but the wait can store a result.
        return HasTarget() || m_row.after == After::WaitsForAnswer ? m_row.exitCode : -1;
    }

    /// Does to the dialog what its user, or a late host, would do.
    std::string PlayUser(const QuilletRun& run) const
    {
        if (m_row.after == After::EndsAtOnce)
        {
            return {};
        }
        const bool needsNobody = m_row.host == Host::Answers && HasTarget();
        if (needsNobody)
        {
            return {};
        }
        const HWND dialog = WaitForDialog(run);
        if (dialog == nullptr)
        {
            return m_ownEnd ? "" : "there is no dialog to wait in";
        }
        if (m_row.host == Host::Answers)
        {
            Answer(dialog);
        }
        else if (m_row.host == Host::SilentUserCancels || m_row.after == After::WaitsForCancel)
        {
            ::PostMessageW(dialog, WM_COMMAND, IDCANCEL, 0);
        }
        else
        {
            ::PostMessageW(dialog, WM_NULL, 0, 0);
        }
        return {};
    }

    // Not for its focus: the dialogs that run side by side take it from each other.
    HWND WaitForDialog(const QuilletRun& run) const
    {
        const auto isThere =
            m_row.after == After::EndsAfterOneMessage ? &::IsIconic : &::IsWindowVisible;
        const HWND dialog = run.WaitForDialog();
        const auto isThereOrOver = [&] {
            return isThere(dialog) != FALSE || (m_ownEnd && !::IsWindow(dialog));
        };
        return dialog != nullptr && WaitUntil(isThereOrOver) ? dialog : nullptr;
    }

    std::string CheckMessages(const ScriptedHost& host) const
    {
        const auto received = host.Received();
        if (received.size() != ExpectedMessages())
        {
            return "the host got " + std::to_string(received.size()) + " messages";
        }
        return received.empty() || IsRight(received[0]) ? "" : "the host got a wrong message";
    }

    bool IsRight(const ReceivedMessage& message) const
    {
        if (m_row.delivery == Delivery::Notification)
        {
            return message.message == WM_USER + 7u && message.wParam == static_cast<WPARAM>(-5) &&
                   message.lParam == 6;
        }
        return message.message == WM_COPYDATA && message.data == static_cast<ULONG_PTR>(-5) &&
               message.Text() == kCopyData &&
               (message.wParam != 0) == (m_row.dialog != Dialog::None);
    }

    Row m_row;
    Wording m_wording;
    /// Whether the run may end by itself: Windows' shell can post the minimised dialog its one
    /// message.
    bool m_ownEnd = m_row.after == After::EndsAfterOneMessage && !RunsUnderWine();
    std::atomic<DWORD> m_process{0};
};

/// Wordings of a request with this row's dialog: every way to name the target, each from one
/// source. Sources, search and activation alternate from row to row, so that all of them meet in
/// some row; how each is read and searched is the same in every row.
std::vector<Wording> Wordings(const Row& row)
{
    constexpr std::array kYesNo{false, true};
    constexpr std::array<std::pair<bool, bool>, 3> kSources{
        {{true, false}, {false, true}, {true, true}}};
    int turn =
        static_cast<int>(row.dialog) + static_cast<int>(row.delivery) + static_cast<int>(row.host);
    std::vector<Wording> wordings;
    for (const bool byClass : kYesNo)
    {
        for (const bool byText : kYesNo)
        {
            const auto [switches, url] = kSources[static_cast<std::size_t>(turn) % kSources.size()];
            const bool activate = row.dialog == Dialog::Shown && (turn / 2) % 2 == 1;
            wordings.push_back({byClass, byText, turn % 2 == 1, switches, url, activate});
            ++turn;
        }
    }
    return wordings;
}

bool Applies(const Row& row, const Wording& wording)
{
    const bool named = wording.byClass || wording.byText;
    // With nobody to send to, no host can refuse or be missing.
    return named || (row.host != Host::Refuses && row.host != Host::Gone);
}

// A worker thread must not let an exception out.
std::string FailureOf(Case&& run)
{
    try
    {
        return run.Run();
    }
    catch (const std::exception& exception)
    {
        return exception.what();
    }
}

class Matrix : public testing::TestWithParam<Row>
{
};

TEST_P(Matrix, EveryWordingEndsAsTheTableSays)
{
    std::vector<Wording> wordings = Wordings(GetParam());
    std::erase_if(wordings, [](const Wording& wording) { return !Applies(GetParam(), wording); });
    ASSERT_FALSE(wordings.empty());
    if (GetParam().after == After::EndsAfterOneMessage)
    {
        MinimisedDialogGetsNoMessageByItself();
    }

    // Several at a time: the runs know nothing of each other.
    constexpr std::size_t kRunsAtATime = 4;
    std::vector<std::string> failures(wordings.size());
    std::atomic<std::size_t> next{0};
    std::vector<std::jthread> workers;
    for (std::size_t worker = 0; worker < kRunsAtATime; ++worker)
    {
        workers.emplace_back([&] {
            for (std::size_t i = next++; i < wordings.size(); i = next++)
            {
                failures[i] = FailureOf(Case(GetParam(), wordings[i]));
            }
        });
    }
    workers.clear();
    for (const std::string& failure : failures)
    {
        EXPECT_EQ(failure, "");
    }
}

std::string NameOfRow(const testing::TestParamInfo<Row>& row)
{
    constexpr const char* kDialogs[] = {"DialogShown", "DialogMinimised", "NoDialog"};
    constexpr const char* kDeliveries[] = {"Notification", "CopyData"};
    constexpr const char* kHosts[] = {"HostSilent", "HostRefuses", "HostAnswers", "UserCancels",
                                      "HostGone"};
    return std::string(kDialogs[static_cast<int>(row.param.dialog)]) +
           kDeliveries[static_cast<int>(row.param.delivery)] +
           kHosts[static_cast<int>(row.param.host)];
}

INSTANTIATE_TEST_SUITE_P(Table, Matrix, testing::ValuesIn(kTable), &NameOfRow);

} // namespace
