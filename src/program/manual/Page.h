#pragma once

#include "program/manual/Family.h"

// Pages of the manual, as man reads them.

namespace manual {

std::string productPage(const Member& product, const std::vector<Member>& family);
std::string doctorPage(const std::vector<Member>& family);

} // namespace manual
