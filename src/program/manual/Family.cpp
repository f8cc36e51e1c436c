#include "program/manual/Family.h"

#include "platform/linux/files/ProductBundle.h"
#include "platform/linux/login/DesktopEntry.h"
#include "program/Products.h"

#include <fstream>
#include <iterator>
#include <stdexcept>

namespace manual {

namespace {

class ThrowingLog final : public platform::Log {
  public:
    void write(std::string_view text) override { throw std::runtime_error(std::string(text)); }
};

Member member(const std::string& sourceTree, const std::string& name) {
    ThrowingLog log;
    const platform::linux::ProductBundle bundle(
        sourceTree + "/resources/products/" + name, "en",
        [](std::string_view, std::string_view key) { return key; }, log);
    Member one{.name = name,
               .title = bundle.displayName(),
               .version = bundle.version(),
               .identifier = std::string(bundle.string("CFBundleIdentifier")),
               .summary = {},
               .variant = bundle.integer("IDApp")};
    std::ifstream file(sourceTree + "/packaging/desktop/" + one.identifier + ".desktop");
    const std::string text{std::istreambuf_iterator<char>(file), {}};
    one.summary = platform::linux::DesktopEntry(text).string("Comment");
    if (one.summary.empty() || one.variant == 0)
        throw std::runtime_error("nothing tells what " + name + " is");
    return one;
}

} // namespace

std::vector<Member> family(const std::string& sourceTree) {
    std::vector<Member> members;
    for (const auto name : products::names)
        members.push_back(member(sourceTree, std::string(name)));
    return members;
}

} // namespace manual
