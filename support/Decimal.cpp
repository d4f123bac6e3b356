#include "support/Decimal.h"

#include <algorithm>
#include <bit>
#include <cstdint>
#include <limits>

namespace kzp {

namespace {

constexpr int kMantissaBits = 52;
constexpr std::uint64_t kHiddenBit = std::uint64_t{1} << kMantissaBits;
constexpr int kExponentBias = 1023;

// Powers of ten outside these bounds are not numbers that anybody shows or prints.
constexpr int kSmallestMagnitude = -300;
constexpr int kLargestMagnitude = 310;

// Longest text of an edit. Digits behind that many are taken for zeros.
constexpr int kMostDigits = 260;

// A whole number of any size that a text comes to: 10 to the power of 560, and one bit more.
class Whole {
  public:
    explicit Whole(std::uint64_t value) {
        for (; value != 0; value >>= 32)
            m_words[m_count++] = static_cast<std::uint32_t>(value);
    }

    bool IsZero() const { return m_count == 0; }

    void MultiplyAndAdd(std::uint32_t factor, std::uint32_t addend) {
        std::uint64_t carry = addend;
        for (size_t word = 0; word < m_count; ++word) {
            carry += std::uint64_t{m_words[word]} * factor;
            m_words[word] = static_cast<std::uint32_t>(carry);
            carry >>= 32;
        }
        if (carry != 0)
            m_words[m_count++] = static_cast<std::uint32_t>(carry);
    }

    void Double() { MultiplyAndAdd(2, 0); }

    // Answers the remainder.
    std::uint32_t DivideBy(std::uint32_t divisor) {
        std::uint64_t remainder = 0;
        for (size_t word = m_count; word-- > 0;) {
            remainder = (remainder << 32) | m_words[word];
            m_words[word] = static_cast<std::uint32_t>(remainder / divisor);
            remainder %= divisor;
        }
        Trim();
        return static_cast<std::uint32_t>(remainder);
    }

    // `other` is not larger.
    void Subtract(const Whole& other) {
        std::uint32_t borrow = 0;
        for (size_t word = 0; word < m_count; ++word) {
            const std::uint64_t taken = std::uint64_t{other.m_words[word]} + borrow;
            borrow = m_words[word] < taken;
            m_words[word] = static_cast<std::uint32_t>(m_words[word] - taken);
        }
        Trim();
    }

    friend bool operator<(const Whole& left, const Whole& right) {
        if (left.m_count != right.m_count)
            return left.m_count < right.m_count;
        for (size_t word = left.m_count; word-- > 0;) {
            if (left.m_words[word] != right.m_words[word])
                return left.m_words[word] < right.m_words[word];
        }
        return false;
    }

  private:
    void Trim() {
        while (m_count > 0 && m_words[m_count - 1] == 0)
            --m_count;
    }

    std::uint32_t m_words[60] = {};
    size_t m_count = 0;
};

// The double that is nearest to the quotient of two numbers, neither of them 0; a tie goes to the even one.
double Quotient(Whole dividend, Whole divisor) {
    int exponent = 0;
    while (dividend < divisor) {
        dividend.Double();
        --exponent;
    }
    for (Whole twice = divisor; twice.Double(), !(dividend < twice); divisor = twice)
        ++exponent;
    if (exponent > kExponentBias)
        return std::numeric_limits<double>::infinity();
    // By now the quotient lies between 1 and 2. One binary digit after the other, on paper as at school.
    std::uint64_t mantissa = 0;
    for (int bit = 0; bit <= kMantissaBits; ++bit) {
        const bool fits = !(dividend < divisor);
        if (fits)
            dividend.Subtract(divisor);
        mantissa = mantissa * 2 + fits;
        dividend.Double();
    }
    const bool tie = !(dividend < divisor) && !(divisor < dividend);
    if (tie ? mantissa % 2 != 0 : divisor < dividend)
        ++mantissa;
    // A mantissa that was rounded up to 2 carries into the exponent.
    return std::bit_cast<double>((static_cast<std::uint64_t>(exponent + kExponentBias) << kMantissaBits) +
                                 (mantissa - kHiddenBit));
}

template <class Character>
bool IsDigit(Character character) {
    return character >= '0' && character <= '9';
}

template <class Character>
bool TakeSign(const Character*& text) {
    const bool negative = *text == '-';
    if (negative || *text == '+')
        ++text;
    return negative;
}

// The run-time knows "d" as well.
template <class Character>
int ReadExponent(const Character* text) {
    if (*text != 'e' && *text != 'E' && *text != 'd' && *text != 'D')
        return 0;
    ++text;
    const bool negative = TakeSign(text);
    int exponent = 0;
    for (; IsDigit(*text); ++text)
        exponent = std::min(exponent * 10 + static_cast<int>(*text - '0'), 10000);
    return negative ? -exponent : exponent;
}

// From behind the sign.
template <class Character>
double ReadMagnitude(const Character* text) {
    Whole digits(0);
    int count = 0;     // of digits without leading zeros
    int exponent = 0;  // power of ten that `digits` is multiplied with
    bool point = false;
    for (; IsDigit(*text) || (*text == '.' && !point); ++text) {
        if (*text == '.') {
            point = true;
            continue;
        }
        const auto digit = static_cast<std::uint32_t>(*text - '0');
        const bool kept = count < kMostDigits;
        if (kept) {
            digits.MultiplyAndAdd(10, digit);
            count += !digits.IsZero();
        }
        exponent += static_cast<int>(!kept) - static_cast<int>(point);
    }
    if (digits.IsZero())
        return 0;
    exponent += ReadExponent(text);
    if (count + exponent < kSmallestMagnitude)
        return 0;
    if (count + exponent > kLargestMagnitude)
        return std::numeric_limits<double>::infinity();
    Whole divisor(1);
    for (; exponent > 0; --exponent)
        digits.MultiplyAndAdd(10, 0);
    for (; exponent < 0; ++exponent)
        divisor.MultiplyAndAdd(10, 0);
    return Quotient(digits, divisor);
}

template <class Character>
double Read(const Character* text) {
    while (*text == ' ' || (*text >= '\t' && *text <= '\r'))
        ++text;
    const bool negative = TakeSign(text);
    const double magnitude = ReadMagnitude(text);
    return negative ? -magnitude : magnitude;
}

}  // namespace

double ReadDecimal(const char* text) {
    return Read(text);
}

double ReadDecimal(const wchar_t* text) {
    return Read(text);
}

size_t HundredthsOf(double value, char (&digits)[kMostHundredthsDigits]) {
    const auto bits = std::bit_cast<std::uint64_t>(value);
    // The value is a whole number times a power of two.
    const int exponent = static_cast<int>(bits >> kMantissaBits & 0x7FF) - kExponentBias - kMantissaBits;
    std::uint64_t whole = ((bits & (kHiddenBit - 1)) | kHiddenBit) * 100;
    if (exponent < 0)
        whole = exponent < -61 ? 0 : (whole + (std::uint64_t{1} << (-exponent - 1))) >> -exponent;
    const bool tooLarge = exponent >= std::numeric_limits<float>::max_exponent - kMantissaBits;
    Whole hundredths(tooLarge ? 0 : whole);
    for (int doubled = 0; !tooLarge && doubled < exponent; ++doubled)
        hundredths.Double();
    size_t count = 0;
    while (count < 3 || !hundredths.IsZero())
        digits[count++] = static_cast<char>('0' + hundredths.DivideBy(10));
    return count;
}

}  // namespace kzp
