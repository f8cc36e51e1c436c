#include "platform/qt/QtTextCodec.h"

#include <QByteArray>

namespace platform::qt {

namespace {

// The toolkit also escapes what RFC 3986 reserves. These of it may stand anywhere in an address.
constexpr std::string_view legalReserved = ":/?@!$&'()*+,;=";

} // namespace

std::string QtTextCodec::percentEncoded(std::string_view text, std::string_view alsoEscaped) const {
    QByteArray kept;
    for (const char c : legalReserved)
        if (alsoEscaped.find(c) == alsoEscaped.npos) kept += c;
    const QByteArray escaped(alsoEscaped.data(), static_cast<qsizetype>(alsoEscaped.size()));
    return QByteArray(text.data(), static_cast<qsizetype>(text.size()))
        .toPercentEncoding(kept, escaped)
        .toStdString();
}

} // namespace platform::qt
