#include "util/MacUtils.h"

namespace palisor {

std::string MacUtils::md5(const platform::Platform& services, std::string_view text) {
    return services.textCodec.md5(text);
}

std::string MacUtils::fixStringWithUTF8Encoding(const platform::Platform& services,
                                                std::string_view text) {
    return services.textCodec.fromCString(text);
}

} // namespace palisor
