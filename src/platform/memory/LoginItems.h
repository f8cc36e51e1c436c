#pragma once

#include "platform/LoginItems.h"
#include "platform/memory/Effects.h"

namespace platform::memory {

class LoginItems final : public platform::LoginItems {
  public:
    explicit LoginItems(Effects& stream) : effects(stream) {}

    void setEnabled(const std::string& helperIdentifier, bool enabled) override {
        effects.emit("loginItem", Member{"identifier", helperIdentifier},
                     Member{"enabled", enabled});
    }

    bool hasSessionList() override { return listed; }
    std::vector<ListItem> sessionList() override { return items; }

    void insertLast(const std::string& path) override {
        effects.emit("loginListInsert", Member{"path", path});
        put(path);
    }

    void remove(const ListItem& item) override {
        effects.emit("loginListRemove", Member{"path", item.path});
        std::erase_if(items, [&item](const ListItem& known) { return known.id == item.id; });
    }

    /// Puts an item into the list as another program would; nothing for one that resolves to none.
    void put(std::optional<std::string> path) { items.push_back({++made, std::move(path)}); }

    void loseSessionList() { listed = false; }

  private:
    Effects& effects;
    std::vector<ListItem> items;
    std::uint64_t made = 0;
    bool listed = true;
};

} // namespace platform::memory
