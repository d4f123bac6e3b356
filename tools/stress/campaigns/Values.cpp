// Registry values of every type and of lengths up to 4,096, under every name that the plug-in reads: through
// the settings store, through document events and the device-mode gate of the delivered DLL, and a sample of
// whole sheets.
#include <cstring>
#include <iterator>
#include <vector>

#include "resources/resource.h"
#include "settings/SettingsStore.h"
#include "tests/support/EdgeBlock.h"
#include "tools/driverhost/PrintCommand.h"
#include "tools/stress/Campaigns.h"
#include "tools/stress/World.h"

namespace stress {

namespace {

using namespace kzp::test;

constexpr int kLongest = 4096;
constexpr int kUnknownType = 0x1234;
constexpr wchar_t kViewerKey[] = L"SOFTWARE\\Wow6432Node\\Brimlake\\Plansight\\ProductInfo";

// REG_NONE to REG_QWORD, and one that nobody has defined.
constexpr int kTypes = REG_QWORD + 2;
DWORD Type(LONG64 index) {
    return index < kTypes - 1 ? static_cast<DWORD>(index) : kUnknownType;
}

constexpr const wchar_t* kStored[] = {kzp::kLaunchView, kzp::kPromptFileName, kzp::kDefaultDir,
                                      kzp::kPathDirs,   kzp::kOutputType,     kzp::kFontList};

struct Place {
    HKEY root;
    const wchar_t* key;
    const wchar_t* name;
};
// What documents read, and what sheets read beside it.
constexpr int kDocumentPlaces = 4;
const Place kPlaces[] = {{HKEY_CURRENT_USER, kSettingsKey, kzp::kLaunchView},
                         {HKEY_LOCAL_MACHINE, kProductKey, L"HelpFilePath"},
                         {HKEY_LOCAL_MACHINE, kViewerKey, L"Location"},
                         {HKEY_LOCAL_MACHINE, kQueueKey, L"Attributes"},
                         {HKEY_CURRENT_USER, kSettingsKey, kzp::kPromptFileName},
                         {HKEY_CURRENT_USER, kSettingsKey, kzp::kDefaultDir},
                         {HKEY_CURRENT_USER, kSettingsKey, kzp::kPathDirs},
                         {HKEY_CURRENT_USER, kSettingsKey, kzp::kOutputType},
                         {HKEY_CURRENT_USER, kSettingsKey, kzp::kFontList}};

// All up to 300, then around every 64th; or only those around the readers' own limits.
bool IsTried(int length, bool few) {
    const int around = (length + 1) % 64;
    const bool limit = length <= 5 || (length >= 255 && length <= 262) || (length >= 2046 && length <= 2050);
    return limit || length == kLongest || (!few && (length <= 300 || around <= 2));
}

void FillContents(Dice& dice, void* block, size_t bytes) {
    static constexpr wchar_t kHistory[] = L";C:\\a;;";
    auto* const at = static_cast<BYTE*>(block);
    switch (dice.Below(5)) {
        case 0:
            std::memset(block, 0, bytes);
            break;
        case 1:
            std::memset(block, 0xFF, bytes);
            break;
        case 2:
            dice.Fill(block, bytes);
            break;
        case 3:
            for (size_t byte = 0; byte < bytes; ++byte)
                at[byte] = byte % 2 ? 0 : 'Y';
            break;
        default:
            for (size_t byte = 0; byte < bytes; ++byte)
                at[byte] =
                    reinterpret_cast<const BYTE*>(kHistory)[byte % (sizeof kHistory - sizeof(wchar_t))];
    }
}

template <class Use>
void ForEachValue(Run& run, const Place& place, DWORD type, bool few, Use&& use) {
    BYTE block[kLongest];
    for (int length = 0; length <= kLongest; ++length) {
        if (!IsTried(length, few))
            continue;
        const auto bytes = static_cast<size_t>(length);
        FillContents(run.Random(), block, bytes);
        run.Doing(L"%ls, type %lu, %d bytes", place.name, type, length);
        WriteValue(place.root, place.key, place.name, type, block, bytes);
        use(length);
        run.Tried();
    }
}

void ReadThroughStore(Run& run, const wchar_t* name, DWORD type) {
    constexpr size_t kRoom = size_t{64} * 3;
    const EdgeBlock buffer(kRoom);
    ForEachValue(run, {HKEY_CURRENT_USER, kSettingsKey, name}, type, run.Brief(), [&](int length) {
        if (name == kzp::kOutputType) {
            DWORD number = 0;
            run.Expect(kzp::ReadDwordSetting(name, number) == 1, L"number not read");
            run.Expect(length <= 4 || number == 0, L"%lu from %d bytes", number, length);
        } else if (name == kzp::kFontList) {
            DWORD bytes = kRoom;
            run.Expect(kzp::ReadBinarySetting(name, buffer.Data(), bytes) == 1, L"list not read");
            run.Expect(bytes <= kRoom, L"%lu bytes for a buffer of %zu", bytes, kRoom);
        } else {
            std::wstring text;
            run.Expect(kzp::ReadStringSetting(name, text) == 1, L"text not read");
            run.Expect(text.size() < 1024 && text.size() <= static_cast<size_t>(length) / 2 + 1,
                       L"%zu characters from %d bytes", text.size(), length);
        }
    });
}

void ReadThroughDocuments(Run& run, const Place& place, DWORD type) {
    RegDeleteTreeW(HKEY_LOCAL_MACHINE, L"SOFTWARE");
    WriteText(HKEY_LOCAL_MACHINE, kProductKey, L"HelpFilePath", L"C:\\KZP\\writer.chm");
    WriteText(HKEY_LOCAL_MACHINE, kViewerKey, L"Location", L"C:\\windows\\");
    WriteText(HKEY_CURRENT_USER, kSettingsKey, kzp::kLaunchView, L"YES");
    WriteDword(HKEY_LOCAL_MACHINE, kQueueKey, L"Attributes", 0x40);
    const driverhost::PlugIn plugIn(driverhost::BesideProgram(L"KZPWriterUI.dll"));
    const QuietShell shell(plugIn.Module(), run.Random().OneIn(2));
    const auto object = plugIn.CreateObject();
    const bool few = run.Brief() || (type != REG_SZ && type != REG_BINARY);
    ForEachValue(run, place, type, few, [&](int) {
        for (const auto& call : driverhost::PrintDocument(object.Get(), nullptr, L"A document").calls)
            run.Expect(call.result == S_OK && call.answer == DOCUMENTEVENT_SUCCESS, L"event %d refused",
                       call.event);
        OEMDMPARAM size = {};
        run.Expect(object->DevMode(OEMDM_SIZE, &size) == S_OK, L"no size");
    });
}

void ReadThroughSheet(Run& run) {
    Dice& dice = run.Random();
    for (const Place& place : kPlaces) {
        if (dice.OneIn(4))
            continue;
        BYTE block[kLongest];
        const auto bytes = static_cast<size_t>(dice.OneIn(2) ? dice.Below(300) : dice.Below(kLongest + 1));
        FillContents(dice, block, bytes);
        WriteValue(place.root, place.key, place.name, Type(dice.Below(kTypes)), block, bytes);
        run.Tried();
    }
    run.Doing(L"a sheet over random values");
    HostedSheet host;
    const QuietShell shell(host.plugIn.Module());
    const auto closed = PlaySheet(
        host,
        [&](driverhost::SheetUser& user) {
            for (int edit = 0; edit < 6; ++edit)
                EditAtRandom(user, dice);
        },
        Ending::kOk);
    run.Expect(closed.has_value(), L"the sheet does not open");
}

}  // namespace

void Values(Run& run) {
    const ScratchRegistry registry;
    SetUpPrinter();
    const LONG64 store = static_cast<LONG64>(std::size(kStored)) * kTypes;
    const LONG64 documents = kDocumentPlaces * run.Either(kTypes, 2);
    ReadThroughDocuments(run, kPlaces[0], REG_DWORD);  // so that the counting begins with everything loaded
    if (!run.Brief())
        WarmUpSheets();
    for (run.Begin(store + documents + run.Either(40, 0), 1); run.Next();) {
        const LONG64 at = run.Iteration();
        if (at < store)
            ReadThroughStore(run, kStored[at / kTypes], Type(at % kTypes));
        else if (at < store + documents)
            ReadThroughDocuments(run, kPlaces[(at - store) % kDocumentPlaces],
                                 Type((at - store) / kDocumentPlaces + 1));
        else
            ReadThroughSheet(run);
    }
}

}  // namespace stress
