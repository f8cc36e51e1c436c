#pragma once

#include <string>

/// What the desktop knows the product by.
struct Product {
    std::string identifier; ///< also its name on the session bus, and that of its files
    std::string name;       ///< for people
    std::string icon;       ///< the name of a picture in its folder
};
