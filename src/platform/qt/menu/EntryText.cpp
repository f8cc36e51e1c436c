#include "platform/qt/menu/EntryText.h"

namespace platform::qt {

namespace {

constexpr const char* runOfBlanks = "    "; // no text has as many

} // namespace

EntryText entryText(const MenuItem& item) {
    const QString text = QString::fromStdString(item.text);
    const auto at = text.indexOf(runOfBlanks);
    if (at < 0) return {text, {}};
    return {text.left(at), text.mid(at).trimmed()};
}

} // namespace platform::qt
