#include <cstdint>
#include <cstdlib>
#include <cstring>
#include <fstream>
#include <gtest/gtest.h>
#include <iterator>
#include <string>
#include <vector>

// The sound that ships, read as the player reads it.

namespace {

std::string fileNamed(const std::string& name) {
    std::ifstream file(SOUNDS "/" + name, std::ios::binary);
    return {std::istreambuf_iterator<char>(file), {}};
}

template <class Number>
Number numberAt(const std::string& bytes, std::size_t at) {
    Number number{};
    if (at + sizeof number <= bytes.size()) std::memcpy(&number, bytes.data() + at, sizeof number);
    return number;
}

TEST(Sound, IsAShortSoftPop) {
    const std::string bytes = fileNamed("sound.wav");
    ASSERT_GT(bytes.size(), 44u);
    EXPECT_LT(bytes.size(), 8u * 1024);
    EXPECT_EQ(bytes.substr(0, 4) + bytes.substr(8, 8) + bytes.substr(36, 4), "RIFFWAVEfmt data");
    const auto channels = numberAt<std::uint16_t>(bytes, 22);
    const auto rate = numberAt<std::uint32_t>(bytes, 24);
    EXPECT_EQ(channels, 1);
    EXPECT_EQ(numberAt<std::uint16_t>(bytes, 34), 16) << "bits";
    EXPECT_EQ(numberAt<std::uint32_t>(bytes, 40), bytes.size() - 44);

    std::vector<int> samples;
    for (std::size_t at = 44; at + 1 < bytes.size(); at += 2)
        samples.push_back(numberAt<std::int16_t>(bytes, at));
    EXPECT_LT(static_cast<double>(samples.size()) / rate, 0.1) << "seconds";
    int peak = 0;
    for (const int sample : samples)
        peak = std::max(peak, std::abs(sample));
    EXPECT_GT(peak, 32767 / 5);
    EXPECT_LT(peak, 32767 * 2 / 3) << "it plays over what the user listens to";
    // A jump at either end is heard as a crack.
    EXPECT_LT(std::abs(samples.front()), 100);
    EXPECT_LT(std::abs(samples.back()), 100);
}

} // namespace
