#include "platform/linux/system/TextCodec.h"

#include <QByteArray>
#include <QCryptographicHash>
#include <QString>
#include <QStringConverter>

namespace platform::linux {

namespace {

// The toolkit also escapes what RFC 3986 reserves. These of it may stand anywhere in an address.
constexpr std::string_view legalReserved = ":/?@!$&'()*+,;=";

QByteArray toBytes(std::string_view text) {
    return {text.data(), static_cast<qsizetype>(text.size())};
}

const char* nameOf(TextEncoding encoding) {
    if (encoding == TextEncoding::ascii) return "US-ASCII";
    if (encoding == TextEncoding::latin1) return "ISO-8859-1";
    return encoding == TextEncoding::macRoman ? "macintosh" : "UTF-8";
}

// What does not fit shows at the end, as a difference, with every converter of the toolkit.

QByteArray encodedBytes(const QString& text, TextEncoding encoding) {
    QStringEncoder encoder(nameOf(encoding), QStringConverter::Flag::Stateless);
    return encoder.encode(text);
}

QString decodedText(const QByteArray& bytes, TextEncoding encoding) {
    QStringDecoder decoder(nameOf(encoding), QStringConverter::Flag::Stateless);
    return decoder.decode(bytes);
}

} // namespace

std::string TextCodec::percentEncoded(std::string_view text, std::string_view alsoEscaped) const {
    QByteArray kept;
    for (const char c : legalReserved)
        if (alsoEscaped.find(c) == alsoEscaped.npos) kept += c;
    return toBytes(text).toPercentEncoding(kept, toBytes(alsoEscaped)).toStdString();
}

std::string TextCodec::md5(std::string_view bytes) const {
    return QCryptographicHash::hash(toBytes(bytes), QCryptographicHash::Md5).toHex().toStdString();
}

std::string TextCodec::base64Decoded(std::string_view text) const {
    return QByteArray::fromBase64(toBytes(text)).toStdString();
}

std::optional<std::string> TextCodec::decoded(std::string_view bytes, TextEncoding encoding) const {
    const QByteArray given = toBytes(bytes);
    const QString text = decodedText(given, encoding);
    if (encodedBytes(text, encoding) != given) return std::nullopt;
    return text.toStdString();
}

std::optional<std::string> TextCodec::encoded(std::string_view text, TextEncoding encoding) const {
    const QString given = QString::fromUtf8(toBytes(text));
    const QByteArray bytes = encodedBytes(given, encoding);
    if (decodedText(bytes, encoding) != given || given.toUtf8() != toBytes(text))
        return std::nullopt;
    return bytes.toStdString();
}

std::string TextCodec::fromCString(std::string_view bytes) const {
    return QString::fromLocal8Bit(toBytes(bytes.substr(0, bytes.find('\0')))).toStdString();
}

} // namespace platform::linux
