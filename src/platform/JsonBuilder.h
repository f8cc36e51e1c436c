#pragma once

#include "platform/Json.h"

namespace platform {

/// Makes a value of what an event-based reader reports, and refuses what `Json` does not take. The
/// names and arguments are those that the reader of nlohmann-json calls; each operation answers
/// whether to read on.
class JsonBuilder {
  public:
    /// The value, once the whole text has been read.
    std::optional<JsonValue> take() &&;

    bool null() { return add({}); }
    bool boolean(bool flag) { return add({flag}); }
    bool number_integer(std::int64_t number) { return add({number}); }
    bool number_unsigned(std::uint64_t number);
    bool number_float(double number, const std::string& text);
    bool string(std::string& text) { return add({std::move(text)}); }
    bool key(std::string& name);
    bool start_object(std::size_t) { return open({JsonValue::Object{}}); }
    bool end_object() { return close(); }
    bool start_array(std::size_t) { return open({JsonValue::List{}}); }
    bool end_array() { return close(); }

    template <class Bytes>
    bool binary(const Bytes&) {
        return false; // no text of JSON has one
    }
    template <class Error>
    bool parse_error(std::size_t, const std::string&, const Error&) {
        return false;
    }

  private:
    struct Level {
        JsonValue value; ///< the list or object that is open
        std::string key; ///< of the next member
    };

    bool add(JsonValue value);
    bool open(JsonValue value);
    bool close();

    std::vector<Level> levels;
    std::optional<JsonValue> root;
};

} // namespace platform
