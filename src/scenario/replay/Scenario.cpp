#include "scenario/replay/Scenario.h"

#include "platform/json/Parser.h"

namespace palisor::replay {

namespace {

// A call's arguments stand in a list of the step, and one of them may be a whole reply.
constexpr std::size_t deepest = platform::Json::deepest + 2;

bool isSkipped(const std::string& line) {
    return line.starts_with('#') || line.find_first_not_of(" \t\r") == std::string::npos;
}

} // namespace

std::optional<Json::Object> Scenario::next() {
    std::string text;
    while (std::getline(stream, text)) {
        ++lineNumber;
        if (isSkipped(text)) continue;
        try {
            Json step = platform::json::read(text, deepest);
            if (auto* members = std::get_if<Json::Object>(&step.held)) return std::move(*members);
        } catch (const platform::json::ParseError& error) {
            throw StepError(error.what());
        }
        throw StepError("a step must be a JSON object");
    }
    if (stream.bad()) {
        ++lineNumber;
        throw StepError("the line cannot be read");
    }
    return std::nullopt;
}

} // namespace palisor::replay
