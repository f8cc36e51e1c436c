#include "platform/linux/settings/PropertyList.h"

#include <cstdlib>
#include <limits>
#include <memory>
#include <plist/plist.h>
#include <type_traits>

namespace platform::linux {

namespace {

struct NodeDeleter {
    void operator()(plist_t node) const { plist_free(node); }
};
using Node = std::unique_ptr<std::remove_pointer_t<plist_t>, NodeDeleter>;

struct FreeDeleter {
    void operator()(void* memory) const { std::free(memory); }
};
template <class T>
using Freed = std::unique_ptr<T, FreeDeleter>;

Node parse(std::string_view xml) {
    plist_t node = nullptr; // the parser leaves it untouched when it gives up
    if (xml.size() <= std::numeric_limits<std::uint32_t>::max())
        plist_from_xml(xml.data(), static_cast<std::uint32_t>(xml.size()), &node);
    return Node(node);
}

std::string toXml(plist_t node) {
    char* text = nullptr;
    std::uint32_t length = 0;
    plist_to_xml(node, &text, &length);
    const Freed<char> owner(text);
    return text == nullptr ? std::string{} : std::string(text, length);
}

/// Calls `each(key, node)` for what a dictionary holds; the nodes stay the dictionary's.
template <class Each>
void forEach(plist_t dictionary, Each&& each) {
    void* position = nullptr;
    plist_dict_new_iter(dictionary, &position);
    const Freed<void> owner(position);
    for (;;) {
        char* name = nullptr;
        plist_t node = nullptr;
        plist_dict_next_item(dictionary, position, &name, &node);
        const Freed<char> key(name);
        if (node == nullptr) return;
        each(std::string(key ? key.get() : ""), node);
    }
}

using Held = decltype(Value::held);

// The readers answer false for a value of a type that is none of ours.

bool readValue(plist_t node, Held& held);

bool readInteger(plist_t node, Held& held) {
    std::uint64_t bits = 0;
    plist_get_uint_val(node, &bits);
    const auto number = static_cast<std::int64_t>(bits);
    held = number;
    // A number beyond the signed range comes with the same bits as a negative one.
    return number >= 0 || toXml(node).find("<integer>-") != std::string::npos;
}

bool readData(plist_t node, Held& held) {
    char* bytes = nullptr;
    std::uint64_t length = 0;
    plist_get_data_val(node, &bytes, &length);
    const Freed<char> owner(bytes);
    auto& data = held.emplace<Data>();
    if (bytes != nullptr) data.assign(bytes, bytes + length);
    return true;
}

bool readText(plist_t node, Held& held) {
    char* text = nullptr;
    plist_get_string_val(node, &text);
    const Freed<char> owner(text);
    held.emplace<std::string>(text == nullptr ? "" : text);
    return true;
}

bool readFlag(plist_t node, Held& held) {
    std::uint8_t flag = 0;
    plist_get_bool_val(node, &flag);
    held = flag != 0;
    return true;
}

bool readDictionary(plist_t node, Held& held) {
    auto& dictionary = held.emplace<Dictionary>();
    bool complete = true;
    forEach(node, [&](std::string key, plist_t item) {
        complete = readValue(item, dictionary[std::move(key)].held) && complete;
    });
    return complete;
}

bool readValue(plist_t node, Held& held) {
    switch (plist_get_node_type(node)) {
    case PLIST_STRING:
        return readText(node, held);
    case PLIST_BOOLEAN:
        return readFlag(node, held);
    case PLIST_UINT:
        return readInteger(node, held);
    case PLIST_DATA:
        return readData(node, held);
    case PLIST_DICT:
        return readDictionary(node, held);
    default:
        return false;
    }
}

Node fromValue(const Value& value);

struct NodeMaker {
    plist_t operator()(const std::string& text) const { return plist_new_string(text.c_str()); }
    plist_t operator()(bool flag) const { return plist_new_bool(flag ? 1 : 0); }
    plist_t operator()(std::int64_t number) const {
        // libplist keeps 64 bits and shows them as signed.
        return plist_new_uint(static_cast<std::uint64_t>(number));
    }
    plist_t operator()(const Data& bytes) const {
        return plist_new_data(reinterpret_cast<const char*>(bytes.data()), bytes.size());
    }
    plist_t operator()(const Dictionary& dictionary) const {
        plist_t result = plist_new_dict();
        for (const auto& [key, value] : dictionary)
            plist_dict_set_item(result, key.c_str(), fromValue(value).release());
        return result;
    }
};

Node fromValue(const Value& value) {
    return Node(std::visit(NodeMaker{}, value.held));
}

} // namespace

ReadPropertyList readPropertyList(std::string_view text) {
    ReadPropertyList result;
    if (text.find_first_not_of(" \t\r\n") == std::string_view::npos) {
        result.wholeness = Wholeness::whole;
        return result;
    }
    const auto wholeness = checkPropertyList(text);
    if (wholeness == Wholeness::damaged) return result;
    if (constexpr std::string_view mark = "\xEF\xBB\xBF"; text.starts_with(mark))
        text.remove_prefix(mark.size());
    const Node root = parse(text);
    if (!root || plist_get_node_type(root.get()) != PLIST_DICT) return result;
    result.wholeness = wholeness;
    forEach(root.get(), [&](std::string key, plist_t node) {
        ListEntry& entry = result.list[std::move(key)];
        if (readValue(node, entry.value.emplace().held)) return;
        entry.value.reset();
        entry.foreign = toXml(node);
    });
    return result;
}

std::optional<std::string> writePropertyList(const PropertyList& list) {
    const Node root(plist_new_dict());
    for (const auto& [key, entry] : list) {
        Node node = entry.value ? fromValue(*entry.value) : parse(entry.foreign);
        if (!node) return std::nullopt;
        plist_dict_set_item(root.get(), key.c_str(), node.release());
    }
    std::string text = toXml(root.get());
    if (text.empty()) return std::nullopt;
    return text;
}

} // namespace platform::linux
