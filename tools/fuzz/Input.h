// Takes a fuzzer's bytes apart, and ends the run when an expectation is broken.
#pragma once

#include <algorithm>
#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <string>

namespace kzp::fuzz {

class Input {
  public:
    Input(const std::uint8_t* data, std::size_t size) : m_at(data), m_left(size) {}

    // Zeros behind the end.
    template <class T>
    T Take() {
        T value = {};
        const std::size_t bytes = std::min(sizeof value, m_left);
        if (bytes > 0)
            std::memcpy(&value, m_at, bytes);
        m_at += bytes;
        m_left -= bytes;
        return value;
    }

    std::wstring TakeText(std::size_t most) {
        std::wstring text;
        while (text.size() < most && m_left > 0) {
            // Mostly what is typed, now and then anything.
            const auto byte = Take<std::uint8_t>();
            text += byte < 0xF0 ? static_cast<wchar_t>(byte & 0x7F) : Take<wchar_t>();
        }
        return text;
    }

    std::size_t Left() const { return m_left; }

  private:
    const std::uint8_t* m_at;
    std::size_t m_left;
};

inline void Expect(bool truth, const char* what) {
    if (truth)
        return;
    std::fprintf(stderr, "broken: %s\n", what);
    std::abort();
}

}  // namespace kzp::fuzz
