// More than one sheet in a process: on one thread, one within the other's messages, and on several; beside
// the printer's properties and sheets that never came. None touches what another driver call has freed, and
// each commits its own.
#include <memory>
#include <thread>

#include "resources/resource.h"
#include "tests/support/Counters.h"
#include "tests/support/SheetTest.h"

namespace kzp::test {
namespace {

using driverhost::PlugIn;
using driverhost::SessionVector;

// What drivers may do, each with one sheet at a time and with several.
struct DriverHabits {
    bool namesInitParam = true;      // PROPSHEETUI_INFO.lParamInit
    bool otherBlockAtFirst = false;  // the first CommonUIProp's, freed before the second
    bool destroysBeforeWindows = false;
};

// What a user chooses in a sheet, and what its commit stores where.
struct Choice {
    const wchar_t* left;
    float millimeters;
    std::vector<int> buttons;
    LONG landscape, fontItem, locationItem;
    DWORD outputType;
};
const Choice kChoices[] = {
    {L"0.5", 12.7f, {IDC_LANDSCAPE, IDC_OUTPUT_KZP, IDC_FONTS_ALL, IDC_USER_LOCATION}, 1, 0, 1, 1},
    {L"1", 25.4f, {IDC_PORTRAIT, IDC_OUTPUT_KZPX, IDC_FONTS_NONE, IDC_DOCUMENTS_LOCATION}, 0, 1, 0, 2}};

// A sheet of plain windows without a loop of its own, driven by a driver of other habits. What the driver
// frees becomes inaccessible, so that a plug-in that still looks there crashes.
class DrivenSheet {
  public:
    explicit DrivenSheet(const PlugIn& plugIn, DriverHabits habits = {})
        : m_habits(habits), m_session(plugIn, {.plugInItem = true}) {}
    ~DrivenSheet() {
        if (!m_habits.destroysBeforeWindows)
            m_window.Reset();
        TellPages(PROPSHEETUI_REASON_DESTROY);
    }

    // One window is frame and the driver's page, which is activated, and holds the plug-in's two.
    void Open() {
        if (m_habits.otherBlockAtFirst)
            m_session.Object()->CommonUIProp(OEMCUIP_DOCPROP,
                                             SessionVector<OEMCUIPPARAM>{m_session.UIParam()}.data());
        m_session.PresentItems();
        const LPARAM param = m_habits.namesInitParam ? reinterpret_cast<LPARAM>(&m_session.SheetParam()) : 0;
        m_info[0] = {sizeof m_info[0], PROPSHEETUI_INFO_VERSION, 0, 0, this, AddPage, param, 0, 0};
        TellPages(PROPSHEETUI_REASON_INIT);
        m_window.Reset(CreateWindowExW(0, L"STATIC", L"", WS_OVERLAPPEDWINDOW, 0, 0, 480, 420, nullptr,
                                       nullptr, nullptr, nullptr));
        m_session.TellCallback(CPSUICB_REASON_SETACTIVE, m_window.Get());
        for (const PROPSHEETPAGEW& page : m_added)
            CreateDialogParamW(page.hInstance, page.pszTemplate, m_window.Get(), page.pfnDlgProc,
                               reinterpret_cast<LPARAM>(&page));
    }

    HWND Find(int id) const {
        for (const HWND control : driverhost::Descendants(m_window.Get())) {
            if (GetDlgCtrlID(control) == id)
                return control;
        }
        return nullptr;
    }
    void Click(int button) const { SendMessageW(Find(button), BM_CLICK, 0, 0); }

    void Make(const Choice& choice) const {
        SetWindowTextW(Find(IDC_LEFT), choice.left);
        for (const int button : choice.buttons)
            Click(button);
    }

    void ExpectCommitted(const Choice& choice) {
        EXPECT_EQ(CPSUICB_ACTION_OPTIF_CHANGED,
                  m_session.TellCallback(CPSUICB_REASON_APPLYNOW, m_window.Get()));
        EXPECT_EQ((std::vector{choice.millimeters, 0.f, 0.f, 0.f}), RecordMargins(m_session));
        EXPECT_EQ(choice.landscape, m_session.Tree().Items()[1].Sel);
        EXPECT_EQ(choice.fontItem, m_session.Tree().Items()[9].Sel);
        EXPECT_EQ(choice.locationItem, m_session.PlugInTree().Items()[0].Sel);
        for (const auto& call : m_session.Helper().Announcements())
            EXPECT_TRUE(call.rightSheet) << "told to the driver whose sheet it is";
        EXPECT_FALSE(m_session.Helper().Announcements().empty());
    }

