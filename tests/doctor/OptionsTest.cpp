#include "doctor/Options.h"

#include <gtest/gtest.h>

namespace doctor {
namespace {

const std::vector<std::string> products = {"orbisant", "palisor"};

TEST(DoctorOptions, TakeTheProductFromTheCommandOrTheOption) {
    EXPECT_EQ(parseOptions({"/usr/bin/orbisant"}, products).product, "orbisant");
    EXPECT_EQ(parseOptions({"bin/palisor-doctor"}, products).product, "palisor");
    EXPECT_EQ(parseOptions({"palisor-doctor", "--product", "Orbisant"}, products).product,
              "orbisant");
    EXPECT_EQ(parseOptions({"x", "--product=orbisant"}, products).product, "orbisant");
    EXPECT_FALSE(parseOptions({"x", "--product=orbisant"}, products).error);
}

TEST(DoctorOptions, AreRefusedInOneLineThatNamesThem) {
    const std::vector<std::pair<std::vector<std::string>, std::string>> wrong = {
        {{"palisor-doctor", "--fast"}, "--fast"},
        {{"palisor-doctor", "--products"}, "--products"},
        {{"palisor-doctor", "tray"}, "tray"},
        {{"palisor-doctor", "--product"}, "orbisant, palisor"},
        {{"palisor-doctor", "--product", "nothing"}, "nothing"},
        {{"something"}, "something"},
    };
    for (const auto& [arguments, named] : wrong) {
        const auto error = parseOptions(arguments, products).error;
        ASSERT_TRUE(error) << named;
        EXPECT_NE(error->find(named), std::string::npos) << *error;
        EXPECT_EQ(error->find('\n'), std::string::npos) << *error;
    }
}

TEST(DoctorOptions, GoTogether) {
    const auto options = parseOptions({"palisor-doctor", "--rescue", "--json"}, products);
    EXPECT_TRUE(options.rescue && options.json);
    EXPECT_FALSE(options.error);
}

} // namespace
} // namespace doctor
