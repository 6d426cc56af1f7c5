// The recipes that the handbook shows, run from their files against a host window.
#include "app/ResultCode.h"
#include "tests/recipes/RecipeRun.h"
#include "tests/support/CodePage.h"
#include "tests/support/ExpectedDifference.h"
#include "tests/support/MarkOfTheWeb.h"
#include "tests/support/OpenByShell.h"
#include "tests/support/Process.h"
#include "tests/support/ProgramPath.h"
#include "tests/support/Replace.h"
#include "tests/support/ScriptedHost.h"
#include "tests/support/Utf8.h"

#include <shellapi.h>

#include <cstring>
#include <fstream>

namespace
{

/// Writes UTF-8 as UTF-16 with its mark, the one form in which registry files can name any path.
void WriteAsUtf16(const std::wstring& file, const std::string& utf8)
{
    const std::wstring text = L'\xFEFF' + FromCodePage(CP_UTF8, utf8);
    std::ofstream(std::filesystem::path(file), std::ios::binary)
        .write(reinterpret_cast<const char*>(text.data()),
               static_cast<std::streamsize>(text.size() * sizeof(wchar_t)));
}

/// A registry file of the recipe, with the program's path as its user has to put it in, taken into
/// the registry.
void ImportWithPath(const wchar_t* name)
{
    std::string content = ContentOf(RecipePath(name));
    std::string path = Utf8(BuiltProgram(L"quillet.exe").wstring());
    Replace(path, "\\", R"(\\)");
    Replace(content, R"(C:\\Program Files\\Quillet\\quillet.exe)", path);
    // Wine looks for schemes among the machine's classes only, Windows among the user's as well.
    if (SchemesAreOfTheMachineOnly())
    {
        Replace(content, "HKEY_CURRENT_USER", "HKEY_LOCAL_MACHINE");
    }
    const std::wstring file = ScratchPath(L"import.reg");
    WriteAsUtf16(file, content);
    const Outcome outcome = RunInCmd(L"reg import " + Quoted(file));
    EXPECT_EQ(outcome.exitCode, 0) << outcome.output;
}

/// Newer Windows versions bring it as a feature that can be taken away.
bool HasVBScript()
{
    wchar_t system[MAX_PATH];
    ::GetSystemDirectoryW(system, MAX_PATH);
    return std::filesystem::exists(std::filesystem::path(system) / L"vbscript.dll");
}

/// Recipes in several languages that do the same: how each is started.
class RecipeSendText : public Recipe, public testing::WithParamInterface<const wchar_t*>
{
protected:
    void SetUp() override
    {
        if (std::wstring_view(GetParam()).ends_with(L".vbs") && !HasVBScript())
        {
            GTEST_SKIP() << "this Windows has no VBScript";
        }
    }

