#include "platform/qt/session/Addresses.h"

#include <QStringList>
#include <algorithm>

namespace platform::qt {

namespace {

constexpr std::size_t longest = 2000;

bool hasControls(const QString& encoded) {
    const QString text = QUrl::fromPercentEncoding(encoded.toUtf8());
    return std::ranges::any_of(
        text, [](QChar letter) { return letter.category() == QChar::Other_Control; });
}

/// A mail program may attach any file of the user's that an address names, send copies, or take a
/// line end in the subject for the beginning of another header.
bool mayStay(const QString& field) {
    const QString name = field.section(u'=', 0, 0);
    if (name.compare(u"body", Qt::CaseInsensitive) == 0) return true;
    return name.compare(u"subject", Qt::CaseInsensitive) == 0 && !hasControls(field);
}

std::optional<QUrl> mail(QUrl url) {
    const QString recipients = url.path(QUrl::FullyEncoded);
    if (recipients.isEmpty() || hasControls(recipients)) return std::nullopt;
    QStringList fields = url.query(QUrl::FullyEncoded).split(u'&', Qt::SkipEmptyParts);
    fields.removeIf([](const QString& field) { return !mayStay(field); });
    url.setQuery(fields.isEmpty() ? QString() : fields.join(u'&'));
    url.setFragment({});
    return url;
}

} // namespace

std::optional<QUrl> openableAddress(const std::string& text) {
    if (text.size() > longest) return std::nullopt;
    const QUrl url = QUrl::fromEncoded(QByteArray::fromStdString(text), QUrl::TolerantMode);
    if (!url.isValid()) return std::nullopt;
    const QString scheme = url.scheme();
    if (scheme == u"mailto") return mail(url);
    const bool isPage = (scheme == u"http" || scheme == u"https") && !url.host().isEmpty();
    return isPage ? std::optional(url) : std::nullopt;
}

} // namespace platform::qt
