// Answers in the spooler's buffer layout: the structures first, what they point to packed at the end.
#pragma once

#include <windows.h>

#include <algorithm>
#include <cstring>
#include <string>
#include <vector>

#include "tools/standins/spooler/Calls.h"

namespace kzp::standins::spooler {

// Collects `Info` structures and the texts and blocks that belong to them, then hands all of it out in one
// buffer. As with the real spooler, blocks in the buffer are aligned to 2 bytes only.
template <class Info>
class Reply {
  public:
    // Starts the next structure; the following Texts and Blocks belong to it.
    void Add(const Info& info) { m_infos.push_back(info); }

    template <class Pointer>
    void Text(Pointer Info::* member, const std::wstring& text) {
        Block(member, text.c_str(), (text.size() + 1) * sizeof(wchar_t));
    }
    template <class Pointer>
    void Block(Pointer Info::* member, const void* data, size_t size) {
        Info& info = m_infos.back();
        const auto offset = reinterpret_cast<BYTE*>(&(info.*member)) - reinterpret_cast<BYTE*>(&info);
        std::vector<BYTE> bytes((size + 1) & ~size_t{1});
        std::memcpy(bytes.data(), data, size);
        m_attachments.push_back({m_infos.size() - 1, static_cast<size_t>(offset), std::move(bytes)});
    }

    // Answers the number of structures. `needed` becomes the size of the whole answer; when the buffer is
    // smaller (ERROR_INSUFFICIENT_BUFFER) it is left untouched.
    DWORD HandOut(BYTE* buffer, DWORD bytes, DWORD* needed) {
        Require(needed, ERROR_INVALID_PARAMETER);
        Require(buffer || bytes == 0, ERROR_INVALID_USER_BUFFER);
        size_t total = m_infos.size() * sizeof(Info);
        for (const Attachment& attachment : m_attachments)
            total += attachment.bytes.size();
        *needed = static_cast<DWORD>(total);
        Require(bytes >= total, ERROR_INSUFFICIENT_BUFFER);
        BYTE* end = buffer + (bytes & ~DWORD{1});
        for (const Attachment& attachment : m_attachments) {
            end -= attachment.bytes.size();
            std::ranges::copy(attachment.bytes, end);
            std::memcpy(reinterpret_cast<BYTE*>(&m_infos[attachment.info]) + attachment.pointerOffset, &end,
                        sizeof end);
        }
        std::copy_n(reinterpret_cast<const BYTE*>(m_infos.data()), m_infos.size() * sizeof(Info), buffer);
        return static_cast<DWORD>(m_infos.size());
    }

  private:
    struct Attachment {
        size_t info;
        size_t pointerOffset;
        std::vector<BYTE> bytes;  // always an even number of them
    };

    std::vector<Info> m_infos;
    std::vector<Attachment> m_attachments;
};

}  // namespace kzp::standins::spooler
