#include "platform/memory/TextCodec.h"

#include <array>
#include <bit>
#include <cmath>
#include <cstdint>

// As RFC 1321 tells it. The contract suite of codecs compares it with that of a library.

namespace platform::memory {

namespace {

using Words = std::array<std::uint32_t, 4>;
constexpr std::size_t blockLength = 64;
constexpr std::array<std::array<int, 4>, 4> turns{
    {{7, 12, 17, 22}, {5, 9, 14, 20}, {4, 11, 16, 23}, {6, 10, 15, 21}}};
constexpr std::array<unsigned, 4> factors{1, 5, 3, 7}; // which word a step takes
constexpr std::array<unsigned, 4> offsets{0, 1, 5, 0};

std::uint32_t sineWord(unsigned step) {
    return static_cast<std::uint32_t>(std::abs(std::sin(step + 1.0)) * 4294967296.0);
}

std::uint32_t wordAt(std::string_view block, std::size_t index) {
    std::uint32_t word = 0;
    for (std::size_t byte = 4; byte-- > 0;)
        word = word << 8 | static_cast<unsigned char>(block[index * 4 + byte]);
    return word;
}

void digestBlock(Words& state, std::string_view block) {
    auto [a, b, c, d] = state;
    for (unsigned step = 0; step < 64; ++step) {
        const unsigned round = step / 16;
        const std::uint32_t mixed = round == 0   ? (b & c) | (~b & d)
                                    : round == 1 ? (d & b) | (~d & c)
                                    : round == 2 ? b ^ c ^ d
                                                 : c ^ (b | ~d);
        const unsigned word = (factors[round] * step + offsets[round]) % 16;
        const std::uint32_t sum = a + mixed + sineWord(step) + wordAt(block, word);
        a = d;
        d = c;
        c = b;
        b += std::rotl(sum, turns[round][step % 4]);
    }
    state = {state[0] + a, state[1] + b, state[2] + c, state[3] + d};
}

} // namespace

std::string TextCodec::md5(std::string_view bytes) const {
    std::string padded(bytes);
    padded += '\x80';
    while (padded.size() % blockLength != blockLength - 8)
        padded += '\0';
    const std::uint64_t bits = std::uint64_t{bytes.size()} * 8;
    for (int shift = 0; shift < 64; shift += 8)
        padded += static_cast<char>(bits >> shift & 0xff);

    Words state{0x67452301, 0xefcdab89, 0x98badcfe, 0x10325476};
    for (std::size_t at = 0; at < padded.size(); at += blockLength)
        digestBlock(state, std::string_view(padded).substr(at, blockLength));

    static constexpr std::string_view digits = "0123456789abcdef";
    std::string text;
    for (const std::uint32_t word : state)
        for (int shift = 0; shift < 32; shift += 8) {
            text += digits[word >> (shift + 4) & 0xf];
            text += digits[word >> shift & 0xf];
        }
    return text;
}

} // namespace platform::memory
