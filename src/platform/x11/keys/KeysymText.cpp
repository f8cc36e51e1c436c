#include "platform/x11/keys/KeysymText.h"

#include <cwctype>
#include <iterator>
#include <locale.h>
#include <string_view>

namespace platform::x11 {

namespace {

/// Keysyms from `first` on, with the characters that they stand for; a blank where there is none.
/// Only what layouts have without Shift.
struct Run {
    xcb_keysym_t first;
    std::u32string_view characters;
};

constexpr Run runs[] = {
    {0x01b1, U"ą˛ł ľśˇ šşťź˝žż"},                                  // Latin 2
    {0x01e0, U"ŕ  ă ĺć č ę ě  ďđńň  ő  řů ű  ţ˙"},                 // Latin 2
    {0x02b1, U"ħ    ĥ  ışğĵ  ż"},                                  // Latin 3
    {0x02e5, U"ċĉ"},                                               // Latin 3
    {0x02fd, U"ŭŝ"},                                               // Latin 3
    {0x03a2, U"ĸ"},                                                // Latin 4
    {0x03b3, U"ŗ ĩļ   ēģŧŊ ŋ"},                                    // Latin 4
    {0x03e0, U"ā      į    ė  ī ņōķ     ų   ũū"},                  // Latin 4
    {0x05c1, U"ءآأؤإئابةتثجحخدذرزسشصضطظعغ"},                       // Arabic
    {0x05e0, U"ـفقكلمنهوىي"},                                      // Arabic
    {0x06a1, U"ђѓёєѕіїјљњћќґўџ"},                                  // Cyrillic
    {0x06c0, U"юабцдефгхийклмнопярстужвьызшэщчъ"},                 // Cyrillic
    {0x07b1, U"άέήίϊΐόύϋΰώ"},                                      // Greek
    {0x07e1, U"αβγδεζηθικλμνξοπρσςτυφχψω"},                        // Greek
    {0x0ce0, U"אבגדהוזחטיךכלםמןנסעףפץצקרשת"},                      // Hebrew
    {0x0da1, U"กขฃคฅฆงจฉชซฌญฎฏฐฑฒณดตถทธนบปผฝพฟภมยรฤลฦวศษสหฬอฮฯะ"}, // Thai
    {0x13bc, U"Œœ"},                                               // Latin 9
    {0x20ac, U"€"},
    {0xfe50, U"`´^~¯˘˙¨°˝ˇ¸˛"}, // dead keys
};

constexpr xcb_keysym_t unicodeOffset = 0x01000000;

char32_t characterOf(xcb_keysym_t keysym) {
    if ((keysym > 0x20 && keysym < 0x7f) || (keysym > 0xa0 && keysym <= 0xff)) return keysym;
    if (keysym >= unicodeOffset + 0xa1 && keysym <= unicodeOffset + 0x10ffff)
        return keysym - unicodeOffset;
    for (const Run& run : runs)
        if (keysym >= run.first && keysym < run.first + run.characters.size()) {
            const char32_t character = run.characters[keysym - run.first];
            return character == U' ' ? 0 : character;
        }
    return 0;
}

/// Whatever the process's own locale is.
char32_t upperCase(char32_t character) {
    static const locale_t unicode = ::newlocale(LC_CTYPE_MASK, "C.UTF-8", nullptr);
    if (unicode != nullptr)
        return static_cast<char32_t>(::towupper_l(static_cast<std::wint_t>(character), unicode));
    return character >= U'a' && character <= U'z' ? character - 0x20 : character;
}

std::string utf8(char32_t character) {
    const auto follower = [character](int shift) {
        return static_cast<char>(0x80 | ((character >> shift) & 0x3f));
    };
    if (character < 0x80) return {static_cast<char>(character)};
    if (character < 0x800) return {static_cast<char>(0xc0 | (character >> 6)), follower(0)};
    if (character < 0x10000)
        return {static_cast<char>(0xe0 | (character >> 12)), follower(6), follower(0)};
    return {static_cast<char>(0xf0 | (character >> 18)), follower(12), follower(6), follower(0)};
}

} // namespace

std::string keysymText(xcb_keysym_t keysym) {
    const char32_t character = characterOf(keysym);
    return character == 0 ? std::string() : utf8(upperCase(character));
}

} // namespace platform::x11
