#pragma once

#include <string>

namespace platform {

/// A check box as data; whoever shows it draws it from here.
struct CheckBox {
    int tag = 0;
    int state = 0; ///< 1 checked
    bool enabled = true;
    double alpha = 1;
    std::string action{}; ///< selector sent when it is clicked; empty for none
};

} // namespace platform
