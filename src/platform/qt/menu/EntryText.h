#pragma once

#include "platform/Menu.h"

#include <QString>

namespace platform::qt {

/// What an entry says, apart from the shortcut that stands behind a run of blanks in its text.
struct EntryText {
    QString label;
    QString shortcut; ///< empty for none
};

EntryText entryText(const MenuItem& item);

} // namespace platform::qt
