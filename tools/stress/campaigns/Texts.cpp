// Resource modules that are not there, are cut short at every place, or hold texts longer than any buffer.
#include <cstdio>
#include <vector>

#include "tests/support/Files.h"
#include "tools/driverhost/Text.h"
#include "tools/stress/Campaigns.h"
#include "tools/stress/World.h"

namespace stress {

namespace {

using kzp::test::TemporaryFolder;

constexpr wchar_t kModule[] = L"KZPWriterRes.dll";
constexpr LONG64 kFinePart = 2048;  // headers and resource directory: cut at every eighth byte
constexpr int kTextsInBlock = 16;
constexpr WORD kEnglish = MAKELANGID(LANG_ENGLISH, SUBLANG_ENGLISH_US);
constexpr int kTextsAskedFor[] = {101, 452, 500, 512, 552,  600,
                                  608, 656, 700, 800, 3051, 3056};  // one of each block
constexpr size_t kTextLengths[] = {65535, 259, 260, 261, 780, 4000, 32767};
constexpr LONG64 kCutsPerIteration = 16;

void Cut(const std::wstring& path, LONG64 bytes) {
    const HANDLE file = CreateFileW(path.c_str(), GENERIC_WRITE, 0, nullptr, OPEN_EXISTING, 0, nullptr);
    LARGE_INTEGER end;
    end.QuadPart = bytes;
    SetFilePointerEx(file, end, nullptr, FILE_BEGIN);
    SetEndOfFile(file);
    CloseHandle(file);
}

LONG64 SizeOf(const std::wstring& path) {
    WIN32_FILE_ATTRIBUTE_DATA data = {};
    GetFileAttributesExW(path.c_str(), GetFileExInfoStandard, &data);
    return data.nFileSizeLow;
}

// Every text that the plug-in asks for, of one length.
bool FillWithTexts(const std::wstring& path, size_t characters) {
    std::vector<WCHAR> block;
    for (int text = 0; text < kTextsInBlock; ++text) {
        block.push_back(static_cast<WCHAR>(characters));
        block.insert(block.end(), characters, static_cast<WCHAR>(L'A' + text));
    }
    const HANDLE update = BeginUpdateResourceW(path.c_str(), TRUE);
    if (!update)
        return false;
    bool filled = true;
    for (const int id : kTextsAskedFor)
        filled = UpdateResourceW(update, RT_STRING, MAKEINTRESOURCEW(id / kTextsInBlock + 1), kEnglish,
                                 block.data(), static_cast<DWORD>(block.size() * sizeof(WCHAR))) &&
                 filled;
    return EndUpdateResourceW(update, FALSE) && filled;
}

// The tree with help and the pages, without a sheet on the screen.
void UseTexts(Run& run, const std::wstring& dll) {
    const driverhost::PlugIn plugIn(dll);
    driverhost::SessionOptions options;
    options.features = driverhost::DriverTree::Standard(L"KZP Output");
    driverhost::DocumentSession session(plugIn, std::move(options));
    session.PresentItems();
    for (const auto& call : session.CommonUIPropCalls())
        run.Expect(call.result == S_OK, L"CommonUIProp refuses");
}

void ShowSheet(Run& run, const std::wstring& dll) {
    kzp::test::HostedSheet host({}, {}, dll);
    const QuietShell shell(host.plugIn.Module());
    const auto closed = PlaySheet(
        host,
        [&](driverhost::SheetUser& user) {
            for (int edit = 0; edit < 6; ++edit)
                EditAtRandom(user, run.Random());
        },
        Ending::kOk);
    run.Expect(closed.has_value(), L"the sheet does not open");
}

}  // namespace

void Texts(Run& run) {
    const kzp::test::ScratchRegistry registry;
    SetUpPrinter();
    WarmUpSheets();
    const LONG64 size = SizeOf(kzp::test::BesideExe(kModule));
    std::vector<LONG64> cuts;
    for (LONG64 at = 0; at < size; at += at < kFinePart ? run.Either(8, 128) : run.Either(64, 2048))
        cuts.push_back(at);
    const auto cutIterations = static_cast<LONG64>(cuts.size()) / kCutsPerIteration + 1;
    const auto lengths = run.Either(std::size(kTextLengths), 1);

    const TemporaryFolder folder;
    const std::wstring dll = folder.Take(L"KZPWriterUI.dll");
    for (run.Begin(1 + cutIterations + lengths, 2); run.Next();) {
        const LONG64 at = run.Iteration();
        if (at == 0) {
            run.Doing(L"no module");
            DeleteFileW(folder.File(kModule).c_str());
            UseTexts(run, dll);
            ShowSheet(run, dll);
            run.Tried();
        } else if (at <= cutIterations) {
            const auto first = static_cast<size_t>((at - 1) * kCutsPerIteration);
            for (size_t cut = first; cut < first + kCutsPerIteration && cut < cuts.size(); ++cut) {
                Cut(folder.Take(kModule), cuts[cut]);
                run.Doing(L"cut after %lld of %lld bytes", cuts[cut], size);
                UseTexts(run, dll);
                if (cut % static_cast<size_t>(run.Either(64, 8)) == 5)
                    ShowSheet(run, dll);
                run.Tried();
            }
        } else {
            const size_t characters = kTextLengths[at - 1 - cutIterations];
            run.Doing(L"texts of %zu characters", characters);
            if (!run.Expect(FillWithTexts(folder.Take(kModule), characters), L"no module with %zu characters",
                            characters))
                continue;
            UseTexts(run, dll);
            ShowSheet(run, dll);
            run.Tried();
        }
    }
}

}  // namespace stress
