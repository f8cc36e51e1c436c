#include "platform/memory/TextCodec.h"
#include "platform/qt/QtTextCodec.h"

#include <gtest/gtest.h>

// What every codec promises.

namespace {

template <class Codec>
class TextCodecContract : public testing::Test {
  protected:
    Codec codec;
};

using Codecs = testing::Types<platform::memory::TextCodec, platform::qt::QtTextCodec>;
TYPED_TEST_SUITE(TextCodecContract, Codecs);

TYPED_TEST(TextCodecContract, EscapesOfTheAsciiCharactersWhatNoAddressMayHold) {
    std::string all;
    for (char c = 0x01; c < 0x7f; ++c)
        all += c;
    const auto encoded = this->codec.percentEncoded(all.substr(0x1f), "");
    EXPECT_EQ(encoded, "%20!%22%23$%25&'()*+,-./0123456789:;%3C=%3E?@ABCDEFGHIJKLMNOPQRSTUVWXYZ"
                       "%5B%5C%5D%5E_%60abcdefghijklmnopqrstuvwxyz%7B%7C%7D~");
}

TYPED_TEST(TextCodecContract, EscapesEachByteOfOtherLetters) {
    EXPECT_EQ(this->codec.percentEncoded("è€😀", ""), "%C3%A8%E2%82%AC%F0%9F%98%80");
}

TYPED_TEST(TextCodecContract, EscapesControlsAndZeroBytes) {
    EXPECT_EQ(this->codec.percentEncoded(std::string_view("a\n\0\x7f", 4), ""), "a%0A%00%7F");
}

TYPED_TEST(TextCodecContract, EscapesWhatItIsAskedToBesides) {
    EXPECT_EQ(this->codec.percentEncoded("a-b&c.d_e", "-&z"), "a%2Db%26c.d_e");
}

TYPED_TEST(TextCodecContract, GivesNothingForNothing) {
    EXPECT_EQ(this->codec.percentEncoded("", " "), "");
}

} // namespace
