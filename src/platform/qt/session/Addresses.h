#pragma once

#include <QUrl>
#include <optional>
#include <string>

namespace platform::qt {

/// What of an address may be passed to the desktop's opener; nothing where none of it may. An
/// address may come from anybody, over the network or out of a page: only pages that have a host
/// and mails pass, 2,000 characters at most, and of a mail only the recipients, the subject and the
/// body.
std::optional<QUrl> openableAddress(const std::string& url);

} // namespace platform::qt
