#pragma once

#include "platform/Bundle.h"
#include "platform/Notifications.h"

#include <set>
#include <string>
#include <string_view>
#include <utility>

/// What goes wrong and matters to a person is told on the desktop, once in a run, with what to do.
/// Main thread.
class Notices {
  public:
    /// Both that are lent must outlive the object.
    Notices(platform::Notifications& delivery, const platform::Bundle& texts)
        : notifications(delivery), bundle(texts) {}

    /// `title` and `text` are keys of localised texts; `about` takes the place of the first "%@" in
    /// each of them. Told again, the same says nothing.
    void tell(std::string_view title, std::string_view text, std::string_view about = {});

  private:
    platform::Notifications& notifications;
    const platform::Bundle& bundle;
    std::set<std::pair<std::string, std::string>> told; ///< the title's key, and what it was about
};
