#include "platform/session/PhysicalKeys.h"

#include <algorithm>
#include <array>
#include <span>

namespace platform::session {

namespace {

constexpr auto characters = std::to_array<PhysicalKey>({
    {0, 30, "A"},    {1, 31, "S"},   {2, 32, "D"},  {3, 33, "F"},  {4, 35, "H"},  {5, 34, "G"},
    {6, 44, "Z"},    {7, 45, "X"},   {8, 46, "C"},  {9, 47, "V"},  {10, 86, "<"}, {11, 48, "B"},
    {12, 16, "Q"},   {13, 17, "W"},  {14, 18, "E"}, {15, 19, "R"}, {16, 21, "Y"}, {17, 20, "T"},
    {18, 2, "1"},    {19, 3, "2"},   {20, 4, "3"},  {21, 5, "4"},  {22, 7, "6"},  {23, 6, "5"},
    {24, 13, "="},   {25, 10, "9"},  {26, 8, "7"},  {27, 12, "-"}, {28, 9, "8"},  {29, 11, "0"},
    {30, 27, "]"},   {31, 24, "O"},  {32, 22, "U"}, {33, 26, "["}, {34, 23, "I"}, {35, 25, "P"},
    {37, 38, "L"},   {38, 36, "J"},  {39, 40, "'"}, {40, 37, "K"}, {41, 39, ";"}, {42, 43, "\\"},
    {43, 51, ","},   {44, 53, "/"},  {45, 49, "N"}, {46, 50, "M"}, {47, 52, "."}, {50, 41, "`"},
    {93, 124, "\\"}, {94, 89, "\\"},
});

constexpr auto others = std::to_array<PhysicalKey>({
    {36, 28, "Return"},   {48, 15, "Tab"},        {49, 57, "Space"},        {51, 14, "Backspace"},
    {53, 1, "Esc"},       {64, 187, "F17"},       {65, 83, "Num ."},        {67, 55, "Num *"},
    {69, 78, "Num +"},    {72, 115, "Volume Up"}, {73, 114, "Volume Down"}, {74, 113, "Mute"},
    {75, 98, "Num /"},    {76, 96, "Num Enter"},  {78, 74, "Num -"},        {79, 188, "F18"},
    {80, 189, "F19"},     {81, 117, "Num ="},     {82, 82, "Num 0"},        {83, 79, "Num 1"},
    {84, 80, "Num 2"},    {85, 81, "Num 3"},      {86, 75, "Num 4"},        {87, 76, "Num 5"},
    {88, 77, "Num 6"},    {89, 71, "Num 7"},      {90, 190, "F20"},         {91, 72, "Num 8"},
    {92, 73, "Num 9"},    {95, 95, "Num ,"},      {96, 63, "F5"},           {97, 64, "F6"},
    {98, 65, "F7"},       {99, 61, "F3"},         {100, 66, "F8"},          {101, 67, "F9"},
    {103, 87, "F11"},     {105, 183, "F13"},      {106, 186, "F16"},        {107, 184, "F14"},
    {109, 68, "F10"},     {110, 127, "Menu"},     {111, 88, "F12"},         {113, 185, "F15"},
    {114, 110, "Insert"}, {115, 102, "Home"},     {116, 104, "Page Up"},    {117, 111, "Delete"},
    {118, 62, "F4"},      {119, 107, "End"},      {120, 60, "F2"},          {121, 109, "Page Down"},
    {122, 59, "F1"},      {123, 105, "Left"},     {124, 106, "Right"},      {125, 108, "Down"},
    {126, 103, "Up"},
});

using Keys = std::span<const PhysicalKey>;

const PhysicalKey* find(auto wanted, auto member) {
    for (const Keys keys : {Keys(characters), Keys(others)})
        if (const auto found = std::ranges::find(keys, wanted, member); found != keys.end())
            return &*found;
    return nullptr;
}

char folded(char c) {
    if (c == ' ') return '_';
    return c >= 'A' && c <= 'Z' ? static_cast<char>(c - 'A' + 'a') : c;
}

} // namespace

const PhysicalKey* physicalKey(std::uint16_t virtualCode) {
    return find(virtualCode, &PhysicalKey::virtualCode);
}

const PhysicalKey* physicalKeyAt(std::uint8_t keycode) {
    return find(keycode, &PhysicalKey::keycode);
}

bool isSameName(std::string_view a, std::string_view b) {
    return std::ranges::equal(a, b, {}, folded, folded);
}

} // namespace platform::session
