#pragma once

#include "platform/Capabilities.h"

#include <string>
#include <vector>

// Which of a desktop's abilities matter to which product, by the product's number.

/// Whether the product has any use for it.
bool concerns(int variant, const platform::Capability& capability);

/// Why the desktop does not let a product do what it is for; empty where it does.
std::vector<std::string> limitsOf(int variant, const platform::Capabilities& capabilities);
