// The modes in which the processor computes belong to the thread, and so to the host: rounding, precision,
// whether a division by zero or a NaN ends the program.
#pragma once

namespace kzp {

// Computing as Windows starts every thread, for as long as it lives; then the host's modes are back, with the
// flags that its own computations have raised.
class PlainFloatingPoint {
  public:
    PlainFloatingPoint() {  // cppcheck-suppress uninitMemberVar ; the instructions write both
        asm volatile("fnstenv %0\n\tfldcw %2\n\tstmxcsr %1\n\tldmxcsr %3"
                     : "=m"(m_x87), "=m"(m_sse)
                     : "m"(kPlainX87), "m"(kPlainSse)
                     : "memory");
    }
    ~PlainFloatingPoint() { asm volatile("fldenv %0\n\tldmxcsr %1" : : "m"(m_x87), "m"(m_sse) : "memory"); }
    PlainFloatingPoint(const PlainFloatingPoint&) = delete;
    PlainFloatingPoint& operator=(const PlainFloatingPoint&) = delete;

  private:
    // To nearest, nothing ends the program; on the older unit 53 bits.
    static constexpr unsigned short kPlainX87 = 0x027F;
    static constexpr unsigned kPlainSse = 0x1F80;

    struct {
        unsigned char bytes[28];
    } m_x87;
    unsigned m_sse;
};

}  // namespace kzp
