#pragma once

#include "platform/Bundle.h"

#include <string>

// What the label over a slider says of a value.

namespace palisor {

using TextOfValue = std::string (*)(const platform::Bundle& texts, double value);

std::string darknessText(const platform::Bundle& texts, double value); ///< 0 to 20
std::string timeText(const platform::Bundle& texts, double value);     ///< seconds
std::string sensibilityText(const platform::Bundle& texts, double value);

} // namespace palisor
