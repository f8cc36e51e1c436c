#include "testing/desktop/Product.h"

#include <fstream>
#include <gtest/gtest.h>

namespace desktop {
namespace {

TEST(Libraries, OfWaylandAreNotLoadedOnX11) {
    Product product;
    product.start();
    std::ifstream maps("/proc/" + std::to_string(product.program->pid()) + "/maps");
    const std::string all{std::istreambuf_iterator<char>(maps), {}};
    ASSERT_NE(all.find("x11-session.so"), std::string::npos);
    EXPECT_EQ(all.find("wayland-session.so"), std::string::npos);
    EXPECT_EQ(all.find("libwayland"), std::string::npos);
}

TEST(Libraries, OfX11AreUsedWhereOnlyTheNameOfACompositorIsLeft) {
    Product product;
    product.desktop.setVariable("WAYLAND_DISPLAY", "wayland-1");
    product.desktop.setVariable("SWAYSOCK", product.desktop.runtimeFolder() / "sway.sock");
    product.start();
    EXPECT_TRUE(product.isCovered(1));
}

} // namespace
} // namespace desktop