    static Outcome Run(const std::wstring& text = kText)
    {
        const std::wstring file = GetParam();
        const std::wstring interpreter = file.ends_with(L".vbs") ? L"cscript //nologo " : L"";
        return RunInCmd(interpreter + Quoted(RecipePath(file.c_str())) + L' ' + Quoted(text));
    }
};

TEST_P(RecipeSendText, SendsTheTextAndPassesTheAnswerOn)
{
    const RecipeHost host;
    const Outcome outcome = Run();
    EXPECT_EQ(outcome.exitCode, static_cast<int>(kAnswer));
    EXPECT_EQ(outcome.output, "Der Host hat mit 42 geantwortet.\r\n");
    host.ExpectText();
}

TEST_P(RecipeSendText, TellsAMissingHostFromSuccess)
{
    const Outcome outcome = Run();
    EXPECT_EQ(outcome.exitCode, kResultWindowNotFound);
    EXPECT_EQ(outcome.output, "Der Host ist nicht gestartet.\r\n");
}

TEST_P(RecipeSendText, TellsARefusalFromSuccess)
{
    const RecipeHost host(ReturnFromCopyData(FALSE));
    const Outcome outcome = Run();
    EXPECT_EQ(outcome.exitCode, kResultSendFailed);
    EXPECT_EQ(outcome.output, "Der Host hat den Text nicht angenommen.\r\n");
    host.ExpectText();
}

TEST_P(RecipeSendText, RefusesATextThatCouldHoldASwitch)
{
    const RecipeHost host;
    const ForeignHost foreign;
    for (const wchar_t* text : {kHostileText, L"Was heisst -?", L"- -NODLG", L""})
    {
        const Outcome outcome = Run(text);
        EXPECT_EQ(outcome.exitCode, -101) << text;
        EXPECT_EQ(outcome.output, "Nicht gesendet: der Text ist leer oder enthaelt, was als "
                                  "Schalter gelten koennte.\r\n");
    }
    EXPECT_TRUE(host.Received().empty());
    EXPECT_TRUE(foreign.Received().empty());
}

TEST_P(RecipeSendText, SendsATextWithDashesThatAreHarmless)
{
    constexpr wchar_t kHarmless[] = L"-nodlg: Vorgang-4711 - Muster & Co";
    const RecipeHost host;
    EXPECT_EQ(Run(kHarmless).exitCode, static_cast<int>(kAnswer));
    host.ExpectText(kHarmless);
}

INSTANTIATE_TEST_SUITE_P(, RecipeSendText,
                         testing::Values(L"batch\\send-text.cmd", L"vbscript\\send-text.vbs"),
                         [](const auto& instance) {
                             return std::wstring_view(instance.param).starts_with(L"batch")
                                        ? "Batch"
                                        : "VBScript";
                         });

// The line that the documents have everybody type first. It has neither quotes nor blanks in its
// values, so that what arrives does not depend on how `start` passes them on: Wine's sets them
// anew.
TEST_F(Recipe, FirstCallShowsTheAnswerAndItsTextArrives)
{
    const RecipeHost host;
    const Outcome outcome = RunInCmd(Quoted(RecipePath(L"batch\\first-call.cmd")) + L" <nul");
    EXPECT_NE(outcome.output.find("\r\n42\r\n"), std::string::npos) << outcome.output;
    host.ExpectText(L"Vorgang-4711");
}

TEST_F(Recipe, BatchNotificationArrivesAndCountsAsSuccess)
{
    const RecipeHost host;
    const Outcome outcome = RunInCmd(Quoted(RecipePath(L"batch\\notify.cmd")));
    EXPECT_EQ(outcome.exitCode, 0);
    EXPECT_EQ(outcome.output, "Abgeschickt.\r\n");
    const auto received = host.WaitForMessages(1);
    ASSERT_EQ(received.size(), 1u);
    EXPECT_EQ(received[0].message, WM_USER + 5u);
    EXPECT_EQ(received[0].wParam, 4711u);
    EXPECT_EQ(received[0].lParam, -1);
}

TEST_F(Recipe, BatchNotificationWithoutHostFails)
{
    const Outcome outcome = RunInCmd(Quoted(RecipePath(L"batch\\notify.cmd")));
    EXPECT_EQ(outcome.exitCode, 1);
    EXPECT_EQ(outcome.output, "Nicht abgeschickt, Exitcode -2.\r\n");
}

TEST_F(Recipe, ShortcutSendsItsText)
{
    if (!HasVBScript())
    {
        GTEST_SKIP() << "this Windows has no VBScript";
    }
    if (HasMarkOfTheWeb(BuiltProgram(L"quillet.exe")))
    {
        GTEST_SKIP() << "the shell would ask first: quillet.exe is marked as downloaded";
    }
    const std::wstring shortcut = ScratchPath(L"Vorgang 4711.lnk");
    const Outcome creation =
        RunInCmd(L"cscript //nologo " + Quoted(RecipePath(L"vbscript\\create-shortcut.vbs")) +
                 L' ' + Quoted(shortcut));
    ASSERT_EQ(creation.exitCode, 0) << creation.output;

    // The shell does not tell which process it starts for a shortcut; the dialog does.
    std::optional<Process> caller;
    const RecipeHost host([&](HWND window, const ReceivedMessage& message) {
        DWORD id = 0;
        ::GetWindowThreadProcessId(reinterpret_cast<HWND>(message.wParam), &id);
        caller.emplace(KernelHandle(::OpenProcess(PROCESS_ALL_ACCESS, FALSE, id)));
        return AnswerWith(kAnswer)(window, message);
    });
    EXPECT_GT(reinterpret_cast<INT_PTR>(::ShellExecuteW(nullptr, nullptr, shortcut.c_str(), nullptr,
                                                        nullptr, SW_SHOWNORMAL)),
              32);
    host.ExpectText();
    ASSERT_TRUE(host.WaitForAnswers(1));
    EXPECT_EQ(caller->WaitForExit(), static_cast<int>(kAnswer));
    std::filesystem::remove(shortcut);
}

/// The address of the page's link whose text is the recipes' one.
std::wstring LinkOfThePage()
{
    const std::string page = ContentOf(RecipePath(L"url-scheme\\links.html"));
    const std::size_t end = page.find("\">Vorgang 4711</a>");
    const std::size_t begin = page.rfind("href=\"", end);
    if (end == page.npos || begin == page.npos)
    {
        ADD_FAILURE() << "the page has no such link";
        return {};
    }
    const std::size_t first = begin + std::strlen("href=\"");
    std::string link = page.substr(first, end - first);
    Replace(link, "&amp;", "&");
    return {link.begin(), link.end()};
}

TEST_F(Recipe, LinkReachesTheHostWhileItsSchemeIsRegistered)
{
    const std::wstring link = LinkOfThePage();
    ASSERT_FALSE(link.empty());
    ImportWithPath(L"url-scheme\\register.reg");
    ASSERT_FALSE(HasFailure());
    {
        const RecipeHost host;
        EXPECT_EQ(OpenByShell(link), static_cast<int>(kAnswer));
        host.ExpectText();
    }
    ImportWithPath(L"url-scheme\\unregister.reg");
    HKEY scheme = nullptr;
    EXPECT_EQ(::RegOpenKeyExW(HKEY_CLASSES_ROOT, L"orvane-demo", 0, KEY_READ, &scheme),
              ERROR_FILE_NOT_FOUND);
}

} // namespace
