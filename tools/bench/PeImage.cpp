#include "tools/bench/PeImage.h"

#include <windows.h>

#include <cstdlib>
#include <cstring>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <stdexcept>

namespace kzp::bench {

namespace {

class Image {
  public:
    explicit Image(std::vector<char> bytes) : m_bytes(std::move(bytes)) {
        const auto dos = At<IMAGE_DOS_HEADER>(0);
        m_headers = At<IMAGE_NT_HEADERS64>(static_cast<size_t>(dos.e_lfanew));
        if (m_headers.OptionalHeader.Magic != IMAGE_NT_OPTIONAL_HDR64_MAGIC)
            throw std::runtime_error("not a 64-bit image");
        const size_t table = static_cast<size_t>(dos.e_lfanew) + sizeof m_headers;
        for (size_t index = 0; index < m_headers.FileHeader.NumberOfSections; ++index)
            m_sections.push_back(At<IMAGE_SECTION_HEADER>(table + index * sizeof(IMAGE_SECTION_HEADER)));
    }

    const std::vector<IMAGE_SECTION_HEADER>& Sections() const { return m_sections; }

    // A name of more than eight characters stands in the file's table of texts, behind its symbols.
    std::string Name(const IMAGE_SECTION_HEADER& section) const {
        const auto* const name = reinterpret_cast<const char*>(section.Name);
        if (name[0] != '/')
            return {name, strnlen(name, sizeof section.Name)};
        const IMAGE_FILE_HEADER& file = m_headers.FileHeader;
        const size_t symbols = file.NumberOfSymbols;
        const size_t texts = file.PointerToSymbolTable + symbols * IMAGE_SIZEOF_SYMBOL;
        return TextAt(texts + std::strtoul(name + 1, nullptr, 10));
    }

    DWORD ImportTable() const {
        return m_headers.OptionalHeader.DataDirectory[IMAGE_DIRECTORY_ENTRY_IMPORT].VirtualAddress;
    }

    // What will stand at an address of the loaded image.
    template <class Record>
    Record Loaded(size_t address) const {
        return At<Record>(Offset(address));
    }

    std::string LoadedText(size_t address) const { return TextAt(Offset(address)); }

  private:
    template <class Record>
    Record At(size_t offset) const {
        Record record;
        if (offset > m_bytes.size() || m_bytes.size() - offset < sizeof record)
            throw std::runtime_error("the image is cut off");
        std::memcpy(&record, m_bytes.data() + offset, sizeof record);
        return record;
    }

    std::string TextAt(size_t offset) const {
        if (offset > m_bytes.size())
            throw std::runtime_error("the image is cut off");
        return {m_bytes.data() + offset, strnlen(m_bytes.data() + offset, m_bytes.size() - offset)};
    }

    size_t Offset(size_t address) const {
        for (const IMAGE_SECTION_HEADER& section : m_sections) {
            if (address >= section.VirtualAddress && address - section.VirtualAddress < section.SizeOfRawData)
                return address - section.VirtualAddress + section.PointerToRawData;
        }
        throw std::runtime_error("an address outside the image");
    }

    std::vector<char> m_bytes;
    IMAGE_NT_HEADERS64 m_headers;
    std::vector<IMAGE_SECTION_HEADER> m_sections;
};

size_t CountThunks(const Image& image, DWORD table) {
    size_t count = 0;
    while (image.Loaded<ULONGLONG>(table + count * sizeof(ULONGLONG)) != 0)
        ++count;
    return count;
}

}  // namespace

PeImage ReadPeImage(const std::wstring& path) {
    std::ifstream file(std::filesystem::path(path), std::ios::binary);
    std::vector<char> bytes{std::istreambuf_iterator<char>(file), {}};
    PeImage result;
    result.fileBytes = bytes.size();
    const Image image(std::move(bytes));
    for (const IMAGE_SECTION_HEADER& section : image.Sections())
        result.sections.push_back({image.Name(section), section.SizeOfRawData, section.Misc.VirtualSize});
    for (size_t entry = image.ImportTable(); entry != 0; entry += sizeof(IMAGE_IMPORT_DESCRIPTOR)) {
        const auto import = image.Loaded<IMAGE_IMPORT_DESCRIPTOR>(entry);
        if (import.Name == 0)
            break;
        result.imports.push_back({image.LoadedText(import.Name), CountThunks(image, import.FirstThunk)});
    }
    return result;
}

}  // namespace kzp::bench
