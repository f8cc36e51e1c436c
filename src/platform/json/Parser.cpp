#include "platform/json/Parser.h"

#include <nlohmann/json.hpp>

#include <utility>

namespace platform::json {

namespace {

using List = JsonValue::List;
using Object = JsonValue::Object;

ParseError errorAt(std::size_t byte) {
    return ParseError("not JSON at byte " + std::to_string(byte));
}

/// Makes a value of what the library's reader reports, which calls these names.
class Builder {
  public:
    Builder(JsonValue& root, std::size_t mostOpen) : place(&root), deepest(mostOpen) {}

    bool null() { return add({}); }
    bool boolean(bool flag) { return add({flag}); }
    bool number_integer(std::int64_t number) { return add({number}); }
    bool number_unsigned(std::uint64_t number) {
        return std::in_range<std::int64_t>(number)
                   ? number_integer(static_cast<std::int64_t>(number))
                   : number_float(static_cast<double>(number), {});
    }
    bool number_float(double number, const std::string&) { return add({number}); }
    bool string(std::string& text) { return add({std::move(text)}); }
    bool start_object(std::size_t) { return open({Object{}}); }
    bool start_array(std::size_t) { return open({List{}}); }
    bool end_object() { return close(); }
    bool end_array() { return close(); }
    bool key(std::string& name) {
        place = &std::get<Object>(levels.back()->held)[std::move(name)];
        return true;
    }
    template <class Bytes>
    bool binary(const Bytes&) {
        return false; // no text of JSON has one
    }
    template <class Error>
    bool parse_error(std::size_t byte, const std::string&, const Error&) {
        if constexpr (std::is_same_v<Error, nlohmann::json::out_of_range>)
            throw ParseError("not JSON that can be read: a number is too large");
        throw errorAt(byte);
    }

  private:
    bool add(JsonValue value) {
        if (!levels.empty())
            if (auto* list = std::get_if<List>(&levels.back()->held)) place = &list->emplace_back();
        *place = std::move(value);
        return true;
    }
    bool open(JsonValue value) {
        if (levels.size() == deepest)
            throw ParseError("not JSON that can be read: it is nested too deeply");
        add(std::move(value));
        levels.push_back(place);
        return true;
    }
    bool close() {
        levels.pop_back();
        return true;
    }

    JsonValue* place; ///< of the next value, or of the last one
    std::size_t deepest;
    std::vector<JsonValue*> levels; ///< the open lists and objects, none of which moves meanwhile
};

} // namespace

JsonValue read(std::string_view text, std::size_t deepest) {
    JsonValue value;
    Builder builder(value, deepest);
    nlohmann::json::sax_parse(text, &builder);
    // The library takes a zero byte for the end of the text.
    if (const auto zero = text.find('\0'); zero != text.npos) throw errorAt(zero + 1);
    return value;
}

std::optional<JsonValue> Parser::parse(std::string_view text) const {
    try {
        JsonValue value = read(text, deepest);
        const bool holdsOthers = value.held.index() >= JsonValue{List{}}.held.index();
        return holdsOthers ? std::optional(std::move(value)) : std::nullopt;
    } catch (const ParseError&) {
        return std::nullopt;
    }
}

} // namespace platform::json
