#include "platform/linux/MachineIdentity.h"

#include <QMessageAuthenticationCode>
#include <QUuid>

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
    const QByteArray key = QByteArray::fromHex(bytesOf(machineId));
    if (machineId.size() != 2 * std::size_t{idLength} || key.size() != idLength)
        return std::nullopt;
    QByteArray hash =
        QMessageAuthenticationCode::hash(bytesOf(application), key, QCryptographicHash::Sha256)
            .first(idLength);
    hash[6] = static_cast<char>((hash[6] & 0x0f) | 0x40);
    hash[8] = static_cast<char>((hash[8] & 0x3f) | 0x80);
    return QUuid::fromRfc4122(hash).toString(QUuid::WithoutBraces).toUpper().toStdString();
}

} // namespace platform::linux
