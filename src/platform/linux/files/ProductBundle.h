#pragma once

#include "platform/Bundle.h"
#include "platform/Log.h"
#include "platform/Value.h"

#include <functional>
#include <string>

namespace platform::linux {

/// A product's folder: "Info.plist", and beside it its images and sounds. The folder and the
/// product's command have the same name.
class ProductBundle final : public Bundle {
  public:
    /// The text of a key in a language, or the key itself; it stays until the next one is looked
    /// up.
    using LookUp = std::function<std::string_view(std::string_view language, std::string_view key)>;

    /// Reads the information dictionary; one that cannot be read is logged and is empty.
    ProductBundle(std::string folder, std::string language, LookUp lookUp, Log& log);

    int integer(std::string_view key) const override;
    std::string_view string(std::string_view key) const override;

    /// The product's command, beside the executable that asks.
    std::string path() const override;

    std::string localizedString(std::string_view key) const override;

    const std::string& folder() const { return bundleFolder; }

    /// The name of the folder.
    std::string name() const;

  private:
    std::string bundleFolder;
    std::string language;
    LookUp lookUp;
    Dictionary information;
};

} // namespace platform::linux
