#include "platform/linux/system/MachineIdentity.h"

#include <QMessageAuthenticationCode>
#include <QUuid>
#include <algorithm>
#include <cctype>

namespace platform::linux {

namespace {

constexpr qsizetype idLength = 16;

QByteArray bytesOf(std::string_view text) {
    return {text.data(), static_cast<qsizetype>(text.size())};
}

} // namespace

std::optional<std::string> machineIdentity(std::string_view machineId,
                                           std::string_view application) {
    while (machineId.ends_with('\n'))
        machineId.remove_suffix(1);
    // The reader of hexadecimal digits passes over anything else.
    const bool isHex =
        std::ranges::all_of(machineId, [](unsigned char c) { return std::isxdigit(c) != 0; });
    if (!isHex || machineId.size() != 2 * std::size_t{idLength}) return std::nullopt;
    const QByteArray key = QByteArray::fromHex(bytesOf(machineId));
    QByteArray hash =
        QMessageAuthenticationCode::hash(bytesOf(application), key, QCryptographicHash::Sha256)
            .first(idLength);
    hash[6] = static_cast<char>((hash[6] & 0x0f) | 0x40);
    hash[8] = static_cast<char>((hash[8] & 0x3f) | 0x80);
    return QUuid::fromRfc4122(hash).toString(QUuid::WithoutBraces).toUpper().toStdString();
}

} // namespace platform::linux
