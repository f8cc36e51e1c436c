#include "platform/json/Writer.h"

#include <array>
#include <charconv>
#include <cmath>

namespace platform::json {

namespace {

template <std::floating_point T>
void writeNumber(std::string& out, T number) {
    if (!std::isfinite(number)) {
        out += "null";
        return;
    }
    std::array<char, 1100> digits; // the longest double has 1 sign, "0." and 1074 digits
    const auto [end, error] = std::to_chars(digits.data(), digits.data() + digits.size(), number,
                                            std::chars_format::fixed);
    out.append(digits.data(), end);
}

void writeEscaped(std::string& out, char c) {
    constexpr std::string_view named = "\"\\\b\f\n\r\t";
    constexpr std::string_view letters = "\"\\bfnrt";
    if (const auto index = named.find(c); index != std::string_view::npos) {
        out += {'\\', letters[index]};
        return;
    }
    constexpr std::string_view hexadecimal = "0123456789abcdef";
    const auto byte = static_cast<unsigned char>(c);
    out += {'\\', 'u', '0', '0', hexadecimal[byte >> 4], hexadecimal[byte & 15]};
}

} // namespace

void writeJson(std::string& out, std::nullptr_t) {
    out += "null";
}

void writeJson(std::string& out, double number) {
    writeNumber(out, number);
}

void writeJson(std::string& out, float number) {
    writeNumber(out, number);
}

void writeJson(std::string& out, Seconds time) {
    constexpr std::int64_t second = 1'000'000'000;
    out += std::to_string(time.nanoseconds / second);
    std::string fraction = std::to_string(second + time.nanoseconds % second);
    fraction[0] = '.';
    fraction.erase(fraction.find_last_not_of('0') + 1);
    if (fraction.size() > 1) out += fraction;
}

void writeJson(std::string& out, std::string_view text) {
    out += '"';
    for (const char c : text) {
        if (c == '"' || c == '\\' || static_cast<unsigned char>(c) < 0x20)
            writeEscaped(out, c);
        else
            out += c;
    }
    out += '"';
}

void writeJson(std::string& out, const Raw& value) {
    out += value.text;
}

void writeJson(std::string& out, Point point) {
    writeJson(out, std::vector{point.x, point.y});
}

void writeJson(std::string& out, Rect rect) {
    writeJson(out, std::vector{rect.x, rect.y, rect.width, rect.height});
}

void writeJson(std::string& out, const Data& data) {
    constexpr std::string_view letters =
        "ABCDEFGHIJKLMNOPQRSTUVWXYZabcdefghijklmnopqrstuvwxyz0123456789+/";
    out += '"';
    for (std::size_t i = 0; i < data.size(); i += 3) {
        std::uint32_t group = 0;
        for (std::size_t j = 0; j < 3; ++j)
            group = group << 8 | (i + j < data.size() ? data[i + j] : 0u);
        for (std::size_t j = 0; j < 4; ++j)
            out += i + j > data.size() ? '=' : letters[group >> (18 - 6 * j) & 63];
    }
    out += '"';
}

void writeJson(std::string& out, const Value& value) {
    std::visit([&out](const auto& held) { writeJson(out, held); }, value.held);
}

} // namespace platform::json
