#pragma once

#include "platform/qt/pictures/Pictures.h"

#include <QString>
#include <string>

namespace platform::qt {

/// A folder in the session's runtime folder from which hosts of status notifier items take
/// templates as symbolic icons, which they tint in a colour that only they know. It stays when the
/// object goes: a host may still read it, and the next run makes the same.
class SymbolicIcons {
  public:
    /// `id` names the folder. One that cannot be made is empty.
    SymbolicIcons(const Pictures& images, const std::string& id);

    const QString& folder() const { return path; }

    /// The name for the host; empty without a folder or without such a picture.
    QString nameOf(const std::string& picture) const;

  private:
    QString path;
};

} // namespace platform::qt
