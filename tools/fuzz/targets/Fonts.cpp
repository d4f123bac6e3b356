// Font records that others stored, and names looked up among the installed ones.
#include <vector>

#include "pages/advanced/FontList.h"
#include "tools/fuzz/Input.h"

using namespace kzp;
using kzp::fuzz::Expect;

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    fuzz::Input input(data, size);
    const auto record = input.Take<FontRecord>();
    const std::wstring name(FaceNameOf(record));
    Expect(name.size() < LF_FACESIZE, "31 characters at most");
    const FontRecord again = MakeFontRecord(name);
    Expect(FaceNameOf(again) == name && again.faceName[LF_FACESIZE - 1] == 0, "a name comes back whole");

    std::vector<std::wstring> names;
    while (input.Left() > 0 && names.size() < 40) {
        const size_t length = input.Take<std::uint8_t>() % 5;
        names.push_back(std::wstring(input.TakeText(length).c_str()));
    }
    names.push_back(name);
    const NameIndex index(names);
    for (const std::wstring& wanted : names) {
        int first = 0;
        while (lstrcmpiW(names[static_cast<size_t>(first)].c_str(), wanted.c_str()) != 0)
            ++first;
        Expect(index.Find(wanted) == first, "the first of several equals");
    }
    Expect(index.Find(L"no such font") == -1, "none");
    return 0;
}
