#include "program/Limits.h"

#include "app/Variants.h"

#include <algorithm>
#include <string_view>

namespace {

namespace variants = palisor::variants;

/// An ability that not every product has a use for.
struct Use {
    int variant;
    std::string_view capability;
    bool isAll; ///< the product is nothing without it
};

constexpr Use uses[] = {
    {variants::cursorHider, "hide", true},      {variants::cursorHider, "edges", false},
    {variants::desktopSwitcher, "edges", true}, {variants::desktopSwitcher, "workspaces", true},
    {variants::keepAwake, "awake", true},       {variants::wrapAround, "edges", true},
    {variants::wrapAround, "pause", false},     {variants::crossHair, "place", true},
};

} // namespace

bool concerns(int variant, const platform::Capability& capability) {
    const auto isAbout = [&](const Use& use) { return use.capability == capability.id; };
    return std::ranges::none_of(uses, isAbout) || std::ranges::any_of(uses, [&](const Use& use) {
               return use.variant == variant && isAbout(use);
           });
}

std::vector<std::string> limitsOf(int variant, const platform::Capabilities& capabilities) {
    std::vector<std::string> reasons;
    for (const Use& use : uses) {
        const auto found =
            std::ranges::find(capabilities, use.capability, &platform::Capability::id);
        if (use.variant == variant && use.isAll && found != capabilities.end() && !found->available)
            reasons.push_back(found->reason);
    }
    return reasons;
}
