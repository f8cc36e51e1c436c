#include "scenario/replay/Scenario.h"

namespace palisor::replay {

namespace {

bool isSkipped(const std::string& line) {
    return line.starts_with('#') || line.find_first_not_of(" \t\r") == std::string::npos;
}

} // namespace

std::optional<Json> Scenario::next() {
    std::string text;
    while (std::getline(stream, text)) {
        ++lineNumber;
        if (isSkipped(text)) continue;
        try {
            Json step = Json::parse(text);
            if (!step.is_object()) throw StepError("a step must be a JSON object");
            return step;
        } catch (const Json::parse_error& error) {
            throw StepError("not JSON at byte " + std::to_string(error.byte));
        } catch (const Json::out_of_range&) {
            throw StepError("not JSON that can be read: a number is too large");
        }
    }
    if (stream.bad()) {
        ++lineNumber;
        throw StepError("the line cannot be read");
    }
    return std::nullopt;
}

} // namespace palisor::replay
