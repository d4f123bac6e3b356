// The commands of the script language, one function each.
#include <algorithm>
#include <cwctype>

#include "tools/driverhost/Screenshot.h"
#include "tools/driverhost/Script.h"
#include "tools/driverhost/Text.h"

namespace driverhost {

namespace {

int Id(const std::wstring& text) {
    return Number(text, L"a control's id");
}

// One of the two words; HostError for any other.
bool Either(const std::wstring& word, const wchar_t* yes, const wchar_t* no) {
    if (word != yes && word != no)
        throw HostError{Format(L"\"%ls\" or \"%ls\" is wanted, not \"%ls\"", yes, no, word.c_str())};
    return word == yes;
}

bool IsNumber(const std::wstring& text) {
    return !text.empty() &&
           std::all_of(text.begin(), text.end(), [](wchar_t c) { return c >= L'0' && c <= L'9'; });
}

std::wstring FileNamePart(std::wstring title) {
    for (wchar_t& character : title)
        character = std::iswalnum(character) ? static_cast<wchar_t>(std::towlower(character)) : L'-';
    return title;
}

std::wstring StateWord(const SheetUser& user, int id, const std::wstring& wanted) {
    if (wanted == L"checked" || wanted == L"unchecked")
        return user.Checked(id) ? L"checked" : L"unchecked";
    if (wanted == L"visible" || wanted == L"hidden")
        return user.Visible(id) ? L"visible" : L"hidden";
    if (wanted == L"enabled" || wanted == L"disabled")
        return user.Enabled(id) ? L"enabled" : L"disabled";
    throw HostError{Format(L"\"%ls\" is no state of a control", wanted.c_str())};
}

}  // namespace

void Script::Page(SheetUser& user, const Arguments& arguments) {
    if (IsNumber(arguments[0]))
        user.ClickTab(static_cast<int>(Number(arguments[0], L"a page")) - 1);
    else
        user.ClickTab(arguments[0]);
}

void Script::Tab(SheetUser& user, const Arguments& arguments) {
    user.PressCtrlTab(!arguments.empty() && Either(arguments[0], L"back", L"forth"));
}

void Script::Type(SheetUser& user, const Arguments& arguments) {
    user.Type(Id(arguments[0]), arguments[1]);
}

void Script::Click(SheetUser& user, const Arguments& arguments) {
    user.Click(Id(arguments[0]));
}

void Script::Select(SheetUser& user, const Arguments& arguments) {
    const std::wstring& entry = arguments[1];
    if (entry.size() > 1 && entry[0] == L'#' && IsNumber(entry.substr(1)))
        user.SelectIndex(Id(arguments[0]), static_cast<int>(Number(entry.substr(1), L"an entry")));
    else
        user.Select(Id(arguments[0]), entry);
}

void Script::Spin(SheetUser& user, const Arguments& arguments) {
    const LONG times = arguments.size() > 2 ? Number(arguments[2], L"the number of clicks") : 1;
    user.Spin(Id(arguments[0]), Either(arguments[1], L"up", L"down"), static_cast<int>(times));
}

void Script::Item(SheetUser& user, const Arguments& arguments) {
    user.CheckItem(Id(arguments[0]), arguments[1], Either(arguments[2], L"on", L"off"));
}

void Script::Box(SheetUser&, const Arguments& arguments) {
    constexpr struct {
        const wchar_t* name;
        int button;
    } buttons[] = {{L"ok", IDOK}, {L"cancel", IDCANCEL}, {L"yes", IDYES}, {L"no", IDNO}};
    for (const auto& button : buttons) {
        if (arguments[0] != button.name)
            continue;
        m_run.AnswerNextBox(button.button);
        m_boxShots.push_back(arguments.size() > 1 ? arguments[1] : L"");
        return;
    }
    throw HostError{Format(L"unknown button \"%ls\"", arguments[0].c_str())};
}

void Script::Browse(SheetUser&, const Arguments& arguments) {
    m_run.AnswerNextBrowser(arguments[0] == L"cancel" ? L"" : arguments[0]);
}

void Script::Apply(SheetUser& user, const Arguments&) {
    user.Apply();
}

void Script::Ok(SheetUser& user, const Arguments&) {
    user.Ok();
}

void Script::Cancel(SheetUser& user, const Arguments&) {
    user.Cancel();
}

void Script::Save(HWND window, const std::wstring& name) {
    CreateDirectoryW(m_outFolder.c_str(), nullptr);
    const std::wstring path = m_outFolder + L"\\" + name + L".png";
    SaveScreenshot(window, path);
    Say(L"saved " + path);
}

void Script::Shot(SheetUser& user, const Arguments& arguments) {
    HWND window = user.Sheet().Window();
    if (arguments.size() > 1)
        window = Either(arguments[1], L"desktop", L"page")
                     ? nullptr
                     : user.Sheet().PageWindow(user.Sheet().CurrentPage());
    Save(window, arguments[0]);
}

void Script::Shots(SheetUser& user, const Arguments& arguments) {
    const std::wstring prefix = arguments.empty() ? L"page" : arguments[0];
    std::vector<SheetStep> steps;
    for (int page = 0; page < user.Sheet().PageCount(); ++page) {
        steps.push_back([page](SheetUser& shown) { shown.ClickTab(page); });
        steps.push_back([this, page, prefix](SheetUser& shown) {
            Save(shown.Sheet().Window(),
                 Format(L"%ls-%d-", prefix.c_str(), page + 1) + FileNamePart(shown.Sheet().TabText(page)));
        });
    }
    m_run.AddNext(std::move(steps));
}

void Script::Controls(SheetUser& user, const Arguments&) {
    const HWND page = user.Sheet().PageWindow(user.Sheet().CurrentPage());
    EnumChildWindows(
        page,
        [](HWND child, LPARAM) -> BOOL {
            wchar_t name[64] = {};
            wchar_t text[128] = {};
            RECT place = {};
            GetClassNameW(child, name, 64);
            SendMessageW(child, WM_GETTEXT, 128, reinterpret_cast<LPARAM>(text));
            GetWindowRect(child, &place);
            MapWindowPoints(nullptr, GetParent(child), reinterpret_cast<POINT*>(&place), 2);
            Say(Format(L"  %5d %-18ls %4ld,%4ld %4ldx%-4ld%ls%ls \"%ls\"", GetDlgCtrlID(child), name,
                       place.left, place.top, place.right - place.left, place.bottom - place.top,
                       IsWindowVisible(child) ? L"" : L" hidden", IsWindowEnabled(child) ? L"" : L" disabled",
                       text));
            return TRUE;
        },
        0);
}

void Script::Expect(SheetUser& user, const Arguments& arguments) {
    std::wstring found;
    const std::wstring& wanted = arguments.back();
    if (arguments[0] == L"page")
        found = Format(L"%d", user.Sheet().CurrentPage() + 1);
    else if (arguments[1] == L"text")
        found = user.Text(Id(arguments[0]));
    else
        found = StateWord(user, Id(arguments[0]), wanted);
    if (found != wanted)
        throw HostError{
            Format(L"%ls is \"%ls\", not \"%ls\"", arguments[0].c_str(), found.c_str(), wanted.c_str())};
}

void Script::Wait(SheetUser&, const Arguments& arguments) {
    m_run.Wait(static_cast<DWORD>(Number(arguments[0], L"a time")));
}

}  // namespace driverhost
