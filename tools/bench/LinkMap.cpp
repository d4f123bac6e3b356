#include "tools/bench/LinkMap.h"

#include <cxxabi.h>
#include <algorithm>
#include <cstdlib>
#include <fstream>
#include <iterator>
#include <map>
#include <memory>
#include <sstream>
#include <stdexcept>

namespace kzp::bench {

namespace {

// An input section as the map lists it: ".text$SYMBOL ADDRESS SIZE FILE", the name on a line of its own when
// it is long.
struct Entry {
    std::string section;
    size_t bytes = 0;
    std::string file;
};

bool ReadPlace(std::istringstream& words, Entry& entry) {
    std::string address, size;
    if (!(words >> address >> size) || !address.starts_with("0x") || !size.starts_with("0x"))
        return false;
    entry.bytes = std::strtoull(size.c_str(), nullptr, 16);
    std::getline(words >> std::ws, entry.file);
    return !entry.file.empty();
}

std::string Readable(const std::string& symbol) {
    int status = 0;
    const std::unique_ptr<char, decltype(&std::free)> text(
        abi::__cxa_demangle(symbol.c_str(), nullptr, nullptr, &status), std::free);
    return status == 0 ? text.get() : symbol;
}

// The last part of a path; for a member of a library "library(member)" the member.
std::string ShortName(const std::string& file) {
    const size_t open = file.rfind('(');
    if (open != std::string::npos)
        return file.substr(open + 1, file.find(')', open) - open - 1);
    const size_t slash = file.find_last_of("/\\");
    return slash == std::string::npos ? file : file.substr(slash + 1);
}

std::string OriginOf(const std::string& file) {
    constexpr char kOurs[] = "KZPWriterUI.dir/";
    if (const size_t ours = file.find(kOurs); ours != std::string::npos) {
        const size_t folder = ours + std::size(kOurs) - 1;
        return file.substr(folder, file.find('/', folder) - folder) + "/";
    }
    const std::string library = file.substr(0, file.rfind('('));
    const std::string name = library.substr(library.find_last_of('/') + 1);
    if (name.starts_with("libstdc++") || name.starts_with("libsupc++"))
        return "C++ run-time library";
    if (name.starts_with("libgcc"))
        return "compiler's run-time (unwinding)";
    return "C run-time and import stubs";
}

bool IsCodeOrConstant(const std::string& section) {
    for (const char* const kind : {".text", ".rdata", ".data", ".bss", ".xdata", ".pdata"}) {
        if (section.starts_with(kind))
            return true;
    }
    return false;
}

// Unwind tables count with their origin, not as symbols of their own.
bool IsSymbolKind(const std::string& section) {
    return !section.starts_with(".xdata") && !section.starts_with(".pdata");
}

std::string SymbolOf(const Entry& entry) {
    const size_t dollar = entry.section.find('$');
    return dollar == std::string::npos || entry.section.find("zzz", dollar) != std::string::npos
               ? entry.section + " of " + ShortName(entry.file)
               : Readable(entry.section.substr(dollar + 1));
}

std::vector<LinkedPart> LargestFirst(const std::map<std::string, size_t>& sums) {
    std::vector<LinkedPart> parts;
    for (const auto& [name, bytes] : sums)
        parts.push_back({name, bytes});
    std::stable_sort(parts.begin(), parts.end(), [](const LinkedPart& left, const LinkedPart& right) {
        return left.bytes > right.bytes;
    });
    return parts;
}

}  // namespace

LinkMap ReadLinkMap(const std::string& path) {
    std::ifstream file(path);
    std::string line;
    while (std::getline(file, line) && !line.starts_with("Linker script and memory map"))
        ;  // before it stand the parts that were left out
    std::map<std::string, size_t> origins, symbols;
    LinkMap map;
    Entry entry;
    while (std::getline(file, line)) {
        std::istringstream words(line);
        if (line.starts_with(" .")) {
            entry = {};
            words >> entry.section;
        } else if (entry.section.empty() || !line.starts_with("        ")) {
            entry.section.clear();
            continue;
        }
        if (!ReadPlace(words, entry))
            continue;
        // The library's last entry ends the table.
        if (entry.section.starts_with(".ctors") && ShortName(entry.file) != "crtend.o")
            map.initialisers.push_back(ShortName(entry.file));
        if (IsCodeOrConstant(entry.section) && entry.bytes != 0) {
            origins[OriginOf(entry.file)] += entry.bytes;
            if (IsSymbolKind(entry.section))
                symbols[SymbolOf(entry)] += entry.bytes;
        }
        entry.section.clear();
    }
    if (symbols.empty())
        throw std::runtime_error("no link map at " + path);
    map.origins = LargestFirst(origins);
    map.symbols = LargestFirst(symbols);
    return map;
}

}  // namespace kzp::bench
