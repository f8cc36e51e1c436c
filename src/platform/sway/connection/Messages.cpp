#include "platform/sway/connection/Messages.h"

#include "platform/json/Parser.h"

#include <array>
#include <cstring>

namespace platform::sway {

namespace {

constexpr std::string_view magic = "i3-ipc";
constexpr std::size_t headerLength = magic.size() + 2 * sizeof(std::uint32_t);

std::uint32_t numberAt(std::string_view text, std::size_t position) {
    std::uint32_t number = 0;
    std::memcpy(&number, text.data() + position, sizeof number);
    return number;
}

} // namespace

// Numbers are the machine's own.
std::string headerOf(std::uint32_t type, std::size_t length) {
    const std::array<std::uint32_t, 2> numbers{static_cast<std::uint32_t>(length), type};
    std::string header(magic);
    header.append(reinterpret_cast<const char*>(numbers.data()), sizeof numbers);
    return header;
}

void Messages::add(std::string_view part) {
    if (!refused) text += part;
}

bool Messages::isFull() const {
    return text.size() > headerLength + longest;
}

void Messages::refuse() {
    refused = true;
    text.clear();
}

std::optional<Message> Messages::next() {
    if (text.size() < headerLength) return std::nullopt;
    const std::uint32_t length = numberAt(text, magic.size());
    const std::uint32_t type = numberAt(text, magic.size() + sizeof length);
    if (!text.starts_with(magic) || length > longest) {
        refuse();
        return std::nullopt;
    }
    if (text.size() < headerLength + length) return std::nullopt;
    auto value = json::Parser().parse(std::string_view(text).substr(headerLength, length));
    text.erase(0, headerLength + length);
    if (!value) {
        refuse();
        return std::nullopt;
    }
    std::optional<Message> message(std::in_place);
    message->type = type;
    message->value.held.swap(value->held);
    return message;
}

} // namespace platform::sway
