#include "strings/Tables.h"

namespace strings {

namespace {

constexpr Text texts[] = {
    {"BOUNDS_MESSAGE", "Tick the sides and corners at which the cursor acts."},
    {"BOUNDS_MESSAGE_VELLUMOR_ADDICT", " At a ticked side the cursor hides at once."},
    {"OK", "OK"},
    {"WARNING", "One monitor only"},
};

} // namespace

const std::span<const Text> english = texts;

} // namespace strings
