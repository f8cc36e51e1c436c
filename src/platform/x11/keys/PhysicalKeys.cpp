#include "platform/x11/keys/PhysicalKeys.h"

#include <algorithm>
#include <array>

namespace platform::x11 {

namespace {

constexpr bool byLayout = true;
constexpr bool byName = false;

constexpr auto keys = std::to_array<PhysicalKey>({
    {0, 30, "A", byLayout},           {1, 31, "S", byLayout},
    {2, 32, "D", byLayout},           {3, 33, "F", byLayout},
    {4, 35, "H", byLayout},           {5, 34, "G", byLayout},
    {6, 44, "Z", byLayout},           {7, 45, "X", byLayout},
    {8, 46, "C", byLayout},           {9, 47, "V", byLayout},
    {10, 86, "<", byLayout},          {11, 48, "B", byLayout},
    {12, 16, "Q", byLayout},          {13, 17, "W", byLayout},
    {14, 18, "E", byLayout},          {15, 19, "R", byLayout},
    {16, 21, "Y", byLayout},          {17, 20, "T", byLayout},
    {18, 2, "1", byLayout},           {19, 3, "2", byLayout},
    {20, 4, "3", byLayout},           {21, 5, "4", byLayout},
    {22, 7, "6", byLayout},           {23, 6, "5", byLayout},
    {24, 13, "=", byLayout},          {25, 10, "9", byLayout},
    {26, 8, "7", byLayout},           {27, 12, "-", byLayout},
    {28, 9, "8", byLayout},           {29, 11, "0", byLayout},
    {30, 27, "]", byLayout},          {31, 24, "O", byLayout},
    {32, 22, "U", byLayout},          {33, 26, "[", byLayout},
    {34, 23, "I", byLayout},          {35, 25, "P", byLayout},
    {36, 28, "Return", byName},       {37, 38, "L", byLayout},
    {38, 36, "J", byLayout},          {39, 40, "'", byLayout},
    {40, 37, "K", byLayout},          {41, 39, ";", byLayout},
    {42, 43, "\\", byLayout},         {43, 51, ",", byLayout},
    {44, 53, "/", byLayout},          {45, 49, "N", byLayout},
    {46, 50, "M", byLayout},          {47, 52, ".", byLayout},
    {48, 15, "Tab", byName},          {49, 57, "Space", byName},
    {50, 41, "`", byLayout},          {51, 14, "Backspace", byName},
    {53, 1, "Esc", byName},           {64, 187, "F17", byName},
    {65, 83, "Num .", byName},        {67, 55, "Num *", byName},
    {69, 78, "Num +", byName},        {72, 115, "Volume Up", byName},
    {73, 114, "Volume Down", byName}, {74, 113, "Mute", byName},
    {75, 98, "Num /", byName},        {76, 96, "Num Enter", byName},
    {78, 74, "Num -", byName},        {79, 188, "F18", byName},
    {80, 189, "F19", byName},         {81, 117, "Num =", byName},
    {82, 82, "Num 0", byName},        {83, 79, "Num 1", byName},
    {84, 80, "Num 2", byName},        {85, 81, "Num 3", byName},
    {86, 75, "Num 4", byName},        {87, 76, "Num 5", byName},
    {88, 77, "Num 6", byName},        {89, 71, "Num 7", byName},
    {90, 190, "F20", byName},         {91, 72, "Num 8", byName},
    {92, 73, "Num 9", byName},        {93, 124, "\\", byLayout},
    {94, 89, "\\", byLayout},         {95, 95, "Num ,", byName},
    {96, 63, "F5", byName},           {97, 64, "F6", byName},
    {98, 65, "F7", byName},           {99, 61, "F3", byName},
    {100, 66, "F8", byName},          {101, 67, "F9", byName},
    {103, 87, "F11", byName},         {105, 183, "F13", byName},
    {106, 186, "F16", byName},        {107, 184, "F14", byName},
    {109, 68, "F10", byName},         {110, 127, "Menu", byName},
    {111, 88, "F12", byName},         {113, 185, "F15", byName},
    {114, 110, "Insert", byName},     {115, 102, "Home", byName},
    {116, 104, "Page Up", byName},    {117, 111, "Delete", byName},
    {118, 62, "F4", byName},          {119, 107, "End", byName},
    {120, 60, "F2", byName},          {121, 109, "Page Down", byName},
    {122, 59, "F1", byName},          {123, 105, "Left", byName},
    {124, 106, "Right", byName},      {125, 108, "Down", byName},
    {126, 103, "Up", byName},
});

const PhysicalKey* orNull(const PhysicalKey* found) {
    return found == keys.end() ? nullptr : found;
}

} // namespace

const PhysicalKey* physicalKey(std::uint16_t virtualCode) {
    return orNull(std::ranges::find(keys, virtualCode, &PhysicalKey::virtualCode));
}

const PhysicalKey* physicalKeyAt(xcb_keycode_t keycode) {
    return orNull(std::ranges::find(keys, keycode, &PhysicalKey::keycode));
}

} // namespace platform::x11
