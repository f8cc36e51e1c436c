#pragma once

#include <string>

namespace palisor {

/// A check box of the bounds panel, as data; the platform draws it.
struct CheckBox {
    int tag = 0;
    int state = 0; ///< 1 checked
    bool enabled = true;
    double alpha = 1;
    std::string action; ///< selector sent when it is clicked; empty for none
};

} // namespace palisor
