#include "platform/linux/system/TextCodec.h"
#include "platform/memory/TextCodec.h"

#include <gtest/gtest.h>

// What every codec promises.

namespace {

template <class Codec>
class TextCodecContract : public testing::Test {
  protected:
    Codec codec;
};

using Codecs = testing::Types<platform::memory::TextCodec, platform::linux::TextCodec>;
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

// The first are those of RFC 1321; the last ones end at the places where the padding changes.
TYPED_TEST(TextCodecContract, DigestsBytesOfEveryLength) {
    const std::pair<std::string, const char*> rows[] = {
        {"", "d41d8cd98f00b204e9800998ecf8427e"},
        {"a", "0cc175b9c0f1b6a831c399e269772661"},
        {"abc", "900150983cd24fb0d6963f7d28e17f72"},
        {"message digest", "f96b697d7cb7938d525a2f31aaf161d0"},
        {"abcdefghijklmnopqrstuvwxyz", "c3fcd3d76192e4007dfb496cca67e13b"},
        {"ABCDEFGHIJKLMNOPQRSTUVWXYZabcdefghijklmnopqrstuvwxyz0123456789",
         "d174ab98d277d9f5a5611c2c9f419d9f"},
        {"123456789012345678901234567890123456789012345678901234567890123456789012345678"
         "90",
         "57edf4a22be3c955ac49da2e2107b67a"}};
    for (const auto& [bytes, digest] : rows)
        EXPECT_EQ(this->codec.md5(bytes), digest) << bytes;
    const platform::memory::TextCodec other;
    for (std::size_t length = 50; length < 130; ++length) {
        const std::string bytes(length, '\xe8');
        EXPECT_EQ(this->codec.md5(bytes), other.md5(bytes)) << length;
    }
}

TYPED_TEST(TextCodecContract, DecodesBase64PassingOverWhatIsNotOfIt) {
    const std::pair<const char*, std::string> rows[] = {{"", ""},
                                                        {"QQ==", "A"},
                                                        {"QUI=", "AB"},
                                                        {"QUJD", "ABC"},
                                                        {"QQ", "A"},
                                                        {"QUI", "AB"},
                                                        {" Q\nU*J-D ", "ABC"},
                                                        {"+/+/", "\xfb\xff\xbf"},
                                                        {"Q", ""},
                                                        {"*", ""},
                                                        {"AAAA", std::string(3, '\0')}};
    for (const auto& [text, bytes] : rows)
        EXPECT_EQ(this->codec.base64Decoded(text), bytes) << text;
}

TYPED_TEST(TextCodecContract, ReadsAndWritesEveryByteOfMacRomanAndOfLatin1) {
    using platform::TextEncoding;
    std::string bytes;
    for (int byte = 0; byte < 0x100; ++byte)
        bytes += static_cast<char>(byte);
    const platform::memory::TextCodec other;
    for (const auto encoding : {TextEncoding::macRoman, TextEncoding::latin1}) {
        const auto text = this->codec.decoded(bytes, encoding);
        ASSERT_TRUE(text);
        EXPECT_EQ(text, other.decoded(bytes, encoding));
        EXPECT_EQ(this->codec.encoded(*text, encoding), bytes);
    }
    EXPECT_EQ(this->codec.decoded("\x8e\xdb\xca", TextEncoding::macRoman), "é€\u00a0");
    EXPECT_EQ(this->codec.decoded("\xe9", TextEncoding::latin1), "é");
}

TYPED_TEST(TextCodecContract, RefusesWhatAnEncodingLacks) {
    using platform::TextEncoding;
    EXPECT_EQ(this->codec.encoded("€", TextEncoding::latin1), std::nullopt);
    EXPECT_EQ(this->codec.encoded("Ж", TextEncoding::macRoman), std::nullopt);
    EXPECT_EQ(this->codec.encoded("é", TextEncoding::ascii), std::nullopt);
    EXPECT_EQ(this->codec.decoded("\xe9", TextEncoding::ascii), std::nullopt);
    for (const char* bytes : {"\xff", "\xc3", "\xed\xa0\x80"}) {
        EXPECT_EQ(this->codec.decoded(bytes, TextEncoding::utf8), std::nullopt);
        EXPECT_EQ(this->codec.encoded(bytes, TextEncoding::utf8), std::nullopt);
        EXPECT_EQ(this->codec.encoded(bytes, TextEncoding::latin1), std::nullopt);
    }
    EXPECT_EQ(this->codec.encoded("è\ufffd", TextEncoding::utf8), "è\ufffd");
    EXPECT_EQ(this->codec.decoded("è\ufffd", TextEncoding::utf8), "è\ufffd");
}

TYPED_TEST(TextCodecContract, ReadsAZeroTerminatedString) {
    using namespace std::string_literals;
    EXPECT_EQ(this->codec.fromCString("perché\0x"s), "perché");
    EXPECT_EQ(this->codec.fromCString("a\xff z"), "a\ufffd z");
    EXPECT_EQ(this->codec.fromCString(""), "");
}

} // namespace
