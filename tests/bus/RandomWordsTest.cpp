#include "bus/RandomLines.h"
#include "doctor/Options.h"
#include "program/Options.h"

#include <gtest/gtest.h>

// Each is understood, or refused with a sentence.

namespace client {
namespace {

std::vector<char*> pointersTo(std::vector<std::string>& line) {
    std::vector<char*> pointers;
    for (std::string& word : line)
        pointers.push_back(word.data());
    pointers.push_back(nullptr); // as the system hands them over
    return pointers;
}

/// Whether it was understood.
bool checkCommand(std::vector<std::string> line) {
    const auto pointers = pointersTo(line);
    try {
        const Words words = parse(static_cast<int>(line.size()), pointers.data());
        EXPECT_FALSE(words.command == nullptr && words.json && !words.help);
        if (words.command == nullptr || words.help) return true;
        const int count = static_cast<int>(words.arguments.size());
        EXPECT_TRUE(count >= words.command->least && count <= words.command->most);
        EXPECT_TRUE(!words.json || words.command->prints);
        return true;
    } catch (const Failure& failure) {
        EXPECT_EQ(failure.status, Exit::wrongUsage);
        EXPECT_NE(failure.sentence, "");
        return false;
    }
}

bool checkProgram(std::vector<std::string> line) {
    auto pointers = pointersTo(line);
    const ParsedOptions parsed = parseOptions(static_cast<int>(line.size()), pointers.data());
    EXPECT_TRUE(parsed.error ? !parsed.error->empty() : products::contain(parsed.options.product))
        << *parsed.error;
    return !parsed.error;
}

bool checkDoctor(const std::vector<std::string>& line) {
    static const std::vector<std::string> known(products::names.begin(), products::names.end());
    const doctor::Options options = doctor::parseOptions(line, known);
    EXPECT_TRUE(options.error ? !options.error->empty() : products::contain(options.product))
        << *options.error;
    return !options.error;
}

TEST(RandomWords, AreUnderstoodOrRefused) {
    constexpr long usual = 20'000;
    const long count = fromEnvironment("PALISOR_RANDOM_LINES", usual);
    Lines lines(static_cast<unsigned>(fromEnvironment("PALISOR_RANDOM_SEED", 1)));
    long commandLines = 0, programLines = 0, doctorLines = 0;
    for (long index = 0; index < count && !testing::Test::HasFailure(); ++index) {
        const auto line = lines.next();
        SCOPED_TRACE(index);
        commandLines += checkCommand(line) ? 1 : 0;
        programLines += checkProgram(line) ? 1 : 0;
        doctorLines += checkDoctor(line) ? 1 : 0;
    }
    // Both ways are walked, or this shows little.
    for (const long understood : {commandLines, programLines, doctorLines}) {
        EXPECT_GT(understood, count / 100);
        EXPECT_LT(understood, count * 9 / 10);
    }
}

} // namespace
} // namespace client
