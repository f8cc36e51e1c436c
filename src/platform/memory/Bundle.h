#pragma once

#include "platform/Bundle.h"
#include "platform/Value.h"

#include <functional>
#include <string>
#include <vector>

namespace platform::memory {

class Bundle final : public platform::Bundle {
  public:
    /// The text of a key in the language with that bare code; the key itself where there is none.
    using LookUp = std::function<std::string_view(std::string_view language, std::string_view key)>;

    int integer(std::string_view key) const override;
    std::string_view string(std::string_view key) const override;
    std::string path() const override { return "/memory/" + displayName() + ".app"; }
    std::string localizedString(std::string_view key) const override;

    void set(std::string_view key, Value value);
    void remove(std::string_view key);

    /// Preferred first, such as "en" or "it-CH"; the first one counts.
    void setLanguages(std::vector<std::string> preferred) { languages = std::move(preferred); }
    void setStrings(LookUp newLookUp) { lookUp = std::move(newLookUp); }

  private:
    const Value* object(std::string_view key) const;

    Dictionary info;
    std::vector<std::string> languages;
    LookUp lookUp;
};

} // namespace platform::memory