  private:
    static LONG_PTR CALLBACK AddPage(HANDLE sheet, UINT function, LPARAM page, LPARAM) {
        auto& added = static_cast<DrivenSheet*>(sheet)->m_added;
        if (function == CPSFUNC_ADD_PROPSHEETPAGEW)
            added.push_back(*reinterpret_cast<const PROPSHEETPAGEW*>(page));
        return static_cast<LONG_PTR>(added.size());
    }
    void TellPages(WORD reason) {
        m_info[0].Reason = reason;
        m_session.Object()->DocumentPropertySheets(m_info.data(), m_info[0].lParamInit);
    }

    const DriverHabits m_habits;
    driverhost::UniqueWindow m_window;  // goes last
    std::vector<PROPSHEETPAGEW> m_added;
    driverhost::DocumentSession m_session;
    SessionVector<PROPSHEETUI_INFO> m_info{1};
};

class Together : public SheetTest {
  protected:
    std::unique_ptr<DrivenSheet> Open(DriverHabits habits = {}) {
        auto sheet = std::make_unique<DrivenSheet>(plugIn, habits);
        sheet->Open();
        EXPECT_NE(nullptr, sheet->Find(IDC_FONT_LIST));
        return sheet;
    }

    PlugIn plugIn;
};

TEST_F(Together, TwoSheetsOfOneThreadCommitTheirOwnInAnyOrder) {
    const DriverHabits habits[] = {
        {}, {.namesInitParam = false}, {.otherBlockAtFirst = true}, {.destroysBeforeWindows = true}};
    for (const DriverHabits& habit : habits) {
        for (const int first : {0, 1}) {
            SCOPED_TRACE(testing::Message() << "driver " << &habit - habits << ", first " << first);
            const int second = 1 - first;
            std::unique_ptr<DrivenSheet> sheets[2];
            for (const int sheet : {0, 1}) {
                sheets[sheet] = Open(habit);
                sheets[sheet]->Make(kChoices[sheet]);
            }
            sheets[first]->ExpectCommitted(kChoices[first]);
            EXPECT_EQ(kChoices[first].outputType, Setting(L"OutputType")->Dword());
            sheets[first].reset();
            for (const int choice : {first, second})
                sheets[second]->Click(kChoices[choice].buttons[0]);
            sheets[second]->ExpectCommitted(kChoices[second]);
            EXPECT_EQ(kChoices[second].outputType, Setting(L"OutputType")->Dword());
        }
    }
}

TEST_F(Together, SheetsOfSeveralThreadsCommitTheirOwn) {
    constexpr int kRounds = 10;
    // When two threads ask for a font's text cache first, Wine frees one that is still in its list; while an
    // edit of this sheet holds the cache, nobody asks first.
    const auto holder = Open();
    SendMessageW(holder->Find(IDC_LEFT), EM_POSFROMCHAR, 0, 0);
    std::vector<std::unique_ptr<DrivenSheet>> sheets;
    for (int sheet = 0; sheet < 2 * kRounds; ++sheet)
        sheets.push_back(std::make_unique<DrivenSheet>(plugIn));
    const auto use = [&](size_t begin) {
        for (size_t index = begin; index < sheets.size(); index += 2) {
            sheets[index]->Open();
            sheets[index]->Make(kChoices[begin]);
            sheets[index]->ExpectCommitted(kChoices[begin]);
            sheets[index].reset();
        }
    };
    std::thread other(use, 1);
    use(0);
    other.join();
}

// "Printer properties" beside "Printing preferences", and blocks that are presented and never shown: freed
// before the sheet opens and while the user is in it.
TEST_F(Together, BlocksThatNeverBecomeASheetAreLeftAlone) {
    constexpr DWORD kRefusedMode = 3;
    for (const DWORD mode : {DWORD{OEMCUIP_PRNPROP}, DWORD{OEMCUIP_DOCPROP}, kRefusedMode}) {
        SCOPED_TRACE(mode);
        const auto present = [&] {
            auto session = std::make_unique<driverhost::DocumentSession>(
                plugIn, driverhost::SessionOptions{.mode = mode});
            session->PresentItems();
            return session;
        };
        present();
        const auto sheet = Open();
        auto properties = present();
        sheet->Make(kChoices[0]);
        properties.reset();
        sheet->Click(IDC_PORTRAIT);
        sheet->Click(IDC_LANDSCAPE);
        sheet->ExpectCommitted(kChoices[0]);
    }
    const auto object = plugIn.CreateObject();
    const auto presentMany = [&] {
        for (int time = 0; time < 100; ++time)
            object->CommonUIProp(time % 2 ? OEMCUIP_PRNPROP : OEMCUIP_DOCPROP,
                                 SessionVector<OEMCUIPPARAM>(1).data());
        return static_cast<double>(CountHeapBlocks());
    };
    const double before = presentMany();
    EXPECT_NEAR(before, presentMany(), 20) << "nothing of them is kept";
}

}  // namespace
}  // namespace kzp::test
