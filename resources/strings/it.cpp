#include "strings/Tables.h"

namespace strings {

namespace {

constexpr Text texts[] = {
    {"BOUNDS_MESSAGE", "Seleziona i lati e gli angoli in cui il cursore agisce."},
    {"BOUNDS_MESSAGE_VELLUMOR_ADDICT", " Su un lato selezionato il cursore si nasconde subito."},
    {"OK", "OK"},
    {"WARNING", "Un solo monitor"},
};

} // namespace

const std::span<const Text> italian = texts;

} // namespace strings
