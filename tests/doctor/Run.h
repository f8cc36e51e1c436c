#pragma once

#include "testing/desktop/Product.h"

#include <string>
#include <vector>

namespace desktop {

/// What the doctor said, and how it ended.
struct Visit {
    int status = -1;
    std::string said;
    std::string errors;

    std::vector<std::string> lines() const;
    /// The line of a check without its key; empty where there is none.
    std::string of(const std::string& key) const;
    /// The keys of what is in trouble, in the order of the lines.
    std::vector<std::string> troubles() const;
};

/// Whether the part stands somewhere in the text.
bool holds(const std::string& text, const std::string& part);

Visit visit(const support::Environment& environment,
            const std::vector<std::string>& options = {"--product", "palisor"});

/// A desktop that has all that the program asks for, but for what is left out.
struct Whole : Product {
    struct Without {
        bool tray = false;
        bool compositor = false;
        std::string layout = "1920x1080+0+0,1280x1024+1920+56";
    };
    explicit Whole(const Without& without);
    Whole() : Whole(Without{}) {}

    Visit visit(const std::vector<std::string>& options = {"--product", "palisor"}) const {
        return desktop::visit(desktop.environment(), options);
    }

    std::unique_ptr<support::ChildProcess> tray, notices;
};

} // namespace desktop
