// Random numbers that come again with the same seed, on every machine.
#pragma once

#include <cstdint>
#include <cstring>
#include <string>

namespace stress {

class Dice {
  public:
    explicit Dice(std::uint64_t seed = 0) : m_state(seed) {}

    std::uint64_t Roll() {
        std::uint64_t z = m_state += 0x9E3779B97F4A7C15;
        z = (z ^ (z >> 30)) * 0xBF58476D1CE4E5B9;
        z = (z ^ (z >> 27)) * 0x94D049BB133111EB;
        return z ^ (z >> 31);
    }
    // 0 to count - 1.
    int Below(int count) { return static_cast<int>(Roll() % static_cast<std::uint64_t>(count)); }
    bool OneIn(int count) { return Below(count) == 0; }
    template <class T, size_t count>
    const T& OneOf(const T (&list)[count]) {
        return list[Below(static_cast<int>(count))];
    }
    void Fill(void* block, size_t bytes) {
        for (auto* at = static_cast<std::uint8_t*>(block); bytes > 0; --bytes)
            *at++ = static_cast<std::uint8_t>(Roll() >> 32);
    }

  private:
    std::uint64_t m_state;
};

}  // namespace stress
